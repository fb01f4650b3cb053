#include <fstream>
#include <iterator>
#include <set>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "nd_data_adapter/nd_data_adapter.h"
#include "tests/nd_data_adapter/conformance/natures.h"

using nd::conformance::allChecks;
using nd::conformance::Check;
using nd::conformance::run;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(Checks, HaveNamesOfTheirOwn) {
  std::set<std::string> names;
  for (const Check& check : allChecks) EXPECT_TRUE(names.insert(check.name).second) << check.name;
}

TEST(Checks, AreAllInTheManual) {
  std::ifstream file(ND_WRITING_AN_ADAPTER);
  const std::string manual{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  for (const Check& check : allChecks) {
    EXPECT_THAT(manual, HasSubstr("| `" + std::string(check.name) + "` |"));
  }
}

TEST(Checks, SayWhyTheyAskNothing) {
  using namespace natures;
  const std::string client = "LeavesTheClientsDataAfterAnError";
  EXPECT_EQ(run(checkNamed(client), make<Unfailing>).skipped(), "every source can be read");
  const std::string checksum = "ChecksumFollowsTheContent";
  EXPECT_EQ(run(checkNamed(checksum), make<Fixed>).skipped(), "the sources can't be changed");
  const std::string read = "ReplacesWhatTheClientHeld";
  EXPECT_EQ(run(checkNamed(read), make<Adds>).skipped(), "a read adds to what the client holds");
}

TEST(Checks, LeaveNothingRegisteredAndNothingOpen) {
  for (const Check& check : allChecks) run(check, make<Lines<LineAdapter>>);
  EXPECT_FALSE(nd::data::adapter::AdapterManagerV2::isExtensionRegistered(u".lines"));
  EXPECT_THAT(nd::data::adapter::AdapterManagerV2::getAllOpenedAdapterNamesWithSection(), IsEmpty());
}
