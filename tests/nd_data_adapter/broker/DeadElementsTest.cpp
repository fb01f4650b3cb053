// Operations that are called on an element that is gone, past its handle: each raises and names itself.

#include "nd_data_adapter/model/AdapterCacheV2.h"
#include "nd_data_adapter/model/AdapterError.h"
#include "nd_data_adapter/model/AdapterRegistryV2.h"
#include "nd_data_adapter/model/CPPAdapterV2Entry.h"
#include "nd_data_adapter/model/DataContainer.h"
#include "tests/support/BrokerTest.h"
#include "tests/support/Thrown.h"

using namespace nd::data::adapter;
using lx::base::Model;
using support::Lines;
using support::raisedBy;

namespace {

class DeadElement : public support::BrokerTest {
 protected:
  const std::shared_ptr<support::ProbeAdapter> probe = makeProbe(u"a");
};

void expectRegistryToRaise(AdapterRegistryV2::Impl& dead, const std::shared_ptr<CPPAdapterV2>& adapter) {
  const auto raised = [](const std::string& name) {
    return "InvalidValue(nd.data.adapter.AdapterRegistryV2." + name + ")";
  };
  EXPECT_EQ(raisedBy([&] { dead.registerCPPAdapter(adapter); }), raised("registerCPPAdapter"));
  EXPECT_EQ(raisedBy([&] { dead.registerCPPAdapter(nullptr); }), raised("registerCPPAdapter"));
  EXPECT_EQ(raisedBy([&] { dead.unregisterCPPAdapter(u"a"); }), raised("unregisterCPPAdapter"));
  EXPECT_EQ(raisedBy([&] { dead.getNewCPPAdapter(u"a"); }), raised("getNewCPPAdapter"));
  EXPECT_EQ(raisedBy([&] { dead.getCPPAdapterForStaticUse(u"a"); }), raised("getCPPAdapterForStaticUse"));
  EXPECT_EQ(raisedBy([&] { dead.getCPPAdapterStaticForSource(u"x.test"); }),
            raised("getCPPAdapterStaticForSource"));
  EXPECT_EQ(raisedBy([&] { dead.getDisplayList(); }), raised("getDisplayList"));
  EXPECT_EQ(raisedBy([&] { dead.getAllAdapterNames(); }), raised("getAllAdapterNames"));
  EXPECT_EQ(raisedBy([&] { dead.isAdapterRegisteredByName(u"a"); }), raised("isAdapterRegisteredByName"));
  EXPECT_EQ(raisedBy([&] { dead.isAdapterRegisteredByExtension(u".test"); }),
            raised("isAdapterRegisteredByExtension"));
  EXPECT_EQ(raisedBy([&] { dead.aboutToDestroy(); }), raised("aboutToDestroy"));
}

void expectCacheToRaise(AdapterCacheV2::Impl& dead, const std::shared_ptr<CPPAdapterV2>& adapter) {
  const auto raised = [](const std::string& name) {
    return "InvalidValue(nd.data.adapter.AdapterCacheV2." + name + ")";
  };
  EXPECT_EQ(raisedBy([&] { dead.addCPPAdapterToCache(adapter, u"q"); }), raised("addCPPAdapterToCache"));
  EXPECT_EQ(raisedBy([&] { dead.addCPPAdapterToCache(nullptr, u"q"); }), raised("addCPPAdapterToCache"));
  EXPECT_EQ(raisedBy([&] { dead.removeCPPAdapterFromCache(u"q"); }), raised("removeCPPAdapterFromCache"));
  EXPECT_EQ(raisedBy([&] { dead.getCPPAdapter(u"q"); }), raised("getCPPAdapter"));
  EXPECT_EQ(raisedBy([&] { dead.getAllAdapterQualifiers(); }), raised("getAllAdapterQualifiers"));
  EXPECT_EQ(raisedBy([&] { dead.aboutToDestroy(); }), raised("aboutToDestroy"));
}

TEST_F(DeadElement, OfTheRegistryRaisesInEachOperationAndAsksNobody) {
  registerProbe(u"a");
  const AdapterRegistryV2 registry = AdapterRegistryV2::getInstance();
  registry.destroy();
  calls();
  expectRegistryToRaise(*registry.impl(), probe);
  EXPECT_TRUE(calls().empty());
}

TEST_F(DeadElement, OfTheRegistryRaisesInEachOperationWhenItsModelHasGone) {
  const AdapterRegistryV2 registry = AdapterRegistryV2::getInstance();
  registry.getModel().destroy();
  expectRegistryToRaise(*registry.impl(), probe);
}

TEST_F(DeadElement, OfTheCacheRaisesInEachOperationAndClosesNobody) {
  const AdapterCacheV2 cache = AdapterCacheV2::getInstance();
  cache.addCPPAdapterToCache(probe, u"q");
  cache.destroy();
  calls();
  expectCacheToRaise(*cache.impl(), probe);
  EXPECT_TRUE(calls().empty());
}

TEST_F(DeadElement, OfTheCacheRaisesInEachOperationWhenItsModelHasGone) {
  const AdapterCacheV2 cache = AdapterCacheV2::getInstance();
  cache.getModel().destroy();
  expectCacheToRaise(*cache.impl(), probe);
}

TEST_F(DeadElement, OfAnEntryRaisesWhenItIsNamed) {
  const Model model = Model::create();
  const CPPAdapterV2Entry entry = CPPAdapterV2Entry::create(model);
  entry.destroy();
  EXPECT_EQ(raisedBy([&] { entry.impl()->setName(u"q"); }),
            "InvalidValue(nd.data.adapter.CPPAdapterV2Entry.setName)");
}

TEST_F(DeadElement, OfAnErrorRaisesInEachOperation) {
  const Model model = Model::create();
  const AdapterError error = AdapterError::create(model);
  error.destroy();
  AdapterError::Impl& dead = *error.impl();
  const std::string name = "InvalidValue(nd.data.adapter.AdapterError.";
  EXPECT_EQ(raisedBy([&] { dead.setError(AdapterDiagnostic::NoDiagnostic, u"", u"", u""); }),
            name + "setError)");
  EXPECT_EQ(raisedBy([&] { dead.getId(); }), name + "getId)");
  EXPECT_EQ(raisedBy([&] { dead.getAdapterName(); }), name + "getAdapterName)");
  EXPECT_EQ(raisedBy([&] { dead.getSource(); }), name + "getSource)");
}

TEST_F(DeadElement, OfAContainerRaisesWhenItsContentsAreToGo) {
  const Model model = Model::create();
  const DataContainer container = DataContainer::create(model);
  container.destroy();
  EXPECT_EQ(raisedBy([&] { container.impl()->destroyContainer(); }),
            "InvalidValue(nd.data.adapter.DataContainer.destroyContainer)");
}

}  // namespace
