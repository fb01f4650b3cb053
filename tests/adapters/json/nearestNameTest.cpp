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
