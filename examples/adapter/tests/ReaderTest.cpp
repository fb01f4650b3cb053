#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <tests/Read.h>

using testing::IsEmpty;

TEST(Reader, ReadsNumbersAsDoubles) {
  EXPECT_EQ(show("a = 7"), "a: 1x1 double = 7\n");
  EXPECT_EQ(show("a = -0.25"), "a: 1x1 double = -0.25\n");
  EXPECT_EQ(show("a = +1.5e3"), "a: 1x1 double = 1500\n");
  EXPECT_EQ(show("a = 2E-1"), "a: 1x1 double = 0.2\n");
}

TEST(Reader, KeepsTheSignOfZero) {
  const std::vector<params::Variable> variables = params::readVariables("a = -0");
  const hvArrayPtr expected(hvCreateDoubleScalar(-0.0));
  EXPECT_TRUE(hvEqual(variables.at(0).value.get(), expected.get()));
}

TEST(Reader, ReadsListsAsRows) {
  EXPECT_EQ(show("a = [1, -2.5,3]"), "a: 1x3 double = [1 -2.5 3]\n");
  EXPECT_EQ(show("a = [ 4 ]"), "a: 1x1 double = 4\n");
}

TEST(Reader, ReadsTheEmptyListAs1By0) {
  const std::vector<params::Variable> variables = params::readVariables("a = [ ]");
  EXPECT_EQ(hvDescribe(variables.at(0).value.get()), "1x0 double");
}

TEST(Reader, ReadsTruthValues) {
  EXPECT_EQ(show("a = true\nb = false"), "a: 1x1 logical = true\nb: 1x1 logical = false\n");
}

TEST(Reader, ReadsTextsWithTheirEscapes) {
  const std::vector<params::Variable> variables = params::readVariables(R"(a = "\"x\" \\ y\n\tö # \\n" # z)");
  EXPECT_EQ(hvArrayToString(variables.at(0).value.get()), u"\"x\" \\ y\n\t\u00F6 # \\n");
}

TEST(Reader, ReadsTheEmptyTextAsAText) {
  const std::vector<params::Variable> variables = params::readVariables("a = \"\"");
  EXPECT_TRUE(ndsvIsStringScalar(variables.at(0).value.get()));
  EXPECT_EQ(hvDescribe(variables.at(0).value.get()), "1x0 char");
}

TEST(Reader, KeepsTheOrderOfTheLines) {
  EXPECT_EQ(show("z = 1\na = 2\nm = 3\n"), "z: 1x1 double = 1\na: 1x1 double = 2\nm: 1x1 double = 3\n");
}

TEST(Reader, PassesOverBlanksAndComments) {
  EXPECT_EQ(show("\n \t\n# b = 2\n\t a\t=\t1\t# c = 3\n  # d"), "a: 1x1 double = 1\n");
  EXPECT_EQ(show("a=1#b"), "a: 1x1 double = 1\n");
}

TEST(Reader, FindsNothingInAnEmptyContent) {
  EXPECT_THAT(show(""), IsEmpty());
  EXPECT_THAT(show("\n"), IsEmpty());
}

TEST(Reader, TakesACarriageReturnForPartOfTheLineEndOnlyBeforeALineFeed) {
  EXPECT_EQ(show("a = 1\r\nb = 2\r\n"), "a: 1x1 double = 1\nb: 1x1 double = 2\n");
  EXPECT_EQ(errorOf("a = 1\rb = 2"),
            "line 1, column 6: expected the end of the line or a comment, but found '\\r'");
}

TEST(Reader, RefusesWhatIsNotQuiteANumber) {
  for (const std::string word :
       {".5", "5.", "-", "+", "1e", "1e+", "1.e3", "0x10", "1.2.3", "--1", "inf", "1_0"}) {
    EXPECT_EQ(errorOf("a = " + word),
              "line 1, column 5: expected a number, a list, a text, true or false, but found '" + word + "'");
  }
}

TEST(Reader, RefusesNumbersBeyondTheRangeOfADouble) {
  const std::string words = "line 1, column 5: expected a number within the range of a double, but found ";
  EXPECT_EQ(errorOf("a = -1e309"), words + "'-1e309'");
  EXPECT_EQ(errorOf("a = 1e-400"), words + "'1e-400'");
  EXPECT_EQ(show("a = 1.7976931348623157e308"), "a: 1x1 double = 1.7976931348623157e+308\n");
}

TEST(Reader, RefusesIntegersThatADoubleMayNotHold) {
  const std::string words =
      "line 1, column 5: expected an integer below 9007199254740992, so that a double holds it exactly, but "
      "found ";
  EXPECT_EQ(errorOf("a = 9007199254740992"), words + "'9007199254740992'");
  EXPECT_EQ(errorOf("a = -9007199254740993"), words + "'-9007199254740993'");
  EXPECT_THAT(errorOf("a = 9007199254740991"), IsEmpty());
  EXPECT_THAT(errorOf("a = 9007199254740993.0"), IsEmpty());
}

TEST(Reader, CountsColumnsInCodePoints) {
  EXPECT_EQ(errorOf("a = \"\u00E4\U0001F600\" ?"),
            "line 1, column 10: expected the end of the line or a comment, but found '?'");
}

TEST(Reader, NamesACharacterThatIsNotAscii) {
  EXPECT_EQ(errorOf("\u00E4 = 1"),
            "line 1, column 1: expected a name (a letter, then letters, digits and underscores), but found "
            "'\u00E4'");
}

TEST(Reader, CutsALongWordInItsSentence) {
  EXPECT_EQ(errorOf("a = " + std::string(1000, 'x')),
            "line 1, column 5: expected a number, a list, a text, true or false, but found '" +
                std::string(23, 'x') + "\u2026'");
}

TEST(Reader, RefusesABackslashAtTheEndOfTheLine) {
  EXPECT_EQ(
      errorOf("a = \"x\\"),
      "line 1, column 7: expected \\\", \\\\, \\n or \\t, but found a backslash and then the end of the "
      "line");
}

TEST(Reader, TellsWhereIllFormedUtf8Begins) {
  const std::string words = ": expected UTF-8, but found bytes that are not";
  EXPECT_EQ(errorOf("a = 1\n# \u00E4\xFF"), "line 2, column 4" + words);
  // The two bytes that begin a code point of three, and break off, also begin U+FFFD.
  EXPECT_EQ(errorOf("# \xEF\xBF"), "line 1, column 3" + words);
  EXPECT_EQ(errorOf("# \xEF\xBF\nb"), "line 1, column 3" + words);
  EXPECT_EQ(errorOf("# \xED\xA0\x80"), "line 1, column 3" + words);
  EXPECT_THAT(errorOf("# \uFFFD"), IsEmpty());
}

TEST(Reader, LeavesNoArrayBehindAfterAnError) {
  const std::size_t before = hvGetLiveArrayCount();
  EXPECT_EQ(errorOf("a = 1\nb = [2, 3]\nc = \"x\"\nd"),
            "line 4, column 2: expected '=' behind the name, but found the end of the line");
  EXPECT_EQ(hvGetLiveArrayCount(), before);
}
