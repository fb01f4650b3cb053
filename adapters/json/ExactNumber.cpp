#include "adapters/json/ExactNumber.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <limits>
#include <system_error>
#include <utility>

#include "adapters/json/characters.h"

namespace nd::adapters::json {
namespace {

constexpr double twoTo63 = 9223372036854775808.0;
constexpr double twoTo64 = 18446744073709551616.0;

ExactNumber asDouble(double value) {
  return {NumberClass::Double, std::bit_cast<std::uint64_t>(value)};
}

template <typename Integer>
bool parse(std::string_view literal, Integer& value) {
  const auto [end, error] = std::from_chars(literal.data(), literal.data() + literal.size(), value);
  return error == std::errc() && end == literal.data() + literal.size();
}

/// Tell whether a double is the integer that a literal spells, however long.
bool spells(std::string_view literal, double value) {
  std::array<char, std::numeric_limits<double>::max_exponent10 + 3> digits{};
  const auto [end, error] =
      std::to_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::fixed, 0);
  return error == std::errc() &&
         std::string_view(digits.data(), static_cast<std::size_t>(end - digits.data())) == literal;
}

/// Tell which power of ten the first digit of a literal stands for, zeros not counted.
std::int64_t magnitudeOf(std::string_view literal) {
  const std::size_t mantissaEnd = std::min(literal.find_first_of("eE"), literal.size());
  const std::size_t point = std::min(literal.substr(0, mantissaEnd).find('.'), mantissaEnd);
  const std::size_t first = literal.find_first_of("123456789");
  const auto distance = static_cast<std::int64_t>(point) - static_cast<std::int64_t>(first);
  const std::int64_t magnitude = distance > 0 ? distance - 1 : distance;
  if (mantissaEnd == literal.size()) return magnitude;
  std::string_view digits = literal.substr(mantissaEnd + 1);
  if (digits.starts_with('+')) digits.remove_prefix(1);
  // The mantissa can't make up for an exponent that is larger in magnitude than any text is long.
  constexpr std::int64_t large = std::numeric_limits<std::int64_t>::max() / 2;
  std::int64_t exponent = digits.starts_with('-') ? -large : large;
  parse(digits, exponent);
  return magnitude + std::clamp(exponent, -large, large);
}

}  // namespace

boost::optional<double> nearestDouble(std::string_view literal) {
  double value = 0;
  const auto result = std::from_chars(literal.data(), literal.data() + literal.size(), value);
  if (result.ec == std::errc()) return value;
  if (magnitudeOf(literal) > 0) return boost::none;
  return literal.starts_with('-') ? -0.0 : 0.0;
}

ExactNumber exactNumber(std::string_view literal, double rounded) {
  if (std::abs(rounded) < firstInexactInteger) return asDouble(rounded);
  if (literal.find_first_of(".eE") != std::string_view::npos) return asDouble(rounded);
  if (std::int64_t value = 0; parse(literal, value)) {
    return isExactAsDouble(value) ? asDouble(rounded)
                                  : ExactNumber{NumberClass::Int64, static_cast<std::uint64_t>(value)};
  }
  if (std::uint64_t value = 0; parse(literal, value)) {
    return isExactAsDouble(value) ? asDouble(rounded) : ExactNumber{NumberClass::UInt64, value};
  }
  return spells(literal, rounded) ? asDouble(rounded) : ExactNumber{};
}

boost::optional<std::uint64_t> unsignedInteger(std::string_view literal) noexcept {
  if (std::uint64_t value = 0; parse(literal, value)) return value;
  return boost::none;
}

boost::optional<std::int64_t> negativeInteger(std::string_view literal) noexcept {
  if (std::int64_t value = 0; parse(literal, value) && value < 0) return value;
  return boost::none;
}

std::string_view numberLiteral(std::string_view text) noexcept {
  const auto isPart = [](char character) {
    return isDigit(character) || character == '.' || character == '-' || character == 'e' ||
           character == 'E' || character == '+';
  };
  const auto end = std::find_if_not(text.begin(), text.end(), isPart);
  return text.substr(0, static_cast<std::size_t>(end - text.begin()));
}

bool holdsOnlyIntegers(std::string_view excerpt) noexcept {
  return excerpt.find_first_of(".eE") == std::string_view::npos &&
         excerpt.find("-0") == std::string_view::npos;
}

std::size_t clashingNumber(std::string_view excerpt) {
  bool isDouble = true;
  bool isInt64 = true;
  bool isUInt64 = true;
  constexpr std::string_view beginsOfNumbers = "-0123456789";
  for (std::size_t at = excerpt.find_first_of(beginsOfNumbers); at != std::string_view::npos;) {
    const std::string_view literal = numberLiteral(excerpt.substr(at));
    const auto rounded = nearestDouble(literal);
    const auto value = unsignedInteger(literal);
    isDouble = isDouble && rounded && exactNumber(literal, *rounded).numberClass == NumberClass::Double;
    isInt64 = isInt64 && (value ? std::in_range<std::int64_t>(*value) : negativeInteger(literal).has_value());
    isUInt64 = isUInt64 && value.has_value();
    if (!isDouble && !isInt64 && !isUInt64) return at;
    at = excerpt.find_first_of(beginsOfNumbers, at + literal.size());
  }
  return excerpt.size();
}

bool fitsInt64(double value) noexcept {
  return value >= -twoTo63 && value < twoTo63 && std::trunc(value) == value;
}

bool fitsUInt64(double value) noexcept {
  return value >= 0 && value < twoTo64 && std::trunc(value) == value;
}

bool isExactAsDouble(std::int64_t value) noexcept {
  const auto nearest = static_cast<double>(value);
  return nearest < twoTo63 && static_cast<std::int64_t>(nearest) == value;
}

bool isExactAsDouble(std::uint64_t value) noexcept {
  const auto nearest = static_cast<double>(value);
  return nearest < twoTo64 && static_cast<std::uint64_t>(nearest) == value;
}

}  // namespace nd::adapters::json
