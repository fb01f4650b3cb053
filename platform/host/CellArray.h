#pragma once

#include <cstddef>

#include "platform/export.h"
#include "platform/host/Array.h"

/// Cell arrays: each element is an array of any class, or null. Nothing can be put into itself: an array that
/// was taken over belongs to its container, and neither changes nor moves elsewhere any more; a shared-data
/// copy of it does.

/// Create a cell array whose cells are null; the caller owns it. Raises TooFewDimensions and ArrayTooLarge.
ND_PLATFORM_EXPORT hvArray* hvCreateCellArray(const hvDims& dimensions);

/// Lend what is in a cell, null included, until the cell array is changed or destroyed. Raises WrongClass,
/// IndexOutOfRange and NullArray.
ND_PLATFORM_EXPORT const hvArray* hvGetCell(const hvArray* array, std::size_t index);

/// Put a value, or null, into a cell; takes over the value and destroys what was there. A call that raises
/// changes nothing and leaves the value with the caller.
///
/// Raises WrongClass, IndexOutOfRange, NullArray, InsideItself if the value is the cell array,
/// AlreadyTakenOver if the value or the cell array belongs to a container, and NestedTooDeep.
ND_PLATFORM_EXPORT void hvSetCell(hvArray* array, std::size_t index, hvArray* value);

/// As above; the pointer is null afterwards, and keeps its value if the call raises.
inline void hvSetCell(hvArray* array, std::size_t index, hvArrayPtr&& value) {
  hvSetCell(array, index, value.get());
  static_cast<void>(value.release());
}
