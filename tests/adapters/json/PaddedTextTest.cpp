#include <algorithm>
#include <string_view>

#include <gtest/gtest.h>

#include "adapters/json/PaddedText.h"

using nd::adapters::json::PaddedText;

TEST(PaddedText, HasZerosBehindTheText) {
  PaddedText text(std::string_view("abc"));
  EXPECT_EQ(text.content(), "abc");
  EXPECT_TRUE(std::all_of(text.data() + 3, text.data() + 3 + PaddedText::padding,
                          [](char byte) { return byte == 0; }));
}

TEST(PaddedText, HasZerosBehindAShrunkenText) {
  PaddedText text(std::string_view("abcdef"));
  text.shrink(2);
  EXPECT_EQ(text.content(), "ab");
  EXPECT_TRUE(std::all_of(text.data() + 2, text.data() + 2 + PaddedText::padding,
                          [](char byte) { return byte == 0; }));
}

TEST(PaddedText, PassesOverOneByteOrderMark) {
  const PaddedText text(std::string_view("\xEF\xBB\xBF\xEF\xBB\xBF{}"));
  EXPECT_EQ(text.text(), "\xEF\xBB\xBF{}");
  EXPECT_EQ(text.content().size(), 8U);
}

TEST(PaddedText, KeepsHalfAByteOrderMark) {
  EXPECT_EQ(PaddedText(std::string_view("\xEF\xBB{}")).text(), "\xEF\xBB{}");
}
