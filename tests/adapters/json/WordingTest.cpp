#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "adapters/json/Wording.h"

using nd::adapters::json::describeFound;
using nd::adapters::json::describeNumber;
using nd::adapters::json::quoteName;
using nd::adapters::json::quotePath;
using nd::adapters::json::shorten;

TEST(DescribeFound, QuotesAPrintableCharacter) {
  EXPECT_EQ(describeFound("a}", 1), "'}'");
  EXPECT_EQ(describeFound("\"", 0), "'\"'");
  EXPECT_EQ(describeFound("7", 0), "'7'");
}

TEST(DescribeFound, TellsAWordWhole) {
  EXPECT_EQ(describeFound("[NaN]", 1), "'NaN'");
  EXPECT_EQ(describeFound("true1_x,", 0), "'true1_x'");
}

TEST(DescribeFound, CutsALongWord) {
  EXPECT_EQ(describeFound(std::string(100, 'n'), 0), "'nnnnnnnnnnnnnnnnnnnn…'");
}

TEST(DescribeFound, NamesWhatCannotBeShown) {
  EXPECT_EQ(describeFound("", 0), "the end of the text");
  EXPECT_EQ(describeFound("a\n", 1), "a line break");
  EXPECT_EQ(describeFound("\r", 0), "a line break");
  EXPECT_EQ(describeFound("\t", 0), "a tab");
  EXPECT_EQ(describeFound("'", 0), "a single quote");
  EXPECT_EQ(describeFound(" ", 0), "U+0020");
  EXPECT_EQ(describeFound("\x1B", 0), "U+001B");
  EXPECT_EQ(describeFound("\x7F", 0), "U+007F");
  EXPECT_EQ(describeFound(std::string_view("\0", 1), 0), "U+0000");
}

TEST(DescribeFound, NamesACodePointBeyondAscii) {
  EXPECT_EQ(describeFound("\xC3\xA4", 0), "U+00E4");
  EXPECT_EQ(describeFound("\xF0\x9F\x98\x80", 0), "U+1F600");
}

TEST(DescribeFound, NamesAByteThatIsNotUtf8) {
  EXPECT_EQ(describeFound("\xFF", 0), "the byte 0xFF, which is not UTF-8 here");
}

TEST(Shorten, KeepsWhatFitsALine) {
  EXPECT_EQ(shorten("gain"), "gain");
}

TEST(Shorten, CutsWhatIsLong) {
  EXPECT_EQ(shorten(std::string(1000, 'x')), std::string(59, 'x') + "…");
}

TEST(QuoteName, ShowsControlCharactersAsEscapes) {
  EXPECT_EQ(quoteName("a\x1B[2J"), R"("a\u001b[2J")");
}

TEST(DescribeNumber, TellsANumberWholeAndAllElseAsItIsFound) {
  EXPECT_EQ(describeNumber("[-1.5e3,", 1), "-1.5e3");
  EXPECT_EQ(describeNumber("[[1]]", 1), "'['");
}

TEST(QuotePath, KeepsALongPathWhole) {
  const std::string path = "/x/" + std::string(1000, 'y') + "\x1B";
  EXPECT_EQ(quotePath(path), "\"/x/" + std::string(1000, 'y') + "\\u001b\"");
}
