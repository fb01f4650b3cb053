#include <cstddef>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "adapters/json/Limits.h"
#include "tests/adapters/json/arrays.h"
#include "tests/adapters/json/readText.h"

using arrays::cells;
using arrays::doubles;
using arrays::logicals;
using arrays::row;
using arrays::scalar;
using arrays::truth;

TEST(ReaderArrays, ReadsAnEmptyArrayAsA1By0Double) {
  EXPECT_TRUE(readsAs("[]", doubles({1, 0}, {})));
}

TEST(ReaderArrays, ReadsNumbersAsARow) {
  EXPECT_TRUE(readsAs("[1, 2.5, -3]", doubles({1, 3}, {1, 2.5, -3})));
  EXPECT_TRUE(readsAs("[ 7 ]", doubles({1, 1}, {7})));
}

TEST(ReaderArrays, ReadsArraysOfArraysAsAMatrixWithARowForEachOfThem) {
  EXPECT_TRUE(readsAs("[[1, 2, 3], [4, 5, 6]]", doubles({2, 3}, {1, 4, 2, 5, 3, 6})));
  EXPECT_TRUE(readsAs("[[1], [2]]", doubles({2, 1}, {1, 2})));
  EXPECT_TRUE(readsAs("[[1, 2]]", doubles({1, 2}, {1, 2})));
}

TEST(ReaderArrays, ReadsDeeperNestingAsFurtherDimensions) {
  // Element [i][j][k] is element (i, j, k).
  EXPECT_TRUE(readsAs("[[[111, 112], [121, 122], [131, 132]], [[211, 212], [221, 222], [231, 232]]]",
                      doubles({2, 3, 2}, {111, 211, 121, 221, 131, 231, 112, 212, 122, 222, 132, 232})));
  EXPECT_TRUE(readsAs("[[[[1, 2]]], [[[3, 4]]]]", doubles({2, 1, 1, 2}, {1, 3, 2, 4})));
}

TEST(ReaderArrays, DropsTrailingLevelsOfOneElement) {
  EXPECT_TRUE(readsAs("[[[1], [2]], [[3], [4]]]", doubles({2, 2}, {1, 3, 2, 4})));
  EXPECT_TRUE(readsAs("[[[1]]]", scalar(1)));
}

TEST(ReaderArrays, ReadsArraysWithoutElementsAsEmptyDoubles) {
  EXPECT_TRUE(readsAs("[[], []]", doubles({2, 0}, {})));
  EXPECT_TRUE(readsAs("[[]]", doubles({1, 0}, {})));
  EXPECT_TRUE(readsAs("[[[], []], [[], []], [[], []]]", doubles({3, 2, 0}, {})));
}

TEST(ReaderArrays, ReadsTruthValuesAsLogicals) {
  EXPECT_TRUE(readsAs("true", truth(true)));
  EXPECT_TRUE(readsAs("false", truth(false)));
  EXPECT_TRUE(readsAs("[true, false]", logicals({1, 2}, {true, false})));
  EXPECT_TRUE(readsAs("[[true, false], [true, true]]", logicals({2, 2}, {true, true, false, true})));
}

TEST(ReaderArrays, ReadsMixedElementsAsCells) {
  EXPECT_TRUE(readsAs("[1, true]", cells(scalar(1), truth(true))));
  EXPECT_TRUE(readsAs("[true, 1, 2]", cells(truth(true), scalar(1), scalar(2))));
  EXPECT_TRUE(readsAs(R"([1, 2, "x", 3, 4])", cells(scalar(1), scalar(2), row(u"x"), scalar(3), scalar(4))));
  EXPECT_TRUE(readsAs("[1, [2]]", cells(scalar(1), scalar(2))));
  EXPECT_TRUE(readsAs("[[1, 2], 3]", cells(doubles({1, 2}, {1, 2}), scalar(3))));
  EXPECT_TRUE(readsAs("[[], 1]", cells(doubles({1, 0}, {}), scalar(1))));
}

TEST(ReaderArrays, ReadsARaggedArrayAsCellsOfRows) {
  EXPECT_TRUE(readsAs("[[1, 2], [3]]", cells(doubles({1, 2}, {1, 2}), doubles({1, 1}, {3}))));
  EXPECT_TRUE(readsAs("[[], [1]]", cells(doubles({1, 0}, {}), doubles({1, 1}, {1}))));
  EXPECT_TRUE(
      readsAs("[[1, 2], [true, false]]", cells(doubles({1, 2}, {1, 2}), logicals({1, 2}, {true, false}))));
}

TEST(ReaderArrays, KeepsTheRectangularPartsOfARaggedArray) {
  EXPECT_TRUE(
      readsAs("[[[1, 2], [3, 4]], [[5, 6]]]", cells(doubles({2, 2}, {1, 3, 2, 4}), doubles({1, 2}, {5, 6}))));
}

TEST(ReaderArrays, ReadsCellsWithinCells) {
  EXPECT_TRUE(readsAs(R"([[1, "a"]])", cells(cells(scalar(1), row(u"a")))));
  EXPECT_TRUE(
      readsAs(R"([[1, "a"], [2, "b"]])", cells(cells(scalar(1), row(u"a")), cells(scalar(2), row(u"b")))));
  EXPECT_TRUE(readsAs(R"([[1, "a"], 2, [[3, true]]])",
                      cells(cells(scalar(1), row(u"a")), scalar(2), cells(cells(scalar(3), truth(true))))));
}

TEST(ReaderArrays, PutsEveryElementOfRandomArraysInItsPlace) {
  std::mt19937 random(20240131);
  for (int round = 0; round < 200; ++round) {
    hvDims dimensions(2 + random() % 4);
    std::size_t count = 1;
    for (std::size_t& size : dimensions) count *= (size = 1 + random() % 4);
    std::vector<double> elements(count);
    for (double& element : elements) element = static_cast<double>(random()) / 1024;
    // Written by following the indices, so that it owes nothing to how the reader walks.
    std::string text;
    const auto write = [&](const auto& self, std::size_t level, std::size_t offset,
                           std::size_t stride) -> void {
      if (level == dimensions.size()) {
        text += std::to_string(elements[offset]);
        return;
      }
      for (std::size_t index = 0; index < dimensions[level]; ++index) {
        text += index == 0 ? "[" : ", ";
        self(self, level + 1, offset + index * stride, stride * dimensions[level]);
      }
      text += "]";
    };
    for (double& element : elements) element = std::stod(std::to_string(element));
    write(write, 0, 0, 1);
    ASSERT_TRUE(readsAs(text, doubles(dimensions, elements))) << "round " << round;
  }
}
