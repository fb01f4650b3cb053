#include "adapters/json/nearestName.h"

#include <cstddef>
#include <limits>
#include <string>

#include "platform/text/Convert.h"
#include "platform/text/EditDistance.h"

namespace nd::adapters::json {
namespace {

/// What is longer differs more than names that are alike; and the time grows with the length.
constexpr std::size_t longestName = 64;

std::u16string beginningOf(std::string_view name) {
  return lx::text::toUtf16(name.substr(0, longestName));
}

std::size_t difference(std::size_t left, std::size_t right) {
  return left > right ? left - right : right - left;
}

}  // namespace

std::string_view nearestName(std::string_view written, std::span<const std::string_view> names) {
  const std::u16string sought = beginningOf(written);
  std::string_view nearest;
  std::size_t least = std::numeric_limits<std::size_t>::max();
  for (const std::string_view name : names) {
    const std::u16string beginning = beginningOf(name);
    if (difference(sought.size(), beginning.size()) >= least) continue;
    const std::size_t distance = lx::text::editDistance(sought, beginning);
    if (distance >= least) continue;
    nearest = name;
    least = distance;
  }
  return nearest;
}

}  // namespace nd::adapters::json
