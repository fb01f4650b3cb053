#include <string_view>

#include <gtest/gtest.h>

#include "tests/adapters/json/arrays.h"
#include "tests/adapters/json/readText.h"

using arrays::cells;
using arrays::nothing;
using arrays::row;
using arrays::scalar;
using arrays::strings;
using boost::none;

TEST(ReaderTexts, ReadsAStringAsACharacterRow) {
  EXPECT_TRUE(readsAs(R"("km/h")", row(u"km/h")));
  EXPECT_TRUE(readsAs(R"("")", row(u"")));
}

TEST(ReaderTexts, ReadsEscapes) {
  EXPECT_TRUE(readsAs(R"("\"\\\/\b\f\n\r\t")", row(u"\"\\/\b\f\n\r\t")));
  EXPECT_TRUE(readsAs(R"("\u00e4\u00E4\u20AC")", row(u"\u00e4\u00e4\u20ac")));
  EXPECT_TRUE(readsAs(R"("a\u0000b")", row(std::u16string_view(u"a\0b", 3))));
}

TEST(ReaderTexts, ReadsUtf8AndSurrogatePairsAsUtf16) {
  EXPECT_TRUE(readsAs("\"\xC3\xA4 \xE2\x82\xAC \xF0\x9F\x98\x80\"", row(u"\u00e4 \u20ac \U0001F600")));
  EXPECT_TRUE(readsAs(R"("\ud83d\ude00")", row(u"\U0001F600")));
  EXPECT_TRUE(readsAs(R"("\uDBFF\uDFFF")", row(u"\U0010FFFF")));
}

TEST(ReaderTexts, ReadsAnArrayOfStringsAsAStringArray) {
  EXPECT_TRUE(readsAs(R"(["a", "", "\u00e4"])", strings({1, 3}, {u"a", u"", u"\u00e4"})));
  EXPECT_TRUE(readsAs(R"(["a"])", strings({1, 1}, {u"a"})));
}

TEST(ReaderTexts, ReadsANestedArrayOfStringsColumnByColumn) {
  EXPECT_TRUE(readsAs(R"([["a", "b", "c"], ["d", "e", "f"]])",
                      strings({2, 3}, {u"a", u"d", u"b", u"e", u"c", u"f"})));
}

TEST(ReaderTexts, ReadsNullAmongStringsAsMissing) {
  EXPECT_TRUE(readsAs(R"(["a", null])", strings({1, 2}, {u"a", none})));
  EXPECT_TRUE(readsAs(R"([null, null, "a"])", strings({1, 3}, {none, none, u"a"})));
  EXPECT_TRUE(readsAs(R"([[null, null], [null, "a"]])", strings({2, 2}, {none, none, none, u"a"})));
}

TEST(ReaderTexts, ReadsNullAsAnEmptyDouble) {
  EXPECT_TRUE(readsAs("null", nothing()));
}

TEST(ReaderTexts, ReadsNullsAloneAsCells) {
  EXPECT_TRUE(readsAs("[null]", cells(nothing())));
  EXPECT_TRUE(readsAs("[null, null]", cells(nothing(), nothing())));
  EXPECT_TRUE(readsAs("[[null, null], [null, null]]",
                      cells(cells(nothing(), nothing()), cells(nothing(), nothing()))));
}

TEST(ReaderTexts, ReadsNullAmongOtherValuesAsCells) {
  EXPECT_TRUE(readsAs("[null, 1]", cells(nothing(), scalar(1))));
  EXPECT_TRUE(readsAs("[1, null]", cells(scalar(1), nothing())));
  EXPECT_TRUE(readsAs("[true, null]", cells(arrays::truth(true), nothing())));
}

TEST(ReaderTexts, ReadsStringsAmongOtherValuesAsTheyWouldBeReadAlone) {
  EXPECT_TRUE(readsAs(R"(["a", null, 1])", cells(row(u"a"), nothing(), scalar(1))));
  EXPECT_TRUE(readsAs(R"([["a", null], [null, null], 1])",
                      cells(strings({1, 2}, {u"a", none}), cells(nothing(), nothing()), scalar(1))));
  EXPECT_TRUE(
      readsAs(R"([["a"], ["b", "c"]])", cells(strings({1, 1}, {u"a"}), strings({1, 2}, {u"b", u"c"}))));
}
