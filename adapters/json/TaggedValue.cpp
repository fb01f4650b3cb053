#include "adapters/json/TaggedValue.h"

#include <algorithm>
#include <array>
#include <utility>

#include "adapters/json/DollarNames.h"
#include "adapters/json/ExactNumber.h"
#include "adapters/json/ExactReader.h"
#include "adapters/json/Wording.h"
#include "adapters/json/messages.h"
#include "adapters/json/nearestName.h"

namespace nd::adapters::json {
namespace {

using lx::text::toUtf16;

struct NamedClass {
  std::string_view name;
  hvClassCode code;
};

constexpr std::array classes{
    NamedClass{"double", hvClassCode::Double},   NamedClass{"single", hvClassCode::Single},
    NamedClass{"int8", hvClassCode::Int8},       NamedClass{"uint8", hvClassCode::UInt8},
    NamedClass{"int16", hvClassCode::Int16},     NamedClass{"uint16", hvClassCode::UInt16},
    NamedClass{"int32", hvClassCode::Int32},     NamedClass{"uint32", hvClassCode::UInt32},
    NamedClass{"int64", hvClassCode::Int64},     NamedClass{"uint64", hvClassCode::UInt64},
    NamedClass{"logical", hvClassCode::Logical}, NamedClass{"char", hvClassCode::Character},
    NamedClass{"string", hvClassCode::String},   NamedClass{"cell", hvClassCode::Cell},
    NamedClass{"struct", hvClassCode::Structure}};

bool isNumericClass(hvClassCode code) {
  return code >= hvClassCode::Single && code <= hvClassCode::UInt64;
}

std::string describeSize(const hvDims& size) {
  std::string text;
  for (const std::size_t extent : size) {
    if (!text.empty()) text += "-by-";
    text += std::to_string(extent);
  }
  return shorten(text);
}

/// Tell how many elements a size has; none if no number of the machine counts them.
boost::optional<std::size_t> countOf(const hvDims& size) {
  if (std::find(size.begin(), size.end(), 0U) != size.end()) return std::size_t{0};
  std::size_t count = 1;
  for (const std::size_t extent : size) {
    if (__builtin_mul_overflow(count, extent, &count)) return boost::none;
  }
  return count;
}

}  // namespace

hvArrayPtr TaggedValue::read() {
  reader_.forEachMember([this](const std::string& name, std::size_t offset) { checkName(name, offset); },
                        [this](const std::string& name) { readMember(name); });
  end_ = reader_.scan().offset() - 1;
  checkCompleteness();
  return make();
}

void TaggedValue::checkName(const std::string& name, std::size_t offset) {
  checkNameInTaggedValue(name, isFirst_, offset);
  isFirst_ = false;
  const bool isSuitable = (name != fieldsName || classCode_ == hvClassCode::Structure) &&
                          (name != imaginaryName || isNumericClass(classCode_));
  if (!isSuitable) throw Fault{offset, messages::UnsuitableMember(quoted(class_), quoted(name))};
}

void TaggedValue::readMember(const std::string& name) {
  if (name == className) return readClass();
  if (name == sizeName) return readSize();
  if (name == fieldsName) return readFields();
  const std::size_t offset = reader_.scan().offset();
  if (name == imaginaryName) {
    imaginaryOffset_ = offset;
    return readNumbers(imaginary_);
  }
  dataOffset_ = offset;
  readData();
}

void TaggedValue::readClass() {
  TextScan& scan = reader_.scan();
  if (!scan.isAt('"')) scan.fail<messages::NoClassName>();
  const std::size_t offset = scan.offset();
  class_ = scan.string();
  for (const NamedClass& known : classes) {
    if (known.name == class_) classCode_ = known.code;
  }
  if (classCode_ != hvClassCode::Unknown) return;
  std::array<std::string_view, classes.size()> names;
  std::transform(classes.begin(), classes.end(), names.begin(), [](const auto& known) { return known.name; });
  throw Fault{offset, messages::UnknownClass(quoted(nearestName(class_, names)), quoted(class_))};
}

void TaggedValue::readSize() {
  TextScan& scan = reader_.scan();
  sizeOffset_ = scan.offset();
  if (!scan.isAt('[')) scan.fail<messages::NoSizes>();
  hvDims size;
  reader_.forEachElement([&](bool) {
    const std::size_t offset = scan.offset();
    if (!scan.isAtNumber()) scan.fail<messages::NoExtent>();
    const std::string_view literal = scan.number();
    const auto extent = unsignedInteger(literal);
    if (!extent) throw Fault{offset, messages::NoExtent(toUtf16(shorten(literal)))};
    size.push_back(*extent);
  });
  if (size.size() < 2) throw Fault{sizeOffset_, messages::TooFewSizes(spelled(size.size()))};
  if (!countOf(size)) throw Fault{sizeOffset_, messages::SizeTooLarge(toUtf16(describeSize(size)))};
  size_ = std::move(size);
}

void TaggedValue::readFields() {
  TextScan& scan = reader_.scan();
  if (!scan.isAt('[')) scan.fail<messages::NoFields>();
  MemberNames names;
  reader_.forEachElement([&](bool) {
    const std::size_t offset = scan.offset();
    reader_.addName(names, fieldName(), offset);
  });
  fields_ = *names.finish();
}

void TaggedValue::checkCompleteness() const {
  const auto missing = [this](std::string_view name) {
    return Fault{end_, messages::MissingMember(quoted(name), u"'}'")};
  };
  if (!size_) throw missing(sizeName);
  if (classCode_ == hvClassCode::Structure && !fields_) throw missing(fieldsName);
  if (!dataOffset_) throw missing(dataName);
  if (fields_) checkValuesOfFields();
  checkCount(count_, *dataOffset_);
  if (imaginaryOffset_) checkCount(imaginary_.size(), *imaginaryOffset_);
}

void TaggedValue::checkValuesOfFields() const {
  for (const boost::optional<Values>& values : {first_, deviating_}) {
    if (values && values->count != fields_->size()) {
      throw Fault{values->offset,
                  messages::ValuesOfFieldsDiffer(spelled(fields_->size()), spelled(values->count))};
    }
  }
}

void TaggedValue::checkCount(std::size_t count, std::size_t offset) const {
  const std::size_t expected = *countOf(*size_);
  if (count == expected) return;
  throw Fault{offset,
              messages::CountDiffers(spelled(expected), toUtf16(describeSize(*size_)), spelled(count))};
}

}  // namespace nd::adapters::json
