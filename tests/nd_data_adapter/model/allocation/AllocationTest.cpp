#include <memory>
#include <new>
#include <optional>

#include "tests/nd_data_adapter/model/allocation/Operations.h"
#include "tests/support/AllocationWalk.h"

using namespace allocation_test;

namespace {

TEST(FailingAllocations, LeaveElementsThatComeAndGoWhole) {
  expectSoundness(lifeOperations());
}
TEST(FailingAllocations, LeaveValuesWhole) {
  expectSoundness(valueOperations());
}
TEST(FailingAllocations, LeaveCollectionsWhole) {
  expectSoundness(collectionOperations());
}
TEST(FailingAllocations, LeaveNothingOfWhatABuilderCannotMake) {
  expectSoundness(builderOperations());
}
TEST(FailingAllocations, LeaveTransactionsWhole) {
  expectSoundness(transactionOperations());
}
TEST(FailingAllocations, LeaveWhatReflectionReachesWhole) {
  expectSoundness(reflectionOperations());
}
TEST(FailingAllocations, LeaveTheNameOfAFreeEntryWhole) {
  for (const Frame frame : {Frame::Bare, Frame::Observed}) {
    expectSoundness(nameOfFreeEntry(), frame, Extent::Alone);
    expectSoundness(nameOfFreeEntry(), frame, Extent::WithAllThatFollow);
  }
}

TEST(Rollback, OfManyChangesAndLevelsNeedsNoMemory) {
  const World world(false);
  const std::string before = stateOf(world.model);
  std::size_t asked = 0;
  {
    std::vector<Transaction> levels;
    levels.reserve(50);
    for (int level = 0; level < 50; ++level) {
      levels.push_back(begin(world.model));
      for (int count = 0; count < 20; ++count) {
        world.report.createIntoChanges(ChangeTuple::Builder().setId(Long));
        world.report.changes().at(0).setId(std::u16string(Long) + char16_t(u'a' + count));
        world.report.getChangesMutable().insert(1, ChangeTuple::create(world.model));
        world.report.changes().at(2).destroy();
        world.variants.variants().first().setName(std::u16string(Long) + char16_t(u'a' + count));
        world.variants.createIntoVariants(ConditionControlChangeEntry::Builder().setName(Long));
        world.metadata.setValue(DataContainer::create(world.model));
        world.container.getConditionControlsMutable().add(Long);
      }
      world.report.changes().at(1).impl()->convertToProxy();
    }
    asked = AllocationFault::requests();
    while (!levels.empty()) levels.pop_back();
    EXPECT_EQ(AllocationFault::requests(), asked);
  }
  EXPECT_EQ(stateOf(world.model), before);
}

TEST(EndOfAModel, WithoutMemoryFreesEverything) {
  expectSoundness(Operation{"warm up", [](const World&) {}}, Frame::Bare, Extent::Alone);
  const std::size_t live = AllocationFault::live();
  {
    std::optional<World> world;
    world.emplace(true);
    Model model = world->model;
    const std::weak_ptr<CPPAdapterV2> adapter = world->adapter;
    world->held.setAdapter(world->adapter);
    const ChangeTuple tuple = world->report.changes().at(0);
    world.reset();
    EXPECT_FALSE(adapter.expired());
    {
      const AllocationFault fault(1, Extent::WithAllThatFollow);
      model = Model();
    }
    EXPECT_TRUE(adapter.expired());
    EXPECT_FALSE(tuple.isAlive());
  }
  EXPECT_EQ(AllocationFault::live(), live);
}

TEST(AllocationFault, FailsTheAllocationThatItIsAskedFor) {
  const auto fails = [] {
    try {
      operator delete(operator new(1));
    } catch (const std::bad_alloc&) {
      return true;
    }
    return false;
  };
  bool alone[3], following[3];
  {
    const AllocationFault fault(2, Extent::Alone);
    for (bool& each : alone) each = fails();
  }
  {
    const AllocationFault fault(2, Extent::WithAllThatFollow);
    for (bool& each : following) each = fails();
  }
  EXPECT_THAT(alone, testing::ElementsAre(false, true, false));
  EXPECT_THAT(following, testing::ElementsAre(false, true, true));
  EXPECT_FALSE(fails());
}

}  // namespace
