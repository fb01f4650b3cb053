// The facade's questions about sources, which no opening answers.

#include "nd_data_adapter/model/AdapterConfig.h"
#include "nd_data_adapter/model/AdapterManagerV2.h"
#include "platform/foundation/meta/Meta.h"
#include "tests/support/BrokerTest.h"
#include "tests/support/FakeFileSystem.h"
#include "tests/support/FakeFirstGeneration.h"
#include "tests/support/ModelWatch.h"
#include "tests/support/Thrown.h"
#include "tests/support/describe.h"

using namespace nd::data::adapter;
using lx::base::Model;
using lx::base::Transaction;
using support::contentsOf;
using support::FakeFileSystem;
using support::FakeFirstGeneration;
using support::Lines;
using support::ModelWatch;
using support::ProbeScript;
using support::raisedBy;

namespace {

class QuestionsAboutSources : public support::BrokerTest {
 protected:
  FakeFirstGeneration& first = FakeFirstGeneration::install(log);
  const std::shared_ptr<FakeFileSystem> fileSystem = std::make_shared<FakeFileSystem>(log);
  const lx::services::FileSystem::Replacement replaced{fileSystem};
};

using DoesSourceExist = QuestionsAboutSources;
using HasReadingAdapters = QuestionsAboutSources;
using HasWritingAdapters = QuestionsAboutSources;

/// What is asked of the filesystem and of the prototypes "a" and "b" to find who claims "x.test".
Lines withSearch(Lines behind) {
  Lines all{"fs.make_native_form(x.test, true)", "fs.extract_extension(x.test)", "a.getSupportedExtensions",
            "b.getSupportedExtensions"};
  all.insert(all.end(), behind.begin(), behind.end());
  return all;
}

// doesSourceExist

TEST_F(DoesSourceExist, AsksThePathWhereNoAdapterClaimsTheSource) {
  fileSystem->files[u"x.none"] = {};
  EXPECT_TRUE(AdapterManagerV2::doesSourceExist(u"x.none"));
  EXPECT_FALSE(AdapterManagerV2::doesSourceExist(u"y.none"));
  calls();
  registerProbe(u"a");
  EXPECT_TRUE(AdapterManagerV2::doesSourceExist(u"x.none#KIND"));
  EXPECT_EQ(calls(), (Lines{"fs.make_native_form(x.none, true)", "fs.extract_extension(x.none)",
                            "a.getSupportedExtensions", "fs.exists(x.none)"}));
}

TEST_F(DoesSourceExist, IsFalseWhereThePathCanNotBeAsked) {
  fileSystem->files[u"x.none"] = {};
  for (const support::Thrown& thrown : support::everyKindOfException()) {
    log->throwAt("fs.exists", thrown.object);
    EXPECT_FALSE(AdapterManagerV2::doesSourceExist(u"x.none")) << thrown.name;
    EXPECT_EQ(log->actionsLeft(), 0U);
  }
}

TEST_F(DoesSourceExist, IsWhatTheClaimingAdaptersSayWhateverThePathIs) {
  fileSystem->files[u"x.test"] = {};
  registerProbe(u"a")->script().sourceIsValid = false;
  registerProbe(u"b")->script().sourceIsValid = false;
  EXPECT_FALSE(AdapterManagerV2::doesSourceExist(u"x.test"));
  EXPECT_EQ(calls(), withSearch({"a.isSourceValid(x.test)", "b.isSourceValid(x.test)"}));
}

TEST_F(DoesSourceExist, StopsAtTheFirstAdapterThatSaysYes) {
  registerProbe(u"a");
  registerProbe(u"b")->script().sourceIsValid = false;
  EXPECT_TRUE(AdapterManagerV2::doesSourceExist(u"x.test"));
  EXPECT_EQ(calls(), withSearch({"a.isSourceValid(x.test)"}));
}

TEST_F(DoesSourceExist, GoesOnToTheNextAdapterAfterANo) {
  registerProbe(u"a")->script().sourceIsValid = false;
  registerProbe(u"b");
  EXPECT_TRUE(AdapterManagerV2::doesSourceExist(u"x.test"));
  EXPECT_EQ(calls(), withSearch({"a.isSourceValid(x.test)", "b.isSourceValid(x.test)"}));
}

TEST_F(DoesSourceExist, HandsTheAdapterTheWholeSource) {
  registerProbe(u"a");
  AdapterManagerV2::doesSourceExist(u"x.test#KIND&VALUESRC");
  EXPECT_EQ(calls().back(), "a.isSourceValid(x.test#KIND&VALUESRC)");
}

// hasReadingAdapters, hasWritingAdapters

TEST_F(HasReadingAdapters, StopsAtTheFirstAdapterThatSaysYes) {
  registerProbe(u"a");
  registerProbe(u"b");
  EXPECT_TRUE(AdapterManagerV2::hasReadingAdapters(u"x.test"));
  EXPECT_EQ(calls(), withSearch({"a.supportsReading(x.test)"}));
}

TEST_F(HasReadingAdapters, AsksTheFirstGenerationWhenNoAdapterOfTheSecondSaysYes) {
  registerProbe(u"a")->script().reads = false;
  registerProbe(u"b")->script().reads = false;
  EXPECT_FALSE(AdapterManagerV2::hasReadingAdapters(u"x.test"));
  EXPECT_EQ(calls(), withSearch({"a.supportsReading(x.test)", "b.supportsReading(x.test)",
                                 "first.hasReadingAdapters(x.test)"}));
  first.reads = true;
  EXPECT_TRUE(AdapterManagerV2::hasReadingAdapters(u"x.test"));
}

TEST_F(HasReadingAdapters, AsksTheFirstGenerationAtOnceForASourceThatNobodyClaims) {
  first.reads = true;
  EXPECT_TRUE(AdapterManagerV2::hasReadingAdapters(u"x.none"));
  EXPECT_EQ(calls().back(), "first.hasReadingAdapters(x.none)");
}

TEST_F(HasReadingAdapters, HandsAdaptersAndTheFirstGenerationTheWholeSource) {
  registerProbe(u"a")->script().reads = false;
  registerProbe(u"b")->script().reads = false;
  AdapterManagerV2::hasReadingAdapters(u"x.test#KIND&VALUESRC");
  EXPECT_EQ(calls(),
            withSearch({"a.supportsReading(x.test#KIND&VALUESRC)", "b.supportsReading(x.test#KIND&VALUESRC)",
                        "first.hasReadingAdapters(x.test#KIND&VALUESRC)"}));
}

TEST_F(HasReadingAdapters, DoesNotCountWriting) {
  registerProbe(u"a")->script().reads = false;
  first.writes = true;
  EXPECT_FALSE(AdapterManagerV2::hasReadingAdapters(u"x.test"));
}

TEST_F(HasWritingAdapters, StopsAtTheFirstAdapterThatSaysYes) {
  registerProbe(u"a")->script().writes = false;
  registerProbe(u"b");
  EXPECT_TRUE(AdapterManagerV2::hasWritingAdapters(u"x.test"));
  EXPECT_EQ(calls(), withSearch({"a.supportsWriting(x.test)", "b.supportsWriting(x.test)"}));
}

TEST_F(HasWritingAdapters, AsksTheFirstGenerationWhenNoAdapterOfTheSecondSaysYes) {
  registerProbe(u"a")->script().writes = false;
  registerProbe(u"b")->script().writes = false;
  EXPECT_FALSE(AdapterManagerV2::hasWritingAdapters(u"x.test"));
  EXPECT_EQ(calls(), withSearch({"a.supportsWriting(x.test)", "b.supportsWriting(x.test)",
                                 "first.hasWritingAdapters(x.test)"}));
  first.writes = true;
  EXPECT_TRUE(AdapterManagerV2::hasWritingAdapters(u"x.test"));
}

TEST_F(HasWritingAdapters, HandsAdaptersAndTheFirstGenerationTheWholeSource) {
  registerProbe(u"a")->script().writes = false;
  registerProbe(u"b")->script().writes = false;
  AdapterManagerV2::hasWritingAdapters(u"x.test#KIND&VALUESRC");
  EXPECT_EQ(calls(),
            withSearch({"a.supportsWriting(x.test#KIND&VALUESRC)", "b.supportsWriting(x.test#KIND&VALUESRC)",
                        "first.hasWritingAdapters(x.test#KIND&VALUESRC)"}));
}

TEST_F(HasWritingAdapters, DoesNotCountReading) {
  registerProbe(u"a")->script().writes = false;
  first.reads = true;
  EXPECT_FALSE(AdapterManagerV2::hasWritingAdapters(u"x.test"));
}

TEST_F(QuestionsAboutSources, SurviveAnAdapterThatUnregistersItselfWhenItIsAsked) {
  registerProbe(u"a")->script().reads = false;
  registerProbe(u"b")->script().reads = false;
  log->at("a.supportsReading", [] { AdapterManagerV2::unregisterAdapterByName(u"a"); });
  EXPECT_FALSE(AdapterManagerV2::hasReadingAdapters(u"x.test"));
  EXPECT_EQ(calls(), withSearch({"a.supportsReading(x.test)", "b.supportsReading(x.test)",
                                 "first.hasReadingAdapters(x.test)", "a.~"}));
}

TEST_F(QuestionsAboutSources, OpenNothing) {
  registerProbe(u"a");
  AdapterManagerV2::doesSourceExist(u"x.test");
  AdapterManagerV2::hasReadingAdapters(u"x.test");
  AdapterManagerV2::hasWritingAdapters(u"x.test");
  const Model model = Model::create();
  AdapterManagerV2::getAdapterConfig(u"x.test", model);
  EXPECT_EQ(support::stateOfBroker(), Lines{"registered a: a"});
}

// getAdapterConfig

/// An adapter that overrides only what it must.
class PlainAdapter final : public CPPAdapterV2 {
 public:
  CPPAdapterV2* clone() override { return new PlainAdapter; }
  std::u16string getAdapterName() override { return u"plain"; }
  std::vector<std::u16string> getSupportedExtensions() override { return {u".test"}; }
  bool isSourceValid(const std::u16string&) override { return true; }
  bool supportsReading(const std::u16string&) override { return true; }
  bool supportsWriting(const std::u16string&) override { return false; }
  bool open(const std::u16string&) override { return true; }
  bool close() override { return true; }
  std::u16string getCurrentChecksum() override { return {}; }
  bool hasData() override { return false; }
  bool getData(const Workspace&, MetaDataCache&, const std::u16string&, AdapterError&) override {
    return true;
  }
  bool writeData(const Workspace&, const Workspace&, MetaDataCache&, const ChangeReport&,
                 AdapterError&) override {
    return true;
  }
};

class GetAdapterConfig : public support::BrokerTest {
 protected:
  const Model model = Model::create();
};

std::string config(const std::string& name, const std::string& section, int type, bool reads, bool writes) {
  return "AdapterConfig adapterName='" + name + "' section='" + section +
         "' adapterType=" + std::to_string(type) + " supportsReading=" + (reads ? "true" : "false") +
         " supportsWriting=" + (writes ? "true" : "false");
}

TEST_F(GetAdapterConfig, TellsOfEachClaimingAdapterWhatItSays) {
  ProbeScript& script = registerProbe(u"b", u"part")->script();
  script.type = AdapterType::HOBJAdapter;
  script.writes = false;
  registerProbe(u"a")->script().reads = false;
  registerProbe(u"c", u"s", {u".other"});

  const std::vector<AdapterConfig> configs = AdapterManagerV2::getAdapterConfig(u"x.test", model);

  EXPECT_EQ(contentsOf(model),
            (Lines{config("a", "s", 0, false, true), config("b", "part", 1, true, false)}));
  ASSERT_EQ(configs.size(), 2U);
  EXPECT_EQ(configs[0].adapterName(), u"a");
  EXPECT_EQ(configs[1].adapterName(), u"b");
  EXPECT_EQ(configs[1].getModel(), model);
}

TEST_F(GetAdapterConfig, AsksAdapterByAdapterAndForTheTypeLast) {
  registerProbe(u"b");
  registerProbe(u"a");
  FakeFirstGeneration::install(log);
  AdapterManagerV2::getAdapterConfig(u"x.test", model);
  EXPECT_EQ(calls(),
            (Lines{"first.getAdapterConfig(x.test)", "a.getSupportedExtensions", "b.getSupportedExtensions",
                   "a.getAdapterName", "a.getSectionName", "a.supportsReading(x.test)",
                   "a.supportsWriting(x.test)", "a.getType", "b.getAdapterName", "b.getSectionName",
                   "b.supportsReading(x.test)", "b.supportsWriting(x.test)", "b.getType"}));
}

TEST_F(GetAdapterConfig, HandsAdaptersAndTheFirstGenerationTheWholeSource) {
  registerProbe(u"a");
  FakeFirstGeneration::install(log);
  AdapterManagerV2::getAdapterConfig(u"x.test#KIND&VALUESRC", model);
  EXPECT_EQ(calls(), (Lines{"first.getAdapterConfig(x.test#KIND&VALUESRC)", "a.getSupportedExtensions",
                            "a.getAdapterName", "a.getSectionName", "a.supportsReading(x.test#KIND&VALUESRC)",
                            "a.supportsWriting(x.test#KIND&VALUESRC)", "a.getType"}));
}

TEST_F(GetAdapterConfig, PutsTheFirstGenerationFirst) {
  registerProbe(u"a");
  FakeFirstGeneration::install(log).configNames = {u"z", u"b"};
  std::vector<std::u16string> names;
  for (const AdapterConfig& each : AdapterManagerV2::getAdapterConfig(u"x.test", model)) {
    names.push_back(each.adapterName());
  }
  EXPECT_EQ(names, (std::vector<std::u16string>{u"z", u"b", u"a"}));
}

TEST_F(GetAdapterConfig, ReportsTheNameAsSectionOfAnAdapterThatOverridesNeitherSectionNorType) {
  AdapterManagerV2::registerCPPAdapter(std::make_shared<PlainAdapter>());
  AdapterManagerV2::getAdapterConfig(u"x.test", model);
  EXPECT_EQ(contentsOf(model), Lines{config("plain", "plain", 0, true, false)});
}

TEST_F(GetAdapterConfig, IsEmptyForASourceThatNobodyClaims) {
  registerProbe(u"a");
  EXPECT_TRUE(AdapterManagerV2::getAdapterConfig(u"x.none", model).empty());
  EXPECT_TRUE(contentsOf(model).empty());
}

TEST_F(GetAdapterConfig, IsOneTransactionForItsObservers) {
  registerProbe(u"a");
  registerProbe(u"b");
  const ModelWatch watch(model);
  AdapterManagerV2::getAdapterConfig(u"x.test", model);
  EXPECT_EQ(watch.notices(), (std::vector<Lines>{{"created nd.data.adapter.AdapterConfig",
                                                  "created nd.data.adapter.AdapterConfig"}}));
  EXPECT_FALSE(watch.hasOpenTransaction());
}

TEST_F(GetAdapterConfig, LeavesItsElementsToTheLifeOfTheModel) {
  registerProbe(u"a");
  const std::vector<AdapterConfig> configs = AdapterManagerV2::getAdapterConfig(u"x.test", model);
  ASSERT_EQ(configs.size(), 1U);
  EXPECT_TRUE(configs[0].isAlive());
  model.destroy();
  EXPECT_FALSE(configs[0].isAlive());
}

TEST_F(GetAdapterConfig, BelongsToATransactionAroundIt) {
  registerProbe(u"a");
  {
    const Transaction abandoned = model.impl()->beginTransaction(false);
    EXPECT_EQ(AdapterManagerV2::getAdapterConfig(u"x.test", model).size(), 1U);
  }
  EXPECT_TRUE(contentsOf(model).empty());
}

TEST_F(GetAdapterConfig, RaisesForANullOrDeadModelAndAsksNobody) {
  registerProbe(u"a");
  const std::string raised = "InvalidValue(nd.data.adapter.AdapterManagerV2.getAdapterConfig)";
  EXPECT_EQ(raisedBy([&] { AdapterManagerV2::getAdapterConfig(u"x.test", Model()); }), raised);
  model.destroy();
  EXPECT_EQ(raisedBy([&] { AdapterManagerV2::getAdapterConfig(u"x.test", model); }), raised);
  EXPECT_TRUE(calls().empty());
}

TEST_F(GetAdapterConfig, RaisesForAFrozenModelAndAsksNobody) {
  registerProbe(u"a");
  FakeFirstGeneration::install(log).configNames = {u"z"};
  Model::Freezer::freeze(model);
  EXPECT_EQ(raisedBy([&] { AdapterManagerV2::getAdapterConfig(u"x.test", model); }),
            "InvalidValue(Model.beginTransaction)");
  EXPECT_EQ(calls(), Lines{});
  EXPECT_TRUE(contentsOf(model).empty());
  EXPECT_FALSE(model.impl()->hasOpenTransaction());
}

// AdapterConfig

TEST(AdapterConfigElement, HasItsFivePropertiesInTheirOrder) {
  std::vector<std::u16string> names;
  for (const lx::base::meta::Property& property : AdapterConfig::metaClass().getProperties()) {
    names.push_back(property.getName());
  }
  EXPECT_EQ(names, (std::vector<std::u16string>{u"adapterName", u"section", u"adapterType",
                                                u"supportsReading", u"supportsWriting"}));
  EXPECT_TRUE(AdapterConfig::metaClass().getOwnOperations().empty());
}

TEST(AdapterConfigElement, IsMadeForANativeAdapterThatCanNothing) {
  const Model model = Model::create();
  AdapterConfig::create(model);
  EXPECT_EQ(contentsOf(model), Lines{config("", "", 0, false, false)});
}

TEST(AdapterConfigElement, TakesEachValueInATransactionAndAnEqualOneInNone) {
  const Model model = Model::create();
  const AdapterConfig element = AdapterConfig::create(model);
  const ModelWatch watch(model);
  const auto setAll = [&] {
    element.setAdapterName(u"a");
    element.setSection(u"s");
    element.setAdapterType(AdapterType::HOBJAdapter);
    element.setSupportsReading(true);
    element.setSupportsWriting(true);
  };
  setAll();
  EXPECT_EQ(contentsOf(model), Lines{config("a", "s", 1, true, true)});
  EXPECT_EQ(watch.transactions(), 5U);
  EXPECT_EQ(watch.notices().size(), 5U);
  setAll();
  EXPECT_EQ(watch.transactions(), 5U);
}

}  // namespace
