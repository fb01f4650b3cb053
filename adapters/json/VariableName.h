#pragma once

#include <string_view>

namespace nd::adapters::json {

/// Tell whether a text is a letter, then letters, digits and underscores (ASCII), whatever its length.
bool isVariableName(std::string_view name) noexcept;

/// Tell whether a name is longer than a variable's may be.
bool isTooLongForVariable(std::string_view name) noexcept;

}  // namespace nd::adapters::json
