#include <cstddef>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "adapters/json/Limits.h"
#include "adapters/json/TextCheck.h"

using nd::adapters::json::findFault;
using nd::adapters::json::maximumDepth;
using nd::adapters::json::maximumVariableNameLength;

namespace {

struct Case {
  std::string text;
  std::size_t offset;
  std::string words;
};

constexpr const char* aValue =
    "expected a value (an object, an array, a string, a number, true, false or null)";

void expectFaults(const std::vector<Case>& cases) {
  for (const auto& [text, offset, words] : cases) {
    const auto fault = findFault(text);
    ASSERT_TRUE(fault) << text;
    EXPECT_EQ(fault->offset, offset) << text;
    EXPECT_EQ(fault->message.what(), words) << text;
  }
}

std::string nested(std::size_t depth) {
  return "{\"a\":" + std::string(depth - 1, '[') + std::string(depth - 1, ']') + "}";
}

}  // namespace

TEST(FindFault, FindsNoneInWellFormedTexts) {
  const std::string texts[] = {
      "{}",
      " \t\r\n{ } \t\r\n",
      R"({"a":1})",
      R"({"a":{"a":1},"b":[{"a":1},{"a":2}],"A":3})",
      R"({"a":{},"b":[],"c":[[],{}]})",
      R"({"a":[0,-0,1,-1,10,0.5,-0.5e1,1E+2,1e-2,18446744073709551615,-9223372036854775808,1e308,1e-999]})",
      R"({"a":[true,false,null]})",
      R"({"o":{"\"\\\/\b\f\n\r\t\u0000\u00e4\uD83D\uDE00":""}})",
      "{\"o\":{\"\xC3\xA4\":\"\xE2\x82\xAC \xF0\x9F\x98\x80 \x7F\"}}",
  };
  for (const std::string& text : texts) {
    const auto fault = findFault(text);
    EXPECT_FALSE(fault) << text << ": " << (fault ? fault->message.what() : "");
  }
}

TEST(FindFault, WantsAnObjectAtTheTop) {
  const std::string expected =
      "expected '{' at the beginning of the object that holds the variables, but found ";
  expectFaults({{"", 0, expected + "the end of the text"},
                {"  \n ", 4, expected + "the end of the text"},
                {"[1]", 0, expected + "'['"},
                {" 1", 1, expected + "'1'"},
                {"null", 0, expected + "'null'"},
                {"\"a\"", 0, expected + "'\"'"},
                {"\xFF\xFE{", 0, expected + "the byte 0xFF, which is not UTF-8 here"}});
}

TEST(FindFault, WantsNothingBehindTheObject) {
  const std::string expected =
      "expected the end of the text behind the object that holds the variables, but found ";
  expectFaults({{"{}x", 2, expected + "'x'"},
                {"{} {}", 3, expected + "'{'"},
                {"{}\n,", 3, expected + "','"},
                {"{}}", 2, expected + "'}'"},
                {std::string("{}\0", 3), 2, expected + "U+0000"}});
}

TEST(FindFault, WantsNamesInDoubleQuotes) {
  expectFaults(
      {{"{a:1}", 1, "expected a member's name in double quotes or '}', but found 'a'"},
       {"{'a':1}", 1, "expected a member's name in double quotes or '}', but found a single quote"},
       {"{1:1}", 1, "expected a member's name in double quotes or '}', but found '1'"},
       {"{,}", 1, "expected a member's name in double quotes or '}', but found ','"},
       {"{", 1, "expected a member's name in double quotes or '}', but found the end of the text"},
       {R"({"a":1,})", 7, "expected a member's name in double quotes behind ',', but found '}'"},
       {R"({"a":1,,})", 7, "expected a member's name in double quotes behind ',', but found ','"},
       {R"({"a":1, b:2})", 8, "expected a member's name in double quotes behind ',', but found 'b'"}});
}

TEST(FindFault, WantsAColonBehindAName) {
  expectFaults({{R"({"a" 1})", 5, "expected ':' behind the member's name, but found '1'"},
                {R"({"a"})", 4, "expected ':' behind the member's name, but found '}'"},
                {R"({"a","b"})", 4, "expected ':' behind the member's name, but found ','"},
                {R"({"a")", 4, "expected ':' behind the member's name, but found the end of the text"}});
}

TEST(FindFault, WantsAValue) {
  expectFaults({{R"({"a":})", 5, std::string(aValue) + ", but found '}'"},
                {R"({"a":,})", 5, std::string(aValue) + ", but found ','"},
                {R"({"a": )", 6, std::string(aValue) + ", but found the end of the text"},
                {R"({"a":NaN})", 5, std::string(aValue) + ", but found 'NaN'"},
                {R"({"a":True})", 5, std::string(aValue) + ", but found 'True'"},
                {R"({"a":nul})", 5, std::string(aValue) + ", but found 'nul'"},
                {R"({"a":nulll})", 5, std::string(aValue) + ", but found 'nulll'"},
                {R"({"a":true1})", 5, std::string(aValue) + ", but found 'true1'"},
                {R"({"a":+1})", 5, std::string(aValue) + ", but found '+'"},
                {R"({"a":.5})", 5, std::string(aValue) + ", but found '.'"},
                {R"({"a":/**/1})", 5, std::string(aValue) + ", but found '/'"},
                {R"({"a":[,1]})", 6, std::string(aValue) + " or ']', but found ','"},
                {R"({"a":[)", 6, std::string(aValue) + " or ']', but found the end of the text"},
                {R"({"a":[}})", 6, std::string(aValue) + " or ']', but found '}'"},
                {R"({"a":[1,]})", 8, std::string(aValue) + ", but found ']'"}});
}

TEST(FindFault, WantsACommaOrTheEndBehindAValue) {
  expectFaults(
      {{R"({"a":1 "b":2})", 7, "expected ',' or '}' behind the member's value, but found '\"'"},
       {R"({"a":1])", 6, "expected ',' or '}' behind the member's value, but found ']'"},
       {R"({"a":1)", 6, "expected ',' or '}' behind the member's value, but found the end of the text"},
       {R"({"a":1x})", 6, "expected ',' or '}' behind the member's value, but found 'x'"},
       {R"({"a":[1 2]})", 8, "expected ',' or ']' behind the element, but found '2'"},
       {R"({"a":[1}})", 7, "expected ',' or ']' behind the element, but found '}'"},
       {R"({"a":[1)", 7, "expected ',' or ']' behind the element, but found the end of the text"},
       {R"({"a":1 // x)", 7, "expected ',' or '}' behind the member's value, but found '/'"}});
}

TEST(FindFault, KnowsTheGrammarOfNumbers) {
  expectFaults({{R"({"a":-})", 6, "expected a digit behind the minus sign, but found '}'"},
                {R"({"a":-x})", 6, "expected a digit behind the minus sign, but found 'x'"},
                {R"({"a":--1})", 6, "expected a digit behind the minus sign, but found '-'"},
                {R"({"a":01})", 6, "expected no digit behind a leading zero, but found '1'"},
                {R"({"a":-00})", 7, "expected no digit behind a leading zero, but found '0'"},
                {R"({"a":1.})", 7, "expected a digit behind the decimal point, but found '}'"},
                {R"({"a":1.e5})", 7, "expected a digit behind the decimal point, but found 'e5'"},
                {R"({"a":1e})", 7, "expected a digit in the exponent, but found '}'"},
                {R"({"a":1e+})", 8, "expected a digit in the exponent, but found '}'"},
                {R"({"a":1E-.5})", 8, "expected a digit in the exponent, but found '.'"},
                {R"({"a":0x1F})", 6, "expected ',' or '}' behind the member's value, but found 'x1F'"},
                {R"({"a":1.5.2})", 8, "expected ',' or '}' behind the member's value, but found '.'"}});
}

TEST(FindFault, WantsStringsToEnd) {
  expectFaults({{R"({"a":"b)", 7,
                 "expected '\"' at the end of the string that begins in line 1, column 6, but found the end "
                 "of the text"},
                {"{\n \"a", 5,
                 "expected '\"' at the end of the string that begins in line 2, column 2, but found the end "
                 "of the text"},
                {R"({"a":"b\")", 9,
                 "expected '\"' at the end of the string that begins in line 1, column 6, but found the end "
                 "of the text"}});
}

TEST(FindFault, WantsControlCharactersEscaped) {
  const std::string expected =
      "expected an escape such as \\n in place of a control character, or the end of the string, but found ";
  expectFaults({{"{\"a\":\"b\nc\"}", 7, expected + "a line break"},
                {"{\"a\":\"\t\"}", 6, expected + "a tab"},
                {"{\"a\x1F\":1}", 3, expected + "U+001F"},
                {std::string("{\"a\":\"\0\"}", 9), 6, expected + "U+0000"}});
}

TEST(FindFault, KnowsTheEscapes) {
  expectFaults(
      {{R"({"a":"\x"})", 7, "expected one of \" \\ / b f n r t u behind '\\', but found 'x'"},
       {R"({"a":"\)", 7, "expected one of \" \\ / b f n r t u behind '\\', but found the end of the text"},
       {R"({"a":"\u12G4"})", 10, "expected four hexadecimal digits behind '\\u', but found 'G4'"},
       {R"({"a":"\u12"})", 10, "expected four hexadecimal digits behind '\\u', but found '\"'"},
       {R"({"a":"\u)", 8, "expected four hexadecimal digits behind '\\u', but found the end of the text"}});
}

TEST(FindFault, WantsSurrogatesInPairs) {
  const std::string second = "expected the second half of a surrogate pair behind ";
  const std::string first = "expected the first half of a surrogate pair ahead of ";
  expectFaults(
      {{R"({"a":"x\ud800"})", 7, second + "\\ud800, but found it alone"},
       {R"({"a":"\uD800x"})", 6, second + "\\uD800, but found it alone"},
       {R"({"a":"\udbff\n"})", 6, second + "\\udbff, but found it alone"},
       {R"({"a":"\ud800\u0041"})", 6, second + "\\ud800, but found it alone"},
       {R"({"a":"\ud800\ud800"})", 6, second + "\\ud800, but found it alone"},
       {R"({"a":"\udc00"})", 6, first + "\\udc00, but found it alone"},
       {R"({"a":"\uDFFF\uD800"})", 6, first + "\\uDFFF, but found it alone"},
       {R"({"a":"\ud800\u12"})", 16, "expected four hexadecimal digits behind '\\u', but found '\"'"}});
}

TEST(FindFault, WantsWellFormedUtf8) {
  const auto words = [](const std::string& byte) {
    return "expected well-formed UTF-8, but found the byte " + byte + ", which is not UTF-8 here";
  };
  expectFaults({{"{\"a\":\"x\xFFy\"}", 7, words("0xFF")},
                {"{\"a\":\"\xC3\"}", 6, words("0xC3")},
                {"{\"a\xE4\":1}", 3, words("0xE4")},
                {"{\"a\":\"\xC0\xAF\"}", 6, words("0xC0")},
                {"{\"a\":\"\xED\xA0\x80\"}", 6, words("0xED")},
                {"{\"a\":\"\xF4\x90\x80\x80\"}", 6, words("0xF4")}});
}

TEST(FindFault, TakesEveryLevelUpToTheLimit) {
  EXPECT_FALSE(findFault(nested(maximumDepth)));
}

TEST(FindFault, RefusesOneLevelMore) {
  const auto fault = findFault(nested(maximumDepth + 1));
  ASSERT_TRUE(fault);
  EXPECT_EQ(fault->offset, 5 + maximumDepth - 1);
  EXPECT_STREQ(fault->message.what(), "expected at most 256 levels of objects and arrays, but found '['");
}

TEST(FindFault, CountsLevelsAndNotContainers) {
  std::string text = R"({"a":[)";
  for (std::size_t index = 0; index < 2 * maximumDepth; ++index) text += "[],{},";
  EXPECT_FALSE(findFault(text + "1]}"));
}

TEST(FindFault, WantsNumbersThatAClassHolds) {
  const std::string range = "expected a number within the range of a double, but found ";
  const std::string integer =
      "expected an integer that a double, an int64 or a uint64 holds exactly, but found ";
  expectFaults({{R"({"a":1e309})", 5, range + "1e309"},
                {R"({"a":[1,-0.1E+310]})", 8, range + "-0.1E+310"},
                {"{\"a\":1" + std::string(400, '0') + "}", 5, range + "1" + std::string(58, '0') + "…"},
                {R"({"a":1e99999999999999999999})", 5, range + "1e99999999999999999999"},
                {R"({"a":18446744073709551617})", 5, integer + "18446744073709551617"},
                {R"({"a":{"b":-9223372036854775809}})", 10, integer + "-9223372036854775809"}});
}

TEST(FindFault, WantsANameOnceInAnObject) {
  const auto words = [](const std::string& name, const std::string& place) {
    return "expected a name that the object doesn't have yet, but found \"" + name +
           "\", which it has from " + place;
  };
  expectFaults({{R"({"a":1,"a":2})", 7, words("a", "line 1, column 2")},
                {R"({"o":{"":1,"":2}})", 11, words("", "line 1, column 7")},
                {R"({"ab":1,"\u0061\u0062":2})", 8, words("ab", "line 1, column 2")},
                {R"({"o":{"\t\"":1,"\u0009\u0022":2}})", 15, words("\\t\"", "line 1, column 7")},
                {"{\"o\":{\"\\ud83d\\ude00\":1,\n\"\xF0\x9F\x98\x80\":2}}", 24,
                 words("\xF0\x9F\x98\x80", "line 1, column 7")}});
}

TEST(FindFault, WantsNamesOfVariablesAtTheTopOnly) {
  const std::string words =
      "expected the name of a variable (a letter, then letters, digits and underscores), but found ";
  expectFaults({{R"({"":1})", 1, words + R"("")"},
                {R"({"a":1,"2b":1})", 7, words + R"("2b")"},
                {R"({"\u0061\u002d":1})", 1, words + R"("a-")"}});
  EXPECT_FALSE(findFault(R"({"a_1":{"":1,"2b":1,"a-":1}})"));
}

TEST(FindFault, WantsNamesOfVariablesUpToTheLimit) {
  const std::string name(maximumVariableNameLength, 'n');
  EXPECT_FALSE(findFault("{\"" + name + "\":1}"));
  expectFaults({{"{\"" + name + "n\":1}", 1,
                 "expected a variable's name of at most 4096 characters, but found 4097"}});
}

TEST(FindFault, FindsTheFirstOfTwo) {
  expectFaults(
      {{"{\"a\":1e400,\"b\":\"\xFF\"}", 5, "expected a number within the range of a double, but found 1e400"},
       {"{\"b\":\"\xFF\",\"a\":1e400}", 6,
        "expected well-formed UTF-8, but found the byte 0xFF, which is not UTF-8 here"}});
}
