#include <gmock/gmock.h>

#include "platform/foundation/ChangeObserver.h"
#include "tests/platform/foundation/Probing.h"

using namespace probing;

namespace {

constexpr const char* One = "probe.References.one";

TEST(Reference, IsEmptyAtFirst) {
  const Model model = Model::create();
  const References holder = References::create(model);
  EXPECT_FALSE(holder.one());
  EXPECT_FALSE(holder.hasOne());
  EXPECT_EQ(holder.getPropertyValue(u"one"), Value(ModelElement()));
}

TEST(Reference, RefersWithoutContaining) {
  const Model model = Model::create();
  const References holder = References::create(model);
  const Thing target = thing(model);
  undoneThenDone(model, [&] { holder.setOne(target); });
  EXPECT_EQ(holder.one(), target);
  EXPECT_TRUE(holder.hasOne());
  EXPECT_FALSE(target.container());
  EXPECT_EQ(target.referrers(), Elements{holder});
  EXPECT_EQ(model.impl()->roots(), (Elements{holder, target}));
}

TEST(Reference, MovesFromOneTargetToAnotherAndToNone) {
  const Model model = Model::create();
  const References holder = References::create(model);
  const Thing first = thing(model), second = thing(model);
  holder.setOne(first);
  undoneThenDone(model, [&] { holder.setOne(second); });
  EXPECT_TRUE(first.referrers().empty());
  EXPECT_EQ(second.referrers(), Elements{holder});
  undoneThenDone(model, [&] { holder.setOne(Thing()); });
  EXPECT_FALSE(holder.hasOne());
  EXPECT_TRUE(second.referrers().empty());
  EXPECT_TRUE(first.isAlive() && second.isAlive());
}

TEST(Reference, ToTheSameTargetMakesNoTransaction) {
  const Model model = Model::create();
  const References holder = References::create(model);
  const Thing target = thing(model);
  holder.setOne(target);
  const std::uint64_t begun = transactions(model);
  holder.setOne(target);
  holder.setAny(ModelElement());
  EXPECT_EQ(transactions(model), begun);
}

TEST(Reference, RefusesADestroyedTargetAndChangesNothing) {
  const Model model = Model::create();
  const References holder = References::create(model);
  const Thing target = thing(model), dead = thing(model);
  holder.setOne(target);
  dead.destroy();
  const std::string before = stateOf(model);
  EXPECT_EQ(raised<InvalidValue>([&] { holder.setOne(dead); }),
            "InvalidValue(" + std::string(One) +
                "; the element was destroyed; refer to one that exists, or to none.)");
  EXPECT_EQ(stateOf(model), before);
}

TEST(Reference, IsRefusedOnAProxyAndOnADeadHolder) {
  const Model model = Model::create();
  const References proxy = References::create(model), dead = References::create(model);
  const Thing target = thing(model);
  proxy.setOne(target);
  dead.setOne(target);
  proxy.impl()->convertToProxy();
  dead.destroy();
  EXPECT_EQ(raised<CannotModifyProxy>([&] { proxy.setOne(Thing()); }),
            "CannotModifyProxy(" + std::string(One) + ")");
  EXPECT_EQ(raised<InvalidValue>([&] { dead.setOne(target); }),
            "InvalidValue(" + std::string(One) + "; the element was destroyed; create another one.)");
  EXPECT_FALSE(proxy.one()) << "a proxy has no values";
  EXPECT_FALSE(dead.one());
  EXPECT_FALSE(dead.hasOne());
  EXPECT_TRUE(target.referrers().empty());
}

TEST(Reference, MayReferToItsOwnHolder) {
  const Model model = Model::create();
  const References holder = References::create(model);
  holder.setOther(holder);
  EXPECT_EQ(holder.other(), holder);
  EXPECT_EQ(holder.referrers(), Elements{holder});
  undoneThenDone(model, [&] { holder.destroy(); });
  EXPECT_FALSE(holder.isAlive());
}

TEST(Reference, LetsItsTargetKnowAndEndsWithIt) {
  // [references]
  const Model model = Model::create();
  const Thing target = Thing::create(model);
  const References holder = References::create(model);
  holder.setOne(target);  // refers to it and does not contain it
  holder.getRowMutable().add(target);
  holder.getBagMutable().add(target);
  EXPECT_FALSE(target.container());
  EXPECT_EQ(target.referrers(), Elements{holder});

  target.destroy();
  EXPECT_FALSE(holder.one());
  EXPECT_TRUE(holder.row().empty() && holder.bag().empty());
  // [/references]
}

TEST(Reference, LosesATargetThatIsDestroyed) {
  const Model model = Model::create();
  const References holder = References::create(model), other = References::create(model);
  const Thing target = thing(model);
  holder.setOne(target);
  holder.setAny(target);
  other.setOne(target);
  undoneThenDone(model, [&] { target.destroy(); });
  EXPECT_FALSE(holder.one() || holder.any() || other.one());
  EXPECT_FALSE(holder.hasOne());
}

TEST(Reference, LosesATargetThatGoesWithItsContainer) {
  const Model model = Model::create();
  const References holder = References::create(model);
  const Containers container = Containers::create(model);
  const Thing target = thing(model);
  container.getRowMutable().add(target);
  holder.setOne(target);
  undoneThenDone(model, [&] { container.destroy(); });
  EXPECT_FALSE(holder.one());
}

TEST(Reference, OfAHolderThatDiesWithItsTargetComesBackWithBoth) {
  const Model model = Model::create();
  const References holder = References::create(model);
  const Thing target = thing(model);
  holder.setOne(target);
  undoneThenDone(model, [&] {
    holder.destroy();
    target.destroy();
  });
  EXPECT_EQ(model.impl()->numberOfElements(), 0U);
}

TEST(Reference, ToAnElementThatIsCreatedInTheTransactionGoesWithIt) {
  const Model model = Model::create();
  const References holder = References::create(model);
  const std::string before = stateOf(model);
  {
    const Transaction open = begin(model);
    holder.setOne(thing(model));
    EXPECT_TRUE(holder.one());
  }
  EXPECT_EQ(stateOf(model), before);
  EXPECT_FALSE(holder.one());
}

TEST(Reference, AcceptsAProxyAndKeepsATargetThatBecomesOne) {
  const Model model = Model::create();
  const References holder = References::create(model);
  const Thing target = thing(model);
  holder.setOne(target);
  undoneThenDone(model, [&] { target.impl()->convertToProxy(); });
  EXPECT_EQ(holder.one(), target);
  EXPECT_EQ(target.referrers(), Elements{holder});
  const Thing proxy = lx::base::createProxy<Thing>(model, identity(7));
  undoneThenDone(model, [&] { holder.setOne(proxy); });
  EXPECT_EQ(holder.one(), proxy);
}

// Other models

TEST(ReferenceToAnotherModel, IsReadAndUndone) {
  const Model model = Model::create(), other = Model::create();
  const References holder = References::create(model);
  const Thing target = thing(other, u"there");
  undoneThenDone(model, [&] { holder.setOne(target); });
  EXPECT_EQ(holder.one().name(), u"there");
  EXPECT_TRUE(target.referrers().empty()) << "references from other models are not known";
}

TEST(ReferenceToAnotherModel, ReadsAsNotAliveOnceTheElementHasEnded) {
  const Model model = Model::create();
  Model other = Model::create();
  const References holder = References::create(model);
  holder.setOne(thing(other));
  holder.setAny(thing(other));
  holder.one().destroy();
  EXPECT_TRUE(holder.one());
  EXPECT_FALSE(holder.one().isAlive());
  EXPECT_TRUE(holder.any().isAlive());
  other = Model();
  EXPECT_TRUE(holder.any());
  EXPECT_FALSE(holder.any().isAlive());
  EXPECT_EQ(holder.one().name(), u"");
  holder.setOne(Thing());
  EXPECT_FALSE(holder.one());
}

TEST(ReferenceToAnotherModel, MayGoBothWays) {
  const Model model = Model::create();
  Model other = Model::create();
  const References here = References::create(model), there = References::create(other);
  here.setOther(there);
  there.setOther(here);
  other = Model();
  EXPECT_FALSE(here.other().isAlive());
  EXPECT_FALSE(there.other());
}

// Who refers

TEST(Referrers, AreListedOnceEachTheOldestReferenceFirst) {
  const Model model = Model::create();
  const References first = References::create(model), second = References::create(model),
                   third = References::create(model);
  const Thing target = thing(model);
  third.setOne(target);
  first.getBagMutable().add(target);
  second.getRowMutable().add(target);
  third.getRowMutable().add(target);
  EXPECT_EQ(target.referrers(), (Elements{third, first, second}));
  undoneThenDone(model, [&] { third.setOne(Thing()); });
  EXPECT_EQ(target.referrers(), (Elements{first, second, third}));
  undoneThenDone(model, [&] { first.destroy(); });
  EXPECT_EQ(target.referrers(), (Elements{second, third}));
}

TEST(Referrers, CountAReferenceThatIsMadeAgainAsYounger) {
  const Model model = Model::create();
  const References first = References::create(model), second = References::create(model);
  const Thing target = thing(model), other = thing(model);
  first.setOne(target);
  second.setOne(target);
  const auto makeAgain = [&] {
    first.setOne(other);
    first.setOne(target);
  };
  {
    const Transaction open = begin(model);
    makeAgain();
    EXPECT_EQ(target.referrers(), (Elements{second, first}));
  }
  EXPECT_EQ(target.referrers(), (Elements{first, second})) << "undoing brings the older reference back";
  makeAgain();
  EXPECT_EQ(target.referrers(), (Elements{second, first}));
}

TEST(Referrers, OfADeadElementAreNone) {
  const Model model = Model::create();
  const References holder = References::create(model);
  const Thing target = thing(model);
  holder.setOne(target);
  target.destroy();
  EXPECT_TRUE(target.referrers().empty());
  EXPECT_EQ(raised<InvalidValue>([] { ModelElement().referrers(); }),
            "InvalidValue(ModelElement.referrers; the handle is null; give it an element first.)");
}

TEST(Referrers, AreKnownToTheElementPropertyByProperty) {
  const Model model = Model::create();
  const References holder = References::create(model);
  const Thing target = thing(model);
  holder.setOne(target);
  const unsigned one = References::metaClass().property(u"one").getIndex();
  const unsigned any = References::metaClass().property(u"any").getIndex();
  EXPECT_TRUE(holder.impl()->_inverseContainsThis(*target.impl(), one));
  EXPECT_FALSE(holder.impl()->_inverseContainsThis(*target.impl(), any));
  EXPECT_FALSE(holder.impl()->_inverseContainsThis(*holder.impl(), one));
}

// Reflection and notices

TEST(Reference, IsSetByReflection) {
  const Model model = Model::create();
  const References holder = References::create(model);
  const Machine machine = Machine::create(model);
  undoneThenDone(model, [&] { holder.setPropertyValue(u"one", Value(machine)); });
  EXPECT_EQ(holder.getPropertyValue(u"one").as<Thing>(), machine);
  EXPECT_TRUE(holder.hasPropertyValue(u"one"));
  EXPECT_EQ(
      raised<CannotAddIncompatibleTypes>([&] { holder.setPropertyValue(u"machine", Value(thing(model))); }),
      "CannotAddIncompatibleTypes(probe.References.machine; probe.Thing; probe.Machine)");
  holder.setPropertyValue(u"one", Value(ModelElement()));
  EXPECT_FALSE(holder.hasPropertyValue(u"one"));
}

/// Keeps the old values of one commit, as they are asked for within the notice.
class Listener final : public lx::base::ChangeObserver {
 public:
  explicit Listener(const Model& model) : model_(model) { model_.impl()->addObserver(*this); }
  ~Listener() override { model_.impl()->removeObserver(*this); }

  void changed(const lx::base::ChangeSet& changes) noexcept override {
    if (step) std::exchange(step, nullptr)();
    for (const auto& change : changes.changes()) {
      for (const unsigned index : change->properties()) olds.push_back(change->oldValue(index));
    }
  }

  std::function<void()> step;
  std::vector<Value> olds;

 private:
  Model model_;
};

TEST(Reference, IsToldWithItsOldTargetAlsoIfThatIsDestroyed) {
  const Model model = Model::create();
  const References holder = References::create(model);
  const Thing target = thing(model);
  holder.setOne(target);
  Listener listener(model);
  target.destroy();
  EXPECT_EQ(listener.olds, std::vector<Value>{Value(target)});
}

TEST(Reference, ThatIsSetToAndFroInOneTransactionIsToldAsUnchanged) {
  const Model model = Model::create();
  const References holder = References::create(model);
  const Thing target = thing(model);
  holder.setOne(target);
  Listener listener(model);
  Transaction transaction = begin(model);
  holder.setOne(Thing());
  holder.setOne(target);
  transaction.commit();
  EXPECT_TRUE(listener.olds.empty());
}

TEST(OldValues, CanBeReadWhenWhatTheyNameHasEndedMeanwhile) {
  const Model model = Model::create();
  const References holder = References::create(model);
  const Containers from = Containers::create(model), to = Containers::create(model);
  holder.setOne(thing(model));
  holder.getRowMutable().add(holder.one());
  holder.getBagMutable().add(holder.one());
  from.getRowMutable().add(thing(model));
  from.getByNameMutable().add(thing(model, u"a"));
  from.setOne(thing(model));
  Listener listener(model);
  listener.step = [&] {
    for (const ModelElement& each : model.impl()->elements()) {
      if (each.getMetaClass() == Thing::metaClass()) each.destroy();
    }
  };
  Transaction transaction = begin(model);
  to.getRowMutable().add(from.row().at(0));
  to.getRowMutable().add(from.byName().first());
  to.getRowMutable().add(from.one());
  holder.setOne(Thing());
  holder.getRowMutable().clear();
  holder.getBagMutable().clear();
  transaction.commit();
  EXPECT_EQ(model.impl()->elements(), (Elements{holder, from, to}));
  EXPECT_GE(listener.olds.size(), 7U);
  for (const Value& old : listener.olds) {
    if (old.is<Elements>()) {
      for (const ModelElement& each : old.as<Elements>()) EXPECT_FALSE(each.isAlive());
    } else {
      EXPECT_FALSE(old.as<ModelElement>().isAlive());
    }
  }
}

}  // namespace
