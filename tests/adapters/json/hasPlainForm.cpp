#include "tests/adapters/json/hasPlainForm.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <set>
#include <span>
#include <string>
#include <type_traits>
#include <vector>

#include <boost/optional.hpp>

#include "adapters/json/Limits.h"
#include "platform/host/ArrayData.h"
#include "platform/host/CellArray.h"
#include "platform/host/StructArray.h"
#include "platform/host/TextArray.h"
#include "platform/text/Convert.h"

namespace {

/// What a value is as an element of an array of JSON: whether it is plain, and what it looks like to its
/// neighbours then.
struct Look {
  enum class Kind { Number, Truth, Text, Empty, Object, Other };

  bool isPlain = false;
  Kind kind = Kind::Other;
  /// How its brackets nest; none for a single value.
  hvDims shape{};
  /// Whether there is a string among texts, which may all be null.
  bool hasString = false;
  /// The names of an object's members.
  std::set<std::string> names{};

  bool isLike(const Look& other) const {
    return kind == other.kind && shape == other.shape && names == other.names;
  }
};

Look lookOf(const hvArray* array, KnownForms& known);

bool isWellFormed(const std::u16string& text) {
  return lx::text::toUtf16(lx::text::toUtf8(text)) == text;
}

bool isPlainName(const std::string& name) {
  return !name.starts_with('$') && lx::text::toUtf8(lx::text::toUtf16(name)) == name;
}

bool isNothing(const hvArray* array) {
  if (array == nullptr) return true;
  return hvIsA(array, "double") && !hvIsComplex(array) && hvGetDimensions(array) == hvDims{0, 0};
}

bool isRow(const hvDims& dimensions) {
  return dimensions.size() == 2 && dimensions[0] == 1 && dimensions[1] > 0;
}

template <typename Integer>
bool isInexact(Integer value) {
  // The magnitude of what a double holds exactly has at most 53 digits between the first and the last one.
  const auto magnitude =
      value < 0 ? ~static_cast<std::uint64_t>(value) + 1 : static_cast<std::uint64_t>(value);
  std::uint64_t digits = magnitude;
  while (digits != 0 && digits % 2 == 0) digits /= 2;
  return digits >= std::uint64_t{1} << 53;
}

bool areDoublesPlain(const hvArray* array) {
  const hvDims dimensions = hvGetDimensions(array);
  if (isNothing(array)) return true;
  const std::size_t count = hvGetNumberOfElements(array);
  if (count == 0) return std::count(dimensions.begin(), dimensions.end(), 0U) == 1 && dimensions.back() == 0;
  const std::span values(hvGetData<double>(array), count);
  return std::all_of(values.begin(), values.end(), [](double value) { return std::isfinite(value); });
}

template <typename Integer>
bool needsIntegers(const hvArray* array) {
  const std::size_t count = hvGetNumberOfElements(array);
  if (count == 0) return false;
  const std::span values(hvGetData<Integer>(array), count);
  const bool needsThem = std::any_of(values.begin(), values.end(), isInexact<Integer>);
  if constexpr (std::is_signed_v<Integer>) return needsThem;
  constexpr std::uint64_t greatestInt64 = ~std::uint64_t{0} >> 1;
  return needsThem && std::any_of(values.begin(), values.end(), [](Integer value) {
           return static_cast<std::uint64_t>(value) > greatestInt64;
         });
}

bool areTextsPlain(const hvArray* array) {
  bool hasString = false;
  for (std::size_t index = 0; index < hvGetNumberOfElements(array); ++index) {
    const boost::optional<std::u16string>& text = hvGetString(array, index);
    if (text && !isWellFormed(*text)) return false;
    hasString = hasString || text.has_value();
  }
  return hasString;
}

bool isOneText(const hvArray* array) {
  const hvDims dimensions = hvGetDimensions(array);
  if (dimensions.size() != 2 || dimensions[0] != 1) return false;
  return dimensions[1] == 0 || isWellFormed(hvArrayToString(array));
}

bool areStructuresPlain(const hvArray* array) {
  if (!isRow(hvGetDimensions(array))) return false;
  for (std::size_t field = 0; field < hvGetNumberOfFields(array); ++field) {
    if (!isPlainName(hvGetFieldName(array, field))) return false;
  }
  return true;
}

bool areAlike(const std::vector<Look>& looks) {
  return std::all_of(looks.begin(), looks.end(),
                     [&](const Look& look) { return look.isLike(looks.front()); });
}

/// Tell whether elements in a row read as an array of their kind, or are refused as numbers that clash.
bool readAsOne(const std::vector<Look>& looks) {
  const Look& first = looks.front();
  if (!areAlike(looks)) return false;
  switch (first.kind) {
    case Look::Kind::Number:
    case Look::Kind::Truth:
    case Look::Kind::Empty:
      return true;
    case Look::Kind::Text:
      return std::any_of(looks.begin(), looks.end(), [](const Look& look) { return look.hasString; });
    case Look::Kind::Object:
      return first.shape.empty();
    case Look::Kind::Other:
      break;
  }
  return false;
}

hvDims shapeOf(const hvArray* array) {
  const hvDims dimensions = hvGetDimensions(array);
  if (dimensions.size() != 2 || dimensions[0] != 1) return dimensions;
  return dimensions[1] == 1 ? hvDims() : hvDims{dimensions[1]};
}

Look lookOfStructures(const hvArray* array) {
  Look look{areStructuresPlain(array), Look::Kind::Object, shapeOf(array)};
  if (!look.isPlain) return {};
  for (std::size_t field = 0; field < hvGetNumberOfFields(array); ++field)
    look.names.insert(hvGetFieldName(array, field));
  return look;
}

Look lookOfCells(const hvArray* array, KnownForms& known) {
  if (!isRow(hvGetDimensions(array))) return {};
  std::vector<Look> looks;
  for (std::size_t index = 0; index < hvGetNumberOfElements(array); ++index)
    looks.push_back(lookOf(hvGetCell(array, index), known));
  if (readAsOne(looks)) return {};
  Look look{true};
  // Cells with nothing but nulls look like texts that are all missing, too.
  if (looks.front().kind != Look::Kind::Text || !areAlike(looks)) return look;
  look.kind = Look::Kind::Text;
  look.shape = looks.front().shape;
  look.shape.insert(look.shape.begin(), looks.size());
  return look;
}

Look lookUnknown(const hvArray* array, KnownForms& known) {
  if (isNothing(array)) return {true, Look::Kind::Text};
  const hvDims dimensions = hvGetDimensions(array);
  if (dimensions.size() > nd::adapters::json::maximumPlainDimensions || hvIsComplex(array)) return {};
  const auto lookIf = [&](bool isPlain, Look::Kind kind) {
    return isPlain ? Look{true, kind, shapeOf(array)} : Look();
  };
  switch (hvGetClassCode(array)) {
    case hvClassCode::Double:
      return lookIf(areDoublesPlain(array),
                    hvGetNumberOfElements(array) == 0 ? Look::Kind::Empty : Look::Kind::Number);
    case hvClassCode::Int64:
      return lookIf(needsIntegers<std::int64_t>(array), Look::Kind::Number);
    case hvClassCode::UInt64:
      return lookIf(needsIntegers<std::uint64_t>(array), Look::Kind::Number);
    case hvClassCode::Logical:
      return lookIf(hvGetNumberOfElements(array) > 0, Look::Kind::Truth);
    case hvClassCode::Character:
      if (!isOneText(array)) return {};
      return {true, Look::Kind::Text, {}, true};
    case hvClassCode::String:
      if (!areTextsPlain(array)) return {};
      return {true, Look::Kind::Text, hvIsScalar(array) ? hvDims{1} : shapeOf(array), true};
    case hvClassCode::Cell:
      return lookOfCells(array, known);
    case hvClassCode::Structure:
      return lookOfStructures(array);
    default:
      return {};
  }
}

Look lookOf(const hvArray* array, KnownForms& known) {
  Look look = lookUnknown(array, known);
  if (array != nullptr) known[array] = look.isPlain;
  return look;
}

}  // namespace

bool hasPlainForm(const hvArray* array, KnownForms& known) {
  const auto found = known.find(array);
  return found == known.end() ? lookOf(array, known).isPlain : found->second;
}

bool hasPlainForm(const hvArray* array) {
  KnownForms known;
  return hasPlainForm(array, known);
}
