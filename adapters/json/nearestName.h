#pragma once

#include <span>
#include <string_view>

namespace nd::adapters::json {

/// Give the one of some names, at least one, that takes the fewest changes of a character, swaps of
/// neighbours among them, to get from what was written; the first of several. Only the beginnings of long
/// names are looked at.
std::string_view nearestName(std::string_view written, std::span<const std::string_view> names);

}  // namespace nd::adapters::json
