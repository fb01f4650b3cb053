#include "platform/text/Convert.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace lx::text {

namespace {

constexpr char32_t replacement = 0xFFFD;

struct Decoded {
  char32_t point;
  std::size_t units;
};

// The bits that no ASCII character sets, in four UTF-16 code units or eight bytes at once.
constexpr std::uint64_t beyondAscii16 = 0xFF80FF80FF80FF80U;
constexpr std::uint64_t beyondAscii8 = 0x8080808080808080U;

template <typename Char>
std::size_t asciiPrefix(std::basic_string_view<Char> text, std::uint64_t beyondAscii) {
  constexpr std::size_t step = sizeof(std::uint64_t) / sizeof(Char);
  std::size_t at = 0;
  for (; at + step <= text.size(); at += step) {
    std::uint64_t word = 0;
    std::memcpy(&word, text.data() + at, sizeof word);
    if ((word & beyondAscii) != 0) break;
  }
  while (at < text.size() && static_cast<std::uint32_t>(text[at]) < 0x80) ++at;
  return at;
}

bool isLead(char16_t unit) {
  return (unit & 0xFC00) == 0xD800;
}

bool isTrail(char16_t unit) {
  return (unit & 0xFC00) == 0xDC00;
}

Decoded decode(std::u16string_view text) {
  const char16_t first = text[0];
  if (!isLead(first) && !isTrail(first)) return {first, 1};
  if (isLead(first) && text.size() > 1 && isTrail(text[1])) {
    const char32_t high = first & 0x3FFU;
    const char32_t low = text[1] & 0x3FFU;
    return {0x10000 + (high << 10 | low), 2};
  }
  return {replacement, 1};
}

std::uint8_t byteAt(std::string_view text, std::size_t at) {
  return static_cast<std::uint8_t>(text[at]);
}

// What may follow a lead byte: how many bytes, and the range of the first of them, which is what rules out
// overlong forms, surrogates and values that are too large. The further ones lie between 0x80 and 0xBF.
struct Tail {
  std::size_t bytes;
  std::uint8_t lowest;
  std::uint8_t highest;
};

Tail tailOf(std::uint8_t lead) {
  if (lead >= 0xC2 && lead <= 0xDF) return {1, 0x80, 0xBF};
  if (lead == 0xE0) return {2, 0xA0, 0xBF};
  if (lead == 0xED) return {2, 0x80, 0x9F};
  if (lead >= 0xE1 && lead <= 0xEF) return {2, 0x80, 0xBF};
  if (lead == 0xF0) return {3, 0x90, 0xBF};
  if (lead >= 0xF1 && lead <= 0xF3) return {3, 0x80, 0xBF};
  if (lead == 0xF4) return {3, 0x80, 0x8F};
  return {0, 0, 0};
}

Decoded decode(std::string_view text) {
  const std::uint8_t lead = byteAt(text, 0);
  if (lead < 0x80) return {lead, 1};
  const Tail tail = tailOf(lead);
  if (tail.bytes == 0) return {replacement, 1};
  char32_t point = lead & (0x3FU >> tail.bytes);
  for (std::size_t at = 1; at <= tail.bytes; ++at) {
    const std::uint8_t lowest = at == 1 ? tail.lowest : std::uint8_t{0x80};
    const std::uint8_t highest = at == 1 ? tail.highest : std::uint8_t{0xBF};
    if (at == text.size() || byteAt(text, at) < lowest || byteAt(text, at) > highest)
      return {replacement, at};
    point = point << 6 | (byteAt(text, at) & 0x3FU);
  }
  return {point, tail.bytes + 1};
}

std::size_t narrowLength(char32_t point) {
  if (point < 0x80) return 1;
  if (point < 0x800) return 2;
  return point < 0x10000 ? 3 : 4;
}

char* write(char32_t point, char* to) {
  const std::size_t length = narrowLength(point);
  if (length == 1) {
    *to = static_cast<char>(point);
    return to + 1;
  }
  for (std::size_t at = length - 1; at > 0; --at) {
    to[at] = static_cast<char>(0x80U | (point & 0x3FU));
    point >>= 6;
  }
  to[0] = static_cast<char>((0xF00U >> length & 0xF0U) | point);
  return to + length;
}

std::size_t wideLength(char32_t point) {
  return point < 0x10000 ? 1 : 2;
}

char16_t* write(char32_t point, char16_t* to) {
  if (point < 0x10000) {
    *to = static_cast<char16_t>(point);
    return to + 1;
  }
  const char32_t offset = point - 0x10000;
  to[0] = static_cast<char16_t>(0xD800U | offset >> 10);
  to[1] = static_cast<char16_t>(0xDC00U | (offset & 0x3FFU));
  return to + 2;
}

// Measures first, so that the result is allocated once and holds nothing to spare.
template <typename To, typename From, typename Length>
std::basic_string<To> convert(std::basic_string_view<From> text, std::size_t ascii, Length length) {
  std::size_t total = ascii;
  for (std::size_t at = ascii; at < text.size();) {
    const Decoded next = decode(text.substr(at));
    total += length(next.point);
    at += next.units;
  }
  std::basic_string<To> result(total, To());
  To* to = result.data();
  for (std::size_t at = 0; at < ascii; ++at) *to++ = static_cast<To>(text[at]);
  for (std::size_t at = ascii; at < text.size();) {
    const Decoded next = decode(text.substr(at));
    to = write(next.point, to);
    at += next.units;
  }
  return result;
}

}  // namespace

std::string toUtf8(std::u16string_view wide) {
  return convert<char>(wide, asciiPrefix(wide, beyondAscii16), narrowLength);
}

std::u16string toUtf16(std::string_view narrow) {
  return convert<char16_t>(narrow, asciiPrefix(narrow, beyondAscii8), wideLength);
}

}  // namespace lx::text
