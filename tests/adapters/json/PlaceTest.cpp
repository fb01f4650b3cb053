#include <string_view>

#include <gtest/gtest.h>

#include "adapters/json/Place.h"

using nd::adapters::json::describe;
using nd::adapters::json::Place;
using nd::adapters::json::placeOf;

TEST(PlaceOf, BeginsAtLineOneAndColumnOne) {
  EXPECT_EQ(placeOf("abc", 0), (Place{1, 1}));
  EXPECT_EQ(placeOf("", 0), (Place{1, 1}));
}

TEST(PlaceOf, CountsALineFeedAsTheLastColumnOfItsLine) {
  EXPECT_EQ(placeOf("ab\ncd", 2), (Place{1, 3}));
  EXPECT_EQ(placeOf("ab\ncd", 3), (Place{2, 1}));
  EXPECT_EQ(placeOf("ab\ncd", 4), (Place{2, 2}));
}

TEST(PlaceOf, CountsACarriageReturnBeforeALineFeedAsAColumnOfTheLineThatItEnds) {
  EXPECT_EQ(placeOf("a\r\nb", 3), (Place{2, 1}));
  EXPECT_EQ(placeOf("a\r\nb", 1), (Place{1, 2}));
}

TEST(PlaceOf, CountsColumnsInCodePointsAndNotInBytes) {
  const std::string_view text = "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80x";  // ä, €, an emoji
  EXPECT_EQ(placeOf(text, 2), (Place{1, 2}));
  EXPECT_EQ(placeOf(text, 5), (Place{1, 3}));
  EXPECT_EQ(placeOf(text, 9), (Place{1, 4}));
}

TEST(PlaceOf, GivesTheEndForAnOffsetBehindIt) {
  EXPECT_EQ(placeOf("a\nbc", 99), (Place{2, 3}));
}

TEST(DescribePlace, NamesLineAndColumn) {
  EXPECT_EQ(describe({3, 9}), "line 3, column 9");
}
