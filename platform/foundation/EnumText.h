#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "platform/export.h"

namespace lx::base {

/// A literal of an enumeration: its name and its number.
struct EnumText {
  const char16_t* name;
  std::int32_t value;
};

/// Give the name of a literal. Raises `InvalidValue` that names the enumeration for a number that is none.
ND_PLATFORM_EXPORT std::u16string literalName(const char16_t* enumeration, std::span<const EnumText> literals,
                                              std::int32_t value);

/// Give the number of a literal. Raises `InvalidValue` that names the enumeration for a name that is none.
ND_PLATFORM_EXPORT std::int32_t literalValue(const char16_t* enumeration, std::span<const EnumText> literals,
                                             const std::u16string& name);

}  // namespace lx::base
