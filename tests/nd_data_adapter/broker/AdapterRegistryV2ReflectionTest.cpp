// The registry by reflection: every operation by its invoker, and the map that is not public.

#include "nd_data_adapter/model/AdapterRegistryV2.h"
#include "platform/foundation/meta/Meta.h"
#include "tests/support/BrokerTest.h"
#include "tests/support/Thrown.h"
#include "tests/support/describe.h"

using namespace nd::data::adapter;
using lx::base::Value;
using support::Lines;
using support::ProbeAdapter;
using support::raisedBy;
using support::stateOfBroker;

namespace {

using Adapter = std::shared_ptr<CPPAdapterV2>;
using Adapters = std::vector<Adapter>;
using Names = std::vector<std::u16string>;

class AdapterRegistryV2Reflection : public support::BrokerTest {
 protected:
  const AdapterRegistryV2 registry = AdapterRegistryV2::getInstance();
};

TEST_F(AdapterRegistryV2Reflection, RegistersAnAdapterThatAValueCarries) {
  const Adapter probe = makeProbe(u"a");
  EXPECT_EQ(registry.invoke(u"registerCPPAdapter", {Value(probe)}), Value(true));
  EXPECT_EQ(calls(), Lines{"a.getAdapterName"});
  EXPECT_EQ(registry.getCPPAdapterForStaticUse(u"a"), probe);
  EXPECT_EQ(registry.invoke(u"registerCPPAdapter", {Value(probe)}), Value(false));
  EXPECT_EQ(registry.invoke(u"registerCPPAdapter", {Value(Adapter())}), Value(false));
  EXPECT_EQ(probe.use_count(), 2) << "no value keeps it";
}

TEST_F(AdapterRegistryV2Reflection, UnregistersOnce) {
  registerProbe(u"a");
  EXPECT_EQ(registry.invoke(u"unregisterCPPAdapter", {Value(u"a")}), Value(true));
  EXPECT_EQ(calls(), Lines{"a.~"});
  EXPECT_TRUE(stateOfBroker().empty());
  EXPECT_EQ(registry.invoke(u"unregisterCPPAdapter", {Value(u"a")}), Value(false));
}

TEST_F(AdapterRegistryV2Reflection, GivesAdaptersAsValues) {
  const Adapter a = registerProbe(u"a");
  const Adapter b = registerProbe(u"b");

  const Value made = registry.invoke(u"getNewCPPAdapter", {Value(u"a")});
  ASSERT_TRUE(made.is<Adapter>());
  EXPECT_EQ(ProbeAdapter::labelOf(made.as<Adapter>()), "a'1");
  EXPECT_EQ(ProbeAdapter::labelOf(registry.getNewCPPAdapter(u"a")), "a'2");
  EXPECT_EQ(registry.invoke(u"getNewCPPAdapter", {Value(u"c")}), Value(Adapter()));

  EXPECT_EQ(registry.invoke(u"getCPPAdapterForStaticUse", {Value(u"b")}), Value(b));
  EXPECT_EQ(registry.getCPPAdapterForStaticUse(u"b"), b);
  EXPECT_EQ(registry.invoke(u"getCPPAdapterForStaticUse", {Value(u"c")}), Value(Adapter()));

  EXPECT_EQ(registry.invoke(u"getCPPAdapterStaticForSource", {Value(u"x.test")}), Value(Adapters{a, b}));
  EXPECT_EQ(registry.getCPPAdapterStaticForSource(u"x.test"), (Adapters{a, b}));
  EXPECT_EQ(registry.invoke(u"getCPPAdapterStaticForSource", {Value(u"x.none")}), Value(Adapters{}));
}

TEST_F(AdapterRegistryV2Reflection, AnswersWhatTheTypedOperationsAnswer) {
  registerProbe(u"b", u"s", {u".x", u".y"});
  registerProbe(u"a");

  EXPECT_EQ(registry.invoke(u"getDisplayList", {}), Value(Names{u".test : a", u".x : b", u".y : b"}));
  EXPECT_EQ(registry.getDisplayList(), (Names{u".test : a", u".x : b", u".y : b"}));
  EXPECT_EQ(registry.invoke(u"getAllAdapterNames", {}), Value(Names{u"a", u"b"}));
  EXPECT_EQ(registry.getAllAdapterNames(), (Names{u"a", u"b"}));
  for (const std::u16string name : {u"a", u"A"}) {
    EXPECT_EQ(registry.invoke(u"isAdapterRegisteredByName", {Value(name)}), Value(name == u"a"));
    EXPECT_EQ(registry.isAdapterRegisteredByName(name), name == u"a");
  }
  for (const std::u16string extension : {u".X", u"X"}) {
    EXPECT_EQ(registry.invoke(u"isAdapterRegisteredByExtension", {Value(extension)}),
              Value(extension == u".X"));
    EXPECT_EQ(registry.isAdapterRegisteredByExtension(extension), extension == u".X");
  }
}

TEST_F(AdapterRegistryV2Reflection, RefusesAnAdapterOfAnotherType) {
  EXPECT_EQ(raisedBy([&] { registry.invoke(u"registerCPPAdapter", {Value(1)}); }),
            "CannotCastIncompatibleTypes(Integer)");
  EXPECT_TRUE(stateOfBroker().empty());
}

TEST_F(AdapterRegistryV2Reflection, HidesItsMap) {
  const Adapter probe = registerProbe(u"a");
  const std::string name = "nd.data.adapter.AdapterRegistryV2.CPPRegistry)";
  EXPECT_EQ(raisedBy([&] { registry.getPropertyValue(u"CPPRegistry"); }), "InvalidValue(" + name);
  EXPECT_EQ(raisedBy([&] { registry.hasPropertyValue(u"CPPRegistry"); }), "InvalidValue(" + name);
  EXPECT_EQ(raisedBy([&] {
              registry.setPropertyValue(u"CPPRegistry", Value(std::vector<lx::base::ModelElement>{}));
            }),
            "CannotSetReadOnlyProperty(" + name);
  EXPECT_EQ(stateOfBroker(), Lines{"registered a: a"});
}

}  // namespace
