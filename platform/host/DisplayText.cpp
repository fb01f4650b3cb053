#include "platform/host/internal/DisplayText.h"

#include <unicode/uchar.h>

#include "platform/host/ArrayText.h"

namespace hvdetail {
namespace {

constexpr char32_t replacement = 0xFFFD;
constexpr std::string_view ellipsis = "…";

// Joiners have no look of their own and are part of words and emoji, so that they stay as they are.
bool isJoiner(char32_t codePoint) noexcept {
  return codePoint == 0x200C || codePoint == 0x200D;
}

bool drivesTerminal(char32_t codePoint) noexcept {
  if (codePoint < 0x7F) return codePoint < 0x20;
  switch (u_charType(static_cast<UChar32>(codePoint))) {
    case U_CONTROL_CHAR:
    case U_SURROGATE:
    case U_LINE_SEPARATOR:
    case U_PARAGRAPH_SEPARATOR:
      return true;
    case U_FORMAT_CHAR:
      return !isJoiner(codePoint);
    default:
      return false;
  }
}

void appendUtf8(std::string& text, char32_t codePoint) {
  const auto add = [&text](char32_t byte) { text += static_cast<char>(static_cast<unsigned char>(byte)); };
  if (codePoint < 0x80) {
    add(codePoint);
  } else if (codePoint < 0x800) {
    add(0xC0 | (codePoint >> 6));
    add(0x80 | (codePoint & 0x3F));
  } else if (codePoint < 0x10000) {
    add(0xE0 | (codePoint >> 12));
    add(0x80 | ((codePoint >> 6) & 0x3F));
    add(0x80 | (codePoint & 0x3F));
  } else {
    add(0xF0 | (codePoint >> 18));
    add(0x80 | ((codePoint >> 12) & 0x3F));
    add(0x80 | ((codePoint >> 6) & 0x3F));
    add(0x80 | (codePoint & 0x3F));
  }
}

std::size_t appendEscape(std::string& text, char32_t codePoint) {
  static constexpr std::string_view digits = "0123456789abcdef";
  const std::size_t before = text.size();
  text += '\\';
  if (codePoint == '\n' || codePoint == '\t' || codePoint == '\r') {
    text += codePoint == '\n' ? 'n' : codePoint == '\t' ? 't' : 'r';
    return 2;
  }
  text += codePoint > 0xFFFF ? 'U' : 'u';
  for (unsigned shift = codePoint > 0xFFFF ? 32 : 16; shift > 0; shift -= 4) {
    text += digits[(codePoint >> (shift - 4)) & 0xF];
  }
  return text.size() - before;
}

struct Lead {
  std::size_t trailing;
  char32_t bits;
  unsigned char lowest;   // what the second byte may be: this keeps out overlong forms,
  unsigned char highest;  // surrogates and what is beyond U+10FFFF
};

Lead leadOf(unsigned char byte) noexcept {
  const char32_t bits = byte;
  if (byte >= 0xC2 && byte <= 0xDF) return {1, bits & 0x1F, 0x80, 0xBF};
  if (byte >= 0xE0 && byte <= 0xEF) {
    const unsigned char lowest = byte == 0xE0 ? 0xA0 : 0x80;
    const unsigned char highest = byte == 0xED ? 0x9F : 0xBF;
    return {2, bits & 0x0F, lowest, highest};
  }
  if (byte >= 0xF0 && byte <= 0xF4) {
    const unsigned char lowest = byte == 0xF0 ? 0x90 : 0x80;
    const unsigned char highest = byte == 0xF4 ? 0x8F : 0xBF;
    return {3, bits & 0x07, lowest, highest};
  }
  return {0, replacement, 0, 0};
}

}  // namespace

char32_t nextCodePoint(std::u16string_view text, std::size_t& position) noexcept {
  const char32_t first = text[position++];
  const bool isLead = first >= 0xD800 && first <= 0xDBFF;
  if (!isLead || position == text.size()) return first;
  const char32_t second = text[position];
  if (second < 0xDC00 || second > 0xDFFF) return first;
  ++position;
  return 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00);
}

char32_t nextCodePoint(std::string_view utf8, std::size_t& position) noexcept {
  const auto first = static_cast<unsigned char>(utf8[position++]);
  if (first < 0x80) return first;
  const Lead lead = leadOf(first);
  char32_t codePoint = lead.bits;
  for (std::size_t i = 0; i < lead.trailing; ++i) {
    if (position == utf8.size()) return replacement;
    const auto byte = static_cast<unsigned char>(utf8[position]);
    const unsigned char lowest = i == 0 ? lead.lowest : 0x80;
    const unsigned char highest = i == 0 ? lead.highest : 0xBF;
    if (byte < lowest || byte > highest) return replacement;
    codePoint = (codePoint << 6) | (byte & 0x3FU);
    ++position;
  }
  return codePoint;
}

std::size_t columnsOf(char32_t codePoint) noexcept {
  if (codePoint < 0x7F) return codePoint < 0x20 ? 0 : 1;
  const auto character = static_cast<UChar32>(codePoint);
  const int8_t type = u_charType(character);
  if (type == U_NON_SPACING_MARK || type == U_ENCLOSING_MARK || type == U_CONTROL_CHAR ||
      type == U_FORMAT_CHAR) {
    return 0;
  }
  const int32_t syllable = u_getIntPropertyValue(character, UCHAR_HANGUL_SYLLABLE_TYPE);
  if (syllable == U_HST_VOWEL_JAMO || syllable == U_HST_TRAILING_JAMO) return 0;
  const int32_t width = u_getIntPropertyValue(character, UCHAR_EAST_ASIAN_WIDTH);
  return width == U_EA_WIDE || width == U_EA_FULLWIDTH ? 2 : 1;
}

std::size_t appendSafely(std::string& text, char32_t codePoint, bool withinQuotes) {
  if (drivesTerminal(codePoint)) return appendEscape(text, codePoint);
  const bool escaped = withinQuotes && (codePoint == '"' || codePoint == '\\');
  if (escaped) text += '\\';
  appendUtf8(text, codePoint);
  return columnsOf(codePoint) + (escaped ? 1 : 0);
}

std::size_t appendQuoted(std::string& text, std::u16string_view quoted) {
  std::size_t columns = 2;
  text += '"';
  for (std::size_t position = 0; position < quoted.size();) {
    columns += appendSafely(text, nextCodePoint(quoted, position), true);
  }
  text += '"';
  return columns;
}

std::string cutWithEllipsis(std::string_view utf8, std::size_t width) {
  if (width == 0) return {};
  std::size_t kept = 0;
  std::size_t columns = 0;
  for (std::size_t position = 0; position < utf8.size();) {
    columns += columnsOf(nextCodePoint(utf8, position));
    if (columns > width - 1) break;
    kept = position;
  }
  std::string text(utf8.substr(0, kept));
  text += ellipsis;
  return text;
}

}  // namespace hvdetail

std::string hvEscape(std::string_view utf8) {
  std::string text;
  text.reserve(utf8.size());
  for (std::size_t position = 0; position < utf8.size();) {
    hvdetail::appendSafely(text, hvdetail::nextCodePoint(utf8, position), false);
  }
  return text;
}

std::size_t hvDisplayWidth(std::string_view utf8) {
  std::size_t columns = 0;
  for (std::size_t position = 0; position < utf8.size();) {
    columns += hvdetail::columnsOf(hvdetail::nextCodePoint(utf8, position));
  }
  return columns;
}

std::string hvCutToWidth(std::string_view utf8, std::size_t width) {
  std::size_t columns = 0;
  for (std::size_t position = 0; position < utf8.size();) {
    columns += hvdetail::columnsOf(hvdetail::nextCodePoint(utf8, position));
    if (columns > width) return hvdetail::cutWithEllipsis(utf8, width);
  }
  return std::string(utf8);
}
