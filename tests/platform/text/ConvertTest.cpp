#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>
#include <unicode/ustring.h>

#include "platform/text/Convert.h"

namespace {

using lx::text::toUtf16;
using lx::text::toUtf8;

struct Pair {
  std::u16string wide;
  std::string narrow;
};

std::string hex(std::string_view bytes) {
  std::string result;
  for (const char byte : bytes) {
    constexpr char digits[] = "0123456789ABCDEF";
    const auto value = static_cast<unsigned char>(byte);
    result.append({digits[value >> 4], digits[value & 15], ' '});
  }
  return result;
}

std::u16string replacements(std::size_t count) {
  return std::u16string(count, u'\uFFFD');
}

// ICU follows the same practice for what is ill-formed, by a converter of its own.
std::u16string wideByIcu(std::string_view narrow) {
  std::u16string result(narrow.size(), u'\0');
  std::int32_t length = 0;
  UErrorCode status = U_ZERO_ERROR;
  u_strFromUTF8WithSub(result.data(), static_cast<std::int32_t>(result.size()), &length, narrow.data(),
                       static_cast<std::int32_t>(narrow.size()), 0xFFFD, nullptr, &status);
  EXPECT_TRUE(U_SUCCESS(status));
  result.resize(static_cast<std::size_t>(length));
  return result;
}

std::string narrowByIcu(std::u16string_view wide) {
  std::string result(3 * wide.size(), '\0');
  std::int32_t length = 0;
  UErrorCode status = U_ZERO_ERROR;
  u_strToUTF8WithSub(result.data(), static_cast<std::int32_t>(result.size()), &length, wide.data(),
                     static_cast<std::int32_t>(wide.size()), 0xFFFD, nullptr, &status);
  EXPECT_TRUE(U_SUCCESS(status));
  result.resize(static_cast<std::size_t>(length));
  return result;
}

TEST(Convert, KeepsWellFormedTextBothWays) {
  const std::vector<Pair> pairs = {
      {u"", ""},
      {u"plain text, 23 characters", "plain text, 23 characters"},
      {u"\u007F\u0080", "\x7F\xC2\x80"},
      {u"\u07FF\u0800", "\xDF\xBF\xE0\xA0\x80"},
      {u"\uD7FF\uE000", "\xED\x9F\xBF\xEE\x80\x80"},
      {u"\uFFFD\uFFFE\uFFFF", "\xEF\xBF\xBD\xEF\xBF\xBE\xEF\xBF\xBF"},
      {u"\U00010000\U0010FFFF", "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"},
      {u"\uFEFFmark", "\xEF\xBB\xBFmark"},
  };
  for (const Pair& pair : pairs) {
    EXPECT_EQ(toUtf8(pair.wide), pair.narrow) << hex(pair.narrow);
    EXPECT_EQ(toUtf16(pair.narrow), pair.wide) << hex(pair.narrow);
  }
}

TEST(Convert, KeepsEveryCodePointBothWays) {
  for (char32_t point = 0; point <= 0x10FFFF; ++point) {
    if (point >= 0xD800 && point <= 0xDFFF) continue;
    std::u16string wide;
    if (point < 0x10000) {
      wide.push_back(static_cast<char16_t>(point));
    } else {
      wide.push_back(static_cast<char16_t>(0xD7C0 + (point >> 10)));
      wide.push_back(static_cast<char16_t>(0xDC00 + (point & 0x3FF)));
    }
    ASSERT_EQ(toUtf16(toUtf8(wide)), wide) << static_cast<unsigned long>(point);
  }
}

TEST(Convert, KeepsNul) {
  const std::u16string wide(u"a\0\0b", 4);
  const std::string narrow("a\0\0b", 4);
  EXPECT_EQ(toUtf8(wide), narrow);
  EXPECT_EQ(toUtf16(narrow), wide);
}

TEST(Convert, BearsViewsWithoutData) {
  EXPECT_EQ(toUtf8(std::u16string_view()), "");
  EXPECT_EQ(toUtf16(std::string_view()), u"");
}

TEST(Convert, FindsWhatIsNotAsciiAtEveryPlace) {
  for (std::size_t length = 1; length <= 20; ++length) {
    for (std::size_t at = 0; at < length; ++at) {
      std::u16string wide(length, u'x');
      wide[at] = u'\u00E9';
      std::string narrow(length, 'x');
      narrow.replace(at, 1, "\xC3\xA9");
      EXPECT_EQ(toUtf8(wide), narrow) << length << ' ' << at;
      EXPECT_EQ(toUtf16(narrow), wide) << length << ' ' << at;
    }
  }
}

TEST(ToUtf8, ReplacesEachSurrogateWithoutItsPartner) {
  const std::string r = "\xEF\xBF\xBD";
  EXPECT_EQ(toUtf8(std::u16string{0xD800}), r);
  EXPECT_EQ(toUtf8(std::u16string{0xDFFF}), r);
  EXPECT_EQ(toUtf8(std::u16string{u'a', 0xD800, u'b'}), "a" + r + "b");
  EXPECT_EQ(toUtf8(std::u16string{u'a', 0xDC00, u'b'}), "a" + r + "b");
  EXPECT_EQ(toUtf8(std::u16string{0xDC00, 0xD800}), r + r);
  EXPECT_EQ(toUtf8(std::u16string{0xD800, 0xD800, 0xDC00}), r + "\xF0\x90\x80\x80");
  EXPECT_EQ(toUtf8(std::u16string{0xD800, 0xDC00, 0xDC00}), "\xF0\x90\x80\x80" + r);
  EXPECT_EQ(toUtf8(std::u16string{0xDBFF, 0xE000}), r + "\xEE\x80\x80");
}

TEST(ToUtf16, ReplacesEachMaximalIllFormedSequence) {
  const std::vector<Pair> pairs = {
      {replacements(1), "\x80"},
      {replacements(1), "\xFF"},
      {replacements(2), "\xC0\xAF"},                  // overlong
      {replacements(3), "\xE0\x9F\xBF"},              // overlong
      {replacements(4), "\xF0\x8F\xBF\xBF"},          // overlong
      {replacements(3), "\xED\xA0\x80"},              // an encoded surrogate
      {replacements(6), "\xED\xA0\x80\xED\xB0\x80"},  // an encoded pair
      {replacements(4), "\xF4\x90\x80\x80"},          // above U+10FFFF
      {replacements(5), "\xF8\x88\x80\x80\x80"},      // five bytes long
      {replacements(1), "\xC3"},                      // broken off at the end
      {replacements(1), "\xE2\x82"},                  // broken off at the end
      {replacements(1), "\xF0\x9F\x98"},              // broken off at the end
      {replacements(1) + u"A",
       "\xE2\x82"
       "A"},                                                  // broken off by a character
      {replacements(1) + u"\u00E9", "\xF0\x9F\x98\xC3\xA9"},  // broken off by a lead byte
      {replacements(2) + u"A",
       "\xC3\xC3"
       "A"},
      {replacements(8) + u"A",
       "\xC0\xAF\xE0\x80\xBF\xF0\x81\x82"
       "A"},
      {replacements(8) + u"A",
       "\xED\xA0\x80\xED\xBF\xBF\xED\xAF"
       "A"},
      {replacements(5) + u"A" + replacements(2) + u"B",
       "\xF4\x91\x92\x93\xFF"
       "A"
       "\x80\xBF"
       "B"},
      {replacements(4) + u"A",
       "\xE1\x80\xE2\xF0\x91\x92\xF1\xBF"
       "A"},
  };
  for (const Pair& pair : pairs) EXPECT_EQ(toUtf16(pair.narrow), pair.wide) << hex(pair.narrow);
}

TEST(ToUtf16, AgreesWithAnotherConverterOnAllShortSequences) {
  for (unsigned first = 0x80; first <= 0xFF; ++first) {
    for (unsigned second = 0; second <= 0xFF; ++second) {
      const std::string two = {static_cast<char>(first), static_cast<char>(second)};
      ASSERT_EQ(toUtf16(two), wideByIcu(two)) << hex(two);
      for (const char third : {'\x7F', '\x80', '\xBF', '\xC3'}) {
        const std::string five = two + third + "\x80z";
        ASSERT_EQ(toUtf16(five), wideByIcu(five)) << hex(five);
      }
    }
  }
}

TEST(Convert, AgreesWithAnotherConverterOnRandomText) {
  std::mt19937 random(20240611);
  const std::string_view bytes(
      "aZ\x00\x7F\x80\x90\x9F\xA0\xBF\xC0\xC2\xDF\xE0\xE1\xED\xEF\xF0\xF1\xF4\xF5\xFF", 21);
  const std::vector<char16_t> units = {u'a',   0,      0x7F,   0x80,   0x7FF, 0x800,
                                       0xD800, 0xDBFF, 0xDC00, 0xDFFF, 0xFFFF};
  for (int round = 0; round < 20000; ++round) {
    std::string narrow(random() % 24, '\0');
    for (char& byte : narrow) byte = bytes[random() % bytes.size()];
    ASSERT_EQ(toUtf16(narrow), wideByIcu(narrow)) << hex(narrow);
    std::u16string wide(random() % 24, u'\0');
    for (char16_t& unit : wide) unit = units[random() % units.size()];
    ASSERT_EQ(toUtf8(wide), narrowByIcu(wide)) << hex(narrowByIcu(wide));
  }
}

TEST(Convert, ConvertsHugeTextUpToItsLastUnit) {
  constexpr std::size_t size = 4'000'003;
  std::u16string wide(size, u'x');
  wide.back() = 0xD83D;
  std::string expected(size - 1, 'x');
  expected += "\xEF\xBF\xBD";
  EXPECT_TRUE(toUtf8(wide) == expected);
  expected.resize(size + 1);
  EXPECT_TRUE(toUtf16(expected) == std::u16string(size - 1, u'x') + replacements(1));
}

}  // namespace
