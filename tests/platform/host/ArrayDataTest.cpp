#include <algorithm>
#include <complex>
#include <cstdint>

#include "platform/host/ArrayData.h"
#include "tests/platform/host/HostTest.h"

namespace {

class ArrayDataTest : public HostTest {};

template <typename T>
hvArrayPtr createOf() {
  using Element = hvdetail::Element<T>;
  return hvArrayPtr(hvCreateNumericMatrix(2, 2, Element::classCode, Element::complexity));
}

template <typename T>
class NumericDataTest : public HostTest {};

using NumericTypes =
    testing::Types<float, double, std::int8_t, std::uint8_t, std::int16_t, std::uint16_t, std::int32_t,
                   std::uint32_t, std::int64_t, std::uint64_t, std::complex<float>, std::complex<double>,
                   std::complex<std::int8_t>, std::complex<std::uint8_t>, std::complex<std::int16_t>,
                   std::complex<std::uint16_t>, std::complex<std::int32_t>, std::complex<std::uint32_t>,
                   std::complex<std::int64_t>, std::complex<std::uint64_t>>;
TYPED_TEST_SUITE(NumericDataTest, NumericTypes);

TYPED_TEST(NumericDataTest, ElementsStartAtZeroAndKeepWhatIsWritten) {
  const hvArrayPtr array = createOf<TypeParam>();
  const TypeParam* const before = hvGetData<TypeParam>(array.get());
  EXPECT_TRUE(
      std::all_of(before, before + 4, [](const TypeParam& element) { return element == TypeParam(); }));
  const hvData<TypeParam> data = hvGetWritableData<TypeParam>(array.get());
  ASSERT_EQ(data.size(), 4U);
  data[0] = TypeParam(1);
  data[3] = TypeParam(120);
  const TypeParam* const after = hvGetData<TypeParam>(array.get());
  EXPECT_EQ(after[0], TypeParam(1));
  EXPECT_EQ(after[1], TypeParam());
  EXPECT_EQ(after[3], TypeParam(120));
}

TYPED_TEST(NumericDataTest, TheElementTypeHasToBeExact) {
  const hvArrayPtr array = createOf<TypeParam>();
  int accepted = 0;
  const auto attempt = [&]<typename T>(T) {
    const std::string read = raised([&] { hvGetData<T>(array.get()); });
    const std::string write = raised([&] { hvGetWritableData<T>(array.get()); });
    EXPECT_EQ(read, write);
    if (std::is_same_v<T, TypeParam>) {
      EXPECT_EQ(read, "nothing");
    } else {
      EXPECT_EQ(read, "hv:messages/WrongClass");
    }
    accepted += read == "nothing" ? 1 : 0;
  };
  attempt(bool());
  attempt(char16_t());
  attempt(float());
  attempt(double());
  attempt(std::int8_t());
  attempt(std::uint8_t());
  attempt(std::int16_t());
  attempt(std::uint16_t());
  attempt(std::int32_t());
  attempt(std::uint32_t());
  attempt(std::int64_t());
  attempt(std::uint64_t());
  attempt(std::complex<float>());
  attempt(std::complex<double>());
  attempt(std::complex<std::int8_t>());
  attempt(std::complex<std::uint8_t>());
  attempt(std::complex<std::int16_t>());
  attempt(std::complex<std::uint16_t>());
  attempt(std::complex<std::int32_t>());
  attempt(std::complex<std::uint32_t>());
  attempt(std::complex<std::int64_t>());
  attempt(std::complex<std::uint64_t>());
  EXPECT_EQ(accepted, 1);
}

TEST_F(ArrayDataTest, LogicalAndCharacterElementsHaveTheirOwnTypes) {
  const hvArrayPtr logical(hvCreateLogicalArray({1, 2}));
  hvGetWritableData<bool>(logical.get())[1] = true;
  EXPECT_FALSE(hvGetLogicals(logical.get())[0]);
  EXPECT_TRUE(hvGetLogicals(logical.get())[1]);
  const hvArrayPtr characters(hvCreateCharArray({1, 2}));
  hvGetWritableData<char16_t>(characters.get())[0] = u'x';
  EXPECT_EQ(hvGetData<char16_t>(characters.get())[0], u'x');
  EXPECT_EQ(hvGetData<char16_t>(characters.get())[1], u'\0');
  EXPECT_EQ(raised([&] { hvGetData<std::uint8_t>(logical.get()); }), "hv:messages/WrongClass");
  EXPECT_EQ(raised([&] { hvGetData<std::uint16_t>(characters.get()); }), "hv:messages/WrongClass");
}

TEST_F(ArrayDataTest, AWrongTypeIsToldWithBothClasses) {
  const hvArrayPtr array(hvCreateNumericMatrix(1, 1, hvClassCode::Int8, hvComplexity::Complex));
  EXPECT_EQ(sentence([&] { hvGetData<double>(array.get()); }),
            "hvGetData needs an array of class double, and was given one of class complex int8.");
  EXPECT_EQ(sentence([&] { hvGetLogicals(doubleScalar(1).get()); }),
            "hvGetData needs an array of class logical, and was given one of class double.");
}

TEST_F(ArrayDataTest, ArraysWithoutPlainDataAndNullHaveNone) {
  const hvArrayPtr arrays[] = {hvArrayPtr(hvCreateCellArray({1, 1})), hvArrayPtr(hvCreateStringScalar(u"1")),
                               hvArrayPtr(hvCreateStructArray({1, 1}, {}))};
  for (const hvArrayPtr& array : arrays) {
    EXPECT_EQ(raised([&] { hvGetData<double>(array.get()); }), "hv:messages/WrongClass");
    EXPECT_EQ(raised([&] { hvGetWritableData<double>(array.get()); }), "hv:messages/WrongClass");
  }
  EXPECT_EQ(raised([] { hvGetData<double>(nullptr); }), "hv:messages/NullArray");
  EXPECT_EQ(raised([] { hvGetWritableData<double>(nullptr); }), "hv:messages/NullArray");
  EXPECT_EQ(raised([] { hvGetLogicals(nullptr); }), "hv:messages/NullArray");
}

TEST_F(ArrayDataTest, ElementsOfAnEmptyArrayAreAnEmptyRange) {
  const hvArrayPtr array(hvCreateNumericMatrix(0, 3, hvClassCode::Double));
  const hvData<double> data = hvGetWritableData<double>(array.get());
  EXPECT_TRUE(data.empty());
  EXPECT_EQ(data.begin(), data.end());
}

TEST_F(ArrayDataTest, ElementsLieColumnByColumnAndAreWalkedInThatOrder) {
  const hvArrayPtr array = doubleMatrix(2, 2, {1, 2, 3, 4});
  std::vector<double> seen;
  for (const double element : hvGetWritableData<double>(array.get())) seen.push_back(element);
  EXPECT_EQ(seen, (std::vector<double>{1, 2, 3, 4}));
  EXPECT_EQ(*hvGetWritableData<double>(array.get()), 1);
}

TEST_F(ArrayDataTest, ComplexPartsLieSideBySide) {
  const hvArrayPtr array(hvCreateNumericMatrix(1, 2, hvClassCode::Double, hvComplexity::Complex));
  hvGetWritableData<std::complex<double>>(array.get())[1] = {3, -4};
  const auto* const parts = reinterpret_cast<const double*>(hvGetData<std::complex<double>>(array.get()));
  EXPECT_EQ(std::vector<double>(parts, parts + 4), (std::vector<double>{0, 0, 3, -4}));
}

TEST_F(ArrayDataTest, OnlyOneTrueLogicalIsTrue) {
  EXPECT_TRUE(hvIsLogicalScalarTrue(hvArrayPtr(hvCreateLogicalScalar(true)).get()));
  EXPECT_FALSE(hvIsLogicalScalarTrue(hvArrayPtr(hvCreateLogicalScalar(false)).get()));
  EXPECT_FALSE(hvIsLogicalScalarTrue(nullptr));
  EXPECT_FALSE(hvIsLogicalScalarTrue(doubleScalar(1).get()));
  EXPECT_FALSE(hvIsLogicalScalarTrue(hvArrayPtr(hvCreateLogicalArray({0, 0})).get()));
  const hvArrayPtr two(hvCreateLogicalArray({1, 2}));
  for (bool& element : hvGetWritableData<bool>(two.get())) element = true;
  EXPECT_FALSE(hvIsLogicalScalarTrue(two.get()));
}

#ifndef NDEBUG

TEST_F(ArrayDataTest, WritableDataAreStaleOnceTheArrayWasCopied) {
  const hvArrayPtr array = doubleMatrix(1, 2, {1, 2});
  const hvData<double> data = hvGetWritableData<double>(array.get());
  data[0] = 5;
  const hvArrayPtr copy = copyOf(array);
  EXPECT_EQ(raised([&] { data[0] = 7; }), "hv:messages/StaleData");
  EXPECT_EQ(raised([&] { *data.data() = 7; }), "hv:messages/StaleData");
  EXPECT_EQ(raised([&] { *data.begin() = 7; }), "hv:messages/StaleData");
  EXPECT_EQ(raised([&] { *data = 7; }), "hv:messages/StaleData");
  EXPECT_EQ(hvGetData<double>(array.get())[0], 5);
  hvGetWritableData<double>(array.get())[0] = 7;
  EXPECT_EQ(hvGetData<double>(copy.get())[0], 5);
  EXPECT_EQ(raised([&] { data[0] = 8; }), "hv:messages/StaleData") << "stale data stay stale";
}

TEST_F(ArrayDataTest, WritableDataAreStaleOnceTheArrayIsGone) {
  hvArrayPtr array = doubleScalar(1);
  const hvData<double> data = hvGetWritableData<double>(array.get());
  array.reset();
  EXPECT_EQ(raised([&] { data[0] = 7; }), "hv:messages/StaleData");
}

TEST_F(ArrayDataTest, WritableDataAreStaleOnceTheArrayWasTakenOver) {
  hvArrayPtr array = doubleScalar(1);
  const hvData<double> data = hvGetWritableData<double>(array.get());
  const hvArrayPtr cell(hvCreateCellArray({1, 1}));
  hvSetCell(cell.get(), 0, std::move(array));
  EXPECT_EQ(raised([&] { data[0] = 7; }), "hv:messages/StaleData");
}

TEST_F(ArrayDataTest, TwoHoldersOfWritableDataShareTheirFate) {
  const hvArrayPtr array = doubleScalar(1);
  const hvData<double> first = hvGetWritableData<double>(array.get());
  hvData<double> second = hvGetWritableData<double>(array.get());
  second[0] = 2;
  EXPECT_EQ(first[0], 2);
  const hvArrayPtr copy = copyOf(array);
  EXPECT_EQ(raised([&] { first[0] = 3; }), "hv:messages/StaleData");
  EXPECT_EQ(raised([&] { second[0] = 3; }), "hv:messages/StaleData");
  second = hvGetWritableData<double>(array.get());
  second[0] = 3;
  EXPECT_EQ(hvGetData<double>(copy.get())[0], 2);
  EXPECT_EQ(hvGetData<double>(array.get())[0], 3);
}

TEST_F(ArrayDataTest, AnIndexBeyondTheElementsIsCaught) {
  const hvArrayPtr array = doubleMatrix(1, 2, {1, 2});
  const hvData<double> data = hvGetWritableData<double>(array.get());
  EXPECT_EQ(raised([&] { data[2] = 1; }), "hv:messages/IndexOutOfRange");
  const hvArrayPtr none(hvCreateNumericMatrix(0, 0, hvClassCode::Double));
  EXPECT_EQ(raised([&] { *hvGetWritableData<double>(none.get()) = 1; }), "hv:messages/IndexOutOfRange");
}

#endif

}  // namespace
