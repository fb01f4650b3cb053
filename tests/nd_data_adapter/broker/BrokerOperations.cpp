#include "tests/nd_data_adapter/broker/BrokerOperations.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <iterator>
#include <map>
#include <utility>

#include "nd_data_adapter/model/AdapterCacheV2.h"
#include "nd_data_adapter/model/AdapterConfig.h"
#include "nd_data_adapter/model/AdapterManagerV2.h"
#include "nd_data_adapter/model/AdapterRegistryV2.h"
#include "platform/host/Workspace.h"
#include "platform/host/hv.h"
#include "platform/services/Diagnostic.h"
#include "platform/text/Convert.h"
#include "tests/support/describe.h"

using namespace nd::data::adapter;
using lx::base::Model;
using support::ProbeAdapter;
using support::ProbeScript;

namespace broker_operations {

namespace {

std::size_t openFiles() {
  const std::filesystem::directory_iterator files("/proc/self/fd");
  return static_cast<std::size_t>(std::distance(begin(files), end(files)));
}

/// What an adapter takes and has to give back.
struct Held {
  hvArrayPtr array{hvCreateDoubleScalar(1)};
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> file{std::fopen("/dev/null", "rb"), &std::fclose};
};

ProbeScript scriptOf(const std::u16string& name, const std::u16string& section) {
  ProbeScript script;
  script.name = name;
  script.section = section;
  script.sourceIsValid = false;
  script.reads = false;
  script.writes = false;
  script.hasVariants = true;
  script.controls = {u"new"};
  script.checksum = u"17";
  script.externalSources = {u"z.test"};
  script.hold = [] { return std::make_shared<Held>(); };
  script.getData = [](const ProbeScript::Workspace& data, auto&&...) {
    inAssignInDesiredWS(hvArrayPtr(hvCreateDoubleScalar(2)).get(), "fresh", data);
    return true;
  };
  return script;
}

AdapterRegistryV2 registry() {
  return AdapterRegistryV2::getInstance();
}
AdapterCacheV2 cache() {
  return AdapterCacheV2::getInstance();
}

}  // namespace

Scene::Scene(const std::shared_ptr<support::CallLog>& theLog)
    : log(theLog),
      filesBefore_(openFiles()),
      arraysBefore_(hvGetLiveArrayCount()),
      workspace(inCreateWorkspace(1)),
      fileSystem(std::make_shared<support::FakeFileSystem>(log)),
      replaced(fileSystem),
      first(support::FakeFirstGeneration::install(log)),
      fresh(std::make_shared<ProbeAdapter>(log, scriptOf(u"c", u"s"))) {
  registry().registerCPPAdapter(std::make_shared<ProbeAdapter>(log, scriptOf(u"a", u"s")));
  registry().registerCPPAdapter(std::make_shared<ProbeAdapter>(log, scriptOf(u"b", u"other")));
  AdapterManagerV2::openSource(u"w.test", u"s", {});
  AdapterManagerV2::openSource(u"x.test", u"s", {});
  inAssignInDesiredWS(hvArrayPtr(hvCreateDoubleScalar(1)).get(), "former", workspace);
  error.setError(AdapterDiagnostic::Unsupported, u"an old message", u"", u"");
  container.setDataCache(workspace);
  container.getConditionControlsMutable().add(u"former");
  first.configNames = {u"old hand"};
  first.names = {u"old hand"};
  first.checksum = u"first";
  first.externalSources = {u"first.test"};
  log->take();
}

Scene::~Scene() {
  log->forgetActions();
  detail::FirstGenerationRoad::replace(nullptr);
  cache().getModel().destroy();
  registry().getModel().destroy();
}

Lines Scene::state() const {
  Lines lines = support::stateOfBroker();
  for (const Model& each : {tmpModel, model}) {
    const Lines more = each.isAlive() ? support::contentsOf(each) : Lines{"a dead model"};
    lines.insert(lines.end(), more.begin(), more.end());
  }
  lines.push_back(std::to_string(ProbeAdapter::live()) + " adapters");
  return lines;
}

bool Scene::hasOpenTransaction() const {
  const std::vector<Model> models{tmpModel, model, registry().getModel(), cache().getModel()};
  return std::any_of(models.begin(), models.end(),
                     [](const Model& each) { return each && each.impl()->hasOpenTransaction(); });
}

std::string Scene::leaks() const {
  const std::size_t adapters = ProbeAdapter::live() - adaptersBefore_;
  const std::size_t files = openFiles() - filesBefore_;
  const std::size_t arrays = hvGetLiveArrayCount() - arraysBefore_;
  const std::size_t variables = support::contentsOf(workspace).size();
  if (files == adapters && arrays == adapters + variables) return "";
  return std::to_string(files) + " files and " + std::to_string(arrays) + " arrays for " +
         std::to_string(adapters) + " adapters and " + std::to_string(variables) + " variables";
}

namespace {

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
  if (!answer.isAlive()) return {"dead"};
  return {lx::text::toUtf8(answer.adapterName())};
}
Lines written(const AdapterError& answer) {
  if (!answer.isAlive()) return {"dead"};
  return {"error " + std::to_string(static_cast<int>(answer.getId())) + " '" +
          lx::text::toUtf8(answer.getSource()) + "'"};
}
template <class Each>
Lines written(const std::vector<Each>& answer) {
  Lines lines{"list"};
  for (const Each& each : answer) lines.push_back(written(each).front());
  return lines;
}

/// Makes an operation of a call; its answer, if it has one, is written down.
template <class Call>
Operation operation(std::string name, Call call) {
  const auto run = [call](Scene& scene) -> Lines {
    if constexpr (std::is_void_v<std::invoke_result_t<Call, Scene&>>) {
      call(scene);
      return {"done"};
    } else {
      return written(call(scene));
    }
  };
  return {std::move(name), run};
}

using Operations = std::vector<Operation>;

void listTheFacades(Operations& list) {
  using M = AdapterManagerV2;
  const auto add = [&](const char* name, auto call) {
    list.push_back(operation(std::string("AdapterManagerV2.") + name, call));
  };
  add("registerCPPAdapter", [](Scene& scene) { return M::registerCPPAdapter(scene.fresh); });
  add("unregisterAdapterByName", [](Scene&) { return M::unregisterAdapterByName(u"b"); });
  add("isExtensionRegistered", [](Scene&) { return M::isExtensionRegistered(u".none"); });
  add("getAllRegisteredAdapterNames", [](Scene&) { return M::getAllRegisteredAdapterNames(); });
  add("getAllOpenedAdapterNamesWithSection", [](Scene&) { return M::getAllOpenedAdapterNamesWithSection(); });
  add("closeAdapterbyNamesWithSection",
      [](Scene&) { return M::closeAdapterbyNamesWithSection(u"x.test::s"); });
  add("doesSourceExist", [](Scene&) { return M::doesSourceExist(u"x.test"); });
  add("doesSourceExist: claimed by nobody", [](Scene&) { return M::doesSourceExist(u"x.none"); });
  add("hasReadingAdapters", [](Scene&) { return M::hasReadingAdapters(u"x.test"); });
  add("hasWritingAdapters", [](Scene&) { return M::hasWritingAdapters(u"x.test"); });
  add("getAdapterConfig", [](Scene& scene) { return M::getAdapterConfig(u"x.test", scene.tmpModel); });
  add("openSource", [](Scene&) { return M::openSource(u"y.test", u"other", {}); });
  add("openSource: open already", [](Scene&) { return M::openSource(u"x.test", u"s", {}); });
  add("getChecksum", [](Scene&) { return M::getChecksum(u"x.test", u"s"); });
  add("getChecksum: not open", [](Scene&) { return M::getChecksum(u"y.test", u"s"); });
  add("getExternalSources", [](Scene&) { return M::getExternalSources(u"x.test", u"s"); });
  add("getExternalSources: not open", [](Scene&) { return M::getExternalSources(u"y.test", u"s"); });
  add("getData",
      [](Scene& scene) { return M::getData(u"x.test", u"s", scene.container, u"", scene.tmpModel); });
  add("getData: not open",
      [](Scene& scene) { return M::getData(u"y.test", u"s", scene.container, u"", scene.tmpModel); });
  add("closeSource", [](Scene&) { return M::closeSource(u"x.test", u"s", {}); });
}

void listTheRegistrys(Operations& list) {
  const auto add = [&](const char* name, auto call) {
    list.push_back(operation(std::string("AdapterRegistryV2.") + name, call));
  };
  add("getInstance", [](Scene&) { return registry().isAlive(); });
  add("registerCPPAdapter", [](Scene& scene) { return registry().registerCPPAdapter(scene.fresh); });
  add("unregisterCPPAdapter", [](Scene&) { return registry().unregisterCPPAdapter(u"b"); });
  add("getNewCPPAdapter", [](Scene&) { return registry().getNewCPPAdapter(u"b"); });
  add("getCPPAdapterForStaticUse", [](Scene&) { return registry().getCPPAdapterForStaticUse(u"b"); });
  add("getCPPAdapterStaticForSource",
      [](Scene&) { return registry().getCPPAdapterStaticForSource(u"x.test"); });
  add("getDisplayList", [](Scene&) { return registry().getDisplayList(); });
  add("getAllAdapterNames", [](Scene&) { return registry().getAllAdapterNames(); });
  add("isAdapterRegisteredByName", [](Scene&) { return registry().isAdapterRegisteredByName(u"b"); });
  add("isAdapterRegisteredByExtension",
      [](Scene&) { return registry().isAdapterRegisteredByExtension(u".none"); });
  add("destroy", [](Scene&) { registry().destroy(); });
}

void listTheCaches(Operations& list) {
  const auto add = [&](const char* name, auto call) {
    list.push_back(operation(std::string("AdapterCacheV2.") + name, call));
  };
  add("getInstance", [](Scene&) { return cache().isAlive(); });
  add("addCPPAdapterToCache",
      [](Scene& scene) { return cache().addCPPAdapterToCache(scene.fresh, u"y.test::s"); });
  add("removeCPPAdapterFromCache", [](Scene&) { return cache().removeCPPAdapterFromCache(u"x.test::s"); });
  add("getCPPAdapter", [](Scene&) { return cache().getCPPAdapter(u"x.test::s"); });
  add("getAllAdapterQualifiers", [](Scene&) { return cache().getAllAdapterQualifiers(); });
  add("destroy", [](Scene&) { cache().destroy(); });
  add("destroy: with its model", [](Scene&) { cache().getModel().destroy(); });
}

void listThoseOfWhatTheyHandBack(Operations& list) {
  const auto add = [&](const char* name, auto call) { list.push_back(operation(name, call)); };
  add("AdapterError.setError", [](Scene& scene) {
    scene.error.setError(AdapterDiagnostic::HardError, u"message", u"adapter", u"source");
  });
  add("AdapterError.getId", [](Scene& scene) { return scene.error.getId() == AdapterDiagnostic::HardError; });
  add("AdapterError.getAdapterName", [](Scene& scene) { return scene.error.getAdapterName(); });
  add("AdapterError.getSource", [](Scene& scene) { return scene.error.getSource(); });
  add("AdapterError.convertAdapterErrorsToDiagnostic", [](Scene& scene) {
    ndsvDestroyDiagnostic(AdapterError::convertAdapterErrorsToDiagnostic({scene.error}));
  });
  add("CPPAdapterV2Entry.setName", [](Scene&) { cache().impl()->getCPPCache().first().setName(u"v"); });
  add("DataContainer.destroyContainer", [](Scene& scene) { scene.container.destroyContainer(); });
}

}  // namespace

const std::vector<Operation>& brokerOperations() {
  static const std::vector<Operation> operations = [] {
    Operations list;
    listTheFacades(list);
    listTheRegistrys(list);
    listTheCaches(list);
    listThoseOfWhatTheyHandBack(list);
    return list;
  }();
  return operations;
}

const Operation* findOperation(const std::string& name) {
  const Operations& all = brokerOperations();
  const auto found =
      std::find_if(all.begin(), all.end(), [&](const Operation& each) { return each.name == name; });
  return found == all.end() ? nullptr : &*found;
}

namespace {

/// Lists what a run of an operation has noted, ends of adapters or all else.
std::vector<Call> notedBy(const Operation& operation, bool ends) {
  const auto log = std::make_shared<support::CallLog>();
  Scene scene(log);
  operation.run(scene);
  std::vector<Call> calls;
  std::map<std::string, std::size_t> numbers;
  for (const std::string& line : log->take()) {
    const std::string name = line.substr(0, line.find('('));
    if (name.ends_with(".~") == ends) calls.push_back({name, ++numbers[name]});
  }
  return calls;
}

}  // namespace

std::vector<Call> callsOf(const Operation& operation) {
  return notedBy(operation, false);
}
std::vector<Call> endsOf(const Operation& operation) {
  return notedBy(operation, true);
}

}  // namespace broker_operations
