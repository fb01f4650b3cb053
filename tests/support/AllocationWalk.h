#pragma once

#include <functional>
#include <initializer_list>
#include <new>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "platform/foundation/ChangeObserver.h"
#include "platform/foundation/ModelImpl.h"
#include "tests/support/AllocationFault.h"

/// Operations on models, done again and again, each time with another allocation that fails.
namespace allocation_test {

using Extent = AllocationFault::Extent;

/// Reads every change set whole, as far as memory goes.
class Reader final : public lx::base::ChangeObserver {
 public:
  void changed(const lx::base::ChangeSet& changes) noexcept override {
    try {
      for (const auto& change : changes.changes()) {
        for (const unsigned index : change->properties()) static_cast<void>(change->oldValue(index));
      }
    } catch (const std::bad_alloc&) {  // the observer goes without them
    }
  }
};

/// Something that is done to a world. A world is made anew for each run, observed or not, and always the
/// same: it has a `model`, can `touch` all of it within the open transaction, and writes down its `state`. If
/// there is something that is not in the transactions of the model, that stands last, behind "the second".
/// `isReproducible` says whether two worlds to which the same was done write down the same; what was done
/// can be seen by that, or else by what the operation says of it.
template <class World>
struct OperationOn {
  using Step = std::function<void(World&)>;
  using Question = std::function<bool(World&)>;

  OperationOn(std::string name_, Step run_, Question holds_ = nullptr)
      : name(std::move(name_)), run(std::move(run_)), holds(std::move(holds_)) {}

  std::string name;
  Step run;
  Question holds;  // asked when it has run, if there is one
};

/// In what an operation is done.
enum class Frame {
  Bare,         // its own transaction, nobody watches
  Observed,     // its own transaction, an observer reads the change set
  Within,       // within an open transaction
  WithinSaved,  // within one that has changed everything before
  WithinInner,  // within one of its own in the one that has changed everything
};

inline const char* nameOf(Frame frame) {
  static const char* const names[]{"bare", "observed", "within", "within a saved one", "within an inner one"};
  return names[static_cast<int>(frame)];
}

inline std::size_t nextNumber(std::size_t number) {
  return number + 1;
}

/// Attempt something again and again, with the first allocation failing, then the second, and so on.
/// `attempt` is given the number and tells whether it asked for so many; else it was the last. A failure ends
/// it, too.
template <class F>
void failInTurn(Extent extent, F attempt, std::size_t bound = 2000,
                std::size_t (*next)(std::size_t) = nextNumber) {
  std::size_t number = 1;
  for (bool goesOn = true; goesOn && number < bound && !testing::Test::HasFailure(); number = next(number)) {
    SCOPED_TRACE("allocation " + std::to_string(number) + (extent == Extent::Alone ? "" : " on"));
    goesOn = attempt(number);
  }
  EXPECT_LT(number, bound) << "it has no end";
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

  /// Run an operation that was refused, maybe behind a step of its own that froze the model.
  void runAgain(const OperationOn<World>& operation) {
    const lx::base::Model::Thawer thawed = lx::base::Model::Freezer::thaw(world_.model);
    run(operation);
  }

  bool holds(const OperationOn<World>& operation) { return !operation.holds || operation.holds(world_); }
  std::string state() const { return world_.state(); }
  bool hasWrongTransactions() const { return world_.model.impl()->hasOpenTransaction() != isWithin(); }

  /// Take the open transaction back, which must need no memory, and expect the world of the beginning.
  void expectRollback() {
    if (!isWithin()) return;
    const std::size_t asked = AllocationFault::requests();
    outer_.reset();
    EXPECT_EQ(AllocationFault::requests(), asked) << "the rollback allocates";
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

/// Run an operation, so that what is made once for all is there, and give the state behind it; none if no two
/// worlds write down the same.
template <class World>
std::optional<std::string> stateBehind(const OperationOn<World>& operation, Frame frame) {
  Stage<World> stage(frame);
  stage.run(operation);
  std::optional<std::string> state;
  if (World::isReproducible) state = stage.state();
  EXPECT_TRUE(stage.holds(operation));
  stage.expectRollback();
  return state;
}

/// Run an operation whose n-th allocation fails. False if it asked for less.
template <class World>
bool tryWithout(std::size_t number, Extent extent, const OperationOn<World>& operation, Frame frame,
                const std::optional<std::string>& after) {
  Stage<World> stage(frame);
  const std::string before = stage.state();
  const AllocationAttempt attempt = attemptWithout(
      number, [&] { stage.run(operation); }, extent);
  EXPECT_FALSE(stage.hasWrongTransactions());
  if (attempt.isRefused && stage.state() != after) {
    EXPECT_EQ(stage.state(), before) << "is half done";
    stage.runAgain(operation);
  }
  const char* const otherwise =
      attempt.isRefused ? "does not work any more" : "is half done, and says nothing";
  if (after) {
    EXPECT_EQ(stage.state(), *after) << otherwise;
  }
  EXPECT_TRUE(stage.holds(operation)) << otherwise;
  stage.expectRollback();
  return attempt.hasOccurred;
}

/// The number of the allocation that fails after this one: each in its turn. Sanitizers make a walk take ten
/// times as long: under them it goes on in ever longer strides.
inline std::size_t nextInWorld(std::size_t number) {
#ifdef ND_SANITIZED
  return number + 1 + number / 2;
#else
  return nextNumber(number);
#endif
}

/// Let each allocation of an operation fail, alone or with all that follow, and expect that the world is as
/// before or as after, that the operation works afterwards, that nothing leaks, and that what it was done in
/// can be taken back without memory.
template <class World>
void expectSoundness(const OperationOn<World>& operation, Frame frame, Extent extent) {
  SCOPED_TRACE(operation.name + ", " + nameOf(frame));
  const std::optional<std::string> after = stateBehind(operation, frame);
  const auto attempt = [&](std::size_t number) {
    const std::size_t live = AllocationFault::live();
    const bool goesOn = tryWithout(number, extent, operation, frame, after);
    if (!testing::Test::HasFailure()) {  // what the report keeps is no leak
      EXPECT_EQ(AllocationFault::live(), live) << "memory leaks";
    }
    return goesOn;
  };
  failInTurn(extent, attempt, 2000, nextInWorld);
}

/// Do so with each operation, in each of these frames.
template <class World>
void expectSoundness(const std::vector<OperationOn<World>>& operations,
                     std::initializer_list<Frame> frames = {Frame::Bare, Frame::Observed, Frame::Within,
                                                            Frame::WithinSaved, Frame::WithinInner}) {
  for (const OperationOn<World>& operation : operations) {
    for (const Frame frame : frames) {
      for (const Extent extent : {Extent::Alone, Extent::WithAllThatFollow}) {
        expectSoundness(operation, frame, extent);
        if (testing::Test::HasFailure()) return;
      }
    }
  }
}

}  // namespace allocation_test
