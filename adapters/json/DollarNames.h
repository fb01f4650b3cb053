#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// The names that begin with "$". They stand for no variables and fields, and only known ones are taken, so
/// that a slip of the hand isn't passed over.
namespace nd::adapters::json {

inline constexpr std::string_view includeName = "$include";
inline constexpr std::string_view metaDataName = "$meta";

inline constexpr std::string_view className = "$class";
inline constexpr std::string_view sizeName = "$size";
inline constexpr std::string_view fieldsName = "$fields";
inline constexpr std::string_view dataName = "$data";
inline constexpr std::string_view imaginaryName = "$imaginary";

constexpr bool isDollarName(std::string_view name) noexcept {
  return name.starts_with('$');
}

/// Tell whether a text that begins with an object begins with a tagged value: an object whose first name
/// begins with "$".
bool beginsTaggedValue(std::string_view text) noexcept;

// What has its place elsewhere is told where that is, anything else which name comes nearest.

/// Throw a `Fault` unless a name that begins with "$" is one for the object at the top, where it stands.
void checkNameAtTop(const std::string& name, bool isFirst, std::size_t offset);

/// Throw a `Fault` unless a name is one for a field of a plain object.
void checkNameInObject(const std::string& name, std::size_t offset);

/// Throw a `Fault` for a name in the metadata of a file that has its place elsewhere. Whether it is a
/// variable's is not looked at.
void checkNameOfVariableInMetaData(const std::string& name, std::size_t offset);

/// Throw a `Fault` unless a name is one for an entry of a variable's metadata.
void checkNameInMetaData(const std::string& name, std::size_t offset);

/// Throw a `Fault` unless a name is one for a member of a tagged value, where it stands.
void checkNameInTaggedValue(const std::string& name, bool isFirst, std::size_t offset);

}  // namespace nd::adapters::json
