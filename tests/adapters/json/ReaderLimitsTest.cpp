#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include <gtest/gtest.h>

#include "adapters/json/Limits.h"
#include "platform/host/ArrayComparison.h"
#include "platform/host/CellArray.h"
#include "tests/adapters/json/agreement.h"
#include "tests/adapters/json/arrays.h"
#include "tests/adapters/json/losslessForm.h"
#include "tests/adapters/json/readText.h"

using nd::adapters::json::maximumDepth;
using nd::adapters::json::maximumPlainDimensions;
using nd::adapters::json::maximumVariableNameLength;

namespace {

/// An object that holds arrays, so that there are `depth` levels in all.
std::string nestedArrays(std::size_t depth) {
  return "{\"a\": " + std::string(depth - 1, '[') + "1" + std::string(depth - 1, ']') + "}";
}

std::string repeated(std::string_view text, std::size_t times) {
  std::string all;
  for (std::size_t time = 0; time < times; ++time) all += text;
  return all;
}

/// An array whose plain form nests as deep as one of that form may.
hvArrayPtr deepLeaf() {
  hvDims dimensions(maximumPlainDimensions, 1);
  dimensions.back() = 2;
  return arrays::doubles(dimensions, {1, 2});
}

/// Ways to put a value into another: forms that take one level, or two.
const std::function<hvArrayPtr(hvArrayPtr)> aroundOneLevel[] = {
    [](hvArrayPtr value) { return arrays::cells(arrays::row(u"x"), std::move(value)); },
    [](hvArrayPtr value) {
      hvArrayPtr column(hvCreateCellArray({2, 1}));
      hvSetCell(column.get(), 1, std::move(value));
      return column;
    },
    [](hvArrayPtr value) { return arrays::structures(1, {"a"}, arrays::list(std::move(value))); },
    [](hvArrayPtr value) {
      return arrays::structures(2, {"a"}, arrays::list(arrays::scalar(1), std::move(value)));
    },
    [](hvArrayPtr value) { return arrays::structures(1, {"$a"}, arrays::list(std::move(value))); }};

std::string nestedObjects(std::size_t depth) {
  std::string text;
  for (std::size_t level = 0; level < depth; ++level) text += "{\"a\":";
  return text + "1" + std::string(depth, '}');
}

}  // namespace

TEST(ReaderLimits, ReadArraysNestedAsDeepAsIsTaken) {
  EXPECT_TRUE(hvIsScalar(readText(nestedArrays(maximumDepth)).at(0).value.get()));
}

TEST(ReaderLimits, ReadCellsNestedAsDeepAsTheHostTakes) {
  const std::size_t levels = hvMaximumNesting;
  std::string text = "{\"a\": ";
  for (std::size_t level = 0; level < levels; ++level) text += "[true, ";
  const auto variables = readText(text + "1" + std::string(levels, ']') + "}");
  const hvArray* inner = variables.at(0).value.get();
  for (std::size_t level = 0; level < levels; ++level) inner = hvGetCell(inner, 1);
  EXPECT_TRUE(hvIsA(inner, "double"));
}

TEST(ReaderLimits, ReadObjectsNestedAsDeepAsTheHostTakes) {
  EXPECT_TRUE(hvIsStruct(readText(nestedObjects(hvMaximumNesting + 1)).at(0).value.get()));
}

TEST(ReaderLimits, RefuseOneLevelMore) {
  EXPECT_EQ(failureOf(nestedArrays(maximumDepth + 1)),
            "line 1, column 2054: expected at most 2048 levels of objects and arrays, but found '['");
  EXPECT_EQ(failureOf(nestedObjects(maximumDepth + 1)),
            "line 1, column 10241: expected at most 2048 levels of objects and arrays, but found '{'");
}

TEST(ReaderLimits, RefuseATextThatOnlyOpensArraysOrObjectsOrTaggedValues) {
  const std::string words = ": expected at most 2048 levels of objects and arrays, but found ";
  EXPECT_EQ(failureOf("{\"a\": " + repeated("[", 1000000)), "line 1, column 2054" + words + "'['");
  EXPECT_EQ(failureOf(repeated("{\"a\":", 1000000)), "line 1, column 10241" + words + "'{'");
  EXPECT_EQ(failureOf("{\"a\":" + repeated("{\"$class\":\"cell\",\"$data\":[", 100000)),
            "line 1, column 26629" + words + "'['");
  EXPECT_EQ(failureOf("{\"a\":" + repeated("{\"$class\":\"struct\",\"$data\":[[", 100000)),
            "line 1, column 29700" + words + "'['");
}

TEST(ReaderLimits, ReadWhatTheHostNestsAsDeepAsItCan) {
  for (const auto& around : aroundOneLevel) {
    hvArrayPtr value = deepLeaf();
    for (std::size_t level = 0; level < hvMaximumNesting; ++level) value = around(std::move(value));
    const std::string form = losslessForm(value.get());
    EXPECT_TRUE(hvEqual(readValue(form).get(), value.get()));
    EXPECT_EQ(disagreementOn("{\"a\": 1, \"$meta\": {\"a\": {\"b\": " + form + "}}}"), "");
  }
}

TEST(ReaderLimits, RefuseWhatTheHostCannotNest) {
  const std::string words =
      ": expected cells and structures nested at most 1000 deep, but found a value that nests deeper";
  const std::string cells = repeated("[true,", 1001) + "1" + repeated("]", 1001);
  EXPECT_EQ(failureOf("{\"a\": " + cells + "}"), "line 1, column 7" + words);
  EXPECT_EQ(failureOf("{\"a\": [1, [" + cells + "]]}"), "line 1, column 12" + words);
  EXPECT_EQ(failureOf("{\"a\": " + repeated("[", 1001) + "null" + repeated("]", 1001) + "}"),
            "line 1, column 7" + words);
  EXPECT_EQ(failureOf(repeated("{\"a\":", 1002) + "1" + repeated("}", 1002)), "line 1, column 6" + words);
  const std::string tagged =
      repeated(R"({"$class":"cell","$size":[1,1],"$data":[)", 1001) + "1" + repeated("]}", 1001);
  EXPECT_EQ(failureOf("{\"a\": " + tagged + "}"), "line 1, column 7" + words);
  EXPECT_EQ(disagreementOn("{\"a\": " + tagged + "}"), "");
}

TEST(ReaderLimits, ReadAVariableNameAsLongAsIsTaken) {
  const std::string name(maximumVariableNameLength, 'n');
  EXPECT_EQ(readText("{\"" + name + "\": 1}").at(0).name, name);
}

TEST(ReaderLimits, RefuseALongerVariableName) {
  EXPECT_EQ(failureOf("{\"" + std::string(maximumVariableNameLength + 1, 'n') + "\": 1}"),
            "line 1, column 2: expected a variable's name of at most 4096 characters, but found 4097");
}

TEST(ReaderLimits, TakeNamesOfFieldsOfAnyLength) {
  const std::string name(2 * maximumVariableNameLength, 'n');
  EXPECT_EQ(failureOf("{\"a\": {\"" + name + "\": 1}}"), "it was read");
}
