#include <complex>
#include <cstdint>

#include "tests/platform/host/HostTest.h"

namespace {

class SharedDataCopyTest : public HostTest {};

TEST_F(SharedDataCopyTest, SharesItsDataUntilTheOriginalIsChanged) {
  const hvArrayPtr original = doubleMatrix(1, 2, {1, 2});
  const hvArrayPtr copy = copyOf(original);
  EXPECT_NE(original.get(), copy.get());
  EXPECT_EQ(hvGetData<double>(original.get()), hvGetData<double>(copy.get()));
  hvGetWritableData<double>(original.get())[0] = 9;
  EXPECT_NE(hvGetData<double>(original.get()), hvGetData<double>(copy.get()));
  EXPECT_EQ(hvGetData<double>(original.get())[0], 9);
  EXPECT_EQ(hvGetData<double>(original.get())[1], 2);
  EXPECT_EQ(hvGetData<double>(copy.get())[0], 1);
}

TEST_F(SharedDataCopyTest, SharesItsDataUntilTheCopyIsChanged) {
  const hvArrayPtr original = doubleMatrix(1, 2, {1, 2});
  const hvArrayPtr copy = copyOf(original);
  hvGetWritableData<double>(copy.get())[1] = 9;
  EXPECT_EQ(hvGetData<double>(original.get())[1], 2);
  EXPECT_EQ(hvGetData<double>(copy.get())[1], 9);
}

TEST_F(SharedDataCopyTest, OutlivesTheOriginal) {
  hvArrayPtr original(hvCreateString("kept"));
  const hvArrayPtr copy = copyOf(original);
  original.reset();
  EXPECT_EQ(hvArrayToString(copy.get()), u"kept");
}

TEST_F(SharedDataCopyTest, KeepsClassShapeAndComplexity) {
  const hvArrayPtr original(hvCreateNumericArray({2, 3, 4}, hvClassCode::UInt16, hvComplexity::Complex));
  const hvArrayPtr copy = copyOf(original);
  EXPECT_TRUE(hvEqual(original.get(), copy.get()));
  static_cast<void>(hvGetWritableData<std::complex<std::uint16_t>>(copy.get()));
  EXPECT_TRUE(hvEqual(original.get(), copy.get()));
}

TEST_F(SharedDataCopyTest, WritingInPlaceCopiesNothingWhenNobodyShares) {
  const hvArrayPtr array = doubleMatrix(1, 2, {1, 2});
  const double* const before = hvGetData<double>(array.get());
  hvGetWritableData<double>(array.get())[0] = 3;
  EXPECT_EQ(hvGetData<double>(array.get()), before);
  copyOf(array).reset();
  hvGetWritableData<double>(array.get())[0] = 4;
  EXPECT_EQ(hvGetData<double>(array.get()), before) << "the only copy is gone";
}

TEST_F(SharedDataCopyTest, OfTextsPartsOnTheFirstChange) {
  const hvArrayPtr original(hvCreateStringArray({1, 2}));
  hvSetString(original.get(), 0, std::u16string(u"a"));
  const hvArrayPtr copy = copyOf(original);
  hvSetString(copy.get(), 1, boost::none);
  EXPECT_EQ(textAt(original, 1), u"");
  EXPECT_EQ(textAt(copy, 0), u"a");
  EXPECT_FALSE(hvGetString(copy.get(), 1).has_value());
}

TEST_F(SharedDataCopyTest, OfNestedArraysSharesThemTooAndKeepsThemApart) {
  const hvArrayPtr original(hvCreateStructArray({1, 1}, {"table", "label"}));
  hvSetField(original.get(), 0, "table", doubleMatrix(1, 2, {1, 2}));
  const hvArrayPtr copy = copyOf(original);
  EXPECT_EQ(hvGetField(original.get(), 0, "table"), hvGetField(copy.get(), 0, "table"));
  hvSetField(copy.get(), 0, "label", hvArrayPtr(hvCreateString("x")));
  EXPECT_EQ(hvGetField(original.get(), 0, "label"), nullptr);
  EXPECT_EQ(hvGetData<double>(hvGetField(original.get(), 0, "table")),
            hvGetData<double>(hvGetField(copy.get(), 0, "table")))
      << "the table itself is still shared";
}

TEST_F(SharedDataCopyTest, OfAnElementOfACellIsTheCallersAndCanBeChanged) {
  const hvArrayPtr cell(hvCreateCellArray({1, 1}));
  hvSetCell(cell.get(), 0, doubleScalar(1));
  const hvArrayPtr element(hvCreateSharedDataCopy(hvGetCell(cell.get(), 0)));
  hvGetWritableData<double>(element.get())[0] = 2;
  EXPECT_EQ(hvGetData<double>(hvGetCell(cell.get(), 0))[0], 1);
}

TEST_F(SharedDataCopyTest, OfMuchIsMadeWithoutAnotherArrayForEachElement) {
  const hvArrayPtr cell(hvCreateCellArray({1, 1000}));
  for (std::size_t i = 0; i < 1000; ++i) hvSetCell(cell.get(), i, doubleScalar(1));
  const std::size_t before = arraysMade();
  const hvArrayPtr copy = copyOf(cell);
  EXPECT_EQ(arraysMade(), before + 1);
}

}  // namespace
