#include "tests/platform/foundation/random/Pools.h"
#include "tests/platform/foundation/random/Walk.h"
#include "tests/platform/foundation/random/Walking.h"

namespace {

using model_walk::Walk;

TEST(RandomWalk, KeepsModelsEqualToTheirTwins) {
  walking::goAll<Walk>(&model_walk::usesOfPools);
}

TEST(RandomWalk, IsTheSameForTheSameSeed) {
  EXPECT_EQ(walking::stepsOf<Walk>(7), walking::stepsOf<Walk>(7));
  EXPECT_NE(walking::stepsOf<Walk>(7), walking::stepsOf<Walk>(8));
}

}  // namespace
