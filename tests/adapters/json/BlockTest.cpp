#include <cstddef>
#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

#include "adapters/json/Block.h"
#include "platform/host/ArrayComparison.h"
#include "tests/adapters/json/arrays.h"

using nd::adapters::json::Block;
using nd::adapters::json::BlockKind;
using nd::adapters::json::BlockStacks;
using nd::adapters::json::makeArray;

TEST(BlockStacks, DropOnlyTheElementsOfTheBlocksKind) {
  BlockStacks stacks;
  stacks.numbers = {1, 2, 3};
  stacks.truths = {true, false};
  stacks.texts.resize(2);
  stacks.drop({BlockKind::UInt64, {2}, 1, {}, nullptr});
  EXPECT_EQ(stacks.numbers, (std::vector<std::uint64_t>{1}));
  stacks.drop({BlockKind::Logical, {2}, 0, {}, nullptr});
  EXPECT_TRUE(stacks.truths.empty());
  stacks.drop({BlockKind::Text, {}, 1, {}, nullptr});
  EXPECT_EQ(stacks.texts.size(), 1U);
  stacks.drop({BlockKind::Empty, {0}, 0, {}, nullptr});
  EXPECT_EQ(stacks.texts.size(), 1U);
}

TEST(MakeArray, ReadsTheElementsFromWhereTheBlockBegins) {
  BlockStacks stacks;
  stacks.numbers = {7, 9007199254740993, 1, 9007199254740995, 2};
  const hvArrayPtr array = makeArray(stacks, {BlockKind::Int64, {2, 2}, 1, {}, nullptr});
  EXPECT_TRUE(hvEqual(array.get(), arrays::int64s({2, 2}, {9007199254740993, 9007199254740995, 1, 2}).get()));
}

TEST(MakeArray, GivesIntegersTheNarrowestClassThatHoldsThem) {
  BlockStacks stacks;
  stacks.numbers = {1, 9007199254740993, 18446744073709551615U};
  const auto make = [&](std::size_t begin, std::size_t count) {
    return makeArray(stacks, {BlockKind::UInt64, {count}, begin, {}, nullptr});
  };
  EXPECT_TRUE(hvEqual(make(0, 1).get(), arrays::doubles({1, 1}, {1}).get()));
  EXPECT_TRUE(hvEqual(make(0, 2).get(), arrays::int64s({1, 2}, {1, 9007199254740993}).get()));
  EXPECT_TRUE(
      hvEqual(make(1, 2).get(), arrays::uint64s({1, 2}, {9007199254740993U, 18446744073709551615U}).get()));
}
