#include <cctype>
#include <random>

#include <gtest/gtest.h>

#include "adapters/json/FormatFailure.h"
#include "adapters/json/SyntaxCheck.h"
#include "tests/adapters/json/readText.h"

using nd::adapters::json::findSyntaxFault;
using nd::adapters::json::FormatFailure;
using nd::adapters::json::placeOf;

namespace {

constexpr const char* goodText =
    "{\n  \"gain\": 2.5, \"table\": [[1, 2], [3, -4e1]],\n"
    "  \"\\u0061\": [\"x\", null, \"\xC3\xA4\\n\\ud83d\\ude00\"], \"on\": [true, false],\n"
    "  \"mixed\": [null, {}, [], {\"k\": 9007199254740993}],\n  \"s\": [{\"p\": 1, \"q\": 2}, {\"q\": 3, "
    "\"p\": 4}]\n}";

bool isGrammatical(const std::string& failure) {
  return failure.find("expected the name of a variable") != std::string::npos ||
         failure.find("expected a name that the object doesn't have yet") != std::string::npos ||
         failure.find("expected an integer that") != std::string::npos ||
         failure.find("expected a number within the range") != std::string::npos;
}

}  // namespace

TEST(ReaderFailures, NameLineColumnAndWhatWasExpected) {
  EXPECT_EQ(failureOf("{\n  \"a\": 1,\n  \"b\": 2 \"c\": 3\n}"),
            "line 3, column 10: expected ',' or '}' behind the member's value, but found '\"'");
}

TEST(ReaderFailures, CountColumnsInCodePoints) {
  EXPECT_EQ(failureOf("{\"a\": \"\xF0\x9F\x98\x80\xC3\xA4\" 1}"),
            "line 1, column 12: expected ',' or '}' behind the member's value, but found '1'");
}

TEST(ReaderFailures, DoNotCountAByteOrderMark) {
  EXPECT_EQ(failureOf("\xEF\xBB\xBF[]"),
            "line 1, column 1: expected '{' at the beginning of the object that holds the variables, but "
            "found '['");
}

TEST(ReaderFailures, GiveThePlaceAlsoAsNumbers) {
  try {
    readText("{\n\"a\" 1}");
    FAIL() << "it was read";
  } catch (const FormatFailure& failure) {
    EXPECT_EQ(failure.place(), (nd::adapters::json::Place{2, 5}));
  }
}

TEST(ReaderFailures, SayThatAnEmptyTextHasNoObject) {
  const std::string words =
      ": expected '{' at the beginning of the object that holds the variables, but found the end of the text";
  EXPECT_EQ(failureOf(""), "line 1, column 1" + words);
  EXPECT_EQ(failureOf("\xEF\xBB\xBF"), "line 1, column 1" + words);
  EXPECT_EQ(failureOf(" \n "), "line 2, column 2" + words);
}

TEST(ReaderFailures, RefuseAnotherValueAtTheTop) {
  const std::string words =
      "line 1, column 1: expected '{' at the beginning of the object that holds the variables, ";
  EXPECT_EQ(failureOf("[1, 2]"), words + "but found '['");
  EXPECT_EQ(failureOf("17"), words + "but found '1'");
  EXPECT_EQ(failureOf("\"a\""), words + "but found '\"'");
  EXPECT_EQ(failureOf("true"), words + "but found 'true'");
  EXPECT_EQ(failureOf("null"), words + "but found 'null'");
}

TEST(ReaderFailures, RefuseTextBehindTheEnd) {
  const std::string words =
      ": expected the end of the text behind the object that holds the variables, but found ";
  EXPECT_EQ(failureOf("{\"a\": 1} x"), "line 1, column 10" + words + "'x'");
  EXPECT_EQ(failureOf("{}\n{}"), "line 2, column 1" + words + "'{'");
  EXPECT_EQ(failureOf("{}}"), "line 1, column 3" + words + "'}'");
  EXPECT_EQ(failureOf("{\"a\": 1}]"), "line 1, column 9" + words + "']'");
  EXPECT_EQ(failureOf(std::string("{\"a\": 1}\0", 9)), "line 1, column 9" + words + "U+0000");
}

TEST(ReaderFailures, NameTheByteThatIsNotUtf8) {
  EXPECT_EQ(failureOf("{\"a\": \"x\xFFy\"}"),
            "line 1, column 9: expected well-formed UTF-8, but found the byte 0xFF, which is not UTF-8 here");
  EXPECT_EQ(failureOf("{\"a\": 1}\n\xC3"),
            "line 2, column 1: expected the end of the text behind the object that holds the variables, "
            "but found the byte 0xC3, which is not UTF-8 here");
}

TEST(ReaderFailures, NameTheHalfOfASurrogatePair) {
  EXPECT_EQ(
      failureOf(R"({"a": "\ud800"})"),
      "line 1, column 8: expected the second half of a surrogate pair behind \\ud800, but found it alone");
  EXPECT_EQ(
      failureOf(R"({"\udc00": 1})"),
      "line 1, column 3: expected the first half of a surrogate pair ahead of \\udc00, but found it alone");
}

TEST(ReaderFailures, NameANumberBeyondTheDoubles) {
  EXPECT_EQ(failureOf(R"({"a": 1e400})"),
            "line 1, column 7: expected a number within the range of a double, but found 1e400");
  EXPECT_EQ(failureOf("{\"a\": [1,\n -1e309, 2]}"),
            "line 2, column 2: expected a number within the range of a double, but found -1e309");
  EXPECT_EQ(failureOf(R"({"a": [1, "x", 1e400]})"),
            "line 1, column 16: expected a number within the range of a double, but found 1e400");
}

TEST(ReaderFailures, NameTheFirstFaultBeforeANumberBeyondTheDoublesBehindIt) {
  EXPECT_EQ(failureOf("{\"a\": 1e400,\n \"b\" 1}"),
            "line 1, column 7: expected a number within the range of a double, but found 1e400");
  EXPECT_EQ(failureOf("{\"b\" 1,\n \"a\": 1e400}"),
            "line 1, column 6: expected ':' behind the member's name, but found '1'");
}

TEST(ReaderFailures, NameAnIntegerThatNoClassHolds) {
  const std::string words =
      ": expected an integer that a double, an int64 or a uint64 holds exactly, but found ";
  EXPECT_EQ(failureOf(R"({"a": 18446744073709551617})"), "line 1, column 7" + words + "18446744073709551617");
  EXPECT_EQ(failureOf(R"({"a": [1, -9223372036854775809]})"),
            "line 1, column 11" + words + "-9223372036854775809");
  EXPECT_EQ(failureOf(R"({"a": ["x", -9223372036854775809]})"),
            "line 1, column 13" + words + "-9223372036854775809");
}

TEST(ReaderFailures, CutANumberOfManyDigits) {
  EXPECT_EQ(
      failureOf("{\"a\": " + std::string(200, '7') + "}"),
      "line 1, column 7: expected an integer that a double, an int64 or a uint64 holds exactly, but found " +
          std::string(59, '7') + "…");
}

TEST(ReaderFailures, NameBothPlacesOfARepeatedName) {
  EXPECT_EQ(failureOf("{\"a\": 1,\n  \"b\": 2,\n \"a\": 3}"),
            "line 3, column 2: expected a name that the object doesn't have yet, but found \"a\", "
            "which it has from line 1, column 2");
  EXPECT_EQ(failureOf("{\"x\": [1, {\"a\": 1,\n \"a\": 3}]}"),
            "line 2, column 2: expected a name that the object doesn't have yet, but found \"a\", "
            "which it has from line 1, column 12");
  EXPECT_EQ(failureOf("{\"x\": [{\"a\": 1, \"b\": 2},\n {\"a\": 1, \"a\": 3}]}"),
            "line 2, column 11: expected a name that the object doesn't have yet, but found \"a\", "
            "which it has from line 2, column 3");
}

TEST(ReaderFailures, SeeThatANameIsRepeatedThroughItsEscapes) {
  EXPECT_EQ(failureOf(R"({"ab": 1, "\u0061b": 2})"),
            "line 1, column 11: expected a name that the object doesn't have yet, but found \"ab\", "
            "which it has from line 1, column 2");
}

TEST(ReaderFailures, LetTheSameNameStandInDifferentObjects) {
  EXPECT_EQ(failureOf(R"({"a": {"a": {"a": 1}}, "b": [{"a": 1}, {"a": 2}]})"), "it was read");
}

TEST(ReaderFailures, NameAMemberAtTheTopThatCannotBeAVariable) {
  const auto words = [](const std::string& name) {
    return "line 1, column 2: expected the name of a variable (a letter, then letters, digits and "
           "underscores), "
           "but found \"" +
           name + "\"";
  };
  EXPECT_EQ(failureOf(R"({"": 1})"), words(""));
  EXPECT_EQ(failureOf(R"({"1a": 1})"), words("1a"));
  EXPECT_EQ(failureOf(R"({"_a": 1})"), words("_a"));
  EXPECT_EQ(failureOf(R"({"a b": 1})"), words("a b"));
  EXPECT_EQ(failureOf(R"({"a.b": 1})"), words("a.b"));
  EXPECT_EQ(failureOf("{\"\xC3\xA4\": 1}"), words("\xC3\xA4"));
  EXPECT_EQ(failureOf(R"({"a\u001b[2J": 1})"), words("a\\u001b[2J"));
}

TEST(ReaderFailures, FindEveryTruncation) {
  const std::string text = goodText;
  ASSERT_EQ(failureOf(text), "it was read");
  for (std::size_t size = 0; size < text.size(); ++size) {
    const std::string failure = failureOf(text.substr(0, size));
    EXPECT_TRUE(failure.starts_with("line ")) << size << ": " << failure;
    EXPECT_NE(failure.find(": expected "), std::string::npos) << size << ": " << failure;
    EXPECT_EQ(failure.find("the parser gives up"), std::string::npos) << size << ": " << failure;
  }
}

TEST(ReaderFailures, AgreeWithTheExactLookAtTheTextOnEveryMutation) {
  std::mt19937 random(4711);
  constexpr std::string_view pieces = "{}[],:\"\\ \n0123456789-+.eEtrufalsn/\x80\xC3\xA4\xFF\x01x";
  std::size_t refused = 0;
  std::size_t wellFormed = 0;
  for (int round = 0; round < 5000; ++round) {
    std::string text = goodText;
    for (std::size_t changes = 1 + random() % 3; changes > 0; --changes) {
      const std::size_t at = random() % text.size();
      switch (random() % 4) {
        case 0:
          text[at] = pieces[random() % pieces.size()];
          break;
        case 1:
          text.insert(at, 1, pieces[random() % pieces.size()]);
          break;
        case 2:
          text.erase(at, 1 + random() % 3);
          break;
        default:
          text.insert(at, text.substr(random() % text.size(), 1 + random() % 8));
      }
    }
    const auto fault = findSyntaxFault(text);
    const std::string failure = failureOf(text);
    if (!fault) {
      ++wellFormed;
      ASSERT_TRUE(failure == "it was read" || isGrammatical(failure)) << failure << "\n" << text;
    } else {
      ++refused;
      const std::string expected = describe(placeOf(text, fault->offset)) + ": " + fault->words;
      ASSERT_TRUE(failure == expected || isGrammatical(failure))
          << "the reader: " << failure << "\nthe exact look: " << expected << "\n"
          << text;
    }
  }
  EXPECT_GT(refused, 250U);
  EXPECT_GT(wellFormed, 250U);
}
