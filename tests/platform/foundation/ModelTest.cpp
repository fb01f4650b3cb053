#include "platform/foundation/ChangeObserver.h"
#include "platform/foundation/Model.h"
#include "platform/foundation/ModelImpl.h"
#include "platform/foundation/messages.h"
#include "tests/platform/foundation/raised.h"

using lx::base::ChangeObserver;
using lx::base::ChangeSet;
using lx::base::Constellation;
using lx::base::Model;
using lx::base::Transaction;
using lx::base::WorkQueueFactory;
using lxb::messages::InvalidValue;
using testing::StartsWith;

namespace {

class Silence final : public ChangeObserver {
 public:
  void changed(const ChangeSet&) noexcept override { ++notices; }
  int notices = 0;
};

TEST(Model, IsMadeEmptyAndAlive) {
  const Model model = Model::create();
  EXPECT_TRUE(model);
  EXPECT_TRUE(model.isAlive());
  EXPECT_EQ(model.impl()->numberOfElements(), 0U);
  EXPECT_TRUE(model.impl()->elements().empty());
  EXPECT_TRUE(model.impl()->roots().empty());
  EXPECT_FALSE(model.impl()->hasOpenTransaction());
  EXPECT_FALSE(model.impl()->isFrozen());
}

TEST(Model, TakesAConstellationAndAFactory) {
  const auto factory = std::make_shared<const WorkQueueFactory>();
  Model model = Model::create(Constellation(), factory);
  EXPECT_TRUE(model.isAlive());
  EXPECT_EQ(factory.use_count(), 2);
  model = Model();
  EXPECT_EQ(factory.use_count(), 1);
}

TEST(Model, IsNeitherThereNorAliveThroughANullHandle) {
  const Model null;
  EXPECT_FALSE(null);
  EXPECT_FALSE(null.isAlive());
  EXPECT_EQ(null, Model());
  EXPECT_THAT(raised<InvalidValue>([&] { null.identifier(); }),
              StartsWith("InvalidValue(Model.identifier; "));
  EXPECT_THAT(raised<InvalidValue>([&] { null.destroy(); }), StartsWith("InvalidValue(Model.destroy; "));
}

TEST(Model, IsSharedByItsHandles) {
  const Model first = Model::create();
  Model second = first;
  EXPECT_EQ(first, second);
  EXPECT_FALSE(first == Model::create());
  const Model third = std::move(second);
  EXPECT_FALSE(second);  // NOLINT(bugprone-use-after-move): this is what is tested
  EXPECT_EQ(third, first);
}

TEST(Model, SurvivesTheAssignmentOfAHandleToItself) {
  Model model = Model::create();
  const Model& same = model;
  model = same;
  EXPECT_TRUE(model.isAlive());
  Model& alias = model;
  model = std::move(alias);
  EXPECT_TRUE(model.isAlive());
}

TEST(Model, IsDeadForAllHandlesOnceDestroyed) {
  const Model model = Model::create();
  const Model other = model;
  other.destroy();
  EXPECT_TRUE(model);
  EXPECT_FALSE(model.isAlive());
  EXPECT_FALSE(model.impl()->findElement({}));
  EXPECT_EQ(model.impl()->numberOfElements(), 0U);
}

TEST(Model, IsDestroyedTwiceWithoutError) {
  const Model model = Model::create();
  model.destroy();
  model.destroy();
  EXPECT_FALSE(model.isAlive());
}

TEST(Model, RefusesTransactionsOnceDestroyed) {
  const Model model = Model::create();
  model.destroy();
  EXPECT_THAT(raised<InvalidValue>([&] { static_cast<void>(model.impl()->beginTransaction(false)); }),
              StartsWith("InvalidValue(Model.beginTransaction; the model was destroyed"));
  EXPECT_FALSE(model.impl()->hasOpenTransaction());
}

TEST(Model, RefusesToBeDestroyedWhileATransactionIsOpen) {
  const Model model = Model::create();
  {
    const Transaction open = model.impl()->beginTransaction(false);
    EXPECT_THAT(raised<InvalidValue>([&] { model.destroy(); }), StartsWith("InvalidValue(Model.destroy; "));
    EXPECT_TRUE(model.isAlive());
    EXPECT_TRUE(model.impl()->hasOpenTransaction());
  }
  model.destroy();
  EXPECT_FALSE(model.isAlive());
}

TEST(Model, LivesAsLongAsATransactionIsOpenOnIt) {
  Model model = Model::create();
  Model::Impl* const impl = model.impl();
  Transaction open = impl->beginTransaction(false);
  model = Model();
  EXPECT_TRUE(impl->isAlive());
  EXPECT_TRUE(impl->hasOpenTransaction());
  open.commit();  // lets the model go
  EXPECT_FALSE(open.isOpen());
}

TEST(Model, CountsTheTransactionsThatWereBegun) {
  const Model model = Model::create();
  const auto begun = [&] { return model.impl()->counters().transactions; };
  EXPECT_EQ(begun(), 0U);
  Transaction outer = model.impl()->beginTransaction(false);
  { const Transaction inner = model.impl()->beginTransaction(true); }
  outer.commit();
  EXPECT_EQ(begun(), 2U);
}

TEST(Model, TellsItsObserversNothingOfATransactionWithoutChanges) {
  const Model model = Model::create();
  Silence silence;
  model.impl()->addObserver(silence);
  Transaction empty = model.impl()->beginTransaction(false);
  empty.commit(lx::base::Value(u"nothing was done"));
  { const Transaction abandoned = model.impl()->beginTransaction(false); }
  EXPECT_EQ(silence.notices, 0);
  EXPECT_EQ(model.impl()->counters().notices, 0U);
  model.impl()->removeObserver(silence);
}

TEST(Model, BearsTheRemovalOfAnObserverThatItDoesNotHave) {
  const Model model = Model::create();
  Silence silence;
  model.impl()->removeObserver(silence);
  EXPECT_TRUE(model.isAlive());
}

TEST(Freezer, RefusesTransactionsOnAFrozenModel) {
  const Model model = Model::create();
  Model::Freezer::freeze(model);
  EXPECT_TRUE(model.impl()->isFrozen());
  EXPECT_THAT(raised<InvalidValue>([&] { static_cast<void>(model.impl()->beginTransaction(false)); }),
              StartsWith("InvalidValue(Model.beginTransaction; the model is frozen"));
}

TEST(Freezer, RefusesANullOrDeadModel) {
  const Model dead = Model::create();
  dead.destroy();
  for (const Model& model : {Model(), dead}) {
    EXPECT_THAT(raised<InvalidValue>([&] { Model::Freezer::freeze(model); }),
                StartsWith("InvalidValue(Model.Freezer.freeze; "));
    EXPECT_THAT(raised<InvalidValue>([&] { static_cast<void>(Model::Freezer::thaw(model)); }),
                StartsWith("InvalidValue(Model.Freezer.thaw; "));
  }
}

TEST(Freezer, LetsAFrozenModelBeDestroyed) {
  const Model model = Model::create();
  Model::Freezer::freeze(model);
  model.destroy();
  EXPECT_FALSE(model.isAlive());
}

TEST(Thawer, LiftsTheReadOnlyStateForAsLongAsItLives) {
  const Model model = Model::create();
  Model::Freezer::freeze(model);
  {
    const Model::Thawer thawed = Model::Freezer::thaw(model);
    EXPECT_FALSE(model.impl()->isFrozen());
    EXPECT_TRUE(model.impl()->beginTransaction(false).isOpen());
  }
  EXPECT_TRUE(model.impl()->isFrozen());
}

TEST(Thawer, LeavesAModelWritableThatWasNotFrozen) {
  const Model model = Model::create();
  { const Model::Thawer thawed = Model::Freezer::thaw(model); }
  EXPECT_FALSE(model.impl()->isFrozen());
}

TEST(Thawer, EndsOnlyWithTheOuterOfTwo) {
  const Model model = Model::create();
  Model::Freezer::freeze(model);
  {
    const Model::Thawer outer = Model::Freezer::thaw(model);
    { const Model::Thawer inner = Model::Freezer::thaw(model); }
    EXPECT_FALSE(model.impl()->isFrozen());
  }
  EXPECT_TRUE(model.impl()->isFrozen());
}

TEST(Thawer, PassesOnWhatItLiftedWhenItIsMoved) {
  const Model model = Model::create();
  Model::Freezer::freeze(model);
  {
    Model::Thawer first = Model::Freezer::thaw(model);
    {
      const Model::Thawer second = std::move(first);
      EXPECT_FALSE(model.impl()->isFrozen());
    }
    EXPECT_TRUE(model.impl()->isFrozen());
  }
  EXPECT_TRUE(model.impl()->isFrozen());
}

TEST(Thawer, KeepsItsModel) {
  Model model = Model::create();
  Model::Freezer::freeze(model);
  const Model::Thawer thawed = Model::Freezer::thaw(model);
  Model::Impl* const impl = model.impl();
  model = Model();
  EXPECT_TRUE(impl->isAlive());
}

}  // namespace
