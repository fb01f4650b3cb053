#pragma once

#include <cstddef>
#include <string>

#include "platform/host/Array.h"

namespace hvdetail {

/// How many columns a text takes on the two sides of the place by which a table aligns it.
struct TextExtent {
  std::size_t left = 0;
  std::size_t right = 0;
};

/// Writes single elements of a numeric, logical or string array for people.
class ElementText {
 public:
  explicit ElementText(const hvArray& array);

  /// Append an element. Numbers are aligned by the decimal point, complex ones by the sign of the imaginary
  /// part, everything else by its beginning.
  TextExtent append(std::string& text, std::size_t index) const { return append_(text, data_, index); }

 private:
  using Append = TextExtent (*)(std::string& text, const void* data, std::size_t index);

  static Append appenderFor(const hvArray& array);

  const void* data_;
  Append append_;
};

/// Tell whether ElementText can write the elements of an array.
bool hasElementText(const hvArray* array) noexcept;

}  // namespace hvdetail
