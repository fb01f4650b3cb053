#include <cstddef>
#include <string>

#include <gtest/gtest.h>

#include "adapters/json/CodePoint.h"

using nd::adapters::json::codePointAt;

namespace {

std::string encode(char32_t value, std::size_t length) {
  std::string bytes(length, '\0');
  for (std::size_t index = length; index-- > 1;) {
    bytes[index] = static_cast<char>(0x80 | (value & 0x3F));
    value >>= 6;
  }
  const unsigned marks[] = {0, 0, 0xC0, 0xE0, 0xF0};
  bytes[0] = static_cast<char>(marks[length] | value);
  return bytes;
}

}  // namespace

TEST(CodePointAt, ReadsTheFirstAndTheLastOfEachLength) {
  struct {
    char32_t value;
    std::size_t length;
  } const cases[] = {{0x00, 1},   {0x7F, 1},   {0x80, 2},   {0x7FF, 2},   {0x800, 3},
                     {0xD7FF, 3}, {0xE000, 3}, {0xFFFF, 3}, {0x10000, 4}, {0x10FFFF, 4}};
  for (const auto& [value, length] : cases) {
    const std::string text = "x" + encode(value, length) + "y";
    const auto found = codePointAt(text, 1);
    EXPECT_EQ(found.value, value);
    EXPECT_EQ(found.length, length) << std::hex << static_cast<unsigned>(value);
  }
}

TEST(CodePointAt, RefusesOverlongForms) {
  EXPECT_EQ(codePointAt(encode(0x2F, 2), 0).length, 0U);
  EXPECT_EQ(codePointAt(encode(0x7FF, 3), 0).length, 0U);
  EXPECT_EQ(codePointAt(encode(0xFFFF, 4), 0).length, 0U);
}

TEST(CodePointAt, RefusesSurrogatesAndWhatLiesBeyondUnicode) {
  EXPECT_EQ(codePointAt(encode(0xD800, 3), 0).length, 0U);
  EXPECT_EQ(codePointAt(encode(0xDFFF, 3), 0).length, 0U);
  EXPECT_EQ(codePointAt(encode(0x110000, 4), 0).length, 0U);
  EXPECT_EQ(codePointAt("\xF5\x80\x80\x80", 0).length, 0U);
}

TEST(CodePointAt, RefusesStrayAndMissingContinuations) {
  EXPECT_EQ(codePointAt("\x80", 0).length, 0U);
  EXPECT_EQ(codePointAt("\xBF", 0).length, 0U);
  EXPECT_EQ(codePointAt("\xC3", 0).length, 0U);
  EXPECT_EQ(codePointAt("\xC3x", 0).length, 0U);
  EXPECT_EQ(codePointAt("\xE2\x82", 0).length, 0U);
  EXPECT_EQ(codePointAt("\xE2\x82x", 0).length, 0U);
  EXPECT_EQ(codePointAt("\xFF", 0).length, 0U);
}
