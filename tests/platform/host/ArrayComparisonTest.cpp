#include <cmath>
#include <complex>
#include <cstring>
#include <limits>

#include "platform/host/ArrayComparison.h"
#include "tests/platform/host/HostTest.h"

namespace {

class ArrayComparisonTest : public HostTest {};

bool equalNumbers(double left, double right) {
  return hvEqual(doubleScalar(left).get(), doubleScalar(right).get());
}

hvArrayPtr singleScalar(float value) {
  hvArrayPtr array(hvCreateNumericMatrix(1, 1, hvClassCode::Single));
  hvGetWritableData<float>(array.get())[0] = value;
  return array;
}

hvArrayPtr complexScalar(std::complex<double> value) {
  hvArrayPtr array(hvCreateNumericMatrix(1, 1, hvClassCode::Double, hvComplexity::Complex));
  hvGetWritableData<std::complex<double>>(array.get())[0] = value;
  return array;
}

hvArrayPtr structure(const char* field, hvArrayPtr value) {
  hvArrayPtr array(hvCreateStructArray({1, 1}, {field}));
  hvSetField(array.get(), 0, field, std::move(value));
  return array;
}

TEST_F(ArrayComparisonTest, NumbersAreComparedBitByBit) {
  EXPECT_TRUE(equalNumbers(0.1, 0.1));
  EXPECT_FALSE(equalNumbers(0.1, std::nextafter(0.1, 1)));
  EXPECT_FALSE(equalNumbers(0.0, -0.0));
  EXPECT_FALSE(hvEqual(singleScalar(0.0F).get(), singleScalar(-0.0F).get()));
}

TEST_F(ArrayComparisonTest, AnyNanEqualsAnyOther) {
  const double quiet = std::numeric_limits<double>::quiet_NaN();
  EXPECT_TRUE(equalNumbers(quiet, -quiet));
  EXPECT_TRUE(equalNumbers(std::nan("1"), std::nan("2")));
  EXPECT_FALSE(equalNumbers(quiet, 1));
  EXPECT_FALSE(equalNumbers(1, quiet));
  EXPECT_TRUE(hvEqual(singleScalar(std::nanf("1")).get(), singleScalar(std::nanf("2")).get()));
  EXPECT_TRUE(hvEqual(complexScalar({1, std::nan("1")}).get(), complexScalar({1, std::nan("2")}).get()));
  EXPECT_FALSE(hvEqual(complexScalar({1, std::nan("1")}).get(), complexScalar({2, std::nan("2")}).get()));
}

TEST_F(ArrayComparisonTest, ANanDoesNotHideAnotherDifference) {
  const double nan = std::nan("");
  EXPECT_FALSE(hvEqual(doubleMatrix(1, 2, {nan, 1}).get(), doubleMatrix(1, 2, {nan, 2}).get()));
}

TEST_F(ArrayComparisonTest, TheBytesOfAnIntegerAreNeverANan) {
  const hvArrayPtr left(hvCreateNumericMatrix(1, 1, hvClassCode::UInt64));
  const hvArrayPtr right(hvCreateNumericMatrix(1, 1, hvClassCode::UInt64));
  hvGetWritableData<std::uint64_t>(left.get())[0] = 0x7FF8000000000001U;
  hvGetWritableData<std::uint64_t>(right.get())[0] = 0x7FF8000000000002U;
  EXPECT_FALSE(hvEqual(left.get(), right.get()));
}

TEST_F(ArrayComparisonTest, ClassShapeAndComplexityCount) {
  const hvArrayPtr one = doubleScalar(1);
  EXPECT_FALSE(hvEqual(one.get(), singleScalar(1).get()));
  EXPECT_FALSE(hvEqual(one.get(), complexScalar({1, 0}).get()));
  EXPECT_FALSE(hvEqual(hvArrayPtr(hvCreateLogicalScalar(true)).get(), one.get()));
  EXPECT_FALSE(hvEqual(hvArrayPtr(hvCreateString("a")).get(), hvArrayPtr(hvCreateStringScalar(u"a")).get()));
  EXPECT_FALSE(hvEqual(doubleMatrix(1, 2, {1, 2}).get(), doubleMatrix(2, 1, {1, 2}).get()));
  EXPECT_FALSE(
      hvEqual(hvArrayPtr(hvCreateCharArray({1, 0})).get(), hvArrayPtr(hvCreateCharArray({0, 0})).get()));
  EXPECT_FALSE(hvEqual(hvArrayPtr(hvCreateLogicalArray({2, 2, 2})).get(),
                       hvArrayPtr(hvCreateLogicalArray({2, 4})).get()));
}

TEST_F(ArrayComparisonTest, NullEqualsNullAndTheEmptyDoubleThatItReadsAs) {
  const hvArrayPtr empty(hvCreateNumericMatrix(0, 0, hvClassCode::Double));
  EXPECT_TRUE(hvEqual(nullptr, nullptr));
  EXPECT_TRUE(hvEqual(nullptr, empty.get()));
  EXPECT_TRUE(hvEqual(empty.get(), nullptr));
  const hvArrayPtr others[] = {
      doubleScalar(0),
      hvArrayPtr(hvCreateNumericMatrix(1, 0, hvClassCode::Double)),
      hvArrayPtr(hvCreateNumericMatrix(0, 0, hvClassCode::Single)),
      hvArrayPtr(hvCreateNumericMatrix(0, 0, hvClassCode::Double, hvComplexity::Complex)),
      hvArrayPtr(hvCreateNumericArray({0, 0, 2}, hvClassCode::Double)),
      hvArrayPtr(hvCreateCellArray({0, 0}))};
  for (const hvArrayPtr& other : others) {
    EXPECT_FALSE(hvEqual(nullptr, other.get())) << hvDescribe(other.get());
    EXPECT_FALSE(hvEqual(other.get(), nullptr)) << hvDescribe(other.get());
  }
}

TEST_F(ArrayComparisonTest, TextsAreComparedUnitByUnit) {
  const auto text = [](boost::optional<std::u16string> content) {
    hvArrayPtr array(hvCreateStringArray({1, 1}));
    hvSetString(array.get(), 0, std::move(content));
    return array;
  };
  EXPECT_TRUE(hvEqual(text(std::u16string(u"a")).get(), text(std::u16string(u"a")).get()));
  EXPECT_FALSE(hvEqual(text(std::u16string(u"a")).get(), text(std::u16string(u"b")).get()));
  EXPECT_FALSE(hvEqual(text(std::u16string(u"a")).get(), text(std::u16string(u"aa")).get()));
  EXPECT_FALSE(hvEqual(text(std::u16string(u"\u00E9")).get(), text(std::u16string(u"e\u0301")).get()));
  EXPECT_TRUE(hvEqual(text(boost::none).get(), text(boost::none).get()));
  EXPECT_FALSE(hvEqual(text(boost::none).get(), text(std::u16string()).get()));
  EXPECT_FALSE(hvEqual(text(std::u16string()).get(), text(boost::none).get()));
}

TEST_F(ArrayComparisonTest, CellsAreComparedElementByElement) {
  const auto cell = [](hvArrayPtr value) {
    hvArrayPtr array(hvCreateCellArray({1, 2}));
    hvSetCell(array.get(), 1, std::move(value));
    return array;
  };
  EXPECT_TRUE(hvEqual(cell(doubleScalar(1)).get(), cell(doubleScalar(1)).get()));
  EXPECT_FALSE(hvEqual(cell(doubleScalar(1)).get(), cell(doubleScalar(2)).get()));
  EXPECT_FALSE(hvEqual(cell(doubleScalar(1)).get(), cell(nullptr).get()));
  EXPECT_TRUE(hvEqual(cell(nullptr).get(), cell(nullptr).get()));
}

TEST_F(ArrayComparisonTest, StructuresHaveTheSameFieldsInTheSameOrder) {
  EXPECT_TRUE(hvEqual(structure("a", doubleScalar(1)).get(), structure("a", doubleScalar(1)).get()));
  EXPECT_FALSE(hvEqual(structure("a", doubleScalar(1)).get(), structure("b", doubleScalar(1)).get()));
  EXPECT_FALSE(hvEqual(structure("a", doubleScalar(1)).get(), structure("a", doubleScalar(2)).get()));
  EXPECT_FALSE(hvEqual(hvArrayPtr(hvCreateStructArray({1, 1}, {"a", "b"})).get(),
                       hvArrayPtr(hvCreateStructArray({1, 1}, {"b", "a"})).get()));
  EXPECT_FALSE(hvEqual(hvArrayPtr(hvCreateStructArray({1, 1}, {"a"})).get(),
                       hvArrayPtr(hvCreateStructArray({1, 1}, {"a", "b"})).get()));
  EXPECT_FALSE(hvEqual(hvArrayPtr(hvCreateStructArray({1, 0}, {"a"})).get(),
                       hvArrayPtr(hvCreateStructArray({1, 0}, {"b"})).get()));
}

TEST_F(ArrayComparisonTest, TheSizeIsThatOfTheElements) {
  EXPECT_EQ(hvGetByteSize(nullptr), 0U);
  EXPECT_EQ(hvGetByteSize(hvArrayPtr(hvCreateNumericMatrix(3, 4, hvClassCode::Double)).get()), 96U);
  EXPECT_EQ(hvGetByteSize(hvArrayPtr(hvCreateNumericMatrix(3, 4, hvClassCode::Int16)).get()), 24U);
  EXPECT_EQ(hvGetByteSize(complexScalar({1, 2}).get()), 16U);
  EXPECT_EQ(hvGetByteSize(singleScalar(1).get()), 4U);
  EXPECT_EQ(hvGetByteSize(hvArrayPtr(hvCreateLogicalArray({2, 3})).get()), 6U);
  EXPECT_EQ(hvGetByteSize(hvArrayPtr(hvCreateString("abc")).get()), 6U);
  EXPECT_EQ(hvGetByteSize(hvArrayPtr(hvCreateStringScalar(u"abc")).get()), 6U);
  EXPECT_EQ(hvGetByteSize(hvArrayPtr(hvCreateCellArray({10, 10})).get()), 0U);
}

TEST_F(ArrayComparisonTest, TheSizeOfAContainerIsThatOfAllThatIsInIt) {
  const hvArrayPtr cell(hvCreateCellArray({1, 3}));
  const hvArrayPtr table = doubleMatrix(2, 2, {1, 2, 3, 4});
  hvSetCell(cell.get(), 0, copyOf(table));
  hvSetCell(cell.get(), 1, structure("text", hvArrayPtr(hvCreateString("ab"))));
  hvSetCell(cell.get(), 2, copyOf(table));
  EXPECT_EQ(hvGetByteSize(cell.get()), 32U + 4U + 32U) << "shared data count for each that holds them";
}

TEST_F(ArrayComparisonTest, TheSizeOfMuchThatIsSharedIsSummedUpQuicklyAndStopsAtTheLargestNumber) {
  hvArrayPtr value = doubleScalar(1);
  for (int doubling = 0; doubling < 100; ++doubling) {
    hvArrayPtr cell(hvCreateCellArray({1, 2}));
    hvSetCell(cell.get(), 0, copyOf(value));
    hvSetCell(cell.get(), 1, copyOf(value));
    value = std::move(cell);
    if (doubling == 29) {
      EXPECT_EQ(hvGetByteSize(value.get()), 8UL << 30U);
    }
  }
  EXPECT_EQ(hvGetByteSize(value.get()), std::numeric_limits<std::size_t>::max());
  EXPECT_TRUE(hvEqual(value.get(), copyOf(value).get()));
}

}  // namespace
