#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

#include "platform/export.h"

/// A value of the host: an array of numbers, truth values, characters, texts, cells or structures.
///
/// An array is held by pointer and read and changed only through functions; a null pointer is the null value,
/// which reads as an empty 0-by-0 double. Elements are kept column by column, and an index counts them in
/// this order from 0. Every array has at least two dimensions; trailing dimensions of 1 beyond the second are
/// dropped.
///
///     hvArrayPtr gains{hvCreateNumericMatrix(2, 3, hvClassCode::Double, hvComplexity::Real)};
///     hvData<double> writable = hvGetWritableData<double>(gains.get());
///     std::fill(writable.begin(), writable.end(), 1.5);
///     hvArrayPtr snapshot{hvCreateSharedDataCopy(gains.get())};
///
/// The snapshot shares the six numbers until one of the two is changed.
///
/// Ownership: "the caller owns" means that the array is freed with hvDestroyArray; "lends" means that it
/// stays somebody else's and is valid as long as the text says; "takes over" means that it is the caller's no
/// more, and only once the call has returned normally.
///
/// Arrays of one process belong to one thread: their counters are plain integers.
class hvArray;

/// What the elements of an array are.
enum class hvClassCode : int {
  Unknown = 0,
  Logical = 1,
  Character = 2,
  String = 3,
  Cell = 4,
  Structure = 5,
  Single = 6,
  Double = 7,
  Int8 = 8,
  UInt8 = 9,
  Int16 = 10,
  UInt16 = 11,
  Int32 = 12,
  UInt32 = 13,
  Int64 = 14,
  UInt64 = 15,
  Object = 16
};

/// Whether a numeric array has an imaginary part.
enum class hvComplexity : int { Real = 0, Complex = 1 };

/// The sizes of an array along its dimensions: rows, columns, pages and so on.
using hvDims = std::vector<std::size_t>;

/// How deep cells and structures may be nested in one another; more raises NestedTooDeep.
inline constexpr std::size_t hvMaximumNesting = 1000;

/// Free an array that the caller owns, with everything in it; null is borne, and an array that a cell, a
/// structure or a workspace has taken over is left alone, for it is freed there.
ND_PLATFORM_EXPORT void hvDestroyArray(hvArray* array) noexcept;

struct hvArrayDeleter {
  void operator()(hvArray* array) const noexcept { hvDestroyArray(array); }
};

/// An array that its holder owns.
using hvArrayPtr = std::unique_ptr<hvArray, hvArrayDeleter>;

/// Create a two-dimensional numeric array of zeros; the caller owns it. Raises NotNumeric for a class without
/// numbers and ArrayTooLarge for a size that no memory could hold.
ND_PLATFORM_EXPORT hvArray* hvCreateNumericMatrix(std::size_t rows, std::size_t columns,
                                                  hvClassCode classCode,
                                                  hvComplexity complexity = hvComplexity::Real);

/// Create a numeric array of zeros with the given dimensions; the caller owns it. Raises NotNumeric,
/// ArrayTooLarge, and TooFewDimensions for fewer than two.
ND_PLATFORM_EXPORT hvArray* hvCreateNumericArray(const hvDims& dimensions, hvClassCode classCode,
                                                 hvComplexity complexity = hvComplexity::Real);

/// Create a 1-by-1 array of class double; the caller owns it.
ND_PLATFORM_EXPORT hvArray* hvCreateDoubleScalar(double value);

/// Create an array of truth values, all false; the caller owns it.
ND_PLATFORM_EXPORT hvArray* hvCreateLogicalArray(const hvDims& dimensions);

/// Create a 1-by-1 array of class logical; the caller owns it.
ND_PLATFORM_EXPORT hvArray* hvCreateLogicalScalar(bool value);

/// Create a second array with the same value; the caller owns it, and null gives null.
///
/// The data are shared until one of the two is changed, nested arrays included, so that the cost does not
/// depend on their size. Writable data taken from the original before are stale from now on.
ND_PLATFORM_EXPORT hvArray* hvCreateSharedDataCopy(const hvArray* array);

/// Tell the class code; Unknown for null.
ND_PLATFORM_EXPORT hvClassCode hvGetClassCode(const hvArray* array) noexcept;

/// Tell the name of the class: "logical", "char", "string", "cell", "struct", "single", "double", "int8",
/// "uint8", "int16", "uint16", "int32", "uint32", "int64" or "uint64"; empty for null. The text is on loan
/// for as long as the array lives.
ND_PLATFORM_EXPORT std::string_view hvGetClassName(const hvArray* array) noexcept;

/// Tell whether the class has exactly this name; false for null.
ND_PLATFORM_EXPORT bool hvIsClass(const hvArray* array, std::string_view className) noexcept;

/// Tell whether the array is of the named class or of one of the families "numeric" (all integers, single and
/// double), "float" (single and double) and "integer"; false for null.
ND_PLATFORM_EXPORT bool hvIsA(const hvArray* array, std::string_view className) noexcept;

/// Tell whether the elements are numbers: integers, single or double, real or complex.
ND_PLATFORM_EXPORT bool hvIsNumeric(const hvArray* array) noexcept;
ND_PLATFORM_EXPORT bool hvIsLogical(const hvArray* array) noexcept;
ND_PLATFORM_EXPORT bool hvIsChar(const hvArray* array) noexcept;
ND_PLATFORM_EXPORT bool hvIsString(const hvArray* array) noexcept;
ND_PLATFORM_EXPORT bool hvIsCell(const hvArray* array) noexcept;
ND_PLATFORM_EXPORT bool hvIsStruct(const hvArray* array) noexcept;

/// Tell whether the array was created complex, whatever its imaginary parts are.
ND_PLATFORM_EXPORT bool hvIsComplex(const hvArray* array) noexcept;

/// Tell whether there is no element; true for null.
ND_PLATFORM_EXPORT bool hvIsEmpty(const hvArray* array) noexcept;

/// Tell whether there is exactly one element.
ND_PLATFORM_EXPORT bool hvIsScalar(const hvArray* array) noexcept;

/// Tell the sizes along all dimensions, at least two of them; 0 and 0 for null.
ND_PLATFORM_EXPORT hvDims hvGetDimensions(const hvArray* array);

/// Tell the product of all dimensions; 0 for null.
ND_PLATFORM_EXPORT std::size_t hvGetNumberOfElements(const hvArray* array) noexcept;

/// Tell the number of rows, the first dimension; 0 for null.
ND_PLATFORM_EXPORT std::size_t hvGetM(const hvArray* array) noexcept;

/// Tell the number of columns, the second dimension alone: a 2-by-3-by-4 array has 3; 0 for null.
ND_PLATFORM_EXPORT std::size_t hvGetN(const hvArray* array) noexcept;

/// Tell how many arrays are alive in this process. Each array counts, also one within a cell, a structure or
/// a workspace; arrays that two copies still share count once.
ND_PLATFORM_EXPORT std::size_t hvGetLiveArrayCount() noexcept;
