#include "nd_data_adapter/model/AdapterRegistryV2.h"
#include "nd_data_adapter/model/CPPAdapterV2Entry.h"
#include "nd_data_adapter/model/MetaDataEntry.h"
#include "platform/foundation/meta/Meta.h"
#include "platform/foundation/meta/PropertySerializer.h"
#include "tests/support/BrokerTest.h"
#include "tests/support/ModelWatch.h"
#include "tests/support/Thrown.h"
#include "tests/support/describe.h"

using namespace nd::data::adapter;
using lx::base::Model;
using lx::base::Transaction;
using lx::base::Value;
using support::Lines;
using support::ModelWatch;
using support::raisedBy;

namespace {

class CPPAdapterV2EntryTest : public support::BrokerTest {
 protected:
  CPPAdapterV2Entry addToRegistry(const std::u16string& name) const {
    const CPPAdapterV2Entry entry = CPPAdapterV2Entry::create(model);
    entry.setName(name);
    registry.impl()->getCPPRegistryMutable().add(entry);
    return entry;
  }

  const Model model = Model::create();
  const AdapterRegistryV2 registry = AdapterRegistryV2::create(model);
};

TEST_F(CPPAdapterV2EntryTest, IsMadeWithoutNameAndAdapter) {
  const CPPAdapterV2Entry entry = CPPAdapterV2Entry::create(model);
  EXPECT_EQ(entry.adapterName(), u"");
  EXPECT_EQ(entry.adapter(), nullptr);
}

TEST_F(CPPAdapterV2EntryTest, HasItsNameBeforeItsAdapter) {
  const std::vector<lx::base::meta::Property> properties = CPPAdapterV2Entry::metaClass().getProperties();
  ASSERT_EQ(properties.size(), 2U);
  EXPECT_EQ(properties[0].getName(), u"AdapterName");
  EXPECT_EQ(properties[0].getIndex(), 1U);
  EXPECT_EQ(properties[1].getName(), u"Adapter");
  EXPECT_EQ(properties[1].getIndex(), 2U);
}

TEST_F(CPPAdapterV2EntryTest, HasATransientNameThatReflectionCanNotSet) {
  const lx::base::meta::Property name = CPPAdapterV2Entry::metaClass().property(u"AdapterName");
  EXPECT_TRUE(name.traits().isTransient);
  EXPECT_TRUE(name.traits().isReadOnly);
  EXPECT_FALSE(CPPAdapterV2Entry::metaClass().property(u"Adapter").traits().isTransient);
  const CPPAdapterV2Entry entry = CPPAdapterV2Entry::create(model);
  EXPECT_EQ(raisedBy([&] { entry.setPropertyValue(u"AdapterName", Value(u"a")); }),
            "CannotSetReadOnlyProperty(nd.data.adapter.CPPAdapterV2Entry.AdapterName)");
  EXPECT_EQ(entry.adapterName(), u"");
}

TEST_F(CPPAdapterV2EntryTest, HasAnAdapterThatIsNeverWrittenOut) {
  const lx::base::meta::Property adapter = CPPAdapterV2Entry::metaClass().property(u"Adapter");
  const auto serializer =
      lx::base::meta::PropertySerializerRegistry::getInstance().find(adapter.getType().getQualifiedName());
  ASSERT_NE(serializer, nullptr);
  EXPECT_TRUE(serializer->isTransientOnly());
  EXPECT_EQ(raisedBy([&] { serializer->serializeValue(Value(std::shared_ptr<CPPAdapterV2>())); }),
            "InvalidValue(serializeValue)");
}

TEST_F(CPPAdapterV2EntryTest, TakesANameWithoutTransactionAndNoticeWhileNothingHoldsIt) {
  const CPPAdapterV2Entry entry = CPPAdapterV2Entry::create(model);
  const ModelWatch watch(model);
  entry.setName(u"a");
  entry.setName(u"a");
  entry.setName(u"b");
  EXPECT_EQ(entry.adapterName(), u"b");
  EXPECT_EQ(watch.transactions(), 0U);
  EXPECT_TRUE(watch.notices().empty());
}

TEST_F(CPPAdapterV2EntryTest, KeepsANameThatWasTakenOutsideAnyCollectionWhenATransactionIsAbandoned) {
  const CPPAdapterV2Entry entry = CPPAdapterV2Entry::create(model);
  entry.setName(u"before");
  {
    const Transaction abandoned = model.impl()->beginTransaction(false);
    entry.setName(u"after");
  }
  EXPECT_EQ(entry.adapterName(), u"after");
}

TEST_F(CPPAdapterV2EntryTest, TakesANameAsAProxyToo) {
  const CPPAdapterV2Entry entry = CPPAdapterV2Entry::create(model);
  entry.impl()->convertToProxy();
  EXPECT_EQ(raisedBy([&] { entry.setName(u"a"); }), "nothing");
  EXPECT_EQ(entry.adapterName(), u"a");
}

TEST_F(CPPAdapterV2EntryTest, TakesANameInAFrozenModelUnlessACollectionIsKeyedByIt) {
  const MetaDataEntry holder = MetaDataEntry::create(model);
  const CPPAdapterV2Entry loose = CPPAdapterV2Entry::create(model), held = CPPAdapterV2Entry::create(model);
  holder.setValue(held);
  const CPPAdapterV2Entry registered = addToRegistry(u"a");
  Model::Freezer::freeze(model);
  const ModelWatch watch(model);
  EXPECT_EQ(raisedBy([&] { loose.setName(u"b"); }), "nothing");
  EXPECT_EQ(raisedBy([&] { held.setName(u"b"); }), "nothing");
  EXPECT_EQ(raisedBy([&] { registered.setName(u"b"); }),
            "InvalidValue(nd.data.adapter.CPPAdapterV2Entry.AdapterName)");
  EXPECT_EQ(loose.adapterName(), u"b");
  EXPECT_EQ(held.adapterName(), u"b");
  EXPECT_EQ(registered.adapterName(), u"a");
  EXPECT_EQ(registry.impl()->getCPPRegistry().keys(), (std::vector<std::u16string>{u"a"}));
  EXPECT_EQ(watch.transactions(), 0U);
  EXPECT_TRUE(watch.notices().empty());
}

TEST_F(CPPAdapterV2EntryTest, TakesANameAtOnceWhereAPropertyWithoutKeyHoldsIt) {
  const MetaDataEntry holder = MetaDataEntry::create(model);
  const CPPAdapterV2Entry entry = CPPAdapterV2Entry::create(model);
  holder.setValue(entry);
  const ModelWatch watch(model);
  entry.setName(u"a");
  EXPECT_EQ(watch.transactions(), 0U);
  EXPECT_TRUE(watch.notices().empty());
  {
    const Transaction abandoned = model.impl()->beginTransaction(false);
    entry.setName(u"b");
  }
  EXPECT_EQ(entry.adapterName(), u"b") << "there is nothing to take back";
  EXPECT_EQ(holder.value(), entry);
}

TEST_F(CPPAdapterV2EntryTest, TakesANameAsAProxyWhereAPropertyWithoutKeyHoldsIt) {
  const MetaDataEntry holder = MetaDataEntry::create(model);
  const CPPAdapterV2Entry entry = CPPAdapterV2Entry::create(model);
  holder.setValue(entry);
  entry.impl()->convertToProxy();
  EXPECT_EQ(raisedBy([&] { entry.setName(u"a"); }), "nothing");
}

TEST_F(CPPAdapterV2EntryTest, RefusesAnAdapterAsAProxyAlsoWhenItIsTheSame) {
  const CPPAdapterV2Entry entry = CPPAdapterV2Entry::create(model);
  entry.impl()->convertToProxy();
  const std::string refused = "CannotModifyProxy(nd.data.adapter.CPPAdapterV2Entry.Adapter)";
  EXPECT_EQ(raisedBy([&] { entry.setAdapter(makeProbe(u"a")); }), refused);
  EXPECT_EQ(raisedBy([&] { entry.setAdapter(nullptr); }), refused);
}

TEST_F(CPPAdapterV2EntryTest, MovesInItsCollectionWhenItIsRenamedThere) {
  const CPPAdapterV2Entry first = addToRegistry(u"a");
  addToRegistry(u"b");
  const ModelWatch watch(model);
  first.setName(u"c");
  EXPECT_EQ(registry.impl()->getCPPRegistry().keys(), (std::vector<std::u16string>{u"b", u"c"}));
  EXPECT_EQ(registry.impl()->getCPPRegistry().find(u"c"), first);
  EXPECT_EQ(watch.notices(), (std::vector<Lines>{{"changed nd.data.adapter.CPPAdapterV2Entry.AdapterName",
                                                  "changed nd.data.adapter.AdapterRegistryV2.CPPRegistry"}}));
}

TEST_F(CPPAdapterV2EntryTest, GoesBackToItsPlaceWhenARenamingIsUndone) {
  const CPPAdapterV2Entry first = addToRegistry(u"a");
  addToRegistry(u"b");
  {
    const Transaction abandoned = model.impl()->beginTransaction(false);
    first.setName(u"c");
  }
  EXPECT_EQ(first.adapterName(), u"a");
  EXPECT_EQ(registry.impl()->getCPPRegistry().keys(), (std::vector<std::u16string>{u"a", u"b"}));
}

TEST_F(CPPAdapterV2EntryTest, RefusesTheNameOfAnotherEntryOfItsCollectionBeforeAnythingChanges) {
  const CPPAdapterV2Entry first = addToRegistry(u"a");
  addToRegistry(u"b");
  const ModelWatch watch(model);
  EXPECT_EQ(raisedBy([&] { first.setName(u"b"); }),
            "UniquenessConstraint(nd.data.adapter.AdapterRegistryV2.CPPRegistry)");
  EXPECT_EQ(first.adapterName(), u"a");
  EXPECT_EQ(registry.impl()->getCPPRegistry().keys(), (std::vector<std::u16string>{u"a", u"b"}));
  EXPECT_TRUE(watch.notices().empty());
  EXPECT_FALSE(watch.hasOpenTransaction());
}

TEST_F(CPPAdapterV2EntryTest, MakesNoTransactionForItsOwnNameInACollection) {
  const CPPAdapterV2Entry first = addToRegistry(u"a");
  const ModelWatch watch(model);
  first.setName(u"a");
  EXPECT_EQ(watch.transactions(), 0U);
}

TEST_F(CPPAdapterV2EntryTest, RefusesNameAndAdapterWhenItIsNullOrDead) {
  const CPPAdapterV2Entry dead = CPPAdapterV2Entry::create(model);
  dead.setName(u"a");
  dead.destroy();
  const std::string name = "nd.data.adapter.CPPAdapterV2Entry.";
  for (const CPPAdapterV2Entry& entry : {CPPAdapterV2Entry(), dead}) {
    EXPECT_EQ(raisedBy([&] { entry.setName(u"b"); }), "InvalidValue(" + name + "setName)");
    EXPECT_EQ(raisedBy([&] { entry.setAdapter(makeProbe(u"b")); }), "InvalidValue(" + name + "Adapter)");
    EXPECT_EQ(raisedBy([&] { entry.setAdapter(nullptr); }), "InvalidValue(" + name + "Adapter)");
  }
  EXPECT_EQ(dead.adapterName(), u"");
  EXPECT_EQ(dead.adapter(), nullptr);
}

TEST_F(CPPAdapterV2EntryTest, ComparesAdaptersByIdentity) {
  const CPPAdapterV2Entry entry = CPPAdapterV2Entry::create(model);
  const std::shared_ptr<support::ProbeAdapter> probe = makeProbe(u"a");
  const ModelWatch watch(model);
  entry.setAdapter(nullptr);
  EXPECT_EQ(watch.transactions(), 0U);
  entry.setAdapter(probe);
  EXPECT_EQ(watch.transactions(), 1U);
  EXPECT_EQ(watch.notices(), (std::vector<Lines>{{"changed nd.data.adapter.CPPAdapterV2Entry.Adapter"}}));
  entry.setAdapter(probe);
  EXPECT_EQ(watch.transactions(), 1U);
  entry.setAdapter(makeProbe(u"a"));
  EXPECT_EQ(watch.transactions(), 2U);
  EXPECT_TRUE(calls().empty()) << "nothing is asked of an adapter";
}

TEST_F(CPPAdapterV2EntryTest, HoldsTheOnlyReferenceToItsAdapterAndLetsItGo) {
  const CPPAdapterV2Entry entry = CPPAdapterV2Entry::create(model);
  entry.setAdapter(makeProbe(u"a"));
  EXPECT_EQ(support::ProbeAdapter::live(), 1U);
  entry.destroy();
  EXPECT_EQ(calls(), Lines{"a.~"});
  EXPECT_EQ(entry.adapter(), nullptr);
}

TEST_F(CPPAdapterV2EntryTest, GivesItsAdapterBackWhenATransactionIsAbandoned) {
  const CPPAdapterV2Entry entry = CPPAdapterV2Entry::create(model);
  entry.setAdapter(makeProbe(u"a"));
  {
    const Transaction abandoned = model.impl()->beginTransaction(false);
    entry.setAdapter(makeProbe(u"b"));
    EXPECT_TRUE(calls().empty()) << "the former adapter may be wanted back";
  }
  EXPECT_EQ(calls(), Lines{"b.~"});
  EXPECT_EQ(support::ProbeAdapter::labelOf(entry.adapter()), "a");
}

}  // namespace
