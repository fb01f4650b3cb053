#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "platform/export.h"
#include "platform/host/Array.h"

/// Structure arrays: every element has the same named fields, in the order of their creation, and each field
/// of each element holds an array of any class, or null. Field names are UTF-8, compared byte by byte; any
/// text is a name. As with cells, nothing can be put into itself.
///
///     hvArrayPtr limits{hvCreateStructArray({1, 1}, {"lower", "upper"})};
///     hvSetField(limits.get(), 0, "lower", hvArrayPtr(hvCreateDoubleScalar(-1)));

/// Create a structure array whose fields are null; the caller owns it. Raises DuplicateField,
/// TooFewDimensions and ArrayTooLarge.
ND_PLATFORM_EXPORT hvArray* hvCreateStructArray(const hvDims& dimensions,
                                                std::vector<std::string> fieldNames);

/// Tell the number of fields of each element. Raises WrongClass and NullArray.
ND_PLATFORM_EXPORT std::size_t hvGetNumberOfFields(const hvArray* array);

/// Lend the name of a field, counted from 0, as long as the array lives. Raises WrongClass, IndexOutOfRange
/// and NullArray.
ND_PLATFORM_EXPORT const std::string& hvGetFieldName(const hvArray* array, std::size_t field);

/// Tell whether there is such a field; false for null and for an array of another class.
ND_PLATFORM_EXPORT bool hvHasField(const hvArray* array, std::string_view name) noexcept;

/// Lend the value of an element's field, null included, until the structure array is changed or destroyed.
/// Raises NoSuchField, WrongClass, IndexOutOfRange and NullArray.
ND_PLATFORM_EXPORT const hvArray* hvGetField(const hvArray* array, std::size_t index, std::string_view name);

/// As hvGetField, with the field's number, for walks over all fields.
ND_PLATFORM_EXPORT const hvArray* hvGetFieldByNumber(const hvArray* array, std::size_t index,
                                                     std::size_t field);

/// Set an element's field to a value, or null; takes over the value and destroys what was there. A call that
/// raises changes nothing and leaves the value with the caller.
///
/// Raises NoSuchField, WrongClass, IndexOutOfRange, NullArray, InsideItself if the value is the structure
/// array, AlreadyTakenOver if the value or the structure array belongs to a container, and NestedTooDeep.
ND_PLATFORM_EXPORT void hvSetField(hvArray* array, std::size_t index, std::string_view name, hvArray* value);

/// As above; the pointer is null afterwards, and keeps its value if the call raises.
inline void hvSetField(hvArray* array, std::size_t index, std::string_view name, hvArrayPtr&& value) {
  hvSetField(array, index, name, value.get());
  static_cast<void>(value.release());
}
