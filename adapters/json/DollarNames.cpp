#include "adapters/json/DollarNames.h"

#include <algorithm>
#include <array>
#include <span>

#include "adapters/json/Fault.h"
#include "adapters/json/Wording.h"
#include "adapters/json/messages.h"
#include "adapters/json/nearestName.h"

namespace nd::adapters::json {
namespace {

constexpr std::array namesAtTop{includeName, metaDataName};
constexpr std::array namesInTaggedValue{className, sizeName, fieldsName, dataName, imaginaryName};
constexpr std::array<std::string_view, 2> namesInMetaData{"unit", "description"};

bool isOneOf(std::span<const std::string_view> names, std::string_view name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

/// Throw for a name that is known, but somewhere else.
void checkPlace(const std::string& name, std::size_t offset) {
  const auto misplaced = [&](std::u16string_view home) {
    return Fault{offset, messages::MisplacedMember(quoted(name), std::u16string(home))};
  };
  if (name == includeName) throw misplaced(u"at the beginning of the file");
  if (name == metaDataName) throw misplaced(u"at the top of the file");
  if (isOneOf(namesInTaggedValue, name)) throw misplaced(u"in a tagged value");
}

[[noreturn]] void refuse(std::span<const std::string_view> known, const std::string& name,
                         std::size_t offset) {
  throw Fault{offset, messages::UnknownMember(quoted(nearestName(name, known)), quoted(name))};
}

}  // namespace

bool beginsTaggedValue(std::string_view text) noexcept {
  const std::size_t name = text.find_first_not_of(" \t\n\r", 1);
  if (name == std::string_view::npos || text[name] != '"') return false;
  const std::string_view rest = text.substr(name + 1);
  return rest.starts_with('$') || rest.starts_with("\\u0024");
}

void checkNameAtTop(const std::string& name, bool isFirst, std::size_t offset) {
  if (isOneOf(namesAtTop, name)) {
    if (name == includeName && !isFirst) throw Fault{offset, messages::IncludeNotFirst(quoted(name))};
    return;
  }
  checkPlace(name, offset);
  refuse(namesAtTop, name, offset);
}

void checkNameInObject(const std::string& name, std::size_t offset) {
  if (!isDollarName(name)) return;
  if (isOneOf(namesInTaggedValue, name)) throw Fault{offset, messages::TagInPlainObject(quoted(name))};
  checkPlace(name, offset);
  refuse(namesInTaggedValue, name, offset);
}

void checkNameOfVariableInMetaData(const std::string& name, std::size_t offset) {
  checkPlace(name, offset);
}

void checkNameInMetaData(const std::string& name, std::size_t offset) {
  if (!isDollarName(name)) return;
  checkPlace(name, offset);
  refuse(namesInMetaData, name, offset);
}

void checkNameInTaggedValue(const std::string& name, bool isFirst, std::size_t offset) {
  if (!isOneOf(namesInTaggedValue, name)) {
    checkPlace(name, offset);
    refuse(namesInTaggedValue, name, offset);
  }
  if (isFirst && name != className) throw Fault{offset, messages::ClassNotFirst(quoted(name))};
}

}  // namespace nd::adapters::json
