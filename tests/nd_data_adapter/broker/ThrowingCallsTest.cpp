// What the broker leaves when something that it calls throws: a table of operation, call and allowed change,
// run with every kind of exception.

#include <functional>
#include <ostream>

#include "nd_data_adapter/model/AdapterCacheV2.h"
#include "nd_data_adapter/model/AdapterConfig.h"
#include "nd_data_adapter/model/AdapterError.h"
#include "nd_data_adapter/model/AdapterManagerV2.h"
#include "nd_data_adapter/model/AdapterRegistryV2.h"
#include "nd_data_adapter/model/DataContainer.h"
#include "platform/host/Workspace.h"
#include "platform/host/hv.h"
#include "platform/text/Convert.h"
#include "tests/support/BrokerTest.h"
#include "tests/support/FakeFileSystem.h"
#include "tests/support/FakeFirstGeneration.h"
#include "tests/support/Thrown.h"
#include "tests/support/describe.h"

using namespace nd::data::adapter;
using lx::base::Model;
using support::contentsOf;
using support::Lines;
using support::missingIn;
using support::ProbeAdapter;
using support::ProbeScript;
using support::Thrown;

namespace {

/// All that an operation may change: two prototypes of which the first has opened "x.test", a client's
/// container with a workspace, and its model for what is handed back.
struct Scene {
  explicit Scene(const std::shared_ptr<support::CallLog>& log)
      : fileSystem(std::make_shared<support::FakeFileSystem>(log)),
        replaced(fileSystem),
        first(support::FakeFirstGeneration::install(log)) {
    inAssignInDesiredWS(hvArrayPtr(hvCreateDoubleScalar(1)).get(), "former", workspace);
    container.setDataCache(workspace);
    container.getConditionControlsMutable().add(u"former");
    first.configNames = {u"old hand"};
  }

  Lines state() const {
    Lines lines = support::stateOfBroker();
    for (const Model& each : {tmpModel, model}) {
      const Lines more = contentsOf(each);
      lines.insert(lines.end(), more.begin(), more.end());
    }
    lines.push_back(std::to_string(ProbeAdapter::live()) + " adapters");
    return lines;
  }

  bool hasOpenTransaction() const {
    for (const Model& each : {tmpModel, model, AdapterRegistryV2::getInstance().getModel(),
                              AdapterCacheV2::getInstance().getModel()}) {
      if (each.impl()->hasOpenTransaction()) return true;
    }
    return false;
  }

  const Model model = Model::create();
  Model tmpModel = Model::create();
  const DataContainer container = DataContainer::create(model);
  const boost::shared_ptr<inWorkSpace_tag> workspace = inCreateWorkspace(1);
  const std::shared_ptr<support::FakeFileSystem> fileSystem;
  const lx::services::FileSystem::Replacement replaced;
  support::FakeFirstGeneration& first;
  std::shared_ptr<ProbeAdapter> fresh;  // a third adapter, not registered
};

struct Row {
  const char* name;
  const char* throwing;                          // the call that throws
  std::size_t number = 1;                        // which one of them
  std::function<Lines(const Scene&)> operation;  // gives its answer
  Lines added{};                                 // what stands afterwards and did not before
  Lines removed{};                               // and the other way round
};

std::ostream& operator<<(std::ostream& stream, const Row& row) {
  return stream << row.name;
}

AdapterRegistryV2 registry() {
  return AdapterRegistryV2::getInstance();
}

// Answers of all types, written down.

Lines written(bool answer) {
  return {answer ? "true" : "false"};
}
Lines written(const std::u16string& answer) {
  return {lx::text::toUtf8(answer)};
}
Lines written(const std::shared_ptr<CPPAdapterV2>& answer) {
  return {ProbeAdapter::labelOf(answer)};
}
Lines written(const AdapterConfig& answer) {
  return {lx::text::toUtf8(answer.adapterName())};
}
Lines written(const AdapterError& answer) {
  return {std::to_string(static_cast<int>(answer.getId())), lx::text::toUtf8(answer.getSource())};
}
template <class Each>
Lines written(const std::vector<Each>& answer) {
  Lines lines;
  for (const Each& each : answer) lines.push_back(written(each).front());
  return lines;
}

/// Makes a row's operation of a call: its answer is written down.
template <class Call>
std::function<Lines(const Scene&)> asking(Call call) {
  return [call](const Scene& scene) { return written(call(scene)); };
}

const auto openY = asking([](const Scene&) { return AdapterManagerV2::openSource(u"y.test", u"s", {}); });
const auto configs =
    asking([](const Scene& scene) { return AdapterManagerV2::getAdapterConfig(u"x.test", scene.tmpModel); });
const auto readX = asking([](const Scene& scene) {
  return AdapterManagerV2::getData(u"x.test", u"s", scene.container, u"", scene.tmpModel);
});
const auto readY = asking([](const Scene& scene) {
  return AdapterManagerV2::getData(u"y.test", u"s", scene.container, u"", scene.tmpModel);
});

std::vector<Row> rows() {
  using Manager = AdapterManagerV2;
  const Lines error{"AdapterError Diagnostic=0 ErrorMessage='' Adapter='' SourceFile=''"};
  const auto container = [](const char* controls) {
    return Lines{
        std::string(
            "DataContainer DataCache=[former: 1x1 double = 1] ConditionalCache=none ConditionControls=[") +
        controls + "] DataModel=none MetaDataCache=[]"};
  };
  Lines errorAndNoControls = error;
  errorAndNoControls.push_back(container("").front());
  return {
      {"RegisteringAtTheFacadeAsksTheName", "c.getAdapterName", 1,
       asking([](const Scene& scene) { return Manager::registerCPPAdapter(scene.fresh); })},
      {"RegisteringAtTheFacadeAsksTheFirstGeneration", "first.isAdapterRegisteredByName", 1,
       asking([](const Scene& scene) { return Manager::registerCPPAdapter(scene.fresh); })},
      {"RegisteringAsksTheNameAgain", "c.getAdapterName", 2,
       asking([](const Scene& scene) { return Manager::registerCPPAdapter(scene.fresh); })},
      {"RegisteringAtTheRegistryAsksTheName", "c.getAdapterName", 1,
       asking([](const Scene& scene) { return registry().registerCPPAdapter(scene.fresh); })},
      {"ExtensionAsksTheFirstGeneration", "first.isAdapterRegisteredByExtension", 1,
       asking([](const Scene&) { return Manager::isExtensionRegistered(u".test"); })},
      {"ExtensionAsksThePrototype", "b.getSupportedExtensions", 1,
       asking([](const Scene&) { return Manager::isExtensionRegistered(u".none"); })},
      {"NamesAskTheFirstGeneration", "first.getAllAdapterNames", 1,
       asking([](const Scene&) { return Manager::getAllRegisteredAdapterNames(); })},
      {"NamesAskThePrototype", "b.getAdapterName", 1,
       asking([](const Scene&) { return Manager::getAllRegisteredAdapterNames(); })},
      {"DisplayListAsksTheExtensions", "b.getSupportedExtensions", 1,
       asking([](const Scene&) { return registry().getDisplayList(); })},
      {"DisplayListAsksTheName", "b.getAdapterName", 1,
       asking([](const Scene&) { return registry().getDisplayList(); })},
      {"NewAdapterIsCloned", "a.clone", 1,
       asking([](const Scene&) { return registry().getNewCPPAdapter(u"a"); })},
      {"AdaptersOfASourceNormaliseThePath", "fs.make_native_form", 1,
       asking([](const Scene&) { return registry().getCPPAdapterStaticForSource(u"x.test"); })},
      {"AdaptersOfASourceAskItsExtension", "fs.extract_extension", 1,
       asking([](const Scene&) { return registry().getCPPAdapterStaticForSource(u"x.test"); })},
      {"AdaptersOfASourceAskThePrototype", "b.getSupportedExtensions", 1,
       asking([](const Scene&) { return registry().getCPPAdapterStaticForSource(u"x.test"); })},
      {"ExistenceAsksForTheExtension", "fs.extract_extension", 1,
       asking([](const Scene&) { return Manager::doesSourceExist(u"x.test"); })},
      {"ExistenceAsksThePrototype", "a.isSourceValid", 1,
       asking([](const Scene&) { return Manager::doesSourceExist(u"x.test"); })},
      {"ReadingAsksThePrototype", "a.supportsReading", 1,
       asking([](const Scene&) { return Manager::hasReadingAdapters(u"x.test"); })},
      {"ReadingAsksTheFirstGeneration", "first.hasReadingAdapters", 1,
       asking([](const Scene&) { return Manager::hasReadingAdapters(u"x.none"); })},
      {"WritingAsksThePrototype", "a.supportsWriting", 1,
       asking([](const Scene&) { return Manager::hasWritingAdapters(u"x.test"); })},
      {"WritingAsksTheFirstGeneration", "first.hasWritingAdapters", 1,
       asking([](const Scene&) { return Manager::hasWritingAdapters(u"x.none"); })},
      {"ConfigAsksTheFirstGeneration", "first.getAdapterConfig", 1, configs},
      {"ConfigAsksTheExtensions", "a.getSupportedExtensions", 1, configs},
      {"ConfigAsksTheName", "b.getAdapterName", 1, configs},
      {"ConfigAsksTheSection", "b.getSectionName", 1, configs},
      {"ConfigAsksForReading", "b.supportsReading", 1, configs},
      {"ConfigAsksForWriting", "b.supportsWriting", 1, configs},
      {"ConfigAsksTheType", "b.getType", 1, configs},
      {"OpeningAsksTheExtensions", "b.getSupportedExtensions", 1, openY},
      {"OpeningAsksTheSection", "a.getSectionName", 1, openY},
      {"OpeningAsksTheName", "a.getAdapterName", 1, openY},
      {"OpeningClones", "a.clone", 1, openY},
      {"OpeningOpens", "a'2.open", 1, openY, {"open y.test::s: a'2", "4 adapters"}, {"3 adapters"}},
      {"OpeningASecondTimeOpens", "a'2.open", 1,
       asking([](const Scene&) { return Manager::openSource(u"x.test", u"s", {}); })},
      {"ChecksumAsksTheOpenAdapter", "a'1.getCurrentChecksum", 1,
       asking([](const Scene&) { return Manager::getChecksum(u"x.test", u"s"); })},
      {"ChecksumAsksTheFirstGeneration", "first.getChecksum", 1,
       asking([](const Scene&) { return Manager::getChecksum(u"y.test", u"s"); })},
      {"ExternalSourcesAskTheOpenAdapter", "a'1.getExternalSources", 1,
       asking([](const Scene&) { return Manager::getExternalSources(u"x.test", u"s"); })},
      {"ExternalSourcesAskTheFirstGeneration", "first.getExternalSources", 1,
       asking([](const Scene&) { return Manager::getExternalSources(u"y.test", u"s"); })},
      {"ReadingGetsTheData", "a'1.getData", 1, readX, error},
      {"ReadingAsksForVariants", "a'1.hasVariants", 1, readX, errorAndNoControls, container("former")},
      {"ReadingAsksForTheControls", "a'1.getVariantControls", 1, readX, errorAndNoControls,
       container("former")},
      {"ReadingGoesTheFirstGenerationsRoad", "first.getData", 1, readY, error},
  };
}

class ThrowingCalls : public support::BrokerTest, public testing::WithParamInterface<Row> {};

TEST_P(ThrowingCalls, PassThroughAndLeaveOnlyWhatIsAllowedToStay) {
  const Row& row = GetParam();
  for (const Thrown& thrown : support::everyKindOfException()) {
    SCOPED_TRACE(thrown.name);
    registerProbe(u"a")->script().hasVariants = true;
    registerProbe(u"b", u"other");
    EXPECT_TRUE(AdapterManagerV2::openSource(u"x.test", u"s", {}));
    {
      Scene scene(log);
      const Lines before = scene.state();
      scene.fresh = makeProbe(u"c");
      log->throwAt(row.throwing, thrown.object, row.number);

      EXPECT_TRUE(support::isLeftBy(thrown.object, [&] { row.operation(scene); }));

      EXPECT_EQ(log->actionsLeft(), 0U) << "the call was not made";
      EXPECT_EQ(scene.fresh.use_count(), 1);
      EXPECT_FALSE(scene.hasOpenTransaction());
      scene.fresh.reset();
      const Lines after = scene.state();
      EXPECT_EQ(missingIn(before, after), row.added);
      EXPECT_EQ(missingIn(after, before), row.removed);
    }
    AdapterCacheV2::getInstance().destroy();
    registry().destroy();
  }
}

TEST_P(ThrowingCalls, LetTheOperationWorkAfterwardsAsIfNothingHadBeenThrown) {
  const Row& row = GetParam();
  const auto answerAndState = [&](bool isAfterAThrow) {
    ProbeScript& script = registerProbe(u"a")->script();
    script.hasVariants = true;
    script.controls = {u"new"};
    script.checksum = u"17";
    script.externalSources = {u"z.test"};
    registerProbe(u"b", u"other");
    EXPECT_TRUE(AdapterManagerV2::openSource(u"x.test", u"s", {}));
    Lines lines;
    {
      Scene scene(log);
      scene.first.checksum = u"first";
      scene.first.externalSources = {u"first.test"};
      scene.first.names = {u"first"};
      scene.fresh = makeProbe(u"c");
      if (isAfterAThrow) {
        log->throwAt(row.throwing, std::make_exception_ptr(1), row.number);
        EXPECT_THROW(row.operation(scene), int);
        scene.tmpModel = Model::create();  // what the failed call handed back is its caller's
      }
      lines = row.operation(scene);
      const Lines state = scene.state();
      lines.insert(lines.end(), state.begin(), state.end());
    }
    AdapterCacheV2::getInstance().destroy();
    registry().destroy();
    return lines;
  };
  const Lines wanted = answerAndState(false);
  EXPECT_EQ(answerAndState(true), wanted);
}

INSTANTIATE_TEST_SUITE_P(EachCall, ThrowingCalls, testing::ValuesIn(rows()),
                         [](const testing::TestParamInfo<Row>& row) { return std::string(row.param.name); });

}  // namespace
