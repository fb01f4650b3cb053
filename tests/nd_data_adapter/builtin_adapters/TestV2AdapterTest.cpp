#include <array>
#include <functional>
#include <limits>
#include <type_traits>

#include "nd_data_adapter/builtin_adapters/TestV2Adapter.h"
#include "nd_data_adapter/model/AdapterConfig.h"
#include "nd_data_adapter/model/AdapterError.h"
#include "nd_data_adapter/model/AdapterManagerV2.h"
#include "nd_data_adapter/model/AdapterRegistryV2.h"
#include "nd_data_adapter/model/ChangeReport.h"
#include "nd_data_adapter/model/ConditionControlChangeReport.h"
#include "nd_data_adapter/model/DataContainer.h"
#include "platform/host/Workspace.h"
#include "platform/host/hv.h"
#include "tests/support/BrokerTest.h"
#include "tests/support/ModelWatch.h"
#include "tests/support/describe.h"

using namespace nd::data::adapter;
using lx::base::Model;
using support::contentsOf;
using support::Lines;

namespace {

using Names = std::vector<std::u16string>;
using Counts = std::array<int, 12>;  // in the order of the names

constexpr std::array<const char*, 12> CountedNames{"getAdapterName",
                                                   "getSupportedExtensions",
                                                   "getSectionName",
                                                   "isSourceValid",
                                                   "supportsReading",
                                                   "supportsWriting",
                                                   "open",
                                                   "close",
                                                   "getCurrentChecksum",
                                                   "hasData",
                                                   "getData",
                                                   "writeData"};

/// Gives the pointer to a private data member, by the rule that an explicit instantiation may name what is
/// private. No call brings a counter to its limit in a test's time.
template <class Tag, typename Tag::Type Member>
struct PrivateMember {
  friend typename Tag::Type get(Tag) { return Member; }
};

struct Counters {
  using Type = std::array<std::int32_t, 12> TestV2Adapter::*;
  friend Type get(Counters);
};
template struct PrivateMember<Counters, &TestV2Adapter::counters_>;

Lines variables(const Counts& counts) {
  Lines lines;
  for (std::size_t at = 0; at < counts.size(); ++at) {
    lines.push_back(std::string(CountedNames[at]) + ": 1x1 int32 = " + std::to_string(counts[at]));
  }
  return lines;
}

class TestV2AdapterTest : public support::BrokerTest {
 protected:
  /// Reads the counts by a direct call, which counts itself.
  Lines read() {
    const boost::shared_ptr<inWorkSpace_tag> workspace = inCreateWorkspace(12);
    EXPECT_TRUE(adapter.getData(workspace, container.getMetaDataCacheMutable(), u"", error));
    return contentsOf(workspace);
  }

  bool write() {
    return adapter.writeData(nullptr, nullptr, container.getMetaDataCacheMutable(),
                             ChangeReport::create(model), error);
  }

  /// States a failure in the error, which an operation must leave as it is.
  void stateFailure() { error.setError(AdapterDiagnostic::HardError, u"m", u"n", u"s"); }

  /// Describes the error.
  std::string stated() const { return contentsOf(model).at(1); }

  const Model model = Model::create();
  const DataContainer container = DataContainer::create(model);
  AdapterError error = AdapterError::create(model);
  TestV2Adapter adapter;
};

const std::string failure = "AdapterError Diagnostic=6 ErrorMessage='m' Adapter='n' SourceFile='s'";

TEST(TestV2AdapterClass, DerivesFromTheContractInPrivate) {
  EXPECT_TRUE((std::is_base_of_v<CPPAdapterV2, TestV2Adapter>));
  EXPECT_FALSE((std::is_convertible_v<TestV2Adapter*, CPPAdapterV2*>));
}

TEST(TestV2AdapterClass, GivesItselfAsAnAdapterOnly) {
  EXPECT_TRUE((std::is_same_v<decltype(&TestV2Adapter::make), std::shared_ptr<CPPAdapterV2> (*)()>));
  EXPECT_NE(TestV2Adapter::make(), TestV2Adapter::make());
  EXPECT_EQ(TestV2Adapter::make().use_count(), 1);
}

TEST_F(TestV2AdapterTest, HasItsNameExtensionAndSection) {
  EXPECT_EQ(adapter.getAdapterName(), u"TestV2Adapter");
  EXPECT_EQ(adapter.getSupportedExtensions(), Names{u".test"});
  EXPECT_EQ(adapter.getSectionName(), u"TestV2Section");
}

TEST_F(TestV2AdapterTest, SaysYesToEveryString) {
  for (const std::u16string& source : Names{u"a.test", u"", u"#", std::u16string(1, char16_t{0xD800})}) {
    EXPECT_TRUE(adapter.isSourceValid(source));
    EXPECT_TRUE(adapter.supportsReading(source));
    EXPECT_TRUE(adapter.supportsWriting(source));
    EXPECT_TRUE(adapter.open(source));
  }
  EXPECT_TRUE(adapter.close());
  EXPECT_TRUE(adapter.hasData());
  EXPECT_TRUE(write());
  EXPECT_TRUE(adapter.hasVariants());
  EXPECT_TRUE(adapter.isReady());
  EXPECT_EQ(adapter.getType(), AdapterType::CPPAdapter);
}

TEST_F(TestV2AdapterTest, HasThreeExternalSourcesAndTwoControls) {
  EXPECT_EQ(adapter.getExternalSources(), (Names{u"a.test", u"b.test", u"c.test"}));
  EXPECT_EQ(adapter.getVariantControls(), (Names{u"var1", u"var2"}));
}

// Counting

TEST_F(TestV2AdapterTest, CountsEachOperationUnderItsName) {
  const std::vector<std::function<void()>> operations{[&] { adapter.getAdapterName(); },
                                                      [&] { adapter.getSupportedExtensions(); },
                                                      [&] { adapter.getSectionName(); },
                                                      [&] { adapter.isSourceValid(u""); },
                                                      [&] { adapter.supportsReading(u""); },
                                                      [&] { adapter.supportsWriting(u""); },
                                                      [&] { adapter.open(u""); },
                                                      [&] { adapter.close(); },
                                                      [&] { adapter.getCurrentChecksum(); },
                                                      [&] { adapter.hasData(); },
                                                      [&] { read(); },
                                                      [&] { write(); }};
  ASSERT_EQ(operations.size(), CountedNames.size());
  Counts wanted{};
  for (std::size_t at = 0; at < operations.size(); ++at) {
    for (std::size_t times = 0; times <= at; ++times) operations[at]();
    wanted[at] += static_cast<int>(at) + 1;
  }
  wanted[10] += 1;  // the read that shows them
  EXPECT_EQ(read(), variables(wanted));
}

TEST_F(TestV2AdapterTest, CountsNothingForItsOtherOperations) {
  adapter.getExternalSources();
  adapter.hasVariants();
  adapter.getVariantControls();
  adapter.getConditionalData(nullptr, ConditionControlChangeReport::create(model), u"", error);
  adapter.getType();
  adapter.isReady();
  delete adapter.clone();
  EXPECT_EQ(read(), variables({0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0}));
}

TEST_F(TestV2AdapterTest, ShowsAnOpenAndTheReadAndNotTheCloseBehindIt) {
  adapter.open(u"a.test");
  const Lines shown = read();
  adapter.close();
  EXPECT_EQ(shown, variables({0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 1, 0}));
}

TEST_F(TestV2AdapterTest, GivesItsCountsAsInt32Scalars) {
  const boost::shared_ptr<inWorkSpace_tag> workspace = inCreateWorkspace(12);
  adapter.getData(workspace, container.getMetaDataCacheMutable(), u"", error);
  EXPECT_EQ(inGetNumberOfVariables(workspace), 12U);
  for (const char* name : CountedNames) {
    const hvArray* const value = inGetValueFromWorkspace(name, workspace);
    ASSERT_NE(value, nullptr) << name;
    EXPECT_EQ(hvGetClassCode(value), hvClassCode::Int32);
    EXPECT_TRUE(hvIsScalar(value));
    EXPECT_FALSE(hvIsComplex(value));
  }
}

TEST_F(TestV2AdapterTest, LeavesOtherVariablesAndAllArgumentsAlone) {
  const boost::shared_ptr<inWorkSpace_tag> workspace = inCreateWorkspace(12);
  inAssignInDesiredWS(hvArrayPtr(hvCreateDoubleScalar(1)).get(), "former", workspace);
  const support::ModelWatch watch(model);
  adapter.getData(workspace, container.getMetaDataCacheMutable(), u"checksum", error);
  EXPECT_EQ(inGetNumberOfVariables(workspace), 13U);
  EXPECT_EQ(contentsOf(workspace).front(), "former: 1x1 double = 1");
  EXPECT_EQ(watch.transactions(), 0U);
  EXPECT_EQ(error.getId(), AdapterDiagnostic::NoDiagnostic);
}

TEST_F(TestV2AdapterTest, BearsAReadIntoNoWorkspace) {
  EXPECT_TRUE(adapter.getData(nullptr, container.getMetaDataCacheMutable(), u"", error));
  EXPECT_EQ(adapter.getCurrentChecksum(), u"2");
}

TEST_F(TestV2AdapterTest, LeavesAllAloneThatItIsGivenToWrite) {
  const boost::shared_ptr<inWorkSpace_tag> workspace = inCreateWorkspace(1);
  inAssignInDesiredWS(hvArrayPtr(hvCreateDoubleScalar(1)).get(), "former", workspace);
  const ChangeReport diff = ChangeReport::create(model);
  const support::ModelWatch watch(model);
  EXPECT_TRUE(adapter.writeData(workspace, workspace, container.getMetaDataCacheMutable(), diff, error));
  EXPECT_EQ(contentsOf(workspace), Lines{"former: 1x1 double = 1"});
  EXPECT_EQ(watch.transactions(), 0U);
}

// The error is none of its business

TEST_F(TestV2AdapterTest, LeavesTheErrorOfAReadAsItIs) {
  stateFailure();
  read();
  EXPECT_EQ(stated(), failure);
}

TEST_F(TestV2AdapterTest, LeavesTheErrorOfAWriteAsItIs) {
  stateFailure();
  EXPECT_TRUE(write());
  EXPECT_EQ(stated(), failure);
}

TEST_F(TestV2AdapterTest, LeavesTheErrorOfConditionalDataAsItIs) {
  stateFailure();
  EXPECT_TRUE(adapter.getConditionalData(inCreateWorkspace(1), ConditionControlChangeReport::create(model),
                                         u"", error));
  EXPECT_EQ(stated(), failure);
}

// Conditional data

TEST_F(TestV2AdapterTest, WritesOneVariableAsConditionalDataWhateverTheControlsAre) {
  const ConditionControlChangeReport report = ConditionControlChangeReport::create(model);
  report.createIntoVariants(ConditionControlChangeEntry::Builder().setName(u"var1"));
  const boost::shared_ptr<inWorkSpace_tag> workspace = inCreateWorkspace(1);
  const support::ModelWatch watch(model);
  EXPECT_TRUE(adapter.getConditionalData(workspace, report, u"checksum", error));
  EXPECT_EQ(contentsOf(workspace), Lines{"VariantData: 1x1 int32 = 10"});
  EXPECT_EQ(hvGetClassCode(inGetValueFromWorkspace("VariantData", workspace)), hvClassCode::Int32);
  EXPECT_EQ(watch.transactions(), 0U);
  EXPECT_EQ(error.getId(), AdapterDiagnostic::NoDiagnostic);
}

TEST_F(TestV2AdapterTest, KeepsFormerConditionalData) {
  const boost::shared_ptr<inWorkSpace_tag> workspace = inCreateWorkspace(1);
  inAssignInDesiredWS(hvArrayPtr(hvCreateDoubleScalar(1)).get(), "former", workspace);
  adapter.getConditionalData(workspace, ConditionControlChangeReport::create(model), u"", error);
  EXPECT_EQ(contentsOf(workspace), (Lines{"former: 1x1 double = 1", "VariantData: 1x1 int32 = 10"}));
}

// Checksums

TEST_F(TestV2AdapterTest, NeverGivesTheSameChecksumTwice) {
  EXPECT_EQ(adapter.getCurrentChecksum(), u"1");
  EXPECT_EQ(adapter.getCurrentChecksum(), u"2");
  EXPECT_EQ(adapter.getCurrentChecksum(), u"3");
}

TEST_F(TestV2AdapterTest, SumsAllCountersAndThisCallToo) {
  adapter.open(u"a.test");
  adapter.open(u"a.test");
  adapter.hasData();
  EXPECT_EQ(adapter.getCurrentChecksum(), u"4");
  for (int time = 0; time < 8; ++time) adapter.close();
  EXPECT_EQ(adapter.getCurrentChecksum(), u"13");
}

TEST_F(TestV2AdapterTest, KeepsItsChecksumWhenItIsAskedWhatItDoesNotCount) {
  adapter.getCurrentChecksum();
  adapter.getExternalSources();
  adapter.getVariantControls();
  EXPECT_EQ(adapter.getCurrentChecksum(), u"2");
}

TEST_F(TestV2AdapterTest, WrapsACounterSilentlyToTheLowestNumber) {
  (adapter.*get(Counters()))[6] = std::numeric_limits<std::int32_t>::max();
  adapter.open(u"a.test");
  EXPECT_EQ((adapter.*get(Counters()))[6], std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(read()[6], "open: 1x1 int32 = -2147483648");
}

TEST_F(TestV2AdapterTest, WrapsTheSumToTheLowestNumber) {
  (adapter.*get(Counters()))[6] = std::numeric_limits<std::int32_t>::max();
  EXPECT_EQ(adapter.getCurrentChecksum(), u"-2147483648");
  (adapter.*get(Counters()))[6] = -2;
  EXPECT_EQ(adapter.getCurrentChecksum(), u"0");
  EXPECT_EQ(adapter.getCurrentChecksum(), u"1");
}

// Clones

TEST_F(TestV2AdapterTest, IsClonedWithoutItsCounts) {
  adapter.open(u"a.test");
  adapter.hasData();
  const std::unique_ptr<CPPAdapterV2> clone(adapter.clone());
  EXPECT_EQ(clone->getCurrentChecksum(), u"1");
  clone->open(u"a.test");
  EXPECT_EQ(adapter.getCurrentChecksum(), u"3") << "each counts for itself";
}

// The whole road

class TestV2AdapterThroughTheBroker : public support::BrokerTest {
 protected:
  Lines readThrough(const std::u16string& source) const {
    const AdapterError error = AdapterManagerV2::getData(source, u"TestV2Section", container, u"", model);
    EXPECT_EQ(error.getId(), AdapterDiagnostic::NoDiagnostic);
    return contentsOf(container.dataCache());
  }

  const Model model = Model::create();
  const DataContainer container = DataContainer::create(model);
};

TEST_F(TestV2AdapterThroughTheBroker, ShowsWhatTheBrokerAsksOfAnOpenSource) {
  container.setDataCache(inCreateWorkspace(12));
  EXPECT_TRUE(AdapterManagerV2::registerCPPAdapter(TestV2Adapter::make()));
  EXPECT_TRUE(AdapterManagerV2::openSource(u"x.test", u"TestV2Section", {}));
  EXPECT_EQ(readThrough(u"x.test"), variables({0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 1, 0}));
  EXPECT_EQ(container.conditionControls().values(), (Names{u"var1", u"var2"}));
  EXPECT_EQ(AdapterManagerV2::getChecksum(u"x.test", u"TestV2Section"), u"3");
  EXPECT_EQ(AdapterManagerV2::getExternalSources(u"x.test", u"TestV2Section"),
            (Names{u"a.test", u"b.test", u"c.test"}));
  AdapterManagerV2::doesSourceExist(u"x.test");
  AdapterManagerV2::getAdapterConfig(u"x.test", model);
  EXPECT_FALSE(AdapterManagerV2::openSource(u"x.test", u"another", {}));
  EXPECT_TRUE(AdapterManagerV2::openSource(u"x.test", u"TestV2Section", {}));
  EXPECT_EQ(readThrough(u"x.test"), variables({0, 0, 0, 0, 0, 0, 1, 0, 1, 0, 2, 0}))
      << "the prototype and the second object count for themselves";
  EXPECT_TRUE(AdapterManagerV2::closeSource(u"x.test", u"TestV2Section", {}));
  EXPECT_FALSE(AdapterManagerV2::closeSource(u"x.test", u"TestV2Section", {}));
  EXPECT_EQ(AdapterManagerV2::getData(u"x.test", u"TestV2Section", container, u"", model).getId(),
            AdapterDiagnostic::Unsupported);
  container.destroyContainer();
}

TEST_F(TestV2AdapterThroughTheBroker, ShowsWhatTheBrokerAsksOfThePrototype) {
  EXPECT_TRUE(AdapterManagerV2::registerCPPAdapter(TestV2Adapter::make()));
  AdapterManagerV2::doesSourceExist(u"x.test");
  AdapterManagerV2::hasReadingAdapters(u"x.test");
  AdapterManagerV2::hasWritingAdapters(u"x.test");
  AdapterManagerV2::openSource(u"x.test", u"TestV2Section", {});

  const std::shared_ptr<CPPAdapterV2> prototype =
      AdapterRegistryV2::getInstance().getCPPAdapterForStaticUse(u"TestV2Adapter");
  const boost::shared_ptr<inWorkSpace_tag> workspace = inCreateWorkspace(12);
  AdapterError error = AdapterError::create(model);
  prototype->getData(workspace, container.getMetaDataCacheMutable(), u"", error);
  // Its name is asked twice to register it and once to open, its extensions at each search for adapters.
  EXPECT_EQ(contentsOf(workspace), variables({3, 4, 1, 1, 1, 1, 0, 0, 0, 0, 1, 0}));
}

TEST_F(TestV2AdapterThroughTheBroker, CountsEachOpeningForItself) {
  container.setDataCache(inCreateWorkspace(12));
  EXPECT_TRUE(AdapterManagerV2::registerCPPAdapter(TestV2Adapter::make()));
  EXPECT_TRUE(AdapterManagerV2::openSource(u"x.test", u"TestV2Section", {}));
  EXPECT_TRUE(AdapterManagerV2::openSource(u"y.test", u"TestV2Section", {}));
  readThrough(u"x.test");
  EXPECT_EQ(readThrough(u"y.test"), variables({0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 1, 0}));
}

}  // namespace
