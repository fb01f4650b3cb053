#include "tools/ndx/nearNames.h"

namespace nd::tools {
namespace {

TEST(EditDistance, CountsInsertionsDeletionsReplacementsAndSwaps) {
  EXPECT_EQ(editDistance(u"gain", u"gain"), 0U);
  EXPECT_EQ(editDistance(u"gain", u"gains"), 1U);
  EXPECT_EQ(editDistance(u"gain", u"gan"), 1U);
  EXPECT_EQ(editDistance(u"gain", u"gaan"), 1U);
  EXPECT_EQ(editDistance(u"gain", u"gian"), 1U);
  EXPECT_EQ(editDistance(u"", u"gain"), 4U);
}

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
