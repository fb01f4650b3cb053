#include "adapters/json/nearestName.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace nd::adapters::json {
namespace {

/// What is longer differs more than names that are alike; and the time grows with the length.
constexpr std::size_t longestName = 64;

std::size_t distance(std::string_view left, std::string_view right) {
  std::vector<std::size_t> row(right.size() + 1);
  for (std::size_t column = 0; column <= right.size(); ++column) row[column] = column;
  for (std::size_t i = 0; i < left.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i + 1;
    for (std::size_t j = 0; j < right.size(); ++j) {
      const std::size_t replaced = diagonal + (left[i] == right[j] ? 0U : 1U);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, diagonal + 1, row[j] + 1});
    }
  }
  return row.back();
}

}  // namespace

std::string_view nearestName(std::string_view written, std::span<const std::string_view> names) {
  written = written.substr(0, longestName);
  std::string_view nearest = names.front();
  std::size_t least = distance(written, nearest);
  for (const std::string_view name : names.subspan(1)) {
    const std::size_t far = distance(written, name);
    if (far >= least) continue;
    nearest = name;
    least = far;
  }
  return nearest;
}

}  // namespace nd::adapters::json
