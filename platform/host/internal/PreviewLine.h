#pragma once

#include <cstddef>
#include <limits>
#include <string>
#include <string_view>

#include "platform/host/Array.h"

namespace hvdetail {

/// A line of text that stops growing once it is wider than it may be.
class PreviewLine {
 public:
  static constexpr std::size_t unlimited = std::numeric_limits<std::size_t>::max();

  explicit PreviewLine(std::size_t width) noexcept : width_(width) {}

  /// Append the short form of a value, or a part of it if it doesn't fit.
  void addValue(const hvArray* array);

  bool isFull() const noexcept { return isCut_ || columns_ > width_; }
  /// Give the line, cut with "…" if something didn't fit.
  std::string finish() const;

 private:
  void add(std::string_view ascii);
  void addElement(const hvArray& array, std::size_t index);
  void addQuoted(std::u16string_view text);
  void addName(std::string_view name);
  void addCodePoint(char32_t codePoint, bool withinQuotes);
  void addEmpty(const hvArray* array);
  void addFields(const hvArray& structure);
  void addMatrix(const hvArray& array);
  void addCharacterRow(const hvArray& array, std::size_t row);
  void addMatrixItem(const hvArray& array, std::size_t row, std::size_t column);

  std::string text_;
  std::size_t columns_ = 0;
  std::size_t width_;
  bool isCut_ = false;
};

}  // namespace hvdetail
