#include <cstddef>
#include <map>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "platform/text/Compare.h"

namespace {

using lx::text::compare;
using lx::text::equal;

int compareNaively(std::u16string_view left, std::u16string_view right) {
  for (std::size_t at = 0; at < left.size() && at < right.size(); ++at) {
    if (left[at] < right[at]) return -1;
    if (left[at] > right[at]) return 1;
  }
  if (left.size() == right.size()) return 0;
  return left.size() < right.size() ? -1 : 1;
}

int sign(int value) {
  return (value > 0) - (value < 0);
}

TEST(EqualText, TellsTextsApartByCaseLengthAndEveryUnit) {
  EXPECT_TRUE(equal(u"", u""));
  EXPECT_TRUE(equal(u"abc", std::u16string(u"abc")));
  EXPECT_FALSE(equal(u"abc", u"abC"));
  EXPECT_FALSE(equal(u"abc", u"ab"));
  EXPECT_FALSE(equal(u"ab", u"abc"));
  EXPECT_FALSE(equal(u"", u"a"));
  EXPECT_FALSE(equal(std::u16string(1, u'\0'), u""));
}

TEST(EqualText, TellsLoneSurrogatesApart) {
  EXPECT_TRUE(equal(std::u16string{0xD800}, std::u16string{0xD800}));
  EXPECT_FALSE(equal(std::u16string{0xD800}, std::u16string{0xD801}));
  EXPECT_FALSE(equal(std::u16string{0xD800}, std::u16string{0xFFFD}));
}

TEST(EqualText, DoesNotNormalise) {
  EXPECT_FALSE(equal(u"\u00E9", u"e\u0301"));
}

TEST(EqualText, BearsViewsWithoutData) {
  EXPECT_TRUE(equal(std::u16string_view(), u""));
  EXPECT_FALSE(equal(std::u16string_view(), u"a"));
}

TEST(CompareTexts, OrdersByCodeUnitAndNotByByte) {
  EXPECT_LT(compare(u"\u00FF", u"\u0100"), 0);
  EXPECT_GT(compare(u"\u0100", u"\u00FF"), 0);
  EXPECT_LT(compare(u"xxx\u00FFz", u"xxx\u0100a"), 0);
}

TEST(CompareTexts, OrdersSupplementaryCharactersByTheirSurrogates) {
  EXPECT_LT(compare(u"\U00010000", u"\uE000"), 0);
  EXPECT_LT(compare(u"same\U00010000", u"same\uFFFF"), 0);
}

TEST(CompareTexts, PutsATextBeforeAllThatBeginWithIt) {
  EXPECT_LT(compare(u"", u"a"), 0);
  EXPECT_LT(compare(u"abcd", u"abcde"), 0);
  EXPECT_LT(compare(u"abcd", std::u16string(u"abcd\0", 5)), 0);
  EXPECT_GT(compare(u"abcde", u"abcd"), 0);
}

TEST(CompareTexts, FindsEqualTextsEqual) {
  EXPECT_EQ(compare(u"", std::u16string_view()), 0);
  EXPECT_EQ(compare(u"abcdefghi", std::u16string(u"abcdefghi")), 0);
}

TEST(CompareTexts, FindsTheFirstDifferenceAtEveryPlace) {
  for (std::size_t length = 1; length <= 20; ++length) {
    const std::u16string text(length, u'\u4E00');
    for (std::size_t at = 0; at < length; ++at) {
      std::u16string greater = text;
      greater[at] = u'\u4E01';
      for (std::size_t behind = at + 1; behind < length; ++behind) greater[behind] = u'\u0001';
      EXPECT_LT(compare(text, greater), 0) << length << ' ' << at;
      EXPECT_GT(compare(greater, text), 0) << length << ' ' << at;
      EXPECT_FALSE(equal(text, greater)) << length << ' ' << at;
    }
  }
}

TEST(CompareTexts, AgreesWithAPlainLoopOnRandomTexts) {
  std::mt19937 random(4711);
  const std::vector<char16_t> units = {0, 1, 0xFF, 0x100, 0x101, 0xD800, 0xDC00, 0xFFFF};
  std::size_t equals = 0;
  for (int round = 0; round < 50000; ++round) {
    // Few different units and a shared beginning, so that differences come at every place; views that begin
    // anywhere, so that nothing rests on alignment.
    std::u16string left(random() % 24, u'\0');
    for (char16_t& unit : left) unit = units[random() % units.size()];
    std::u16string right = left;
    if (!right.empty() && random() % 4 != 0) right[random() % right.size()] = units[random() % units.size()];
    if (random() % 4 == 0) right.resize(random() % 24, u'\1');
    const std::size_t from =
        left.empty() || right.empty() ? 0 : random() % std::min(left.size(), right.size());
    const std::u16string_view l = std::u16string_view(left).substr(from);
    const std::u16string_view r = std::u16string_view(right).substr(from);
    const int expected = compareNaively(l, r);
    ASSERT_EQ(sign(compare(l, r)), expected);
    ASSERT_EQ(sign(compare(r, l)), -expected);
    ASSERT_EQ(equal(l, r), expected == 0);
    equals += expected == 0 ? 1 : 0;
  }
  EXPECT_GT(equals, 5000U);
}

TEST(CompareTexts, ReadsHugeTextsToTheirEnd) {
  std::u16string left(3'000'001, u'x');
  std::u16string right = left;
  EXPECT_TRUE(equal(left, right));
  EXPECT_EQ(compare(left, right), 0);
  right.back() = u'y';
  EXPECT_FALSE(equal(left, right));
  EXPECT_LT(compare(left, right), 0);
}

TEST(LessTexts, OrdersAMapThatIsSearchedByView) {
  const std::map<std::u16string, int, lx::text::Less> map = {
      {u"\uE000", 3}, {u"b", 2}, {u"\U00010000", 4}, {u"B", 1}};
  std::u16string keys;
  for (const auto& [key, value] : map) keys += key;
  EXPECT_EQ(keys, u"Bb\U00010000\uE000");
  EXPECT_EQ(map.find(std::u16string_view(u"bb").substr(1))->second, 2);
  EXPECT_EQ(map.find(std::u16string_view(u"bb")), map.end());
}

}  // namespace
