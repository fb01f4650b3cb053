// Generated from tests/nd_data_adapter/model/generator/small.yaml; do not edit.
#include "tests/nd_data_adapter/model/generator/small/Size.h"

#include "platform/foundation/EnumText.h"

namespace shop {

namespace {

constexpr ::lx::base::EnumText Texts[] = {
    { u"Small", 1 },
    { u"Large", -2147483648 },
};

}  // namespace

::std::u16string toText(Size value) {
  return ::lx::base::literalName(u"shop.Size", Texts, static_cast<::std::int32_t>(value));
}

void fromText(const ::std::u16string& text, Size& value) {
  value = static_cast<Size>(
      ::lx::base::literalValue(u"shop.Size", Texts, text));
}

}  // namespace shop
