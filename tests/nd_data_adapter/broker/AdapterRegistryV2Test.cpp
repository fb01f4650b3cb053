#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "nd_data_adapter/model/AdapterRegistryV2.h"
#include "platform/foundation/CreateElement.h"
#include "platform/foundation/meta/Meta.h"
#include "tests/nd_data_adapter/broker/ResolvedProxy.h"
#include "tests/support/BrokerTest.h"
#include "tests/support/ModelWatch.h"
#include "tests/support/Thrown.h"
#include "tests/support/describe.h"

using namespace nd::data::adapter;
using lx::base::createProxy;
using lx::base::Model;
using lx::base::Transaction;
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

class AdapterRegistryV2Test : public support::BrokerTest {
 protected:
  const AdapterRegistryV2 registry = AdapterRegistryV2::getInstance();
  const Model model = registry.getModel();
};

// Registering

TEST_F(AdapterRegistryV2Test, AsksANewAdapterItsNameAndNothingElse) {
  EXPECT_TRUE(registry.registerCPPAdapter(makeProbe(u"a")));
  EXPECT_EQ(calls(), Lines{"a.getAdapterName"});
  EXPECT_EQ(stateOfBroker(), Lines{"registered a: a"});
}

TEST_F(AdapterRegistryV2Test, RegistersInOneTransactionThatItsObserversHearOfOnce) {
  const ModelWatch watch(model);
  registry.registerCPPAdapter(makeProbe(u"a"));
  EXPECT_EQ(watch.notices(), (std::vector<Lines>{{"created nd.data.adapter.CPPAdapterV2Entry",
                                                  "changed nd.data.adapter.AdapterRegistryV2.CPPRegistry"}}));
  EXPECT_FALSE(watch.hasOpenTransaction());
}

TEST_F(AdapterRegistryV2Test, KeepsTheFirstAdapterOfAName) {
  registerProbe(u"a");
  const std::shared_ptr<ProbeAdapter> other = makeProbe(u"a");
  const ModelWatch watch(model);

  EXPECT_FALSE(registry.registerCPPAdapter(other));

  EXPECT_EQ(calls(), Lines{"a.getAdapterName"}) << "the refused adapter is not looked at further";
  EXPECT_EQ(watch.transactions(), 0U);
  EXPECT_NE(registry.getCPPAdapterForStaticUse(u"a"), other);
  EXPECT_EQ(other.use_count(), 1);
}

TEST_F(AdapterRegistryV2Test, RefusesTheSameAdapterASecondTime) {
  const std::shared_ptr<ProbeAdapter> probe = registerProbe(u"a");
  EXPECT_FALSE(registry.registerCPPAdapter(probe));
  EXPECT_EQ(probe.use_count(), 2);
}

TEST_F(AdapterRegistryV2Test, RefusesANullPointerAndChangesNothing) {
  const ModelWatch watch(model);
  EXPECT_FALSE(registry.registerCPPAdapter(nullptr));
  EXPECT_EQ(watch.transactions(), 0U);
  EXPECT_TRUE(stateOfBroker().empty());
}

TEST_F(AdapterRegistryV2Test, RegistersAnAdapterWhoseLastPointerIsResetWhileItIsAskedForItsName) {
  std::shared_ptr<CPPAdapterV2> pointer = makeProbe(u"a");
  log->at("a.getAdapterName", [&] { pointer.reset(); });
  EXPECT_TRUE(registry.registerCPPAdapter(pointer));
  EXPECT_EQ(calls(), Lines{"a.getAdapterName"}) << "it does not end";
  EXPECT_EQ(stateOfBroker(), Lines{"registered a: a"});
}

TEST_F(AdapterRegistryV2Test, TakesAnyTextAsAName) {
  const Names names{u"",        std::u16string(u"a\0b", 3),         u"A", u"a", u"\u00E9",
                    u"e\u0301", std::u16string(1, char16_t{0xD83D})};
  for (const std::u16string& name : names) EXPECT_TRUE(registry.registerCPPAdapter(makeProbe(name)));
  for (const std::u16string& name : names) EXPECT_TRUE(registry.isAdapterRegisteredByName(name));
  EXPECT_EQ(registry.getAllAdapterNames().size(), names.size());
}

TEST_F(AdapterRegistryV2Test, TellsNamesApartThatDifferInCaseOrSpellingOnly) {
  registerProbe(u"\u00E9A");
  EXPECT_TRUE(registry.isAdapterRegisteredByName(u"\u00E9A"));
  EXPECT_FALSE(registry.isAdapterRegisteredByName(u"\u00E9a"));
  EXPECT_FALSE(registry.isAdapterRegisteredByName(u"e\u0301A"));
  EXPECT_FALSE(registry.isAdapterRegisteredByName(u""));
}

TEST_F(AdapterRegistryV2Test, OrdersAdaptersByTheCodeUnitsOfTheirNames) {
  const std::u16string grin = u"\U0001F600";  // its first unit is below U+FFFD, its code point above
  for (const std::u16string& name :
       {std::u16string(u"\uFFFD"), std::u16string(u"a"), grin, std::u16string(u"B")}) {
    registerProbe(name);
  }
  EXPECT_EQ(registry.getAllAdapterNames(), (Names{u"B", u"a", grin, u"\uFFFD"}));
}

TEST_F(AdapterRegistryV2Test, KeepsTheNameOfTheRegistrationAsKeyAndListsTheNamesOfToday) {
  const std::shared_ptr<ProbeAdapter> first = registerProbe(u"a");
  registerProbe(u"b");
  first->script().name = u"z";

  EXPECT_EQ(registry.getAllAdapterNames(), (Names{u"z", u"b"})) << "in the order of the keys";
  EXPECT_EQ(calls(), (Lines{"a.getAdapterName", "b.getAdapterName"}));
  EXPECT_TRUE(registry.isAdapterRegisteredByName(u"a"));
  EXPECT_FALSE(registry.isAdapterRegisteredByName(u"z"));
  EXPECT_TRUE(calls().empty()) << "the look-up asks no adapter";
  EXPECT_FALSE(registry.unregisterCPPAdapter(u"z"));
  EXPECT_TRUE(registry.unregisterCPPAdapter(u"a"));
}

TEST_F(AdapterRegistryV2Test, TakesARegistrationBackWithTheTransactionAroundIt) {
  {
    const Transaction abandoned = model.impl()->beginTransaction(false);
    EXPECT_TRUE(registry.registerCPPAdapter(makeProbe(u"a")));
    EXPECT_TRUE(registry.isAdapterRegisteredByName(u"a"));
  }
  EXPECT_FALSE(registry.isAdapterRegisteredByName(u"a"));
  EXPECT_EQ(calls(), (Lines{"a.getAdapterName", "a.~"}));
}

TEST_F(AdapterRegistryV2Test, RaisesWhenTheAdapterThatItAsksDestroysIt) {
  const std::shared_ptr<ProbeAdapter> probe = makeProbe(u"a");
  log->at("a.getAdapterName", [&] { registry.destroy(); });
  EXPECT_EQ(raisedBy([&] { registry.registerCPPAdapter(probe); }),
            "InvalidValue(nd.data.adapter.AdapterRegistryV2.registerCPPAdapter)");
  EXPECT_EQ(log->actionsLeft(), 0U);
  EXPECT_EQ(probe.use_count(), 1);
  EXPECT_EQ(model.impl()->numberOfElements(), 0U);
  EXPECT_FALSE(model.impl()->hasOpenTransaction());
}

TEST_F(AdapterRegistryV2Test, RaisesWhenTheAdapterThatItAsksDestroysItsModel) {
  const std::shared_ptr<ProbeAdapter> probe = makeProbe(u"a");
  log->at("a.getAdapterName", [&] { model.destroy(); });
  EXPECT_EQ(raisedBy([&] { registry.registerCPPAdapter(probe); }),
            "InvalidValue(nd.data.adapter.AdapterRegistryV2.registerCPPAdapter)");
  EXPECT_EQ(log->actionsLeft(), 0U);
  EXPECT_EQ(probe.use_count(), 1);
}

// Unregistering

TEST_F(AdapterRegistryV2Test, UnregistersANameOnce) {
  registerProbe(u"a");
  EXPECT_TRUE(registry.unregisterCPPAdapter(u"a"));
  EXPECT_FALSE(registry.unregisterCPPAdapter(u"a"));
  EXPECT_TRUE(stateOfBroker().empty());
}

TEST_F(AdapterRegistryV2Test, DoesNotUnregisterAnUnknownName) {
  registerProbe(u"a");
  const ModelWatch watch(model);
  EXPECT_FALSE(registry.unregisterCPPAdapter(u"A"));
  EXPECT_EQ(watch.transactions(), 0U);
  EXPECT_EQ(stateOfBroker(), Lines{"registered a: a"});
}

TEST_F(AdapterRegistryV2Test, LetsAnUnregisteredAdapterGoWithoutACall) {
  registerProbe(u"a");
  const ModelWatch watch(model);
  EXPECT_TRUE(registry.unregisterCPPAdapter(u"a"));
  EXPECT_EQ(calls(), Lines{"a.~"});
  EXPECT_EQ(watch.notices(), (std::vector<Lines>{{"destroyed nd.data.adapter.CPPAdapterV2Entry",
                                                  "changed nd.data.adapter.AdapterRegistryV2.CPPRegistry"}}));
}

TEST_F(AdapterRegistryV2Test, LeavesAnUnregisteredAdapterToThoseWhoHoldIt) {
  const std::shared_ptr<ProbeAdapter> held = registerProbe(u"a");
  EXPECT_TRUE(registry.unregisterCPPAdapter(u"a"));
  EXPECT_TRUE(calls().empty());
  EXPECT_EQ(held.use_count(), 1);
}

TEST_F(AdapterRegistryV2Test, EndsAnUnregisteredAdapterWhenItsEntryIsGoneAndNoTransactionIsOpen) {
  registerProbe(u"a");
  bool wasRegistered = true;
  bool wasOpen = true;
  log->at("a.~", [&] {
    wasRegistered = registry.isAdapterRegisteredByName(u"a");
    wasOpen = model.impl()->hasOpenTransaction();
  });
  EXPECT_TRUE(registry.unregisterCPPAdapter(u"a"));
  EXPECT_EQ(log->actionsLeft(), 0U);
  EXPECT_FALSE(wasRegistered);
  EXPECT_FALSE(wasOpen);
}

TEST_F(AdapterRegistryV2Test, MayBeCalledByTheEndOfAnAdapterThatIsUnregistered) {
  registerProbe(u"a");
  registerProbe(u"b");
  log->at("a.~", [&] {
    registry.unregisterCPPAdapter(u"b");
    registry.registerCPPAdapter(makeProbe(u"a"));
  });
  EXPECT_TRUE(registry.unregisterCPPAdapter(u"a"));
  EXPECT_EQ(calls(), (Lines{"a.~", "b.~", "a.getAdapterName"}));
  EXPECT_EQ(stateOfBroker(), Lines{"registered a: a"});
}

TEST_F(AdapterRegistryV2Test, DoesNotKeepAnAdapterForTheSakeOfAHandleToItsEntry) {
  registerProbe(u"a");
  const CPPAdapterV2Entry entry = registry.impl()->getCPPRegistry().find(u"a");
  EXPECT_TRUE(registry.unregisterCPPAdapter(u"a"));
  EXPECT_EQ(calls(), Lines{"a.~"});
  EXPECT_FALSE(entry.isAlive());
  EXPECT_EQ(entry.adapter(), nullptr);
}

TEST_F(AdapterRegistryV2Test, BringsAnUnregisteredAdapterBackWithTheTransactionAroundIt) {
  registerProbe(u"a");
  {
    const Transaction abandoned = model.impl()->beginTransaction(false);
    EXPECT_TRUE(registry.unregisterCPPAdapter(u"a"));
    EXPECT_TRUE(stateOfBroker().empty());
  }
  EXPECT_EQ(stateOfBroker(), Lines{"registered a: a"});
  EXPECT_TRUE(calls().empty());
}

// The map that the registry is

TEST_F(AdapterRegistryV2Test, HasOneOwnedMapOfEntriesByName) {
  const std::vector<lx::base::meta::Property> properties = AdapterRegistryV2::metaClass().getProperties();
  ASSERT_EQ(properties.size(), 1U);
  EXPECT_EQ(properties[0].getName(), u"CPPRegistry");
  EXPECT_EQ(properties[0].getValueFlags(), lx::base::ValueFlags::Map);
  EXPECT_EQ(properties[0].getKey(), u"AdapterName");
  EXPECT_TRUE(properties[0].traits().isContained);
  EXPECT_FALSE(properties[0].traits().hasPublicGetter);
  EXPECT_FALSE(properties[0].traits().hasPublicSetter);
}

TEST_F(AdapterRegistryV2Test, RefusesASecondEntryOfAKeyInItsMap) {
  registerProbe(u"a");
  const CPPAdapterV2Entry second = CPPAdapterV2Entry::create(model);
  second.setName(u"a");
  const ModelWatch watch(model);
  EXPECT_EQ(raisedBy([&] { registry.impl()->getCPPRegistryMutable().add(second); }),
            "UniquenessConstraint(nd.data.adapter.AdapterRegistryV2.CPPRegistry)");
  EXPECT_TRUE(watch.notices().empty());
  EXPECT_FALSE(watch.hasOpenTransaction());
  EXPECT_EQ(stateOfBroker(), Lines{"registered a: a"});
}

TEST_F(AdapterRegistryV2Test, DoesNothingForAnEntryThatIsInItsMapAlready) {
  registerProbe(u"a");
  const ModelWatch watch(model);
  registry.impl()->getCPPRegistryMutable().add(registry.impl()->getCPPRegistry().find(u"a"));
  EXPECT_EQ(watch.transactions(), 0U);
  EXPECT_EQ(stateOfBroker(), Lines{"registered a: a"});
}

TEST_F(AdapterRegistryV2Test, RefusesAnEntryOfAnotherModelInItsMap) {
  const Model other = Model::create();
  const CPPAdapterV2Entry foreign = CPPAdapterV2Entry::create(other);
  EXPECT_EQ(raisedBy([&] { registry.impl()->getCPPRegistryMutable().add(foreign); }),
            "CannotCreateCrossModelAssociation(nd.data.adapter.AdapterRegistryV2.CPPRegistry)");
  EXPECT_TRUE(foreign.isAlive());
  EXPECT_TRUE(stateOfBroker().empty());
}

TEST_F(AdapterRegistryV2Test, MakesAnEntryInItsMapFromABuilder) {
  const ModelWatch watch(model);
  const CPPAdapterV2Entry entry = registry.impl()->createIntoCPPRegistry(
      CPPAdapterV2Entry::Builder().setAdapterName(u"key").setAdapter(makeProbe(u"a")));
  EXPECT_EQ(stateOfBroker(), Lines{"registered key: a"});
  EXPECT_EQ(entry, registry.impl()->getCPPRegistry().find(u"key"));
  EXPECT_EQ(entry.container(), registry);
  EXPECT_EQ(watch.notices(), (std::vector<Lines>{{"created nd.data.adapter.CPPAdapterV2Entry",
                                                  "changed nd.data.adapter.AdapterRegistryV2.CPPRegistry"}}));
  EXPECT_FALSE(watch.hasOpenTransaction());
  EXPECT_TRUE(calls().empty());
}

TEST_F(AdapterRegistryV2Test, MakesNoEntryFromABuilderWhoseKeyIsTaken) {
  registerProbe(u"a");
  const std::size_t elements = model.impl()->numberOfElements();
  const ModelWatch watch(model);
  EXPECT_EQ(raisedBy([&] {
              registry.impl()->createIntoCPPRegistry(
                  CPPAdapterV2Entry::Builder().setAdapterName(u"a").setAdapter(makeProbe(u"b")));
            }),
            "UniquenessConstraint(nd.data.adapter.AdapterRegistryV2.CPPRegistry)");
  EXPECT_EQ(model.impl()->numberOfElements(), elements);
  EXPECT_FALSE(watch.hasOpenTransaction());
  EXPECT_TRUE(watch.notices().empty());
  EXPECT_EQ(stateOfBroker(), Lines{"registered a: a"});
  EXPECT_EQ(calls(), Lines{"b.~"});
}

// Entries that aren't loaded

TEST_F(AdapterRegistryV2Test, HoldsAProxyApart) {
  registerProbe(u"a");
  const auto proxy = createProxy<CPPAdapterV2Entry>(model, someIdentity());
  auto& entries = registry.impl()->getCPPRegistryMutable();
  {
    const ModelWatch watch(model);
    entries.add(proxy);
    EXPECT_EQ(watch.notices(),
              (std::vector<Lines>{{"changed nd.data.adapter.AdapterRegistryV2.CPPRegistry"}}));
  }
  EXPECT_THAT(entries.proxies(), ElementsAre(proxy));
  EXPECT_EQ(proxy.container(), registry);

  EXPECT_EQ(stateOfBroker(), Lines{"registered a: a"});
  EXPECT_EQ(registry.getAllAdapterNames(), Names{u"a"});
  EXPECT_EQ(registry.getDisplayList(), Names{u".test : a"});
  EXPECT_EQ(registry.getCPPAdapterStaticForSource(u"x.test").size(), 1U);
  EXPECT_TRUE(registry.isAdapterRegisteredByExtension(u".test"));
  EXPECT_FALSE(registry.isAdapterRegisteredByName(u"")) << "a proxy has no key, not even the empty one";
  EXPECT_EQ(registry.getNewCPPAdapter(u""), nullptr);
  EXPECT_EQ(registry.getCPPAdapterForStaticUse(u""), nullptr);
  EXPECT_FALSE(registry.unregisterCPPAdapter(u""));
  EXPECT_TRUE(proxy.isAlive());
  registerProbe(u"");
  EXPECT_EQ(stateOfBroker(), (Lines{"registered : ", "registered a: a"}));
}

TEST_F(AdapterRegistryV2Test, LetsThePrototypeOfAnEntryGoWithoutACallThatBecomesAProxy) {
  registerProbe(u"a");
  const CPPAdapterV2Entry entry = registry.impl()->getCPPRegistry().find(u"a");
  {
    const Transaction abandoned = model.impl()->beginTransaction(false);
    entry.impl()->convertToProxy();
    EXPECT_FALSE(registry.isAdapterRegisteredByName(u"a"));
  }
  EXPECT_EQ(stateOfBroker(), Lines{"registered a: a"});
  EXPECT_TRUE(calls().empty());

  entry.impl()->convertToProxy();
  EXPECT_EQ(calls(), Lines{"a.~"});
  EXPECT_FALSE(registry.isAdapterRegisteredByName(u"a"));
  EXPECT_EQ(registry.getNewCPPAdapter(u"a"), nullptr);
  EXPECT_THAT(registry.impl()->getCPPRegistry().proxies(), ElementsAre(entry));
  registerProbe(u"a");
  EXPECT_EQ(stateOfBroker(), Lines{"registered a: a"}) << "the name is free";
}

TEST_F(AdapterRegistryV2Test, ResolvesAProxyToTheEntryUnderItsOwnName) {
  expectResolvedProxy(registry.impl()->getCPPRegistryMutable(), u"key", makeProbe(u"a"), "registered key: a");
}

TEST_F(AdapterRegistryV2Test, KeepsAProxyWhoseEntryHasATakenName) {
  registerProbe(u"a");
  auto& entries = registry.impl()->getCPPRegistryMutable();
  const auto proxy = createProxy<CPPAdapterV2Entry>(model, someIdentity());
  entries.add(proxy);
  const CPPAdapterV2Entry entry = CPPAdapterV2Entry::create(model, someIdentity());
  entry.setName(u"a");
  const ModelWatch watch(model);
  EXPECT_EQ(raisedBy([&] { entries.resolveProxy(proxy); }),
            "UniquenessConstraint(nd.data.adapter.AdapterRegistryV2.CPPRegistry)");
  EXPECT_TRUE(watch.notices().empty());
  EXPECT_FALSE(watch.hasOpenTransaction());
  EXPECT_THAT(entries.proxies(), ElementsAre(proxy));
  EXPECT_EQ(stateOfBroker(), Lines{"registered a: a"});
}

TEST_F(AdapterRegistryV2Test, EndsWithItsProxies) {
  registerProbe(u"a");
  const auto proxy = createProxy<CPPAdapterV2Entry>(model, someIdentity());
  registry.impl()->getCPPRegistryMutable().add(proxy);
  registry.destroy();
  EXPECT_EQ(calls(), Lines{"a.~"});
  EXPECT_FALSE(proxy.isAlive());
}

}  // namespace
