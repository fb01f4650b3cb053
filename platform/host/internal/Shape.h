#pragma once

#include <cstddef>

#include "platform/host/Array.h"

namespace hvdetail {

/// The dimensions of an array; two of them cost no memory of their own.
class Shape {
 public:
  Shape(std::size_t rows, std::size_t columns);
  /// Take at least two dimensions and drop trailing ones of 1 beyond the second.
  explicit Shape(const hvDims& dimensions);

  std::size_t rows() const noexcept { return rows_; }
  std::size_t columns() const noexcept { return columns_; }
  std::size_t count() const noexcept { return count_; }
  const hvDims& higher() const noexcept { return higher_; }
  hvDims dimensions() const;
  bool isMatrix() const noexcept { return higher_.empty(); }
  bool isRow() const noexcept { return rows_ == 1 && higher_.empty(); }

  friend bool operator==(const Shape&, const Shape&) = default;

 private:
  std::size_t rows_;
  std::size_t columns_;
  std::size_t count_;
  hvDims higher_;
};

/// Give count times size; raises ArrayTooLarge when no memory could hold as many bytes.
std::size_t checkedBytes(std::size_t count, std::size_t size);

/// Give count; raises ArrayTooLarge when no memory could hold as many things of a size.
std::size_t checkedCount(std::size_t count, std::size_t size);

}  // namespace hvdetail
