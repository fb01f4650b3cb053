#include <set>

#include "platform/foundation/Identity.h"
#include "platform/foundation/ModelImpl.h"

using lx::base::Model;
using lx::base::detail::randomIdentity;

namespace {

TEST(RandomIdentity, IsAVersion4UuidOfTheCommonVariant) {
  for (int round = 0; round < 100; ++round) {
    const boost::uuids::uuid uuid = randomIdentity();
    EXPECT_EQ(uuid.version(), boost::uuids::uuid::version_random_number_based);
    EXPECT_EQ(uuid.variant(), boost::uuids::uuid::variant_rfc_4122);
  }
}

TEST(RandomIdentity, DoesNotRepeat) {
  std::set<boost::uuids::uuid> seen;
  for (int round = 0; round < 10000; ++round) EXPECT_TRUE(seen.insert(randomIdentity()).second);
}

TEST(ModelIdentity, IsMadeOnceAndDiffersFromModelToModel) {
  const Model one = Model::create();
  const Model two = Model::create();
  EXPECT_FALSE(one.identifier().is_nil());
  EXPECT_EQ(one.identifier(), one.identifier());
  EXPECT_NE(one.identifier(), two.identifier());
}

}  // namespace
