#include <algorithm>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include <gtest/gtest.h>

#include "platform/text/Compare.h"
#include "platform/text/Hash.h"

namespace {

using lx::text::hash;

TEST(HashText, IsTheSameForEqualTextsWhereverTheyLie) {
  const std::u16string text = u"a name of some length";
  for (std::size_t length = 0; length <= text.size(); ++length) {
    const std::size_t expected = hash(std::u16string_view(text).substr(0, length));
    for (std::size_t offset = 0; offset < 8; ++offset) {
      const std::u16string copy = std::u16string(offset, u'?') + text;
      EXPECT_EQ(hash(std::u16string_view(copy).substr(offset, length)), expected);
    }
  }
}

TEST(HashText, BearsViewsWithoutData) {
  EXPECT_EQ(hash(std::u16string_view()), hash(std::u16string_view(u"")));
  EXPECT_EQ(hash(std::string_view()), hash(std::string_view("")));
}

TEST(HashText, LetsEveryBitOfEveryUnitCount) {
  for (std::size_t length = 1; length <= 33; ++length) {
    std::u16string wide(length, u'm');
    std::string narrow(length, 'm');
    const std::size_t wideHash = hash(wide);
    const std::size_t narrowHash = hash(narrow);
    for (std::size_t at = 0; at < length; ++at) {
      for (unsigned bit = 0; bit < 16; ++bit) {
        std::u16string other = wide;
        other[at] = static_cast<char16_t>(other[at] ^ (1U << bit));
        EXPECT_NE(hash(other), wideHash) << length << ' ' << at << ' ' << bit;
      }
      for (unsigned bit = 0; bit < 8; ++bit) {
        std::string other = narrow;
        other[at] = static_cast<char>(static_cast<unsigned char>(other[at]) ^ (1U << bit));
        EXPECT_NE(hash(other), narrowHash) << length << ' ' << at << ' ' << bit;
      }
    }
  }
}

TEST(HashText, LetsTheLengthCount) {
  std::unordered_set<std::size_t> seen;
  for (std::size_t length = 0; length < 100; ++length) seen.insert(hash(std::u16string(length, u'\0')));
  EXPECT_EQ(seen.size(), 100U);
  seen.clear();
  for (std::size_t length = 0; length < 100; ++length) seen.insert(hash(std::string(length, '\0')));
  EXPECT_EQ(seen.size(), 100U);
}

TEST(HashText, TellsTextsApartWhosePartsAreSwapped) {
  EXPECT_NE(hash(std::u16string_view(u"abcdefgh")), hash(std::u16string_view(u"efghabcd")));
  EXPECT_NE(hash(std::u16string_view(u"ab")), hash(std::u16string_view(u"ba")));
  EXPECT_NE(hash(std::string_view("abc")), hash(std::string_view("cba")));
}

// With 65536 names in 4096 buckets a bucket holds 16; at random none would hold 60.
std::size_t fullestBucket(const std::vector<std::size_t>& hashes, unsigned shift) {
  std::vector<std::size_t> buckets(4096);
  for (const std::size_t value : hashes) ++buckets[(value >> shift) % buckets.size()];
  return *std::max_element(buckets.begin(), buckets.end());
}

TEST(HashText, SpreadsNumberedNamesOverAllBits) {
  std::vector<std::size_t> wide;
  std::vector<std::size_t> narrow;
  for (int number = 0; number < 65536; ++number) {
    const std::string name = "signal_" + std::to_string(number);
    narrow.push_back(hash(name));
    wide.push_back(hash(std::u16string(name.begin(), name.end())));
  }
  for (const unsigned shift : {0U, 20U, 40U, 52U}) {
    EXPECT_LT(fullestBucket(wide, shift), 60U) << shift;
    EXPECT_LT(fullestBucket(narrow, shift), 60U) << shift;
  }
  EXPECT_EQ(std::unordered_set<std::size_t>(wide.begin(), wide.end()).size(), wide.size());
  EXPECT_EQ(std::unordered_set<std::size_t>(narrow.begin(), narrow.end()).size(), narrow.size());
}

TEST(HashFunctor, LetsTablesBeSearchedByView) {
  const std::unordered_map<std::u16string, int, lx::text::Hash, lx::text::Equal> wide = {{u"one", 1},
                                                                                         {u"two", 2}};
  EXPECT_EQ(wide.find(std::u16string_view(u"a two").substr(2))->second, 2);
  EXPECT_EQ(wide.find(std::u16string_view(u"Two")), wide.end());
  const std::unordered_map<std::string, int, lx::text::Hash, std::equal_to<>> narrow = {{"one", 1},
                                                                                        {"two", 2}};
  EXPECT_EQ(narrow.find(std::string_view("a two").substr(2))->second, 2);
  EXPECT_EQ(narrow.find(std::string_view("Two")), narrow.end());
}

TEST(HashFunctor, KeepsLoneSurrogatesAsKeysOfTheirOwn) {
  std::unordered_set<std::u16string, lx::text::Hash, lx::text::Equal> set;
  set.insert(
      {std::u16string{0xD800}, std::u16string{0xDC00}, std::u16string{0xFFFD}, std::u16string{0xD800}});
  EXPECT_EQ(set.size(), 3U);
  EXPECT_EQ(set.count(std::u16string{0xDC00}), 1U);
}

}  // namespace
