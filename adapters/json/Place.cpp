#include "adapters/json/Place.h"

#include <algorithm>

namespace nd::adapters::json {

Place placeOf(std::string_view text, std::size_t offset) noexcept {
  const std::string_view before = text.substr(0, offset);
  const std::size_t lineBreak = before.rfind('\n');
  const std::string_view line = lineBreak == std::string_view::npos ? before : before.substr(lineBreak + 1);
  const auto lines = std::count(before.begin(), before.end(), '\n');
  const auto codePoints =
      std::count_if(line.begin(), line.end(), [](char byte) { return (byte & 0xC0) != 0x80; });
  return {static_cast<std::size_t>(lines) + 1, static_cast<std::size_t>(codePoints) + 1};
}

std::string describe(const Place& place) {
  return "line " + std::to_string(place.line) + ", column " + std::to_string(place.column);
}

}  // namespace nd::adapters::json
