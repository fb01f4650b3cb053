#pragma once

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <random>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>
#include <unistd.h>

#include "tests/support/walks/Counts.h"

/// How random walks are gone, whatever they change. A walk is made of a seed and a stream for its steps, or
/// null, and has `run`, which gives what differs behind its last step, and `counts` of the steps.
namespace walking {

/// How many walks are gone, and from which seed on. The environment says otherwise: ND_WALK_SEED asks for one
/// walk, written down step by step; ND_WALKS for so many; ND_WALK_SECONDS for as many as fit into the time,
/// with new seeds.
struct Plan {
  unsigned first = 1;
  unsigned count = 20000;
  std::chrono::seconds time{0};
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
  if (const unsigned seconds = setting("ND_WALK_SECONDS"); seconds != 0) {
    plan.time = std::chrono::seconds(seconds);
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

/// How often at least a kind of step is done, not refused, in a thousand walks.
struct Least {
  std::string_view step;
  double inThousand;
};

/// Check that walks went each kind of step, and none besides, as often as is wanted.
inline void checkCounts(const Counts& counts, unsigned walks, const std::vector<Least>& least) {
  for (const Least& each : least) {
    const double done = static_cast<double>(counts.of(each.step).done);
    EXPECT_GE(1000 * done / walks, each.inThousand) << "'" << each.step << "' is done too rarely:\n"
                                                    << counts;
  }
  for (const auto& [step, count] : counts.all()) {
    const bool isKnown = std::any_of(least.begin(), least.end(),
                                     [name = step](const Least& each) { return each.step == name; });
    EXPECT_TRUE(isKnown) << "nothing says how often '" << step << "' is to be done";
  }
}

/// Go the walks that are planned. `usesOfValues` lists how often the values are held that walks share, which
/// no walk may leave behind changed; a thousand walks and more are to have done each kind of step often.
template <class Walk, class Uses>
void goAll(Uses usesOfValues, const std::vector<Least>& least) {
  const Plan plan = planned();
  const auto uses = usesOfValues();
  const auto end = std::chrono::steady_clock::now() + plan.time;
  const bool isTimed = plan.time.count() > 0;
  if (isTimed) std::cout << "Walks from seed " << plan.first << " on\n";
  CrashReport crash;
  Counts counts;
  unsigned failures = 0, done = 0;
  for (; failures < 3 && (isTimed ? std::chrono::steady_clock::now() < end : done < plan.count); ++done) {
    const unsigned seed = plan.first + done;
    crash.setSeed(seed);
    std::string difference;
    {
      Walk walk(seed, plan.isTraced ? &std::cout : nullptr);
      difference = walk.run();
      counts.add(walk.counts());
    }
    if (isTimed && done % 20000 == 19999) std::cout << done + 1 << " walks, up to seed " << seed << std::endl;
    ASSERT_EQ(usesOfValues(), uses) << "seed " << seed << " left values behind\n" << stepsOf<Walk>(seed);
    if (difference.empty()) continue;
    ++failures;
    ADD_FAILURE() << "ND_WALK_SEED=" << seed << " goes this walk again. Behind its last step: " << difference
                  << '\n'
                  << stepsOf<Walk>(seed);
  }
  if (isTimed) std::cout << done << " walks\n" << counts;
  EXPECT_GT(done, 0U);
  if (failures == 0 && done >= 1000) checkCounts(counts, done, least);
}

}  // namespace walking
