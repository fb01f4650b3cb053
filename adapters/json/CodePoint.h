#pragma once

#include <cstddef>
#include <string_view>

namespace nd::adapters::json {

/// One code point of UTF-8 and the number of its bytes; no bytes if the sequence is ill-formed.
struct CodePoint {
  char32_t value = 0;
  std::size_t length = 0;
};

/// Read the code point at an offset within the text. Overlong forms, surrogates and what lies beyond U+10FFFF
/// are ill-formed.
CodePoint codePointAt(std::string_view text, std::size_t offset) noexcept;

}  // namespace nd::adapters::json
