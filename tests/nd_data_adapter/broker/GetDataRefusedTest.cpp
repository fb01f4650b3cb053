// Reads that come to nothing: of containers and models that can't be written, and of adapters that throw in
// the middle.

#include <stdexcept>

#include "nd_data_adapter/model/MetaDataEntry.h"
#include "platform/foundation/ModelImpl.h"
#include "platform/host/hv.h"
#include "tests/nd_data_adapter/broker/GetDataTest.h"
#include "tests/support/Thrown.h"
#include "tests/support/describe.h"

using namespace nd::data::adapter;
using get_data_test::error;
using get_data_test::noError;
using lx::base::Model;
using support::contentsOf;
using support::isLeftBy;
using support::Lines;
using support::ProbeScript;
using support::raisedBy;

namespace {

using GetDataRefused = get_data_test::GetDataTest;
using Names = std::vector<std::u16string>;
using Workspace = boost::shared_ptr<inWorkSpace_tag>;

// Containers

TEST_F(GetDataRefused, RaisesForAContainerOfAFrozenModelAndAsksNobody) {
  open();
  Model::Freezer::freeze(model);
  EXPECT_EQ(raisedBy([&] { get(); }), "InvalidValue(nd.data.adapter.DataContainer.MetaDataCache)");
  EXPECT_TRUE(calls().empty());
  EXPECT_EQ(controls(), (Names{u"old", u"older"}));
  EXPECT_EQ(contentsOf(tmpModel), Lines{noError});
}

TEST_F(GetDataRefused, RaisesForAContainerThatIsAProxyAndAsksNobody) {
  open();
  container.impl()->convertToProxy();
  EXPECT_EQ(raisedBy([&] { get(); }), "CannotModifyProxy(nd.data.adapter.DataContainer.MetaDataCache)");
  EXPECT_TRUE(calls().empty());
  EXPECT_EQ(contentsOf(tmpModel), Lines{noError});
}

TEST_F(GetDataRefused, StatesUnsupportedForWhatIsNotOpenWhateverTheContainerIs) {
  Model::Freezer::freeze(model);
  EXPECT_EQ(get().getId(), AdapterDiagnostic::Unsupported);
  const Model other = Model::create();
  const DataContainer proxy = DataContainer::create(other);
  proxy.impl()->convertToProxy();
  EXPECT_EQ(AdapterManagerV2::getData(u"x.test", u"s", proxy, u"", tmpModel).getId(),
            AdapterDiagnostic::Unsupported);
  EXPECT_EQ(controls(), (Names{u"old", u"older"}));
}

TEST_F(GetDataRefused, RaisesWhenTheModelOfTheContainerIsFrozenByTheAdapter) {
  open();
  log->at("a'1.getData", [&] { Model::Freezer::freeze(model); });
  EXPECT_EQ(raisedBy([&] { get(); }), "InvalidValue(nd.data.adapter.DataContainer.ConditionControls)");
  EXPECT_EQ(calls(), Lines{"a'1.getData()"});
  EXPECT_EQ(controls(), (Names{u"old", u"older"}));
  EXPECT_EQ(contentsOf(tmpModel), Lines{noError});
}

// Models of the answer

TEST_F(GetDataRefused, RaisesForAFrozenModelOfTheAnswerAndAsksNobody) {
  open();
  Model::Freezer::freeze(tmpModel);
  EXPECT_EQ(raisedBy([&] { get(); }), "InvalidValue(Model.beginTransaction)");
  EXPECT_EQ(raisedBy([&] { get(u"not open"); }), "InvalidValue(Model.beginTransaction)");
  EXPECT_TRUE(calls().empty());
  EXPECT_TRUE(contentsOf(tmpModel).empty());
  EXPECT_EQ(controls(), (Names{u"old", u"older"}));
}

TEST_F(GetDataRefused, GivesTheErrorThatStandsWhenTheAdapterFreezesItsModel) {
  open();
  log->at("a'1.getData", [&] { Model::Freezer::freeze(tmpModel); });
  EXPECT_EQ(get().getId(), AdapterDiagnostic::NoDiagnostic);
  EXPECT_TRUE(controls().empty());
}

// Adapters that throw at the end of their read

TEST_F(GetDataRefused, LeavesWhatAnAdapterGaveAndStatedBeforeItThrew) {
  open();
  const std::exception_ptr thrown = std::make_exception_ptr(std::runtime_error("the source is offline"));
  script.hasVariants = true;
  script.controls = {u"new"};
  script.getData = [&](const Workspace& data, ProbeScript::MetaDataCache& metaData, const std::u16string&,
                       AdapterError& stated) -> bool {
    for (const char* name : {"gain", "offset"})
      inAssignInDesiredWS(hvArrayPtr(hvCreateDoubleScalar(2.5)).get(), name, data);
    metaData.createInto(MetaDataEntry::Builder().setName(u"unit"));
    stated.setError(AdapterDiagnostic::HardError, u"message", u"adapter", u"source");
    std::rethrow_exception(thrown);
  };
  EXPECT_TRUE(isLeftBy(thrown, [&] { get(); }));
  EXPECT_EQ(calls(), Lines{"a'1.getData()"});
  EXPECT_EQ(contentsOf(workspace), (Lines{"gain: 1x1 double = 2.5", "offset: 1x1 double = 2.5"}));
  EXPECT_EQ(container.metaDataCache().keys(), Names{u"unit"});
  EXPECT_EQ(contentsOf(tmpModel), Lines{error(6, "message", "adapter", "source")});
  EXPECT_EQ(controls(), (Names{u"old", u"older"}));
  EXPECT_FALSE(model.impl()->hasOpenTransaction());
  EXPECT_FALSE(tmpModel.impl()->hasOpenTransaction());
}

}  // namespace
