#include <gmock/gmock.h>

#include "platform/foundation/Identity.h"
#include "platform/foundation/SaturatedBloomFilter.h"
#include "tests/platform/foundation/Probing.h"

using lx::base::SaturatedBloomFilter;
using probing::identity;

namespace {

std::vector<boost::uuids::uuid> randomIdentities(std::size_t count) {
  std::vector<boost::uuids::uuid> result;
  for (std::size_t at = 0; at < count; ++at) result.push_back(lx::base::detail::randomIdentity());
  return result;
}

TEST(SaturatedBloomFilter, FindsNothingAtFirst) {
  const SaturatedBloomFilter filter;
  for (const auto& each : randomIdentities(1000)) EXPECT_FALSE(filter.contains(each));
  EXPECT_FALSE(filter.contains({}));
}

TEST(SaturatedBloomFilter, FindsWhatWasAddedHoweverMuchItIs) {
  SaturatedBloomFilter filter(8);
  const auto all = randomIdentities(5000);
  for (const auto& each : all) filter.add(each);
  for (const auto& each : all) EXPECT_TRUE(filter.contains(each));
}

TEST(SaturatedBloomFilter, FindsLittleElseAsLongAsThereIsNotMoreThanExpected) {
  SaturatedBloomFilter filter(200);
  for (std::uint8_t number = 1; number <= 200; ++number) filter.add(identity(number));
  int wrong = 0;
  for (const auto& each : randomIdentities(10000)) wrong += filter.contains(each) ? 1 : 0;
  for (std::uint8_t number = 201; number != 0; ++number) wrong += filter.contains(identity(number)) ? 1 : 0;
  EXPECT_LT(wrong, 200) << "two in a hundred";
}

TEST(SaturatedBloomFilter, ForgetsWhatIsRemovedAsOftenAsItWasAdded) {
  SaturatedBloomFilter filter;
  filter.add(identity(1));
  filter.add(identity(1));
  filter.add(identity(2));
  filter.remove(identity(1));
  EXPECT_TRUE(filter.contains(identity(1)));
  filter.remove(identity(1));
  EXPECT_FALSE(filter.contains(identity(1)));
  EXPECT_TRUE(filter.contains(identity(2)));
  filter.remove(identity(2));
  EXPECT_FALSE(filter.contains(identity(2)));
}

TEST(SaturatedBloomFilter, KeepsForGoodWhatWasAddedTooOftenToBeCounted) {
  SaturatedBloomFilter filter;
  for (int count = 0; count < 300; ++count) filter.add(identity(1));
  for (int count = 0; count < 300; ++count) filter.remove(identity(1));
  EXPECT_TRUE(filter.contains(identity(1)));
  EXPECT_FALSE(filter.contains(identity(2)));
}

TEST(SaturatedBloomFilter, NeverMissesWhatOthersAreRemovedFromBeside) {
  SaturatedBloomFilter filter(4);
  const auto kept = randomIdentities(100), passing = randomIdentities(100);
  for (const auto& each : kept) filter.add(each);
  for (int round = 0; round < 5; ++round) {
    for (const auto& each : passing) filter.add(each);
    for (const auto& each : passing) filter.remove(each);
  }
  for (const auto& each : kept) EXPECT_TRUE(filter.contains(each));
}

}  // namespace
