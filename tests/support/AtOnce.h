#pragma once

#include <atomic>
#include <barrier>
#include <cstddef>
#include <thread>
#include <vector>

namespace support {

/// Makes a call on several threads that wait for each other before they begin, and tells whether it was true
/// on all of them.
template <class Call>
bool holdsAtOnce(std::ptrdiff_t threads, const Call& call) {
  std::barrier start(threads);
  std::atomic<bool> holds = true;
  {
    std::vector<std::jthread> running;
    for (std::ptrdiff_t number = 0; number < threads; ++number) {
      running.emplace_back([&] {
        start.arrive_and_wait();
        if (!call()) holds = false;
      });
    }
  }
  return holds;
}

}  // namespace support
