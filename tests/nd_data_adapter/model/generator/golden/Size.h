// Generated from tests/nd_data_adapter/model/generator/small.yaml; do not edit.
#pragma once

#include <cstdint>
#include <string>

#include "tests/nd_data_adapter/model/generator/export.h"
#include "platform/foundation/meta/Meta.h"

namespace shop {

/// How large something is.
enum class Size : ::std::int32_t {
  Small = 1,
  Large = -2147483648,
};

/// Give the name of a literal. Raises `InvalidValue` for a number that is none.
SHOP_EXPORT ::std::u16string toText(Size value);

/// Read the name of a literal. Raises `InvalidValue` for a text that is none.
SHOP_EXPORT void fromText(const ::std::u16string& text, Size& value);

}  // namespace shop
