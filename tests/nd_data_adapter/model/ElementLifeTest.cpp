#include "tests/nd_data_adapter/model/ModelTest.h"

using namespace model_test;
using lxb::messages::CannotModifyProxy;
using lxb::messages::InvalidValue;
using testing::StartsWith;

namespace {

/// What a mutator or operation on an element that is gone raises.
std::string gone(const std::string& subject) {
  return "InvalidValue(" + subject + "; the element was destroyed; create another one.)";
}

std::string null(const std::string& subject) {
  return "InvalidValue(" + subject + "; the handle is null; give it an element first.)";
}

std::string frozen(const std::string& subject) {
  return "InvalidValue(" + subject + "; the element's model is frozen; thaw it first.)";
}

std::string proxied(const std::string& subject) {
  return "CannotModifyProxy(" + subject + ")";
}

TEST(Create, GivesALivingElementWithItsDefaults) {
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model);
  EXPECT_TRUE(tuple);
  EXPECT_TRUE(tuple.isAlive());
  EXPECT_FALSE(tuple.isProxy());
  EXPECT_EQ(tuple.getModel(), model);
  EXPECT_FALSE(tuple.container());
  EXPECT_EQ(tuple.x(), ChangeType::Create);
  EXPECT_EQ(tuple.id(), u"");
  EXPECT_EQ(tuple.getMetaClass(), ChangeTuple::metaClass());
  EXPECT_EQ(model.impl()->elements(), std::vector<ModelElement>{tuple});
}

TEST(Create, IsOneTransaction) {
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model);
  EXPECT_EQ(transactions(model), 1U);
}

TEST(Create, RefusesANullOrDeadModelAndNamesTheClass) {
  const Model dead = Model::create();
  dead.destroy();
  for (const Model& model : {Model(), dead}) {
    EXPECT_EQ(raised<InvalidValue>([&] { ChangeTuple::create(model); }),
              "InvalidValue(nd.data.adapter.ChangeTuple.create; the model is null or was destroyed; give one "
              "that is "
              "alive.)");
    EXPECT_THAT(raised<InvalidValue>([&] { ChangeTuple::Builder(model).create(); }),
                StartsWith("InvalidValue(nd.data.adapter.ChangeTuple.Builder.create; "));
  }
}

TEST(Create, RefusesAFrozenModel) {
  const Model model = Model::create();
  Model::Freezer::freeze(model);
  EXPECT_THAT(raised<InvalidValue>([&] { ChangeTuple::create(model); }), StartsWith("InvalidValue("));
  EXPECT_EQ(model.impl()->numberOfElements(), 0U);
}

TEST(Destroy, LeavesTheHandleAndTakesTheLife) {
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model);
  const ModelElement same = tuple;
  tuple.destroy();
  EXPECT_TRUE(tuple);
  EXPECT_FALSE(tuple.isAlive());
  EXPECT_FALSE(same.isAlive());
  EXPECT_EQ(same, tuple);
  EXPECT_EQ(model.impl()->numberOfElements(), 0U);
}

TEST(Destroy, OfWhatIsGoneDoesNothing) {
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model);
  tuple.destroy();
  const std::uint64_t before = transactions(model);
  tuple.destroy();
  EXPECT_EQ(transactions(model), before);
}

TEST(DeadElement, AnswersEveryGetterWithTheTypesZero) {
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model);
  tuple.setX(ChangeType::Delete);
  tuple.setId(u"gain");
  tuple.destroy();
  EXPECT_EQ(tuple.x(), ChangeType{});
  EXPECT_EQ(tuple.id(), u"");
  EXPECT_FALSE(tuple.getModel());
  EXPECT_FALSE(tuple.container());
  EXPECT_EQ(tuple.getMetaClass(), ChangeTuple::metaClass());
}

TEST(DeadElement, HasEmptyCollectionsAndNoReferences) {
  const Model model = Model::create();
  const DataContainer container = containerOf(model, {u"a"});
  container.getConditionControlsMutable().add(u"control");
  container.setDataModel(model);
  const MetaDataEntry entry = container.metaDataCache().first();
  entry.setValue(ChangeTuple::create(model));
  container.destroy();
  EXPECT_TRUE(container.conditionControls().empty());
  EXPECT_TRUE(container.conditionControls().values().empty());
  EXPECT_FALSE(container.hasConditionControls());
  EXPECT_TRUE(container.metaDataCache().empty());
  EXPECT_FALSE(container.hasMetaDataCache());
  EXPECT_FALSE(container.metaDataCache().find(u"a"));
  EXPECT_TRUE(container.metaDataCache().keys().empty());
  EXPECT_FALSE(container.dataModel());
  EXPECT_FALSE(entry.hasValue());
  EXPECT_FALSE(entry.value());
}

TEST(DeadElement, AnswersWithZerosAlsoWhileItsTransactionIsOpen) {
  const Model model = Model::create();
  const ChangeReport report = reportOf(model, {u"a"});
  const ChangeTuple tuple = report.changes().at(0);
  const Transaction open = begin(model);
  report.destroy();
  EXPECT_EQ(report.changes().size(), 0U);
  EXPECT_EQ(tuple.id(), u"");
  EXPECT_FALSE(tuple.isAlive());
  EXPECT_FALSE(tuple.container());
  EXPECT_EQ(report.changes().begin(), report.changes().end());
}

TEST(DeadElement, RefusesEveryMutatorAndNamesClassAndProperty) {
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model);
  const ChangeReport report = ChangeReport::create(model);
  const DataContainer container = DataContainer::create(model);
  const MetaDataEntry entry = MetaDataEntry::create(model);
  auto& changes = report.getChangesMutable();
  auto& controls = container.getConditionControlsMutable();
  for (const ModelElement& each : model.impl()->elements()) each.destroy();

  EXPECT_EQ(raised<InvalidValue>([&] { tuple.setId(u""); }), gone("nd.data.adapter.ChangeTuple.id"));
  EXPECT_EQ(raised<InvalidValue>([&] { tuple.setX(ChangeType::Create); }),
            gone("nd.data.adapter.ChangeTuple.x"));
  EXPECT_EQ(raised<InvalidValue>([&] { report.getChangesMutable(); }),
            gone("nd.data.adapter.ChangeReport.changes"));
  EXPECT_EQ(raised<InvalidValue>([&] { changes.clear(); }), gone("nd.data.adapter.ChangeReport.changes"));
  EXPECT_EQ(raised<InvalidValue>([&] { changes.add(ChangeTuple()); }),
            gone("nd.data.adapter.ChangeReport.changes"));
  EXPECT_EQ(raised<InvalidValue>([&] { report.createIntoChanges(ChangeTuple::Builder()); }),
            gone("nd.data.adapter.ChangeReport.changes"));
  EXPECT_EQ(raised<InvalidValue>([&] { controls.clear(); }),
            gone("nd.data.adapter.DataContainer.ConditionControls"));
  EXPECT_EQ(raised<InvalidValue>([&] { controls.add(u"c"); }),
            gone("nd.data.adapter.DataContainer.ConditionControls"));
  EXPECT_EQ(raised<InvalidValue>([&] { entry.setValue(ModelElement()); }),
            gone("nd.data.adapter.MetaDataEntry.value"));
  EXPECT_EQ(raised<InvalidValue>([&] { entry.setName(u""); }), gone("nd.data.adapter.MetaDataEntry.name"));
  EXPECT_EQ(model.impl()->numberOfElements(), 0U);
}

TEST(DeadElement, RefusesItsOperationsAndNamesThem) {
  const Model model = Model::create();
  const DataContainer container = DataContainer::create(model);
  container.destroy();
  EXPECT_EQ(raised<InvalidValue>([&] { container.destroyContainer(); }),
            gone("nd.data.adapter.DataContainer.destroyContainer"));
}

TEST(DeadElement, RemovesNothingFromACollection) {
  const Model model = Model::create();
  const ChangeReport report = reportOf(model, {u"a", u"b"});
  const ChangeTuple tuple = report.changes().at(0);
  tuple.destroy();
  EXPECT_FALSE(report.getChangesMutable().remove(tuple));
  EXPECT_FALSE(report.changes().contains(tuple));
  EXPECT_EQ(idsOf(report), (Texts{u"b"}));
}

TEST(DeadElement, RefusesMutatorsOnceItsModelIsGone) {
  Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model);
  tuple.setId(u"gain");
  model = Model();
  EXPECT_FALSE(tuple.isAlive());
  EXPECT_EQ(tuple.id(), u"");
  EXPECT_FALSE(tuple.getModel());
  EXPECT_EQ(raised<InvalidValue>([&] { tuple.setId(u"x"); }), gone("nd.data.adapter.ChangeTuple.id"));
  tuple.destroy();
}

TEST(NullHandle, IsNeitherThereNorAliveNorAProxy) {
  const ChangeTuple tuple;
  EXPECT_FALSE(tuple);
  EXPECT_FALSE(tuple.isAlive());
  EXPECT_FALSE(tuple.isProxy());
  EXPECT_EQ(tuple, ModelElement());
  tuple.addRef();
  tuple.removeRef();
}

TEST(NullHandle, RefusesEveryOperationAndNamesIt) {
  const ChangeTuple tuple;
  const ChangeReport report;
  const DataContainer container;
  EXPECT_EQ(raised<InvalidValue>([&] { tuple.id(); }), null("nd.data.adapter.ChangeTuple.id"));
  EXPECT_EQ(raised<InvalidValue>([&] { tuple.setId(u"a"); }), null("nd.data.adapter.ChangeTuple.id"));
  EXPECT_EQ(raised<InvalidValue>([&] { report.changes(); }), null("nd.data.adapter.ChangeReport.changes"));
  EXPECT_EQ(raised<InvalidValue>([&] { report.hasChanges(); }), null("nd.data.adapter.ChangeReport.changes"));
  EXPECT_EQ(raised<InvalidValue>([&] { report.getChangesMutable(); }),
            null("nd.data.adapter.ChangeReport.changes"));
  EXPECT_EQ(raised<InvalidValue>([&] { report.createIntoChanges(ChangeTuple::Builder()); }),
            null("nd.data.adapter.ChangeReport.changes"));
  EXPECT_EQ(raised<InvalidValue>([&] { container.destroyContainer(); }),
            null("nd.data.adapter.DataContainer.destroyContainer"));
}

TEST(NullHandle, RefusesTheOperationsOfTheRootAndNamesThem) {
  const ModelElement none;
  EXPECT_EQ(raised<InvalidValue>([&] { none.getModel(); }), null("ModelElement.getModel"));
  EXPECT_EQ(raised<InvalidValue>([&] { none.getMetaClass(); }), null("ModelElement.getMetaClass"));
  EXPECT_EQ(raised<InvalidValue>([&] { none.identifier(); }), null("ModelElement.identifier"));
  EXPECT_EQ(raised<InvalidValue>([&] { none.container(); }), null("ModelElement.container"));
  EXPECT_EQ(raised<InvalidValue>([&] { none.destroy(); }), null("ModelElement.destroy"));
  EXPECT_EQ(raised<InvalidValue>([&] { none.getPropertyValue(u"id"); }),
            null("ModelElement.getPropertyValue"));
  EXPECT_EQ(raised<InvalidValue>([&] { none.hasPropertyValue(u"id"); }),
            null("ModelElement.hasPropertyValue"));
  EXPECT_EQ(raised<InvalidValue>([&] { none.setPropertyValue(u"id", Value(u"")); }),
            null("ModelElement.setPropertyValue"));
  EXPECT_EQ(raised<InvalidValue>([&] { none.invoke(u"getId", {}); }), null("ModelElement.invoke"));
}

TEST(Handle, SharesTheElementAndKeepsItsMemory) {
  ChangeTuple kept;
  {
    const Model model = Model::create();
    kept = ChangeTuple::create(model);
    ChangeTuple moved = kept;
    const ChangeTuple last = std::move(moved);
    EXPECT_FALSE(moved);  // NOLINT(bugprone-use-after-move): this is what is tested
    last.setId(u"shared");
    EXPECT_EQ(kept.id(), u"shared");
  }
  EXPECT_TRUE(kept);
  EXPECT_FALSE(kept.isAlive());
  EXPECT_EQ(kept.id(), u"");
}

TEST(Handle, KeepsTheMemoryThatAReferenceAddedByHandHolds) {
  const Model model = Model::create();
  ChangeTuple::Impl* impl = nullptr;
  {
    const ChangeTuple tuple = ChangeTuple::create(model);
    tuple.addRef();
    impl = tuple.impl();
    tuple.destroy();
  }
  EXPECT_FALSE(impl->isAlive());
  impl->removeRef();
}

TEST(Handle, SurvivesAssignmentToItself) {
  const Model model = Model::create();
  ChangeTuple tuple = ChangeTuple::create(model);
  const ChangeTuple& same = tuple;
  tuple = same;
  EXPECT_TRUE(tuple.isAlive());
  ChangeTuple& alias = tuple;
  tuple = std::move(alias);
  EXPECT_TRUE(tuple.isAlive());
}

TEST(Handle, KeepsNoElementAliveWhoseModelGoes) {
  ChangeReport report;
  {
    const Model model = Model::create();
    report = reportOf(model, {u"a", u"b"});
  }
  EXPECT_FALSE(report.isAlive());
  EXPECT_EQ(report.changes().size(), 0U);
}

TEST(FrozenModel, RefusesEveryMutatorAndLeavesEverythingAsItWas) {
  const Model model = Model::create();
  const ChangeReport report = reportOf(model, {u"a"});
  const ChangeTuple tuple = report.changes().at(0);
  const DataContainer container = containerOf(model, {u"m"});
  auto& changes = report.getChangesMutable();
  const std::string before = stateOf(model);
  Model::Freezer::freeze(model);
  EXPECT_EQ(raised<InvalidValue>([&] { tuple.setId(u"b"); }), frozen("nd.data.adapter.ChangeTuple.id"));
  EXPECT_EQ(raised<InvalidValue>([&] { changes.clear(); }), frozen("nd.data.adapter.ChangeReport.changes"));
  EXPECT_EQ(raised<InvalidValue>([&] { container.getMetaDataCacheMutable(); }),
            frozen("nd.data.adapter.DataContainer.MetaDataCache"));
  EXPECT_THAT(raised<InvalidValue>([&] { tuple.destroy(); }),
              StartsWith("InvalidValue(Model.beginTransaction; "));
  EXPECT_TRUE(tuple.isAlive());
  EXPECT_EQ(stateOf(model), before);
  const Model::Thawer thawed = Model::Freezer::thaw(model);
  tuple.setId(u"b");
  EXPECT_EQ(tuple.id(), u"b");
}

TEST(FrozenModel, GivesAnElementItsIdentity) {
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model);
  Model::Freezer::freeze(model);
  EXPECT_FALSE(tuple.identifier().is_nil());
}

/// Makes children in a report and in an entry of a model to which something was done, so that they refuse it
/// by a message of class M, said of their properties. That neither begins a transaction nor makes anything,
/// and leaves the builder without a model, or with the one that it has.
template <class M>
void expectNoChildren(void (*act)(const Model& model), std::string (*refusal)(const std::string& subject)) {
  const Model model = Model::create();
  const ChangeReport report = ChangeReport::create(model);
  const MetaDataEntry entry = MetaDataEntry::create(model);
  act(model);
  const std::uint64_t begun = transactions(model);
  const std::size_t elements = model.impl()->numberOfElements();
  for (const Model& own : {Model(), Model::create()}) {
    ChangeTuple::BuilderWrapper wrapper{ChangeTuple::Builder()};
    wrapper.setModel(own);
    EXPECT_EQ(raised<M>([&] { report.createIntoChanges(wrapper); }),
              refusal("nd.data.adapter.ChangeReport.changes"));
    EXPECT_EQ(wrapper.builder()->getModel(), own);
    EXPECT_EQ(raised<M>([&] { entry.createIntoValue(wrapper); }),
              refusal("nd.data.adapter.MetaDataEntry.value"));
    EXPECT_EQ(wrapper.builder()->getModel(), own);
  }
  EXPECT_EQ(transactions(model), begun);
  EXPECT_EQ(model.impl()->numberOfElements(), elements);
}

TEST(Proxy, RefusesToMakeChildren) {
  const auto makeProxies = [](const Model& model) {
    for (const ModelElement& each : model.impl()->elements()) each.impl()->convertToProxy();
  };
  expectNoChildren<CannotModifyProxy>(makeProxies, proxied);
}

TEST(DeadElement, RefusesToMakeChildren) {
  const auto destroyAll = [](const Model& model) {
    for (const ModelElement& each : model.impl()->elements()) each.destroy();
  };
  expectNoChildren<InvalidValue>(destroyAll, gone);
}

TEST(FrozenElement, RefusesToMakeChildren) {
  expectNoChildren<InvalidValue>(Model::Freezer::freeze, frozen);
}

}  // namespace
