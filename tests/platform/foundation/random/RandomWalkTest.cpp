#include "tests/platform/foundation/random/Pools.h"
#include "tests/platform/foundation/random/Walk.h"
#include "tests/support/walks/Walking.h"

namespace {

using model_walk::Walk;

/// About half as often as the steps are done with the fixed seeds.
const std::vector<walking::Least> least{
    {"create", 7000},
    {"create with an identity", 450},
    {"create a proxy", 400},
    {"build", 450},
    {"build in a property", 550},
    {"set", 1200},
    {"set a key", 370},
    {"change values", 750},
    {"put", 550},
    {"add", 1200},
    {"remove", 500},
    {"clear", 250},
    {"replace", 230},
    {"refer", 750},
    {"destroy", 800},
    {"destroy, and change a key meanwhile", 350},
    {"make a proxy", 900},
    {"ask for an identity", 400},
    {"load what a proxy stands for", 500},
    {"resolve a contained proxy", 100},
    {"resolve a proxy in a sequence", 70},
    {"resolve a proxy in a map", 80},
    {"resolve a proxy in a multimap", 44},
    {"resolve a single reference", 120},
    {"resolve a proxy in a row of references", 40},
    {"resolve a proxy in a bag of references", 40},
    {"resolve in vain", 450},
    {"commit a transaction", 1000},
    {"commit a quiet transaction", 140},
    {"try to commit a transaction too early", 300},
    {"roll a transaction back", 1600},
    {"leave a transaction by an exception", 700},
    {"end transactions out of order", 200},
};

TEST(RandomWalk, KeepsModelsEqualToTheirTwins) {
  walking::goAll<Walk>(&model_walk::usesOfPools, least);
}

TEST(RandomWalk, IsTheSameForTheSameSeed) {
  EXPECT_EQ(walking::stepsOf<Walk>(7), walking::stepsOf<Walk>(7));
  EXPECT_NE(walking::stepsOf<Walk>(7), walking::stepsOf<Walk>(8));
}

}  // namespace
