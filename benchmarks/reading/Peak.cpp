// How much memory has this process used at most, when it has read a file by one road, or nothing? A program
// of its own, because the memory that a process has used before would hide it.
//
//   reading_peak nothing|library|peer FILE RESULT

#include <fstream>
#include <limits>
#include <string>
#include <string_view>

#include "benchmarks/KeepAlive.h"
#include "benchmarks/reading/Roads.h"

namespace {

/// In kilobytes. The counter that `getrusage` gives would begin with the peak of the process that started
/// this one.
long peak() {
  std::ifstream status("/proc/self/status");
  std::string entry;
  long kilobytes = 0;
  while (status >> entry && entry != "VmHWM:")
    status.ignore(std::numeric_limits<std::streamsize>::max(), '\n');
  status >> kilobytes;
  return kilobytes;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) return 2;
  const std::string_view road = argv[1];
  if (road == "library") keepAlive(reading::readByLibrary(argv[2]));
  if (road == "peer") keepAlive(reading::readByPeer(argv[2]));
  std::ofstream(argv[3]) << peak() << '\n';
}
