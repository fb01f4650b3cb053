#include <cmath>
#include <complex>
#include <cstdint>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "platform/host/ArrayData.h"
#include "platform/host/CellArray.h"
#include "platform/host/StructArray.h"
#include "platform/host/TextArray.h"
#include "tests/adapters/json/arrays.h"
#include "tests/adapters/json/readText.h"

using arrays::cells;
using arrays::doubles;
using arrays::nothing;
using arrays::row;
using arrays::scalar;
using arrays::strings;

namespace {

template <typename T>
hvArrayPtr numeric(hvClassCode classCode, const hvDims& dimensions, const std::vector<T>& elements) {
  hvArrayPtr array(hvCreateNumericArray(dimensions, classCode));
  const hvData<T> data = hvGetWritableData<T>(array.get());
  for (std::size_t index = 0; index < elements.size(); ++index) data[index] = elements[index];
  return array;
}

template <typename T>
hvArrayPtr complex(hvClassCode classCode, const hvDims& dimensions,
                   const std::vector<std::complex<T>>& elements) {
  hvArrayPtr array(hvCreateNumericArray(dimensions, classCode, hvComplexity::Complex));
  const hvData<std::complex<T>> data = hvGetWritableData<std::complex<T>>(array.get());
  for (std::size_t index = 0; index < elements.size(); ++index) data[index] = elements[index];
  return array;
}

hvArrayPtr characters(const hvDims& dimensions, std::u16string_view units) {
  hvArrayPtr array(hvCreateCharArray(dimensions));
  const hvData<char16_t> data = hvGetWritableData<char16_t>(array.get());
  for (std::size_t index = 0; index < units.size(); ++index) data[index] = units[index];
  return array;
}

}  // namespace

TEST(TaggedValue, ReadsEachIntegerClassUpToItsLimits) {
  EXPECT_TRUE(readsAs(R"({"$class": "int8", "$size": [1, 3], "$data": [-128, 0, 127]})",
                      numeric<std::int8_t>(hvClassCode::Int8, {1, 3}, {-128, 0, 127})));
  EXPECT_TRUE(readsAs(R"({"$class": "uint8", "$size": [1, 2], "$data": [0, 255]})",
                      numeric<std::uint8_t>(hvClassCode::UInt8, {1, 2}, {0, 255})));
  EXPECT_TRUE(readsAs(R"({"$class": "int16", "$size": [1, 2], "$data": [-32768, 32767]})",
                      numeric<std::int16_t>(hvClassCode::Int16, {1, 2}, {-32768, 32767})));
  EXPECT_TRUE(readsAs(R"({"$class": "uint16", "$size": [1, 1], "$data": [65535]})",
                      numeric<std::uint16_t>(hvClassCode::UInt16, {1, 1}, {65535})));
  EXPECT_TRUE(readsAs(R"({"$class": "int32", "$size": [1, 2], "$data": [-2147483648, 2147483647]})",
                      numeric<std::int32_t>(hvClassCode::Int32, {1, 2},
                                            {std::numeric_limits<std::int32_t>::min(),
                                             std::numeric_limits<std::int32_t>::max()})));
  EXPECT_TRUE(readsAs(R"({"$class": "uint32", "$size": [1, 1], "$data": [4294967295]})",
                      numeric<std::uint32_t>(hvClassCode::UInt32, {1, 1}, {4294967295U})));
  EXPECT_TRUE(readsAs(
      R"({"$class": "int64", "$size": [1, 3], "$data": [-9223372036854775808, 1, 9223372036854775807]})",
      arrays::int64s(
          {1, 3}, {std::numeric_limits<std::int64_t>::min(), 1, std::numeric_limits<std::int64_t>::max()})));
  EXPECT_TRUE(readsAs(R"({"$class": "uint64", "$size": [1, 2], "$data": [1, 18446744073709551615]})",
                      arrays::uint64s({1, 2}, {1, 18446744073709551615U})));
}

TEST(TaggedValue, ReadsElementsColumnByColumn) {
  EXPECT_TRUE(readsAs(R"({"$class": "int8", "$size": [2, 3], "$data": [1, 2, 3, 4, 5, 6]})",
                      numeric<std::int8_t>(hvClassCode::Int8, {2, 3}, {1, 2, 3, 4, 5, 6})));
  EXPECT_TRUE(readsAs(R"({"$class": "double", "$size": [1, 2, 2], "$data": [1, 2, 3, 4]})",
                      doubles({1, 2, 2}, {1, 2, 3, 4})));
}

TEST(TaggedValue, ReadsNonFiniteNumbers) {
  const hvArrayPtr read =
      readValue(R"({"$class": "double", "$size": [1, 4], "$data": ["NaN", "Inf", "-Inf", -0]})");
  const double* const data = hvGetData<double>(read.get());
  EXPECT_TRUE(std::isnan(data[0]));
  EXPECT_EQ(data[1], std::numeric_limits<double>::infinity());
  EXPECT_EQ(data[2], -std::numeric_limits<double>::infinity());
  EXPECT_TRUE(data[3] == 0 && std::signbit(data[3]));
  EXPECT_TRUE(
      readsAs(R"({"$class": "single", "$size": [1, 1], "$data": ["-Inf"]})",
              numeric<float>(hvClassCode::Single, {1, 1}, {-std::numeric_limits<float>::infinity()})));
}

TEST(TaggedValue, RoundsASingleOnce) {
  // Half way between two singles, but for a digit that a double has no place for.
  EXPECT_TRUE(readsAs(R"({"$class": "single", "$size": [1, 1], "$data": [1.00000005960464477539062500001]})",
                      numeric<float>(hvClassCode::Single, {1, 1}, {1.0000001192092896F})));
  EXPECT_TRUE(readsAs(R"({"$class": "single", "$size": [1, 3], "$data": [0.1, -1e-60, 3.4028235e38]})",
                      numeric<float>(hvClassCode::Single, {1, 3}, {0.1F, -0.0F, 3.4028235e38F})));
}

TEST(TaggedValue, ReadsComplexNumbersOfEachKind) {
  EXPECT_TRUE(readsAs(R"({"$class": "double", "$size": [1, 2], "$data": [1, 2.5], "$imaginary": [0, "NaN"]})",
                      complex<double>(hvClassCode::Double, {1, 2},
                                      {{1, 0}, {2.5, std::numeric_limits<double>::quiet_NaN()}})));
  EXPECT_TRUE(readsAs(R"({"$class": "int16", "$size": [1, 1], "$data": [-3], "$imaginary": [4]})",
                      complex<std::int16_t>(hvClassCode::Int16, {1, 1}, {{-3, 4}})));
  EXPECT_TRUE(readsAs(R"({"$class": "single", "$size": [0, 2], "$data": [], "$imaginary": []})",
                      complex<float>(hvClassCode::Single, {0, 2}, {})));
}

TEST(TaggedValue, ReadsEmptyArraysOfEveryClassAndSize) {
  EXPECT_TRUE(readsAs(R"({"$class": "double", "$size": [0, 3], "$data": []})", doubles({0, 3}, {})));
  EXPECT_TRUE(
      readsAs(R"({"$class": "logical", "$size": [2, 0, 4], "$data": []})", arrays::logicals({2, 0, 4}, {})));
  EXPECT_TRUE(readsAs(R"({"$class": "char", "$size": [0, 0], "$data": ""})", characters({0, 0}, u"")));
  EXPECT_TRUE(readsAs(R"({"$class": "string", "$size": [0, 1], "$data": []})", strings({0, 1}, {})));
  EXPECT_TRUE(
      readsAs(R"({"$class": "cell", "$size": [0, 0], "$data": []})", hvArrayPtr(hvCreateCellArray({0, 0}))));
  EXPECT_TRUE(readsAs(R"({"$class": "struct", "$size": [0, 1], "$fields": ["a"], "$data": []})",
                      hvArrayPtr(hvCreateStructArray({0, 1}, {"a"}))));
}

TEST(TaggedValue, ReadsTruthValues) {
  EXPECT_TRUE(readsAs(R"({"$class": "logical", "$size": [2, 1], "$data": [true, false]})",
                      arrays::logicals({2, 1}, {true, false})));
}

TEST(TaggedValue, ReadsCharactersOfSeveralRows) {
  EXPECT_TRUE(
      readsAs(R"({"$class": "char", "$size": [2, 2], "$data": "acbd"})", characters({2, 2}, u"acbd")));
}

TEST(TaggedValue, ReadsLoneSurrogatesAsUnits) {
  EXPECT_TRUE(readsAs(R"({"$class": "char", "$size": [1, 2], "$data": [55296, 65]})",
                      characters({1, 2}, std::u16string{char16_t{0xD800}, u'A'})));
  const std::u16string half{char16_t{0xDC00}};
  EXPECT_TRUE(readsAs(R"({"$class": "string", "$size": [1, 3], "$data": [[56320], null, "x"]})",
                      strings({1, 3}, {half.c_str(), boost::none, u"x"})));
}

TEST(TaggedValue, ReadsMissingTextsAlone) {
  EXPECT_TRUE(
      readsAs(R"({"$class": "string", "$size": [1, 1], "$data": [null]})", strings({1, 1}, {boost::none})));
}

TEST(TaggedValue, ReadsCellsWithWhateverIsInThem) {
  hvArrayPtr expected(hvCreateCellArray({2, 1}));
  hvSetCell(expected.get(), 0, doubles({1, 2}, {1, 2}));
  hvSetCell(expected.get(), 1, numeric<std::int8_t>(hvClassCode::Int8, {1, 1}, {3}));
  EXPECT_TRUE(readsAs(
      R"({"$class": "cell", "$size": [2, 1],
          "$data": [[1, 2], {"$class": "int8", "$size": [1, 1], "$data": [3]}]})",
      expected));
}

TEST(TaggedValue, KeepsApartInCellsWhatWouldGrowTogetherInAPlainArray) {
  EXPECT_TRUE(
      readsAs(R"({"$class": "cell", "$size": [1, 2], "$data": [1, 2]})", cells(scalar(1), scalar(2))));
  EXPECT_TRUE(readsAs(R"({"$class": "cell", "$size": [1, 2], "$data": [0.5, 9007199254740993]})",
                      cells(scalar(0.5), arrays::int64s({1, 1}, {9007199254740993}))));
}

TEST(TaggedValue, ReadsStructuresOfAnySizeAndAnyNames) {
  hvArrayPtr expected(hvCreateStructArray({2, 1}, {"a", "$b"}));
  hvSetField(expected.get(), 0, "a", scalar(1));
  hvSetField(expected.get(), 0, "$b", row(u"x"));
  hvSetField(expected.get(), 1, "a", nothing());
  hvSetField(expected.get(), 1, "$b", scalar(2));
  EXPECT_TRUE(readsAs(
      R"({"$class": "struct", "$size": [2, 1], "$fields": ["a", "$b"], "$data": [[1, "x"], [null, 2]]})",
      expected));
  hvArrayPtr bytes(hvCreateStructArray({1, 1}, {"\xFFx"}));
  hvSetField(bytes.get(), 0, "\xFFx", scalar(1));
  EXPECT_TRUE(
      readsAs(R"({"$class": "struct", "$size": [1, 1], "$fields": [[255, 120]], "$data": [[1]]})", bytes));
}

TEST(TaggedValue, TakesItsMembersInAnyOrderBehindTheClass) {
  EXPECT_TRUE(readsAs(R"({"$class": "int8", "$data": [1, 2], "$imaginary": [3, 4], "$size": [2, 1]})",
                      complex<std::int8_t>(hvClassCode::Int8, {2, 1}, {{1, 3}, {2, 4}})));
  hvArrayPtr structures(hvCreateStructArray({1, 1}, {"a"}));
  hvSetField(structures.get(), 0, "a", scalar(1));
  EXPECT_TRUE(
      readsAs(R"({"$class": "struct", "$data": [[1]], "$fields": ["a"], "$size": [1, 1]})", structures));
}

TEST(TaggedValue, IsSeenThroughEscapesAndSpace) {
  EXPECT_TRUE(readsAs("{ \n\t\"\\u0024class\": \"int8\", \"$s\\u0069ze\": [1, 1], \"$data\": [3] }",
                      numeric<std::int8_t>(hvClassCode::Int8, {1, 1}, {3})));
}

TEST(TaggedValue, MakesCellsOfAnArrayThatHoldsOne) {
  const auto three = [] { return numeric<std::int8_t>(hvClassCode::Int8, {1, 1}, {3}); };
  const std::string tagged = R"({"$class": "int8", "$size": [1, 1], "$data": [3]})";
  EXPECT_TRUE(readsAs("[" + tagged + "]", cells(three())));
  EXPECT_TRUE(readsAs("[1, " + tagged + ", 2]", cells(scalar(1), three(), scalar(2))));
  EXPECT_TRUE(readsAs("[" + tagged + ", " + tagged + "]", cells(three(), three())));
  EXPECT_TRUE(readsAs(R"([{"a": )" + tagged + R"(}, {"a": 1}])",
                      arrays::structures(2, {"a"}, arrays::list(three(), scalar(1)))));
}

TEST(TaggedValue, DropsTrailingDimensionsOfOne) {
  EXPECT_TRUE(
      readsAs(R"({"$class": "double", "$size": [1, 2, 1, 1], "$data": [1, 2]})", doubles({1, 2}, {1, 2})));
}
