#include <cmath>
#include <cstdint>
#include <limits>
#include <string_view>

#include <gtest/gtest.h>

#include "platform/host/ArrayData.h"
#include "tests/adapters/json/arrays.h"
#include "tests/adapters/json/readText.h"

using arrays::cells;
using arrays::doubles;
using arrays::int64s;
using arrays::scalar;
using arrays::uint64s;

namespace {

double readDouble(std::string_view value) {
  return *hvGetData<double>(readValue(value).get());
}

}  // namespace

TEST(ReaderNumbers, ReadsANumberAsADoubleScalar) {
  EXPECT_TRUE(readsAs("0", scalar(0)));
  EXPECT_TRUE(readsAs("-12", scalar(-12)));
  EXPECT_TRUE(readsAs("2.5e-3", scalar(0.0025)));
  EXPECT_TRUE(readsAs("1E+2", scalar(100)));
}

TEST(ReaderNumbers, KeepsTheSignOfZero) {
  EXPECT_TRUE(readsAs("-0", scalar(-0.0)));
  EXPECT_TRUE(readsAs("-0.0", scalar(-0.0)));
  EXPECT_TRUE(readsAs("[0, -0]", doubles({1, 2}, {0.0, -0.0})));
}

TEST(ReaderNumbers, RoundsToTheNearestDouble) {
  // Half way between two doubles, and a hair beyond.
  EXPECT_EQ(readDouble("1.00000000000000011102230246251565404236316680908203125"), 1.0);
  EXPECT_EQ(readDouble("1.00000000000000011102230246251565404236316680908203126"), std::nextafter(1.0, 2.0));
  EXPECT_EQ(readDouble("0.1"), 0.1);
  EXPECT_EQ(readDouble("2.2250738585072011e-308"), 2.2250738585072011e-308);
  EXPECT_EQ(readDouble("1.7976931348623157e308"), std::numeric_limits<double>::max());
}

TEST(ReaderNumbers, ReadsWhatIsTooSmallForADoubleAsTheNearestOne) {
  EXPECT_EQ(readDouble("4.9406564584124654e-324"), std::numeric_limits<double>::denorm_min());
  EXPECT_EQ(readDouble("1e-400"), 0.0);
  EXPECT_TRUE(std::signbit(readDouble("-1e-400")));
}

TEST(ReaderNumbers, ReadsAnIntegerThatADoubleMissesAsAnIntegerScalar) {
  EXPECT_TRUE(readsAs("9007199254740991", scalar(9007199254740991.0)));
  EXPECT_TRUE(readsAs("9007199254740992", scalar(9007199254740992.0)));
  EXPECT_TRUE(readsAs("9007199254740993", int64s({1, 1}, {9007199254740993})));
  EXPECT_TRUE(readsAs("-9007199254740993", int64s({1, 1}, {-9007199254740993})));
  EXPECT_TRUE(readsAs("9223372036854775807", int64s({1, 1}, {std::numeric_limits<std::int64_t>::max()})));
  EXPECT_TRUE(readsAs("18446744073709551615", uint64s({1, 1}, {std::numeric_limits<std::uint64_t>::max()})));
}

TEST(ReaderNumbers, ReadsAGreatIntegerThatADoubleMeetsAsADouble) {
  EXPECT_TRUE(readsAs("9223372036854775808", scalar(9223372036854775808.0)));
  EXPECT_TRUE(readsAs("18446744073709551616", scalar(18446744073709551616.0)));
  EXPECT_TRUE(readsAs("[1, 18446744073709551616]", doubles({1, 2}, {1, 18446744073709551616.0})));
}

TEST(ReaderNumbers, ReadsAnArrayOfIntegersAsInt64IfADoubleMissesOne) {
  EXPECT_TRUE(readsAs("[1, -2, 9007199254740993]", int64s({1, 3}, {1, -2, 9007199254740993})));
  EXPECT_TRUE(readsAs("[9007199254740993, 1, 4611686018427387904]",
                      int64s({1, 3}, {9007199254740993, 1, 4611686018427387904})));
  EXPECT_TRUE(readsAs("[-9223372036854775808, 9007199254740993]",
                      int64s({1, 2}, {std::numeric_limits<std::int64_t>::min(), 9007199254740993})));
}

TEST(ReaderNumbers, ReadsAnArrayOfIntegersAsUint64IfInt64MissesOne) {
  EXPECT_TRUE(readsAs("[1, 18446744073709551615]", uint64s({1, 2}, {1, 18446744073709551615U})));
  EXPECT_TRUE(readsAs("[18446744073709551615, 9007199254740993, 0, 9223372036854775808]",
                      uint64s({1, 4}, {18446744073709551615U, 9007199254740993U, 0, 9223372036854775808U})));
  EXPECT_TRUE(readsAs("[9007199254740993, 18446744073709551615]",
                      uint64s({1, 2}, {9007199254740993U, 18446744073709551615U})));
}

TEST(ReaderNumbers, ReadsMatricesOfIntegersLikewise) {
  EXPECT_TRUE(readsAs("[[1, 2], [3, 9007199254740993]]", int64s({2, 2}, {1, 3, 2, 9007199254740993})));
  EXPECT_TRUE(readsAs("[[9007199254740993, 2], [3, 4]]", int64s({2, 2}, {9007199254740993, 3, 2, 4})));
  EXPECT_TRUE(readsAs("[[9007199254740993], [18446744073709551615]]",
                      uint64s({2, 1}, {9007199254740993U, 18446744073709551615U})));
}

TEST(ReaderNumbers, ReadsNumbersThatNoClassHoldsTogetherAsCellsSoThatNothingIsLost) {
  const auto great = [] { return int64s({1, 1}, {9007199254740993}); };
  EXPECT_TRUE(readsAs("[1.5, 9007199254740993]", cells(scalar(1.5), great())));
  EXPECT_TRUE(readsAs("[9007199254740993, 1.5]", cells(great(), scalar(1.5))));
  EXPECT_TRUE(readsAs("[2.0, 9007199254740993]", cells(scalar(2), great())));
  EXPECT_TRUE(readsAs("[2e0, 9007199254740993]", cells(scalar(2), great())));
  EXPECT_TRUE(readsAs("[9007199254740993, 2E0]", cells(great(), scalar(2))));
  EXPECT_TRUE(readsAs("[-0, 9007199254740993]", cells(scalar(-0.0), great())));
  EXPECT_TRUE(readsAs("[9007199254740993, -0]", cells(great(), scalar(-0.0))));
  EXPECT_TRUE(
      readsAs("[9007199254740993, 18446744073709551616]", cells(great(), scalar(18446744073709551616.0))));
}

TEST(ReaderNumbers, KeepsNegativeIntegersApartFromThoseBeyondInt64WhateverTheirOrder) {
  const auto greatest = [] { return uint64s({1, 1}, {18446744073709551615U}); };
  EXPECT_TRUE(readsAs("[-1, 18446744073709551615]", cells(scalar(-1), greatest())));
  EXPECT_TRUE(readsAs("[18446744073709551615, -1]", cells(greatest(), scalar(-1))));
  EXPECT_TRUE(readsAs("[-9007199254740993, 18446744073709551615]",
                      cells(int64s({1, 1}, {-9007199254740993}), greatest())));
  EXPECT_TRUE(readsAs("[18446744073709551615, -9007199254740993]",
                      cells(greatest(), int64s({1, 1}, {-9007199254740993}))));
}

TEST(ReaderNumbers, ReadsAPartOfCellsAsItWouldBeReadAlone) {
  // 1 became an integer beside the second number, and is a double again when the third one makes cells of
  // them.
  EXPECT_TRUE(readsAs("[1, 18446744073709551615, -1]",
                      cells(scalar(1), uint64s({1, 1}, {18446744073709551615U}), scalar(-1))));
  EXPECT_TRUE(
      readsAs("[[1, 2], [3, 9007199254740993], \"x\"]",
              cells(doubles({1, 2}, {1, 2}), int64s({1, 2}, {3, 9007199254740993}), arrays::row(u"x"))));
  EXPECT_TRUE(readsAs("[9007199254740993, 18446744073709551615, true]",
                      cells(int64s({1, 1}, {9007199254740993}), uint64s({1, 1}, {18446744073709551615U}),
                            arrays::truth(true))));
  EXPECT_TRUE(readsAs("[[1.5, 2], [3, 9007199254740993]]",
                      cells(doubles({1, 2}, {1.5, 2}), int64s({1, 2}, {3, 9007199254740993}))));
}

TEST(ReaderNumbers, LooksForFractionsWithinTheArraysOfAnArrayToo) {
  EXPECT_TRUE(readsAs("[[9007199254740993, 2], [3.0, 4]]",
                      cells(int64s({1, 2}, {9007199254740993, 2}), doubles({1, 2}, {3, 4}))));
  EXPECT_TRUE(readsAs("[[3.0, 4], [9007199254740993, 2]]",
                      cells(doubles({1, 2}, {3, 4}), int64s({1, 2}, {9007199254740993, 2}))));
  EXPECT_TRUE(readsAs("[0.5, [3, 4], 9007199254740993]",
                      cells(scalar(0.5), doubles({1, 2}, {3, 4}), int64s({1, 1}, {9007199254740993}))));
}
