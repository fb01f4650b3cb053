#include <gtest/gtest.h>

#include "adapters/json/Gatherer.h"
#include "platform/host/ArrayComparison.h"
#include "tests/adapters/json/arrays.h"

using nd::adapters::json::Block;
using nd::adapters::json::BlockKind;
using nd::adapters::json::BlockShape;
using nd::adapters::json::BlockStacks;
using nd::adapters::json::Gatherer;
using nd::adapters::json::makeArray;

namespace {

Block truth(BlockStacks& stacks, bool value) {
  stacks.truths.push_back(value);
  return {BlockKind::Logical, {}, stacks.truths.size() - 1, {}, nullptr};
}

}  // namespace

TEST(Gatherer, GivesAnEmptyBlockForNoElements) {
  BlockStacks stacks;
  const Block block = Gatherer(stacks, "[]").finish();
  EXPECT_EQ(block.kind, BlockKind::Empty);
  EXPECT_EQ(block.shape, (BlockShape{0}));
}

TEST(Gatherer, LeavesAlikeElementsOnTheirStack) {
  BlockStacks stacks;
  stacks.numbers = {0};
  Gatherer gatherer(stacks, "[1, 2]");
  gatherer.addDouble(1);
  gatherer.addDouble(2);
  const Block block = gatherer.finish();
  EXPECT_EQ(block.kind, BlockKind::Double);
  EXPECT_EQ(block.shape, (BlockShape{2}));
  EXPECT_EQ(block.begin, 1U);
  EXPECT_EQ(stacks.numbers.size(), 3U);
  EXPECT_TRUE(stacks.arrays.empty());
}

TEST(Gatherer, TakesDoublesOnlyAmongDoubles) {
  BlockStacks stacks;
  Gatherer gatherer(stacks, "");
  EXPECT_TRUE(gatherer.takesDoubles());
  gatherer.addDouble(1);
  EXPECT_TRUE(gatherer.takesDoubles());
  gatherer.add(truth(stacks, true), 0);
  EXPECT_FALSE(gatherer.takesDoubles());
  Gatherer another(stacks, "");
  another.add(truth(stacks, true), 0);
  EXPECT_FALSE(another.takesDoubles());
}

TEST(Gatherer, TellsThatNumbersClashForAsLongAsAllAreNumbers) {
  BlockStacks stacks;
  const auto great = [&stacks] {
    stacks.numbers.push_back(9007199254740993U);
    return Block{BlockKind::Int64, {}, stacks.numbers.size() - 1, "9007199254740993", nullptr};
  };
  Gatherer gatherer(stacks, "[0.5, 9007199254740993, 1, true]");
  gatherer.addDouble(0.5);
  EXPECT_FALSE(gatherer.clash());
  gatherer.add(great(), 6);
  EXPECT_TRUE(gatherer.clash());
  gatherer.add(great(), 24);
  EXPECT_TRUE(gatherer.clash());
  gatherer.add(truth(stacks, true), 27);
  EXPECT_FALSE(gatherer.clash());
  gatherer.add(great(), 30);
  EXPECT_FALSE(gatherer.clash());
  EXPECT_EQ(gatherer.finish().kind, BlockKind::Array);
}

TEST(Gatherer, LeavesOneFinishedArrayOnceElementsDiffer) {
  BlockStacks stacks;
  Gatherer gatherer(stacks, "");
  gatherer.addDouble(1);
  gatherer.add(truth(stacks, true), 0);
  const Block block = gatherer.finish();
  EXPECT_EQ(block.kind, BlockKind::Array);
  EXPECT_TRUE(stacks.numbers.empty());
  EXPECT_TRUE(stacks.truths.empty());
  ASSERT_EQ(stacks.arrays.size(), 1U);
  EXPECT_TRUE(
      hvEqual(makeArray(stacks, block).get(), arrays::cells(arrays::scalar(1), arrays::truth(true)).get()));
}
