#include <cmath>
#include <complex>
#include <limits>

#include "platform/host/ArrayText.h"
#include "tests/platform/host/HostTest.h"

namespace {

class ArrayPreviewTest : public HostTest {};

constexpr std::size_t wide = 1000;

std::string preview(const hvArrayPtr& array, std::size_t width = wide) {
  return hvPreview(array.get(), width);
}

hvArrayPtr single(float value) {
  hvArrayPtr array(hvCreateNumericMatrix(1, 1, hvClassCode::Single));
  hvGetWritableData<float>(array.get())[0] = value;
  return array;
}

hvArrayPtr complexRow(const std::vector<std::complex<double>>& values) {
  hvArrayPtr array(hvCreateNumericMatrix(1, values.size(), hvClassCode::Double, hvComplexity::Complex));
  std::copy(values.begin(), values.end(), hvGetWritableData<std::complex<double>>(array.get()).begin());
  return array;
}

TEST_F(ArrayPreviewTest, ArraysAreDescribedByShapeAndClass) {
  EXPECT_EQ(hvDescribe(nullptr), "0x0 double");
  EXPECT_EQ(hvDescribe(doubleMatrix(3, 4, {}).get()), "3x4 double");
  EXPECT_EQ(hvDescribe(complexRow({1}).get()), "1x1 complex double");
  EXPECT_EQ(hvDescribe(hvArrayPtr(hvCreateCellArray({2, 2, 5})).get()), "2x2x5 cell");
  EXPECT_EQ(hvDescribe(hvArrayPtr(hvCreateString("abc")).get()), "1x3 char");
  EXPECT_EQ(hvDescribe(hvArrayPtr(hvCreateStructArray({1, 1}, {})).get()), "1x1 struct");
}

TEST_F(ArrayPreviewTest, NumbersHaveTheFewestDigitsThatReadBack) {
  const std::pair<double, const char*> cases[] = {
      {0, "0"},
      {-0.0, "-0"},
      {1, "1"},
      {-2.5, "-2.5"},
      {0.1, "0.1"},
      {1.0 / 3, "0.3333333333333333"},
      {100000, "100000"},
      {123456789012345, "123456789012345"},
      {9007199254740992, "9007199254740992"},
      {1e16, "1e+16"},
      {0.0001, "0.0001"},
      {0.00001, "1e-05"},
      {1.5e300, "1.5e+300"},
      {std::numeric_limits<double>::denorm_min(), "5e-324"},
      {std::numeric_limits<double>::max(), "1.7976931348623157e+308"},
      {std::nan(""), "NaN"},
      {-std::nan(""), "NaN"},
      {HUGE_VAL, "Inf"},
      {-HUGE_VAL, "-Inf"},
  };
  for (const auto& [value, wanted] : cases) EXPECT_EQ(preview(doubleScalar(value)), wanted);
  EXPECT_EQ(preview(single(0.1F)), "0.1");
  EXPECT_EQ(preview(single(16777216.0F)), "16777216");
  EXPECT_EQ(preview(single(1e10F)), "1e+10");
}

TEST_F(ArrayPreviewTest, IntegersAreWrittenToTheLastDigit) {
  const hvArrayPtr smallest(hvCreateNumericMatrix(1, 1, hvClassCode::Int64));
  hvGetWritableData<std::int64_t>(smallest.get())[0] = std::numeric_limits<std::int64_t>::min();
  EXPECT_EQ(preview(smallest), "-9223372036854775808");
  const hvArrayPtr largest(hvCreateNumericMatrix(1, 1, hvClassCode::UInt64));
  hvGetWritableData<std::uint64_t>(largest.get())[0] = std::numeric_limits<std::uint64_t>::max();
  EXPECT_EQ(preview(largest), "18446744073709551615");
  const hvArrayPtr bytes(hvCreateNumericMatrix(1, 2, hvClassCode::UInt8));
  hvGetWritableData<std::uint8_t>(bytes.get())[1] = 65;
  EXPECT_EQ(preview(bytes), "[0 65]");
}

TEST_F(ArrayPreviewTest, ComplexNumbersShowBothParts) {
  EXPECT_EQ(preview(complexRow({{1, 2}})), "1+2i");
  EXPECT_EQ(preview(complexRow({{1.5, -0.25}, {0, 0}})), "[1.5-0.25i 0+0i]");
  EXPECT_EQ(preview(complexRow({{-0.0, -0.0}})), "-0-0i");
  EXPECT_EQ(preview(complexRow({{std::nan(""), std::nan("")}, {HUGE_VAL, -HUGE_VAL}})),
            "[NaN+NaNi Inf-Infi]");
}

TEST_F(ArrayPreviewTest, MatricesAreWrittenRowByRow) {
  EXPECT_EQ(preview(doubleMatrix(2, 3, {1, 4, 2, 5, 3, 6})), "[1 2 3; 4 5 6]");
  EXPECT_EQ(preview(doubleMatrix(3, 1, {1, 2, 3})), "[1; 2; 3]");
  const hvArrayPtr flags(hvCreateLogicalArray({1, 2}));
  hvGetWritableData<bool>(flags.get())[0] = true;
  EXPECT_EQ(preview(flags), "[true false]");
  EXPECT_EQ(preview(hvArrayPtr(hvCreateLogicalScalar(true))), "true");
}

TEST_F(ArrayPreviewTest, TextsStandInQuotes) {
  EXPECT_EQ(preview(hvArrayPtr(hvCreateString("abc"))), "\"abc\"");
  EXPECT_EQ(preview(hvArrayPtr(hvCreateStringScalar(u"abc"))), "\"abc\"");
  EXPECT_EQ(preview(hvArrayPtr(hvCreateString("say \"a\\b\"\n"))), "\"say \\\"a\\\\b\\\"\\n\"");
  EXPECT_EQ(preview(hvArrayPtr(hvCreateString(std::u16string(1, char16_t(0xD83D))))), "\"\\ud83d\"");
  const hvArrayPtr rows(hvCreateCharArray({2, 2}));
  const std::u16string units = u"acbd";
  std::copy(units.begin(), units.end(), hvGetWritableData<char16_t>(rows.get()).begin());
  EXPECT_EQ(preview(rows), "[\"ab\"; \"cd\"]");
}

TEST_F(ArrayPreviewTest, AMissingStringIsNoText) {
  const hvArrayPtr texts(hvCreateStringArray({1, 2}));
  hvSetString(texts.get(), 0, boost::none);
  EXPECT_EQ(preview(texts), "[<missing> \"\"]");
}

TEST_F(ArrayPreviewTest, EmptyValuesShowTheirKind) {
  EXPECT_EQ(hvPreview(nullptr, wide), "[]");
  EXPECT_EQ(preview(hvArrayPtr(hvCreateNumericMatrix(0, 0, hvClassCode::Double))), "[]");
  EXPECT_EQ(preview(hvArrayPtr(hvCreateString(""))), "\"\"");
  EXPECT_EQ(preview(hvArrayPtr(hvCreateCellArray({1, 0}))), "{}");
  EXPECT_EQ(preview(hvArrayPtr(hvCreateNumericMatrix(0, 3, hvClassCode::Int8))), "0x3 int8");
  EXPECT_EQ(preview(hvArrayPtr(hvCreateNumericArray({0, 0, 2}, hvClassCode::Int8))), "0x0x2 int8");
}

TEST_F(ArrayPreviewTest, CellsAndStructuresShowWhatIsInThem) {
  const hvArrayPtr structure(hvCreateStructArray({1, 1}, {"a", "b\n", ""}));
  hvSetField(structure.get(), 0, "a", doubleMatrix(1, 2, {1, 2}));
  hvSetField(structure.get(), 0, "b\n", hvArrayPtr(hvCreateString("x")));
  EXPECT_EQ(preview(structure), "(a: [1 2], b\\n: \"x\", \"\": [])");
  const hvArrayPtr cell(hvCreateCellArray({2, 2}));
  hvSetCell(cell.get(), 1, copyOf(structure));
  hvSetCell(cell.get(), 2, doubleScalar(7));
  EXPECT_EQ(preview(cell), "{[], 7; (a: [1 2], b\\n: \"x\", \"\": []), []}");
  EXPECT_EQ(preview(hvArrayPtr(hvCreateCellArray({1, 1}))), "{[]}");
  EXPECT_EQ(preview(hvArrayPtr(hvCreateStructArray({1, 1}, {}))), "()");
}

TEST_F(ArrayPreviewTest, WhatHasNoShortFormIsDescribed) {
  EXPECT_EQ(preview(hvArrayPtr(hvCreateStructArray({1, 2}, {"a"}))), "1x2 struct");
  EXPECT_EQ(preview(hvArrayPtr(hvCreateNumericArray({2, 2, 2}, hvClassCode::Double))), "2x2x2 double");
  EXPECT_EQ(preview(hvArrayPtr(hvCreateCharArray({2, 2, 2}))), "2x2x2 char");
}

TEST_F(ArrayPreviewTest, NeverTakesMoreColumnsThanAllowed) {
  const hvArrayPtr cell(hvCreateCellArray({1, 3}));
  hvSetCell(cell.get(), 0, doubleMatrix(2, 2, {1, 2, 3, 4}));
  hvSetCell(cell.get(), 1, hvArrayPtr(hvCreateString(u"\u65E5\u672C\u8A9E e\u0301 \n")));
  hvSetCell(cell.get(), 2, hvArrayPtr(hvCreateStringScalar(u"\U0001F600\U0001F600")));
  const std::string whole = preview(cell);
  const std::size_t columns = hvDisplayWidth(whole);
  EXPECT_EQ(whole, "{[1 3; 2 4], \"\u65E5\u672C\u8A9E e\u0301 \\n\", \"\U0001F600\U0001F600\"}");
  for (std::size_t width = 0; width < columns; ++width) {
    const std::string line = preview(cell, width);
    EXPECT_LE(hvDisplayWidth(line), width);
    EXPECT_EQ(line, hvCutToWidth(whole, width));
  }
  EXPECT_EQ(preview(cell, columns), whole);
}

TEST_F(ArrayPreviewTest, LooksAtNoMoreOfALargeValueThanItShows) {
  const hvArrayPtr numbers(hvCreateNumericMatrix(1000, 1000, hvClassCode::Int8));
  EXPECT_EQ(preview(numbers, 10), "[0 0 0 0 …");
  const hvArrayPtr accents(hvCreateString(std::u16string(1000000, u'\u0301')));
  EXPECT_LT(preview(accents, 10).size(), 2000U) << "marks that take no column end somewhere, too";
  const hvArrayPtr rows(hvCreateCharArray({2, 500000}));
  std::fill_n(hvGetWritableData<char16_t>(rows.get()).begin(), 1000000, u'x');
  EXPECT_EQ(preview(rows, 5), "[\"xx…");
}

}  // namespace
