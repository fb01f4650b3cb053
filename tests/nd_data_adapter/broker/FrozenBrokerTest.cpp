// The registry and the cache in models that are read-only, and as proxies: what only asks is answered, what
// would change nothing answers as ever, what would change something raises and changes nothing.

#include <array>

#include <gmock/gmock.h>

#include "nd_data_adapter/model/AdapterCacheV2.h"
#include "nd_data_adapter/model/AdapterConfig.h"
#include "nd_data_adapter/model/AdapterManagerV2.h"
#include "nd_data_adapter/model/AdapterRegistryV2.h"
#include "platform/foundation/ModelImpl.h"
#include "tests/support/BrokerTest.h"
#include "tests/support/Thrown.h"
#include "tests/support/describe.h"

using namespace nd::data::adapter;
using lx::base::Model;
using support::Lines;
using support::ProbeAdapter;
using support::raisedBy;
using support::stateOfBroker;

namespace {

using Names = std::vector<std::u16string>;

const std::string registryIsReadOnly = "InvalidValue(nd.data.adapter.AdapterRegistryV2.CPPRegistry)";
const std::string cacheIsReadOnly = "InvalidValue(nd.data.adapter.AdapterCacheV2.CPPCache)";
const std::string modelIsReadOnly = "InvalidValue(Model.beginTransaction)";

/// A broker with the prototypes "a" and "b" and the open source "x.test", frozen.
class FrozenBroker : public support::BrokerTest {
 protected:
  FrozenBroker() {
    const std::shared_ptr<ProbeAdapter> first = registerProbe(u"a");
    first->script().checksum = u"17";
    first->script().externalSources = {u"z.test"};
    registerProbe(u"b", u"other");
    EXPECT_TRUE(AdapterManagerV2::openSource(u"x.test", u"s", {}));
    calls();
    for (const Model& model : models) Model::Freezer::freeze(model);
  }
  ~FrozenBroker() override {
    for (const Model& model : models) {
      const Model::Thawer thawed = Model::Freezer::thaw(model);
      model.destroy();
    }
  }

  void expectNothingToHaveChanged() const {
    EXPECT_EQ(stateOfBroker(), (Lines{"registered a: a", "registered b: b", "open x.test::s: a'1"}));
    for (const Model& model : models) EXPECT_FALSE(model.impl()->hasOpenTransaction());
  }

  const AdapterRegistryV2 registry = AdapterRegistryV2::getInstance();
  const AdapterCacheV2 cache = AdapterCacheV2::getInstance();
  const std::array<Model, 2> models{registry.getModel(), cache.getModel()};
};

TEST_F(FrozenBroker, IsStillTheOneOfTheProcess) {
  EXPECT_EQ(AdapterRegistryV2::getInstance(), registry);
  EXPECT_EQ(AdapterCacheV2::getInstance(), cache);
}

// The registry

TEST_F(FrozenBroker, RegistersNobody) {
  const std::shared_ptr<ProbeAdapter> probe = makeProbe(u"c");
  EXPECT_EQ(raisedBy([&] { registry.registerCPPAdapter(probe); }), registryIsReadOnly);
  EXPECT_EQ(raisedBy([&] { AdapterManagerV2::registerCPPAdapter(probe); }), registryIsReadOnly);
  EXPECT_EQ(probe.use_count(), 1);
  expectNothingToHaveChanged();
}

TEST_F(FrozenBroker, RefusesATakenNameAndANullPointerAsEver) {
  EXPECT_FALSE(registry.registerCPPAdapter(makeProbe(u"a")));
  EXPECT_FALSE(AdapterManagerV2::registerCPPAdapter(makeProbe(u"a")));
  EXPECT_FALSE(registry.registerCPPAdapter(nullptr));
  expectNothingToHaveChanged();
}

TEST_F(FrozenBroker, UnregistersNobody) {
  EXPECT_EQ(raisedBy([&] { registry.unregisterCPPAdapter(u"a"); }), registryIsReadOnly);
  EXPECT_EQ(raisedBy([] { AdapterManagerV2::unregisterAdapterByName(u"a"); }), registryIsReadOnly);
  EXPECT_TRUE(calls().empty());
  expectNothingToHaveChanged();
}

TEST_F(FrozenBroker, AnswersFalseForAnUnknownNameThatIsToBeUnregistered) {
  EXPECT_FALSE(registry.unregisterCPPAdapter(u"c"));
  EXPECT_FALSE(AdapterManagerV2::unregisterAdapterByName(u"c"));
  expectNothingToHaveChanged();
}

TEST_F(FrozenBroker, MakesNewAdapters) {
  EXPECT_EQ(ProbeAdapter::labelOf(registry.getNewCPPAdapter(u"b")), "b'1");
  EXPECT_EQ(registry.getNewCPPAdapter(u"c"), nullptr);
  expectNothingToHaveChanged();
}

TEST_F(FrozenBroker, LendsNoPrototypeAsThatTakesATransaction) {
  EXPECT_EQ(raisedBy([&] { registry.getCPPAdapterForStaticUse(u"a"); }), modelIsReadOnly);
  EXPECT_EQ(registry.getCPPAdapterForStaticUse(u"c"), nullptr);
  expectNothingToHaveChanged();
}

TEST_F(FrozenBroker, AnswersAllQuestionsAboutAdapters) {
  EXPECT_EQ(registry.getCPPAdapterStaticForSource(u"x.test").size(), 2U);
  EXPECT_EQ(registry.getDisplayList(), (Names{u".test : a", u".test : b"}));
  EXPECT_EQ(registry.getAllAdapterNames(), (Names{u"a", u"b"}));
  EXPECT_TRUE(registry.isAdapterRegisteredByName(u"a"));
  EXPECT_TRUE(registry.isAdapterRegisteredByExtension(u".test"));
  EXPECT_TRUE(AdapterManagerV2::isExtensionRegistered(u".test"));
  EXPECT_EQ(AdapterManagerV2::getAllRegisteredAdapterNames(), (Names{u"a", u"b"}));
  EXPECT_TRUE(AdapterManagerV2::doesSourceExist(u"x.test"));
  EXPECT_TRUE(AdapterManagerV2::hasReadingAdapters(u"x.test"));
  EXPECT_TRUE(AdapterManagerV2::hasWritingAdapters(u"x.test"));
  EXPECT_EQ(AdapterManagerV2::getAdapterConfig(u"x.test", Model::create()).size(), 2U);
  expectNothingToHaveChanged();
}

TEST_F(FrozenBroker, KeepsTheRegistryFromItsEnd) {
  EXPECT_EQ(raisedBy([&] { registry.destroy(); }), modelIsReadOnly);
  EXPECT_EQ(raisedBy([&] { registry.impl()->aboutToDestroy(); }), modelIsReadOnly);
  EXPECT_TRUE(calls().empty());
  expectNothingToHaveChanged();
}

// The cache

TEST_F(FrozenBroker, StoresNoAdapter) {
  const std::shared_ptr<ProbeAdapter> probe = makeProbe(u"c");
  EXPECT_EQ(raisedBy([&] { cache.addCPPAdapterToCache(probe, u"q"); }), cacheIsReadOnly);
  EXPECT_FALSE(cache.addCPPAdapterToCache(probe, u"x.test::s"));
  EXPECT_FALSE(cache.addCPPAdapterToCache(nullptr, u"q"));
  EXPECT_EQ(probe.use_count(), 1);
  expectNothingToHaveChanged();
}

TEST_F(FrozenBroker, OpensNoSourceAndLetsTheNewAdapterGoUnopened) {
  EXPECT_EQ(raisedBy([] { AdapterManagerV2::openSource(u"y.test", u"s", {}); }), cacheIsReadOnly);
  EXPECT_THAT(calls(), testing::ElementsAre("a.getSupportedExtensions", "b.getSupportedExtensions",
                                            "a.getSectionName", "a.getAdapterName", "a.clone", "a'2.~"));
  expectNothingToHaveChanged();
}

TEST_F(FrozenBroker, AnswersFalseForASourceOrASectionThatNobodyServes) {
  EXPECT_FALSE(AdapterManagerV2::openSource(u"x.none", u"s", {}));
  EXPECT_FALSE(AdapterManagerV2::openSource(u"x.test", u"none", {}));
  expectNothingToHaveChanged();
}

TEST_F(FrozenBroker, OpensAnOpenSourceASecondTime) {
  EXPECT_TRUE(AdapterManagerV2::openSource(u"x.test", u"s", {}));
  EXPECT_EQ(calls().back(), "a'2.~");
  expectNothingToHaveChanged();
}

TEST_F(FrozenBroker, ClosesNoSource) {
  EXPECT_EQ(raisedBy([&] { cache.removeCPPAdapterFromCache(u"x.test::s"); }), cacheIsReadOnly);
  EXPECT_EQ(raisedBy([] { AdapterManagerV2::closeSource(u"x.test", u"s", {}); }), cacheIsReadOnly);
  EXPECT_EQ(raisedBy([] { AdapterManagerV2::closeAdapterbyNamesWithSection(u"x.test::s"); }),
            cacheIsReadOnly);
  EXPECT_TRUE(calls().empty());
  expectNothingToHaveChanged();
}

TEST_F(FrozenBroker, AnswersFalseForASourceThatIsNotOpenAndIsToBeClosed) {
  EXPECT_FALSE(cache.removeCPPAdapterFromCache(u"y.test::s"));
  EXPECT_FALSE(AdapterManagerV2::closeSource(u"y.test", u"s", {}));
  EXPECT_FALSE(AdapterManagerV2::closeAdapterbyNamesWithSection(u"x.test"));
  expectNothingToHaveChanged();
}

TEST_F(FrozenBroker, AnswersAllQuestionsAboutOpenSources) {
  EXPECT_EQ(ProbeAdapter::labelOf(cache.getCPPAdapter(u"x.test::s")), "a'1");
  EXPECT_EQ(cache.getCPPAdapter(u"q"), nullptr);
  EXPECT_EQ(cache.getAllAdapterQualifiers(), Names{u"x.test::s"});
  EXPECT_EQ(AdapterManagerV2::getAllOpenedAdapterNamesWithSection(), Names{u"x.test::s"});
  EXPECT_EQ(AdapterManagerV2::getChecksum(u"x.test", u"s"), u"17");
  EXPECT_EQ(AdapterManagerV2::getExternalSources(u"x.test", u"s"), Names{u"z.test"});
  EXPECT_EQ(calls(), (Lines{"a'1.getCurrentChecksum", "a'1.getExternalSources"}));
  expectNothingToHaveChanged();
}

TEST_F(FrozenBroker, KeepsTheCacheFromItsEndAndClosesNobody) {
  EXPECT_EQ(raisedBy([&] { cache.destroy(); }), modelIsReadOnly);
  EXPECT_EQ(raisedBy([&] { cache.impl()->aboutToDestroy(); }), modelIsReadOnly);
  EXPECT_TRUE(calls().empty());
  expectNothingToHaveChanged();
}

TEST_F(FrozenBroker, WorksOnWhenItIsThawed) {
  const Model::Thawer first = Model::Freezer::thaw(models[0]);
  const Model::Thawer second = Model::Freezer::thaw(models[1]);
  EXPECT_TRUE(AdapterManagerV2::closeSource(u"x.test", u"s", {}));
  EXPECT_TRUE(AdapterManagerV2::unregisterAdapterByName(u"a"));
  EXPECT_TRUE(AdapterManagerV2::openSource(u"x.test", u"other", {}));
  EXPECT_EQ(stateOfBroker(), (Lines{"registered b: b", "open x.test::other: b'1"}));
}

// Proxies

/// A broker whose registry and cache are proxies, which hold nothing.
class BrokerOfProxies : public support::BrokerTest {
 protected:
  BrokerOfProxies() {
    registerProbe(u"a");
    EXPECT_TRUE(AdapterManagerV2::openSource(u"x.test", u"s", {}));
    registry.impl()->convertToProxy();
    cache.impl()->convertToProxy();
    calls();
  }

  const AdapterRegistryV2 registry = AdapterRegistryV2::getInstance();
  const AdapterCacheV2 cache = AdapterCacheV2::getInstance();
};

TEST_F(BrokerOfProxies, IsEmptyAndStillTheOneOfTheProcess) {
  EXPECT_EQ(AdapterRegistryV2::getInstance(), registry);
  EXPECT_EQ(AdapterCacheV2::getInstance(), cache);
  EXPECT_TRUE(stateOfBroker().empty());
}

TEST_F(BrokerOfProxies, AnswersFalseForWhatIsNotThereAndIsToBeTakenAway) {
  EXPECT_FALSE(registry.unregisterCPPAdapter(u"a"));
  EXPECT_FALSE(AdapterManagerV2::unregisterAdapterByName(u"a"));
  EXPECT_FALSE(cache.removeCPPAdapterFromCache(u"x.test::s"));
  EXPECT_FALSE(AdapterManagerV2::closeSource(u"x.test", u"s", {}));
  EXPECT_FALSE(AdapterManagerV2::closeAdapterbyNamesWithSection(u"x.test::s"));
}

TEST_F(BrokerOfProxies, TakesNothing) {
  const std::shared_ptr<ProbeAdapter> probe = makeProbe(u"b");
  EXPECT_EQ(raisedBy([&] { registry.registerCPPAdapter(probe); }),
            "CannotModifyProxy(nd.data.adapter.AdapterRegistryV2.CPPRegistry)");
  EXPECT_EQ(raisedBy([&] { cache.addCPPAdapterToCache(probe, u"q"); }),
            "CannotModifyProxy(nd.data.adapter.AdapterCacheV2.CPPCache)");
  EXPECT_FALSE(registry.registerCPPAdapter(nullptr));
  EXPECT_FALSE(cache.addCPPAdapterToCache(nullptr, u"q"));
  EXPECT_EQ(probe.use_count(), 1);
  EXPECT_TRUE(stateOfBroker().empty());
}

}  // namespace
