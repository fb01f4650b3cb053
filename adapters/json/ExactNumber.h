#pragma once

#include <cstdint>
#include <string_view>

#include <boost/optional.hpp>

namespace nd::adapters::json {

/// How a number of a text is held without loss.
enum class NumberClass { Double, Int64, UInt64, None };

/// A number as eight bytes, to be read as its class says.
struct ExactNumber {
  NumberClass numberClass = NumberClass::None;
  std::uint64_t bits = 0;
};

/// Below this magnitude a double holds every integer.
inline constexpr double firstInexactInteger = 9007199254740992.0;

/// Give the double nearest to a well-formed number of JSON, none if that lies beyond the range. What is too
/// small is zero, with its sign.
boost::optional<double> nearestDouble(std::string_view literal);

/// Choose the class that holds a well-formed number of JSON exactly: double if it can, else int64, else
/// uint64. `rounded` is the nearest double. A number with a fraction or an exponent is a double by its
/// nature. None if an integer fits neither.
ExactNumber exactNumber(std::string_view literal, double rounded);

/// Read a well-formed number of JSON that is an integer without a sign, or a negative one; none if it is
/// something else, a negative zero too, or has no place in 64 bits.
boost::optional<std::uint64_t> unsignedInteger(std::string_view literal) noexcept;
boost::optional<std::int64_t> negativeInteger(std::string_view literal) noexcept;

/// Give the literal at the beginning of a text that begins with a number.
std::string_view numberLiteral(std::string_view text) noexcept;

/// Tell whether all numbers in an excerpt without strings are integers that an integer class can hold: no
/// fraction, no exponent, no negative zero.
bool holdsOnlyIntegers(std::string_view excerpt) noexcept;

/// Tell where the first number stands in a text without strings that no class holds together with all those
/// before it; the size of the text if one class holds all.
std::size_t clashingNumber(std::string_view excerpt);

/// Tell whether a double is an integer within the range of int64 or uint64.
bool fitsInt64(double value) noexcept;
bool fitsUInt64(double value) noexcept;

/// Tell whether a double holds the integer exactly.
bool isExactAsDouble(std::int64_t value) noexcept;
bool isExactAsDouble(std::uint64_t value) noexcept;

}  // namespace nd::adapters::json
