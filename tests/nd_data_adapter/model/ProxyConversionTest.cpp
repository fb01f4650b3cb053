#include "nd_data_adapter/model/AdapterConfig.h"
#include "platform/host/Workspace.h"
#include "tests/nd_data_adapter/model/Probe.h"
#include "tests/nd_data_adapter/model/Recorder.h"

using namespace model_test;
using nd::data::adapter::AdapterConfig;
using testing::ElementsAre;

namespace {

/// A container with a value in each of its properties.
DataContainer filledContainer(const Model& model, const Model& data) {
  const DataContainer container = containerOf(model, {u"m", u"n"});
  container.getConditionControlsMutable().assign({u"c", u"d"});
  container.setDataCache(inCreateWorkspace(1));
  container.setConditionalCache(inCreateWorkspace(1));
  container.setDataModel(data);
  return container;
}

TEST(ConvertToProxy, LeavesTheZeroOfEveryValue) {
  const Model model = Model::create(), data = Model::create();
  const DataContainer container = filledContainer(model, data);
  container.impl()->convertToProxy();
  EXPECT_EQ(container.dataCache(), nullptr);
  EXPECT_EQ(container.conditionalCache(), nullptr);
  EXPECT_FALSE(container.dataModel());
  EXPECT_TRUE(container.conditionControls().empty());
  EXPECT_EQ(container.getPropertyValue(u"ConditionControls"), Value(Texts{}));
  EXPECT_FALSE(container.hasPropertyValue(u"ConditionControls"));
  EXPECT_TRUE(container.metaDataCache().empty());

  const AdapterConfig config =
      AdapterConfig::Builder(model).setSection(u"s").setSupportsReading(true).create();
  config.impl()->convertToProxy();
  EXPECT_EQ(config.section(), u"");
  EXPECT_FALSE(config.supportsReading());
}

TEST(ConvertToProxy, DestroysAllThatTheElementContains) {
  std::vector<std::string> log;
  const Model model = Model::create();
  const MetaDataEntry entry = MetaDataEntry::create(model);
  const ChangeReport report = reportOf(model, {u"a"});
  const auto told = createProbe<ChangeTuple>(model, [&](const ChangeTuple&) { log.push_back("told"); });
  report.getChangesMutable().add(told);
  entry.setValue(report);
  entry.impl()->convertToProxy();
  EXPECT_FALSE(report.isAlive());
  EXPECT_FALSE(told.isAlive());
  EXPECT_FALSE(entry.value());
  EXPECT_THAT(log, ElementsAre("told"));
  EXPECT_EQ(model.impl()->elements(), std::vector<ModelElement>{entry});
}

TEST(ConvertToProxy, DestroysAlsoWhatItsContentsAddMeanwhile) {
  const Model model = Model::create();
  const ChangeReport report = ChangeReport::create(model);
  report.getChangesMutable().add(createProbe<ChangeTuple>(
      model, [&](const ChangeTuple&) { report.createIntoChanges(ChangeTuple::Builder()); }));
  report.impl()->convertToProxy();
  EXPECT_TRUE(report.changes().empty());
  EXPECT_EQ(model.impl()->elements(), std::vector<ModelElement>{report});
}

TEST(ConvertToProxy, IsUndoneWithValuesContentsAndLife) {
  const Model model = Model::create(), data = Model::create();
  const DataContainer container = filledContainer(model, data);
  container.metaDataCache().first().setValue(reportOf(model, {u"a"}));
  const std::string before = stateOf(model);
  {
    const Transaction open = begin(model);
    container.impl()->convertToProxy();
    EXPECT_TRUE(container.isProxy());
    EXPECT_NE(stateOf(model), before);
  }
  EXPECT_FALSE(container.isProxy());
  EXPECT_EQ(stateOf(model), before);
  container.getConditionControlsMutable().add(u"writable");
  EXPECT_EQ(container.conditionControls().values(), (Texts{u"c", u"d", u"writable"}));
}

TEST(ConvertToProxy, ChangesNothingWhenAContentRefusesToGo) {
  const Model model = Model::create();
  const DataContainer container = containerOf(model, {u"m"});
  container.getConditionControlsMutable().assign({u"c"});
  container.metaDataCache().first().setValue(
      createProbe<ChangeTuple>(model, [](const ChangeTuple&) { throw Refusal(); }));
  const std::string before = stateOf(model);
  EXPECT_THROW(container.impl()->convertToProxy(), Refusal);
  EXPECT_FALSE(container.isProxy());
  EXPECT_EQ(stateOf(model), before);
}

TEST(ConvertToProxy, OfAnElementThatAContentDestroysChangesNothing) {
  const Model model = Model::create();
  const ChangeReport report = ChangeReport::create(model);
  report.getChangesMutable().add(
      createProbe<ChangeTuple>(model, [&](const ChangeTuple&) { report.destroy(); }));
  const std::string before = stateOf(model);
  EXPECT_EQ(raised<lxb::messages::InvalidValue>([&] { report.impl()->convertToProxy(); }),
            "InvalidValue(ModelElement.convertToProxy; the element was destroyed; create another one.)");
  EXPECT_EQ(stateOf(model), before);
  EXPECT_FALSE(report.isProxy());
}

TEST(ConvertToProxy, TellsWhatTheValuesWereAndWhatWasDestroyed) {
  const Model model = Model::create();
  const DataContainer container = containerOf(model, {u"m"});
  container.getConditionControlsMutable().assign({u"c", u"d"});
  Recorder recorder(model);
  recorder.call(container, "container");
  recorder.call(container.metaDataCache().first(), "entry");
  container.impl()->convertToProxy();
  EXPECT_THAT(recorder.take(), ElementsAre("-entry container.ConditionControls was [\"c\" \"d\" ] "
                                           "container.MetaDataCache was [entry]"));
  container.impl()->convertToProxy();
  EXPECT_TRUE(recorder.take().empty());
}

TEST(ConvertToProxy, DropsTheKeyByWhichACollectionHeldTheElement) {
  const Model model = Model::create();
  const auto report = variantsOf(model, {u"a", u"b"});
  const auto held = report.variants().find(u"b");
  Recorder recorder(model);
  recorder.call(report, "report");
  recorder.call(report.variants().find(u"a"), "a");
  recorder.call(held, "held");
  held.impl()->convertToProxy();
  EXPECT_EQ(held.name(), u"");
  EXPECT_EQ(held.previousValue(), u"");
  EXPECT_FALSE(report.variants().find(u"b"));
  EXPECT_EQ(report.variants().keys(), Texts{u"a"});
  EXPECT_THAT(report.variants().proxies(), ElementsAre(held));
  EXPECT_EQ(held.container(), report);
  EXPECT_THAT(recorder.take(), ElementsAre("report.Variants was [a held] held.name was \"b\" "
                                           "held.previousValue was \"1\""));

  const auto loose = ConditionControlChangeEntry::create(model);
  loose.setName(u"c");
  loose.impl()->convertToProxy();
  EXPECT_EQ(loose.name(), u"");
}

TEST(ConvertToProxy, SetsAnElementOfAKeyedCollectionApartWithoutItsKey) {
  const Model model = Model::create();
  const auto report = variantsOf(model, {u"a", u"b", u"c"});
  const auto held = report.variants().find(u"b");
  const std::string before = stateOf(model);
  {
    const Transaction open = begin(model);
    held.impl()->convertToProxy();
    EXPECT_EQ(held.name(), u"");
    EXPECT_FALSE(report.variants().find(u"b"));
    EXPECT_EQ(report.variants().keys(), (Texts{u"a", u"c"}));
    EXPECT_EQ(report.variants().size(), 2U);
    EXPECT_THAT(report.variants().proxies(), ElementsAre(held));
    EXPECT_TRUE(report.variants().contains(held));
    EXPECT_EQ(held.container(), report);
  }
  EXPECT_EQ(stateOf(model), before);
  EXPECT_EQ(report.variants().find(u"b"), held);
  EXPECT_TRUE(report.variants().proxies().empty());
}

TEST(ConvertToProxy, FreesTheKeyForAnother) {
  const Model model = Model::create();
  const DataContainer container = containerOf(model, {u"m"});
  const auto held = container.metaDataCache().first();
  held.impl()->convertToProxy();
  container.createIntoMetaDataCache(MetaDataEntry::Builder().setName(u"m"));
  EXPECT_EQ(container.metaDataCache().size(), 1U);
  EXPECT_NE(container.metaDataCache().find(u"m"), held);
  EXPECT_TRUE(held.isAlive());
}

}  // namespace
