// Which blocks the pool keeps and where the others go. A program of its own, because it replaces the operator
// new to count.

#include <cstdint>
#include <new>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "platform/foundation/ModelImpl.h"
#include "platform/foundation/Pool.h"
#include "tests/support/AllocationFault.h"
#include "tests/support/model/Thing.h"

using lx::base::Model;
using lx::base::detail::allocateBlock;
using lx::base::detail::freeBlock;
using lx::base::detail::keepFreedBlocks;
using lx::base::detail::keepsFreedBlocks;
using lx::base::detail::Pool;
using lx::base::detail::pool;
using probe::Thing;

namespace {

/// Count the blocks that were not given back yet, also such as a pool keeps.
std::size_t taken() {
  return AllocationFault::requests() - AllocationFault::releases();
}

/// Free a block and tell whether it went to the operator delete.
bool isReleased(void* block, std::size_t size) {
  const std::size_t before = AllocationFault::releases();
  freeBlock(block, size);
  return AllocationFault::releases() != before;
}

/// Allocate a block and tell whether it came from the operator new. Frees it again.
bool isAskedFor(std::size_t size) {
  const std::size_t before = AllocationFault::requests();
  void* const block = allocateBlock(size);
  const bool result = AllocationFault::requests() != before;
  freeBlock(block, size);
  return result;
}

bool isPoolEmpty() {
  for (const void* shelf : pool.shelves) {
    if (shelf != nullptr) return false;
  }
  return true;
}

void makeAndDestroyElements(const Model& model, int count) {
  std::vector<Thing> things;
  things.reserve(static_cast<std::size_t>(count));
  for (int number = 0; number < count; ++number) things.push_back(Thing::create(model));
  for (Thing& thing : things) std::exchange(thing, Thing()).destroy();
}

class PoolTest : public testing::Test {
 protected:
  void SetUp() override {
    const Model model = Model::create();
    makeAndDestroyElements(model, 1);  // makes what is made once
  }

  /// Run a step in a thread of its own, which has a pool of its own, to the end of the thread. Gives the
  /// number of allocations that are left.
  template <class Step>
  static std::size_t leftBy(Step step) {
    const std::size_t before = taken();
    std::thread(step).join();
    return taken() - before;
  }
};

#ifdef ND_SANITIZED

TEST_F(PoolTest, KeepsNothingUnderASanitizerAlsoWhenItIsTold) {
  const std::size_t left = leftBy([] {
    EXPECT_FALSE(keepsFreedBlocks());
    keepFreedBlocks(true);
    EXPECT_FALSE(keepsFreedBlocks());
    EXPECT_TRUE(isReleased(allocateBlock(120), 120));
    makeAndDestroyElements(Model::create(), 100);
    EXPECT_TRUE(isPoolEmpty());
  });
  EXPECT_EQ(left, 0U);
}

#else

TEST_F(PoolTest, GivesAFreedBlockToTheNextOfItsSize) {
  bool isTheSame = false;
  bool isAnotherSizeAskedFor = false;
  const std::size_t left = leftBy([&] {
    void* const first = allocateBlock(100);
    const auto place = reinterpret_cast<std::uintptr_t>(first);
    freeBlock(first, 100);
    isAnotherSizeAskedFor = isAskedFor(200);
    void* const second = allocateBlock(104);
    isTheSame = reinterpret_cast<std::uintptr_t>(second) == place;
    freeBlock(second, 104);
  });
  EXPECT_TRUE(isTheSame);
  EXPECT_TRUE(isAnotherSizeAskedFor);
  EXPECT_EQ(left, 0U);
}

TEST_F(PoolTest, KeepsBlocksOfAllSizesTogetherUpToItsBound) {
  std::size_t kept = 0;
  bool isMoreReleased = false;
  bool isOneForOneKept = false;
  const std::size_t left = leftBy([&] {
    std::vector<std::pair<void*, std::size_t>> blocks;
    for (std::size_t sum = 0; sum < 2 * Pool::KeptBytes;) {
      for (const std::size_t size : {512U, 344U, 200U, 120U, 24U}) {
        blocks.emplace_back(allocateBlock(size), size);
        sum += Pool::rounded(size);
      }
    }
    for (const auto& [block, size] : blocks) kept += isReleased(block, size) ? 0 : Pool::rounded(size);
    isMoreReleased = isReleased(::operator new(Pool::rounded(24)), 24);
    isOneForOneKept = !isReleased(allocateBlock(200), 200);
    isMoreReleased = isMoreReleased && isReleased(::operator new(Pool::rounded(24)), 24);
  });
  EXPECT_LE(kept, Pool::KeptBytes);
  EXPECT_GT(kept + Pool::rounded(24), Pool::KeptBytes);
  EXPECT_TRUE(isMoreReleased);
  EXPECT_TRUE(isOneForOneKept);
  EXPECT_EQ(left, 0U);
}

TEST_F(PoolTest, MakesNoMoreRoomWhenItIsToldToKeepAgain) {
  std::size_t kept = 0;
  const std::size_t left = leftBy([&] {
    std::vector<void*> blocks(2 * Pool::KeptBytes / Pool::rounded(504));
    for (void*& block : blocks) block = allocateBlock(504);
    for (void* const block : blocks) {
      keepFreedBlocks(true);
      kept += isReleased(block, 504) ? 0 : Pool::rounded(504);
    }
  });
  EXPECT_LE(kept, Pool::KeptBytes);
  EXPECT_GT(kept + Pool::rounded(504), Pool::KeptBytes);
  EXPECT_EQ(left, 0U);
}

TEST_F(PoolTest, KeepsNothingFromWhenItIsToldSoUntilItIsToldOtherwise) {
  std::size_t givenBack = 0;
  bool isReleasedMeanwhile = false;
  bool isKeptBefore = false;
  bool isKeptAfter = false;
  const std::size_t left = leftBy([&] {
    isKeptBefore = !isReleased(allocateBlock(120), 120) && !isReleased(allocateBlock(200), 200);
    const std::size_t before = AllocationFault::releases();
    keepFreedBlocks(false);
    givenBack = AllocationFault::releases() - before;
    isReleasedMeanwhile = !keepsFreedBlocks() && isReleased(allocateBlock(120), 120);
    keepFreedBlocks(true);
    isKeptAfter = keepsFreedBlocks() && !isReleased(allocateBlock(120), 120);
  });
  EXPECT_TRUE(isKeptBefore);
  EXPECT_EQ(givenBack, 2U);
  EXPECT_TRUE(isReleasedMeanwhile);
  EXPECT_TRUE(isKeptAfter);
  EXPECT_EQ(left, 0U);
}

TEST_F(PoolTest, GivesBackWhatAThreadKeptOfItsElements) {
  bool isKept = false;
  const std::size_t left = leftBy([&] {
    const Model model = Model::create();
    makeAndDestroyElements(model, 1000);
    isKept = !isPoolEmpty();
  });
  EXPECT_TRUE(isKept);
  EXPECT_EQ(left, 0U);
}

#endif

TEST_F(PoolTest, LetsABlockGoThatIsLargerThanAnyItKeeps) {
  void* const block = allocateBlock(Pool::Largest + 1);
  EXPECT_TRUE(isReleased(block, Pool::Largest + 1));
}

// The end of a thread

struct Seen {
  bool keptBefore = true;
  bool keeps = true;
  bool keepsWhenTold = true;
  bool isAskedFor = false;
  bool isReleased = false;
  bool isEmpty = false;
  std::size_t room = 1;
};

/// Uses the pool when it ends.
struct AtTheEnd {
  Model model{};
  Seen* seen = nullptr;

  ~AtTheEnd() {
    if (seen == nullptr) return;
    seen->keeps = keepsFreedBlocks();
    keepFreedBlocks(true);
    seen->keepsWhenTold = keepsFreedBlocks();
    makeAndDestroyElements(model, 100);
    model.destroy();
    seen->isAskedFor = isAskedFor(120);
    seen->isReleased = isReleased(allocateBlock(120), 120);
    seen->isEmpty = isPoolEmpty();
    seen->room = pool.room;
  }
};

TEST_F(PoolTest, LeavesBlocksToTheOperatorsWhenItHasEndedOnAThread) {
  Seen seen;
  const std::size_t left = leftBy([&] {
    static thread_local AtTheEnd
        late;  // made before the pool keeps the first block, so that it ends behind it
    late.seen = &seen;
    late.model = Model::create();
    makeAndDestroyElements(late.model, 100);
    seen.keptBefore = keepsFreedBlocks() && !isPoolEmpty();
  });
  EXPECT_EQ(seen.keptBefore, keepsFreedBlocks());
  EXPECT_FALSE(seen.keeps);
  EXPECT_FALSE(seen.keepsWhenTold);
  EXPECT_TRUE(seen.isAskedFor);
  EXPECT_TRUE(seen.isReleased);
  EXPECT_TRUE(seen.isEmpty);
  EXPECT_EQ(seen.room, 0U);
  EXPECT_EQ(left, 0U);
}

TEST_F(PoolTest, GivesBackWhatIsFreedByWhatEndsBeforeIt) {
  Seen seen;
  const std::size_t left = leftBy([&] {
    const Model model = Model::create();
    makeAndDestroyElements(model, 100);
    static thread_local AtTheEnd early;
    early.seen = &seen;
    early.model = Model::create();
  });
  EXPECT_EQ(seen.keeps, keepsFreedBlocks());
  EXPECT_EQ(seen.isEmpty, !keepsFreedBlocks());
  EXPECT_EQ(left, 0U);
}

TEST_F(PoolTest, GivesBackWhatIsFreedByAThreadThatFreesNothingBeforeItEnds) {
  Seen seen;
  const std::size_t left = leftBy([&] {
    static thread_local AtTheEnd only;
    only.seen = &seen;
    only.model = Model::create();
  });
  EXPECT_EQ(seen.keeps, keepsFreedBlocks());
  EXPECT_EQ(left, 0U);
}

}  // namespace
