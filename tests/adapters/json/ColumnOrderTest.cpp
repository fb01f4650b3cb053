#include <cstddef>
#include <vector>

#include <gtest/gtest.h>

#include "adapters/json/ColumnOrder.h"

using nd::adapters::json::BlockShape;
using nd::adapters::json::countElements;
using nd::adapters::json::forEachInColumnOrder;

namespace {

/// The positions column by column, worked out index by index.
std::vector<std::size_t> expectedTargets(const BlockShape& shape) {
  std::vector<std::size_t> targets;
  for (std::size_t from = 0; from < countElements(shape); ++from) {
    std::vector<std::size_t> index(shape.size());
    std::size_t rest = from;
    for (std::size_t level = shape.size(); level-- > 0;) {
      index[level] = rest % shape[level];
      rest /= shape[level];
    }
    std::size_t to = 0;
    for (std::size_t level = shape.size(); level-- > 0;) to = to * shape[level] + index[level];
    targets.push_back(to);
  }
  return targets;
}

std::vector<std::size_t> actualTargets(const BlockShape& shape) {
  std::vector<std::size_t> targets(countElements(shape), ~std::size_t{0});
  std::size_t calls = 0;
  forEachInColumnOrder(shape, [&](std::size_t to, std::size_t from) {
    targets.at(from) = to;
    ++calls;
  });
  EXPECT_EQ(calls, targets.size());
  return targets;
}

}  // namespace

TEST(ColumnOrder, LeavesASingleValueAndARowAsTheyAre) {
  EXPECT_EQ(actualTargets({}), (std::vector<std::size_t>{0}));
  EXPECT_EQ(actualTargets({4}), (std::vector<std::size_t>{0, 1, 2, 3}));
}

TEST(ColumnOrder, TurnsAMatrix) {
  EXPECT_EQ(actualTargets({2, 3}), (std::vector<std::size_t>{0, 2, 4, 1, 3, 5}));
}

TEST(ColumnOrder, VisitsNothingWithoutElements) {
  EXPECT_TRUE(actualTargets({3, 0}).empty());
  EXPECT_TRUE(actualTargets({0}).empty());
  EXPECT_TRUE(actualTargets({0, 3, 2}).empty());
}

TEST(ColumnOrder, MovesEveryElementToItsPlaceWhateverTheShape) {
  const std::vector<BlockShape> shapes{
      {1, 1},    {5, 1},    {1, 5},      {15, 16},     {16, 17},  {33, 50},        {2, 3, 4},
      {4, 1, 3}, {1, 1, 7}, {17, 2, 19}, {2, 3, 4, 5}, {3, 1, 1}, {2, 2, 2, 2, 2}, {3, 2, 1, 4, 2, 3}};
  for (const BlockShape& shape : shapes) {
    EXPECT_EQ(actualTargets(shape), expectedTargets(shape))
        << testing::PrintToString(std::vector<std::size_t>(shape.begin(), shape.end()));
  }
}
