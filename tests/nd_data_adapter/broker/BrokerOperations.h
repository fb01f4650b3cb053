#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "nd_data_adapter/model/AdapterError.h"
#include "nd_data_adapter/model/DataContainer.h"
#include "platform/foundation/ModelImpl.h"
#include "tests/support/CallLog.h"
#include "tests/support/FakeFileSystem.h"
#include "tests/support/FakeFirstGeneration.h"
#include "tests/support/ProbeAdapter.h"

/// Every operation of the broker, to be run with adapters that do what adapters must not do.
namespace broker_operations {

using support::Lines;

/// All that an operation works with: a registry with the prototype "a" of the section "s", which has
/// variants, and "b" of "other"; both claim ".test" and say no to every question. "w.test" and "x.test" are
/// open as "a'1" and "a'2". A client has a container with a workspace, a model for what is handed back, and
/// an adapter that is not registered. Each adapter holds a host array and a file as long as it lives.
class Scene {
 public:
  explicit Scene(const std::shared_ptr<support::CallLog>& log);
  Scene(const Scene&) = delete;
  Scene& operator=(const Scene&) = delete;

  /// Ends the broker with all that is open and registered.
  ~Scene();

  /// Describes the broker, the client's models with the workspace, and how many adapters live.
  Lines state() const;

  /// Tells whether a transaction is open in the client's models or in the broker's.
  bool hasOpenTransaction() const;

  /// Says what lives besides the adapters that live and the variables of the workspace, empty if nothing.
  std::string leaks() const;

  const std::shared_ptr<support::CallLog> log;

 private:
  const std::size_t filesBefore_;
  const std::size_t arraysBefore_;
  const std::size_t adaptersBefore_ = support::ProbeAdapter::live();

 public:
  const lx::base::Model model = lx::base::Model::create();
  lx::base::Model tmpModel = lx::base::Model::create();
  const nd::data::adapter::DataContainer container = nd::data::adapter::DataContainer::create(model);
  const nd::data::adapter::AdapterError error = nd::data::adapter::AdapterError::create(model);
  const boost::shared_ptr<inWorkSpace_tag> workspace;
  const std::shared_ptr<support::FakeFileSystem> fileSystem;
  const lx::services::FileSystem::Replacement replaced;
  support::FakeFirstGeneration& first;
  std::shared_ptr<CPPAdapterV2> fresh;  // "c", not registered
};

struct Operation {
  std::string name;                  // class and operation, and after ": " in which situation
  std::function<Lines(Scene&)> run;  // gives the answer
};

/// For the name of a test's parameter.
inline std::ostream& operator<<(std::ostream& stream, const Operation& operation) {
  return stream << operation.name;
}

/// Lists the operations, each in every situation in which it takes another way.
const std::vector<Operation>& brokerOperations();

/// Gives the one of this name; null if there is none.
const Operation* findOperation(const std::string& name);

/// One call that an operation makes: "a.getAdapterName", and its number among those of the same name.
struct Call {
  std::string name;
  std::size_t number = 1;

  /// Writes it as the tables have it: the number only if it is not the first.
  std::string written() const { return number == 1 ? name : name + " " + std::to_string(number); }
};

/// Lists the calls that a run of an operation makes of adapters, of the first generation and of the
/// filesystem.
std::vector<Call> callsOf(const Operation& operation);

/// Lists the ends of adapters that a run of an operation brings about, as "a'1.~". They are no calls that
/// may throw.
std::vector<Call> endsOf(const Operation& operation);

}  // namespace broker_operations
