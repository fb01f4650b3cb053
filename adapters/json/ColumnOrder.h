#pragma once

#include <algorithm>
#include <cstddef>

#include "adapters/json/Block.h"

namespace nd::adapters::json {

/// Call `move(to, from)` for every element of a shape: `from` counts as JSON nests, the innermost level
/// first, `to` column by column, the outermost level first.
///
/// The outermost and the innermost level are walked in tiles, so that both sides are read and written in
/// whole cache lines however large the levels are.
template <typename Move>
void forEachInColumnOrder(const BlockShape& shape, const Move& move) {
  constexpr std::size_t tile = 16;
  const std::size_t count = countElements(shape);
  if (count == 0) return;
  if (shape.size() < 2) {
    for (std::size_t index = 0; index < count; ++index) move(index, index);
    return;
  }
  const std::size_t rows = shape.front();
  const std::size_t inner = shape.back();
  const std::size_t fromRow = count / rows;   // from one outermost index to the next
  const std::size_t toInner = count / inner;  // from one innermost index to the next
  boost::container::small_vector<std::size_t, 4> index(shape.size(), 0);
  for (std::size_t from = 0; from < fromRow; from += inner) {
    std::size_t to = 0;
    std::size_t stride = rows;
    for (std::size_t level = 1; level + 1 < shape.size(); ++level) {
      to += index[level] * stride;
      stride *= shape[level];
    }
    for (std::size_t row = 0; row < rows; row += tile) {
      for (std::size_t column = 0; column < inner; column += tile) {
        for (std::size_t i = row; i < std::min(row + tile, rows); ++i) {
          for (std::size_t j = column; j < std::min(column + tile, inner); ++j) {
            move(to + i + j * toInner, from + i * fromRow + j);
          }
        }
      }
    }
    for (std::size_t level = shape.size() - 1; level-- > 1;) {
      if (++index[level] < shape[level]) break;
      index[level] = 0;
    }
  }
}

}  // namespace nd::adapters::json
