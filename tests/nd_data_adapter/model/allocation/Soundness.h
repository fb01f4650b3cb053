#pragma once

#include <functional>
#include <new>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/foundation/ModelImpl.h"
#include "tests/support/AllocationFault.h"

namespace allocation_test {

using Extent = AllocationFault::Extent;

/// Something that is done to a world. A world is made anew for each run, observed or not, and always the
/// same: it has a `model`, can `touch` all of it within the open transaction, and writes down its `state`,
/// last what is not in the transactions of the model, behind "the second".
template <class World>
struct OperationOn {
  std::string name;
  std::function<void(const World&)> run;
};

/// In what an operation is done.
enum class Frame {
  Bare,         // its own transaction, nobody watches
  Observed,     // its own transaction, an observer reads the change set
  Within,       // within an open transaction
  WithinSaved,  // within one that has changed everything before
  WithinInner,  // within one of its own in the one that has changed everything
};

inline constexpr Frame Frames[]{Frame::Bare, Frame::Observed, Frame::Within, Frame::WithinSaved,
                                Frame::WithinInner};

inline const char* nameOf(Frame frame) {
  static const char* const names[]{"bare", "observed", "within", "within a saved one", "within an inner one"};
  return names[static_cast<int>(frame)];
}

/// A world in which an operation can be done once, or again.
template <class World>
class Stage {
 public:
  explicit Stage(Frame frame) : frame_(frame), world_(frame == Frame::Observed) {
    outermost_ = world_.state();
    if (!isWithin()) return;
    outer_.emplace(world_.model.impl()->beginTransaction(false));
    if (frame_ != Frame::Within) world_.touch();
  }

  void run(const OperationOn<World>& operation) {
    if (frame_ != Frame::WithinInner) return operation.run(world_);
    lx::base::Transaction inner = world_.model.impl()->beginTransaction(false);
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
  std::optional<lx::base::Transaction> outer_;
  std::string outermost_;
};

/// Run an operation whose n-th allocation fails. False if it asked for less.
template <class World>
bool tryWithout(std::size_t number, Extent extent, const OperationOn<World>& operation, Frame frame,
                const std::string& after) {
  Stage<World> stage(frame);
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

/// Let each allocation of an operation fail, alone or with all that follow, and expect that the world is as
/// before or as after, that the operation works afterwards, that nothing leaks, and that what it was done in
/// can be taken back without memory.
template <class World>
void expectSoundness(const OperationOn<World>& operation, Frame frame, Extent extent) {
  SCOPED_TRACE(operation.name + ", " + nameOf(frame) +
               (extent == Extent::Alone ? ", one allocation fails" : ", all that follow fail"));
  std::string after;
  {
    Stage<World> stage(frame);
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

/// Do so with each operation, in each frame.
template <class World>
void expectSoundness(const std::vector<OperationOn<World>>& operations) {
  for (const OperationOn<World>& operation : operations) {
    for (const Frame frame : Frames) {
      for (const Extent extent : {Extent::Alone, Extent::WithAllThatFollow}) {
        expectSoundness(operation, frame, extent);
        if (testing::Test::HasFatalFailure()) return;
      }
    }
  }
}

}  // namespace allocation_test
