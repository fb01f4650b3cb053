#include <boost/uuid/uuid_io.hpp>

#include "nd_data_adapter/model/ChangeTuple.h"
#include "nd_data_adapter/model/DataContainer.h"
#include "nd_data_adapter/model/MetaDataEntry.h"
#include "platform/foundation/meta/Meta.h"
#include "platform/host/Workspace.h"
#include "platform/host/hv.h"
#include "tests/support/AtEachNotice.h"
#include "tests/support/BrokerTest.h"
#include "tests/support/ModelWatch.h"
#include "tests/support/Thrown.h"
#include "tests/support/describe.h"

using namespace nd::data::adapter;
using lx::base::Model;
using lx::base::Transaction;
using lx::base::ValueFlags;
using support::AtEachNotice;
using support::contentsOf;
using support::Lines;
using support::ModelWatch;
using support::raisedBy;

namespace {

using Names = std::vector<std::u16string>;
using Workspace = boost::shared_ptr<inWorkSpace_tag>;

Workspace makeWorkspace(const std::string& name) {
  Workspace workspace = inCreateWorkspace(1);
  inAssignInDesiredWS(hvArrayPtr(hvCreateDoubleScalar(1)).get(), name, workspace);
  return workspace;
}

class DataContainerTest : public support::BrokerTest {
 protected:
  const Model model = Model::create();
  const DataContainer container = DataContainer::create(model);
};

TEST_F(DataContainerTest, HasItsFivePropertiesInTheirOrder) {
  const std::vector<lx::base::meta::Property> properties = DataContainer::metaClass().getProperties();
  Names names;
  std::vector<ValueFlags> kinds;
  for (const lx::base::meta::Property& property : properties) {
    names.push_back(property.getName());
    kinds.push_back(property.getValueFlags());
  }
  EXPECT_EQ(names,
            (Names{u"DataCache", u"ConditionalCache", u"ConditionControls", u"DataModel", u"MetaDataCache"}));
  EXPECT_EQ(kinds, (std::vector<ValueFlags>{ValueFlags::Single, ValueFlags::Single, ValueFlags::Sequence,
                                            ValueFlags::Single, ValueFlags::Multimap}));
  ASSERT_EQ(properties.size(), 5U);
  EXPECT_EQ(properties[4].getKey(), u"name");
  EXPECT_TRUE(properties[4].traits().isContained);
}

TEST_F(DataContainerTest, IsMadeEmpty) {
  EXPECT_EQ(contentsOf(model),
            Lines{"DataContainer DataCache=none ConditionalCache=none ConditionControls=[] "
                  "DataModel=none MetaDataCache=[]"});
}

TEST_F(DataContainerTest, ComparesWorkspacesByIdentity) {
  const Workspace workspace = makeWorkspace("gain");
  const ModelWatch watch(model);
  container.setDataCache(nullptr);
  EXPECT_EQ(watch.transactions(), 0U);
  container.setDataCache(workspace);
  container.setDataCache(workspace);
  EXPECT_EQ(watch.transactions(), 1U);
  container.setDataCache(makeWorkspace("gain"));
  EXPECT_EQ(watch.transactions(), 2U);
  EXPECT_EQ(contentsOf(workspace), Lines{"gain: 1x1 double = 1"})
      << "a workspace that goes out is left as it is";
}

TEST_F(DataContainerTest, KeepsAnotherModelAlive) {
  Model kept = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(kept);
  container.setDataModel(kept);
  kept = Model();
  EXPECT_TRUE(tuple.isAlive());
  container.setDataModel(Model());
  EXPECT_FALSE(tuple.isAlive());
}

TEST_F(DataContainerTest, KeepsItsOwnModelAliveUntilItLetsGo) {
  Model own = Model::create();
  const DataContainer inside = DataContainer::create(own);
  inside.setDataModel(own);
  own = Model();
  EXPECT_TRUE(inside.isAlive());
  inside.destroyContainer();
  EXPECT_TRUE(inside.isAlive()) << "the model is none of its business";
  EXPECT_TRUE(inside.dataModel());
  inside.setDataModel(Model());
  EXPECT_FALSE(inside.isAlive());
}

TEST_F(DataContainerTest, TakesANameOfAConditionControlTwice) {
  for (const char16_t* name : {u"b", u"a", u"b"}) container.getConditionControlsMutable().add(name);
  EXPECT_EQ(container.conditionControls().values(), (Names{u"b", u"a", u"b"}));
}

// MetaDataCache

TEST_F(DataContainerTest, KeepsMetadataOfOneNameInTheOrderOfAdding) {
  const MetaDataEntry first = container.createIntoMetaDataCache(MetaDataEntry::Builder().setName(u"b"));
  const MetaDataEntry second = container.createIntoMetaDataCache(MetaDataEntry::Builder().setName(u"a"));
  const MetaDataEntry third = container.createIntoMetaDataCache(MetaDataEntry::Builder().setName(u"b"));
  EXPECT_EQ(container.metaDataCache().keys(), (Names{u"a", u"b", u"b"}));
  EXPECT_EQ(container.metaDataCache().findAll(u"b"), (std::vector<MetaDataEntry>{first, third}));
  EXPECT_EQ(container.metaDataCache().first(), second);
}

TEST_F(DataContainerTest, MovesRenamedMetadataBehindItsEquals) {
  const MetaDataEntry first = container.createIntoMetaDataCache(MetaDataEntry::Builder().setName(u"a"));
  const MetaDataEntry second = container.createIntoMetaDataCache(MetaDataEntry::Builder().setName(u"b"));
  first.setName(u"b");
  EXPECT_EQ(container.metaDataCache().findAll(u"b"), (std::vector<MetaDataEntry>{second, first}));
}

TEST_F(DataContainerTest, RefusesMetadataOfAnotherModel) {
  const Model other = Model::create();
  const MetaDataEntry foreign = MetaDataEntry::create(other);
  EXPECT_EQ(raisedBy([&] { container.getMetaDataCacheMutable().add(foreign); }),
            "CannotCreateCrossModelAssociation(nd.data.adapter.DataContainer.MetaDataCache)");
  EXPECT_TRUE(container.metaDataCache().empty());
}

TEST_F(DataContainerTest, DestroysItsMetadataWithItself) {
  const MetaDataEntry entry = container.createIntoMetaDataCache(MetaDataEntry::Builder().setName(u"a"));
  entry.setValue(ChangeTuple::create(model));
  container.destroy();
  EXPECT_FALSE(entry.isAlive());
  EXPECT_EQ(model.impl()->numberOfElements(), 0U);
}

TEST_F(DataContainerTest, GivesAdaptersAllThatTheyNeedToFillTheMetadata) {
  auto& metaData = container.getMetaDataCacheMutable();
  EXPECT_EQ(metaData.getModel(), model);
  const MetaDataEntry entry = metaData.createInto(MetaDataEntry::Builder().setName(u"a"));
  EXPECT_EQ(entry.container(), container);
  const MetaDataEntry own = MetaDataEntry::create(metaData.getModel());
  own.setName(u"b");
  metaData.add(own);
  EXPECT_EQ(metaData.keys(), (Names{u"a", u"b"}));
}

TEST_F(DataContainerTest, MakesMetadataInOneTransactionThatItsObserversHearOfOnce) {
  const ModelWatch watch(model);
  container.createIntoMetaDataCache(MetaDataEntry::Builder().setName(u"a"));
  EXPECT_EQ(watch.notices(), (std::vector<Lines>{{"created nd.data.adapter.MetaDataEntry",
                                                  "changed nd.data.adapter.DataContainer.MetaDataCache"}}));
}

TEST_F(DataContainerTest, LeavesNothingOfMetadataThatCouldNotBeMade) {
  const MetaDataEntry entry = container.createIntoMetaDataCache(MetaDataEntry::Builder().setName(u"a"));
  const Lines before = contentsOf(model);
  EXPECT_EQ(raisedBy([&] {
              container.createIntoMetaDataCache(MetaDataEntry::Builder().setName(u"b"), entry.identifier());
            }),
            "CannotAddSecondObject(The identity " + boost::uuids::to_string(entry.identifier()) + ")");
  EXPECT_EQ(contentsOf(model), before);
  EXPECT_FALSE(model.impl()->hasOpenTransaction());
}

TEST_F(DataContainerTest, TellsWhetherItsListsHoldAnything) {
  EXPECT_FALSE(container.hasConditionControls());
  EXPECT_FALSE(container.hasMetaDataCache());
  container.getConditionControlsMutable().add(u"");
  container.createIntoMetaDataCache(MetaDataEntry::Builder());
  EXPECT_TRUE(container.hasConditionControls());
  EXPECT_TRUE(container.hasMetaDataCache());
}

TEST_F(DataContainerTest, ReadsAsEmptyWhenItIsDead) {
  container.setDataCache(makeWorkspace("gain"));
  container.getConditionControlsMutable().add(u"control");
  container.destroy();
  EXPECT_EQ(container.dataCache(), nullptr);
  EXPECT_TRUE(container.conditionControls().empty());
  EXPECT_TRUE(container.metaDataCache().empty());
  EXPECT_FALSE(container.dataModel());
  EXPECT_EQ(raisedBy([&] { container.setDataCache(nullptr); }),
            "InvalidValue(nd.data.adapter.DataContainer.DataCache)");
}

void expectToLetGoOfAllWhenDestroyed(const DataContainer& container) {
  const Workspace data = makeWorkspace("gain");
  const Workspace conditional = makeWorkspace("offset");
  Model kept = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(kept);
  container.setDataCache(data);
  container.setConditionalCache(conditional);
  container.setDataModel(kept);
  kept = Model();
  ASSERT_TRUE(tuple.isAlive());

  container.destroy();

  EXPECT_EQ(data.use_count(), 1);
  EXPECT_EQ(conditional.use_count(), 1);
  EXPECT_FALSE(tuple.isAlive()) << "its model went with the last handle";
  EXPECT_EQ(contentsOf(data), Lines{"gain: 1x1 double = 1"}) << "a workspace is left as it is";
}

TEST_F(DataContainerTest, LetsGoOfWorkspacesAndModelWhenItIsDestroyedWhileAHandleIsHeld) {
  expectToLetGoOfAllWhenDestroyed(container);
}

TEST_F(DataContainerTest, LetsGoOfWorkspacesAndModelWhenItIsDestroyedUnderObservation) {
  const ModelWatch watch(model);
  expectToLetGoOfAllWhenDestroyed(container);
  EXPECT_EQ(watch.notices().back(), Lines{"destroyed nd.data.adapter.DataContainer"});
}

TEST(MetaDataEntryElement, OwnsItsValue) {
  const Model model = Model::create();
  const MetaDataEntry entry = MetaDataEntry::create(model);
  EXPECT_FALSE(entry.hasValue());
  const ChangeTuple tuple = ChangeTuple::create(model);
  entry.setValue(tuple);
  EXPECT_TRUE(entry.hasValue());
  EXPECT_EQ(entry.value(), tuple);
  EXPECT_EQ(tuple.container(), entry);
  entry.setValue(ChangeTuple::create(model));
  EXPECT_FALSE(tuple.isAlive()) << "a value that is replaced is destroyed";
  entry.destroy();
  EXPECT_EQ(model.impl()->numberOfElements(), 0U);
}

TEST(MetaDataEntryElement, RefusesAValueOfAnotherModel) {
  const Model model = Model::create();
  const Model other = Model::create();
  const MetaDataEntry entry = MetaDataEntry::create(model);
  const ChangeTuple foreign = ChangeTuple::create(other);
  EXPECT_EQ(raisedBy([&] { entry.setValue(foreign); }),
            "CannotCreateCrossModelAssociation(nd.data.adapter.MetaDataEntry.value)");
  EXPECT_FALSE(entry.hasValue());
}

TEST(MetaDataEntryElement, HasItsNameBeforeItsValue) {
  const std::vector<lx::base::meta::Property> properties = MetaDataEntry::metaClass().getProperties();
  ASSERT_EQ(properties.size(), 2U);
  EXPECT_EQ(properties[0].getName(), u"name");
  EXPECT_EQ(properties[1].getName(), u"value");
  EXPECT_TRUE(properties[1].traits().isContained);
}

// destroyContainer

TEST_F(DataContainerTest, ClearsBothWorkspacesAndLetsThemGo) {
  const Workspace data = makeWorkspace("gain");
  const Workspace conditional = makeWorkspace("offset");
  container.setDataCache(data);
  container.setConditionalCache(conditional);
  container.destroyContainer();
  EXPECT_EQ(container.dataCache(), nullptr);
  EXPECT_EQ(container.conditionalCache(), nullptr);
  EXPECT_TRUE(contentsOf(data).empty());
  EXPECT_TRUE(contentsOf(conditional).empty());
  EXPECT_EQ(data.use_count(), 1);
  EXPECT_EQ(conditional.use_count(), 1);
}

TEST_F(DataContainerTest, LetsTheDataGoBeforeTheConditionalData) {
  container.setDataCache(makeWorkspace("gain"));
  container.setConditionalCache(makeWorkspace("offset"));
  const ModelWatch watch(model);
  container.destroyContainer();
  EXPECT_EQ(watch.notices(),
            (std::vector<Lines>{{"changed nd.data.adapter.DataContainer.DataCache"},
                                {"changed nd.data.adapter.DataContainer.ConditionalCache"}}));
}

TEST_F(DataContainerTest, ClearsEachWorkspaceRightBeforeItLetsItGo) {
  const Workspace data = makeWorkspace("gain");
  const Workspace conditional = makeWorkspace("offset");
  container.setDataCache(data);
  container.setConditionalCache(conditional);
  std::vector<Lines> seen;
  const AtEachNotice watch(model, [&] {
    seen.push_back(contentsOf(data));
    seen.push_back(contentsOf(conditional));
    seen.push_back(contentsOf(model));
  });
  container.destroyContainer();
  const auto containerWith = [](const std::string& conditionalCache) {
    return Lines{"DataContainer DataCache=none ConditionalCache=" + conditionalCache +
                 " ConditionControls=[] DataModel=none MetaDataCache=[]"};
  };
  EXPECT_EQ(seen, (std::vector<Lines>{{},
                                      {"offset: 1x1 double = 1"},
                                      containerWith("[offset: 1x1 double = 1]"),
                                      {},
                                      {},
                                      containerWith("none")}));
}

TEST_F(DataContainerTest, LeavesAllButTheWorkspacesAsItIs) {
  const Model kept = Model::create();
  container.setDataCache(makeWorkspace("gain"));
  container.setDataModel(kept);
  container.getConditionControlsMutable().add(u"control");
  const MetaDataEntry entry = container.createIntoMetaDataCache(MetaDataEntry::Builder().setName(u"a"));
  container.destroyContainer();
  EXPECT_TRUE(container.isAlive());
  EXPECT_EQ(container.dataModel(), kept);
  EXPECT_TRUE(kept.isAlive());
  EXPECT_EQ(container.conditionControls().values(), Names{u"control"});
  EXPECT_TRUE(entry.isAlive());
}

TEST_F(DataContainerTest, DoesNothingTheSecondTimeAndWithoutWorkspaces) {
  container.setDataCache(makeWorkspace("gain"));
  container.destroyContainer();
  const ModelWatch watch(model);
  container.destroyContainer();
  DataContainer::create(model).destroyContainer();
  EXPECT_EQ(watch.notices(), (std::vector<Lines>{{"created nd.data.adapter.DataContainer"}}));
}

TEST_F(DataContainerTest, LetsOneWorkspaceGoWhereThereIsOne) {
  container.setConditionalCache(makeWorkspace("offset"));
  container.destroyContainer();
  EXPECT_EQ(container.conditionalCache(), nullptr);
}

TEST_F(DataContainerTest, BearsOneWorkspaceInBothPlaces) {
  const Workspace workspace = makeWorkspace("gain");
  container.setDataCache(workspace);
  container.setConditionalCache(workspace);
  container.destroyContainer();
  EXPECT_EQ(workspace.use_count(), 1);
}

TEST_F(DataContainerTest, GivesTheWorkspacesBackEmptyWhenTheTransactionAroundItIsAbandoned) {
  const Workspace data = makeWorkspace("gain");
  container.setDataCache(data);
  {
    const Transaction abandoned = model.impl()->beginTransaction(false);
    container.destroyContainer();
  }
  EXPECT_EQ(container.dataCache(), data);
  EXPECT_TRUE(contentsOf(data).empty()) << "variables are not the model's";
}

TEST_F(DataContainerTest, KeepsWorkspacesAndVariablesInAFrozenModel) {
  const Workspace data = makeWorkspace("gain");
  const Workspace conditional = makeWorkspace("offset");
  container.setDataCache(data);
  container.setConditionalCache(conditional);
  const Lines before = contentsOf(model);
  Model::Freezer::freeze(model);
  EXPECT_EQ(raisedBy([&] { container.destroyContainer(); }),
            "InvalidValue(nd.data.adapter.DataContainer.DataCache)");
  EXPECT_EQ(contentsOf(model), before);
  EXPECT_EQ(contentsOf(data), Lines{"gain: 1x1 double = 1"});
  EXPECT_EQ(contentsOf(conditional), Lines{"offset: 1x1 double = 1"});
}

TEST_F(DataContainerTest, KeepsALoneConditionalWorkspaceInAFrozenModel) {
  const Workspace conditional = makeWorkspace("offset");
  container.setConditionalCache(conditional);
  Model::Freezer::freeze(model);
  EXPECT_EQ(raisedBy([&] { container.destroyContainer(); }),
            "InvalidValue(nd.data.adapter.DataContainer.ConditionalCache)");
  EXPECT_EQ(container.conditionalCache(), conditional);
  EXPECT_EQ(contentsOf(conditional), Lines{"offset: 1x1 double = 1"});
}

TEST_F(DataContainerTest, DoesNothingInAFrozenModelWhereThereIsNoWorkspace) {
  Model::Freezer::freeze(model);
  EXPECT_EQ(raisedBy([&] { container.destroyContainer(); }), "nothing");
}

TEST_F(DataContainerTest, KeepsTheConditionalWorkspaceOfAModelThatAnObserverFreezesMeanwhile) {
  const Workspace data = makeWorkspace("gain");
  const Workspace conditional = makeWorkspace("offset");
  container.setDataCache(data);
  container.setConditionalCache(conditional);
  {
    const AtEachNotice observer(model, [&] { Model::Freezer::freeze(model); });
    EXPECT_EQ(raisedBy([&] { container.destroyContainer(); }),
              "InvalidValue(nd.data.adapter.DataContainer.ConditionalCache)");
  }
  EXPECT_EQ(container.dataCache(), nullptr);
  EXPECT_EQ(container.conditionalCache(), conditional);
  EXPECT_TRUE(contentsOf(data).empty());
  EXPECT_EQ(contentsOf(conditional), Lines{"offset: 1x1 double = 1"});
}

TEST_F(DataContainerTest, DoesNothingAsAProxyWhichHasNoWorkspaces) {
  const Workspace data = makeWorkspace("gain");
  container.setDataCache(data);
  container.impl()->convertToProxy();
  EXPECT_EQ(raisedBy([&] { container.destroyContainer(); }), "nothing");
  EXPECT_TRUE(container.isProxy());
  EXPECT_EQ(data.use_count(), 1);
  EXPECT_EQ(contentsOf(data), Lines{"gain: 1x1 double = 1"});
}

TEST_F(DataContainerTest, RaisesWhenItIsNullOrDead) {
  const std::string raised = "InvalidValue(nd.data.adapter.DataContainer.destroyContainer)";
  EXPECT_EQ(raisedBy([] { DataContainer().destroyContainer(); }), raised);
  const Workspace data = makeWorkspace("gain");
  container.setDataCache(data);
  container.destroy();
  EXPECT_EQ(raisedBy([&] { container.destroyContainer(); }), raised);
  EXPECT_EQ(contentsOf(data), Lines{"gain: 1x1 double = 1"});
}

}  // namespace
