#include "tests/nd_data_adapter/broker/GetDataTest.h"

#include <boost/smart_ptr/weak_ptr.hpp>

#include "nd_data_adapter/model/AdapterCacheV2.h"
#include "nd_data_adapter/model/AdapterRegistryV2.h"
#include "nd_data_adapter/model/MetaDataEntry.h"
#include "platform/host/hv.h"
#include "tests/support/FakeFileSystem.h"
#include "tests/support/FakeFirstGeneration.h"
#include "tests/support/ModelWatch.h"
#include "tests/support/Thrown.h"
#include "tests/support/describe.h"

using namespace nd::data::adapter;
using get_data_test::error;
using get_data_test::noError;
using lx::base::Model;
using lx::base::Transaction;
using support::contentsOf;
using support::FakeFirstGeneration;
using support::Lines;
using support::ModelWatch;
using support::ProbeScript;
using support::raisedBy;

namespace {

using GetData = get_data_test::GetDataTest;

using Names = std::vector<std::u16string>;
using Workspace = boost::shared_ptr<inWorkSpace_tag>;

// The road of an open source

TEST_F(GetData, AsksTheOpenAdapterForItsDataAndThenForVariantsAndNothingMore) {
  FakeFirstGeneration::install(log);
  const auto fileSystem = std::make_shared<support::FakeFileSystem>(log);
  open();
  const lx::services::FileSystem::Replacement replaced(fileSystem);
  get(u"s", u"checksum");
  EXPECT_EQ(calls(), (Lines{"a'1.getData(checksum)", "a'1.hasVariants"}));
  script.hasVariants = true;
  get();
  EXPECT_EQ(calls(), (Lines{"a'1.getData()", "a'1.hasVariants", "a'1.getVariantControls"}));
}

TEST_F(GetData, GivesANewErrorOfTheGivenModelThatStatesNothing) {
  open();
  const AdapterError first = get();
  const AdapterError second = get();
  EXPECT_EQ(first.getId(), AdapterDiagnostic::NoDiagnostic);
  EXPECT_EQ(first.getModel(), tmpModel);
  EXPECT_NE(first, second);
  EXPECT_FALSE(first.identifier().is_nil());
  EXPECT_EQ(contentsOf(tmpModel), (Lines{noError, noError}));
}

TEST_F(GetData, HandsTheAdapterTheContainersOwnCachesAndAClearError) {
  open();
  bool wasCalled = false;
  script.getData = [&](const Workspace& data, ProbeScript::MetaDataCache& metaData,
                       const std::u16string& checksum, AdapterError& stated) {
    wasCalled = true;
    EXPECT_EQ(data, workspace);
    EXPECT_EQ(&metaData, &container.getMetaDataCacheMutable());
    EXPECT_EQ(checksum, u"17");
    EXPECT_TRUE(stated.isAlive());
    EXPECT_EQ(contentsOf(tmpModel), Lines{noError});
    EXPECT_FALSE(tmpModel.impl()->hasOpenTransaction());
    EXPECT_FALSE(model.impl()->hasOpenTransaction());
    return true;
  };
  get(u"s", u"17");
  EXPECT_TRUE(wasCalled);
}

TEST_F(GetData, BringsWhatTheAdapterGives) {
  open();
  script.getData = [](const Workspace& data, ProbeScript::MetaDataCache& metaData, const std::u16string&,
                      AdapterError&) {
    inAssignInDesiredWS(hvArrayPtr(hvCreateDoubleScalar(2.5)).get(), "gain", data);
    metaData.createInto(MetaDataEntry::Builder().setName(u"unit"));
    return true;
  };
  get();
  EXPECT_EQ(contentsOf(workspace), Lines{"gain: 1x1 double = 2.5"});
  EXPECT_EQ(container.metaDataCache().keys(), Names{u"unit"});
}

TEST_F(GetData, ClearsNeitherWorkspaceNorMetadataItself) {
  open();
  inAssignInDesiredWS(hvArrayPtr(hvCreateDoubleScalar(1)).get(), "former", workspace);
  container.createIntoMetaDataCache(MetaDataEntry::Builder().setName(u"former"));
  get();
  EXPECT_EQ(contentsOf(workspace), Lines{"former: 1x1 double = 1"});
  EXPECT_EQ(container.metaDataCache().keys(), Names{u"former"});
}

TEST_F(GetData, DoesNotLookAtTheAnswerOfTheAdapter) {
  open();
  script.getData = [](auto&&...) { return false; };
  EXPECT_EQ(get().getId(), AdapterDiagnostic::NoDiagnostic);
  EXPECT_TRUE(controls().empty());
}

TEST_F(GetData, GivesTheErrorThatTheAdapterStates) {
  open();
  script.hasVariants = true;
  script.controls = {u"new"};
  script.getData = [](const Workspace&, ProbeScript::MetaDataCache&, const std::u16string&,
                      AdapterError& stated) {
    stated.setError(AdapterDiagnostic::NoPermission, u"message", u"adapter", u"source");
    return true;
  };
  const AdapterError result = get();
  EXPECT_EQ(result.getId(), AdapterDiagnostic::NoPermission);
  EXPECT_EQ(contentsOf(tmpModel), Lines{error(4, "message", "adapter", "source")});
  EXPECT_EQ(controls(), (Names{u"old", u"older"})) << "the controls stay";
  EXPECT_EQ(calls(), Lines{"a'1.getData()"}) << "variants are not asked for";
}

TEST_F(GetData, EndsWithAnyValueThatIsNotNoDiagnosticAlsoOneOutsideTheKinds) {
  open();
  script.hasVariants = true;
  script.controls = {u"new"};
  for (const int value : {8, -1}) {
    SCOPED_TRACE(value);
    script.getData = [&](const Workspace&, ProbeScript::MetaDataCache&, const std::u16string&,
                         AdapterError& stated) {
      stated.setError(static_cast<AdapterDiagnostic>(value), u"message", u"adapter", u"source");
      return true;
    };
    const AdapterError result = get();
    EXPECT_EQ(static_cast<int>(result.getId()), value) << "given as it is";
    EXPECT_EQ(calls(), Lines{"a'1.getData()"}) << "variants are not asked for";
    EXPECT_EQ(controls(), (Names{u"old", u"older"}));
  }
}

TEST_F(GetData, TakesTextsWithoutADiagnosticForNoError) {
  open();
  script.getData = [](const Workspace&, ProbeScript::MetaDataCache&, const std::u16string&,
                      AdapterError& stated) {
    stated.setError(AdapterDiagnostic::NoDiagnostic, u"hint", u"adapter", u"source");
    return true;
  };
  get();
  EXPECT_EQ(contentsOf(tmpModel), Lines{error(0, "hint", "adapter", "source")});
  EXPECT_TRUE(controls().empty());
}

TEST_F(GetData, ReadsAnOpeningOfAnEmptySection) {
  registerProbe(u"b", u"");
  open(u"");
  get(u"");
  EXPECT_EQ(calls(), (Lines{"b'1.getData()", "b'1.hasVariants"}));
}

TEST_F(GetData, MakesNoTestOfItsOwnWhetherTheSourceExists) {
  script.sourceIsValid = false;
  script.reads = false;
  script.opens = false;
  AdapterManagerV2::openSource(u"nowhere.test", u"s", {});
  calls();
  AdapterManagerV2::getData(u"nowhere.test", u"s", container, u"", tmpModel);
  EXPECT_EQ(calls(), (Lines{"a'1.getData()", "a'1.hasVariants"}));
}

// Condition controls

TEST_F(GetData, EmptiesTheControlsForAnAdapterWithoutVariants) {
  open();
  get();
  EXPECT_TRUE(controls().empty());
}

TEST_F(GetData, TakesTheControlsInTheAdaptersOrderDuplicatesToo) {
  open();
  script.hasVariants = true;
  script.controls = {u"b", u"a", u"", u"b"};
  get();
  EXPECT_EQ(controls(), (Names{u"b", u"a", u"", u"b"}));
}

TEST_F(GetData, HasEmptiedTheControlsWhenItAsksForVariants) {
  open();
  script.hasVariants = true;
  Names seen{u"unseen"};
  bool wasInTransaction = true;
  log->at("a'1.hasVariants", [&] {
    seen = controls();
    wasInTransaction = model.impl()->hasOpenTransaction();
  });
  get();
  EXPECT_TRUE(seen.empty());
  EXPECT_FALSE(wasInTransaction);
}

TEST_F(GetData, StatesTheControlsInOneStepEach) {
  open();
  script.hasVariants = true;
  script.controls = {u"new"};
  const ModelWatch watch(model);
  get();
  const Lines changed{"changed nd.data.adapter.DataContainer.ConditionControls"};
  EXPECT_EQ(watch.notices(), (std::vector<Lines>{changed, changed})) << "cleared, then filled";
}

TEST_F(GetData, ChangesNothingWhereThereWasAndIsNoControl) {
  open();
  container.getConditionControlsMutable().clear();
  const ModelWatch watch(model);
  get();
  EXPECT_EQ(watch.transactions(), 0U);
}

// Containers

TEST_F(GetData, HandsAnEmptyPointerToTheAdapterWhereThereIsNoWorkspace) {
  open();
  container.setDataCache(nullptr);
  bool wasEmpty = false;
  script.getData = [&](const Workspace& data, auto&&...) {
    wasEmpty = data == nullptr;
    return true;
  };
  EXPECT_EQ(get().getId(), AdapterDiagnostic::NoDiagnostic);
  EXPECT_TRUE(wasEmpty);
  EXPECT_EQ(container.dataCache(), nullptr) << "no workspace is made";
}

TEST_F(GetData, HoldsTheWorkspaceToTheEndOfTheCall) {
  open();
  Workspace own = inCreateWorkspace(1);
  container.setDataCache(own);
  const boost::weak_ptr<inWorkSpace_tag> watched(own);
  own.reset();
  bool wasThere = false;
  script.getData = [&](auto&&...) {
    container.setDataCache(nullptr);
    return true;
  };
  log->at("a'1.hasVariants", [&] { wasThere = !watched.expired(); });
  get();
  EXPECT_TRUE(wasThere);
  EXPECT_TRUE(watched.expired());
}

TEST_F(GetData, LeavesTheContainersOwnModelAlone) {
  open();
  const Model kept = Model::create();
  container.setDataModel(kept);
  const ModelWatch watch(kept);
  get();
  EXPECT_EQ(container.dataModel(), kept);
  EXPECT_EQ(watch.transactions(), 0U);
}

TEST_F(GetData, RaisesForANullContainerAndAsksNobody) {
  open();
  for (const char16_t* section : {u"s", u"not open"}) {
    EXPECT_EQ(
        raisedBy([&] { AdapterManagerV2::getData(u"x.test", section, DataContainer(), u"", tmpModel); }),
        "InvalidValue(nd.data.adapter.DataContainer.DataCache)");
  }
  EXPECT_TRUE(calls().empty());
  EXPECT_EQ(contentsOf(tmpModel), (Lines{noError, noError})) << "one clear error stays of each call";
}

TEST_F(GetData, RaisesForADeadContainerOfAnOpenSourceAndAsksNobody) {
  open();
  container.destroy();
  EXPECT_EQ(raisedBy([&] { get(); }), "InvalidValue(nd.data.adapter.DataContainer.MetaDataCache)");
  EXPECT_TRUE(calls().empty());
  EXPECT_EQ(contentsOf(tmpModel), Lines{noError});
  EXPECT_FALSE(tmpModel.impl()->hasOpenTransaction());
}

TEST_F(GetData, RaisesForANullOrDeadModelAndAsksNobody) {
  open();
  const std::string raised = "InvalidValue(nd.data.adapter.AdapterManagerV2.getData)";
  EXPECT_EQ(raisedBy([&] { AdapterManagerV2::getData(u"x.test", u"s", container, u"", Model()); }), raised);
  tmpModel.destroy();
  EXPECT_EQ(raisedBy([&] { get(); }), raised);
  EXPECT_TRUE(calls().empty());
  EXPECT_EQ(controls(), (Names{u"old", u"older"}));
}

TEST_F(GetData, MakesItsErrorInTheModelOfTheContainerIfThatIsGiven) {
  open();
  const AdapterError result = AdapterManagerV2::getData(u"x.test", u"s", container, u"", model);
  EXPECT_EQ(result.getModel(), model);
}

// Transactions

TEST_F(GetData, BelongsToTransactionsAroundIt) {
  open();
  {
    const Transaction abandoned = tmpModel.impl()->beginTransaction(false);
    const Transaction other = model.impl()->beginTransaction(false);
    get();
    EXPECT_TRUE(controls().empty());
  }
  EXPECT_TRUE(contentsOf(tmpModel).empty());
  EXPECT_EQ(controls(), (Names{u"old", u"older"}));
}

TEST_F(GetData, MakesOneTransactionForTheErrorOfAClearReadAndNoneInTheBrokersModels) {
  open();
  const ModelWatch stated(tmpModel);
  const ModelWatch registry(AdapterRegistryV2::getInstance().getModel());
  const ModelWatch cache(AdapterCacheV2::getInstance().getModel());
  get();
  EXPECT_EQ(stated.transactions(), 1U);
  EXPECT_EQ(stated.notices(), (std::vector<Lines>{{"created nd.data.adapter.AdapterError"}}));
  EXPECT_EQ(registry.transactions(), 0U);
  EXPECT_EQ(cache.transactions(), 0U);
}

TEST_F(GetData, MakesNoTransactionInTheModelOfTheContainerForWhatIsNotOpen) {
  const ModelWatch stated(tmpModel);
  const ModelWatch client(model);
  const ModelWatch registry(AdapterRegistryV2::getInstance().getModel());
  const ModelWatch cache(AdapterCacheV2::getInstance().getModel());
  get();
  EXPECT_EQ(stated.transactions(), 3U) << "the creation, the diagnostic and the source";
  EXPECT_EQ(client.transactions(), 0U);
  EXPECT_EQ(registry.transactions(), 0U);
  EXPECT_EQ(cache.transactions(), 0U);
}

// A source that is not open

TEST_F(GetData, StatesUnsupportedWithTheSourceForWhatIsNotOpen) {
  inAssignInDesiredWS(hvArrayPtr(hvCreateDoubleScalar(1)).get(), "former", workspace);
  EXPECT_EQ(get().getId(), AdapterDiagnostic::Unsupported);
  EXPECT_EQ(contentsOf(tmpModel), Lines{error(2, "", "", "x.test")});
  EXPECT_EQ(controls(), (Names{u"old", u"older"}));
  EXPECT_EQ(contentsOf(workspace), Lines{"former: 1x1 double = 1"});
  EXPECT_TRUE(calls().empty()) << "no prototype is asked";
}

TEST_F(GetData, StatesUnsupportedForAnotherSectionThanTheOpenOne) {
  open();
  EXPECT_EQ(get(u"S").getId(), AdapterDiagnostic::Unsupported);
  EXPECT_EQ(get(u"").getId(), AdapterDiagnostic::Unsupported);
  EXPECT_TRUE(calls().empty());
}

TEST_F(GetData, DoesNotOpenWhatItReads) {
  get();
  EXPECT_EQ(support::stateOfBroker(), Lines{"registered a: a"});
}

TEST_F(GetData, StatesUnsupportedForWhatIsNotOpenAlsoWithADeadContainer) {
  container.destroy();
  EXPECT_EQ(get().getId(), AdapterDiagnostic::Unsupported);
}

TEST_F(GetData, GoesTheRoadOfTheFirstGenerationForWhatIsNotOpen) {
  FakeFirstGeneration& first = FakeFirstGeneration::install(log);
  Workspace seen;
  first.read = [&](const DataContainer& into, const Workspace& data, const AdapterError& stated) {
    EXPECT_EQ(into, container);
    EXPECT_EQ(contentsOf(tmpModel), Lines{noError});
    seen = data;
    stated.setError(AdapterDiagnostic::NoDiagnostic, u"", u"old hand", u"x.test");
  };
  const AdapterError result = get();
  EXPECT_EQ(calls(), Lines{"first.getData(x.test, s)"});
  EXPECT_EQ(seen, workspace);
  EXPECT_EQ(result.getAdapterName(), u"old hand");
  EXPECT_EQ(controls(), (Names{u"old", u"older"})) << "they are that road's business";
}

}  // namespace
