#include "platform/text/EditDistance.h"

#include <algorithm>
#include <vector>

namespace lx::text {

std::size_t editDistance(std::u16string_view left, std::u16string_view right) {
  std::vector<std::size_t> beforeLast(right.size() + 1);
  std::vector<std::size_t> last(right.size() + 1);
  std::vector<std::size_t> row(right.size() + 1);
  for (std::size_t column = 0; column <= right.size(); ++column) row[column] = column;
  for (std::size_t i = 1; i <= left.size(); ++i) {
    beforeLast.swap(last);
    last.swap(row);
    row[0] = i;
    for (std::size_t j = 1; j <= right.size(); ++j) {
      const bool isSame = left[i - 1] == right[j - 1];
      row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (isSame ? 0U : 1U)});
      const bool isSwap = i > 1 && j > 1 && left[i - 1] == right[j - 2] && left[i - 2] == right[j - 1];
      if (isSwap) row[j] = std::min(row[j], beforeLast[j - 2] + 1);
    }
  }
  return row[right.size()];
}

}  // namespace lx::text
