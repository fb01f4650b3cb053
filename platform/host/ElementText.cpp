#include "platform/host/internal/ElementText.h"

#include <array>
#include <charconv>
#include <cmath>
#include <complex>
#include <cstdint>
#include <limits>
#include <string_view>
#include <type_traits>

#include "platform/host/TextArray.h"
#include "platform/host/internal/ArrayHandle.h"
#include "platform/host/internal/DataBody.h"
#include "platform/host/internal/DisplayText.h"

namespace hvdetail {
namespace {

template <typename T>
void appendFloat(std::string& text, T value) {
  if (std::isnan(value)) {
    text += "NaN";
    return;
  }
  if (std::isinf(value)) {
    text += value < 0 ? "-Inf" : "Inf";
    return;
  }
  // Plain digits as long as all of them mean something; to_chars alone would write 100000 as 1e+05.
  const T magnitude = std::fabs(value);
  const T largest = sizeof(T) == sizeof(double) ? static_cast<T>(1e16) : static_cast<T>(1e8);
  const bool plain = magnitude == 0 || (magnitude >= static_cast<T>(1e-4) && magnitude < largest);
  std::array<char, 64> buffer{};
  const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                     plain ? std::chars_format::fixed : std::chars_format::scientific);
  text.append(buffer.data(), written.ptr);
}

template <typename T>
void appendNumber(std::string& text, T value) {
  if constexpr (std::is_floating_point_v<T>) {
    appendFloat(text, value);
  } else {
    std::array<char, 24> buffer{};
    const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    text.append(buffer.data(), written.ptr);
  }
}

template <typename T>
TextExtent appendReal(std::string& text, const void* data, std::size_t index) {
  const std::size_t start = text.size();
  appendNumber(text, static_cast<const T*>(data)[index]);
  const std::size_t point = text.find_first_of(".e", start);
  const std::size_t anchor = point == std::string::npos ? text.size() : point;
  return {anchor - start, text.size() - anchor};
}

template <typename T>
TextExtent appendComplex(std::string& text, const void* data, std::size_t index) {
  const std::complex<T>& value = static_cast<const std::complex<T>*>(data)[index];
  const std::size_t start = text.size();
  appendNumber(text, value.real());
  const std::size_t anchor = text.size();
  appendNumber(text, value.imag());
  if (text[anchor] != '-') text.insert(anchor, 1, '+');
  text += 'i';
  return {anchor - start, text.size() - anchor};
}

TextExtent appendLogical(std::string& text, const void* data, std::size_t index) {
  const std::string_view word = static_cast<const bool*>(data)[index] ? "true" : "false";
  text += word;
  return {0, word.size()};
}

TextExtent appendString(std::string& text, const void* data, std::size_t index) {
  const boost::optional<std::u16string>& element = hvGetString(static_cast<const hvArray*>(data), index);
  if (element) return {0, appendQuoted(text, *element)};
  constexpr std::string_view missing = "<missing>";
  text += missing;
  return {0, missing.size()};
}

}  // namespace

bool hasElementText(const hvArray* array) noexcept {
  return hvIsNumeric(array) || hvIsLogical(array) || hvIsString(array);
}

ElementText::ElementText(const hvArray& array)
    : data_(hvIsString(&array) ? static_cast<const void*>(&array)
                               : static_cast<const DataBody&>(array.body()).data()),
      append_(appenderFor(array)) {}

ElementText::Append ElementText::appenderFor(const hvArray& array) {
  const auto pick = [isComplex = hvIsComplex(&array)](Append real, Append complex) {
    return isComplex ? complex : real;
  };
  switch (hvGetClassCode(&array)) {
    case hvClassCode::Single:
      return pick(appendReal<float>, appendComplex<float>);
    case hvClassCode::Double:
      return pick(appendReal<double>, appendComplex<double>);
    case hvClassCode::Int8:
      return pick(appendReal<std::int8_t>, appendComplex<std::int8_t>);
    case hvClassCode::UInt8:
      return pick(appendReal<std::uint8_t>, appendComplex<std::uint8_t>);
    case hvClassCode::Int16:
      return pick(appendReal<std::int16_t>, appendComplex<std::int16_t>);
    case hvClassCode::UInt16:
      return pick(appendReal<std::uint16_t>, appendComplex<std::uint16_t>);
    case hvClassCode::Int32:
      return pick(appendReal<std::int32_t>, appendComplex<std::int32_t>);
    case hvClassCode::UInt32:
      return pick(appendReal<std::uint32_t>, appendComplex<std::uint32_t>);
    case hvClassCode::Int64:
      return pick(appendReal<std::int64_t>, appendComplex<std::int64_t>);
    case hvClassCode::UInt64:
      return pick(appendReal<std::uint64_t>, appendComplex<std::uint64_t>);
    case hvClassCode::Logical:
      return appendLogical;
    default:
      return appendString;
  }
}

}  // namespace hvdetail
