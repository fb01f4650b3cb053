#include <gtest/gtest-spi.h>

#include "tests/support/walks/Walking.h"

namespace {

/// Ten walks that set something twenty times and in vain ten times.
walking::Counts sample() {
  walking::Counts counts;
  for (int done = 0; done < 30; ++done) counts.count("set", done < 20);
  return counts;
}

TEST(CrashReportDeathTest, SaysTheSeed) {
  EXPECT_DEATH(
      {
        walking::CrashReport crash;
        crash.setSeed(17);
        std::abort();
      },
      "ND_WALK_SEED=17 crashes");
}

TEST(Counts, AreOfAllAndOfThoseThatAreDone) {
  walking::Counts counts = sample();
  counts.add(sample());
  EXPECT_EQ(counts.of("set").gone, 60U);
  EXPECT_EQ(counts.of("set").done, 40U);
  EXPECT_EQ(counts.of("clear").gone, 0U);
}

TEST(CheckCounts, TakesWhatIsDoneOftenEnough) {
  walking::checkCounts(sample(), 10, {{"set", 2000}});
}

TEST(CheckCounts, RefusesWhatIsDoneTooRarely) {
  EXPECT_NONFATAL_FAILURE(walking::checkCounts(sample(), 10, {{"set", 2001}}), "'set' is done too rarely");
}

TEST(CheckCounts, RefusesWhatNothingIsSaidOf) {
  EXPECT_NONFATAL_FAILURE(walking::checkCounts(sample(), 10, {}), "nothing says how often 'set'");
}

}  // namespace
