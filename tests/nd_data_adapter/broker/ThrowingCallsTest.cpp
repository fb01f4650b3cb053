// What the broker leaves when something that it calls throws: throwing_calls.txt has for each operation and
// each call that it makes what may have changed, and is run with every kind of exception.

#include <cctype>
#include <fstream>
#include <functional>
#include <optional>
#include <ostream>
#include <set>
#include <stdexcept>
#include <utility>

#include "nd_data_adapter/model/AdapterCacheV2.h"
#include "nd_data_adapter/model/AdapterManagerV2.h"
#include "nd_data_adapter/model/AdapterRegistryV2.h"
#include "nd_data_adapter/model/CPPAdapterV2Entry.h"
#include "platform/foundation/meta/Meta.h"
#include "platform/text/Convert.h"
#include "tests/nd_data_adapter/broker/BrokerOperations.h"
#include "tests/support/AtEachNotice.h"
#include "tests/support/BrokerTest.h"
#include "tests/support/ModelWatch.h"
#include "tests/support/Thrown.h"
#include "tests/support/describe.h"

using namespace nd::data::adapter;
using broker_operations::brokerOperations;
using broker_operations::Call;
using broker_operations::callsOf;
using broker_operations::findOperation;
using broker_operations::Operation;
using broker_operations::Scene;
using lx::base::Model;
using support::AtEachNotice;
using support::Lines;
using support::missingIn;
using support::ModelWatch;
using support::Thrown;

namespace {

/// An operation and a call of it that throws, with what the throw may leave.
struct Row {
  std::string operation;
  Call call;
  Lines added{};                       // what stands afterwards and did not before
  Lines removed{};                     // and the other way round
  Lines heard{};                       // the notices that observers got
  bool isUntold = false;               // of what is added and removed nobody hears
  std::optional<std::string> gives{};  // the answer, where the exception does not arrive
};

std::ostream& operator<<(std::ostream& stream, const Row& row) {
  return stream << row.operation << " / " << row.call.written();
}

struct Table {
  std::vector<Row> rows;
  std::set<std::string> operations;  // those that make no call too
  std::set<std::string> neverAsked;  // operations of adapters
};

/// Reads the table: an operation stands at the margin, its calls by two columns to the right of it, and what
/// a call's throw leaves by two more.
Table readTable() {
  std::ifstream file(THROWING_CALLS_TABLE);
  if (!file) throw std::runtime_error("there is no " THROWING_CALLS_TABLE);
  Table table;
  std::string operation;
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line.front() == '#') continue;
    const std::size_t indent = line.find_first_not_of(' ');
    const std::string text = line.substr(indent);
    if (indent == 0) {
      operation = text;
      if (operation != "never asked" && !table.operations.insert(operation).second)
        throw std::runtime_error("twice in the table: " + line);
    } else if (indent == 2 && operation == "never asked") {
      table.neverAsked.insert(text);
    } else if (indent == 2) {
      const std::size_t space = text.find(' ');
      const std::size_t number = space == std::string::npos ? 1 : std::stoul(text.substr(space));
      table.rows.push_back({operation, {text.substr(0, space), number}});
    } else if (text.starts_with("+ ")) {
      table.rows.back().added.push_back(text.substr(2));
    } else if (text.starts_with("- ")) {
      table.rows.back().removed.push_back(text.substr(2));
    } else if (text.starts_with("told ")) {
      table.rows.back().heard.push_back(text.substr(5));
    } else if (text == "untold") {
      table.rows.back().isUntold = true;
    } else if (text.starts_with("gives ")) {
      table.rows.back().gives = text.substr(6);
    } else {
      throw std::runtime_error("not understood in the table: " + line);
    }
  }
  return table;
}

const Table& table() {
  static const Table read = readTable();
  return read;
}

std::string joined(const Lines& lines) {
  std::string text;
  for (const std::string& line : lines) text.append(text.empty() ? "" : ", ").append(line);
  return text;
}

/// Watches a model: what its observers were told, and whether what they saw when they were told last is what
/// stands.
class Audience {
 public:
  using Sight = std::function<Lines()>;

  Audience(const Model& model, Sight sight)
      : watch_(model),
        sight_(std::move(sight)),
        seen_(sight_()),
        observer_(model, [this] { seen_ = sight_(); }) {}

  bool hasSeenWhatStands() const { return sight_() == seen_; }

  Lines heard() const {
    Lines lines;
    for (const Lines& notice : watch_.notices()) lines.push_back(joined(notice));
    return lines;
  }

 private:
  ModelWatch watch_;
  Sight sight_;
  Lines seen_;
  AtEachNotice observer_;
};

/// Watches all models that operations change.
class Audiences {
 public:
  explicit Audiences(const Scene& scene) {
    for (const Model& each : {scene.tmpModel, scene.model})
      watch(each, [each] { return support::contentsOf(each); });
    watch(AdapterRegistryV2::getInstance().getModel(), [] { return stateOf("registered "); });
    watch(AdapterCacheV2::getInstance().getModel(), [] { return stateOf("open "); });
  }

  bool haveSeenWhatStands() const {
    for (const auto& each : audiences_) {
      if (!each->hasSeenWhatStands()) return false;
    }
    return true;
  }

  Lines heard() const {
    Lines lines;
    for (const auto& each : audiences_) {
      for (const std::string& line : each->heard()) lines.push_back(line);
    }
    return lines;
  }

 private:
  static Lines stateOf(const std::string& part) {
    Lines lines = support::stateOfBroker();
    std::erase_if(lines, [&](const std::string& line) { return !line.starts_with(part); });
    return lines;
  }

  void watch(const Model& model, const Audience::Sight& sight) {
    audiences_.push_back(std::make_unique<Audience>(model, sight));
  }

  std::vector<std::unique_ptr<Audience>> audiences_;
};

class ThrowingCalls : public support::BrokerTest, public testing::WithParamInterface<Row> {};

TEST_P(ThrowingCalls, PassThroughAndLeaveOnlyWhatIsAllowedToStay) {
  const Row& row = GetParam();
  const Operation* const operation = findOperation(row.operation);
  ASSERT_NE(operation, nullptr);
  for (const bool isObserved : {false, true}) {
    for (const Thrown& thrown : support::everyKindOfException()) {
      SCOPED_TRACE(std::string(thrown.name) + (isObserved ? ", observed" : ", not observed"));
      Scene scene(log);
      const Lines before = scene.state();
      std::optional<Audiences> audiences;
      if (isObserved) audiences.emplace(scene);
      log->throwAt(row.call.name, thrown.object, row.call.number);

      if (row.gives)
        EXPECT_EQ(operation->run(scene), Lines{*row.gives});
      else
        EXPECT_TRUE(support::isLeftBy(thrown.object, [&] { operation->run(scene); }));

      EXPECT_EQ(log->actionsLeft(), 0U) << "the call was not made";
      EXPECT_EQ(scene.fresh.use_count(), 1);
      EXPECT_FALSE(scene.hasOpenTransaction());
      const Lines after = scene.state();
      EXPECT_EQ(missingIn(before, after), row.added);
      EXPECT_EQ(missingIn(after, before), row.removed);
      EXPECT_EQ(scene.leaks(), "");
      if (isObserved) {
        EXPECT_EQ(audiences->heard(), row.heard);
        EXPECT_EQ(audiences->haveSeenWhatStands(), !row.isUntold);
      }
    }
  }
}

TEST_P(ThrowingCalls, LetTheOperationWorkAfterwardsAsIfNothingHadBeenThrown) {
  const Row& row = GetParam();
  const Operation* const operation = findOperation(row.operation);
  ASSERT_NE(operation, nullptr);
  const auto answerAndState = [&](bool isAfterAThrow) {
    Scene scene(log);
    if (isAfterAThrow) {
      log->throwAt(row.call.name, std::make_exception_ptr(1), row.call.number);
      if (row.gives)
        operation->run(scene);
      else
        EXPECT_THROW(operation->run(scene), int);
      scene.tmpModel = Model::create();  // what the failed call handed back is its caller's
    }
    Lines lines = operation->run(scene);
    const Lines state = scene.state();
    lines.insert(lines.end(), state.begin(), state.end());
    return lines;
  };
  const Lines wanted = answerAndState(false);
  EXPECT_EQ(answerAndState(true), wanted);
}

std::string nameOf(const testing::TestParamInfo<Row>& info) {
  std::string name;
  bool isWord = false;
  for (const char each : info.param.operation + " " + info.param.call.written()) {
    const bool isLetter = std::isalnum(static_cast<unsigned char>(each)) != 0;
    if (isLetter && !isWord) name += static_cast<char>(std::toupper(static_cast<unsigned char>(each)));
    if (isLetter && isWord) name += each;
    isWord = isLetter;
  }
  return name;
}

INSTANTIATE_TEST_SUITE_P(EachCall, ThrowingCalls, testing::ValuesIn(table().rows), nameOf);

// The table is complete

using TableOfThrowingCalls = support::BrokerTest;

TEST_F(TableOfThrowingCalls, HasEachCallOfEachOperationOnce) {
  Lines wanted;
  for (const Operation& operation : brokerOperations()) {
    EXPECT_TRUE(table().operations.contains(operation.name)) << operation.name << " is missing";
    for (const Call& call : callsOf(operation)) wanted.push_back(operation.name + " / " + call.written());
  }
  Lines found;
  for (const Row& row : table().rows) found.push_back(row.operation + " / " + row.call.written());
  EXPECT_EQ(missingIn(found, wanted), Lines{}) << "missing in the table";
  EXPECT_EQ(missingIn(wanted, found), Lines{}) << "in the table, and never called";
  EXPECT_EQ(table().operations.size(), brokerOperations().size()) << "an operation that is not run";
}

TEST_F(TableOfThrowingCalls, HasEachOperationThatTheBrokersClassesHave) {
  std::set<std::string> run;
  for (const std::string& name : table().operations) run.insert(name.substr(0, name.find(':')));
  std::size_t count = 0;
  for (const lx::base::meta::Class& type :
       {AdapterManagerV2::metaClass(), AdapterRegistryV2::metaClass(), AdapterCacheV2::metaClass(),
        CPPAdapterV2Entry::metaClass(), AdapterError::metaClass(), DataContainer::metaClass()}) {
    for (const lx::base::meta::Operation& operation : type.getOwnOperations()) {
      const std::string name = lx::text::toUtf8(type.getName()) + "." + lx::text::toUtf8(operation.getName());
      EXPECT_TRUE(run.contains(name)) << name;
      ++count;
    }
  }
  EXPECT_GE(count, 36U);
}

TEST_F(TableOfThrowingCalls, HasEachOperationOfAnAdapterUnlessTheBrokerNeverAsksIt) {
  const std::set<std::string> all{"clone",
                                  "getAdapterName",
                                  "getSupportedExtensions",
                                  "getSectionName",
                                  "isSourceValid",
                                  "supportsReading",
                                  "supportsWriting",
                                  "open",
                                  "close",
                                  "getExternalSources",
                                  "getCurrentChecksum",
                                  "hasData",
                                  "getData",
                                  "writeData",
                                  "hasVariants",
                                  "getVariantControls",
                                  "getConditionalData",
                                  "getType",
                                  "isReady"};
  std::set<std::string> found = table().neverAsked;
  for (const Row& row : table().rows) {
    const std::string& call = row.call.name;
    const std::size_t dot = call.find('.');
    if (call.starts_with("first.") || call.starts_with("fs.")) continue;
    EXPECT_FALSE(table().neverAsked.contains(call.substr(dot + 1))) << call;
    found.insert(call.substr(dot + 1));
  }
  EXPECT_EQ(found, all);
}

}  // namespace
