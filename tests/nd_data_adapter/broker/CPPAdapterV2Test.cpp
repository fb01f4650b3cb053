#include <type_traits>
#include <typeinfo>

#include <cxxabi.h>

#include "nd_data_adapter/broker/CPPAdapterV2.h"
#include "nd_data_adapter/model/AdapterError.h"
#include "nd_data_adapter/model/AdapterType.h"
#include "nd_data_adapter/model/ChangeReport.h"
#include "nd_data_adapter/model/ConditionControlChangeReport.h"
#include "nd_data_adapter/model/DataContainer.h"
#include "platform/host/Workspace.h"
#include "platform/host/hv.h"
#include "tests/support/Thrown.h"
#include "tests/support/describe.h"

using namespace nd::data::adapter;
using lx::base::Model;
using support::contentsOf;

namespace {

/// Overrides what has no default, and nothing else.
class Bare : public CPPAdapterV2 {
 public:
  CPPAdapterV2* clone() override { return new Bare; }
  std::u16string getAdapterName() override { return u"Bare"; }
  std::vector<std::u16string> getSupportedExtensions() override { return {u".bare"}; }
  bool isSourceValid(const std::u16string&) override { return true; }
  bool supportsReading(const std::u16string&) override { return true; }
  bool supportsWriting(const std::u16string&) override { return true; }
  bool open(const std::u16string&) override { return true; }
  bool close() override { return true; }
  std::u16string getCurrentChecksum() override { return u""; }
  bool hasData() override { return true; }
  bool getData(const Workspace&, MetaDataCache&, const std::u16string&, AdapterError&) override {
    return true;
  }
  bool writeData(const Workspace&, const Workspace&, MetaDataCache&, const ChangeReport&,
                 AdapterError&) override {
    return true;
  }
};

class Renamed final : public Bare {
 public:
  std::u16string getAdapterName() override { return u"Renamed"; }
};

class CPPAdapterV2Test : public testing::Test {
 protected:
  const Model model = Model::create();
  AdapterError error = AdapterError::create(model);
  const ConditionControlChangeReport report = ConditionControlChangeReport::create(model);
};

TEST(CPPAdapterV2Class, IsAnInterfaceWithoutBaseAndData) {
  EXPECT_TRUE(std::is_abstract_v<CPPAdapterV2>);
  EXPECT_TRUE(std::has_virtual_destructor_v<CPPAdapterV2>);
  EXPECT_TRUE(std::is_destructible_v<CPPAdapterV2>);
  EXPECT_EQ(sizeof(CPPAdapterV2), sizeof(void*));
  // A class with a base would have one of the two classes of type descriptions that derive from this one.
  const std::type_info& type = typeid(CPPAdapterV2);
  EXPECT_TRUE(typeid(type) == typeid(abi::__class_type_info)) << typeid(type).name();
}

TEST(CPPAdapterV2Class, TakesTheArgumentsOfTheContract) {
  using Workspace = const boost::shared_ptr<inWorkSpace_tag>&;
  using MetaData = lx::base::ElementMultimap<std::u16string, MetaDataEntry>&;
  using Text = const std::u16string&;
  using Texts = std::vector<std::u16string>;
  EXPECT_TRUE((std::is_same_v<decltype(&CPPAdapterV2::clone), CPPAdapterV2* (CPPAdapterV2::*)()>));
  EXPECT_TRUE((std::is_same_v<decltype(&CPPAdapterV2::getSectionName), std::u16string (CPPAdapterV2::*)()>));
  EXPECT_TRUE((std::is_same_v<decltype(&CPPAdapterV2::getSupportedExtensions), Texts (CPPAdapterV2::*)()>));
  EXPECT_TRUE((std::is_same_v<decltype(&CPPAdapterV2::open), bool (CPPAdapterV2::*)(Text)>));
  EXPECT_TRUE((std::is_same_v<decltype(&CPPAdapterV2::getData),
                              bool (CPPAdapterV2::*)(Workspace, MetaData, Text, AdapterError&)>));
  EXPECT_TRUE((std::is_same_v<decltype(&CPPAdapterV2::writeData),
                              bool (CPPAdapterV2::*)(Workspace, Workspace, MetaData, const ChangeReport&,
                                                     AdapterError&)>));
  EXPECT_TRUE((std::is_same_v<decltype(&CPPAdapterV2::getConditionalData),
                              bool (CPPAdapterV2::*)(Workspace, const ConditionControlChangeReport&, Text,
                                                     AdapterError&)>));
  EXPECT_TRUE((std::is_same_v<decltype(&CPPAdapterV2::getType), AdapterType (CPPAdapterV2::*)()>));
}

TEST(CPPAdapterV2Class, HandsTheMetaDataOfAContainerToAdapters) {
  const Model model = Model::create();
  const DataContainer container = DataContainer::create(model);
  EXPECT_TRUE((std::is_same_v<decltype(container.getMetaDataCacheMutable()), CPPAdapterV2::MetaDataCache&>));
}

TEST(AdapterTypeEnum, CountsNativeAdaptersAsZeroAndThoseOfTheHostAsOne) {
  EXPECT_EQ(static_cast<int>(AdapterType::CPPAdapter), 0);
  EXPECT_EQ(static_cast<int>(AdapterType::HOBJAdapter), 1);
}

TEST_F(CPPAdapterV2Test, HasItsNameAsSectionAndIsNativeUnlessOverridden) {
  Bare adapter;
  EXPECT_EQ(adapter.getSectionName(), u"Bare");
  EXPECT_EQ(adapter.getType(), AdapterType::CPPAdapter);
}

TEST_F(CPPAdapterV2Test, AsksTheOverridingNameForTheSection) {
  Renamed adapter;
  EXPECT_EQ(adapter.getSectionName(), u"Renamed");
}

TEST_F(CPPAdapterV2Test, HasNoVariantsUnlessOverridden) {
  Bare adapter;
  EXPECT_FALSE(adapter.hasVariants());
  EXPECT_TRUE(adapter.getVariantControls().empty());
}

TEST_F(CPPAdapterV2Test, HasNoExternalSourcesAndIsReadyUnlessOverridden) {
  Bare adapter;
  EXPECT_TRUE(adapter.getExternalSources().empty());
  EXPECT_TRUE(adapter.isReady());
}

TEST_F(CPPAdapterV2Test, HasNoConditionalDataUnlessOverridden) {
  Bare adapter;
  const boost::shared_ptr<inWorkSpace_tag> workspace = inCreateWorkspace(2);
  for (const char* name : {"gain", "offset"}) {
    inAssignInDesiredWS(hvArrayPtr(hvCreateDoubleScalar(1)).get(), name, workspace);
  }
  error.setError(AdapterDiagnostic::HardError, u"message", u"adapter", u"source");

  EXPECT_FALSE(adapter.getConditionalData(workspace, report, u"checksum", error));

  EXPECT_EQ(inGetNumberOfVariables(workspace), 0U);
  EXPECT_EQ(contentsOf(model).front(), "AdapterError Diagnostic=2 ErrorMessage='' Adapter='' SourceFile=''");
}

TEST_F(CPPAdapterV2Test, HasClearedTheWorkspaceWhenItStatesThatItHasNoConditionalData) {
  Bare adapter;
  const boost::shared_ptr<inWorkSpace_tag> workspace = inCreateWorkspace(1);
  inAssignInDesiredWS(hvArrayPtr(hvCreateDoubleScalar(1)).get(), "gain", workspace);
  error.destroy();
  EXPECT_EQ(support::raisedBy([&] { adapter.getConditionalData(workspace, report, u"", error); }),
            "InvalidValue(nd.data.adapter.AdapterError.setError)");
  EXPECT_EQ(inGetNumberOfVariables(workspace), 0U);
}

TEST_F(CPPAdapterV2Test, StatesUnsupportedForConditionalDataWithoutAWorkspaceToo) {
  Bare adapter;
  EXPECT_FALSE(adapter.getConditionalData(nullptr, report, u"", error));
  EXPECT_EQ(error.getId(), AdapterDiagnostic::Unsupported);
}

}  // namespace
