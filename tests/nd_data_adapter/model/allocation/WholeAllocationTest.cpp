#include <set>

#include <gtest/gtest.h>

#include "tests/nd_data_adapter/model/allocation/WholeWorld.h"

using namespace allocation_test;

namespace {

TEST(FailingAllocationsInTheTestModel, LeaveReferencesWhole) {
  expectSoundness(referenceOperations());
}
TEST(FailingAllocationsInTheTestModel, LeaveCollectionsOfReferencesWhole) {
  expectSoundness(referenceCollectionOperations());
}
TEST(FailingAllocationsInTheTestModel, LeaveSetsListsAndOptionalsWhole) {
  expectSoundness(valueOperations());
}
TEST(FailingAllocationsInTheTestModel, LeaveKeyedCollectionsWhole) {
  expectSoundness(keyedOperations());
}
TEST(FailingAllocationsInTheTestModel, LeaveProxiesWhole) {
  expectSoundness(proxyOperations());
}
TEST(FailingAllocationsInTheTestModel, LeaveNothingOfWhatABuilderCannotMake) {
  expectSoundness(builderOperations());
}
TEST(FailingAllocationsInTheTestModel, LeaveWhatReflectionReachesWhole) {
  expectSoundness(reflectionOperations());
}
TEST(FailingAllocationsInTheTestModel, LeaveWhatAQueryLooksAtWhole) {
  expectSoundness(queryOperations());
}

TEST(OperationsOnTheTestModel, ChangeItUnlessTheyOnlyLookOrAreRefused) {
  const std::set<std::string> idle{"list who refers",
                                   "list a set",
                                   "find and list",
                                   "add what is of another model",
                                   "add a proxy where there are none",
                                   "change a number to a taken one",
                                   "make a proxy of what is there",
                                   "set a value of a proxy",
                                   "build what is refused",
                                   "get lists and sets by name",
                                   "set a list by name that is refused",
                                   "query by references",
                                   "query by sets and lists",
                                   "query by what is contained, and by derived values"};
  std::size_t idleOnes = 0;
  for (const auto& list :
       {referenceOperations(), referenceCollectionOperations(), valueOperations(), keyedOperations(),
        proxyOperations(), builderOperations(), reflectionOperations(), queryOperations()}) {
    for (const WholeOperation& operation : list) {
      const WholeWorld world(false);
      const std::string before = world.state();
      operation.run(world);
      EXPECT_EQ(world.state() == before, idle.contains(operation.name)) << operation.name;
      idleOnes += idle.count(operation.name);
    }
  }
  EXPECT_EQ(idleOnes, idle.size());
}

TEST(RollbackInTheTestModel, OfManyChangesAndLevelsNeedsNoMemory) {
  const WholeWorld world(false);
  const std::string before = world.state();
  {
    std::vector<Transaction> levels;
    levels.reserve(20);
    for (int level = 0; level < 20; ++level) {
      levels.push_back(world.model.impl()->beginTransaction(false));
      for (int count = 0; count < 10; ++count) {
        const Machine made = Machine::create(world.model);
        world.references.setMachine(made);
        world.references.getRowMutable().insert(0, made);
        world.references.getBagMutable().add(made);
        world.references.getProxyBagMutable().add(made);
        world.references.getProxyRowMutable().add(made);
        world.sets.getTextsMutable().add(std::u16string(Long) + static_cast<char16_t>(u'a' + count));
        world.containers.getAllByNumberMutable().add(made);
        world.containers.allByNumber().first().setNumber(count);
        if (count % 3 == 0) made.impl()->convertToProxy();
        if (count % 4 == 0) made.destroy();
      }
      world.references.getBagMutable().remove(world.references.bag().atPosition(0));
      world.references.getProxyRowMutable().clear();
    }
    const std::size_t asked = AllocationFault::requests();
    while (!levels.empty()) levels.pop_back();
    EXPECT_EQ(AllocationFault::requests(), asked);
  }
  EXPECT_EQ(world.state(), before);
}

TEST(EndOfTheTestModel, WithoutMemoryFreesEverything) {
  expectSoundness(WholeOperation{"warm up", [](const WholeWorld&) {}}, Frame::Bare, Extent::Alone);
  const std::size_t live = AllocationFault::live();
  {
    std::optional<WholeWorld> world;
    world.emplace(true);
    Model model = world->model;
    const Thing thing = world->references.row().at(0);
    const auto ticket = std::make_shared<int>(7);
    world->values.setTicket(ticket);
    world.reset();
    EXPECT_TRUE(thing.isAlive());
    EXPECT_EQ(ticket.use_count(), 2);
    {
      const AllocationFault fault(1, Extent::WithAllThatFollow);
      model = Model();
    }
    EXPECT_FALSE(thing.isAlive());
    EXPECT_EQ(ticket.use_count(), 1);
  }
  EXPECT_EQ(AllocationFault::live(), live);
}

}  // namespace
