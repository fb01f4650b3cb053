#include <memory>
#include <new>
#include <optional>

#include "platform/services/CatalogMessage.h"
#include "tests/nd_data_adapter/model/allocation/AllocationFault.h"
#include "tests/nd_data_adapter/model/allocation/Operations.h"

using namespace allocation_test;
using Extent = AllocationFault::Extent;

namespace {

/// In what an operation is done.
enum class Frame {
  Bare,         // its own transaction, nobody watches
  Observed,     // its own transaction, an observer reads the change set
  Within,       // within an open transaction
  WithinSaved,  // within one that has changed everything before
  WithinInner,  // within one of its own in the one that has changed everything
};

constexpr Frame Frames[]{Frame::Bare, Frame::Observed, Frame::Within, Frame::WithinSaved, Frame::WithinInner};

const char* nameOf(Frame frame) {
  static const char* const names[]{"bare", "observed", "within", "within a saved one", "within an inner one"};
  return names[static_cast<int>(frame)];
}

/// A world in which an operation can be done once, or again.
class Stage {
 public:
  explicit Stage(Frame frame) : frame_(frame), world_(frame == Frame::Observed) {
    outermost_ = world_.state();
    if (!isWithin()) return;
    outer_.emplace(begin(world_.model));
    if (frame_ != Frame::Within) world_.touch();
  }

  void run(const Operation& operation) {
    if (frame_ != Frame::WithinInner) return operation.run(world_);
    Transaction inner = begin(world_.model);
    operation.run(world_);
    inner.commit();
  }

  std::string state() const { return world_.state(); }
  bool hasWrongTransactions() const { return world_.model.impl()->hasOpenTransaction() != isWithin(); }

  /// Take the open transaction back, which must need no memory, and expect the world of the beginning.
  void expectRollback() {
    if (!isWithin()) return;
    const std::size_t asked = AllocationFault::requests();
    outer_.reset();
    EXPECT_EQ(AllocationFault::requests(), asked) << "the rollback allocates";
    // The second model is not in the transaction.
    EXPECT_EQ(transactional(world_.state()), transactional(outermost_));
  }

 private:
  bool isWithin() const noexcept { return frame_ >= Frame::Within; }

  std::string transactional(std::string state) const { return state.substr(0, state.rfind("the second")); }

  Frame frame_;
  World world_;
  std::optional<Transaction> outer_;
  std::string outermost_;
};

/// Run an operation whose n-th allocation fails. False if it asked for less.
bool tryWithout(std::size_t number, Extent extent, const Operation& operation, Frame frame,
                const std::string& after) {
  Stage stage(frame);
  const std::string before = stage.state();
  bool isRefused = false, hasOccurred = false;
  {
    const AllocationFault fault(number, extent);
    try {
      stage.run(operation);
    } catch (const std::bad_alloc&) {
      isRefused = true;
    }
    hasOccurred = AllocationFault::hasOccurred();
  }
  EXPECT_FALSE(stage.hasWrongTransactions());
  const std::string state = stage.state();
  if (!isRefused) {
    EXPECT_EQ(state, after) << "is half done, and says nothing";
  } else if (state != after) {
    EXPECT_EQ(state, before) << "is half done";
    stage.run(operation);
    EXPECT_EQ(stage.state(), after) << "does not work any more";
  }
  stage.expectRollback();
  return hasOccurred;
}

void expectSoundness(const Operation& operation, Frame frame, Extent extent) {
  SCOPED_TRACE(operation.name + ", " + nameOf(frame) +
               (extent == Extent::Alone ? ", one allocation fails" : ", all that follow fail"));
  std::string after;
  {
    Stage stage(frame);
    stage.run(operation);
    after = stage.state();
    stage.expectRollback();
  }
  constexpr std::size_t Bound = 2000;
  std::size_t number = 1;
  for (bool goesOn = true; goesOn && number < Bound && !testing::Test::HasFailure(); ++number) {
    const std::size_t live = AllocationFault::live();
    SCOPED_TRACE("allocation " + std::to_string(number));
    goesOn = tryWithout(number, extent, operation, frame, after);
    if (testing::Test::HasFailure()) return;  // what the report keeps is no leak
    EXPECT_EQ(AllocationFault::live(), live) << "memory leaks";
  }
  EXPECT_LT(number, Bound) << "the operation has no end";
}

void expectSoundness(const std::vector<Operation>& operations) {
  for (const Operation& operation : operations) {
    for (const Frame frame : Frames) {
      for (const Extent extent : {Extent::Alone, Extent::WithAllThatFollow}) {
        expectSoundness(operation, frame, extent);
        if (testing::Test::HasFatalFailure()) return;
      }
    }
  }
}

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
  expectSoundness({"warm up", [](const World&) {}}, Frame::Bare, Extent::Alone);
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
