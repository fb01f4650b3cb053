#include <cmath>
#include <complex>

#include "platform/host/ArrayText.h"
#include "tests/platform/host/HostTest.h"

namespace {

class ArrayFormatTest : public HostTest {};

std::string format(const hvArrayPtr& array, std::size_t width = 100) {
  return hvFormat(array.get(), "x", width);
}

TEST_F(ArrayFormatTest, ASingleValueTakesOneLine) {
  EXPECT_EQ(format(doubleScalar(2.5)), "x: 1x1 double = 2.5\n");
  EXPECT_EQ(format(hvArrayPtr(hvCreateLogicalScalar(true))), "x: 1x1 logical = true\n");
  EXPECT_EQ(format(hvArrayPtr(hvCreateString("a \"b\""))), "x: 1x5 char = \"a \\\"b\\\"\"\n");
  EXPECT_EQ(format(hvArrayPtr(hvCreateStringScalar(u"ab"))), "x: 1x1 string = \"ab\"\n");
}

TEST_F(ArrayFormatTest, ALongTextIsNeverCut) {
  const std::string text(500, 'y');
  EXPECT_EQ(format(hvArrayPtr(hvCreateString(text)), 20), "x: 1x500 char = \"" + text + "\"\n");
}

TEST_F(ArrayFormatTest, EmptyValuesTakeOneLine) {
  EXPECT_EQ(hvFormat(nullptr, "x"), "x: 0x0 double = []\n");
  EXPECT_EQ(format(hvArrayPtr(hvCreateNumericArray({0, 3, 2}, hvClassCode::Int8))), "x: 0x3x2 int8 = []\n");
  EXPECT_EQ(format(hvArrayPtr(hvCreateString(""))), "x: 1x0 char = \"\"\n");
  EXPECT_EQ(format(hvArrayPtr(hvCreateCharArray({0, 0}))), "x: 0x0 char = []\n");
  EXPECT_EQ(format(hvArrayPtr(hvCreateCellArray({1, 0}))), "x: 1x0 cell = {}\n");
  EXPECT_EQ(format(hvArrayPtr(hvCreateStructArray({1, 0}, {"a", "b"}))),
            "x: 1x0 struct = [] with the fields a, b\n");
  EXPECT_EQ(format(hvArrayPtr(hvCreateStructArray({1, 0}, {}))), "x: 1x0 struct = []\n");
  EXPECT_EQ(format(hvArrayPtr(hvCreateStructArray({1, 1}, {}))), "x: 1x1 struct = ()\n");
}

TEST_F(ArrayFormatTest, NamesAreMadeHarmless) {
  EXPECT_EQ(hvFormat(doubleScalar(1).get(), "a\x1B[2J\n"), "a\\u001b[2J\\n: 1x1 double = 1\n");
  EXPECT_EQ(hvFormat(doubleScalar(1).get(), ""), "\"\": 1x1 double = 1\n");
}

TEST_F(ArrayFormatTest, ARowThatFitsTakesOneLineAndALongOneATable) {
  const hvArrayPtr row = doubleMatrix(1, 6, {1, 2, 3, 4, 5, 6});
  EXPECT_EQ(format(row), "x: 1x6 double = [1 2 3 4 5 6]\n");
  EXPECT_EQ(format(row, 0), "x: 1x6 double = [1 2 3 4 5 6]\n");
  const hvArrayPtr longer = doubleMatrix(1, 9, {100, 200, 300, 400, 500, 600, 700, 800, 900});
  EXPECT_EQ(format(longer, 24),
            "x: 1x9 double =\n"
            "  columns 1 to 4:\n"
            "    100  200  300  400\n"
            "  columns 5 to 8:\n"
            "    500  600  700  800\n"
            "  column 9:\n"
            "    900\n");
}

TEST_F(ArrayFormatTest, NumbersAreAlignedByTheirDecimalPoints) {
  EXPECT_EQ(
      format(doubleMatrix(
          3, 4, {1, 2.5, -3.25, 100000, 1e-7, 0, std::nan(""), -HUGE_VAL, 1234567.891, 0.1, -20, 1e20})),
      "x: 3x4 double =\n"
      "   1     100000          NaN        0.1\n"
      "   2.5        1e-07     -Inf      -20\n"
      "  -3.25       0      1234567.891    1e+20\n");
}

TEST_F(ArrayFormatTest, ComplexNumbersAreAlignedByTheirImaginaryParts) {
  const hvArrayPtr array(hvCreateNumericMatrix(2, 2, hvClassCode::Single, hvComplexity::Complex));
  const std::complex<float> values[] = {{1, 2}, {-10.5F, -0.25F}, {0, 0}, {3, 4}};
  std::copy(std::begin(values), std::end(values),
            hvGetWritableData<std::complex<float>>(array.get()).begin());
  EXPECT_EQ(format(array),
            "x: 2x2 complex single =\n"
            "      1+2i     0+0i\n"
            "  -10.5-0.25i  3+4i\n");
}

TEST_F(ArrayFormatTest, WordsAndTextsAreAlignedByTheirBeginnings) {
  const hvArrayPtr flags(hvCreateLogicalArray({2, 2}));
  hvGetWritableData<bool>(flags.get())[0] = true;
  EXPECT_EQ(format(flags),
            "x: 2x2 logical =\n"
            "  true   false\n"
            "  false  false\n");
  const hvArrayPtr texts(hvCreateStringArray({2, 2}));
  hvSetString(texts.get(), 0, std::u16string(u"\u65E5\u672C"));
  hvSetString(texts.get(), 1, std::u16string(u"longer"));
  hvSetString(texts.get(), 2, boost::none);
  EXPECT_EQ(format(texts),
            "x: 2x2 string =\n"
            "  \"\u65E5\u672C\"    <missing>\n"
            "  \"longer\"  \"\"\n")
      << "wide characters take two columns";
}

TEST_F(ArrayFormatTest, ATableThatIsTooWideIsSplitAndNothingIsLost) {
  const hvArrayPtr table = doubleMatrix(2, 6, {11, 21, 12, 22, 13, 23, 14, 24, 15, 25, 16, 26});
  EXPECT_EQ(format(table, 24),
            "x: 2x6 double =\n"
            "  11  12  13  14  15  16\n"
            "  21  22  23  24  25  26\n");
  EXPECT_EQ(format(table, 23),
            "x: 2x6 double =\n"
            "  columns 1 to 5:\n"
            "    11  12  13  14  15\n"
            "    21  22  23  24  25\n"
            "  column 6:\n"
            "    16\n"
            "    26\n");
}

TEST_F(ArrayFormatTest, AColumnWiderThanTheLineStandsAlone) {
  const hvArrayPtr texts(hvCreateStringArray({1, 2}));
  const std::u16string text(60, u'y');
  hvSetString(texts.get(), 0, text);
  hvSetString(texts.get(), 1, text);
  const std::string shown(60, 'y');
  EXPECT_EQ(format(texts, 30),
            "x: 1x2 string =\n  column 1:\n    \"" + shown + "\"\n  column 2:\n    \"" + shown + "\"\n");
}

TEST_F(ArrayFormatTest, CharacterRowsTakeALineEach) {
  const hvArrayPtr rows(hvCreateCharArray({2, 3}));
  const std::u16string units = u"adbe\nf";
  std::copy(units.begin(), units.end(), hvGetWritableData<char16_t>(rows.get()).begin());
  EXPECT_EQ(format(rows),
            "x: 2x3 char =\n"
            "  \"ab\\n\"\n"
            "  \"def\"\n");
}

TEST_F(ArrayFormatTest, MoreDimensionsComePageByPage) {
  const hvArrayPtr array(hvCreateNumericArray({1, 2, 2, 2}, hvClassCode::Int16));
  const hvData<std::int16_t> data = hvGetWritableData<std::int16_t>(array.get());
  for (std::size_t i = 0; i < data.size(); ++i) data[i] = static_cast<std::int16_t>(i * 3);
  EXPECT_EQ(format(array),
            "x: 1x2x2x2 int16 =\n"
            "  (:,:,1,1):\n"
            "    0  3\n"
            "  (:,:,2,1):\n"
            "    6  9\n"
            "  (:,:,1,2):\n"
            "    12  15\n"
            "  (:,:,2,2):\n"
            "    18  21\n");
  const hvArrayPtr characters(hvCreateCharArray({1, 2, 2}));
  const std::u16string units = u"abcd";
  std::copy(units.begin(), units.end(), hvGetWritableData<char16_t>(characters.get()).begin());
  EXPECT_EQ(format(characters),
            "x: 1x2x2 char =\n"
            "  (:,:,1):\n"
            "    \"ab\"\n"
            "  (:,:,2):\n"
            "    \"cd\"\n");
}

TEST_F(ArrayFormatTest, CellsAndStructuresAreIndented) {
  const hvArrayPtr cell(hvCreateCellArray({2, 2}));
  hvSetCell(cell.get(), 0, hvArrayPtr(hvCreateString("a")));
  hvSetCell(cell.get(), 3, doubleMatrix(2, 1, {1, 2}));
  const hvArrayPtr structure(hvCreateStructArray({1, 1}, {"limits", "items", "", "row\n"}));
  hvSetField(structure.get(), 0, "limits", doubleMatrix(1, 2, {-1, 1}));
  hvSetField(structure.get(), 0, "items", copyOf(cell));
  hvSetField(structure.get(), 0, "row\n", hvArrayPtr(hvCreateCellArray({1, 2})));
  EXPECT_EQ(format(structure),
            "x: 1x1 struct\n"
            "  limits: 1x2 double = [-1 1]\n"
            "  items: 2x2 cell\n"
            "    {1,1}: 1x1 char = \"a\"\n"
            "    {2,1}: 0x0 double = []\n"
            "    {1,2}: 0x0 double = []\n"
            "    {2,2}: 2x1 double =\n"
            "      1\n"
            "      2\n"
            "  \"\": 0x0 double = []\n"
            "  row\\n: 1x2 cell\n"
            "    {1}: 0x0 double = []\n"
            "    {2}: 0x0 double = []\n");
}

TEST_F(ArrayFormatTest, SeveralStructuresAreNumbered) {
  const hvArrayPtr row(hvCreateStructArray({1, 2}, {"a"}));
  hvSetField(row.get(), 1, "a", doubleScalar(5));
  EXPECT_EQ(format(row),
            "x: 1x2 struct\n"
            "  (1)\n"
            "    a: 0x0 double = []\n"
            "  (2)\n"
            "    a: 1x1 double = 5\n");
  EXPECT_EQ(format(hvArrayPtr(hvCreateStructArray({2, 1, 2}, {"a"}))),
            "x: 2x1x2 struct\n"
            "  (1,1,1)\n"
            "    a: 0x0 double = []\n"
            "  (2,1,1)\n"
            "    a: 0x0 double = []\n"
            "  (1,1,2)\n"
            "    a: 0x0 double = []\n"
            "  (2,1,2)\n"
            "    a: 0x0 double = []\n");
}

TEST_F(ArrayFormatTest, TheDeepestNestingIsShown) {
  hvArrayPtr cell = doubleScalar(1);
  for (std::size_t level = 0; level < hvMaximumNesting; ++level) {
    hvArrayPtr outer(hvCreateCellArray({1, 1}));
    hvSetCell(outer.get(), 0, std::move(cell));
    cell = std::move(outer);
  }
  const std::string text = format(cell);
  EXPECT_TRUE(text.ends_with(std::string(2 * hvMaximumNesting, ' ') + "{1}: 1x1 double = 1\n"));
  EXPECT_EQ(hvPreview(cell.get(), 6), "{{{{{…");
}

TEST_F(ArrayFormatTest, LinesHaveNoBlanksAtTheirEnds) {
  const hvArrayPtr texts(hvCreateStringArray({2, 2}));
  hvSetString(texts.get(), 2, std::u16string(u"longer"));
  for (const hvArrayPtr& array : {copyOf(texts), doubleMatrix(2, 2, {1.5, 2, 3, 4.25})}) {
    EXPECT_EQ(format(array).find(" \n"), std::string::npos) << format(array);
  }
}

}  // namespace
