#include <cctype>
#include <cstddef>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <unicode/uloc.h>
#include <unicode/unorm.h>

#include "platform/text/Convert.h"
#include "platform/text/FoldedCompare.h"

namespace {

using lx::text::equalNormalizedIgnoringCase;

struct Texts {
  std::u16string left;
  std::u16string right;
};

void expectEach(const std::vector<Texts>& table, bool expected) {
  for (const Texts& texts : table) {
    const std::string shown = lx::text::toUtf8(u"\"" + texts.left + u"\" and \"" + texts.right + u"\"");
    EXPECT_EQ(equalNormalizedIgnoringCase(texts.left, texts.right), expected) << shown;
    EXPECT_EQ(equalNormalizedIgnoringCase(texts.right, texts.left), expected) << shown << ", exchanged";
  }
}

TEST(FoldedCompare, IgnoresTheCaseOfAsciiAndOfNothingElseThere) {
  for (int left = 0; left < 128; ++left) {
    for (int right = 0; right < 128; ++right) {
      const bool expected = std::tolower(left) == std::tolower(right);
      const std::u16string l(3, static_cast<char16_t>(left));
      const std::u16string r(3, static_cast<char16_t>(right));
      ASSERT_EQ(equalNormalizedIgnoringCase(l, r), expected) << left << ' ' << right;
    }
  }
}

TEST(FoldedCompare, FindsTextsEqualThatDifferInCase) {
  expectEach(
      {
          {u"", u""},
          {u".test", u".TEST"},
          {u"\u00E9", u"\u00C9"},
          {u"Stra\u00DFe", u"STRASSE"},
          {u"\u1E9E", u"ss"},
          {u"\u1E9E", u"\u00DF"},
          {u"\u03A3", u"\u03C2"},  // sigma, at the end of a word
          {u"\u03C3", u"\u03C2"},
          {u"\uFB01", u"FI"},  // a ligature
          {u"\uFB03x", u"ffiX"},
          {u"\u0149", u"\u02BCN"},
          {u"\u13A0", u"\uAB70"},          // Cherokee folds to capitals
          {u"\U00010400", u"\U00010428"},  // Deseret, beyond the first plane
          {u"\u0130", u"i\u0307"},
      },
      true);
}

TEST(FoldedCompare, FindsAsciiLettersEqualToOthersThatFoldToThem) {
  expectEach({{u"\u212A", u"k"},
              {u"\u212A", u"K"},
              {u"\u017F", u"s"},
              {u"\u017F", u"S"},
              {u"di\u017F\u212A", u"DISK"}},
             true);
}

TEST(FoldedCompare, FindsTextsEqualThatDifferInComposition) {
  expectEach(
      {
          {u"\u00E9", u"e\u0301"},
          {u"\u00E9", u"E\u0301"},
          {u"x\u00E9y", u"XE\u0301Y"},
          {u"\u212B", u"\u00E5"},
          {u"\u212B", u"A\u030A"},
          {u"a\u0301\u0323", u"a\u0323\u0301"},  // marks of different classes in either order
          {u"\u1EAD", u"A\u0323\u0302"},
          {u"\u0340", u"\u0300"},
          {u"\uAC01", u"\u1100\u1161\u11A8"},  // Hangul
          {u"\u1FB3", u"\u03B1\u0345"},        // the iota below becomes a letter
          {u"\u1FB3", u"\u0391\u0399"},
          {u"\u03B1\u0345\u0301", u"\u03B1\u0301\u0345"},
          {u"\U0001D15E", u"\U0001D157\U0001D165"},
      },
      true);
}

TEST(FoldedCompare, TellsOtherTextsApart) {
  expectEach(
      {
          {u"test", u".test"},
          {u"", u"a"},
          {u"", u"\u0301"},
          {u"", std::u16string(1, u'\0')},
          {u"a", std::u16string(u"a\0", 2)},
          {u"a", u"a\u200D"},
          {u"a", u"b"},
          {u"ab", u"a"},
          {u"e", u"\u00E9"},
          {u"e", u"e\u0301"},
          {u"\u00E9", u"\u00E8"},
          {u"a\u0301\u0300", u"a\u0300\u0301"},  // marks of one class keep their order
          {u"\u0131", u"i"},
          {u"\u0131", u"I"},
          {u"\u0130", u"i"},
          {u"\uFF21", u"a"},  // full width
          {u"\u00B2", u"2"},
          {u"s", u"\u00DF"},
          {u"\u03B1\u0345", u"\u03B1"},
          {u"\U00010400", u"\U00010429"},
          {u" a", u"a"},
      },
      false);
}

TEST(FoldedCompare, FindsALoneSurrogateEqualToItselfOnly) {
  const std::u16string high = {0xD801};
  const std::u16string low = {0xDC00};
  expectEach({{high, high},
              {low, low},
              {u"A" + high, u"a" + high},
              {low + high, low + high},
              {high + u"\u00E9", high + u"E\u0301"},
              {u"\u00E9" + low, u"E\u0301" + low}},
             true);
  expectEach({{high, low},
              {high, u""},
              {high, u"\uFFFD"},
              {low, u"\uFFFD"},
              {high, {0xD802}},
              {low, {0xDC28}},
              {high, u"\U00010400"},
              {low, u"\U00010400"},
              {low + high, high + low},
              {high + u"a", high}},
             false);
}

TEST(FoldedCompare, DoesNotListenToTheLocale) {
  const std::string former = uloc_getDefault();
  for (const char* locale : {"tr_TR", "az", "lt", "C"}) {
    UErrorCode status = U_ZERO_ERROR;
    uloc_setDefault(locale, &status);
    ASSERT_TRUE(U_SUCCESS(status)) << locale;
    expectEach({{u"i\u00E9", u"I\u00C9"}, {u"\u0130", u"i\u0307"}}, true);
    expectEach({{u"\u0131\u00E9", u"I\u00C9"}, {u"\u0130", u"i"}}, false);
  }
  UErrorCode status = U_ZERO_ERROR;
  uloc_setDefault(former.c_str(), &status);
  EXPECT_TRUE(U_SUCCESS(status));
}

TEST(FoldedCompare, AgreesWithAnIncrementalComparisonOnRandomTexts) {
  // Pieces in rows that are mostly equal to each other by themselves, but not next to every neighbour.
  const std::vector<std::vector<std::u16string>> rows = {
      {u"a", u"A"},
      {u"k", u"K", u"\u212A"},
      {u"s", u"S", u"\u017F"},
      {u"ss", u"\u00DF", u"\u1E9E"},
      {u"e", u"\u00E9", u"\u00C9", u"e\u0301", u"E\u0301"},
      {u"\u212B", u"\u00E5", u"a\u030A"},
      {u"i", u"I", u"\u0130", u"\u0131", u"i\u0307"},
      {u"\u03B1", u"\u1FB3", u"\u03B1\u0345", u"\u0391\u0399"},
      {u"\u0301", u"\u0323", u"\u0345", u"\u0341", u"\u0323\u0301", u"\u0301\u0323"},
      {u"\uFB01", u"fi"},
      {u"\u1100\u1161", u"\uAC00"},
      {u"\U00010400", u"\U00010428"},
  };
  std::mt19937 random(815);
  int equals = 0;
  for (int round = 0; round < 40000; ++round) {
    std::u16string left;
    std::u16string right;
    for (std::size_t count = random() % 4 + 1; count > 0; --count) {
      const std::vector<std::u16string>& row = rows[random() % rows.size()];
      left += row[random() % row.size()];
      right += row[random() % row.size()];
    }
    UErrorCode status = U_ZERO_ERROR;
    const bool expected =
        unorm_compare(left.data(), static_cast<std::int32_t>(left.size()), right.data(),
                      static_cast<std::int32_t>(right.size()), U_COMPARE_IGNORE_CASE, &status) == 0;
    ASSERT_TRUE(U_SUCCESS(status));
    ASSERT_EQ(equalNormalizedIgnoringCase(left, right), expected)
        << lx::text::toUtf8(left) << " and " << lx::text::toUtf8(right);
    equals += expected && left != right ? 1 : 0;
  }
  EXPECT_GT(equals, 4000);
}

TEST(FoldedCompare, ComparesHugeTextsToTheirEnd) {
  std::u16string composed;
  std::u16string decomposed;
  for (int count = 0; count < 300000; ++count) {
    composed += u"\u00E9";
    decomposed += u"E\u0301";
  }
  EXPECT_TRUE(equalNormalizedIgnoringCase(composed, decomposed));
  EXPECT_FALSE(equalNormalizedIgnoringCase(composed + u"x", decomposed + u"y"));
  const std::u16string sharp(300000, u'\u00DF');
  EXPECT_TRUE(equalNormalizedIgnoringCase(sharp, std::u16string(600000, u'S')));
  const std::u16string growing(100000, u'\u0390');  // folds and decomposes to three units each
  EXPECT_TRUE(equalNormalizedIgnoringCase(growing, std::u16string(100000, u'\u1FD3')));
}

}  // namespace
