#include "platform/foundation/EnumText.h"

#include <algorithm>

#include "platform/foundation/Report.h"
#include "platform/text/Convert.h"

namespace lx::base {

namespace {

std::u16string allNames(std::span<const EnumText> literals) {
  std::u16string result;
  for (const EnumText& literal : literals)
    result += (result.empty() ? u"" : u", ") + std::u16string(literal.name);
  return result;
}

}  // namespace

std::u16string literalName(const char16_t* enumeration, std::span<const EnumText> literals,
                           std::int32_t value) {
  const auto found = std::find_if(literals.begin(), literals.end(),
                                  [&](const EnumText& literal) { return literal.value == value; });
  if (found == literals.end()) {
    report::invalidValue(enumeration, u"there is no literal with the number " +
                                          text::toUtf16(std::to_string(value)) + u"; its literals are " +
                                          allNames(literals) + u".");
  }
  return found->name;
}

std::int32_t literalValue(const char16_t* enumeration, std::span<const EnumText> literals,
                          const std::u16string& name) {
  const auto found = std::find_if(literals.begin(), literals.end(),
                                  [&](const EnumText& literal) { return literal.name == name; });
  if (found == literals.end()) {
    report::invalidValue(
        enumeration, u"there is no literal \"" + name + u"\"; its literals are " + allNames(literals) + u".");
  }
  return found->value;
}

}  // namespace lx::base
