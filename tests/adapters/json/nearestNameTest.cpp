#include <array>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "adapters/json/nearestName.h"

using nd::adapters::json::nearestName;

namespace {

constexpr std::array<std::string_view, 3> names{"$class", "$size", "$data"};

}  // namespace

TEST(NearestName, TakesTheFewestChanges) {
  EXPECT_EQ(nearestName("$clas", names), "$class");
  EXPECT_EQ(nearestName("size", names), "$size");
  EXPECT_EQ(nearestName("$dataa", names), "$data");
  EXPECT_EQ(nearestName("$dsta", names), "$data");
  EXPECT_EQ(nearestName("$data", names), "$data");
  EXPECT_EQ(nearestName("$szie", names), "$size");
}

TEST(NearestName, TakesTheFirstOfSeveral) {
  constexpr std::array<std::string_view, 2> both{"ab", "cd"};
  EXPECT_EQ(nearestName("", both), "ab");
  EXPECT_EQ(nearestName("xyz", both), "ab");
}

TEST(NearestName, LooksOnlyAtTheBeginningOfALongName) {
  EXPECT_EQ(nearestName("$data" + std::string(10000000, 'x'), names), "$data");
  EXPECT_EQ(nearestName(std::string(64, 'x') + "$data", names), nearestName(std::string(64, 'x'), names));
}

TEST(NearestName, LooksOnlyAtTheBeginningsOfLongNames) {
  // Whole they would take ten to the power of twelve steps.
  const std::string begin(1000000, 'x');
  const std::string one = "a" + begin;
  const std::string other = "b" + begin;
  const std::array<std::string_view, 2> both{one, other};
  EXPECT_EQ(nearestName(begin, both), one);
  EXPECT_EQ(nearestName(other + "y", both), other);
}
