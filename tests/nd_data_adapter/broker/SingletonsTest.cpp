// The one registry and the one cache of the process: how they come into being and are made again.

#include "nd_data_adapter/model/AdapterCacheV2.h"
#include "nd_data_adapter/model/AdapterManagerV2.h"
#include "nd_data_adapter/model/AdapterRegistryV2.h"
#include "tests/support/AtEachNotice.h"
#include "tests/support/BrokerTest.h"
#include "tests/support/ModelWatch.h"
#include "tests/support/Thrown.h"
#include "tests/support/describe.h"

using namespace nd::data::adapter;
using lx::base::Model;
using lx::base::Transaction;
using support::AtEachNotice;
using support::Lines;
using support::ModelWatch;
using support::ProbeAdapter;
using support::stateOfBroker;

namespace {

using Names = std::vector<std::u16string>;

template <class Element>
class SingletonTest : public support::BrokerTest {};

using BothSingletons = testing::Types<AdapterRegistryV2, AdapterCacheV2>;
TYPED_TEST_SUITE(SingletonTest, BothSingletons);

TYPED_TEST(SingletonTest, IsTheSameElementEachTime) {
  EXPECT_TRUE(TypeParam::getInstance().isAlive());
  EXPECT_EQ(TypeParam::getInstance(), TypeParam::getInstance());
}

TYPED_TEST(SingletonTest, IsAloneInItsModel) {
  const TypeParam element = TypeParam::getInstance();
  EXPECT_EQ(element.getModel().impl()->elements(), std::vector<lx::base::ModelElement>{element});
  EXPECT_FALSE(element.container());
}

TYPED_TEST(SingletonTest, HasARandomIdentity) {
  const TypeParam first = TypeParam::getInstance();
  const boost::uuids::uuid identity = first.identifier();
  EXPECT_FALSE(identity.is_nil());
  first.destroy();
  EXPECT_NE(TypeParam::getInstance().identifier(), identity);
}

TYPED_TEST(SingletonTest, IsMadeAgainEmptyInTheSameModelWhenItIsGone) {
  const TypeParam first = TypeParam::getInstance();
  const Model model = first.getModel();
  first.destroy();
  const TypeParam second = TypeParam::getInstance();
  EXPECT_FALSE(first.isAlive());
  EXPECT_TRUE(second.isAlive());
  EXPECT_NE(second, first);
  EXPECT_EQ(second.getModel(), model);
  EXPECT_EQ(model.impl()->numberOfElements(), 1U);
}

TYPED_TEST(SingletonTest, IsMadeAgainInANewModelWhenItsModelIsGone) {
  const TypeParam first = TypeParam::getInstance();
  const Model model = first.getModel();
  model.destroy();
  EXPECT_FALSE(first.isAlive());
  const TypeParam second = TypeParam::getInstance();
  EXPECT_TRUE(second.isAlive());
  EXPECT_TRUE(second.getModel().isAlive());
  EXPECT_NE(second.getModel(), model);
}

TYPED_TEST(SingletonTest, LivesInAModelThatIsMadeWithTheDefaultFactory) {
  const Model former = TypeParam::getInstance().getModel();  // held, so that it keeps its share
  former.destroy();
  const long before = lx::base::WorkQueueFactory::getDefault().use_count();
  const TypeParam made = TypeParam::getInstance();
  EXPECT_EQ(lx::base::WorkQueueFactory::getDefault().use_count(), before + 1);
}

TYPED_TEST(SingletonTest, IsTheFormerElementAgainWhenItsEndIsUndone) {
  const TypeParam former = TypeParam::getInstance();
  {
    const Transaction abandoned = former.getModel().impl()->beginTransaction(false);
    former.destroy();
    EXPECT_NE(TypeParam::getInstance(), former);
  }
  EXPECT_EQ(TypeParam::getInstance(), former);
  EXPECT_EQ(former.getModel().impl()->numberOfElements(), 1U);
}

TYPED_TEST(SingletonTest, IsMadeWithinATransactionAndGoesWithIt) {
  const Model model = TypeParam::getInstance().getModel();
  TypeParam::getInstance().destroy();
  TypeParam inner;
  {
    const Transaction abandoned = model.impl()->beginTransaction(false);
    inner = TypeParam::getInstance();
    EXPECT_TRUE(inner.isAlive());
  }
  EXPECT_FALSE(inner.isAlive());
  EXPECT_TRUE(TypeParam::getInstance().isAlive());
}

TYPED_TEST(SingletonTest, IsNeverAnElementThatSomebodyElseMadeInItsModel) {
  const TypeParam former = TypeParam::getInstance();
  const TypeParam foreign = TypeParam::create(former.getModel());
  EXPECT_EQ(TypeParam::getInstance(), former);
  former.destroy();
  const TypeParam second = TypeParam::getInstance();
  EXPECT_NE(second, foreign);
  EXPECT_TRUE(second.isAlive());
  EXPECT_EQ(second.getModel(), foreign.getModel());
  EXPECT_EQ(TypeParam::getInstance(), second);
}

TYPED_TEST(SingletonTest, ComesBackBesideAForeignElementWhenItsEndIsUndone) {
  const TypeParam former = TypeParam::getInstance();
  const TypeParam foreign = TypeParam::create(former.getModel());
  {
    const Transaction abandoned = former.getModel().impl()->beginTransaction(false);
    former.destroy();
    const TypeParam inner = TypeParam::getInstance();
    EXPECT_NE(inner, former);
    EXPECT_NE(inner, foreign);
  }
  EXPECT_EQ(TypeParam::getInstance(), former);
}

TYPED_TEST(SingletonTest, ComesBackStepByStepWhenItsEndsAreUndoneOneByOne) {
  const TypeParam first = TypeParam::getInstance();
  const Model model = first.getModel();
  {
    const Transaction outer = model.impl()->beginTransaction(false);
    first.destroy();
    const TypeParam second = TypeParam::getInstance();
    {
      const Transaction inner = model.impl()->beginTransaction(false);
      second.destroy();
      const TypeParam third = TypeParam::getInstance();
      EXPECT_NE(third, first);
      EXPECT_NE(third, second);
    }
    EXPECT_EQ(TypeParam::getInstance(), second);
  }
  EXPECT_EQ(TypeParam::getInstance(), first);
  EXPECT_EQ(model.impl()->numberOfElements(), 1U);
}

TYPED_TEST(SingletonTest, IsTheOneThatAnObserverOfItsMakingGets) {
  TypeParam former = TypeParam::getInstance();
  const Model model = former.getModel();
  former.destroy();
  std::vector<TypeParam> seen;
  const AtEachNotice observer(model, [&] { seen.push_back(TypeParam::getInstance()); });
  const TypeParam made = TypeParam::getInstance();
  EXPECT_EQ(seen, std::vector<TypeParam>{made});
  EXPECT_EQ(model.impl()->numberOfElements(), 1U);
}

TYPED_TEST(SingletonTest, IsGoneAtOnceWhenAnObserverOfItsMakingDestroysItAndIsMadeAgainAtTheNextCall) {
  const TypeParam former = TypeParam::getInstance();
  const Model model = former.getModel();
  former.destroy();
  TypeParam destroyed;
  const AtEachNotice observer(model, [&] {
    if (destroyed) return;
    destroyed = TypeParam::getInstance();
    destroyed.destroy();
  });
  const TypeParam made = TypeParam::getInstance();
  EXPECT_NE(made, former);
  EXPECT_EQ(made, destroyed);
  EXPECT_FALSE(made.isAlive());
  EXPECT_EQ(model.impl()->numberOfElements(), 0U);

  const TypeParam next = TypeParam::getInstance();
  EXPECT_TRUE(next.isAlive());
  EXPECT_NE(next, made);
  EXPECT_EQ(next.getModel(), model);
  EXPECT_EQ(TypeParam::getInstance(), next);
  EXPECT_EQ(model.impl()->numberOfElements(), 1U);
}

class TwoSingletons : public support::BrokerTest {
 protected:
  static AdapterRegistryV2 registry() { return AdapterRegistryV2::getInstance(); }
  static AdapterCacheV2 cache() { return AdapterCacheV2::getInstance(); }
};

TEST_F(TwoSingletons, LiveInModelsOfTheirOwn) {
  EXPECT_NE(registry().getModel(), cache().getModel());
  registry().getModel().destroy();
  EXPECT_TRUE(cache().isAlive());
}

TEST_F(TwoSingletons, LoseTheirContentsApart) {
  registerProbe(u"a");
  AdapterManagerV2::openSource(u"x.test", u"s", {});
  calls();
  registry().destroy();
  EXPECT_EQ(stateOfBroker(), Lines{"open x.test::s: a'1"});
  EXPECT_EQ(calls(), Lines{"a.~"}) << "what was opened goes on";
  registerProbe(u"b");
  cache().destroy();
  EXPECT_EQ(stateOfBroker(), Lines{"registered b: b"});
}

// The end of the registry

TEST_F(TwoSingletons, ReleasePrototypesInTheOrderOfTheirNamesWithoutClosingThem) {
  registerProbe(u"b");
  registerProbe(u"a");
  registry().destroy();
  EXPECT_EQ(calls(), (Lines{"a.~", "b.~"}));
}

TEST_F(TwoSingletons, ReleasePrototypesWhenTheModelOfTheRegistryEndsToo) {
  registerProbe(u"a");
  registry().getModel().destroy();
  EXPECT_EQ(calls(), Lines{"a.~"});
  EXPECT_TRUE(stateOfBroker().empty());
}

TEST_F(TwoSingletons, ReleasePrototypesWhileTheModelIsStillWhole) {
  registerProbe(u"a");
  registerProbe(u"b");
  const AdapterRegistryV2 dying = registry();
  Lines seen;
  log->at("b.~", [&] {
    seen.push_back(dying.isAlive() ? "registry alive" : "registry dead");
    seen.push_back(dying == registry() ? "still the instance" : "another instance");
    for (const CPPAdapterV2Entry& entry : dying.impl()->getCPPRegistry()) {
      seen.push_back((entry.isAlive() ? "entry alive: " : "entry dead: ") +
                     ProbeAdapter::labelOf(entry.adapter()));
    }
  });
  dying.destroy();
  EXPECT_EQ(seen, (Lines{"registry alive", "still the instance", "entry alive: null", "entry alive: null"}));
}

TEST_F(TwoSingletons, LeaveNoEntryOfTheRegistryWithAnAdapter) {
  registerProbe(u"a");
  registerProbe(u"b");
  std::vector<CPPAdapterV2Entry> entries;
  for (const CPPAdapterV2Entry& entry : registry().impl()->getCPPRegistry()) entries.push_back(entry);
  registry().impl()->aboutToDestroy();
  EXPECT_EQ(ProbeAdapter::live(), 0U);
  EXPECT_EQ(registry().impl()->getCPPRegistry().keys(), (Names{u"a", u"b"})) << "the entries stay";
  for (const CPPAdapterV2Entry& entry : entries) {
    EXPECT_TRUE(entry.isAlive());
    EXPECT_EQ(entry.adapter(), nullptr);
  }
}

TEST_F(TwoSingletons, ReleaseThePrototypesOfTheRegistryInOneTransaction) {
  registerProbe(u"a");
  registerProbe(u"b");
  const ModelWatch watch(registry().getModel());
  std::vector<bool> isOpen;
  for (const char* end : {"a.~", "b.~"}) log->at(end, [&] { isOpen.push_back(watch.hasOpenTransaction()); });
  registry().impl()->aboutToDestroy();
  EXPECT_EQ(isOpen, (std::vector<bool>{true, true}));
  EXPECT_EQ(watch.transactions(), 3U) << "the one, and in it one for each change of an entry";
  EXPECT_FALSE(watch.hasOpenTransaction());
}

TEST_F(TwoSingletons, TellTheObserversOfTheRegistryOfItsEndOnce) {
  registerProbe(u"a");
  registerProbe(u"b");
  const ModelWatch watch(registry().getModel());
  registry().destroy();
  ASSERT_EQ(watch.notices().size(), 1U);
  EXPECT_EQ(support::missingIn(watch.notices()[0], {"destroyed nd.data.adapter.AdapterRegistryV2",
                                                    "destroyed nd.data.adapter.CPPAdapterV2Entry",
                                                    "destroyed nd.data.adapter.CPPAdapterV2Entry"}),
            Lines{});
  EXPECT_EQ(watch.notices()[0].size(), 3U);
}

TEST_F(TwoSingletons, ReleaseAPrototypeThatIsRegisteredBehindTheWalk) {
  registerProbe(u"b");
  log->at("b.~", [&] { EXPECT_TRUE(registry().registerCPPAdapter(makeProbe(u"a"))); });
  registry().impl()->aboutToDestroy();
  EXPECT_EQ(log->actionsLeft(), 0U);
  EXPECT_EQ(stateOfBroker(), (Lines{"registered a: null", "registered b: null"}));
  EXPECT_EQ(calls(), (Lines{"b.~", "a.getAdapterName", "a.~"}));
}

TEST_F(TwoSingletons, LeaveAPrototypeToThoseWhoHoldItWhenTheRegistryEnds) {
  const std::shared_ptr<ProbeAdapter> held = registerProbe(u"a");
  registry().destroy();
  EXPECT_TRUE(calls().empty());
  EXPECT_EQ(held.use_count(), 1);
}

TEST_F(TwoSingletons, AnswerThePrototypeThatAsksByNameInItsEnd) {
  registerProbe(u"a");
  bool isKnown = false;
  log->at("a.~", [&] { isKnown = registry().isAdapterRegisteredByName(u"a"); });
  registry().destroy();
  EXPECT_TRUE(isKnown) << "its entry is still there";
}

TEST_F(TwoSingletons, BearAPrototypeThatChangesTheRegistryInItsEnd) {
  for (const char16_t* name : {u"a", u"b", u"c"}) registerProbe(name);
  const AdapterRegistryV2 dying = registry();
  log->at("a.~", [&] {
    EXPECT_TRUE(dying.unregisterCPPAdapter(u"b"));
    EXPECT_TRUE(dying.registerCPPAdapter(makeProbe(u"d")));
  });
  EXPECT_EQ(support::raisedBy([&] { dying.destroy(); }), "nothing");
  EXPECT_FALSE(dying.isAlive());
  EXPECT_EQ(ProbeAdapter::live(), 0U);
}

// What is made within a transaction that is abandoned

TEST_F(TwoSingletons, TakeARegistryThatWasMadeInAnAbandonedTransactionBackWithItsPrototypes) {
  const Model model = registry().getModel();
  registry().destroy();
  AdapterRegistryV2 inner;
  {
    const Transaction abandoned = model.impl()->beginTransaction(false);
    inner = registry();
    registerProbe(u"a");
    EXPECT_EQ(stateOfBroker(), Lines{"registered a: a"});
  }
  EXPECT_EQ(calls(), Lines{"a.~"});
  EXPECT_FALSE(inner.isAlive());
  EXPECT_NE(registry(), inner);
  EXPECT_TRUE(stateOfBroker().empty());
}

TEST_F(TwoSingletons, TakeACacheThatWasMadeInAnAbandonedTransactionBackAndItsAdaptersUnclosed) {
  registerProbe(u"a");
  const Model model = cache().getModel();
  cache().destroy();
  AdapterCacheV2 inner;
  {
    const Transaction abandoned = model.impl()->beginTransaction(false);
    inner = cache();
    EXPECT_TRUE(AdapterManagerV2::openSource(u"x.test", u"s", {}));
    EXPECT_EQ(stateOfBroker(), (Lines{"registered a: a", "open x.test::s: a'1"}));
    calls();
  }
  EXPECT_EQ(calls(), Lines{"a'1.~"});
  EXPECT_FALSE(inner.isAlive());
  EXPECT_EQ(stateOfBroker(), Lines{"registered a: a"});
}

// What is asked of entries without an adapter

/// Asks the registry for all that it knows of "a", and writes the answers down.
Lines answersOf(const AdapterRegistryV2& registry) {
  const auto count = [](const auto& list) { return std::to_string(list.size()); };
  const auto word = [](bool answer) { return std::string(answer ? "yes" : "no"); };
  return {"new: " + ProbeAdapter::labelOf(registry.getNewCPPAdapter(u"a")),
          "prototype: " + ProbeAdapter::labelOf(registry.getCPPAdapterForStaticUse(u"a")),
          "for x.test: " + count(registry.getCPPAdapterStaticForSource(u"x.test")),
          "by extension: " + word(registry.isAdapterRegisteredByExtension(u".test")),
          "names: " + count(registry.getAllAdapterNames()),
          "to show: " + count(registry.getDisplayList()),
          "by name: " + word(registry.isAdapterRegisteredByName(u"a"))};
}

const Lines& answersWithoutAdapters() {
  static const Lines answers{"new: null", "prototype: null", "for x.test: 0", "by extension: no",
                             "names: 0",  "to show: 0",      "by name: yes"};
  return answers;
}

TEST_F(TwoSingletons, AnswerThePrototypeThatAsksForTheOthersInItsEnd) {
  registerProbe(u"a");
  registerProbe(u"b");
  Lines answers;
  log->at("b.~", [&] { answers = answersOf(registry()); });
  registry().destroy();
  EXPECT_EQ(answers, answersWithoutAdapters());
}

TEST_F(TwoSingletons, AnswerWhenTheEndOfTheRegistryWasUndone) {
  registerProbe(u"a");
  const AdapterRegistryV2 kept = registry();
  {
    const Transaction abandoned = kept.getModel().impl()->beginTransaction(false);
    kept.destroy();
  }
  ASSERT_TRUE(kept.isAlive());
  EXPECT_EQ(answersOf(kept), answersWithoutAdapters());
  EXPECT_EQ(calls(), Lines{"a.~"});
}

TEST_F(TwoSingletons, ComeBackWithTheirEntriesAndWithoutAdaptersWhenTheEndOfTheRegistryIsUndone) {
  registerProbe(u"a");
  const AdapterRegistryV2 kept = registry();
  {
    const Transaction abandoned = kept.getModel().impl()->beginTransaction(false);
    kept.destroy();
    EXPECT_FALSE(kept.isAlive());
  }
  EXPECT_TRUE(kept.isAlive());
  EXPECT_EQ(calls(), Lines{"a.~"});
  EXPECT_EQ(stateOfBroker(), Lines{"registered a: null"});
}

TEST_F(TwoSingletons, ComeBackWithoutAPrototypeThatAnotherUnregisteredInItsEnd) {
  registerProbe(u"a");
  registerProbe(u"b");
  const AdapterRegistryV2 kept = registry();
  log->at("a.~", [&] { EXPECT_TRUE(kept.unregisterCPPAdapter(u"b")); });
  {
    const Transaction abandoned = kept.getModel().impl()->beginTransaction(false);
    kept.destroy();
  }
  EXPECT_EQ(log->actionsLeft(), 0U);
  EXPECT_EQ(calls(), (Lines{"a.~", "b.~"}));
  EXPECT_EQ(stateOfBroker(), (Lines{"registered a: null", "registered b: null"}));
}

}  // namespace
