#include "platform/host/internal/Shape.h"

#include <cstdint>
#include <string>

#include "platform/host/internal/raise.h"

namespace hvdetail {
namespace {

std::string describeSize(const hvDims& dimensions) {
  std::string size;
  for (const std::size_t dimension : dimensions) {
    if (!size.empty()) size += "-by-";
    size += std::to_string(dimension);
  }
  return size;
}

// An extent of 0 makes the product 0, whatever the others are, but the others must not overflow on the way.
std::size_t countOf(const hvDims& dimensions) {
  std::size_t count = 1;
  bool overflow = false;
  for (const std::size_t dimension : dimensions) {
    if (dimension == 0) return 0;
    overflow = overflow || __builtin_mul_overflow(count, dimension, &count);
  }
  if (overflow) raiseArrayTooLarge(describeSize(dimensions));
  return count;
}

}  // namespace

Shape::Shape(std::size_t rows, std::size_t columns) : rows_(rows), columns_(columns), count_(0) {
  if (__builtin_mul_overflow(rows, columns, &count_)) raiseArrayTooLarge(describeSize({rows, columns}));
}

Shape::Shape(const hvDims& dimensions) : rows_(0), columns_(0), count_(0) {
  if (dimensions.size() < 2) raiseTooFewDimensions(dimensions.size());
  rows_ = dimensions[0];
  columns_ = dimensions[1];
  count_ = countOf(dimensions);
  std::size_t used = dimensions.size();
  while (used > 2 && dimensions[used - 1] == 1) --used;
  higher_.assign(dimensions.begin() + 2, dimensions.begin() + static_cast<std::ptrdiff_t>(used));
}

hvDims Shape::dimensions() const {
  hvDims dimensions;
  dimensions.reserve(2 + higher_.size());
  dimensions.push_back(rows_);
  dimensions.push_back(columns_);
  dimensions.insert(dimensions.end(), higher_.begin(), higher_.end());
  return dimensions;
}

std::size_t checkedBytes(std::size_t count, std::size_t size) {
  std::size_t bytes = 0;
  if (__builtin_mul_overflow(count, size, &bytes) || bytes > static_cast<std::size_t>(PTRDIFF_MAX) / 2) {
    raiseArrayTooLarge(std::to_string(count));
  }
  return bytes;
}

std::size_t checkedCount(std::size_t count, std::size_t size) {
  static_cast<void>(checkedBytes(count, size));
  return count;
}

}  // namespace hvdetail
