#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "nd_data_adapter/model/AdapterCacheV2.h"
#include "platform/foundation/CreateElement.h"
#include "platform/foundation/meta/Meta.h"
#include "tests/nd_data_adapter/broker/ResolvedProxy.h"
#include "tests/support/AtEachNotice.h"
#include "tests/support/BrokerTest.h"
#include "tests/support/ModelWatch.h"
#include "tests/support/Thrown.h"
#include "tests/support/describe.h"

using namespace nd::data::adapter;
using lx::base::createProxy;
using lx::base::Model;
using lx::base::Transaction;
using lx::base::Value;
using support::AtEachNotice;
using support::expectResolvedProxy;
using support::Lines;
using support::ModelWatch;
using support::ProbeAdapter;
using support::raisedBy;
using support::someIdentity;
using support::stateOfBroker;
using testing::ElementsAre;

namespace {

using Names = std::vector<std::u16string>;

class AdapterCacheV2Test : public support::BrokerTest {
 protected:
  /// Stores a new probe under a qualifier, and nobody else holds it.
  void store(const std::u16string& qualifier, const std::u16string& name) const {
    EXPECT_TRUE(cache.addCPPAdapterToCache(makeProbe(name), qualifier));
  }

  const AdapterCacheV2 cache = AdapterCacheV2::getInstance();
  const Model model = cache.getModel();
};

// Adding

TEST_F(AdapterCacheV2Test, StoresAnAdapterUnderItsQualifierWithoutAskingIt) {
  const std::shared_ptr<ProbeAdapter> probe = makeProbe(u"a");
  EXPECT_TRUE(cache.addCPPAdapterToCache(probe, u"x.test::s"));
  EXPECT_EQ(cache.getCPPAdapter(u"x.test::s"), probe);
  EXPECT_TRUE(calls().empty());
  EXPECT_EQ(probe.use_count(), 2);
}

TEST_F(AdapterCacheV2Test, AddsInOneTransactionThatItsObserversHearOfOnce) {
  const ModelWatch watch(model);
  store(u"q", u"a");
  EXPECT_EQ(watch.notices(), (std::vector<Lines>{{"created nd.data.adapter.CPPAdapterV2Entry",
                                                  "changed nd.data.adapter.AdapterCacheV2.CPPCache"}}));
  EXPECT_FALSE(watch.hasOpenTransaction());
}

TEST_F(AdapterCacheV2Test, MakesAnEntryWithTheQualifierAsItsName) {
  store(u"q", u"a");
  const CPPAdapterV2Entry entry = cache.impl()->getCPPCache().find(u"q");
  EXPECT_EQ(entry.adapterName(), u"q");
  EXPECT_EQ(entry.container(), cache);
  EXPECT_FALSE(entry.identifier().is_nil());
}

TEST_F(AdapterCacheV2Test, KeepsTheFirstAdapterOfAQualifier) {
  store(u"q", u"a");
  const std::shared_ptr<CPPAdapterV2> first = cache.getCPPAdapter(u"q");
  const std::shared_ptr<ProbeAdapter> second = makeProbe(u"b");
  const ModelWatch watch(model);
  EXPECT_FALSE(cache.addCPPAdapterToCache(second, u"q"));
  EXPECT_EQ(cache.getCPPAdapter(u"q"), first);
  EXPECT_EQ(stateOfBroker(), Lines{"open q: a"});
  EXPECT_EQ(second.use_count(), 1);
  EXPECT_EQ(watch.transactions(), 0U);
}

TEST_F(AdapterCacheV2Test, RefusesANullPointerUnderAFreeAndUnderATakenQualifier) {
  store(u"q", u"a");
  const ModelWatch watch(model);
  EXPECT_FALSE(cache.addCPPAdapterToCache(nullptr, u"free"));
  EXPECT_FALSE(cache.addCPPAdapterToCache(nullptr, u"q"));
  EXPECT_EQ(watch.transactions(), 0U);
  EXPECT_EQ(stateOfBroker(), Lines{"open q: a"});
}

TEST_F(AdapterCacheV2Test, TakesOneAdapterUnderTwoQualifiers) {
  const std::shared_ptr<ProbeAdapter> probe = makeProbe(u"a");
  EXPECT_TRUE(cache.addCPPAdapterToCache(probe, u"q"));
  EXPECT_TRUE(cache.addCPPAdapterToCache(probe, u"p"));
  EXPECT_EQ(probe.use_count(), 3);
}

TEST_F(AdapterCacheV2Test, TakesAnyTextAsAQualifier) {
  const Names qualifiers{u"", std::u16string(u"a\0b", 3), u"A", u"a", std::u16string(1, char16_t{0xDC00})};
  for (const std::u16string& qualifier : qualifiers) store(qualifier, u"a");
  for (const std::u16string& qualifier : qualifiers) EXPECT_NE(cache.getCPPAdapter(qualifier), nullptr);
}

// Removing

TEST_F(AdapterCacheV2Test, RemovesAQualifierOnceAndDoesNotCloseItsAdapter) {
  store(u"q", u"a");
  EXPECT_TRUE(cache.removeCPPAdapterFromCache(u"q"));
  EXPECT_EQ(calls(), Lines{"a.~"});
  EXPECT_FALSE(cache.removeCPPAdapterFromCache(u"q"));
  EXPECT_TRUE(stateOfBroker().empty());
}

TEST_F(AdapterCacheV2Test, RemovesInOneTransactionThatItsObserversHearOfOnce) {
  store(u"q", u"a");
  const ModelWatch watch(model);
  cache.removeCPPAdapterFromCache(u"q");
  EXPECT_EQ(watch.notices(), (std::vector<Lines>{{"destroyed nd.data.adapter.CPPAdapterV2Entry",
                                                  "changed nd.data.adapter.AdapterCacheV2.CPPCache"}}));
}

TEST_F(AdapterCacheV2Test, DoesNotRemoveAnUnknownQualifier) {
  store(u"q", u"a");
  const ModelWatch watch(model);
  EXPECT_FALSE(cache.removeCPPAdapterFromCache(u"Q"));
  EXPECT_FALSE(cache.removeCPPAdapterFromCache(u""));
  EXPECT_EQ(watch.transactions(), 0U);
  EXPECT_EQ(stateOfBroker(), Lines{"open q: a"});
}

TEST_F(AdapterCacheV2Test, LeavesARemovedAdapterToAClientThatHoldsIt) {
  store(u"q", u"a");
  const std::shared_ptr<CPPAdapterV2> held = cache.getCPPAdapter(u"q");
  EXPECT_TRUE(cache.removeCPPAdapterFromCache(u"q"));
  EXPECT_TRUE(calls().empty());
  EXPECT_TRUE(held->open(u"x.test"));
  EXPECT_EQ(calls(), Lines{"a.open(x.test)"});
}

TEST_F(AdapterCacheV2Test, EndsARemovedAdapterWhenItsEntryIsGoneAndNoTransactionIsOpen) {
  store(u"q", u"a");
  const CPPAdapterV2Entry entry = cache.impl()->getCPPCache().find(u"q");
  bool wasThere = true;
  bool wasOpen = true;
  log->at("a.~", [&] {
    wasThere = entry.isAlive() || cache.getCPPAdapter(u"q") != nullptr;
    wasOpen = model.impl()->hasOpenTransaction();
  });
  EXPECT_TRUE(cache.removeCPPAdapterFromCache(u"q"));
  EXPECT_EQ(log->actionsLeft(), 0U);
  EXPECT_FALSE(wasThere);
  EXPECT_FALSE(wasOpen);
}

TEST_F(AdapterCacheV2Test, MayBeCalledByTheEndOfAnAdapterThatIsRemoved) {
  store(u"p", u"a");
  store(u"q", u"b");
  log->at("a.~", [&] {
    cache.removeCPPAdapterFromCache(u"q");
    store(u"p", u"c");
  });
  EXPECT_TRUE(cache.removeCPPAdapterFromCache(u"p"));
  EXPECT_EQ(calls(), (Lines{"a.~", "b.~"}));
  EXPECT_EQ(stateOfBroker(), Lines{"open p: c"});
}

TEST_F(AdapterCacheV2Test, BringsARemovedAdapterBackWithTheTransactionAroundIt) {
  store(u"q", u"a");
  {
    const Transaction abandoned = model.impl()->beginTransaction(false);
    EXPECT_TRUE(cache.removeCPPAdapterFromCache(u"q"));
    EXPECT_EQ(cache.getCPPAdapter(u"q"), nullptr);
  }
  EXPECT_EQ(stateOfBroker(), Lines{"open q: a"});
  EXPECT_TRUE(calls().empty());
}

TEST_F(AdapterCacheV2Test, EndsAnAddedAdapterUnclosedWithTheTransactionAroundIt) {
  {
    const Transaction abandoned = model.impl()->beginTransaction(false);
    store(u"q", u"a");
    EXPECT_EQ(stateOfBroker(), Lines{"open q: a"});
  }
  EXPECT_EQ(calls(), Lines{"a.~"});
  EXPECT_EQ(cache.getCPPAdapter(u"q"), nullptr);
  EXPECT_TRUE(stateOfBroker().empty());
}

TEST_F(AdapterCacheV2Test, EndsAnAdapterThatAnObserverRemovesBeforeTheRemovalReturns) {
  store(u"q", u"a");
  const AtEachNotice remover(model, [&] {
    if (cache.removeCPPAdapterFromCache(u"q")) log->note("removed q");
  });
  store(u"p", u"b");
  EXPECT_EQ(calls(), (Lines{"a.~", "removed q"}));
  EXPECT_EQ(stateOfBroker(), Lines{"open p: b"});
}

TEST_F(AdapterCacheV2Test, MakesAnEntryInItsMapFromABuilder) {
  const CPPAdapterV2Entry entry = cache.impl()->createIntoCPPCache(
      CPPAdapterV2Entry::Builder().setAdapterName(u"q").setAdapter(makeProbe(u"a")));
  EXPECT_EQ(stateOfBroker(), Lines{"open q: a"});
  EXPECT_EQ(entry, cache.impl()->getCPPCache().find(u"q"));
  EXPECT_EQ(entry.container(), cache);
}

TEST_F(AdapterCacheV2Test, MakesNoEntryFromABuilderWhoseKeyIsTaken) {
  store(u"q", u"a");
  const std::size_t elements = model.impl()->numberOfElements();
  EXPECT_EQ(raisedBy([&] {
              cache.impl()->createIntoCPPCache(
                  CPPAdapterV2Entry::Builder().setAdapterName(u"q").setAdapter(makeProbe(u"b")));
            }),
            "UniquenessConstraint(nd.data.adapter.AdapterCacheV2.CPPCache)");
  EXPECT_EQ(model.impl()->numberOfElements(), elements);
  EXPECT_FALSE(model.impl()->hasOpenTransaction());
  EXPECT_EQ(stateOfBroker(), Lines{"open q: a"});
}

// By reflection

TEST_F(AdapterCacheV2Test, AddsAndRemovesByReflection) {
  using Adapter = std::shared_ptr<CPPAdapterV2>;
  const Adapter probe = makeProbe(u"a");
  const Value qualifier{std::u16string(u"q")};
  EXPECT_EQ(cache.invoke(u"addCPPAdapterToCache", {Value(probe), qualifier}), Value(true));
  EXPECT_EQ(cache.getCPPAdapter(u"q"), probe);
  EXPECT_EQ(cache.invoke(u"addCPPAdapterToCache", {Value(probe), qualifier}), Value(false));
  EXPECT_EQ(cache.invoke(u"removeCPPAdapterFromCache", {qualifier}), Value(true));
  EXPECT_EQ(cache.invoke(u"removeCPPAdapterFromCache", {qualifier}), Value(false));
  EXPECT_EQ(probe.use_count(), 1);
}

TEST_F(AdapterCacheV2Test, ShowsItsMapToNobody) {
  const std::string property = "nd.data.adapter.AdapterCacheV2.CPPCache";
  EXPECT_THAT(raisedBy([&] { cache.getPropertyValue(u"CPPCache"); }),
              testing::StartsWith("InvalidValue(" + property));
  EXPECT_THAT(raisedBy([&] { cache.hasPropertyValue(u"CPPCache"); }),
              testing::StartsWith("InvalidValue(" + property));
  EXPECT_EQ(
      raisedBy([&] { cache.setPropertyValue(u"CPPCache", Value(std::vector<lx::base::ModelElement>())); }),
      "CannotSetReadOnlyProperty(" + property + ")");
}

// Asking

TEST_F(AdapterCacheV2Test, GivesNullForAnUnknownQualifier) {
  store(u"x.test::s", u"a");
  EXPECT_EQ(cache.getCPPAdapter(u"x.test::S"), nullptr);
  EXPECT_EQ(cache.getCPPAdapter(u"x.test"), nullptr);
  EXPECT_EQ(cache.getCPPAdapter(u""), nullptr);
}

TEST_F(AdapterCacheV2Test, LooksUpWithoutATransaction) {
  store(u"q", u"a");
  const ModelWatch watch(model);
  EXPECT_NE(cache.getCPPAdapter(u"q"), nullptr);
  EXPECT_EQ(cache.getCPPAdapter(u"p"), nullptr);
  cache.getAllAdapterQualifiers();
  EXPECT_EQ(watch.transactions(), 0U);
  EXPECT_TRUE(calls().empty());
}

TEST_F(AdapterCacheV2Test, ListsQualifiersByTheirCodeUnits) {
  const std::u16string grin = u"\U0001F600";
  for (const std::u16string& qualifier :
       {std::u16string(u"\uFFFD"), std::u16string(u"b"), grin, std::u16string(u"B")}) {
    store(qualifier, u"a");
  }
  EXPECT_EQ(cache.getAllAdapterQualifiers(), (Names{u"B", u"b", grin, u"\uFFFD"}));
}

TEST_F(AdapterCacheV2Test, ListsNothingWhenItIsEmpty) {
  EXPECT_TRUE(cache.getAllAdapterQualifiers().empty());
}

// The map that the cache is

TEST_F(AdapterCacheV2Test, HasOneOwnedMapOfEntriesByName) {
  const std::vector<lx::base::meta::Property> properties = AdapterCacheV2::metaClass().getProperties();
  ASSERT_EQ(properties.size(), 1U);
  EXPECT_EQ(properties[0].getName(), u"CPPCache");
  EXPECT_EQ(properties[0].getValueFlags(), lx::base::ValueFlags::Map);
  EXPECT_EQ(properties[0].getKey(), u"AdapterName");
  EXPECT_TRUE(properties[0].traits().isContained);
  EXPECT_FALSE(properties[0].traits().hasPublicGetter);
  EXPECT_FALSE(properties[0].traits().hasPublicSetter);
}

TEST_F(AdapterCacheV2Test, RefusesASecondEntryOfAKeyInItsMap) {
  store(u"q", u"a");
  const CPPAdapterV2Entry second = CPPAdapterV2Entry::create(model);
  second.setName(u"q");
  EXPECT_EQ(raisedBy([&] { cache.impl()->getCPPCacheMutable().add(second); }),
            "UniquenessConstraint(nd.data.adapter.AdapterCacheV2.CPPCache)");
  EXPECT_FALSE(model.impl()->hasOpenTransaction());
  EXPECT_EQ(stateOfBroker(), Lines{"open q: a"});
}

TEST_F(AdapterCacheV2Test, DoesNothingForAnEntryThatIsInItsMapAlready) {
  store(u"q", u"a");
  const ModelWatch watch(model);
  cache.impl()->getCPPCacheMutable().add(cache.impl()->getCPPCache().find(u"q"));
  EXPECT_EQ(watch.transactions(), 0U);
}

TEST_F(AdapterCacheV2Test, RefusesAnEntryOfAnotherModelInItsMap) {
  const Model other = Model::create();
  const CPPAdapterV2Entry foreign = CPPAdapterV2Entry::create(other);
  EXPECT_EQ(raisedBy([&] { cache.impl()->getCPPCacheMutable().add(foreign); }),
            "CannotCreateCrossModelAssociation(nd.data.adapter.AdapterCacheV2.CPPCache)");
  EXPECT_TRUE(stateOfBroker().empty());
}

// Entries that aren't loaded

TEST_F(AdapterCacheV2Test, HoldsAProxyApart) {
  store(u"q", u"a");
  const auto proxy = createProxy<CPPAdapterV2Entry>(model, someIdentity());
  auto& entries = cache.impl()->getCPPCacheMutable();
  {
    const ModelWatch watch(model);
    entries.add(proxy);
    EXPECT_EQ(watch.notices(), (std::vector<Lines>{{"changed nd.data.adapter.AdapterCacheV2.CPPCache"}}));
  }
  EXPECT_THAT(entries.proxies(), ElementsAre(proxy));
  EXPECT_EQ(proxy.container(), cache);

  EXPECT_EQ(stateOfBroker(), Lines{"open q: a"});
  EXPECT_EQ(cache.getAllAdapterQualifiers(), Names{u"q"});
  EXPECT_EQ(cache.getCPPAdapter(u""), nullptr) << "a proxy has no key, not even the empty one";
  EXPECT_FALSE(cache.removeCPPAdapterFromCache(u""));
  EXPECT_TRUE(proxy.isAlive());
  store(u"", u"b");
  EXPECT_EQ(stateOfBroker(), (Lines{"open : b", "open q: a"}));
}

TEST_F(AdapterCacheV2Test, LetsTheAdapterOfAnEntryGoUnclosedThatBecomesAProxy) {
  store(u"q", u"a");
  const CPPAdapterV2Entry entry = cache.impl()->getCPPCache().find(u"q");
  {
    const Transaction abandoned = model.impl()->beginTransaction(false);
    entry.impl()->convertToProxy();
    EXPECT_EQ(cache.getCPPAdapter(u"q"), nullptr);
  }
  EXPECT_EQ(stateOfBroker(), Lines{"open q: a"});
  EXPECT_TRUE(calls().empty());

  entry.impl()->convertToProxy();
  EXPECT_EQ(calls(), Lines{"a.~"});
  EXPECT_TRUE(stateOfBroker().empty());
  EXPECT_FALSE(cache.removeCPPAdapterFromCache(u"q"));
  EXPECT_THAT(cache.impl()->getCPPCache().proxies(), ElementsAre(entry));
  store(u"q", u"b");
  EXPECT_EQ(stateOfBroker(), Lines{"open q: b"}) << "the qualifier is free";
}

TEST_F(AdapterCacheV2Test, RefusesToChangeAProxyThatItHolds) {
  const auto proxy = createProxy<CPPAdapterV2Entry>(model, someIdentity());
  cache.impl()->getCPPCacheMutable().add(proxy);
  EXPECT_EQ(raisedBy([&] { proxy.setAdapter(makeProbe(u"a")); }),
            "CannotModifyProxy(nd.data.adapter.CPPAdapterV2Entry.Adapter)");
  EXPECT_EQ(raisedBy([&] { proxy.setName(u"q"); }),
            "CannotModifyProxy(nd.data.adapter.CPPAdapterV2Entry.AdapterName)");
}

TEST_F(AdapterCacheV2Test, ResolvesAProxyToTheEntryUnderItsOwnQualifier) {
  expectResolvedProxy(cache.impl()->getCPPCacheMutable(), u"q", makeProbe(u"a"), "open q: a");
}

TEST_F(AdapterCacheV2Test, EndsWithItsProxiesAndClosesWhatIsLoaded) {
  store(u"q", u"a");
  const auto proxy = createProxy<CPPAdapterV2Entry>(model, someIdentity());
  cache.impl()->getCPPCacheMutable().add(proxy);
  cache.destroy();
  EXPECT_EQ(calls(), (Lines{"a.close", "a.~"}));
  EXPECT_FALSE(proxy.isAlive());
}

}  // namespace
