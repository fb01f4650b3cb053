#include <cstdlib>

#include <gtest/gtest.h>

#include "platform/text/FoldedCompare.h"
#include "tests/support/AtOnce.h"

namespace {

using lx::text::equalNormalizedIgnoringCase;

bool comparesRight() {
  return equalNormalizedIgnoringCase(u"Stra\u00DFe", u"STRASSE") &&
         equalNormalizedIgnoringCase(u"\u00E9", u"E\u0301") &&
         !equalNormalizedIgnoringCase(u"\u00E9", u"\u00E8");
}

// Each round is a process of its own, in which nobody has used the character tables before.
TEST(FoldedCompareThreadsDeathTest, TheFirstUseCanBeOnSeveralThreadsAtOnce) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  for (int round = 0; round < 5; ++round) {
    EXPECT_EXIT(std::exit(support::holdsAtOnce(8, comparesRight) ? 0 : 1), testing::ExitedWithCode(0), "");
  }
}

}  // namespace
