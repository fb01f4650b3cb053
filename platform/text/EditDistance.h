#pragma once

#include <cstddef>
#include <string_view>

#include "platform/export.h"

namespace lx::text {

/// Tell how many insertions, deletions, replacements and swaps of neighbours turn one text into the other, by
/// UTF-16 unit. The time grows with the product of the lengths.
ND_PLATFORM_EXPORT std::size_t editDistance(std::u16string_view left, std::u16string_view right);

}  // namespace lx::text
