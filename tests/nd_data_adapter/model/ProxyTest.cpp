#include "nd_data_adapter/model/AdapterConfig.h"
#include "nd_data_adapter/model/AdapterError.h"
#include "tests/nd_data_adapter/model/ModelTest.h"

using namespace model_test;
using lxb::messages::CannotModifyProxy;

namespace {

/// What a mutator on a proxy raises.
std::string refused(const std::string& property) {
  return "CannotModifyProxy(nd.data.adapter." + property + ")";
}

TEST(Proxy, KeepsClassIdentityAndLife) {
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model);
  const auto uuid = tuple.identifier();
  tuple.impl()->convertToProxy();
  EXPECT_TRUE(tuple.isProxy());
  EXPECT_TRUE(tuple.impl()->isProxy());
  EXPECT_EQ(tuple.getMetaClass(), ChangeTuple::metaClass());
  EXPECT_EQ(tuple.identifier(), uuid);
  EXPECT_EQ(tuple.impl()->getProxyId(), uuid);
}

TEST(Proxy, RefusesEverySetterAlsoForAnEqualValue) {
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model);
  const auto entry = ConditionControlChangeEntry::create(model);
  const auto config = nd::data::adapter::AdapterConfig::create(model);
  const auto error = nd::data::adapter::AdapterError::create(model);
  const DataContainer container = DataContainer::create(model);
  const MetaDataEntry metadata = MetaDataEntry::create(model);
  for (const ModelElement& each : model.impl()->elements()) each.impl()->convertToProxy();
  const std::uint64_t begun = transactions(model);

  EXPECT_EQ(raised<CannotModifyProxy>([&] { tuple.setId(u""); }), refused("ChangeTuple.id"));
  EXPECT_EQ(raised<CannotModifyProxy>([&] { tuple.setId(u"new"); }), refused("ChangeTuple.id"));
  EXPECT_EQ(raised<CannotModifyProxy>([&] { tuple.setX(ChangeType::Create); }), refused("ChangeTuple.x"));
  EXPECT_EQ(raised<CannotModifyProxy>([&] { entry.setName(u""); }),
            refused("ConditionControlChangeEntry.name"));
  EXPECT_EQ(raised<CannotModifyProxy>([&] { config.setSupportsReading(false); }),
            refused("AdapterConfig.supportsReading"));
  EXPECT_EQ(raised<CannotModifyProxy>([&] { error.impl()->setDiagnostic({}); }),
            refused("AdapterError.Diagnostic"));
  EXPECT_EQ(raised<CannotModifyProxy>([&] { error.setError({}, u"", u"", u""); }),
            refused("AdapterError.Diagnostic"));
  EXPECT_EQ(raised<CannotModifyProxy>([&] { container.setDataCache(nullptr); }),
            refused("DataContainer.DataCache"));
  EXPECT_EQ(raised<CannotModifyProxy>([&] { container.setDataModel(Model()); }),
            refused("DataContainer.DataModel"));
  EXPECT_EQ(raised<CannotModifyProxy>([&] { metadata.setValue(ModelElement()); }),
            refused("MetaDataEntry.value"));
  EXPECT_EQ(raised<CannotModifyProxy>([&] { tuple.setPropertyValue(u"id", Value(u"")); }),
            refused("ChangeTuple.id"));
  EXPECT_EQ(transactions(model), begun);
}

TEST(Proxy, GivesNoWritableCollection) {
  const Model model = Model::create();
  const ChangeReport report = ChangeReport::create(model);
  const DataContainer container = DataContainer::create(model);
  report.impl()->convertToProxy();
  container.impl()->convertToProxy();
  EXPECT_EQ(raised<CannotModifyProxy>([&] { report.getChangesMutable(); }), refused("ChangeReport.changes"));
  EXPECT_EQ(raised<CannotModifyProxy>([&] { container.getMetaDataCacheMutable(); }),
            refused("DataContainer.MetaDataCache"));
  EXPECT_EQ(raised<CannotModifyProxy>([&] { container.getConditionControlsMutable(); }),
            refused("DataContainer.ConditionControls"));
}

TEST(Proxy, RefusesEveryMutatorOfACollectionThatWasTakenBefore) {
  const Model model = Model::create();
  const ChangeReport report = reportOf(model, {u"a"});
  const DataContainer container = containerOf(model, {u"m"});
  container.getConditionControlsMutable().add(u"c");
  auto& changes = report.getChangesMutable();
  auto& metadata = container.getMetaDataCacheMutable();
  auto& controls = container.getConditionControlsMutable();
  const ChangeTuple held = changes.at(0), tuple = ChangeTuple::create(model);
  const MetaDataEntry heldEntry = metadata.first(), entry = MetaDataEntry::create(model);
  report.impl()->convertToProxy();
  container.impl()->convertToProxy();
  const std::size_t elements = model.impl()->numberOfElements();

  EXPECT_EQ(raised<CannotModifyProxy>([&] { changes.add(tuple); }), refused("ChangeReport.changes"));
  EXPECT_EQ(raised<CannotModifyProxy>([&] { changes.insert(0, tuple); }), refused("ChangeReport.changes"));
  EXPECT_EQ(raised<CannotModifyProxy>([&] { changes.add(held); }), refused("ChangeReport.changes"));
  EXPECT_EQ(raised<CannotModifyProxy>([&] { changes.clear(); }), refused("ChangeReport.changes"));
  EXPECT_EQ(raised<CannotModifyProxy>([&] { changes.remove(held); }), refused("ChangeReport.changes"));
  EXPECT_EQ(raised<CannotModifyProxy>([&] { metadata.add(entry); }), refused("DataContainer.MetaDataCache"));
  EXPECT_EQ(raised<CannotModifyProxy>([&] { metadata.clear(); }), refused("DataContainer.MetaDataCache"));
  EXPECT_EQ(raised<CannotModifyProxy>([&] { metadata.remove(heldEntry); }),
            refused("DataContainer.MetaDataCache"));
  EXPECT_EQ(raised<CannotModifyProxy>(
                [&] { metadata.createInto(MetaDataEntry::BuilderWrapper(MetaDataEntry::Builder())); }),
            refused("DataContainer.MetaDataCache"));
  EXPECT_EQ(raised<CannotModifyProxy>([&] { controls.add(u"d"); }),
            refused("DataContainer.ConditionControls"));
  EXPECT_EQ(raised<CannotModifyProxy>([&] { controls.assign({u"c"}); }),
            refused("DataContainer.ConditionControls"));
  EXPECT_EQ(raised<CannotModifyProxy>([&] { controls.clear(); }), refused("DataContainer.ConditionControls"));
  EXPECT_EQ(model.impl()->numberOfElements(), elements);
  EXPECT_FALSE(held.isAlive()) << "what a proxy contained has gone";
}

TEST(Proxy, RefusesEveryMutatorOfAnEmptyCollectionThatWasTakenBefore) {
  const Model model = Model::create();
  const ChangeReport report = ChangeReport::create(model);
  auto& changes = report.getChangesMutable();
  report.impl()->convertToProxy();
  EXPECT_EQ(raised<CannotModifyProxy>([&] { changes.clear(); }), refused("ChangeReport.changes"));
}

TEST(Proxy, RefusesTheRemovalOfWhatItsCollectionDoesNotHold) {
  const Model model = Model::create();
  const ChangeReport report = ChangeReport::create(model);
  const DataContainer container = DataContainer::create(model);
  auto& changes = report.getChangesMutable();
  auto& metadata = container.getMetaDataCacheMutable();
  report.impl()->convertToProxy();
  container.impl()->convertToProxy();
  const ChangeTuple tuple = ChangeTuple::create(model);
  const MetaDataEntry entry = MetaDataEntry::create(model);
  EXPECT_EQ(raised<CannotModifyProxy>([&] { changes.remove(tuple); }), refused("ChangeReport.changes"));
  EXPECT_EQ(raised<CannotModifyProxy>([&] { changes.remove(ChangeTuple()); }),
            refused("ChangeReport.changes"));
  EXPECT_EQ(raised<CannotModifyProxy>([&] { metadata.remove(entry); }),
            refused("DataContainer.MetaDataCache"));
  EXPECT_TRUE(tuple.isAlive());
  EXPECT_TRUE(entry.isAlive());
}

TEST(BuilderOfAChild, IsGivenTheModelOfTheElementThatTakesTheChild) {
  const Model model = Model::create();
  const ChangeTuple::BuilderWrapper inSequence{ChangeTuple::Builder()}, alone{ChangeTuple::Builder()};
  ChangeReport::create(model).createIntoChanges(inSequence);
  MetaDataEntry::create(model).createIntoValue(alone);
  EXPECT_EQ(inSequence.builder()->getModel(), model);
  EXPECT_EQ(alone.builder()->getModel(), model);
}

TEST(Proxy, RefusesTheChangeOfAKeyThatACollectionWouldReadAgain) {
  const Model model = Model::create();
  const auto report = variantsOf(model, {u"a"});
  const auto entry = report.variants().first();
  entry.impl()->convertToProxy();
  EXPECT_EQ(raised<CannotModifyProxy>([&] { entry.setName(u"b"); }),
            refused("ConditionControlChangeEntry.name"));
}

TEST(Proxy, StandsInASequenceLikeAnyElement) {
  const Model model = Model::create();
  const ChangeReport report = reportOf(model, {u"a"});
  const ChangeTuple tuple = ChangeTuple::create(model);
  tuple.impl()->convertToProxy();
  report.getChangesMutable().add(tuple);
  EXPECT_EQ(report.changes().at(1), tuple);
  EXPECT_EQ(tuple.container(), report);
}

}  // namespace
