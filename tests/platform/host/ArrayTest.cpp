#include <limits>

#include "platform/host/Array.h"
#include "tests/platform/host/HostTest.h"

namespace {

constexpr std::size_t tooMany = std::numeric_limits<std::size_t>::max();

struct NumericClass {
  hvClassCode code;
  int number;
  const char* name;
  bool isFloat;
};

constexpr NumericClass numericClasses[] = {
    {hvClassCode::Single, 6, "single", true}, {hvClassCode::Double, 7, "double", true},
    {hvClassCode::Int8, 8, "int8", false},    {hvClassCode::UInt8, 9, "uint8", false},
    {hvClassCode::Int16, 10, "int16", false}, {hvClassCode::UInt16, 11, "uint16", false},
    {hvClassCode::Int32, 12, "int32", false}, {hvClassCode::UInt32, 13, "uint32", false},
    {hvClassCode::Int64, 14, "int64", false}, {hvClassCode::UInt64, 15, "uint64", false},
};

class ArrayTest : public HostTest {};

TEST_F(ArrayTest, NumericClassesHaveTheirCodesNamesAndFamilies) {
  for (const NumericClass& wanted : numericClasses) {
    for (const hvComplexity complexity : {hvComplexity::Real, hvComplexity::Complex}) {
      const hvArrayPtr array(hvCreateNumericMatrix(2, 3, wanted.code, complexity));
      SCOPED_TRACE(wanted.name);
      EXPECT_EQ(static_cast<int>(hvGetClassCode(array.get())), wanted.number);
      EXPECT_EQ(hvGetClassName(array.get()), wanted.name);
      EXPECT_EQ(hvIsComplex(array.get()), complexity == hvComplexity::Complex);
      EXPECT_TRUE(hvIsNumeric(array.get()));
      EXPECT_TRUE(hvIsClass(array.get(), wanted.name));
      EXPECT_TRUE(hvIsA(array.get(), wanted.name));
      EXPECT_TRUE(hvIsA(array.get(), "numeric"));
      EXPECT_EQ(hvIsA(array.get(), "float"), wanted.isFloat);
      EXPECT_EQ(hvIsA(array.get(), "integer"), !wanted.isFloat);
    }
  }
}

TEST_F(ArrayTest, OtherClassesHaveTheirCodesAndNamesAndNoFamily) {
  const std::pair<hvArray*, std::pair<int, const char*>> wanted[] = {
      {hvCreateLogicalScalar(true), {1, "logical"}},    {hvCreateString("x"), {2, "char"}},
      {hvCreateStringScalar(u"x"), {3, "string"}},      {hvCreateCellArray({1, 1}), {4, "cell"}},
      {hvCreateStructArray({1, 1}, {}), {5, "struct"}},
  };
  for (const auto& [array, expected] : wanted) {
    const hvArrayPtr owned(array);
    EXPECT_EQ(static_cast<int>(hvGetClassCode(array)), expected.first);
    EXPECT_EQ(hvGetClassName(array), expected.second);
    EXPECT_TRUE(hvIsClass(array, expected.second));
    EXPECT_TRUE(hvIsA(array, expected.second));
    EXPECT_FALSE(hvIsNumeric(array));
    for (const char* const family : {"numeric", "float", "integer", "double", ""}) {
      EXPECT_FALSE(hvIsA(array, family)) << family;
      EXPECT_FALSE(hvIsClass(array, family)) << family;
    }
  }
}

TEST_F(ArrayTest, EachClassIsToldApartByItsOwnQuestionOnly) {
  const hvArrayPtr arrays[] = {
      hvArrayPtr(hvCreateLogicalScalar(false)),    hvArrayPtr(hvCreateString("x")),
      hvArrayPtr(hvCreateStringScalar(u"x")),      hvArrayPtr(hvCreateCellArray({1, 1})),
      hvArrayPtr(hvCreateStructArray({1, 1}, {})), doubleScalar(1)};
  bool (*const questions[])(const hvArray*) noexcept = {hvIsLogical, hvIsChar,   hvIsString,
                                                        hvIsCell,    hvIsStruct, hvIsNumeric};
  for (std::size_t i = 0; i < std::size(arrays); ++i) {
    for (std::size_t k = 0; k < std::size(questions); ++k) EXPECT_EQ(questions[k](arrays[i].get()), i == k);
  }
}

TEST_F(ArrayTest, AFamilyIsNoClass) {
  const hvArrayPtr array = doubleScalar(1);
  EXPECT_FALSE(hvIsClass(array.get(), "numeric"));
  EXPECT_FALSE(hvIsClass(array.get(), "float"));
  EXPECT_FALSE(hvIsClass(array.get(), "Double"));
}

TEST_F(ArrayTest, TheNullValueReadsAsAnEmptyArrayWithoutAClass) {
  EXPECT_EQ(hvGetClassCode(nullptr), hvClassCode::Unknown);
  EXPECT_EQ(hvGetClassName(nullptr), "");
  EXPECT_FALSE(hvIsClass(nullptr, ""));
  EXPECT_FALSE(hvIsA(nullptr, "double"));
  EXPECT_FALSE(hvIsNumeric(nullptr));
  EXPECT_FALSE(hvIsComplex(nullptr));
  EXPECT_TRUE(hvIsEmpty(nullptr));
  EXPECT_FALSE(hvIsScalar(nullptr));
  EXPECT_EQ(hvGetDimensions(nullptr), (hvDims{0, 0}));
  EXPECT_EQ(hvGetNumberOfElements(nullptr), 0U);
  EXPECT_EQ(hvGetM(nullptr), 0U);
  EXPECT_EQ(hvGetN(nullptr), 0U);
}

TEST_F(ArrayTest, DestroyingNullDoesNothing) {
  hvDestroyArray(nullptr);
}

TEST_F(ArrayTest, ACopyOfNullIsNull) {
  EXPECT_EQ(hvCreateSharedDataCopy(nullptr), nullptr);
}

TEST_F(ArrayTest, DimensionsAreKeptAndTrailingOnesDropped) {
  const std::pair<hvDims, hvDims> cases[] = {
      {{2, 3}, {2, 3}},
      {{1, 1}, {1, 1}},
      {{2, 3, 1}, {2, 3}},
      {{2, 3, 1, 1, 1}, {2, 3}},
      {{2, 3, 4}, {2, 3, 4}},
      {{2, 1, 1}, {2, 1}},
      {{1, 1, 5}, {1, 1, 5}},
      {{2, 3, 1, 4}, {2, 3, 1, 4}},
      {{2, 3, 1, 4, 1}, {2, 3, 1, 4}},
      {{0, 0}, {0, 0}},
      {{0, 3, 2}, {0, 3, 2}},
      {{2, 3, 0}, {2, 3, 0}},
  };
  for (const auto& [given, wanted] : cases) {
    const hvArrayPtr arrays[] = {hvArrayPtr(hvCreateNumericArray(given, hvClassCode::Double)),
                                 hvArrayPtr(hvCreateLogicalArray(given)),
                                 hvArrayPtr(hvCreateCharArray(given)),
                                 hvArrayPtr(hvCreateStringArray(given)),
                                 hvArrayPtr(hvCreateCellArray(given)),
                                 hvArrayPtr(hvCreateStructArray(given, {"a"}))};
    for (const hvArrayPtr& array : arrays) EXPECT_EQ(hvGetDimensions(array.get()), wanted);
  }
}

TEST_F(ArrayTest, RowsColumnsAndElementsAreCounted) {
  const hvArrayPtr array(hvCreateNumericArray({2, 3, 4}, hvClassCode::Int8));
  EXPECT_EQ(hvGetM(array.get()), 2U);
  EXPECT_EQ(hvGetN(array.get()), 3U);
  EXPECT_EQ(hvGetNumberOfElements(array.get()), 24U);
  EXPECT_FALSE(hvIsEmpty(array.get()));
  EXPECT_FALSE(hvIsScalar(array.get()));
  EXPECT_TRUE(hvIsScalar(doubleScalar(3).get()));
  EXPECT_TRUE(hvIsEmpty(hvArrayPtr(hvCreateNumericArray({2, 3, 0}, hvClassCode::Int8)).get()));
}

TEST_F(ArrayTest, FewerThanTwoDimensionsAreRefused) {
  for (const hvDims& dimensions : {hvDims{}, hvDims{5}}) {
    EXPECT_EQ(raised([&] { hvCreateNumericArray(dimensions, hvClassCode::Double); }),
              "hv:messages/TooFewDimensions");
    EXPECT_EQ(raised([&] { hvCreateLogicalArray(dimensions); }), "hv:messages/TooFewDimensions");
    EXPECT_EQ(raised([&] { hvCreateCharArray(dimensions); }), "hv:messages/TooFewDimensions");
    EXPECT_EQ(raised([&] { hvCreateStringArray(dimensions); }), "hv:messages/TooFewDimensions");
    EXPECT_EQ(raised([&] { hvCreateCellArray(dimensions); }), "hv:messages/TooFewDimensions");
    EXPECT_EQ(raised([&] { hvCreateStructArray(dimensions, {}); }), "hv:messages/TooFewDimensions");
  }
}

TEST_F(ArrayTest, ASizeThatOverflowsIsRefused) {
  const hvDims cases[] = {
      {tooMany, 2}, {tooMany / 2, 3}, {1UL << 32, 1UL << 32}, {1UL << 30, 1UL << 30, 1UL << 30}};
  for (const hvDims& dimensions : cases) {
    EXPECT_EQ(raised([&] { hvCreateNumericArray(dimensions, hvClassCode::Int8); }),
              "hv:messages/ArrayTooLarge");
    EXPECT_EQ(raised([&] { hvCreateCellArray(dimensions); }), "hv:messages/ArrayTooLarge");
    EXPECT_EQ(raised([&] { hvCreateStringArray(dimensions); }), "hv:messages/ArrayTooLarge");
    EXPECT_EQ(raised([&] { hvCreateStructArray(dimensions, {"a"}); }), "hv:messages/ArrayTooLarge");
  }
}

TEST_F(ArrayTest, AMatrixWhoseSizeOverflowsIsRefused) {
  EXPECT_EQ(sentence([] { hvCreateNumericMatrix(1UL << 32U, 1UL << 32U, hvClassCode::Int8); }),
            "An array of 4294967296-by-4294967296 elements is larger than any memory: make its dimensions "
            "smaller.");
}

TEST_F(ArrayTest, ASizeWhoseBytesOverflowIsRefused) {
  const hvDims dimensions{1, tooMany / 8};
  EXPECT_EQ(raised([&] { hvCreateNumericArray(dimensions, hvClassCode::Double, hvComplexity::Complex); }),
            "hv:messages/ArrayTooLarge");
  EXPECT_EQ(raised([&] { hvCreateCharArray({1, tooMany / 2}); }), "hv:messages/ArrayTooLarge");
  EXPECT_EQ(raised([&] { hvCreateCellArray(dimensions); }), "hv:messages/ArrayTooLarge");
  EXPECT_EQ(raised([&] { hvCreateStringArray(dimensions); }), "hv:messages/ArrayTooLarge");
  EXPECT_EQ(raised([&] {
              hvCreateStructArray({1, 1UL << 62}, {"a", "b", "c", "d"});
            }),
            "hv:messages/ArrayTooLarge");
}

TEST_F(ArrayTest, AHugeDimensionBesideAnEmptyOneIsNoOverflow) {
  const hvArrayPtr array(hvCreateNumericArray({tooMany, tooMany, 0}, hvClassCode::Double));
  EXPECT_TRUE(hvIsEmpty(array.get()));
  EXPECT_EQ(hvGetM(array.get()), tooMany);
}

TEST_F(ArrayTest, AStructureWithoutFieldsOfHugeSizeTakesNoMemory) {
  const hvArrayPtr array(hvCreateStructArray({1, tooMany / 2}, {}));
  EXPECT_EQ(hvGetNumberOfElements(array.get()), tooMany / 2);
}

TEST_F(ArrayTest, ANumericArrayOfAnotherClassIsRefused) {
  for (const hvClassCode code :
       {hvClassCode::Unknown, hvClassCode::Logical, hvClassCode::Character, hvClassCode::String,
        hvClassCode::Cell, hvClassCode::Structure, hvClassCode::Object, static_cast<hvClassCode>(17),
        static_cast<hvClassCode>(-1)}) {
    EXPECT_EQ(raised([&] { hvCreateNumericMatrix(1, 1, code); }), "hv:messages/NotNumeric");
    EXPECT_EQ(raised([&] { hvCreateNumericArray({1, 1}, code); }), "hv:messages/NotNumeric");
  }
}

TEST_F(ArrayTest, EveryArrayCountsWhileItLives) {
  hvArrayPtr cell(hvCreateCellArray({1, 2}));
  EXPECT_EQ(arraysMade(), 1U);
  hvSetCell(cell.get(), 0, doubleScalar(1));
  EXPECT_EQ(arraysMade(), 2U);
  const hvArrayPtr copy = copyOf(cell);
  EXPECT_EQ(arraysMade(), 3U);
  hvSetCell(cell.get(), 1, doubleScalar(2));
  EXPECT_EQ(arraysMade(), 5U)
      << "the cell has parted from its copy, so that its first element is an array of its own";
  cell.reset();
  EXPECT_EQ(arraysMade(), 2U);
}

TEST_F(ArrayTest, AnErrorIsAnExceptionWithASentence) {
  try {
    hvCreateNumericArray({5}, hvClassCode::Double);
    FAIL() << "no error was raised";
  } catch (const std::exception& error) {
    EXPECT_NE(dynamic_cast<const hvError*>(&error), nullptr);
    EXPECT_STREQ(
        error.what(),
        "An array has at least two dimensions, and 1 were given: write a row of n elements as 1-by-n.");
  }
}

}  // namespace
