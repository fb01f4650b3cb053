#include "adapters/json/VariableName.h"

#include <algorithm>

#include "adapters/json/Limits.h"
#include "adapters/json/characters.h"

namespace nd::adapters::json {

bool isVariableName(std::string_view name) noexcept {
  return !name.empty() && isLetter(name.front()) && std::all_of(name.begin(), name.end(), isWordCharacter);
}

bool isTooLongForVariable(std::string_view name) noexcept {
  return name.size() > maximumVariableNameLength;
}

}  // namespace nd::adapters::json
