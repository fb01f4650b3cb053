#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/host/Array.h"

/// How much the reader of JSON takes on.
namespace nd::adapters::json {

/// The largest file that is read, in bytes.
inline constexpr std::uint64_t maximumFileSize = std::uint64_t{2} << 30;

/// How deep objects and arrays may stand in one another; the object at the top is the first level. A tagged
/// value counts as two, however its elements are written. The reader's recursion is bounded by it.
inline constexpr std::size_t maximumDepth = 2048;

/// Up to how many dimensions the plain form of an array counts as its form.
inline constexpr std::size_t maximumPlainDimensions = 32;

// So whatever the host can hold has a form: a row of structures takes an array and an object for each level
// of the host. The last term is for the object at the top, "$meta" and a variable's metadata.
static_assert(2 * hvMaximumNesting + maximumPlainDimensions + 3 <= maximumDepth);

/// The most bytes that a file has together with all files that it includes, and the most of those files, it
/// itself counted.
inline constexpr std::uint64_t maximumTotalSize = maximumFileSize;
inline constexpr std::size_t maximumFileCount = 1000;

/// How many files may include one another in a row; the first one counts.
inline constexpr std::size_t maximumIncludeDepth = 64;

/// The longest name of a variable, in bytes.
inline constexpr std::size_t maximumVariableNameLength = 4096;

}  // namespace nd::adapters::json
