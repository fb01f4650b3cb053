#include "tests/adapters/json/losslessForm.h"

#include <array>
#include <charconv>
#include <cmath>
#include <complex>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <type_traits>

#include "platform/host/ArrayData.h"
#include "platform/host/CellArray.h"
#include "platform/host/StructArray.h"
#include "platform/host/TextArray.h"
#include "platform/text/Convert.h"
#include "tests/adapters/json/hasPlainForm.h"

namespace {

using FormOf = std::function<std::string(std::size_t index)>;

std::string quoted(const std::string& utf8) {
  std::string text = "\"";
  for (const char character : utf8) {
    if (character == '"' || character == '\\') text += '\\';
    if (static_cast<unsigned char>(character) >= 0x20) {
      text += character;
    } else {
      std::array<char, 8> escape{};
      std::snprintf(escape.data(), escape.size(), "\\u%04x", static_cast<unsigned>(character));
      text += escape.data();
    }
  }
  return text + "\"";
}

bool isWellFormed(const std::u16string& text) {
  return lx::text::toUtf16(lx::text::toUtf8(text)) == text;
}

bool isWellFormed(const std::string& name) {
  return lx::text::toUtf8(lx::text::toUtf16(name)) == name;
}

std::string list(std::size_t count, const FormOf& element) {
  std::string text = "[";
  for (std::size_t index = 0; index < count; ++index) text += (index == 0 ? "" : ", ") + element(index);
  return text + "]";
}

/// The units of a text, as far as it is no text of JSON.
std::string units(const std::u16string& text) {
  return list(text.size(), [&](std::size_t index) { return std::to_string(unsigned{text[index]}); });
}

std::string textOrUnits(const std::u16string& text) {
  return isWellFormed(text) ? quoted(lx::text::toUtf8(text)) : units(text);
}

template <typename T>
std::string number(T value) {
  if constexpr (std::is_floating_point_v<T>) {
    if (std::isnan(value)) return "\"NaN\"";
    if (std::isinf(value)) return value > 0 ? "\"Inf\"" : "\"-Inf\"";
    std::array<char, 64> digits{};
    const bool isSmallInteger = std::trunc(value) == value && std::abs(value) < 1e6;
    const auto format = isSmallInteger ? std::chars_format::fixed : std::chars_format::scientific;
    return {digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), value, format).ptr};
  } else {
    return std::to_string(+value);
  }
}

/// Lay elements out as JSON nests: a scalar alone, a row in one level, all else in a level for each
/// dimension.
std::string nested(const hvDims& dimensions, const FormOf& element) {
  if (dimensions.size() == 2 && dimensions[0] == 1)
    return dimensions[1] == 1 ? element(0) : list(dimensions[1], element);
  const std::function<std::string(std::size_t, std::size_t, std::size_t)> level =
      [&](std::size_t dimension, std::size_t offset, std::size_t stride) {
        if (dimension == dimensions.size()) return element(offset);
        return list(dimensions[dimension], [&](std::size_t index) {
          return level(dimension + 1, offset + index * stride, stride * dimensions[dimension]);
        });
      };
  return level(0, 0, 1);
}

template <typename Visit>
std::string withNumbers(const hvArray* array, const Visit& visit) {
  switch (hvGetClassCode(array)) {
    case hvClassCode::Single:
      return visit(float{});
    case hvClassCode::Int8:
      return visit(std::int8_t{});
    case hvClassCode::UInt8:
      return visit(std::uint8_t{});
    case hvClassCode::Int16:
      return visit(std::int16_t{});
    case hvClassCode::UInt16:
      return visit(std::uint16_t{});
    case hvClassCode::Int32:
      return visit(std::int32_t{});
    case hvClassCode::UInt32:
      return visit(std::uint32_t{});
    case hvClassCode::Int64:
      return visit(std::int64_t{});
    case hvClassCode::UInt64:
      return visit(std::uint64_t{});
    default:
      return visit(double{});
  }
}

std::string numbers(const hvArray* array, bool imaginary) {
  return withNumbers(array, [&](auto zero) {
    using T = decltype(zero);
    return list(hvGetNumberOfElements(array), [&](std::size_t index) {
      if (!hvIsComplex(array)) return number(hvGetData<T>(array)[index]);
      const std::complex<T> value = hvGetData<std::complex<T>>(array)[index];
      return number(imaginary ? value.imag() : value.real());
    });
  });
}

std::string text(const hvArray* array) {
  return hvGetNumberOfElements(array) == 0 ? "\"\"" : textOrUnits(hvArrayToString(array));
}

std::string fieldName(const std::string& name) {
  if (isWellFormed(name)) return quoted(name);
  return list(name.size(), [&](std::size_t index) {
    return std::to_string(unsigned{static_cast<unsigned char>(name[index])});
  });
}

std::string formOf(const hvArray* array, KnownForms& known);

std::string structure(const hvArray* array, std::size_t index, KnownForms& known) {
  std::string text = "{";
  for (std::size_t field = 0; field < hvGetNumberOfFields(array); ++field) {
    text += (field == 0 ? "" : ", ") + quoted(hvGetFieldName(array, field)) + ": " +
            formOf(hvGetFieldByNumber(array, index, field), known);
  }
  return text + "}";
}

std::string plainFormOf(const hvArray* array, KnownForms& known) {
  const hvDims dimensions = hvGetDimensions(array);
  switch (hvGetClassCode(array)) {
    case hvClassCode::Logical:
      return nested(dimensions,
                    [&](std::size_t index) { return hvGetLogicals(array)[index] ? "true" : "false"; });
    case hvClassCode::Character:
      return text(array);
    case hvClassCode::String: {
      const auto element = [&](std::size_t index) {
        const auto& one = hvGetString(array, index);
        return one ? textOrUnits(*one) : "null";
      };
      return hvIsScalar(array) ? list(1, element) : nested(dimensions, element);
    }
    case hvClassCode::Cell: {
      const auto element = [&](std::size_t index) { return formOf(hvGetCell(array, index), known); };
      return hvIsScalar(array) ? list(1, element) : nested(dimensions, element);
    }
    case hvClassCode::Structure:
      return nested(dimensions, [&](std::size_t index) { return structure(array, index, known); });
    default:
      break;
  }
  if (dimensions == hvDims{0, 0}) return "null";
  return withNumbers(array, [&](auto zero) {
    const auto* const data = hvGetData<decltype(zero)>(array);
    return nested(dimensions, [&](std::size_t index) { return number(data[index]); });
  });
}

std::string data(const hvArray* array, KnownForms& known) {
  const std::size_t count = hvGetNumberOfElements(array);
  switch (hvGetClassCode(array)) {
    case hvClassCode::Logical:
      return list(count, [&](std::size_t index) { return hvGetLogicals(array)[index] ? "true" : "false"; });
    case hvClassCode::Character:
      return text(array);
    case hvClassCode::String:
      return list(count, [&](std::size_t index) {
        const auto& one = hvGetString(array, index);
        return one ? textOrUnits(*one) : std::string("null");
      });
    case hvClassCode::Cell:
      return list(count, [&](std::size_t index) { return formOf(hvGetCell(array, index), known); });
    case hvClassCode::Structure:
      return list(count, [&](std::size_t index) {
        return list(hvGetNumberOfFields(array), [&](std::size_t field) {
          return formOf(hvGetFieldByNumber(array, index, field), known);
        });
      });
    default:
      return numbers(array, false);
  }
}

std::string taggedForm(const hvArray* array, KnownForms& known) {
  const hvDims dimensions = hvGetDimensions(array);
  std::string form =
      "{\"$class\": \"" + std::string(hvGetClassName(array)) + "\", \"$size\": " +
      list(dimensions.size(), [&](std::size_t index) { return std::to_string(dimensions[index]); });
  if (hvIsStruct(array)) {
    form += ", \"$fields\": " + list(hvGetNumberOfFields(array), [&](std::size_t field) {
              return fieldName(hvGetFieldName(array, field));
            });
  }
  form += ", \"$data\": " + data(array, known);
  if (hvIsComplex(array)) form += ", \"$imaginary\": " + numbers(array, true);
  return form + "}";
}

std::string formOf(const hvArray* array, KnownForms& known) {
  if (array == nullptr) return "null";
  return hasPlainForm(array, known) ? plainFormOf(array, known) : taggedForm(array, known);
}

}  // namespace

std::string losslessForm(const hvArray* array) {
  KnownForms known;
  return formOf(array, known);
}

std::string plainForm(const hvArray* array) {
  KnownForms known;
  return plainFormOf(array, known);
}
