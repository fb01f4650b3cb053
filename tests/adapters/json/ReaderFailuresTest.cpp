#include <cstddef>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "adapters/json/FormatFailure.h"
#include "adapters/json/Limits.h"
#include "adapters/json/TextCheck.h"
#include "tests/adapters/json/readText.h"

using nd::adapters::json::findFault;
using nd::adapters::json::FormatFailure;
using nd::adapters::json::maximumDepth;
using nd::adapters::json::maximumVariableNameLength;
using nd::adapters::json::placeOf;

namespace {

constexpr const char* goodText =
    "{\n  \"gain\": 2.5, \"table\": [[1, 2], [3, -4e1]],\n"
    "  \"\\u0061\": [\"x\", null, \"\xC3\xA4\\n\\ud83d\\ude00\"], \"on\": [true, false],\n"
    "  \"mixed\": [null, {}, [], {\"k\": 9007199254740993}],\n  \"s\": [{\"p\": 1, \"q\": 2}, {\"q\": 3, "
    "\"p\": 4}],\n \"t\": {\"$class\": \"uint8\", \"$size\": [1, 2], \"$data\": [1, 2]}, "
    "\"$meta\": {\"gain\": {\"unit\": \"V\"}}\n}";

/// Changes a text at random as a slip of the hand would.
class Mutation {
 public:
  std::string operator()(std::string text) {
    constexpr std::string_view pieces = "{}[],:\"\\ \n0123456789-+.eEtrufalsn/\x80\xC3\xA4\xFF\x01x";
    for (std::size_t changes = 1 + random_() % 3; changes > 0; --changes) {
      const std::size_t at = random_() % text.size();
      switch (random_() % 5) {
        case 0:
          text[at] = pieces[random_() % pieces.size()];
          break;
        case 1:
          text.insert(at, 1, pieces[random_() % pieces.size()]);
          break;
        case 2:
          text.erase(at, 1 + random_() % 3);
          break;
        case 3:
          text.insert(at, text.substr(random_() % text.size(), 1 + random_() % 8));
          break;
        default:
          lengthenANumber(text, at);
      }
    }
    return text;
  }

 private:
  /// So that now and then no class holds it.
  void lengthenANumber(std::string& text, std::size_t at) {
    const std::size_t digit = text.find_first_of("0123456789", at);
    if (digit != std::string::npos)
      text.insert(digit + 1, random_() % 2 == 0 ? "e400" : "2345678901234567890123");
  }

  std::mt19937 random_{4711};
};

struct FaultyMember {
  std::string text;
  /// How the sentence about it begins when the member stands behind "{".
  std::string sentence;
};

/// Members in which the grammar is kept, but not what goes beyond it.
const FaultyMember membersAgainstTheRules[] = {
    {R"("a": 1e400)", "line 1, column 7: expected a number within the range of a double"},
    {R"("a": [1, -1e400])", "line 1, column 11: expected a number within the range of a double"},
    {R"("a": 18446744073709551617)", "line 1, column 7: expected an integer that a double"},
    {R"("a": [{"b": -9223372036854775809}])", "line 1, column 14: expected an integer that a double"},
    {R"("a": 1, "a": 2)", "line 1, column 10: expected a name that the object doesn't have yet"},
    {R"("a": {"b": 1, "\u0062": 2})", "line 1, column 16: expected a name that the object doesn't have yet"},
    {R"("a b": 1)", "line 1, column 2: expected the name of a variable"},
    {"\"" + std::string(maximumVariableNameLength + 1, 'n') + "\": 1",
     "line 1, column 2: expected a variable's name of at most"},
    {"\"a\": " + std::string(maximumDepth, '[') + std::string(maximumDepth, ']'),
     "line 1, column 2054: expected at most 2048 levels"}};

/// Members that the parser refuses before it looks at any value.
const FaultyMember illFormedMembers[] = {{"\"z\": \"\xFF\"", "line 1, column 8: expected well-formed UTF-8"},
                                         {"\"z\xE4\": 1", "line 1, column 4: expected well-formed UTF-8"},
                                         {"\"z\": \"\x01\"", "line 1, column 8: expected an escape such as"},
                                         {"\"z\": \"x", "line 1, column 9: expected an escape such as"}};

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

TEST(ReaderFailures, NameAFaultOfAValueBeforeIllFormedTextBehindIt) {
  for (const FaultyMember& first : membersAgainstTheRules) {
    for (const FaultyMember& second : illFormedMembers) {
      const std::string failure = failureOf("{" + first.text + ",\n" + second.text + "}");
      EXPECT_TRUE(failure.starts_with(first.sentence)) << first.text << "\n"
                                                       << second.text << "\n"
                                                       << failure;
    }
  }
}

TEST(ReaderFailures, NameIllFormedTextBeforeAFaultOfAValueBehindIt) {
  for (const FaultyMember& first : illFormedMembers) {
    for (const FaultyMember& second : membersAgainstTheRules) {
      const std::string failure = failureOf("{" + first.text + "\n, " + second.text + "}");
      EXPECT_TRUE(failure.starts_with(first.sentence)) << first.text << "\n"
                                                       << second.text << "\n"
                                                       << failure;
    }
  }
}

TEST(ReaderFailures, NameAFaultOfAValueBeforeAStringThatDoesNotEnd) {
  for (const FaultyMember& first : membersAgainstTheRules) {
    const std::string failure = failureOf("{" + first.text + ", \"z\": \"x}");
    EXPECT_TRUE(failure.starts_with(first.sentence)) << failure;
  }
}

TEST(ReaderFailures, NameTheFirstOfTwoFaultsOfValues) {
  for (const FaultyMember& first : membersAgainstTheRules) {
    for (const FaultyMember& second : membersAgainstTheRules) {
      const std::string failure = failureOf("{" + first.text + ",\n" + second.text + "}");
      EXPECT_TRUE(failure.starts_with(first.sentence)) << first.text << "\n"
                                                       << second.text << "\n"
                                                       << failure;
    }
  }
}

TEST(ReaderFailures, CarryTheMessageOfTheCatalogue) {
  try {
    readText("{\"a\" 1}");
    FAIL() << "it was read";
  } catch (const FormatFailure& failure) {
    EXPECT_STREQ(failure.catalogue(), "json:messages");
    EXPECT_STREQ(failure.key(), "FaultAtPlace");
    EXPECT_EQ(failure.arguments(),
              (std::vector<std::u16string>{u"line 1, column 6",
                                           u"expected ':' behind the member's name, but found '1'"}));
  }
}

TEST(ReaderFailures, AgreeWithTheExactLookAtTheTextOnEveryMutation) {
  Mutation mutated;
  std::size_t refused = 0;
  std::size_t read = 0;
  for (int round = 0; round < 5000; ++round) {
    const std::string text = mutated(goodText);
    const auto fault = findFault(text);
    ++(fault ? refused : read);
    const std::string expected =
        fault ? describe(placeOf(text, fault->offset)) + ": " + fault->message.what() : "it was read";
    ASSERT_EQ(failureOf(text), expected) << text;
  }
  EXPECT_GT(refused, 250U);
  EXPECT_GT(read, 250U);
}

TEST(ReaderFailures, DoNotDependOnWhatStandsBehind) {
  Mutation mutated;
  std::size_t compared = 0;
  for (int round = 0; round < 2000; ++round) {
    const std::string text = mutated(goodText);
    const std::string failure = failureOf(text);
    const bool isAtTheEnd = failure.find("but found the end of the text") != std::string::npos;
    if (failure == "it was read" || isAtTheEnd) continue;
    ++compared;
    for (const char* behind : {",\n\"z\": \"\xFF\"}", ",\n\"z\": \"\x01\"}", ",\n\"z\": 1e400}", ",\n\"z"})
      ASSERT_EQ(failureOf(text + behind), failure) << text << "\nand behind it\n" << behind;
  }
  EXPECT_GT(compared, 250U);
}
