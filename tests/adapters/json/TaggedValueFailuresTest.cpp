#include <string>

#include <gtest/gtest.h>

#include "platform/host/Array.h"
#include "tests/adapters/json/readText.h"

namespace {

/// Give what is said about a value; the value begins in column 7.
std::string failureOfValue(const std::string& value) {
  return failureOf("{\"a\": " + value + "}");
}

std::string at(std::size_t columnOfValue, const std::string& words) {
  return "line 1, column " + std::to_string(6 + columnOfValue) + ": expected " + words;
}

}  // namespace

TEST(TaggedValueFailures, NameTheNearestKnownMember) {
  EXPECT_EQ(failureOfValue(R"({"$clas": "int8"})"), at(2, R"(a member such as "$class", but found "$clas")"));
  EXPECT_EQ(failureOfValue(R"({"$class": "int8", "$sise": [1, 1]})"),
            at(20, R"(a member such as "$size", but found "$sise")"));
  EXPECT_EQ(failureOfValue(R"({"$class": "int8", "data": [1, 1]})"),
            at(20, R"(a member such as "$data", but found "data")"));
  EXPECT_EQ(failureOfValue(R"({"a": 1, "$imaginery": 2})"),
            at(10, R"(a member such as "$imaginary", but found "$imaginery")"));
}

TEST(TaggedValueFailures, SayWhereAMemberBelongsThatIsKnownElsewhere) {
  EXPECT_EQ(failureOfValue(R"({"$include": "b.json"})"),
            at(2, R"("$include" only at the beginning of the file, but found it here)"));
  EXPECT_EQ(failureOfValue(R"({"$class": "int8", "$meta": {}})"),
            at(20, R"("$meta" only at the top of the file, but found it here)"));
  EXPECT_EQ(failureOfValue(R"({"a": 1, "$meta": {}})"),
            at(10, R"("$meta" only at the top of the file, but found it here)"));
}

TEST(TaggedValueFailures, WantTheClassFirst) {
  EXPECT_EQ(failureOfValue(R"({"$size": [1, 1], "$class": "int8"})"),
            at(2, R"("$class" ahead of the other members of a tagged value, but found "$size")"));
  EXPECT_EQ(
      failureOfValue(R"({"a": 1, "$class": "int8"})"),
      at(10,
         R"(no member of a tagged value in an object that begins with a plain name, but found "$class")"));
}

TEST(TaggedValueFailures, NameTheNearestClass) {
  EXPECT_EQ(failureOfValue(R"({"$class": "integer8"})"),
            at(12, R"(the name of a class such as "int8", but found "integer8")"));
  EXPECT_EQ(failureOfValue(R"({"$class": 8})"),
            at(12, "the name of a class in double quotes, but found '8'"));
}

TEST(TaggedValueFailures, NameWhatIsMissing) {
  EXPECT_EQ(failureOfValue(R"({"$class": "int8"})"), at(18, R"("$size" in the tagged value, but found '}')"));
  EXPECT_EQ(failureOfValue(R"({"$class": "int8", "$size": [1, 1]})"),
            at(35, R"("$data" in the tagged value, but found '}')"));
  EXPECT_EQ(failureOfValue(R"({"$class": "struct", "$size": [1, 1], "$data": [[]]})"),
            at(52, R"("$fields" in the tagged value, but found '}')"));
}

TEST(TaggedValueFailures, NameMembersThatTheClassHasNoUseFor) {
  EXPECT_EQ(failureOfValue(R"({"$class": "int8", "$fields": []})"),
            at(20, R"(a member that the class "int8" has, but found "$fields")"));
  EXPECT_EQ(failureOfValue(R"({"$class": "char", "$imaginary": []})"),
            at(20, R"(a member that the class "char" has, but found "$imaginary")"));
}

TEST(TaggedValueFailures, NameWrongSizes) {
  const std::string begin = R"({"$class": "int8", "$size": )";
  EXPECT_EQ(failureOfValue(begin + "3}"),
            at(29, "an array with the size along each dimension, but found '3'"));
  EXPECT_EQ(failureOfValue(begin + "[3]}"), at(29, "the sizes along at least two dimensions, but found 1"));
  EXPECT_EQ(failureOfValue(begin + "[1, -1]}"),
            at(33, "the size along a dimension, an integer from 0 on, but found -1"));
  EXPECT_EQ(failureOfValue(begin + "[1, 1.0]}"),
            at(33, "the size along a dimension, an integer from 0 on, but found 1.0"));
  EXPECT_EQ(failureOfValue(begin + "[1, \"x\"]}"),
            at(33, "the size along a dimension, an integer from 0 on, but found '\"'"));
  EXPECT_EQ(failureOfValue(begin + "[4294967296, 4294967296]}"),
            at(29, "a size that memory could hold, but found 4294967296-by-4294967296"));
}

TEST(TaggedValueFailures, NameACountThatTheSizeDoesNotGive) {
  EXPECT_EQ(failureOfValue(R"({"$class": "int8", "$size": [2, 3], "$data": [1, 2]})"),
            at(46, "6 elements for the size 2-by-3, but found 2"));
  EXPECT_EQ(failureOfValue(R"({"$class": "char", "$size": [1, 2], "$data": "abc"})"),
            at(46, "2 elements for the size 1-by-2, but found 3"));
  EXPECT_EQ(failureOfValue(R"({"$class": "int8", "$size": [1, 1], "$data": [1], "$imaginary": [1, 2]})"),
            at(65, "1 elements for the size 1-by-1, but found 2"));
  EXPECT_EQ(failureOfValue(R"({"$class": "cell", "$size": [1000000000, 1000000000], "$data": []})"),
            at(64, "1000000000000000000 elements for the size 1000000000-by-1000000000, but found 0"));
}

TEST(TaggedValueFailures, NameNumbersThatTheClassDoesNotHold) {
  const auto of = [](const std::string& itsClass, const std::string& number) {
    return failureOf("{\"a\": {\"$class\": \"" + itsClass + "\",\n\"$data\": [" + number +
                     "], \"$size\": [1, 1]}}");
  };
  const auto words = [](const std::string& itsClass, const std::string& number) {
    return "line 2, column 11: expected a number that the class \"" + itsClass +
           "\" holds, integers to the last digit, but found " + number;
  };
  EXPECT_EQ(of("int8", "128"), words("int8", "128"));
  EXPECT_EQ(of("int8", "-129"), words("int8", "-129"));
  EXPECT_EQ(of("uint8", "-1"), words("uint8", "-1"));
  EXPECT_EQ(of("uint8", "256"), words("uint8", "256"));
  EXPECT_EQ(of("int16", "1.0"), words("int16", "1.0"));
  EXPECT_EQ(of("int16", "-0"), words("int16", "-0"));
  EXPECT_EQ(of("int32", "2147483648"), words("int32", "2147483648"));
  EXPECT_EQ(of("uint32", "4294967296"), words("uint32", "4294967296"));
  EXPECT_EQ(of("int64", "9223372036854775808"), words("int64", "9223372036854775808"));
  EXPECT_EQ(of("uint64", "18446744073709551616"), words("uint64", "18446744073709551616"));
  EXPECT_EQ(of("double", "9007199254740993"), words("double", "9007199254740993"));
  EXPECT_EQ(of("double", "1e309"), words("double", "1e309"));
  EXPECT_EQ(of("single", "16777217"), words("single", "16777217"));
  EXPECT_EQ(of("single", "1e39"), words("single", "1e39"));
}

TEST(TaggedValueFailures, NameElementsOfAnotherKind) {
  const auto of = [](const std::string& itsClass, const std::string& data) {
    return failureOf("{\"a\": {\"$class\": \"" + itsClass + "\",\n\"$data\": " + data + "}}");
  };
  EXPECT_EQ(of("int8", "3"),
            "line 2, column 10: expected an array with the elements, column by column, but found '3'");
  EXPECT_EQ(of("int8", "[true]"),
            "line 2, column 11: expected a number of the class \"int8\", but found 'true'");
  EXPECT_EQ(of("int8", "[\"NaN\"]"),
            "line 2, column 11: expected a number of the class \"int8\", but found '\"'");
  EXPECT_EQ(of("double", "[\"nan\"]"),
            "line 2, column 11: expected a number, \"NaN\", \"Inf\" or \"-Inf\", but found \"nan\"");
  EXPECT_EQ(of("logical", "[1]"), "line 2, column 11: expected true or false, but found '1'");
  EXPECT_EQ(of("char", "1"),
            "line 2, column 10: expected the characters as a string, or as an array of UTF-16 units, but "
            "found '1'");
  EXPECT_EQ(of("char", "[65536]"), "line 2, column 11: expected an integer from 0 to 65535, but found 65536");
  EXPECT_EQ(of("string", "[1]"),
            "line 2, column 11: expected a string, null, or an array of UTF-16 units, but found '1'");
  const std::string value =
      "expected a value (an object, an array, a string, a number, true, false or null) or ']', but found "
      "'nul'";
  EXPECT_EQ(of("cell", "[nul]"), "line 2, column 11: " + value);
  EXPECT_EQ(of("struct", "[[nul]]"), "line 2, column 12: " + value);
  EXPECT_EQ(of("struct", "[{}]"),
            "line 2, column 11: expected an array with the values of an element's fields, but found '{'");
}

TEST(TaggedValueFailures, NameFieldsThatDoNotFit) {
  const std::string begin = R"({"$class": "struct", "$size": [1, 1], )";
  EXPECT_EQ(
      failureOfValue(begin + R"("$fields": ["a", "a"]})"),
      at(56,
         "a name that the object doesn't have yet, but found \"a\", which it has from line 1, column 57"));
  EXPECT_EQ(failureOfValue(begin + R"("$fields": "a"})"),
            at(50, "an array with the names of the fields, but found '\"'"));
  EXPECT_EQ(failureOfValue(begin + R"("$fields": [1]})"),
            at(51, "the name of a field as a string, or as an array of its bytes, but found '1'"));
  EXPECT_EQ(failureOfValue(begin + R"("$fields": [[256]]})"),
            at(52, "an integer from 0 to 255, but found 256"));
  EXPECT_EQ(failureOfValue(begin + R"("$fields": ["a"], "$data": [[1, 2]]})"),
            at(67, "as many values as there are fields, 1, but found 2"));
  EXPECT_EQ(failureOfValue(begin + R"("$data": [[1, 2]], "$fields": ["a"]})"),
            at(49, "as many values as there are fields, 1, but found 2"));
  EXPECT_EQ(failureOfValue(begin + R"("$data": [[1], [1, 2]], "$fields": ["a"]})"),
            at(54, "as many values as there are fields, 1, but found 2"));
  EXPECT_EQ(failureOfValue(begin + R"("$data": [[1], [1, 2]], "$fields": ["a", "b"]})"),
            at(49, "as many values as there are fields, 2, but found 1"));
  EXPECT_EQ(failureOfValue(begin + R"("$data": [[1], [1, 2]]})"),
            at(61, R"("$fields" in the tagged value, but found '}')"));
}

TEST(TaggedValueFailures, LeaveNoArrayBehind) {
  const std::size_t before = hvGetLiveArrayCount();
  EXPECT_NE(
      failureOfValue(R"({"$class": "cell", "$size": [1, 3], "$data": [1, [2, "x"], {"$class": "cel"}]})"),
      "it was read");
  EXPECT_NE(failureOfValue(R"({"$class": "cell", "$size": [1, 3], "$data": [1, [2, "x"]]})"), "it was read");
  EXPECT_EQ(hvGetLiveArrayCount(), before);
}

TEST(TaggedValueFailures, AreToldApartFromDollarNamesAtTheTop) {
  EXPECT_EQ(failureOf(R"({"$class": "int8"})"),
            "line 1, column 2: expected \"$class\" only in a tagged value, but found it here");
  EXPECT_EQ(failureOf(R"({"$clas": "int8"})"),
            "line 1, column 2: expected a member such as \"$meta\", but found \"$clas\"");
  EXPECT_EQ(failureOf(R"({"a": 1, "$includes": "b.json"})"),
            "line 1, column 10: expected a member such as \"$include\", but found \"$includes\"");
  EXPECT_EQ(failureOf(R"({"a": 1, "$include": "b.json"})"),
            "line 1, column 10: expected \"$include\" ahead of all other members, but found it behind them");
}
