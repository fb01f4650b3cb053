#include <cstddef>
#include <string>

#include <gtest/gtest.h>

#include "adapters/json/Limits.h"
#include "platform/host/CellArray.h"
#include "tests/adapters/json/arrays.h"
#include "tests/adapters/json/readText.h"

using nd::adapters::json::maximumDepth;
using nd::adapters::json::maximumVariableNameLength;

namespace {

/// An object that holds arrays, so that there are `depth` levels in all.
std::string nestedArrays(std::size_t depth) {
  return "{\"a\": " + std::string(depth - 1, '[') + "1" + std::string(depth - 1, ']') + "}";
}

std::string nestedObjects(std::size_t depth) {
  std::string text;
  for (std::size_t level = 0; level < depth; ++level) text += "{\"a\":";
  return text + "1" + std::string(depth, '}');
}

}  // namespace

TEST(ReaderLimits, ReadArraysNestedAsDeepAsIsTaken) {
  EXPECT_TRUE(hvIsScalar(readText(nestedArrays(maximumDepth)).at(0).value.get()));
}

TEST(ReaderLimits, ReadCellsNestedAsDeepAsIsTaken) {
  const std::size_t levels = maximumDepth - 1;
  std::string text = "{\"a\": ";
  for (std::size_t level = 0; level < levels; ++level) text += "[true, ";
  const auto variables = readText(text + "1" + std::string(levels, ']') + "}");
  const hvArray* inner = variables.at(0).value.get();
  for (std::size_t level = 0; level < levels; ++level) inner = hvGetCell(inner, 1);
  EXPECT_TRUE(hvIsA(inner, "double"));
}

TEST(ReaderLimits, ReadObjectsNestedAsDeepAsIsTaken) {
  EXPECT_TRUE(hvIsStruct(readText(nestedObjects(maximumDepth)).at(0).value.get()));
}

TEST(ReaderLimits, RefuseOneLevelMore) {
  EXPECT_EQ(failureOf(nestedArrays(maximumDepth + 1)),
            "line 1, column 262: expected at most 256 levels of objects and arrays, but found '['");
  EXPECT_EQ(failureOf(nestedObjects(maximumDepth + 1)),
            "line 1, column 1281: expected at most 256 levels of objects and arrays, but found '{'");
}

TEST(ReaderLimits, RefuseATextThatOnlyOpensArrays) {
  EXPECT_EQ(failureOf("{\"a\": " + std::string(1000000, '[')),
            "line 1, column 262: expected at most 256 levels of objects and arrays, but found '['");
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
