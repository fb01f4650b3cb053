#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace nd::adapters::json {

/// A place in a text as people count: lines and columns from 1. A line ends with a line feed; a column is a
/// code point.
struct Place {
  std::size_t line = 1;
  std::size_t column = 1;

  friend bool operator==(const Place&, const Place&) = default;
};

/// Find the place of a byte of UTF-8. An offset behind the text gives the place of its end.
Place placeOf(std::string_view text, std::size_t offset) noexcept;

/// Spell a place: "line 3, column 9".
std::string describe(const Place& place);

}  // namespace nd::adapters::json
