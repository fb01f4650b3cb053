#include <set>

#include <gmock/gmock.h>

#include "tests/platform/foundation/Probing.h"

using namespace probing;
using lx::base::ReferenceCollection;
using testing::ElementsAre;

namespace {

Elements rowOf(const References& holder) {
  return elementsOf(holder.row());
}
Elements bagOf(const References& holder) {
  return elementsOf(holder.bag());
}

/// Five things, and a holder whose row and bag have them in this order.
struct Filled {
  Filled() {
    for (const char16_t* name : {u"a", u"b", u"c", u"d", u"e"}) {
      things.push_back(thing(model, name));
      holder.getRowMutable().add(things.back());
      holder.getBagMutable().add(things.back());
      holder.getProxyRowMutable().add(things.back());
      holder.getProxyBagMutable().add(things.back());
    }
  }
  Model model = Model::create();
  References holder = References::create(model);
  std::vector<Thing> things;
};

TEST(ReferenceCollection, IsNotComposite) {
  EXPECT_FALSE(ReferenceCollection::isComposite());
}

TEST(ReferenceRow, KeepsTheOrderOfAddingAndInserting) {
  const Model model = Model::create();
  const References holder = References::create(model);
  const Thing a = thing(model), b = thing(model), c = thing(model);
  auto& row = holder.getRowMutable();
  EXPECT_TRUE(row.empty());
  undoneThenDone(model, [&] { EXPECT_TRUE(row.add(b)); });
  undoneThenDone(model, [&] { EXPECT_TRUE(row.insert(0, a)); });
  undoneThenDone(model, [&] { EXPECT_TRUE(row.insert(2, c)); });
  EXPECT_EQ(rowOf(holder), (Elements{a, b, c}));
  EXPECT_EQ(row.size(), 3U);
  EXPECT_EQ(row.at(1), b);
  EXPECT_TRUE(holder.hasRow());
  EXPECT_FALSE(b.container());
  EXPECT_EQ(b.referrers(), Elements{holder});
}

TEST(ReferenceRow, RaisesBehindItsEnd) {
  Filled filled;
  auto& row = filled.holder.getRowMutable();
  EXPECT_EQ(raised<InvalidValue>([&] { row.at(5); }),
            "InvalidValue(probe.References.row; there is no element at this position.)");
  const Thing other = thing(filled.model);
  const std::string before = stateOf(filled.model);
  EXPECT_EQ(raised<InvalidValue>([&] { row.insert(6, other); }),
            "InvalidValue(probe.References.row; the position lies behind the end; add at the end.)");
  EXPECT_EQ(stateOf(filled.model), before);
}

TEST(ReferenceRow, RemovesFromAnyPositionAndPutsBackThere) {
  for (std::size_t position = 0; position < 5; ++position) {
    Filled filled;
    const Thing removed = filled.things[position];
    undoneThenDone(filled.model, [&] { EXPECT_TRUE(filled.holder.getRowMutable().remove(removed)); });
    EXPECT_EQ(filled.holder.row().size(), 4U);
    EXPECT_FALSE(filled.holder.row().contains(removed));
    EXPECT_TRUE(removed.isAlive());
    EXPECT_FALSE(filled.holder.getRowMutable().remove(removed));
  }
}

TEST(ReferenceBag, AddsFindsAndRemovesEachOnce) {
  const Model model = Model::create();
  const References holder = References::create(model);
  auto& bag = holder.getBagMutable();
  std::vector<Thing> things;
  for (int count = 0; count < 200; ++count) things.push_back(thing(model));
  undoneThenDone(model, [&] {
    for (const Thing& each : things) EXPECT_TRUE(bag.add(each));
  });
  const std::uint64_t begun = transactions(model);
  for (const Thing& each : things) {
    EXPECT_TRUE(bag.contains(each));
    EXPECT_FALSE(bag.add(each));
  }
  EXPECT_EQ(transactions(model), begun) << "what is there already is no change";
  const Elements all = bagOf(holder);
  EXPECT_EQ(all.size(), 200U);
  undoneThenDone(model, [&] {
    for (std::size_t at = 0; at < things.size(); at += 2) EXPECT_TRUE(bag.remove(things[at]));
  });
  for (std::size_t at = 0; at < things.size(); ++at) EXPECT_EQ(bag.contains(things[at]), at % 2 == 1);
  EXPECT_EQ(bag.size(), 100U);
}

TEST(ReferenceBag, HasItsOrderBackWhenManyChangesAreUndone) {
  for (unsigned seed = 1; seed < 30; ++seed) {
    Filled filled;
    auto& bag = filled.holder.getBagMutable();
    std::vector<Thing> others;
    for (int count = 0; count < 5; ++count) others.push_back(thing(filled.model));
    unsigned random = seed;
    const auto draw = [&](unsigned bound) { return (random = random * 1103515245 + 12345) / 65536 % bound; };
    const auto change = [&] {
      const Thing each = draw(2) == 0 ? filled.things[draw(5)] : others[draw(5)];
      draw(2) == 0 ? bag.add(each) : bag.remove(each);
    };
    const std::string before = stateOf(filled.model);
    {
      const Transaction outer = begin(filled.model);
      for (int count = 0; count < 10; ++count) change();
      const std::string between = stateOf(filled.model);
      {
        const Transaction inner = begin(filled.model);
        for (int count = 0; count < 10; ++count) change();
        if (draw(2) == 0) bag.clear();
      }
      EXPECT_EQ(stateOf(filled.model), between);
      Transaction inner = begin(filled.model);
      for (int count = 0; count < 10; ++count) change();
      inner.commit();
    }
    EXPECT_EQ(stateOf(filled.model), before);
  }
}

/// What all four kinds of collections have in common.
template <class F>
void forEachKind(const References& holder, F check) {
  check(holder.getRowMutable(), "row");
  check(holder.getBagMutable(), "bag");
  check(holder.getProxyRowMutable(), "proxyRow");
  check(holder.getProxyBagMutable(), "proxyBag");
}

TEST(ReferenceCollections, HoldEachElementOnce) {
  Filled filled;
  forEachKind(filled.holder, [&](auto& collection, const char* name) {
    const std::uint64_t begun = transactions(filled.model);
    EXPECT_FALSE(collection.add(filled.things[2])) << name;
    EXPECT_EQ(transactions(filled.model), begun) << name;
    EXPECT_EQ(collection.size(), 5U) << name;
  });
}

TEST(ReferenceCollections, EmptyWithoutDestroying) {
  Filled filled;
  forEachKind(filled.holder, [&](auto& collection, const char* name) {
    undoneThenDone(filled.model, [&] { collection.clear(); });
    EXPECT_TRUE(collection.empty()) << name;
    EXPECT_EQ(collection.begin(), collection.end()) << name;
    const std::uint64_t begun = transactions(filled.model);
    collection.clear();
    EXPECT_EQ(transactions(filled.model), begun) << name;
  });
  for (const Thing& each : filled.things) {
    EXPECT_TRUE(each.isAlive());
    EXPECT_TRUE(each.referrers().empty());
  }
}

TEST(ReferenceCollections, RefuseNullDeadAndForeignElements) {
  Filled filled;
  const Model other = Model::create();
  const Thing dead = thing(filled.model), foreign = thing(other);
  dead.destroy();
  const std::string before = stateOf(filled.model);
  forEachKind(filled.holder, [&](auto& collection, const std::string& name) {
    const std::string nonExistent = "CannotAddNonExistentObject(probe.References." + name + ")";
    EXPECT_EQ(raised<CannotAddNonExistentObject>([&] { collection.add(Thing()); }), nonExistent);
    EXPECT_EQ(raised<CannotAddNonExistentObject>([&] { collection.add(dead); }), nonExistent);
    EXPECT_EQ(raised<CannotCreateCrossModelAssociation>([&] { collection.add(foreign); }),
              "CannotCreateCrossModelAssociation(probe.References." + name + ")");
    EXPECT_FALSE(collection.remove(Thing()));
    EXPECT_FALSE(collection.remove(dead));
    EXPECT_FALSE(collection.remove(foreign));
    EXPECT_FALSE(collection.contains(Thing()));
    EXPECT_FALSE(collection.contains(dead));
  });
  EXPECT_EQ(stateOf(filled.model), before);
}

TEST(ReferenceCollections, RefuseChangesOfAProxyAndOfADeadHolder) {
  Filled filled, gone;
  auto& row = filled.holder.getRowMutable();
  auto& bag = filled.holder.getProxyBagMutable();
  const Thing other = thing(filled.model);
  filled.holder.impl()->convertToProxy();
  EXPECT_TRUE(row.empty() && bag.empty()) << "a proxy has no values";
  EXPECT_EQ(raised<CannotModifyProxy>([&] { row.add(other); }), "CannotModifyProxy(probe.References.row)");
  EXPECT_EQ(raised<CannotModifyProxy>([&] { row.insert(0, other); }),
            "CannotModifyProxy(probe.References.row)");
  EXPECT_EQ(raised<CannotModifyProxy>([&] { row.remove(other); }), "CannotModifyProxy(probe.References.row)");
  EXPECT_EQ(raised<CannotModifyProxy>([&] { row.clear(); }), "CannotModifyProxy(probe.References.row)");
  EXPECT_EQ(raised<CannotModifyProxy>([&] { bag.resolveProxy(other); }),
            "CannotModifyProxy(probe.References.proxyBag)");

  auto& dead = gone.holder.getRowMutable();
  gone.holder.destroy();
  EXPECT_EQ(raised<InvalidValue>([&] { dead.add(gone.things[0]); }),
            "InvalidValue(probe.References.row; the element was destroyed; create another one.)");
  EXPECT_TRUE(dead.empty());
  EXPECT_FALSE(dead.contains(gone.things[0]));
  EXPECT_EQ(dead.begin(), dead.end());
}

TEST(ReferenceCollections, LoseAnElementThatIsDestroyedAndHaveItBackInItsPlace) {
  for (std::size_t position = 0; position < 5; ++position) {
    Filled filled;
    undoneThenDone(filled.model, [&] { filled.things[position].destroy(); });
    forEachKind(filled.holder,
                [&](auto& collection, const char* name) { EXPECT_EQ(collection.size(), 4U) << name; });
  }
}

TEST(ReferenceCollections, GoWithTheirHolderAndComeBackWithIt) {
  Filled filled;
  undoneThenDone(filled.model, [&] {
    filled.holder.destroy();
    for (const Thing& each : filled.things) each.destroy();
  });
  EXPECT_EQ(filled.model.impl()->numberOfElements(), 0U);
}

TEST(ReferenceCollections, AreEmptiedWhenTheirHolderBecomesAProxy) {
  Filled filled;
  undoneThenDone(filled.model, [&] { filled.holder.impl()->convertToProxy(); });
  for (const Thing& each : filled.things) EXPECT_TRUE(each.referrers().empty());
}

TEST(ReferenceCollections, OfANewHolderGoWithAnAbandonedTransaction) {
  Filled filled;
  const std::string before = stateOf(filled.model);
  {
    const Transaction open = begin(filled.model);
    const References holder = References::create(filled.model);
    holder.getRowMutable().add(filled.things[0]);
    holder.getBagMutable().add(filled.things[0]);
    holder.setOne(filled.things[0]);
    EXPECT_EQ(filled.things[0].referrers(), (Elements{filled.holder, holder}));
  }
  EXPECT_EQ(stateOf(filled.model), before);
}

TEST(ReferenceCollections, CatchAChangeWhileTheyAreWalked) {
  Filled filled;
  forEachKind(filled.holder, [&](auto& collection, const std::string& name) {
    EXPECT_EQ(raised<InvalidValue>([&] {
                for (const Thing& each : collection) collection.remove(each);
              }),
              "InvalidValue(probe.References." + name +
                  "; the collection changed while it was walked; start again from its beginning.)");
  });
}

TEST(ReferenceCollections, AreReadAndReplacedByReflection) {
  Filled filled;
  const References& holder = filled.holder;
  const std::vector<Thing>& things = filled.things;
  for (const char16_t* name : {u"row", u"bag", u"proxyRow", u"proxyBag"}) {
    const Elements all(things.begin(), things.end());
    EXPECT_EQ(holder.getPropertyValue(name).as<Elements>(), all);
    EXPECT_TRUE(holder.hasPropertyValue(name));
    const std::uint64_t begun = transactions(filled.model);
    holder.setPropertyValue(name, Value(all));
    EXPECT_EQ(transactions(filled.model), begun) << "the same again is no change";
    const Elements next{things[3], thing(filled.model), things[0]};
    undoneThenDone(filled.model, [&] { holder.setPropertyValue(name, Value(next)); });
    EXPECT_EQ(holder.getPropertyValue(name).as<Elements>(), next);
    EXPECT_TRUE(things[1].isAlive());
    holder.setPropertyValue(name, Value(Elements()));
    EXPECT_FALSE(holder.hasPropertyValue(name));
  }
}

TEST(ReferenceCollections, RefuseAListByReflectionAsAWhole) {
  Filled filled;
  const Model other = Model::create();
  const Thing good = thing(filled.model), foreign = thing(other);
  const std::string before = stateOf(filled.model);
  const auto set = [&](const char16_t* name, const Elements& elements) {
    filled.holder.setPropertyValue(name, Value(elements));
  };
  EXPECT_EQ(raised<CannotAddIncompatibleTypes>([&] {
              set(u"row", {good, filled.holder});
            }),
            "CannotAddIncompatibleTypes(probe.References.row; probe.References; probe.Thing)");
  EXPECT_EQ(raised<CannotAddNonExistentObject>([&] {
              set(u"bag", {good, ModelElement()});
            }),
            "CannotAddNonExistentObject(probe.References.bag)");
  EXPECT_EQ(raised<CannotCreateCrossModelAssociation>([&] {
              set(u"row", {good, foreign});
            }),
            "CannotCreateCrossModelAssociation(probe.References.row)");
  EXPECT_EQ(raised<InvalidValue>([&] {
              set(u"bag", {good, good});
            }),
            "InvalidValue(probe.References.bag; the list names an element twice; name it once.)");
  EXPECT_EQ(stateOf(filled.model), before);
}

TEST(ReferenceBag, IsTheSameByReflectionInWhateverOrder) {
  Filled filled;
  Elements turned(filled.things.rbegin(), filled.things.rend());
  const std::uint64_t begun = transactions(filled.model);
  filled.holder.setPropertyValue(u"bag", Value(turned));
  EXPECT_EQ(transactions(filled.model), begun);
  filled.holder.setPropertyValue(u"row", Value(turned));
  EXPECT_NE(transactions(filled.model), begun) << "in a row the order matters";
  EXPECT_EQ(rowOf(filled.holder), turned);
}

// Proxies in collections

TEST(PlainReferenceCollections, RefuseAProxy) {
  const Model model = Model::create();
  const References holder = References::create(model);
  const Thing proxy = lx::base::createProxy<Thing>(model, identity(1));
  EXPECT_EQ(raised<CannotAddNonExistentObject>([&] { holder.getRowMutable().add(proxy); }),
            "CannotAddNonExistentObject(probe.References.row)");
  EXPECT_EQ(raised<CannotAddNonExistentObject>([&] { holder.getBagMutable().add(proxy); }),
            "CannotAddNonExistentObject(probe.References.bag)");
  EXPECT_FALSE(holder.row().containsProxyTo(identity(1)));
}

TEST(ReferenceCollections, LoseOrKeepAnElementThatBecomesAProxy) {
  for (std::size_t position = 0; position < 5; ++position) {
    Filled filled;
    const Thing converted = filled.things[position];
    undoneThenDone(filled.model, [&] { converted.impl()->convertToProxy(); });
    const References& holder = filled.holder;
    EXPECT_EQ(holder.row().size(), 4U);
    EXPECT_EQ(holder.bag().size(), 4U);
    EXPECT_FALSE(holder.row().contains(converted) || holder.bag().contains(converted));
    EXPECT_EQ(holder.proxyRow().at(position), converted);
    EXPECT_TRUE(holder.proxyBag().contains(converted));
    EXPECT_THAT(holder.proxyRow().proxies(), ElementsAre(converted));
    EXPECT_THAT(holder.proxyBag().proxies(), ElementsAre(converted));
    EXPECT_TRUE(holder.proxyRow().containsProxyTo(converted.identifier()));
    EXPECT_TRUE(holder.proxyBag().containsProxyTo(converted.identifier()));
    EXPECT_EQ(converted.referrers(), Elements{holder});
  }
}

TEST(ReferenceCollectionsWithProxies, KnowTheProxiesThatTheyHold) {
  const Model model = Model::create();
  const References holder = References::create(model);
  auto& row = holder.getProxyRowMutable();
  auto& bag = holder.getProxyBagMutable();
  std::vector<Thing> proxies;
  for (std::uint8_t number = 1; number <= 200; ++number) {
    proxies.push_back(lx::base::createProxy<Thing>(model, identity(number)));
  }
  undoneThenDone(model, [&] {
    for (const Thing& each : proxies) row.add(each), bag.add(each);
  });
  for (const Thing& each : proxies) {
    EXPECT_TRUE(row.containsProxyTo(each.identifier()) && bag.containsProxyTo(each.identifier()));
  }
  EXPECT_FALSE(row.containsProxyTo(identity(201)) || bag.containsProxyTo(identity(201)));
  EXPECT_FALSE(row.containsProxyTo({}));
  EXPECT_EQ(row.proxies(), proxies);
  undoneThenDone(model, [&] {
    for (std::size_t at = 0; at < 100; ++at) row.remove(proxies[at]), proxies[at + 100].destroy();
  });
  EXPECT_TRUE(row.empty());
  EXPECT_EQ(bag.size(), 100U);
  EXPECT_TRUE(bag.containsProxyTo(identity(1)));
  EXPECT_FALSE(bag.containsProxyTo(identity(150)) || row.containsProxyTo(identity(1)));
}

TEST(ReferenceCollectionsWithProxies, AnswerByPropertyIndex) {
  const Model model = Model::create();
  const References holder = References::create(model);
  const Thing proxy = lx::base::createProxy<Thing>(model, identity(1));
  const auto contains = [&](const char16_t* name, std::uint8_t number) {
    const unsigned index = References::metaClass().property(name).getIndex();
    return holder.impl()->inverseContainsProxyTo(index, identity(number));
  };
  holder.getProxyBagMutable().add(proxy);
  holder.setOne(proxy);
  EXPECT_TRUE(contains(u"proxyBag", 1) && contains(u"one", 1));
  EXPECT_FALSE(contains(u"proxyBag", 2) || contains(u"one", 2) || contains(u"proxyRow", 1));
  EXPECT_FALSE(contains(u"row", 1) || contains(u"name", 1));
  EXPECT_FALSE(holder.impl()->inverseContainsProxyTo(63, identity(1)));
  holder.destroy();
  EXPECT_FALSE(contains(u"proxyBag", 1) || contains(u"one", 1));
}

}  // namespace
