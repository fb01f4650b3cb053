// Adapters that, while they are asked for data, change what the broker works with.

#include "nd_data_adapter/model/MetaDataEntry.h"
#include "platform/services/Diagnostic.h"
#include "tests/nd_data_adapter/broker/GetDataTest.h"
#include "tests/support/Thrown.h"
#include "tests/support/describe.h"

using namespace nd::data::adapter;
using get_data_test::error;
using get_data_test::noError;
using lx::base::Model;
using support::contentsOf;
using support::Lines;
using support::ProbeScript;
using support::raisedBy;

namespace {

using GetDataFromAMeddler = get_data_test::GetDataTest;
using Names = std::vector<std::u16string>;
using Workspace = boost::shared_ptr<inWorkSpace_tag>;

TEST_F(GetDataFromAMeddler, KeepsTheAdapterToTheEndOfTheCallWhenItClosesItsSource) {
  open();
  log->at("a'1.getData", [] { EXPECT_TRUE(AdapterManagerV2::closeSource(u"x.test", u"s", {})); });
  EXPECT_EQ(get().getId(), AdapterDiagnostic::NoDiagnostic);
  EXPECT_EQ(calls(), (Lines{"a'1.getData()", "a'1.hasVariants", "a'1.~"}));
  EXPECT_EQ(support::stateOfBroker(), Lines{"registered a: a"});
}

TEST_F(GetDataFromAMeddler, BearsAnAdapterThatReadsAnotherSourceIntoTheSameContainer) {
  open();
  EXPECT_TRUE(AdapterManagerV2::openSource(u"y.test", u"s", {}));
  script.hasVariants = true;
  script.controls = {u"new"};
  log->at("a'1.getData", [&] { AdapterManagerV2::getData(u"y.test", u"s", container, u"", tmpModel); });
  get();
  EXPECT_EQ(controls(), Names{u"new"});
  EXPECT_EQ(contentsOf(tmpModel), (Lines{noError, noError}));
}

TEST_F(GetDataFromAMeddler, RaisesWhenTheAdapterDestroysWhatIsToBeFilledOrStated) {
  open();
  log->at("a'1.hasVariants", [&] { container.destroy(); });
  script.hasVariants = true;
  script.controls = {u"new"};
  EXPECT_EQ(raisedBy([&] { get(); }), "InvalidValue(nd.data.adapter.DataContainer.ConditionControls)");
  EXPECT_EQ(contentsOf(tmpModel), Lines{noError});
  const DataContainer other = DataContainer::create(model);
  log->at("a'1.getData", [&] { tmpModel.destroy(); });
  EXPECT_EQ(raisedBy([&] { AdapterManagerV2::getData(u"x.test", u"s", other, u"", tmpModel); }),
            "InvalidValue(nd.data.adapter.AdapterError.getId)");
}

TEST_F(GetDataFromAMeddler, RaisesWhenTheAdapterDestroysItsError) {
  open();
  script.getData = [](const Workspace&, ProbeScript::MetaDataCache&, const std::u16string&,
                      AdapterError& stated) {
    stated.destroy();
    return true;
  };
  EXPECT_EQ(raisedBy([&] { get(); }), "InvalidValue(nd.data.adapter.AdapterError.getId)");
  EXPECT_TRUE(contentsOf(tmpModel).empty());
  EXPECT_EQ(controls(), (Names{u"old", u"older"}));
}

TEST_F(GetDataFromAMeddler, RaisesWhenTheAdapterMakesADiagnosticOfItsError) {
  open();
  std::size_t items = 0;
  script.getData = [&](const Workspace&, ProbeScript::MetaDataCache&, const std::u16string&,
                       AdapterError& stated) {
    stated.setError(AdapterDiagnostic::HardError, u"message", u"adapter", u"source");
    ndsvDiagnosticImpl* const diagnostic = AdapterError::convertAdapterErrorsToDiagnostic({stated});
    items = ndsvGetNumItemsInDiagnostic(diagnostic);
    ndsvDestroyDiagnostic(diagnostic);
    return true;
  };
  EXPECT_EQ(raisedBy([&] { get(); }), "InvalidValue(nd.data.adapter.AdapterError.getId)");
  EXPECT_EQ(items, 1U);
  EXPECT_TRUE(contentsOf(tmpModel).empty());
  EXPECT_EQ(controls(), (Names{u"old", u"older"}));
}

// Adapters that take the handles for their own

TEST_F(GetDataFromAMeddler, GivesItsOwnErrorWhenTheAdapterBindsTheHandleToAnother) {
  open();
  AdapterError another = AdapterError::create(model);
  another.setError(AdapterDiagnostic::HardError, u"", u"", u"");
  script.getData = [&](const Workspace&, ProbeScript::MetaDataCache&, const std::u16string&,
                       AdapterError& stated) {
    stated = another;
    return true;
  };
  const AdapterError result = get();
  EXPECT_EQ(result.getModel(), tmpModel);
  EXPECT_EQ(contentsOf(tmpModel), Lines{noError});
  EXPECT_TRUE(controls().empty()) << "what the other one states is none of the read's business";
}

TEST_F(GetDataFromAMeddler, GivesItsOwnErrorWhenTheAdapterSetsTheHandleToNull) {
  open();
  script.getData = [](const Workspace&, ProbeScript::MetaDataCache&, const std::u16string&,
                      AdapterError& stated) {
    stated.setError(AdapterDiagnostic::NoPermission, u"message", u"adapter", u"source");
    stated = AdapterError();
    return true;
  };
  const AdapterError result = get();
  EXPECT_TRUE(result.isAlive());
  EXPECT_EQ(contentsOf(tmpModel), Lines{error(4, "message", "adapter", "source")});
  EXPECT_EQ(controls(), (Names{u"old", u"older"}));
}

TEST_F(GetDataFromAMeddler, FillsTheContainerAlsoWhenTheClientsHandleIsSetToNull) {
  open();
  script.hasVariants = true;
  script.controls = {u"new"};
  DataContainer handle = container;
  script.getData = [&](const Workspace&, ProbeScript::MetaDataCache& metaData, const std::u16string&,
                       AdapterError&) {
    handle = DataContainer();
    metaData.createInto(MetaDataEntry::Builder().setName(u"unit"));
    return true;
  };
  AdapterManagerV2::getData(u"x.test", u"s", handle, u"", tmpModel);
  EXPECT_EQ(controls(), Names{u"new"});
  EXPECT_EQ(container.metaDataCache().keys(), Names{u"unit"});
}

TEST_F(GetDataFromAMeddler, RaisesWhenTheClientsLastHandlesToContainerAndModelAreSetToNull) {
  open();
  Model itsModel = Model::create();
  DataContainer handle = DataContainer::create(itsModel);
  bool wasEmpty = false;
  script.getData = [&](const Workspace&, ProbeScript::MetaDataCache& metaData, const std::u16string&,
                       AdapterError&) {
    handle = DataContainer();
    itsModel = Model();
    wasEmpty = metaData.empty();
    return true;
  };
  EXPECT_EQ(raisedBy([&] { AdapterManagerV2::getData(u"x.test", u"s", handle, u"", tmpModel); }),
            "InvalidValue(nd.data.adapter.DataContainer.ConditionControls)");
  EXPECT_TRUE(wasEmpty) << "the adapter's reference holds as long as the call";
  EXPECT_EQ(contentsOf(tmpModel), Lines{noError});
}

TEST_F(GetDataFromAMeddler, RaisesWhenTheLastHandleToTheModelOfTheErrorIsSetToNull) {
  open();
  Model itsModel = Model::create();
  script.getData = [&](auto&&...) {
    itsModel = Model();
    return true;
  };
  EXPECT_EQ(raisedBy([&] { AdapterManagerV2::getData(u"x.test", u"s", container, u"", itsModel); }),
            "InvalidValue(nd.data.adapter.AdapterError.getId)");
  EXPECT_EQ(controls(), (Names{u"old", u"older"}));
}

}  // namespace
