#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>

#include <boost/optional/optional_io.hpp>
#include <gtest/gtest.h>

#include "adapters/json/ExactNumber.h"

using nd::adapters::json::clashingNumber;
using nd::adapters::json::exactNumber;
using nd::adapters::json::fitsInt64;
using nd::adapters::json::fitsUInt64;
using nd::adapters::json::holdsOnlyIntegers;
using nd::adapters::json::isExactAsDouble;
using nd::adapters::json::nearestDouble;
using nd::adapters::json::negativeInteger;
using nd::adapters::json::NumberClass;
using nd::adapters::json::numberLiteral;
using nd::adapters::json::unsignedInteger;

namespace {

NumberClass classOf(const std::string& literal) {
  return exactNumber(literal, std::stod(literal)).numberClass;
}

}  // namespace

TEST(ClashingNumber, IsTheFirstThatNoClassHoldsTogetherWithThoseBefore) {
  const auto clashOf = [](std::string_view text) { return text.substr(clashingNumber(text)); };
  EXPECT_EQ(clashOf("[1, 0.5, [9007199254740993], 2]"), "9007199254740993], 2]");
  EXPECT_EQ(clashOf("[9007199254740993, -1, 18446744073709551615]"), "18446744073709551615]");
  EXPECT_EQ(clashOf("18446744073709551615 1 -1"), "-1");
  EXPECT_EQ(clashOf("9007199254740993 18446744073709551616"), "18446744073709551616");
}

TEST(ClashingNumber, IsBehindTheTextIfOneClassHoldsAll) {
  for (const std::string_view text :
       {"", "[[], 1]", "[-1, 9007199254740993]", "[0.5, 18446744073709551616, -0]",
        "[1, 9223372036854775808, 9007199254740993]"})
    EXPECT_EQ(clashingNumber(text), text.size()) << text;
}

TEST(ExactNumber, HoldsIntegersUpToTwoTo53AsDouble) {
  EXPECT_EQ(classOf("9007199254740991"), NumberClass::Double);
  EXPECT_EQ(classOf("-9007199254740992"), NumberClass::Double);
}

TEST(ExactNumber, HoldsTheFirstIntegerThatADoubleMissesAsInt64) {
  const auto number = exactNumber("9007199254740993", 9007199254740992.0);
  EXPECT_EQ(number.numberClass, NumberClass::Int64);
  EXPECT_EQ(number.bits, 9007199254740993U);
  EXPECT_EQ(classOf("-9007199254740993"), NumberClass::Int64);
}

TEST(ExactNumber, HoldsGreatIntegersThatADoubleMeetsAsDouble) {
  EXPECT_EQ(classOf("9223372036854775808"), NumberClass::Double);                      // 2^63
  EXPECT_EQ(classOf("-9223372036854775808"), NumberClass::Double);                     // -2^63
  EXPECT_EQ(classOf("18446744073709551616"), NumberClass::Double);                     // 2^64
  EXPECT_EQ(classOf("340282366920938463463374607431768211456"), NumberClass::Double);  // 2^128
  EXPECT_EQ(classOf("-340282366920938463463374607431768211456"), NumberClass::Double);
}

TEST(ExactNumber, ReachesTheEndsOfTheIntegerClasses) {
  EXPECT_EQ(classOf("9223372036854775807"), NumberClass::Int64);
  EXPECT_EQ(classOf("-9223372036854775807"), NumberClass::Int64);
  EXPECT_EQ(classOf("9223372036854775809"), NumberClass::UInt64);
  const auto greatest = exactNumber("18446744073709551615", 18446744073709551616.0);
  EXPECT_EQ(greatest.numberClass, NumberClass::UInt64);
  EXPECT_EQ(greatest.bits, std::numeric_limits<std::uint64_t>::max());
}

TEST(ExactNumber, HoldsNoIntegerBeyondBothThatADoubleMisses) {
  EXPECT_EQ(classOf("18446744073709551617"), NumberClass::None);
  EXPECT_EQ(classOf("-9223372036854775809"), NumberClass::None);
  EXPECT_EQ(classOf("123456789012345678901234567890"), NumberClass::None);
}

TEST(ExactNumber, TakesANumberWithFractionOrExponentAsTheNearestDouble) {
  EXPECT_EQ(classOf("9007199254740993.0"), NumberClass::Double);
  EXPECT_EQ(classOf("9007199254740993e0"), NumberClass::Double);
  EXPECT_EQ(classOf("1E300"), NumberClass::Double);
}

TEST(ExactNumber, ComparesTheGreatestDoubleToTheLastDigit) {
  constexpr double greatest = std::numeric_limits<double>::max();
  std::string literal =
      "1797693134862315708145274237317043567980705675258449965989174768031572607800285387605895586327668781"
      "7154045895351438246423432132688946418276846754670353751698604991057655128207624549009038932894407586"
      "8508455133942304583236903222948165808559332123348274797826204144723168738177180919299881250404026184"
      "124858368";
  EXPECT_EQ(exactNumber(literal, greatest).numberClass, NumberClass::Double);
  EXPECT_EQ(exactNumber("-" + literal, -greatest).numberClass, NumberClass::Double);
  literal.back() = '9';
  EXPECT_EQ(exactNumber(literal, greatest).numberClass, NumberClass::None);
}

TEST(NumberLiteral, EndsWithTheNumber) {
  EXPECT_EQ(numberLiteral("-1.5e+3, 4"), "-1.5e+3");
  EXPECT_EQ(numberLiteral("12]"), "12");
  EXPECT_EQ(numberLiteral("7"), "7");
}

TEST(HoldsOnlyIntegers, LooksForFractionsExponentsAndNegativeZeros) {
  EXPECT_TRUE(holdsOnlyIntegers("[[1, 20], [-3, 0]]"));
  EXPECT_FALSE(holdsOnlyIntegers("[1, 2.0]"));
  EXPECT_FALSE(holdsOnlyIntegers("[1e2]"));
  EXPECT_FALSE(holdsOnlyIntegers("[1E2]"));
  EXPECT_FALSE(holdsOnlyIntegers("[1, -0]"));
  EXPECT_TRUE(holdsOnlyIntegers("[-10]"));
}

TEST(FitsInt64, ReachesFromMinusTwoTo63ToBelowTwoTo63) {
  EXPECT_TRUE(fitsInt64(-9223372036854775808.0));
  EXPECT_FALSE(fitsInt64(std::nextafter(-9223372036854775808.0, -INFINITY)));
  EXPECT_TRUE(fitsInt64(std::nextafter(9223372036854775808.0, 0)));
  EXPECT_FALSE(fitsInt64(9223372036854775808.0));
  EXPECT_FALSE(fitsInt64(0.5));
}

TEST(FitsUInt64, ReachesFromZeroToBelowTwoTo64) {
  EXPECT_TRUE(fitsUInt64(0));
  EXPECT_FALSE(fitsUInt64(-1));
  EXPECT_TRUE(fitsUInt64(std::nextafter(18446744073709551616.0, 0)));
  EXPECT_FALSE(fitsUInt64(18446744073709551616.0));
  EXPECT_FALSE(fitsUInt64(1.5));
}

TEST(IsExactAsDouble, TellsTheNeighboursOfAPowerOfTwoApart) {
  EXPECT_TRUE(isExactAsDouble(std::int64_t{1} << 62));
  EXPECT_FALSE(isExactAsDouble((std::int64_t{1} << 62) + 1));
  EXPECT_FALSE(isExactAsDouble(std::numeric_limits<std::int64_t>::max()));
  EXPECT_TRUE(isExactAsDouble(std::numeric_limits<std::int64_t>::min()));
  EXPECT_TRUE(isExactAsDouble(std::uint64_t{1} << 63));
  EXPECT_FALSE(isExactAsDouble(std::numeric_limits<std::uint64_t>::max()));
}

TEST(NearestDouble, RoundsToTheNearest) {
  EXPECT_EQ(nearestDouble("0.1").value(), 0.1);
  EXPECT_EQ(nearestDouble("-12.5e+1").value(), -125.0);
  EXPECT_EQ(nearestDouble("9007199254740993").value(), 9007199254740992.0);
  EXPECT_EQ(nearestDouble("1.7976931348623157E308").value(), std::numeric_limits<double>::max());
  EXPECT_EQ(nearestDouble("4.9e-324").value(), std::numeric_limits<double>::denorm_min());
}

TEST(NearestDouble, IsNoneBeyondTheRange) {
  const std::string zeros(400, '0');
  const std::string literals[] = {"1.7976931348623159e308",
                                  "1e309",
                                  "-1e309",
                                  "0.01e311",
                                  "1" + zeros,
                                  "1" + zeros + "." + zeros + "1e-50",
                                  "0." + zeros + "1e999",
                                  "12345678901e300",
                                  "1e99999999999999999999"};
  for (const std::string& literal : literals) EXPECT_FALSE(nearestDouble(literal)) << literal;
}

TEST(NearestDouble, IsZeroWithItsSignForWhatIsTooSmall) {
  const std::string zeros(400, '0');
  const std::string literals[] = {"0",
                                  "0e999",
                                  "0.0e99999999999999999999",
                                  "1e-400",
                                  "0." + zeros + "1",
                                  "0." + zeros + "1e50",
                                  "1" + zeros + "e-800",
                                  "12345.6e-99999999999999999999"};
  for (const std::string& literal : literals) {
    const auto positive = nearestDouble(literal);
    ASSERT_TRUE(positive) << literal;
    EXPECT_EQ(std::bit_cast<std::uint64_t>(*positive), std::bit_cast<std::uint64_t>(0.0)) << literal;
    const auto negative = nearestDouble("-" + literal);
    ASSERT_TRUE(negative) << literal;
    EXPECT_EQ(std::bit_cast<std::uint64_t>(*negative), std::bit_cast<std::uint64_t>(-0.0)) << literal;
  }
}

TEST(UnsignedInteger, IsWhatHasNoSignAndNoFraction) {
  EXPECT_EQ(unsignedInteger("0"), boost::optional<std::uint64_t>(0));
  EXPECT_EQ(unsignedInteger("18446744073709551615"),
            boost::optional<std::uint64_t>(std::numeric_limits<std::uint64_t>::max()));
  for (const char* literal : {"18446744073709551616", "-1", "-0", "1.0", "1e0"})
    EXPECT_FALSE(unsignedInteger(literal)) << literal;
}

TEST(NegativeInteger, IsWhatHasASignAndIsNotZero) {
  EXPECT_EQ(negativeInteger("-1"), boost::optional<std::int64_t>(-1));
  EXPECT_EQ(negativeInteger("-9223372036854775808"),
            boost::optional<std::int64_t>(std::numeric_limits<std::int64_t>::min()));
  for (const char* literal : {"-9223372036854775809", "1", "0", "-0", "-1.0"})
    EXPECT_FALSE(negativeInteger(literal)) << literal;
}
