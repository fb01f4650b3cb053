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
  std::string found;
};

const std::string aValue = "a value (an object, an array, a string, a number, true, false or null)";
const std::string utf8 = "well-formed UTF-8";
const std::string range = "a number within the range of a double";
const std::string hexDigits = "four hexadecimal digits behind '\\u'";
const std::string theEnd = "the end of the text";

std::string noUtf8(const std::string& byte) {
  return "the byte " + byte + ", which is not UTF-8 here";
}

/// In each of these texts a fault is found there, where something was expected and something else found.
void expectFaults(const std::string& expected, const std::vector<Case>& cases) {
  for (const auto& [text, offset, found] : cases) {
    const auto fault = findFault(text);
    ASSERT_TRUE(fault) << text;
    EXPECT_EQ(fault->offset, offset) << text;
    EXPECT_EQ(fault->message.what(), "expected " + expected + ", but found " + found) << text;
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
      R"({"a":[0,-0,1,-1,10,0.5,-0.5e1,1E+2,1e-2,1e308,1e-999],"b":18446744073709551615,"c":[-9223372036854775808]})",
      R"({"$include":["x.json"],"a":{"$class":"int8","$size":[1,1],"$data":[1]},"$meta":{"a":{"unit":""}}})",
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
  expectFaults("'{' at the beginning of the object that holds the variables",
               {{"", 0, theEnd},
                {"  \n ", 4, theEnd},
                {"[1]", 0, "'['"},
                {" 1", 1, "'1'"},
                {"null", 0, "'null'"},
                {"\"a\"", 0, "'\"'"},
                {"\xFF\xFE{", 0, noUtf8("0xFF")}});
}

TEST(FindFault, WantsNothingBehindTheObject) {
  expectFaults("the end of the text behind the object that holds the variables",
               {{"{}x", 2, "'x'"},
                {"{} {}", 3, "'{'"},
                {"{}\n,", 3, "','"},
                {"{}}", 2, "'}'"},
                {std::string("{}\0", 3), 2, "U+0000"}});
}

TEST(FindFault, WantsNamesInDoubleQuotes) {
  expectFaults("a member's name in double quotes or '}'", {{"{a:1}", 1, "'a'"},
                                                           {"{'a':1}", 1, "a single quote"},
                                                           {"{1:1}", 1, "'1'"},
                                                           {"{,}", 1, "','"},
                                                           {"{", 1, theEnd}});
  expectFaults("a member's name in double quotes behind ','",
               {{R"({"a":1,})", 7, "'}'"}, {R"({"a":1,,})", 7, "','"}, {R"({"a":1, b:2})", 8, "'b'"}});
}

TEST(FindFault, WantsAColonBehindAName) {
  expectFaults(
      "':' behind the member's name",
      {{R"({"a" 1})", 5, "'1'"}, {R"({"a"})", 4, "'}'"}, {R"({"a","b"})", 4, "','"}, {R"({"a")", 4, theEnd}});
}

TEST(FindFault, WantsAValue) {
  expectFaults(aValue, {{R"({"a":})", 5, "'}'"},
                        {R"({"a":,})", 5, "','"},
                        {R"({"a": )", 6, theEnd},
                        {R"({"a":NaN})", 5, "'NaN'"},
                        {R"({"a":True})", 5, "'True'"},
                        {R"({"a":nul})", 5, "'nul'"},
                        {R"({"a":nulll})", 5, "'nulll'"},
                        {R"({"a":true1})", 5, "'true1'"},
                        {R"({"a":+1})", 5, "'+'"},
                        {R"({"a":.5})", 5, "'.'"},
                        {R"({"a":/**/1})", 5, "'/'"},
                        {R"({"a":[1,]})", 8, "']'"}});
  expectFaults(aValue + " or ']'",
               {{R"({"a":[,1]})", 6, "','"}, {R"({"a":[)", 6, theEnd}, {R"({"a":[}})", 6, "'}'"}});
}

TEST(FindFault, WantsACommaOrTheEndBehindAValue) {
  expectFaults("',' or '}' behind the member's value", {{R"({"a":1 "b":2})", 7, "'\"'"},
                                                        {R"({"a":1])", 6, "']'"},
                                                        {R"({"a":1)", 6, theEnd},
                                                        {R"({"a":1x})", 6, "'x'"},
                                                        {R"({"a":1 // x)", 7, "'/'"}});
  expectFaults("',' or ']' behind the element",
               {{R"({"a":[1 2]})", 8, "'2'"}, {R"({"a":[1}})", 7, "'}'"}, {R"({"a":[1)", 7, theEnd}});
}

TEST(FindFault, KnowsTheGrammarOfNumbers) {
  expectFaults("a digit behind the minus sign",
               {{R"({"a":-})", 6, "'}'"}, {R"({"a":-x})", 6, "'x'"}, {R"({"a":--1})", 6, "'-'"}});
  expectFaults("no digit behind a leading zero", {{R"({"a":01})", 6, "'1'"}, {R"({"a":-00})", 7, "'0'"}});
  expectFaults("a digit behind the decimal point", {{R"({"a":1.})", 7, "'}'"}, {R"({"a":1.e5})", 7, "'e5'"}});
  expectFaults("a digit in the exponent",
               {{R"({"a":1e})", 7, "'}'"}, {R"({"a":1e+})", 8, "'}'"}, {R"({"a":1E-.5})", 8, "'.'"}});
  expectFaults("',' or '}' behind the member's value",
               {{R"({"a":0x1F})", 6, "'x1F'"}, {R"({"a":1.5.2})", 8, "'.'"}});
}

TEST(FindFault, WantsStringsToEnd) {
  const auto end = [](const std::string& place) {
    return "'\"' at the end of the string that begins in " + place;
  };
  expectFaults(end("line 1, column 6"), {{R"({"a":"b)", 7, theEnd}, {R"({"a":"b\")", 9, theEnd}});
  expectFaults(end("line 2, column 2"), {{"{\n \"a", 5, theEnd}});
}

TEST(FindFault, WantsControlCharactersEscaped) {
  expectFaults("an escape such as \\n in place of a control character, or the end of the string",
               {{"{\"a\":\"b\nc\"}", 7, "a line break"},
                {"{\"a\":\"\t\"}", 6, "a tab"},
                {"{\"a\x1F\":1}", 3, "U+001F"},
                {std::string("{\"a\":\"\0\"}", 9), 6, "U+0000"}});
}

TEST(FindFault, KnowsTheEscapes) {
  expectFaults("one of \" \\ / b f n r t u behind '\\'",
               {{R"({"a":"\x"})", 7, "'x'"}, {R"({"a":"\)", 7, theEnd}});
  expectFaults(
      hexDigits,
      {{R"({"a":"\u12G4"})", 10, "'G4'"}, {R"({"a":"\u12"})", 10, "'\"'"}, {R"({"a":"\u)", 8, theEnd}});
}

TEST(FindFault, WantsSurrogatesInPairs) {
  const auto secondBehind = [](const std::string& first) {
    return "the second half of a surrogate pair behind " + first;
  };
  const auto firstAheadOf = [](const std::string& second) {
    return "the first half of a surrogate pair ahead of " + second;
  };
  expectFaults(secondBehind("\\ud800"), {{R"({"a":"x\ud800"})", 7, "it alone"},
                                         {R"({"a":"\ud800\u0041"})", 6, "it alone"},
                                         {R"({"a":"\ud800\ud800"})", 6, "it alone"}});
  expectFaults(secondBehind("\\uD800"), {{R"({"a":"\uD800x"})", 6, "it alone"}});
  expectFaults(secondBehind("\\udbff"), {{R"({"a":"\udbff\n"})", 6, "it alone"}});
  expectFaults(firstAheadOf("\\udc00"), {{R"({"a":"\udc00"})", 6, "it alone"}});
  expectFaults(firstAheadOf("\\uDFFF"), {{R"({"a":"\uDFFF\uD800"})", 6, "it alone"}});
  expectFaults(hexDigits, {{R"({"a":"\ud800\u12"})", 16, "'\"'"}});
}

TEST(FindFault, WantsWellFormedUtf8) {
  expectFaults(utf8, {{"{\"a\":\"x\xFFy\"}", 7, noUtf8("0xFF")},
                      {"{\"a\":\"\xC3\"}", 6, noUtf8("0xC3")},
                      {"{\"a\xE4\":1}", 3, noUtf8("0xE4")},
                      {"{\"a\":\"\xC0\xAF\"}", 6, noUtf8("0xC0")},
                      {"{\"a\":\"\xED\xA0\x80\"}", 6, noUtf8("0xED")},
                      {"{\"a\":\"\xF4\x90\x80\x80\"}", 6, noUtf8("0xF4")}});
}

TEST(FindFault, TakesEveryLevelUpToTheLimit) {
  EXPECT_FALSE(findFault(nested(maximumDepth)));
}

TEST(FindFault, RefusesOneLevelMore) {
  const auto fault = findFault(nested(maximumDepth + 1));
  ASSERT_TRUE(fault);
  EXPECT_EQ(fault->offset, 5 + maximumDepth - 1);
  EXPECT_STREQ(fault->message.what(), "expected at most 2048 levels of objects and arrays, but found '['");
}

TEST(FindFault, CountsLevelsAndNotContainers) {
  std::string text = R"({"a":[)";
  for (std::size_t index = 0; index < 2 * maximumDepth; ++index) text += "[],{},";
  EXPECT_FALSE(findFault(text + "1]}"));
}

TEST(FindFault, WantsNumbersThatAClassHolds) {
  expectFaults(range, {{R"({"a":1e309})", 5, "1e309"},
                       {R"({"a":[1,-0.1E+310]})", 8, "-0.1E+310"},
                       {"{\"a\":1" + std::string(400, '0') + "}", 5, "1" + std::string(58, '0') + "…"},
                       {R"({"a":1e99999999999999999999})", 5, "1e99999999999999999999"}});
  expectFaults("an integer that a double, an int64 or a uint64 holds exactly",
               {{R"({"a":18446744073709551617})", 5, "18446744073709551617"},
                {R"({"a":{"b":-9223372036854775809}})", 10, "-9223372036854775809"}});
}

TEST(FindFault, WantsANameOnceInAnObject) {
  const auto known = [](const std::string& name, const std::string& place) {
    return "\"" + name + "\", which it has from " + place;
  };
  expectFaults("a name that the object doesn't have yet",
               {{R"({"a":1,"a":2})", 7, known("a", "line 1, column 2")},
                {R"({"o":{"":1,"":2}})", 11, known("", "line 1, column 7")},
                {R"({"ab":1,"\u0061\u0062":2})", 8, known("ab", "line 1, column 2")},
                {R"({"o":{"\t\"":1,"\u0009\u0022":2}})", 15, known("\\t\"", "line 1, column 7")},
                {"{\"o\":{\"\\ud83d\\ude00\":1,\n\"\xF0\x9F\x98\x80\":2}}", 24,
                 known("\xF0\x9F\x98\x80", "line 1, column 7")}});
}

TEST(FindFault, WantsNamesOfVariablesAtTheTopOnly) {
  expectFaults("the name of a variable (a letter, then letters, digits and underscores)",
               {{R"({"":1})", 1, R"("")"},
                {R"({"a":1,"2b":1})", 7, R"("2b")"},
                {R"({"\u0061\u002d":1})", 1, R"("a-")"}});
  EXPECT_FALSE(findFault(R"({"a_1":{"":1,"2b":1,"a-":1}})"));
}

TEST(FindFault, WantsNamesOfVariablesUpToTheLimit) {
  const std::string name(maximumVariableNameLength, 'n');
  EXPECT_FALSE(findFault("{\"" + name + "\":1}"));
  expectFaults("a variable's name of at most 4096 characters", {{"{\"" + name + "n\":1}", 1, "4097"}});
}

TEST(FindFault, FindsTheFirstOfTwo) {
  expectFaults(range, {{"{\"a\":1e400,\"b\":\"\xFF\"}", 5, "1e400"}});
  expectFaults(utf8, {{"{\"b\":\"\xFF\",\"a\":1e400}", 6, noUtf8("0xFF")}});
}
