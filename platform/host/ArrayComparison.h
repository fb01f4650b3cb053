#pragma once

#include <cstddef>

#include "platform/export.h"
#include "platform/host/Array.h"

/// Tell whether two arrays hold the same value without any loss: same class, dimensions, complexity and
/// elements, and for structures the same fields in the same order.
///
/// Floating-point elements are equal bit by bit, so that 0 and -0 differ, save that any NaN equals any other.
/// The null value equals itself and the empty 0-by-0 real double that it reads as.
ND_PLATFORM_EXPORT bool hvEqual(const hvArray* left, const hvArray* right);

/// Tell how many bytes the elements take: of numbers, truth values and characters their size, of texts two
/// bytes a unit, of cells and structures the sum of what is in them. Shared data count for each array that
/// holds them; names and bookkeeping don't count; null has 0.
ND_PLATFORM_EXPORT std::size_t hvGetByteSize(const hvArray* array);
