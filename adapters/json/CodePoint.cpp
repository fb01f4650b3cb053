#include "adapters/json/CodePoint.h"

#include <array>
#include <cstdint>

namespace nd::adapters::json {

CodePoint codePointAt(std::string_view text, std::size_t offset) noexcept {
  const auto byteAt = [&](std::size_t index) { return static_cast<std::uint8_t>(text[offset + index]); };
  const std::uint8_t first = byteAt(0);
  if (first < 0x80) return {first, 1};
  const std::size_t length = first < 0xC2   ? 0U
                             : first < 0xE0 ? 2U
                             : first < 0xF0 ? 3U
                             : first < 0xF5 ? 4U
                                            : 0U;
  if (length == 0 || text.size() - offset < length) return {};
  char32_t value = first & (0x7FU >> length);
  for (std::size_t index = 1; index < length; ++index) {
    if ((byteAt(index) & 0xC0) != 0x80) return {};
    value = (value << 6) | (byteAt(index) & 0x3FU);
  }
  constexpr std::array<char32_t, 5> smallest{0, 0, 0x80, 0x800, 0x10000};
  const bool isSurrogate = value >= 0xD800 && value <= 0xDFFF;
  if (value < smallest[length] || value > 0x10FFFF || isSurrogate) return {};
  return {value, length};
}

}  // namespace nd::adapters::json
