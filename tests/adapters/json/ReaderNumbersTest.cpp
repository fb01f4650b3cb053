#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string>
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

TEST(ReaderNumbers, ReadsFractionsOfAnyNumberOfDigits) {
  std::string digits;
  for (std::size_t count = 1; count < 60; ++count) {
    digits += static_cast<char>('0' + (count * 7 + 1) % 10);
    for (const char* begin : {"0.", "-0.", "0.000", "-0.0000000", "1.", "-12."}) {
      for (const char* end : {"", "e5", "E-7", "e+300"}) {
        const std::string literal = begin + digits + end;
        SCOPED_TRACE(literal);
        const double nearest = std::strtod(literal.c_str(), nullptr);
        EXPECT_EQ(readDouble(literal), nearest);
        EXPECT_TRUE(readsAs("[0.5, " + literal + "]", doubles({1, 2}, {0.5, nearest})));
      }
    }
  }
}

TEST(ReaderNumbers, ReadsExponentsOfAnyNumberOfDigits) {
  const std::string great(40, '9');
  EXPECT_EQ(readDouble("0e" + great), 0.0);
  EXPECT_EQ(readDouble("0.00E+" + great + " "), 0.0);
  EXPECT_TRUE(std::signbit(readDouble("-0e" + great)));
  EXPECT_EQ(readDouble("12e-" + great), 0.0);
  EXPECT_TRUE(std::signbit(readDouble("-12.5e-" + great)));
  EXPECT_EQ(readDouble("1e" + std::string(40, '0') + "2"), 100.0);
  EXPECT_TRUE(readsAs("[0e" + great + " , 1]", doubles({1, 2}, {0.0, 1.0})));
  EXPECT_TRUE(readsAs("[1, 0e" + great + "]", doubles({1, 2}, {1.0, 0.0})));
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

TEST(ReaderNumbers, ReadsIntegersThatOnlyUint64HoldsTogetherAsSuch) {
  const auto both = [] { return uint64s({1, 2}, {9007199254740993U, 9223372036854775808U}); };
  EXPECT_TRUE(readsAs("[9007199254740993, 9223372036854775808]", both()));
  EXPECT_TRUE(readsAs("[9223372036854775808, 1, 9007199254740993]",
                      uint64s({1, 3}, {9223372036854775808U, 1, 9007199254740993U})));
}

TEST(ReaderNumbers, RefusesFractionsBesideAnIntegerThatADoubleMisses) {
  const std::string words =
      ": expected a number that one class holds exactly together with those before it, "
      "but found ";
  EXPECT_EQ(failureOf(R"({"a": [1.5, 9007199254740993]})"), "line 1, column 13" + words + "9007199254740993");
  EXPECT_EQ(failureOf(R"({"a": [9007199254740993, 1.5]})"), "line 1, column 26" + words + "1.5");
  EXPECT_EQ(failureOf(R"({"a": [2.0, 9007199254740993]})"), "line 1, column 13" + words + "9007199254740993");
  EXPECT_EQ(failureOf(R"({"a": [9007199254740993, 2E0]})"), "line 1, column 26" + words + "2E0");
  EXPECT_EQ(failureOf(R"({"a": [9007199254740993, -0]})"), "line 1, column 26" + words + "-0");
  EXPECT_EQ(failureOf(R"({"a": [1, 0.5, 2, 9007199254740993, 3]})"),
            "line 1, column 19" + words + "9007199254740993");
  EXPECT_EQ(failureOf(R"({"a": [9007199254740993, 18446744073709551616]})"),
            "line 1, column 26" + words + "18446744073709551616");
}

TEST(ReaderNumbers, RefusesNegativeIntegersBesideThoseBeyondInt64WhateverTheirOrder) {
  const std::string words =
      ": expected a number that one class holds exactly together with those before it, "
      "but found ";
  EXPECT_EQ(failureOf(R"({"a": [-1, 18446744073709551615]})"),
            "line 1, column 12" + words + "18446744073709551615");
  EXPECT_EQ(failureOf(R"({"a": [18446744073709551615, -1]})"), "line 1, column 30" + words + "-1");
  EXPECT_EQ(failureOf(R"({"a": [-9007199254740993, 18446744073709551615]})"),
            "line 1, column 27" + words + "18446744073709551615");
}

TEST(ReaderNumbers, RefusesSuchNumbersInArraysOfOneShapeToo) {
  const std::string words =
      ": expected a number that one class holds exactly together with those before it, but found ";
  EXPECT_EQ(failureOf(R"({"a": [[1.5, 2], [3, 9007199254740993]]})"),
            "line 1, column 22" + words + "9007199254740993");
  EXPECT_EQ(failureOf(R"({"a": [[9007199254740993, 2], [3.0, 4]]})"), "line 1, column 32" + words + "3.0");
  EXPECT_EQ(failureOf(R"({"a": [[[1, -1]], [[2, 3]], [[4, 18446744073709551615]]]})"),
            "line 1, column 34" + words + "18446744073709551615");
  EXPECT_EQ(failureOf(R"({"a": [[18446744073709551615, 1], [9007199254740993, -0]]})"),
            "line 1, column 54" + words + "-0");
}

TEST(ReaderNumbers, ReadsAPartOfCellsAsItWouldBeReadAlone) {
  // 1 became an integer beside the second number, and is a double again when "x" makes cells of them.
  EXPECT_TRUE(readsAs("[1, 18446744073709551615, \"x\"]",
                      cells(scalar(1), uint64s({1, 1}, {18446744073709551615U}), arrays::row(u"x"))));
  EXPECT_TRUE(
      readsAs("[[1, 2], [3, 9007199254740993], \"x\"]",
              cells(doubles({1, 2}, {1, 2}), int64s({1, 2}, {3, 9007199254740993}), arrays::row(u"x"))));
  EXPECT_TRUE(readsAs("[9007199254740993, 18446744073709551615, true]",
                      cells(int64s({1, 1}, {9007199254740993}), uint64s({1, 1}, {18446744073709551615U}),
                            arrays::truth(true))));
}

TEST(ReaderNumbers, TakesAnyNumbersInAnArrayThatHoldsSomethingElseWhereverThatStands) {
  const auto great = [] { return int64s({1, 1}, {9007199254740993}); };
  const auto text = [] { return arrays::row(u"x"); };
  EXPECT_TRUE(readsAs("[0.5, 9007199254740993, \"x\"]", cells(scalar(0.5), great(), text())));
  EXPECT_TRUE(readsAs("[0.5, \"x\", 9007199254740993]", cells(scalar(0.5), text(), great())));
  EXPECT_TRUE(readsAs("[\"x\", 9007199254740993, 0.5]", cells(text(), great(), scalar(0.5))));
  EXPECT_TRUE(readsAs("[0.5, 9007199254740993, \"x\", -1, 0.5]",
                      cells(scalar(0.5), great(), text(), scalar(-1), scalar(0.5))));
  EXPECT_TRUE(
      readsAs("[0.5, [3, 4], 9007199254740993]", cells(scalar(0.5), doubles({1, 2}, {3, 4}), great())));
}
