#include <functional>
#include <memory>
#include <optional>

#include <gmock/gmock.h>

#include "platform/foundation/ChangeObserver.h"
#include "tests/platform/foundation/Probing.h"
#include "tests/support/model/Branch.h"
#include "tests/support/model/Lists.h"
#include "tests/support/model/Sets.h"

using namespace probing;
using probe::Branch;
using probe::Lists;
using probe::Sets;
using testing::ElementsAre;

namespace {

/// A container of everything that does something when it is about to be destroyed.
class Dying final : public Containers::Impl {
 public:
  Dying(const Model& model, std::function<void()> told) : Impl(model, {}), told_(std::move(told)) {}
  void aboutToDestroy() override { told_(); }

 private:
  std::function<void()> told_;
};

Containers dying(const Model& model, std::function<void()> told) {
  Transaction transaction = begin(model);
  const Containers result(new Dying(model, std::move(told)));
  result.impl()->notifyCreated();
  transaction.commit();
  return result;
}

/// Does something when it is told of changes, and keeps the properties that were told.
class Told final : public lx::base::ChangeObserver {
 public:
  explicit Told(std::function<void()> act = {}) : act_(std::move(act)) {}

  void changed(const lx::base::ChangeSet& changes) noexcept override {
    for (const auto& each : changes.changes()) {
      for (const unsigned index : each->properties()) {
        properties.push_back(each->element().impl()->getPropertyByIndex(index).getName());
      }
    }
    if (const auto act = std::exchange(act_, {})) act();
  }

  std::vector<std::u16string> properties;

 private:
  std::function<void()> act_;
};

TEST(UndoneKey, IsBackWithItsElementThatWasRenamedInADyingContainerWithoutKeys) {
  const Model model = Model::create();
  const Containers home = Containers::create(model);
  const Thing first = thing(model, u"b"), second = thing(model, u"c");
  home.getByNameMutable().add(first);
  home.getByNameMutable().add(second);
  const Containers end = dying(model, [&] { first.setName(u"z"); });
  undoneThenDone(model, [&] {
    Transaction transaction = begin(model);
    end.getRowMutable().add(first);
    end.destroy();
    transaction.commit();
  });
  EXPECT_THAT(home.byName().keys(), ElementsAre(u"c"));
}

TEST(UndoneKey, IsBackAlsoWithoutAMove) {
  const Model model = Model::create();
  const Thing child = thing(model, u"a");
  const Containers end = dying(model, [&] { child.setName(u"z"); });
  end.getRowMutable().add(child);
  undoneThenDone(model, [&] { end.destroy(); });
  EXPECT_FALSE(child.isAlive());
}

TEST(FinalValues, AreThoseOfSinglePropertiesAndOfListsOfValues) {
  const Model model = Model::create();
  const Thing child = thing(model, u"a");
  const Machine machine = Machine::create(model);
  const Lists lists = Lists::create(model);
  const Sets sets = Sets::create(model);
  const Containers end = dying(model, [&] {
    child.setRemark(std::u16string(u"seen"));
    machine.getSpeedsMutable().add(3);
    lists.getTextsMutable().add(u"seen");
    sets.getTextsMutable().add(u"seen");
    machine.getPartsMutable().add(thing(model, u"part"));
  });
  end.getRowMutable().add(child);
  end.getRowMutable().add(machine);
  end.getMixedMutable().add(lists);
  end.getMixedMutable().add(sets);
  {
    const Transaction open = begin(model);
    end.destroy();
  }
  EXPECT_EQ(child.remark().value_or(u""), u"seen");
  EXPECT_THAT(machine.speeds().values(), ElementsAre(3));
  EXPECT_THAT(lists.texts().values(), ElementsAre(u"seen"));
  EXPECT_THAT(sets.texts().values(), ElementsAre(u"seen"));
  EXPECT_TRUE(machine.parts().empty()) << "what was put in goes with the destruction";
}

TEST(KeyChange, CountsAsOneTransaction) {
  const Model model = Model::create();
  const Containers home = Containers::create(model);
  const Thing child = thing(model, u"a");
  home.getByNameMutable().add(child);
  const std::uint64_t before = transactions(model);
  child.setName(u"b");
  EXPECT_EQ(transactions(model), before + 1);
  Told told;
  model.impl()->addObserver(told);
  child.setName(u"c");
  EXPECT_EQ(transactions(model), before + 2);
  EXPECT_THAT(told.properties, testing::UnorderedElementsAre(u"name"));
  model.impl()->removeObserver(told);
}

TEST(KeyChange, TellsTheMapOnlyIfItsOrderIsAnother) {
  const Model model = Model::create();
  const Containers home = Containers::create(model);
  std::vector<Thing> things;
  for (const char16_t* name : {u"a", u"c", u"e"}) {
    things.push_back(thing(model, name));
    home.getByNameMutable().add(things.back());
  }
  const auto toldOf = [&](const auto& step) {
    Told told;
    model.impl()->addObserver(told);
    Transaction transaction = begin(model);
    step();
    transaction.commit();
    model.impl()->removeObserver(told);
    return told.properties;
  };
  using testing::UnorderedElementsAre;
  EXPECT_THAT(toldOf([&] { things[1].setName(u"d"); }), UnorderedElementsAre(u"name"));
  EXPECT_THAT(toldOf([&] { things[1].setName(u"f"); }), UnorderedElementsAre(u"name", u"byName"));
  EXPECT_THAT(toldOf([&] {
                things[0].setName(u"x");
                things[0].setName(u"y");
                things[0].setName(u"a");
              }),
              testing::IsEmpty());
  EXPECT_THAT(toldOf([&] {  // both change places, twice
                for (int count = 0; count < 2; ++count) {
                  const std::u16string former = things[0].name(), other = things[2].name();
                  things[0].setName(u"between");
                  things[2].setName(former);
                  things[0].setName(other);
                }
              }),
              testing::IsEmpty());
  EXPECT_THAT(toldOf([&] {  // one leaves and comes back, which gives it another node
                home.getRowMutable().add(things[2]);
                home.getByNameMutable().add(things[2]);
              }),
              testing::IsEmpty());
  EXPECT_THAT(toldOf([&] {
                things[0].setName(u"zz");
                home.getRowMutable().add(things[2]);
                home.getByNameMutable().add(things[2]);
              }),
              UnorderedElementsAre(u"name", u"byName"));
}

TEST(EqualValue, IsNoChangeInAFrozenModelEither) {
  const Model model = Model::create();
  const References holder = References::create(model);
  const Containers home = Containers::create(model);
  const Thing child = thing(model, u"a"), target = thing(model);
  home.getByNameMutable().add(child);
  home.setOne(target);
  holder.setOne(target);
  Model::Freezer::freeze(model);
  const std::uint64_t before = transactions(model);
  child.setName(u"a");
  child.setNumber(7);
  holder.setOne(target);
  home.setOne(target);
  EXPECT_EQ(transactions(model), before);
  EXPECT_THROW(child.setName(u"b"), InvalidValue);
  EXPECT_THROW(child.setNumber(8), InvalidValue);
  EXPECT_THROW(holder.setOne(child), InvalidValue);
  EXPECT_THROW(home.setOne(Thing()), InvalidValue);
  const Model::Thawer thawed = Model::Freezer::thaw(model);
  EXPECT_EQ(child.name(), u"a");
}

TEST(Reflection, AsksForAProxyBeforeItAsksForTheTypeAndForTheRightToSet) {
  const Model model = Model::create();
  const Thing child = thing(model, u"a");
  child.impl()->convertToProxy();
  EXPECT_THROW(child.setPropertyValue(u"name", Value(42)), CannotModifyProxy);
  EXPECT_THROW(child.setPropertyValue(u"name", Value(std::u16string())), CannotModifyProxy);
  const References holder = References::create(model);
  holder.impl()->convertToProxy();
  EXPECT_THROW(holder.setPropertyValue(u"fixed", Value(child)), CannotModifyProxy);
  EXPECT_THROW(holder.setPropertyValue(u"row", Value(42)), CannotModifyProxy);
}

TEST(Reflection, NamesAnInheritedPropertyByTheClassThatHasIt) {
  const Model model = Model::create();
  const Machine machine = Machine::create(model);
  EXPECT_EQ(machine.impl()->nameOfProperty(Thing::Impl::NameIndex),
            Thing::metaClass().property(u"name").getQualifiedName());
}

TEST(Reflection, LeavesAMapWithProxiesThatIsGivenItsOwnValue) {
  const Model model = Model::create();
  const Containers home = Containers::create(model);
  const Thing first = thing(model, u"a"), second = thing(model, u"b");
  const Thing proxy = lx::base::createProxy<Thing>(model, identity(1));
  home.getByNameMutable().add(first);
  home.getByNameMutable().add(second);
  home.getByNameMutable().add(proxy);
  const std::uint64_t before = transactions(model);
  for (const Elements& same :
       {Elements{first, second}, Elements{second, first}, Elements{proxy, first, second}}) {
    home.setPropertyValue(u"byName", Value(same));
  }
  EXPECT_EQ(transactions(model), before);
  EXPECT_THAT(home.byName().proxies(), ElementsAre(proxy));
  EXPECT_THROW(home.setPropertyValue(u"byName", Value(Elements{first})), CannotAddNonExistentObject);
  EXPECT_THROW(home.setPropertyValue(u"byName", Value(Elements{first, second, first})), InvalidValue);
  const Thing third = thing(model, u"c");
  home.setPropertyValue(u"byName", Value(Elements{third}));
  EXPECT_THAT(elementsOf(home.byName()), ElementsAre(third));
  EXPECT_FALSE(proxy.isAlive());
}

TEST(OpenTransaction, OutlivesTheNoticeThatBeganItAndIsUndone) {
  const Model model = Model::create();
  const Containers home = Containers::create(model);
  const Thing child = thing(model, u"a");
  std::optional<Transaction> outer;
  std::optional<Transaction> inner;
  std::string before;
  Told told([&] {
    home.getRowMutable().add(thing(model, u"kept"));
    home.getByNameMutable().add(thing(model, u"kept"));
    before = stateOf(model);
    outer.emplace(begin(model));
    home.getRowMutable().add(thing(model, u"undone"));
    home.getByNameMutable().add(thing(model, u"undone"));
    inner.emplace(begin(model));
    child.setNumber(2);
  });
  model.impl()->addObserver(told);
  child.setRemark(std::u16string(u"go on"));
  ASSERT_TRUE(inner && inner->isOpen());
  home.getRowMutable().add(thing(model, u"undone, too"));
  home.getByNameMutable().add(thing(model, u"undone, too"));
  inner.reset();
  outer.reset();
  model.impl()->removeObserver(told);
  EXPECT_EQ(stateOf(model), before);
}

TEST(BuiltElements, EndAsThoseThatWereCreated) {
  const Model model = Model::create();
  const Thing built = Thing::Builder(model).setName(u"a").create();
  Told told;
  model.impl()->addObserver(told);
  built.destroy();
  model.impl()->removeObserver(told);
  EXPECT_FALSE(built.isAlive());
  EXPECT_EQ(model.impl()->counters().notices, 1U);
  EXPECT_EQ(model.impl()->numberOfElements(), 0U);
}

TEST(ElementThatIsReplacedInItsLastHour, GoesWithTheContainerThatIsDestroyed) {
  for (const bool hasHeir : {false, true}) {
    int told = 0;
    {
      const Model model = Model::create();
      const Containers container = Containers::create(model);
      const Containers child = dying(model, [&, container] {
        ++told;
        container.setAny(hasHeir ? ModelElement(thing(model, u"heir")) : ModelElement());
      });
      container.setAny(child);
      const std::string before = stateOf(model);
      {
        const Transaction open = begin(model);
        container.destroy();
        EXPECT_EQ(model.impl()->numberOfElements(), 0U);
      }
      EXPECT_EQ(stateOf(model), before);
      EXPECT_EQ(told, 1);
      container.destroy();
      EXPECT_EQ(model.impl()->numberOfElements(), 0U);
      EXPECT_EQ(told, 2);
    }
    EXPECT_EQ(told, 2) << "the end of the model tells it again";
  }
}

TEST(ElementThatIsReplacedInItsLastHour, IsToldOnceWhenItsModelEnds) {
  int told = 0;
  {
    const Model model = Model::create();
    const Containers container = Containers::create(model);
    Containers::Impl* const impl = container.impl();
    container.setAny(dying(model, [&told, impl] {
      ++told;
      impl->setAny(ModelElement());
    }));
  }
  EXPECT_EQ(told, 1);
}

TEST(ContainersInEachOther, AreDestroyedHoweverDeep) {
  const Model model = Model::create();
  constexpr std::size_t Depth = 200'000;
  Branch outermost = Branch::create(model);
  for (std::size_t count = 1; count < Depth; ++count) {
    const Branch next = Branch::create(model);
    next.getBranchesMutable().add(outermost);
    outermost = next;
  }
  ASSERT_EQ(model.impl()->numberOfElements(), Depth);
  {
    const Transaction open = begin(model);
    outermost.destroy();
    EXPECT_EQ(model.impl()->numberOfElements(), 0U);
  }
  EXPECT_EQ(model.impl()->numberOfElements(), Depth);
  model.destroy();
}

TEST(ConvertToProxy, IsRefusedToAContainerWhileAnElementInItIsDestroyed) {
  const Model model = Model::create();
  const Containers container = Containers::create(model);
  const Containers child = dying(model, [container] { container.impl()->convertToProxy(); });
  container.getMixedMutable().add(child);
  const std::string before = stateOf(model);
  const std::string refusal =
      "InvalidValue(ModelElement.convertToProxy; an element that it contains is being destroyed; convert it "
      "afterwards.)";
  EXPECT_EQ(raised<InvalidValue>([&] { child.destroy(); }), refusal);
  EXPECT_EQ(raised<InvalidValue>([&] { container.impl()->convertToProxy(); }), refusal);
  EXPECT_EQ(stateOf(model), before);
  EXPECT_FALSE(model.impl()->hasOpenTransaction());
}

TEST(Journals, LetGoOfWhatTheyHeldWhenATransactionThatOutlivedItsNoticeHasEnded) {
  const Model model = Model::create();
  const Containers home = Containers::create(model);
  auto held = std::make_shared<int>(0);
  const std::weak_ptr<int> watched = held;
  Containers child = dying(model, [held] {});
  held.reset();
  std::optional<Transaction> open;
  Told told([&] {
    open.emplace(begin(model));
    home.getMixedMutable().add(thing(model));
  });
  model.impl()->addObserver(told);
  {
    Transaction transaction = begin(model);
    home.getMixedMutable().add(child);
    transaction.commit();
  }
  model.impl()->removeObserver(told);
  ASSERT_TRUE(open && open->isOpen());
  open->commit();
  child.destroy();
  child = Containers();
  EXPECT_TRUE(watched.expired());
}

TEST(ReferencesByReflection, RefuseAnElementOfAnotherClassBeforeTheyLookForTwins) {
  const Model model = Model::create();
  const References holder = References::create(model);
  const Thing one = thing(model, u"a"), two = thing(model, u"b");
  holder.getBagMutable().add(one);
  holder.getBagMutable().add(two);
  EXPECT_THROW(holder.setPropertyValue(u"bag", Value(Elements{one, one})), InvalidValue);
  EXPECT_THROW(holder.setPropertyValue(u"bag", Value(Elements{one, ModelElement()})),
               CannotAddNonExistentObject);
  EXPECT_THROW(holder.setPropertyValue(u"bag", Value(Elements{one, holder})), CannotAddIncompatibleTypes);
  EXPECT_THAT(elementsOf(holder.bag()), testing::UnorderedElementsAre(one, two));
}

TEST(DeadProxy, RefusesAsEveryDeadElementDoes) {
  const Model model = Model::create();
  const Thing proxy = lx::base::createProxy<Thing>(model, identity(1));
  const std::string refusal =
      "InvalidValue(probe.Thing.name; the element was destroyed; create another one.)";
  {
    const Transaction open = begin(model);
    proxy.destroy();
    EXPECT_FALSE(proxy.isProxy());
    EXPECT_EQ(raised<InvalidValue>([&] { proxy.setName(u"a"); }), refusal);
  }
  EXPECT_TRUE(proxy.isProxy());
  EXPECT_THROW(proxy.setName(u"a"), CannotModifyProxy);
  proxy.destroy();
  EXPECT_FALSE(proxy.isProxy());
  EXPECT_EQ(raised<InvalidValue>([&] { proxy.setName(u"a"); }), refusal);
}

/// A thing that counts how many were made.
struct Counted final : Thing::Impl {
  Counted(const Model& model, const boost::uuids::uuid& uuid) : Thing::Impl(model, uuid) { ++made; }
  static inline int made = 0;
};
class CountedThing : public Thing {
 public:
  using Impl = Counted;
  explicit CountedThing(Counted* impl) : Thing(impl) {}
  Counted* impl() const noexcept { return static_cast<Counted*>(Thing::impl()); }
};

TEST(FrozenModel, MakesNothingOfANewElement) {
  const Model model = Model::create();
  Model::Freezer::freeze(model);
  EXPECT_THROW(lx::base::detail::createElement<CountedThing>("create", model, {}), InvalidValue);
  EXPECT_EQ(Counted::made, 0);
  const Model::Thawer thawed = Model::Freezer::thaw(model);
  EXPECT_TRUE(lx::base::detail::createElement<CountedThing>("create", model, {}).isAlive());
  EXPECT_EQ(Counted::made, 1);
}

TEST(CopyOfABuilder, HasNoPartInTheCreationThatIsUnderWay) {
  class Copied final : public Thing::Builder {
   public:
    ModelElement doCreate(bool defer, const boost::uuids::uuid& uuid) override {
      copy = std::make_unique<Thing::Builder>(*this);
      return Thing::Builder::doCreate(defer, uuid);
    }
    std::unique_ptr<Thing::Builder> copy;
  };
  const Model model = Model::create();
  Copied builder;
  EXPECT_TRUE(builder.createIn(model).isAlive());
  EXPECT_EQ(raised<InvalidValue>([&] { builder.copy->doCreate(false, {}); }),
            "InvalidValue(probe.Thing.Builder.doCreate; no creation is under way; call create.)");
  EXPECT_TRUE(builder.copy->createIn(model).isAlive());
}

}  // namespace
