// What does it cost to find one of a hundred thousand names in a workspace? The peer is a hash table of the
// standard library.

#include <algorithm>
#include <cstddef>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

#include "benchmarks/KeepAlive.h"
#include "benchmarks/Ratios.h"
#include "platform/host/Array.h"
#include "platform/host/Workspace.h"

namespace {

constexpr std::size_t count = 100'000;

std::vector<std::string> makeNames() {
  std::vector<std::string> names;
  names.reserve(count);
  for (std::size_t number = 0; number < count; ++number) names.push_back("gain_" + std::to_string(number));
  return names;
}

/// The names in an order in which no table keeps them, copied so that they lie in it too.
std::vector<std::string> shuffled(std::vector<std::string> names) {
  std::shuffle(names.begin(), names.end(), std::mt19937(4));
  return {names.begin(), names.end()};
}

boost::shared_ptr<inWorkSpace_tag> fillWorkspace(const std::vector<std::string>& names) {
  boost::shared_ptr<inWorkSpace_tag> workspace = inCreateWorkspace(names.size());
  const hvArrayPtr value(hvCreateDoubleScalar(1));
  for (const std::string& name : names) inAssignInDesiredWS(value.get(), name, workspace);
  return workspace;
}

std::unordered_map<std::string, hvArrayPtr> fillTable(const std::vector<std::string>& names) {
  std::unordered_map<std::string, hvArrayPtr> table;
  const hvArrayPtr value(hvCreateDoubleScalar(1));
  for (const std::string& name : names) table.emplace(name, hvCreateSharedDataCopy(value.get()));
  return table;
}

/// Runs over the names again and again.
class Turn {
 public:
  explicit Turn(std::vector<std::string> names) : names_(std::move(names)), next_(names_.begin()) {}

  const std::string& next() {
    if (next_ == names_.end()) next_ = names_.begin();
    return *next_++;
  }

 private:
  std::vector<std::string> names_;
  std::vector<std::string>::const_iterator next_;
};

void FindAnyInTable(benchmark::State& state) {
  const std::vector<std::string> names = makeNames();
  const auto table = fillTable(names);
  Turn turn(shuffled(names));
  for (auto _ : state) {
    const hvArray* const found = table.find(turn.next())->second.get();
    keepAlive(found);
  }
}
BENCHMARK(FindAnyInTable);

void FindAny(benchmark::State& state) {
  measureBy(state, "FindAnyInTable");
  const std::vector<std::string> names = makeNames();
  const auto workspace = fillWorkspace(names);
  Turn turn(shuffled(names));
  for (auto _ : state) {
    const hvArray* const found = inGetValueFromWorkspace(turn.next(), workspace);
    keepAlive(found);
  }
}
BENCHMARK(FindAny);

void FindSameInTable(benchmark::State& state) {
  const std::vector<std::string> names = makeNames();
  const auto table = fillTable(names);
  const std::string name = names[count / 2];
  for (auto _ : state) {
    keepAlive(name);
    const hvArray* const found = table.find(name)->second.get();
    keepAlive(found);
  }
}
BENCHMARK(FindSameInTable);

void FindSame(benchmark::State& state) {
  measureBy(state, "FindSameInTable");
  const std::vector<std::string> names = makeNames();
  const auto workspace = fillWorkspace(names);
  const std::string name = names[count / 2];
  for (auto _ : state) {
    keepAlive(name);
    const hvArray* const found = inGetValueFromWorkspace(name, workspace);
    keepAlive(found);
  }
}
BENCHMARK(FindSame);

}  // namespace
