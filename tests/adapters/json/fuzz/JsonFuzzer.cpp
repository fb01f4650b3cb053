// Reads whatever libFuzzer comes up with in both ways of reading, and stops where they don't agree.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "tests/adapters/json/agreement.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(data, data + size);
  const std::string disagreement = disagreementOn(bytes);
  if (disagreement.empty()) return 0;
  std::fprintf(stderr, "%s\n", disagreement.c_str());
  std::abort();
}
