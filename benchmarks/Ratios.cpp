// The main program of all benchmarks: runs them as usual and then sets each beside its floor or peer. On a
// machine whose speed changes only such ratios mean anything, of medians of several interleaved rounds of one
// run; so this is how they are run unless told otherwise.

#include "benchmarks/Ratios.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <map>
#include <string>
#include <vector>

namespace {

/// Writes what the library's own reporter writes, and the ratios behind it.
class RatioReporter final : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
      if (run.run_type != Run::RT_Aggregate || run.aggregate_name != "median") continue;
      const std::string name = run.run_name.str();
      times_[name] = run.GetAdjustedCPUTime() * 1e9 / benchmark::GetTimeUnitMultiplier(run.time_unit);
      for (const auto& [counter, value] : run.counters) counters_[name][counter] = value.value;
      names_.push_back(name);
      file(name);
      if (!run.report_label.empty()) floors_[name] = run.report_label;
    }
  }

  void Finalize() override {
    if (times_.empty()) return;
    std::size_t width = 0;
    for (const std::string& name : names_) width = std::max(width, name.size());
    std::printf("\n%-*s %14s %14s %8s\n", static_cast<int>(width), "median", "ns", "floor", "ratio");
    for (const std::string& name : names_) {
      const auto floor = floors_.find(name);
      if (floor == floors_.end() || times_.count(floor->second) == 0) continue;
      print(name, static_cast<int>(width), times_.at(name), times_.at(floor->second));
      for (const auto& [counter, value] : counters_[name]) {
        const auto& peers = counters_[floor->second];
        const auto peer = peers.find(counter);
        if (peer != peers.end()) print("  " + counter, static_cast<int>(width), value, peer->second);
      }
    }
    for (const auto& [family, members] : families_) printGrowth(family, members, static_cast<int>(width));
  }

 private:
  /// The names of the benchmarks that differ in their one argument only, by the argument.
  using Members = std::map<long, std::string>;

  void file(const std::string& name) {
    const std::size_t slash = name.find('/');
    if (slash == std::string::npos) return;
    const std::string argument = name.substr(slash + 1);
    if (argument.find_first_not_of("0123456789") != std::string::npos) return;
    families_[name.substr(0, slash)][std::stol(argument)] = name;
  }

  void printGrowth(const std::string& family, const Members& members, int width) const {
    const auto& [least, first] = *members.begin();
    const auto& [most, last] = *members.rbegin();
    if (least == most || floors_.count(first) == 0 || floors_.count(last) == 0) return;
    const auto floorOfFirst = times_.find(floors_.at(first));
    const auto floorOfLast = times_.find(floors_.at(last));
    if (floorOfFirst == times_.end() || floorOfLast == times_.end()) return;
    const auto steps = static_cast<double>(most - least);
    print(family + ", for each", width, (times_.at(last) - times_.at(first)) / steps,
          (floorOfLast->second - floorOfFirst->second) / steps);
  }

  static void print(const std::string& what, int width, double value, double floor) {
    std::printf("%-*s %14.2f %14.2f %8.2f\n", width, what.c_str(), value, floor, value / floor);
  }

  std::vector<std::string> names_;
  std::map<std::string, double> times_;
  std::map<std::string, std::string> floors_;
  std::map<std::string, Members> families_;
  std::map<std::string, std::map<std::string, double>> counters_;
};

}  // namespace

int main(int argc, char** argv) {
  std::vector<std::string> texts{argv[0], "--benchmark_repetitions=9", "--benchmark_min_time=0.05",
                                 "--benchmark_enable_random_interleaving=true",
                                 "--benchmark_display_aggregates_only=true"};
  texts.insert(texts.end(), argv + 1, argv + argc);
  std::vector<char*> arguments;
  for (std::string& text : texts) arguments.push_back(text.data());
  int count = static_cast<int>(arguments.size());
  benchmark::Initialize(&count, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 2;
  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
}
