#include "tools/ndx/nearNames.h"

namespace nd::tools {
namespace {

TEST(NearNames, GivesTheNearestFirst) {
  EXPECT_THAT(nearNames("Gian", {"Mass", "Gain", "GainStates"}), testing::ElementsAre("Gain"));
}

TEST(NearNames, TakesNamesThatDifferInCaseOnly) {
  EXPECT_THAT(nearNames("sampletime", {"SampleTime", "Mass"}), testing::ElementsAre("SampleTime"));
}

TEST(NearNames, GivesNothingForANameThatIsLikeNoOther) {
  EXPECT_THAT(nearNames("zzzzzz", {"SampleTime", "Mass"}), testing::IsEmpty());
}

TEST(NearNames, GivesNoMoreThanAskedFor) {
  EXPECT_EQ(nearNames("a1", {"a2", "a3", "a4", "a5"}, 2).size(), 2U);
}

}  // namespace
}  // namespace nd::tools
