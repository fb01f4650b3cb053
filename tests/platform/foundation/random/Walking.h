#pragma once

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <random>
#include <sstream>
#include <string>

#include <gtest/gtest.h>
#include <unistd.h>

/// How random walks are gone, whatever they change. A walk is made of a seed and a stream for its steps, or
/// null, and has `run`, which gives what differs behind its last step.
namespace walking {

/// How many walks are gone, and from which seed on. The environment says otherwise: ND_WALK_SEED asks for one
/// walk, written down step by step; ND_WALKS for so many; ND_WALK_MINUTES for as many as fit into the time,
/// with new seeds.
struct Plan {
  unsigned first = 1;
  unsigned count = 20000;
  std::chrono::minutes time{0};
  bool isTraced = false;
};

/// Give a number of the environment; 0 if it isn't set.
inline unsigned setting(const char* name) {
  const char* const text = std::getenv(name);
  return text == nullptr ? 0 : static_cast<unsigned>(std::stoul(text));
}

inline Plan planned() {
  Plan plan;
  if (const unsigned count = setting("ND_WALKS"); count != 0) plan.count = count;
  if (const unsigned minutes = setting("ND_WALK_MINUTES"); minutes != 0) {
    plan.time = std::chrono::minutes(minutes);
    plan.first = std::random_device()();
  }
  if (std::getenv("ND_WALK_SEED") != nullptr) plan = {setting("ND_WALK_SEED"), 1, {}, true};
  return plan;
}

/// Go a walk for its steps: those of a failed one up to the first difference are the shortest that fail.
template <class Walk>
std::string stepsOf(unsigned seed) {
  std::ostringstream steps;
  Walk(seed, &steps).run();
  return steps.str();
}

/// While one lives, a crash says the seed before it ends the program.
class CrashReport {
 public:
  CrashReport() {
    for (const int signal : {SIGSEGV, SIGABRT, SIGBUS, SIGFPE}) std::signal(signal, &CrashReport::report);
  }
  CrashReport(const CrashReport&) = delete;
  CrashReport& operator=(const CrashReport&) = delete;
  ~CrashReport() {
    for (const int signal : {SIGSEGV, SIGABRT, SIGBUS, SIGFPE}) std::signal(signal, SIG_DFL);
  }

  void setSeed(unsigned seed) {
    text_ = "The walk with ND_WALK_SEED=" + std::to_string(seed) + " crashes.\n";
  }

 private:
  static void report(int signal) {
    if (write(STDERR_FILENO, text_.data(), text_.size()) < 0) text_.clear();
    std::signal(signal, SIG_DFL);
    std::raise(signal);
  }

  static inline std::string text_;
};

/// Go the walks that are planned. `usesOfValues` lists how often the values are held that walks share, which
/// no walk may leave behind changed.
template <class Walk, class Uses>
void goAll(Uses usesOfValues) {
  const Plan plan = planned();
  const auto uses = usesOfValues();
  const auto end = std::chrono::steady_clock::now() + plan.time;
  const bool isTimed = plan.time.count() > 0;
  if (isTimed) std::cout << "Walks from seed " << plan.first << " on\n";
  CrashReport crash;
  unsigned failures = 0, done = 0;
  for (; failures < 3 && (isTimed ? std::chrono::steady_clock::now() < end : done < plan.count); ++done) {
    const unsigned seed = plan.first + done;
    crash.setSeed(seed);
    const std::string difference = Walk(seed, plan.isTraced ? &std::cout : nullptr).run();
    if (isTimed && done % 20000 == 19999) std::cout << done + 1 << " walks, up to seed " << seed << std::endl;
    ASSERT_EQ(usesOfValues(), uses) << "seed " << seed << " left values behind\n" << stepsOf<Walk>(seed);
    if (difference.empty()) continue;
    ++failures;
    ADD_FAILURE() << "ND_WALK_SEED=" << seed << " goes this walk again. Behind its last step: " << difference
                  << '\n'
                  << stepsOf<Walk>(seed);
  }
  if (isTimed) std::cout << done << " walks\n";
  EXPECT_GT(done, 0U);
}

}  // namespace walking
