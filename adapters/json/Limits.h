#pragma once

#include <cstddef>
#include <cstdint>

/// How much the reader of JSON takes on.
namespace nd::adapters::json {

/// The largest file that is read, in bytes.
inline constexpr std::uint64_t maximumFileSize = std::uint64_t{2} << 30;

/// How deep objects and arrays may stand in one another; the object at the top is the first level. The
/// reader's recursion is bounded by it, and cells and structures of the host nest at least this deep.
inline constexpr std::size_t maximumDepth = 256;

/// How many files may include one another in a row; the first one counts.
inline constexpr std::size_t maximumIncludeDepth = 64;

/// The longest name of a variable, in bytes.
inline constexpr std::size_t maximumVariableNameLength = 4096;

}  // namespace nd::adapters::json
