// The end of the cache: the only place where adapters are closed.

#include <stdexcept>

#include "nd_data_adapter/model/AdapterCacheV2.h"
#include "nd_data_adapter/model/AdapterManagerV2.h"
#include "tests/support/BrokerTest.h"
#include "tests/support/ModelWatch.h"
#include "tests/support/Thrown.h"
#include "tests/support/describe.h"

using namespace nd::data::adapter;
using lx::base::Model;
using lx::base::Transaction;
using support::everyKindOfException;
using support::isLeftBy;
using support::Lines;
using support::ModelWatch;
using support::stateOfBroker;
using support::Thrown;

namespace {

using Names = std::vector<std::u16string>;

class ClosingTheCache : public support::BrokerTest {
 protected:
  void store(const std::u16string& qualifier) const {
    EXPECT_TRUE(cache.addCPPAdapterToCache(makeProbe(qualifier), qualifier));
  }

  CPPAdapterV2Entry entryOf(const std::u16string& qualifier) const {
    return cache.impl()->getCPPCache().find(qualifier);
  }

  const AdapterCacheV2 cache = AdapterCacheV2::getInstance();
  const Model model = cache.getModel();
};

TEST_F(ClosingTheCache, ClosesEachAdapterOnceInTheOrderOfTheQualifiersAndEndsItBeforeTheNextIsClosed) {
  store(u"q");
  store(u"p");
  cache.destroy();
  EXPECT_EQ(calls(), (Lines{"p.close", "p.~", "q.close", "q.~"}));
  EXPECT_FALSE(cache.isAlive());
}

TEST_F(ClosingTheCache, ClosesAdaptersWhenItsModelEndsToo) {
  store(u"q");
  store(u"p");
  model.destroy();
  EXPECT_EQ(calls(), (Lines{"p.close", "p.~", "q.close", "q.~"}));
}

TEST_F(ClosingTheCache, ClosesAdaptersAlsoWhenSomebodyObservesTheModel) {
  store(u"q");
  store(u"p");
  const ModelWatch watch(model);
  cache.destroy();
  EXPECT_EQ(calls(), (Lines{"p.close", "p.~", "q.close", "q.~"}));
  const std::string entry = "destroyed nd.data.adapter.CPPAdapterV2Entry";
  EXPECT_EQ(watch.notices(),
            (std::vector<Lines>{{"destroyed nd.data.adapter.AdapterCacheV2", entry, entry}}));
}

TEST_F(ClosingTheCache, ClosesAnAdapterForEachOfItsQualifiersAndEndsItOnce) {
  const std::shared_ptr<CPPAdapterV2> probe = makeProbe(u"a");
  for (const char16_t* qualifier : {u"p", u"q"}) EXPECT_TRUE(cache.addCPPAdapterToCache(probe, qualifier));
  store(u"r");
  EXPECT_EQ(probe.use_count(), 3);
  cache.destroy();
  EXPECT_EQ(calls(), (Lines{"a.close", "a.close", "r.close", "r.~"}));
  EXPECT_EQ(probe.use_count(), 1);
}

TEST_F(ClosingTheCache, EndsAnAdapterOfTwoQualifiersBehindItsSecondClose) {
  {
    const std::shared_ptr<CPPAdapterV2> probe = makeProbe(u"a");
    for (const char16_t* qualifier : {u"p", u"r"}) EXPECT_TRUE(cache.addCPPAdapterToCache(probe, qualifier));
  }
  store(u"q");
  cache.destroy();
  EXPECT_EQ(calls(), (Lines{"a.close", "q.close", "q.~", "a.close", "a.~"}));
}

TEST_F(ClosingTheCache, DoesNotCloseWhatWasRemovedBefore) {
  store(u"p");
  store(u"q");
  cache.removeCPPAdapterFromCache(u"p");
  cache.destroy();
  EXPECT_EQ(calls(), (Lines{"p.~", "q.close", "q.~"}));
}

TEST_F(ClosingTheCache, ClosesAnAdapterThatAClientHoldsAndLeavesItToTheClient) {
  store(u"p");
  const std::shared_ptr<CPPAdapterV2> held = cache.getCPPAdapter(u"p");
  cache.destroy();
  EXPECT_EQ(calls(), Lines{"p.close"});
  EXPECT_EQ(held.use_count(), 1);
}

TEST_F(ClosingTheCache, ClosesWhileTheModelIsWhole) {
  store(u"p");
  store(u"q");
  Lines seen;
  log->at("q.close", [&] {
    seen.push_back(cache.isAlive() ? "alive" : "dead");
    seen.push_back(model.impl()->hasOpenTransaction() ? "in a transaction" : "outside any transaction");
    for (std::string& line : stateOfBroker()) seen.push_back(std::move(line));
  });
  cache.destroy();
  EXPECT_EQ(seen, (Lines{"alive", "in a transaction", "open p: null", "open q: q"}));
}

TEST_F(ClosingTheCache, LeavesItsEntriesWithoutAdapters) {
  store(u"p");
  store(u"q");
  cache.impl()->aboutToDestroy();
  EXPECT_EQ(stateOfBroker(), (Lines{"open p: null", "open q: null"}));
  EXPECT_EQ(calls(), (Lines{"p.close", "p.~", "q.close", "q.~"})) << "each ends before the next is closed";
}

TEST_F(ClosingTheCache, LeavesEarlierEntriesEmptyAndLaterOnesWholeWhenACloseThrowsInAnEndThatIsCalledByHand) {
  store(u"p");
  store(u"q");
  store(u"r");
  log->throwAt("q.close", std::make_exception_ptr(std::runtime_error("the source is offline")));
  EXPECT_THROW(cache.impl()->aboutToDestroy(), std::runtime_error);
  EXPECT_EQ(calls(), (Lines{"p.close", "p.~", "q.close"}));
  EXPECT_EQ(stateOfBroker(), (Lines{"open p: null", "open q: q", "open r: r"}));
  EXPECT_FALSE(model.impl()->hasOpenTransaction());
  cache.destroy();
  EXPECT_EQ(calls(), (Lines{"q.close", "q.~", "r.close", "r.~"})) << "p is not closed again";
}

TEST_F(ClosingTheCache, PassesOverEntriesWithoutAnAdapter) {
  store(u"p");
  store(u"q");
  cache.impl()->getCPPCache().find(u"p").setAdapter(nullptr);
  calls();
  cache.destroy();
  EXPECT_EQ(calls(), (Lines{"q.close", "q.~"}));
}

// A close that throws

TEST_F(ClosingTheCache, LetsWhatACloseThrowsPassAndStaysAlive) {
  for (const Thrown& thrown : everyKindOfException()) {
    SCOPED_TRACE(thrown.name);
    for (const char16_t* qualifier : {u"p", u"q", u"r"}) store(qualifier);
    log->throwAt("q.close", thrown.object);

    EXPECT_TRUE(isLeftBy(thrown.object, [&] { cache.destroy(); }));

    EXPECT_EQ(calls(), (Lines{"p.close", "p.~", "q.close"}));
    EXPECT_TRUE(cache.isAlive());
    EXPECT_EQ(AdapterCacheV2::getInstance(), cache);
    EXPECT_EQ(stateOfBroker(), (Lines{"open p: null", "open q: q", "open r: r"}));
    EXPECT_FALSE(model.impl()->hasOpenTransaction());
    for (const char16_t* qualifier : {u"p", u"q", u"r"})
      EXPECT_TRUE(cache.removeCPPAdapterFromCache(qualifier));
    calls();
  }
}

TEST_F(ClosingTheCache, LetsWhatACloseThrowsPassWhenItsModelIsDestroyed) {
  for (const Thrown& thrown : everyKindOfException()) {
    SCOPED_TRACE(thrown.name);
    for (const char16_t* qualifier : {u"p", u"q"}) store(qualifier);
    log->throwAt("p.close", thrown.object);
    EXPECT_TRUE(isLeftBy(thrown.object, [&] { model.destroy(); }));
    EXPECT_TRUE(model.isAlive());
    EXPECT_TRUE(cache.isAlive());
    EXPECT_FALSE(model.impl()->hasOpenTransaction());
    EXPECT_EQ(stateOfBroker(), (Lines{"open p: p", "open q: q"}));
    for (const char16_t* qualifier : {u"p", u"q"}) EXPECT_TRUE(cache.removeCPPAdapterFromCache(qualifier));
    calls();
  }
}

TEST_F(ClosingTheCache, GoesOnAtTheNextDestructionWhereACloseThatThrewHadStoppedIt) {
  for (const char16_t* qualifier : {u"p", u"q", u"r"}) store(qualifier);
  log->throwAt("q.close", std::make_exception_ptr(1));
  EXPECT_THROW(cache.destroy(), int);
  calls();
  cache.destroy();
  EXPECT_EQ(calls(), (Lines{"q.close", "q.~", "r.close", "r.~"}));
  EXPECT_FALSE(cache.isAlive());
}

TEST_F(ClosingTheCache, WorksOnAfterACloseThatThrew) {
  store(u"p");
  log->throwAt("p.close", std::make_exception_ptr(1));
  EXPECT_THROW(cache.destroy(), int);
  store(u"q");
  EXPECT_EQ(cache.getAllAdapterQualifiers(), (Names{u"p", u"q"}));
  EXPECT_TRUE(cache.removeCPPAdapterFromCache(u"p"));
}

TEST_F(ClosingTheCache, LeavesItselfToTheTransactionAroundItWhenACloseThrowsAndThatIsAbandoned) {
  for (const char16_t* qualifier : {u"p", u"q", u"r"}) store(qualifier);
  const std::exception_ptr thrown = std::make_exception_ptr(std::runtime_error("the source is offline"));
  log->throwAt("q.close", thrown);
  {
    const Transaction abandoned = model.impl()->beginTransaction(false);
    store(u"z");
    EXPECT_TRUE(isLeftBy(thrown, [&] { cache.destroy(); }));
    EXPECT_TRUE(cache.isAlive());
    EXPECT_EQ(stateOfBroker(), (Lines{"open p: null", "open q: q", "open r: r", "open z: z"}));
    EXPECT_TRUE(model.impl()->hasOpenTransaction()) << "the outer one is not ended";
  }
  EXPECT_EQ(calls(), (Lines{"p.close", "p.~", "q.close", "z.~"}));
  EXPECT_EQ(stateOfBroker(), (Lines{"open p: null", "open q: q", "open r: r"})) << "what is closed stays so";
  EXPECT_FALSE(model.impl()->hasOpenTransaction());
}

TEST_F(ClosingTheCache, LeavesItselfToTheTransactionAroundItWhenACloseThrowsAndThatIsCommitted) {
  for (const char16_t* qualifier : {u"p", u"q", u"r"}) store(qualifier);
  const std::exception_ptr thrown = std::make_exception_ptr(std::runtime_error("the source is offline"));
  log->throwAt("q.close", thrown);
  const ModelWatch watch(model);
  Transaction outer = model.impl()->beginTransaction(false);
  store(u"z");
  EXPECT_TRUE(isLeftBy(thrown, [&] { cache.destroy(); }));
  outer.commit();
  EXPECT_EQ(calls(), (Lines{"p.close", "p.~", "q.close"}));
  EXPECT_EQ(stateOfBroker(), (Lines{"open p: null", "open q: q", "open r: r", "open z: z"}));
  EXPECT_EQ(watch.notices(), (std::vector<Lines>{{"created nd.data.adapter.CPPAdapterV2Entry",
                                                  "changed nd.data.adapter.AdapterCacheV2.CPPCache"}}));
  cache.destroy();
  EXPECT_EQ(calls(), (Lines{"q.close", "q.~", "r.close", "r.~", "z.close", "z.~"}));
}

// Undoing

TEST_F(ClosingTheCache, ComesBackWithItsEntriesAndWithoutAdaptersWhenItsEndIsUndone) {
  store(u"p");
  store(u"q");
  {
    const Transaction abandoned = model.impl()->beginTransaction(false);
    cache.destroy();
    EXPECT_EQ(calls(), (Lines{"p.close", "p.~", "q.close", "q.~"})) << "final at once";
  }
  EXPECT_TRUE(cache.isAlive());
  EXPECT_EQ(stateOfBroker(), (Lines{"open p: null", "open q: null"}));
  EXPECT_EQ(cache.getCPPAdapter(u"p"), nullptr);
  EXPECT_TRUE(cache.removeCPPAdapterFromCache(u"p"));
  cache.destroy();
  EXPECT_TRUE(calls().empty()) << "nothing is closed twice";
}

// Adapters that change the cache while they are closed

TEST_F(ClosingTheCache, DoesNotTouchAnEntryThatAnotherAdapterClosesMeanwhile) {
  for (const char16_t* qualifier : {u"p", u"q", u"r"}) store(qualifier);
  log->at("p.close", [&] { EXPECT_TRUE(cache.removeCPPAdapterFromCache(u"q")); });
  cache.destroy();
  EXPECT_EQ(calls(), (Lines{"p.close", "q.~", "p.~", "r.close", "r.~"}));
}

TEST_F(ClosingTheCache, ClosesAGreaterQualifierThatAnAdapterOpensMeanwhile) {
  store(u"p");
  log->at("p.close", [&] {
    store(u"z");
    store(u"a");
  });
  cache.destroy();
  EXPECT_EQ(calls(), (Lines{"p.close", "p.~", "z.close", "z.~", "a.~"}))
      << "what is behind the walk is not closed";
}

TEST_F(ClosingTheCache, GoesOnBehindAnAdapterThatClosesItsOwnSource) {
  store(u"p");
  store(u"q");
  log->at("p.close", [&] { EXPECT_TRUE(cache.removeCPPAdapterFromCache(u"p")); });
  cache.destroy();
  EXPECT_EQ(calls(), (Lines{"p.close", "p.~", "q.close", "q.~"}));
}

/// An adapter that gives its own entry away while it is closed, past the cache's operations.
class GivingAnEntryAway : public ClosingTheCache {
 protected:
  GivingAnEntryAway() {
    store(u"p");
    store(u"q");
    entry = entryOf(u"p");
  }

  void expectTheWalkToGoOn() {
    EXPECT_EQ(support::raisedBy([&] { cache.destroy(); }), "nothing");
    EXPECT_EQ(log->actionsLeft(), 0U);
    EXPECT_EQ(calls(), (Lines{"p.close", "q.close", "q.~", "p.~"})) << "until then its entry may come back";
    EXPECT_FALSE(cache.isAlive());
    EXPECT_FALSE(entry.isAlive());
  }

  void expectToBeClosedAgainAfterAnUndoneEnd() {
    {
      const Transaction abandoned = model.impl()->beginTransaction(false);
      cache.destroy();
      EXPECT_FALSE(cache.isAlive());
      EXPECT_EQ(calls(), (Lines{"p.close", "q.close", "q.~"}));
    }
    EXPECT_TRUE(cache.isAlive());
    EXPECT_FALSE(entry.isProxy());
    EXPECT_EQ(entryOf(u"p"), entry);
    EXPECT_EQ(stateOfBroker(), (Lines{"open p: p", "open q: null"})) << "the adapter comes with its entry";
    EXPECT_EQ(calls(), Lines{});
    cache.destroy();
    EXPECT_EQ(calls(), (Lines{"p.close", "p.~"}));
  }

  CPPAdapterV2Entry entry;
};

TEST_F(GivingAnEntryAway, AsAProxyKeepsTheAdapterUntilAllAreClosed) {
  log->at("p.close", [&] { entry.impl()->convertToProxy(); });
  expectTheWalkToGoOn();
}

TEST_F(GivingAnEntryAway, ByDestroyingItKeepsTheAdapterUntilAllAreClosed) {
  log->at("p.close", [&] { entry.destroy(); });
  expectTheWalkToGoOn();
}

TEST_F(GivingAnEntryAway, AsAProxyInAnEndThatIsUndoneClosesTheAdapterAgainAtTheNext) {
  log->at("p.close", [&] { entry.impl()->convertToProxy(); });
  expectToBeClosedAgainAfterAnUndoneEnd();
}

TEST_F(GivingAnEntryAway, ByDestroyingItInAnEndThatIsUndoneClosesTheAdapterAgainAtTheNext) {
  log->at("p.close", [&] { entry.destroy(); });
  expectToBeClosedAgainAfterAnUndoneEnd();
}

TEST_F(ClosingTheCache, DoesNotCloseAgainAnAdapterThatGivesItsEntryAGreaterQualifier) {
  store(u"p");
  store(u"q");
  log->at("p.close", [&] { entryOf(u"p").setName(u"z"); });
  cache.destroy();
  EXPECT_EQ(calls(), (Lines{"p.close", "p.~", "q.close", "q.~"}));
}

TEST_F(ClosingTheCache, ClosesAnAdapterWhoseEntryGetsAGreaterQualifierInItsTurn) {
  for (const char16_t* qualifier : {u"p", u"q", u"r"}) store(qualifier);
  log->at("p.close", [&] { entryOf(u"q").setName(u"z"); });
  cache.destroy();
  EXPECT_EQ(calls(), (Lines{"p.close", "p.~", "r.close", "r.~", "q.close", "q.~"}));
}

TEST_F(ClosingTheCache, DoesNotCloseAnAdapterWhoseEntryGetsAQualifierBehindTheWalk) {
  for (const char16_t* qualifier : {u"p", u"q", u"r"}) store(qualifier);
  log->at("p.close", [&] { entryOf(u"q").setName(u"a"); });
  cache.destroy();
  EXPECT_EQ(calls(), (Lines{"p.close", "p.~", "r.close", "r.~", "q.~"}));
}

TEST_F(ClosingTheCache, LetsAnAdapterGoUnclosedThatTakesThePlaceOfTheOneThatIsClosed) {
  store(u"p");
  store(u"q");
  log->at("p.close", [&] { entryOf(u"p").setAdapter(makeProbe(u"n")); });
  cache.destroy();
  EXPECT_EQ(calls(), (Lines{"p.close", "n.~", "p.~", "q.close", "q.~"}));
}

TEST_F(ClosingTheCache, ClosesTheAdapterThatTakesThePlaceOfALaterOne) {
  store(u"p");
  store(u"q");
  log->at("p.close", [&] { entryOf(u"q").setAdapter(makeProbe(u"n")); });
  cache.destroy();
  EXPECT_EQ(calls(), (Lines{"p.close", "q.~", "p.~", "n.close", "n.~"}));
}

TEST_F(ClosingTheCache, LeavesAnEntryAsItIsThatItsAdapterMovesElsewhere) {
  store(u"p");
  store(u"q");
  const AdapterCacheV2 other = AdapterCacheV2::create(model);
  const CPPAdapterV2Entry entry = entryOf(u"p");
  log->at("p.close", [&] { other.impl()->getCPPCacheMutable().add(entry); });
  cache.destroy();
  EXPECT_EQ(calls(), (Lines{"p.close", "q.close", "q.~"}));
  EXPECT_TRUE(entry.isAlive());
  EXPECT_EQ(support::ProbeAdapter::labelOf(other.getCPPAdapter(u"p")), "p");
}

TEST_F(ClosingTheCache, IsDestroyedOnceWhenAnAdapterDestroysItAgain) {
  store(u"p");
  store(u"q");
  log->at("p.close", [&] { cache.destroy(); });
  cache.destroy();
  EXPECT_EQ(calls(), (Lines{"p.close", "p.~", "q.close", "q.~"}));
  EXPECT_FALSE(cache.isAlive());
}

TEST_F(ClosingTheCache, IsStillTheInstanceForAnAdapterThatIsClosed) {
  store(u"p");
  AdapterCacheV2 seen;
  log->at("p.close", [&] { seen = AdapterCacheV2::getInstance(); });
  cache.destroy();
  EXPECT_EQ(seen, cache);
}

}  // namespace
