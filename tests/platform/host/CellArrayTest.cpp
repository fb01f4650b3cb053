#include "platform/host/CellArray.h"
#include "tests/platform/host/HostTest.h"

namespace {

class CellArrayTest : public HostTest {};

hvArrayPtr cellOf(hvArrayPtr value) {
  hvArrayPtr cell(hvCreateCellArray({1, 1}));
  hvSetCell(cell.get(), 0, std::move(value));
  return cell;
}

hvArrayPtr nested(std::size_t levels) {
  hvArrayPtr cell(hvCreateCellArray({1, 1}));
  for (std::size_t level = 1; level < levels; ++level) cell = cellOf(std::move(cell));
  return cell;
}

TEST_F(CellArrayTest, CellsStartAsNull) {
  const hvArrayPtr cell(hvCreateCellArray({2, 2}));
  for (std::size_t i = 0; i < 4; ++i) EXPECT_EQ(hvGetCell(cell.get(), i), nullptr);
}

TEST_F(CellArrayTest, AValueIsTakenOverAndLent) {
  const hvArrayPtr cell(hvCreateCellArray({1, 2}));
  hvArray* const value = hvCreateDoubleScalar(4);
  hvSetCell(cell.get(), 1, value);
  EXPECT_EQ(hvGetCell(cell.get(), 1), value);
  EXPECT_EQ(hvGetData<double>(hvGetCell(cell.get(), 1))[0], 4);
}

TEST_F(CellArrayTest, AnOwningPointerIsEmptyAfterwards) {
  const hvArrayPtr cell(hvCreateCellArray({1, 1}));
  hvArrayPtr value = doubleScalar(1);
  hvSetCell(cell.get(), 0, std::move(value));
  EXPECT_EQ(value, nullptr);
}

TEST_F(CellArrayTest, ReplacingDestroysWhatWasThere) {
  const hvArrayPtr cell(hvCreateCellArray({1, 1}));
  hvSetCell(cell.get(), 0, doubleScalar(1));
  hvSetCell(cell.get(), 0, doubleScalar(2));
  EXPECT_EQ(arraysMade(), 2U);
  EXPECT_EQ(hvGetData<double>(hvGetCell(cell.get(), 0))[0], 2);
  hvSetCell(cell.get(), 0, nullptr);
  EXPECT_EQ(arraysMade(), 1U);
  EXPECT_EQ(hvGetCell(cell.get(), 0), nullptr);
}

TEST_F(CellArrayTest, ARefusedValueStaysTheCallers) {
  const hvArrayPtr cell(hvCreateCellArray({1, 1}));
  const hvArrayPtr number = doubleScalar(3);
  hvArrayPtr value = doubleScalar(1);
  EXPECT_EQ(raised([&] { hvSetCell(cell.get(), 1, std::move(value)); }), "hv:messages/IndexOutOfRange");
  EXPECT_EQ(raised([&] { hvSetCell(number.get(), 0, std::move(value)); }), "hv:messages/WrongClass");
  EXPECT_EQ(raised([&] { hvSetCell(nullptr, 0, std::move(value)); }), "hv:messages/NullArray");
  ASSERT_NE(value, nullptr);
  EXPECT_EQ(hvGetData<double>(value.get())[0], 1);
  EXPECT_EQ(hvGetCell(cell.get(), 0), nullptr);
}

TEST_F(CellArrayTest, ReadingIsCheckedByIndexAndClass) {
  const hvArrayPtr cell(hvCreateCellArray({1, 1}));
  EXPECT_EQ(raised([&] { hvGetCell(cell.get(), 1); }), "hv:messages/IndexOutOfRange");
  EXPECT_EQ(raised([&] { hvGetCell(doubleScalar(1).get(), 0); }), "hv:messages/WrongClass");
  EXPECT_EQ(raised([&] { hvGetCell(nullptr, 0); }), "hv:messages/NullArray");
  const hvArrayPtr none(hvCreateCellArray({1, 0}));
  EXPECT_EQ(raised([&] { hvGetCell(none.get(), 0); }), "hv:messages/IndexOutOfRange");
}

TEST_F(CellArrayTest, ACellCannotHoldItself) {
  const hvArrayPtr cell(hvCreateCellArray({1, 1}));
  EXPECT_EQ(raised([&] { hvSetCell(cell.get(), 0, cell.get()); }), "hv:messages/InsideItself");
  EXPECT_EQ(hvGetCell(cell.get(), 0), nullptr);
}

TEST_F(CellArrayTest, ACellCannotHoldItselfThroughAnother) {
  const hvArrayPtr outer(hvCreateCellArray({1, 1}));
  hvArray* const inner = hvCreateCellArray({1, 1});
  hvSetCell(outer.get(), 0, inner);
  EXPECT_EQ(raised([&] { hvSetCell(inner, 0, outer.get()); }), "hv:messages/AlreadyTakenOver");
}

TEST_F(CellArrayTest, ACopyOfACellCanBePutIntoIt) {
  const hvArrayPtr cell(hvCreateCellArray({1, 2}));
  hvSetCell(cell.get(), 0, doubleScalar(1));
  hvSetCell(cell.get(), 1, copyOf(cell));
  const hvArray* const inner = hvGetCell(cell.get(), 1);
  EXPECT_EQ(hvGetData<double>(hvGetCell(inner, 0))[0], 1);
  EXPECT_EQ(hvGetCell(inner, 1), nullptr) << "the copy was made before";
}

TEST_F(CellArrayTest, AnArrayBelongsToOneContainerOnly) {
  const hvArrayPtr first(hvCreateCellArray({1, 2}));
  const hvArrayPtr second(hvCreateCellArray({1, 1}));
  hvArray* const value = hvCreateDoubleScalar(1);
  hvSetCell(first.get(), 0, value);
  EXPECT_EQ(raised([&] { hvSetCell(second.get(), 0, value); }), "hv:messages/AlreadyTakenOver");
  EXPECT_EQ(raised([&] { hvSetCell(first.get(), 1, value); }), "hv:messages/AlreadyTakenOver");
  EXPECT_EQ(raised([&] { hvSetCell(first.get(), 0, value); }), "hv:messages/AlreadyTakenOver");
  EXPECT_EQ(hvGetCell(first.get(), 0), value);
}

TEST_F(CellArrayTest, AnArrayThatWasTakenOverNoLongerChanges) {
  const hvArrayPtr cell(hvCreateCellArray({1, 3}));
  hvArray* const number = hvCreateDoubleScalar(1);
  hvArray* const text = hvCreateStringScalar(u"x");
  hvArray* const structure = hvCreateStructArray({1, 1}, {"a"});
  hvSetCell(cell.get(), 0, number);
  hvSetCell(cell.get(), 1, text);
  hvSetCell(cell.get(), 2, structure);
  EXPECT_EQ(raised([&] { hvGetWritableData<double>(number); }), "hv:messages/AlreadyTakenOver");
  EXPECT_EQ(raised([&] { hvSetString(text, 0, boost::none); }), "hv:messages/AlreadyTakenOver");
  EXPECT_EQ(raised([&] { hvSetField(structure, 0, "a", nullptr); }), "hv:messages/AlreadyTakenOver");
}

TEST_F(CellArrayTest, DestroyingWhatWasTakenOverLeavesItInItsPlace) {
  const hvArrayPtr cell(hvCreateCellArray({1, 1}));
  hvArray* const value = hvCreateDoubleScalar(6);
  hvSetCell(cell.get(), 0, value);
  hvDestroyArray(value);
  EXPECT_EQ(hvGetData<double>(hvGetCell(cell.get(), 0))[0], 6);
}

TEST_F(CellArrayTest, NestingEndsAtItsLimit) {
  hvArrayPtr deepest = nested(hvMaximumNesting);
  hvArrayPtr outer(hvCreateCellArray({1, 1}));
  EXPECT_EQ(raised([&] { hvSetCell(outer.get(), 0, std::move(deepest)); }), "hv:messages/NestedTooDeep");
  ASSERT_NE(deepest, nullptr);
  EXPECT_EQ(hvGetCell(outer.get(), 0), nullptr);
  EXPECT_TRUE(hvEqual(deepest.get(), nested(hvMaximumNesting).get()));
  EXPECT_FALSE(hvEqual(deepest.get(), nested(hvMaximumNesting - 1).get()));
}

TEST_F(CellArrayTest, NestingShrinksAgainWhenTheDeepestElementGoes) {
  hvArrayPtr cell(hvCreateCellArray({1, 3}));
  hvSetCell(cell.get(), 0, nested(hvMaximumNesting - 1));
  hvSetCell(cell.get(), 1, nested(hvMaximumNesting - 1));
  hvSetCell(cell.get(), 2, nested(5));
  const auto wrapping = [&] { hvSetCell(hvArrayPtr(hvCreateCellArray({1, 1})).get(), 0, copyOf(cell)); };
  EXPECT_EQ(raised(wrapping), "hv:messages/NestedTooDeep");
  hvSetCell(cell.get(), 0, nullptr);
  EXPECT_EQ(raised(wrapping), "hv:messages/NestedTooDeep") << "the second is as deep";
  hvSetCell(cell.get(), 1, doubleScalar(1));
  EXPECT_EQ(raised(wrapping), "nothing");
  EXPECT_EQ(raised([&] { hvSetCell(cell.get(), 0, nested(hvMaximumNesting)); }), "hv:messages/NestedTooDeep");
}

TEST_F(CellArrayTest, NestingIsKeptByBothSidesOfAParting) {
  const hvArrayPtr cell(hvCreateCellArray({1, 2}));
  hvSetCell(cell.get(), 0, nested(hvMaximumNesting - 1));
  const hvArrayPtr copy = copyOf(cell);
  hvSetCell(copy.get(), 1, doubleScalar(1));
  EXPECT_EQ(raised([&] { cellOf(copyOf(cell)); }), "hv:messages/NestedTooDeep");
  EXPECT_EQ(raised([&] { cellOf(copyOf(copy)); }), "hv:messages/NestedTooDeep");
}

}  // namespace
