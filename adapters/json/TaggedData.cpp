// How the elements of a tagged value are read: the members of TaggedValue that look at "$data", "$imaginary"
// and the names of fields.
#include <bit>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <type_traits>
#include <utility>

#include "adapters/json/DollarNames.h"
#include "adapters/json/ExactNumber.h"
#include "adapters/json/ExactReader.h"
#include "adapters/json/TaggedValue.h"
#include "adapters/json/Wording.h"
#include "adapters/json/messages.h"

namespace nd::adapters::json {
namespace {

using lx::text::toUtf16;

struct Range {
  std::int64_t least;
  std::uint64_t most;
};

/// The range of a signed class, and of an unsigned one.
template <typename T>
constexpr Range signedRange{std::int64_t{std::numeric_limits<T>::min()},
                            std::uint64_t{std::numeric_limits<std::make_unsigned_t<T>>::max() / 2}};
template <typename T>
constexpr Range unsignedRange{0, std::uint64_t{std::numeric_limits<T>::max()}};

Range rangeOf(hvClassCode code) {
  switch (code) {
    case hvClassCode::Int8:
      return signedRange<std::int8_t>;
    case hvClassCode::UInt8:
      return unsignedRange<std::uint8_t>;
    case hvClassCode::Int16:
      return signedRange<std::int16_t>;
    case hvClassCode::UInt16:
      return unsignedRange<std::uint16_t>;
    case hvClassCode::Int32:
      return signedRange<std::int32_t>;
    case hvClassCode::UInt32:
      return unsignedRange<std::uint32_t>;
    case hvClassCode::Int64:
      return signedRange<std::int64_t>;
    default:
      return unsignedRange<std::uint64_t>;
  }
}

bool isInteger(std::string_view literal) {
  return literal.find_first_of(".eE") == std::string_view::npos;
}

/// Give the nearest single; none if the number lies beyond their range. `rounded` is the nearest double.
std::optional<float> nearestSingle(std::string_view literal, double rounded) {
  float value = 0;
  const auto result = std::from_chars(literal.data(), literal.data() + literal.size(), value);
  if (result.ec == std::errc() && std::isfinite(value)) return value;
  if (std::abs(rounded) > 1) return std::nullopt;
  return std::signbit(rounded) ? -0.0F : 0.0F;
}

bool isExactAsSingle(float value, double rounded) {
  return static_cast<double>(value) == rounded;
}

/// Read the three words for what is no number of JSON.
std::optional<double> nonFinite(std::string_view word) {
  if (word == "NaN") return std::numeric_limits<double>::quiet_NaN();
  if (word == "Inf") return std::numeric_limits<double>::infinity();
  if (word == "-Inf") return -std::numeric_limits<double>::infinity();
  return std::nullopt;
}

/// Read an integer from 0 to `most`.
std::size_t smallInteger(TextScan& scan, std::size_t most) {
  const std::u16string limit = spelled(most);
  if (!scan.isAtNumber()) scan.fail<messages::NoSmallInteger>(limit);
  const std::size_t offset = scan.offset();
  const std::string_view literal = scan.number();
  const auto value = unsignedInteger(literal);
  if (!value || *value > most)
    throw Fault{offset, messages::NoSmallInteger(limit, toUtf16(shorten(literal)))};
  return *value;
}

}  // namespace

void TaggedValue::readData() {
  switch (classCode_) {
    case hvClassCode::Logical:
      readTruths();
      break;
    case hvClassCode::Character:
      return readCharacters();
    case hvClassCode::String:
      return readTexts();
    case hvClassCode::Cell:
      return readCells();
    case hvClassCode::Structure:
      return readStructures();
    default:
      readNumbers(numbers_);
      break;
  }
  count_ = numbers_.size();
}

void TaggedValue::readNumbers(Numbers& numbers) {
  TextScan& scan = reader_.scan();
  if (!scan.isAt('[')) scan.fail<messages::NoData>();
  reader_.forEachElement([&](bool) { numbers.push_back(number()); });
}

std::uint64_t TaggedValue::number() {
  const bool isFloatingPoint = classCode_ == hvClassCode::Double || classCode_ == hvClassCode::Single;
  TextScan& scan = reader_.scan();
  if (isFloatingPoint && scan.isAt('"')) {
    const std::size_t offset = scan.offset();
    const std::string word = scan.string();
    const auto value = nonFinite(word);
    if (!value) throw Fault{offset, messages::NoNumberWord(quoted(word))};
    if (classCode_ == hvClassCode::Double) return std::bit_cast<std::uint64_t>(*value);
    return std::bit_cast<std::uint32_t>(static_cast<float>(*value));
  }
  if (!scan.isAtNumber()) scan.fail<messages::NoNumber>(quoted(class_));
  return isFloatingPoint ? floatingPoint() : integer();
}

std::uint64_t TaggedValue::floatingPoint() {
  TextScan& scan = reader_.scan();
  const std::size_t offset = scan.offset();
  const std::string_view literal = scan.number();
  const auto inexact = [&] {
    return Fault{offset, messages::NumberNotInClass(quoted(class_), toUtf16(shorten(literal)))};
  };
  const auto rounded = nearestDouble(literal);
  if (!rounded) throw inexact();
  // A fraction is rounded, but an integer loses no digit.
  if (isInteger(literal) && exactNumber(literal, *rounded).numberClass != NumberClass::Double)
    throw inexact();
  if (classCode_ == hvClassCode::Double) return std::bit_cast<std::uint64_t>(*rounded);
  const auto single = nearestSingle(literal, *rounded);
  if (!single || (isInteger(literal) && !isExactAsSingle(*single, *rounded))) throw inexact();
  return std::bit_cast<std::uint32_t>(*single);
}

std::uint64_t TaggedValue::integer() {
  TextScan& scan = reader_.scan();
  const std::size_t offset = scan.offset();
  const std::string_view literal = scan.number();
  const Range range = rangeOf(classCode_);
  if (const auto value = unsignedInteger(literal)) {
    if (*value <= range.most) return *value;
  } else if (const auto negative = negativeInteger(literal)) {
    if (*negative >= range.least) return std::bit_cast<std::uint64_t>(*negative);
  }
  throw Fault{offset, messages::NumberNotInClass(quoted(class_), toUtf16(shorten(literal)))};
}

void TaggedValue::readTruths() {
  TextScan& scan = reader_.scan();
  if (!scan.isAt('[')) scan.fail<messages::NoData>();
  reader_.forEachElement([&](bool) {
    const bool isTrue = scan.skipWord("true");
    if (!isTrue && !scan.skipWord("false")) scan.fail<messages::NoTruth>();
    numbers_.push_back(isTrue ? 1 : 0);
  });
}

std::u16string TaggedValue::units() {
  constexpr std::size_t greatestUnit = 0xFFFF;
  std::u16string text;
  reader_.forEachElement(
      [&](bool) { text += static_cast<char16_t>(smallInteger(reader_.scan(), greatestUnit)); });
  return text;
}

std::string TaggedValue::fieldName() {
  constexpr std::size_t greatestByte = 0xFF;
  TextScan& scan = reader_.scan();
  if (scan.isAt('"')) return scan.string();
  if (!scan.isAt('[')) scan.fail<messages::NoFieldName>();
  std::string name;
  reader_.forEachElement([&](bool) { name += static_cast<char>(smallInteger(scan, greatestByte)); });
  return name;
}

void TaggedValue::readCharacters() {
  TextScan& scan = reader_.scan();
  if (scan.isAt('"')) {
    characters_ = toUtf16(scan.string());
  } else if (scan.isAt('[')) {
    characters_ = units();
  } else {
    scan.fail<messages::NoCharacters>();
  }
  count_ = characters_.size();
}

void TaggedValue::readTexts() {
  TextScan& scan = reader_.scan();
  if (!scan.isAt('[')) scan.fail<messages::NoData>();
  reader_.forEachElement([&](bool) {
    if (scan.isAt('"')) {
      texts_.emplace_back(toUtf16(scan.string()));
    } else if (scan.isAt('[')) {
      texts_.emplace_back(units());
    } else if (scan.skipWord("null")) {
      texts_.emplace_back();
    } else {
      scan.fail<messages::NoText>();
    }
  });
  count_ = texts_.size();
}

void TaggedValue::readCells() {
  TextScan& scan = reader_.scan();
  if (!scan.isAt('[')) scan.fail<messages::NoData>();
  count_ = readValues(1);
}

void TaggedValue::readStructures() {
  TextScan& scan = reader_.scan();
  if (!scan.isAt('[')) scan.fail<messages::NoData>();
  reader_.forEachElement([&](bool) {
    const std::size_t offset = scan.offset();
    if (!scan.isAt('[')) scan.fail<messages::NoValuesOfFields>();
    const Values values{offset, readValues(0)};
    if (!first_) {
      first_ = values;
    } else if (!deviating_ && values.count != first_->count) {
      deviating_ = values;
    }
    if (fields_) checkValuesOfFields();
    ++count_;
  });
}

std::size_t TaggedValue::readValues(std::size_t levels) {
  const std::size_t before = values_.size();
  reader_.forEachElement([&](bool isFirst) { values_.push_back(reader_.value(isFirst)); }, levels);
  return values_.size() - before;
}

}  // namespace nd::adapters::json
