#include "tests/nd_data_adapter/model/random/Values.h"
#include "tests/nd_data_adapter/model/random/Walk.h"
#include "tests/support/walks/Walking.h"

namespace {

using random_walk::Walk;

/// About half as often as the steps are done with the fixed seeds.
const std::vector<walking::Least> least{
    {"create", 7000},
    {"create with an identity", 300},
    {"build", 1000},
    {"set", 1300},
    {"add", 1900},
    {"put", 900},
    {"clear", 350},
    {"remove", 350},
    {"replace", 130},
    {"change texts", 700},
    {"destroy", 1300},
    {"ask for an identity", 350},
    {"make a proxy", 800},
    {"load what a proxy stands for", 350},
    {"resolve a proxy in a sequence", 95},
    {"resolve a proxy in a multimap", 170},
    {"resolve a proxy in a map", 75},
    {"resolve in vain", 400},
    {"commit a transaction", 1000},
    {"commit a quiet transaction", 150},
    {"try to commit a transaction too early", 300},
    {"roll a transaction back", 1500},
    {"leave a transaction by an exception", 550},
    {"end transactions out of order", 220},
};

TEST(RandomWalk, KeepsModelsEqualToTheirTwins) {
  walking::goAll<Walk>([] { return random_walk::Values::get().uses(); }, least);
}

TEST(RandomWalk, IsTheSameForTheSameSeed) {
  EXPECT_EQ(walking::stepsOf<Walk>(7), walking::stepsOf<Walk>(7));
  EXPECT_NE(walking::stepsOf<Walk>(7), walking::stepsOf<Walk>(8));
}

}  // namespace
