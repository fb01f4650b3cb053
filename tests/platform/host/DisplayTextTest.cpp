#include "platform/host/ArrayText.h"
#include "tests/platform/host/HostTest.h"

namespace {

class DisplayTextTest : public HostTest {};

TEST_F(DisplayTextTest, OrdinaryTextStaysAsItIs) {
  for (const char* const text : {"", "plain text", "C:\\folder \"x\"",
                                 "Gr\xC3\xB6\xC3\x9F"
                                 "e",
                                 "\xE6\x97\xA5\xE6\x9C\xAC", "\xF0\x9F\x98\x80", "e\xCC\x81",
                                 "a\xE2\x80\x8D"
                                 "b"}) {
    EXPECT_EQ(hvEscape(text), text);
  }
}

TEST_F(DisplayTextTest, WhatDrivesATerminalIsEscaped) {
  const std::pair<std::string, const char*> cases[] = {
      {"a\nb\tc\rd", "a\\nb\\tc\\rd"},
      {"\x1B[31mred", "\\u001b[31mred"},
      {std::string("a\0b", 3), "a\\u0000b"},
      {"\x07\x7F", "\\u0007\\u007f"},
      {"\xC2\x9B"
       "2J",
       "\\u009b2J"},  // the one-character form of ESC [
      {"\xE2\x80\xAE"
       "fdp",
       "\\u202efdp"},                                  // right-to-left override
      {"\xE2\x80\xA8\xE2\x80\xA9", "\\u2028\\u2029"},  // line and paragraph separators
      {"\xEF\xBB\xBF"
       "x",
       "\\ufeffx"},                         // byte order mark
      {"\xF3\xA0\x80\x81", "\\U000e0001"},  // a tag character
  };
  for (const auto& [text, wanted] : cases) EXPECT_EQ(hvEscape(text), wanted);
}

TEST_F(DisplayTextTest, IllFormedUtf8IsReplaced) {
  const std::pair<const char*, const char*> cases[] = {
      {"a\x80z", "a\xEF\xBF\xBDz"},
      {"\xC0\xAF", "\xEF\xBF\xBD\xEF\xBF\xBD"},
      {"\xE2\x82", "\xEF\xBF\xBD"},
      {"\xE2\x82z", "\xEF\xBF\xBDz"},
      {"\xF0\x9F\x98", "\xEF\xBF\xBD"},
      {"\xED\xA0\x80", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},
      {"\xF4\x90\x80\x80", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},
      {"\xE0\x80\x80", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},
      {"\xFF\xFE", "\xEF\xBF\xBD\xEF\xBF\xBD"},
  };
  for (const auto& [text, wanted] : cases) EXPECT_EQ(hvEscape(text), wanted);
}

TEST_F(DisplayTextTest, ColumnsAreThoseOfATerminal) {
  const std::pair<const char*, std::size_t> cases[] = {
      {"", 0},
      {"abc", 3},
      {"Gr\xC3\xB6\xC3\x9F"
       "e",
       5},
      {"e\xCC\x81", 1},                 // combining accent
      {"\xE6\x97\xA5\xE6\x9C\xAC", 4},  // two wide characters
      {"\xEF\xBC\xA1", 2},              // full-width A
      {"\xF0\x9F\x98\x80", 2},          // emoji
      {"\xEA\xB0\x80", 2},              // one Hangul syllable,
      {"\xE1\x84\x80\xE1\x85\xA1", 2},  // and the same in two parts
      {"a\xE2\x80\x8D"
       "b",
       2},  // joiner
      {"\xFF", 1},
      {"…", 1},
  };
  for (const auto& [text, wanted] : cases) EXPECT_EQ(hvDisplayWidth(text), wanted) << text;
}

TEST_F(DisplayTextTest, CuttingKeepsToTheColumns) {
  const std::string japanese = "\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E";
  EXPECT_EQ(hvCutToWidth("abcdef", 6), "abcdef");
  EXPECT_EQ(hvCutToWidth("abcdef", 5), "abcd…");
  EXPECT_EQ(hvCutToWidth("abcdef", 1), "…");
  EXPECT_EQ(hvCutToWidth("abcdef", 0), "");
  EXPECT_EQ(hvCutToWidth("", 0), "");
  EXPECT_EQ(hvCutToWidth(japanese, 6), japanese);
  EXPECT_EQ(hvCutToWidth(japanese, 5), "\xE6\x97\xA5\xE6\x9C\xAC…");
  EXPECT_EQ(hvCutToWidth(japanese, 4), "\xE6\x97\xA5…") << "half a character is none";
  EXPECT_EQ(hvCutToWidth(japanese, 2), "…");
}

TEST_F(DisplayTextTest, CuttingKeepsAnAccentWithItsLetter) {
  EXPECT_EQ(hvCutToWidth("ae\xCC\x81xyz", 3), "ae\xCC\x81…");
  EXPECT_EQ(hvCutToWidth("abe\xCC\x81", 3), "abe\xCC\x81");
}

}  // namespace
