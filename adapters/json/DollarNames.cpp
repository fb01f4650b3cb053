#include "adapters/json/DollarNames.h"

#include <algorithm>
#include <array>
#include <span>

#include "adapters/json/Fault.h"
#include "adapters/json/Wording.h"
#include "adapters/json/messages.h"
#include "adapters/json/nearestName.h"
#include "platform/text/Convert.h"

namespace nd::adapters::json {
namespace {

using lx::text::toUtf16;

constexpr std::array namesAtTop{includeName, metaDataName};
constexpr std::array namesInTaggedValue{className, sizeName, fieldsName, dataName, imaginaryName};
constexpr std::array<std::string_view, 2> namesInMetaData{"unit", "description"};

bool isOneOf(std::span<const std::string_view> names, std::string_view name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

std::u16string quote(std::string_view name) {
  return toUtf16(quoteName(name));
}

[[noreturn]] void refuse(std::span<const std::string_view> known, const std::string& name,
                         std::size_t offset) {
  throw Fault{offset, messages::UnknownMember(quote(nearestName(name, known)), quote(name))};
}

}  // namespace

bool beginsTaggedValue(std::string_view text) noexcept {
  const std::size_t name = text.find_first_not_of(" \t\n\r", 1);
  if (name == std::string_view::npos || text[name] != '"') return false;
  const std::string_view rest = text.substr(name + 1);
  return rest.starts_with('$') || rest.starts_with("\\u0024");
}

void checkNameAtTop(const std::string& name, bool isFirst, std::size_t offset) {
  if (!isOneOf(namesAtTop, name)) refuse(namesAtTop, name, offset);
  if (name == includeName && !isFirst) throw Fault{offset, messages::IncludeNotFirst(quote(name))};
}

void checkNameInObject(const std::string& name, std::size_t offset) {
  if (!isDollarName(name)) return;
  if (!isOneOf(namesInTaggedValue, name)) refuse(namesInTaggedValue, name, offset);
  throw Fault{offset, messages::TagInPlainObject(quote(name))};
}

void checkNameInMetaData(const std::string& name, std::size_t offset) {
  if (isDollarName(name)) refuse(namesInMetaData, name, offset);
}

void checkNameInTaggedValue(const std::string& name, bool isFirst, std::size_t offset) {
  if (!isOneOf(namesInTaggedValue, name)) refuse(namesInTaggedValue, name, offset);
  if (isFirst && name != className) throw Fault{offset, messages::ClassNotFirst(quote(name))};
}

}  // namespace nd::adapters::json
