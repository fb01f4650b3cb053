// Adapters that, while the broker asks them or lets them go, change what it works with: each operation, at
// each of its calls, with each way to meddle. As a rule it comes out as if the adapter had meddled before the
// operation or after it; meddling.txt has what comes out otherwise.

#include <algorithm>
#include <cctype>
#include <exception>
#include <fstream>
#include <functional>
#include <set>
#include <stdexcept>
#include <utility>

#include "nd_data_adapter/model/AdapterCacheV2.h"
#include "nd_data_adapter/model/AdapterManagerV2.h"
#include "nd_data_adapter/model/AdapterRegistryV2.h"
#include "platform/services/CatalogMessage.h"
#include "platform/text/Convert.h"
#include "tests/nd_data_adapter/broker/BrokerOperations.h"
#include "tests/support/BrokerTest.h"
#include "tests/support/Thrown.h"
#include "tests/support/describe.h"

using namespace nd::data::adapter;
using broker_operations::brokerOperations;
using broker_operations::Call;
using broker_operations::callsOf;
using broker_operations::endsOf;
using broker_operations::Operation;
using broker_operations::Scene;
using support::Lines;
using support::ProbeAdapter;

namespace {

struct Meddling {
  std::string name;
  std::function<void(Scene&, const Operation&)> act;
};

const std::vector<Meddling>& meddlings() {
  using M = AdapterManagerV2;
  static const std::vector<Meddling> all{
      {"closes all sources",
       [](Scene&, const Operation&) {
         for (const std::u16string& each : M::getAllOpenedAdapterNamesWithSection())
           M::closeAdapterbyNamesWithSection(each);
       }},
      {"unregisters all adapters",
       [](Scene&, const Operation&) {
         for (const char16_t* name : {u"a", u"b", u"c"}) M::unregisterAdapterByName(name);
       }},
      {"destroys the cache", [](Scene&, const Operation&) { AdapterCacheV2::getInstance().destroy(); }},
      {"destroys the model of the cache",
       [](Scene&, const Operation&) { AdapterCacheV2::getInstance().getModel().destroy(); }},
      {"destroys the registry", [](Scene&, const Operation&) { AdapterRegistryV2::getInstance().destroy(); }},
      {"destroys the model of the registry",
       [](Scene&, const Operation&) { AdapterRegistryV2::getInstance().getModel().destroy(); }},
      {"opens a source", [](Scene&, const Operation&) { M::openSource(u"y.test", u"other", {}); }},
      {"opens an open source again", [](Scene&, const Operation&) { M::openSource(u"x.test", u"s", {}); }},
      {"registers an adapter", [](Scene& scene, const Operation&) { M::registerCPPAdapter(scene.fresh); }},
      {"reads a source",
       [](Scene& scene, const Operation&) {
         M::getData(u"w.test", u"s", scene.container, u"", scene.tmpModel);
       }},
      {"does the same again", [](Scene& scene, const Operation& operation) { operation.run(scene); }},
      {"lets the client's adapter go", [](Scene& scene, const Operation&) { scene.fresh.reset(); }},
      {"destroys the model of the answer", [](Scene& scene, const Operation&) { scene.tmpModel.destroy(); }},
      {"lets the model of the answer go",
       [](Scene& scene, const Operation&) { scene.tmpModel = lx::base::Model(); }},
      {"destroys the container", [](Scene& scene, const Operation&) { scene.container.destroy(); }},
      {"destroys the client's model", [](Scene& scene, const Operation&) { scene.model.destroy(); }},
  };
  return all;
}

/// Takes the numbers of clones away: which one a source got depends on what was opened first.
std::string withoutNumbers(const std::string& text) {
  std::string result;
  for (std::size_t at = 0; at < text.size(); ++at) {
    result += text[at];
    if (text[at] != '\'' || at == 0 || !std::islower(static_cast<unsigned char>(text[at - 1]))) continue;
    while (at + 1 < text.size() && std::isdigit(static_cast<unsigned char>(text[at + 1])) != 0) ++at;
  }
  return result;
}

/// Runs something and gives what came of it: the answer, or what was raised.
Lines resultOf(const std::function<Lines()>& run) {
  try {
    return run();
  } catch (const lx::services::CatalogMessage& message) {
    const std::string first =
        message.arguments().empty() ? "" : lx::text::toUtf8(message.arguments().front());
    return {"raises " + std::string(message.key()) + " " + first};
  }
}

/// Meddles as an adapter does that bears what comes of it; tells whether nothing was raised.
bool meddle(const Meddling& meddling, Scene& scene, const Operation& operation) {
  const Lines result = resultOf([&] {
    meddling.act(scene, operation);
    return Lines{};
  });
  return result.empty();
}

Lines stateOf(const Scene& scene) {
  Lines lines = support::stateOfBroker();
  for (const lx::base::Model& each : {scene.tmpModel, scene.model}) {
    const Lines more = each && each.isAlive() ? support::contentsOf(each) : Lines{"no model"};
    lines.insert(lines.end(), more.begin(), more.end());
  }
  for (std::string& line : lines) line = withoutNumbers(line);
  std::sort(lines.begin(), lines.end());
  return lines;
}

struct Outcome {
  Lines answer;  // one line begins with "raises" if nothing was given
  Lines state;
  bool operator==(const Outcome&) const = default;
};

/// What comes out otherwise than by the rule, and where.
struct Exception {
  std::string operation, meddling;
  std::set<std::string> calls;  // "every call" where it makes no difference
  std::string answer;
  Lines added{}, removed{};  // in comparison with meddling after the operation
};

std::set<std::string> callsIn(const std::string& list) {
  std::set<std::string> calls;
  for (std::size_t begin = 0; begin < list.size();) {
    const std::size_t end = std::min(list.find(", ", begin), list.size());
    calls.insert(list.substr(begin, end - begin));
    begin = end + 2;
  }
  return calls;
}

/// Reads the table, which goes by operation, meddling and calls, and says for these what comes out.
std::vector<Exception> readTable() {
  std::ifstream file(MEDDLING_TABLE);
  if (!file) throw std::runtime_error("there is no " MEDDLING_TABLE);
  std::vector<Exception> table;
  std::string operation, meddling;
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line.front() == '#') continue;
    const std::size_t indent = line.find_first_not_of(' ');
    const std::string text = line.substr(indent);
    if (indent == 0)
      operation = text;
    else if (indent == 2)
      meddling = text;
    else if (indent == 4)
      table.push_back({operation, meddling, callsIn(text), ""});
    else if (text.starts_with("+ "))
      table.back().added.push_back(text.substr(2));
    else if (text.starts_with("- "))
      table.back().removed.push_back(text.substr(2));
    else
      table.back().answer = text;
  }
  return table;
}

const std::vector<Exception>& table() {
  static const std::vector<Exception> read = readTable();
  return read;
}

const Exception* findException(const Operation& operation, const Meddling& meddling, const Call& call) {
  for (const Exception& each : table()) {
    if (each.operation == operation.name && each.meddling == meddling.name &&
        (each.calls.contains(call.written()) || each.calls.contains("every call")))
      return &each;
  }
  return nullptr;
}

std::string written(const Lines& lines) {
  std::string text;
  for (const std::string& line : lines) text.append(text.empty() ? "" : ", ").append(line);
  return text;
}

class MeddlingAdapters : public support::BrokerTest, public testing::WithParamInterface<Operation> {
 protected:
  Outcome undisturbed(const Operation& operation) const {
    Scene scene(log);
    const Lines answer = resultOf([&] { return operation.run(scene); });
    return {answer, stateOf(scene)};
  }

  /// Runs an operation and meddles before it or after it.
  Outcome inTurn(const Operation& operation, const Meddling& meddling, bool isBefore) const {
    Scene scene(log);
    if (isBefore) meddle(meddling, scene, operation);
    const Lines answer = resultOf([&] { return operation.run(scene); });
    if (!isBefore) meddle(meddling, scene, operation);
    return {answer, stateOf(scene)};
  }

  /// Runs an operation and meddles at one of its calls; tells whether the meddling was refused.
  std::pair<Outcome, bool> within(const Operation& operation, const Call& call,
                                  const Meddling& meddling) const {
    Scene scene(log);
    bool hasMeddled = false;
    bool isRefused = false;
    const auto act = [&] {
      hasMeddled = true;
      isRefused = !meddle(meddling, scene, operation);
    };
    log->at(call.name, act, call.number);
    const Lines answer = resultOf([&] { return operation.run(scene); });
    EXPECT_TRUE(hasMeddled);
    const Outcome outcome{answer, stateOf(scene)};
    expectWhole(scene);
    return {outcome, isRefused};
  }

  /// Expects that nothing is open or left over and that the broker works.
  void expectWhole(const Scene& scene) const {
    log->forgetActions();
    EXPECT_FALSE(scene.hasOpenTransaction());
    EXPECT_EQ(scene.leaks(), "");
    EXPECT_EQ(adaptersHeld(scene), ProbeAdapter::live()) << "an adapter lives that nobody holds";
    EXPECT_TRUE(worksOn());
  }

 private:
  static std::size_t adaptersHeld(const Scene& scene) {
    std::set<const CPPAdapterV2*> held{scene.fresh.get()};
    for (const CPPAdapterV2Entry& entry : AdapterRegistryV2::getInstance().impl()->getCPPRegistry())
      held.insert(entry.adapter().get());
    for (const CPPAdapterV2Entry& entry : AdapterCacheV2::getInstance().impl()->getCPPCache())
      held.insert(entry.adapter().get());
    held.erase(nullptr);
    return held.size();
  }

  /// Tells whether an adapter can be registered, a source opened and read through it, and all taken back.
  bool worksOn() const {
    using M = AdapterManagerV2;
    const lx::base::Model model = lx::base::Model::create();
    const bool isOpen =
        M::registerCPPAdapter(makeProbe(u"new", u"new", {u".new"})) && M::openSource(u"a.new", u"new", {});
    const AdapterError error = M::getData(u"a.new", u"new", DataContainer::create(model), u"", model);
    return isOpen && error.getId() == AdapterDiagnostic::NoDiagnostic &&
           M::closeSource(u"a.new", u"new", {}) && M::unregisterAdapterByName(u"new");
  }
};

TEST_P(MeddlingAdapters, LeaveTheOperationAsIfTheyHadMeddledBeforeOrAfterItOrAsTheTableHasIt) {
  const Operation& operation = GetParam();
  std::vector<Call> calls = callsOf(operation);
  for (const Call& end : endsOf(operation)) calls.push_back(end);
  const Outcome alone = undisturbed(operation);
  for (const Meddling& meddling : meddlings()) {
    const Outcome before = inTurn(operation, meddling, true);
    const Outcome after = inTurn(operation, meddling, false);
    for (const Call& call : calls) {
      SCOPED_TRACE(call.written() + " / " + meddling.name);
      const auto [outcome, isRefused] = within(operation, call, meddling);
      const bool isByTheRule = outcome == before || outcome == after || (isRefused && outcome == alone);
      const Exception* const exception = findException(operation, meddling, call);
      EXPECT_EQ(isByTheRule, exception == nullptr);
      if (isByTheRule && exception == nullptr) continue;
      EXPECT_EQ(written(outcome.answer), exception == nullptr ? "?" : exception->answer);
      EXPECT_EQ(support::missingIn(after.state, outcome.state),
                exception == nullptr ? Lines{} : exception->added);
      EXPECT_EQ(support::missingIn(outcome.state, after.state),
                exception == nullptr ? Lines{} : exception->removed);
    }
  }
}

TEST_P(MeddlingAdapters, CanThrowWhenTheyHaveMeddled) {
  const Operation& operation = GetParam();
  const std::exception_ptr thrown = std::make_exception_ptr(support::OwnException());
  for (const Meddling& meddling : meddlings()) {
    for (const Call& call : callsOf(operation)) {
      if (call.name == "fs.exists") continue;  // what it throws is borne
      SCOPED_TRACE(call.written() + " / " + meddling.name);
      Scene scene(log);
      const auto act = [&] {
        meddle(meddling, scene, operation);
        std::rethrow_exception(thrown);
      };
      log->at(call.name, act, call.number);
      EXPECT_TRUE(support::isLeftBy(thrown, [&] { operation.run(scene); }));
      expectWhole(scene);
    }
  }
}

std::string nameOf(const testing::TestParamInfo<Operation>& info) {
  std::string name = info.param.name;
  std::erase_if(name, [](char each) { return std::isalnum(static_cast<unsigned char>(each)) == 0; });
  return name;
}

INSTANTIATE_TEST_SUITE_P(Each, MeddlingAdapters, testing::ValuesIn(brokerOperations()), nameOf);

TEST(TableOfMeddling, NamesOperationsMeddlingsAndCallsThatThereAre) {
  EXPECT_FALSE(table().empty());
  for (const Exception& each : table()) {
    SCOPED_TRACE(each.operation + " / " + each.meddling);
    const Operation* const operation = broker_operations::findOperation(each.operation);
    ASSERT_NE(operation, nullptr);
    EXPECT_TRUE(std::any_of(meddlings().begin(), meddlings().end(),
                            [&](const Meddling& meddling) { return meddling.name == each.meddling; }));
    std::set<std::string> names{"every call"};
    for (const Call& call : callsOf(*operation)) names.insert(call.written());
    EXPECT_FALSE(each.calls.empty());
    EXPECT_TRUE(std::includes(names.begin(), names.end(), each.calls.begin(), each.calls.end()));
    EXPECT_NE(each.answer, "");
  }
}

}  // namespace
