// What does it cost to read a JSON file of forty megabytes into a workspace, in time and in memory? The peer
// is the parser that the reader is built on, alone.

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string>
#include <system_error>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "benchmarks/KeepAlive.h"
#include "benchmarks/Ratios.h"
#include "benchmarks/reading/Roads.h"
#include "benchmarks/reading/Sample.h"
#include "platform/host/Workspace.h"

namespace {

/// Give the sample, once both roads have led to the same numbers.
const reading::Sample& sample() {
  static const reading::Sample sample;
  static const bool isSame = [] {
    const std::string name =
        reading::findDifference(reading::readByLibrary(sample.path()), reading::readByPeer(sample.path()));
    if (name.empty()) return true;
    std::fprintf(stderr, "The library and its peer have read different numbers under \"%s\".\n",
                 name.c_str());
    std::exit(1);
  }();
  static_cast<void>(isSame);
  return sample;
}

/// Tell how many kilobytes a process uses at most that goes one of the roads, or none.
long peakOf(std::string road) {
  std::string program = ND_READING_PEAK;
  std::string path = sample().path();
  std::string result = (sample().folder() / road).string();
  char* const arguments[] = {program.data(), road.data(), path.data(), result.data(), nullptr};
  pid_t process = 0;
  if (const int error = ::posix_spawn(&process, program.c_str(), nullptr, nullptr, arguments, environ))
    throw std::system_error(error, std::generic_category(), program);
  int status = 0;
  if (::waitpid(process, &status, 0) != process) throw std::system_error(errno, std::generic_category());
  long kilobytes = 0;
  if (status != 0 || !(std::ifstream(result) >> kilobytes) || kilobytes == 0)
    throw std::runtime_error(program + " has failed");
  return kilobytes;
}

/// Count what a road takes beyond a process that does nothing.
void countPeak(benchmark::State& state, const std::string& road) {
  state.counters["peak kB"] = static_cast<double>(peakOf(road) - peakOf("nothing"));
}

void ReadByPeer(benchmark::State& state) {
  const std::string path = sample().path();
  for (auto _ : state) {
    {
      const reading::NamedNumbers numbers = reading::readByPeer(path);
      keepAlive(numbers);
      state.PauseTiming();  // before what was read goes
    }
    state.ResumeTiming();
  }
  countPeak(state, "peer");
}
BENCHMARK(ReadByPeer)->Unit(benchmark::kMillisecond);

void ReadIntoWorkspace(benchmark::State& state) {
  measureBy(state, "ReadByPeer");
  const std::string path = sample().path();
  for (auto _ : state) {
    {
      const boost::shared_ptr<inWorkSpace_tag> workspace = reading::readByLibrary(path);
      keepAlive(workspace);
      state.PauseTiming();
    }
    state.ResumeTiming();
  }
  countPeak(state, "library");
}
BENCHMARK(ReadIntoWorkspace)->Unit(benchmark::kMillisecond);

}  // namespace
