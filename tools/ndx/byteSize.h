#pragma once

#include <cstddef>

#include "platform/host/Array.h"

namespace nd::tools {

/// Tell how many bytes the elements of an array take, with those of all that cells and structures hold. A
/// unit of text takes two; names and bookkeeping aren't counted.
std::size_t byteSize(const hvArray* array);

}  // namespace nd::tools
