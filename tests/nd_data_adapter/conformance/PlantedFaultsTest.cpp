#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/nd_data_adapter/conformance/faults/Fault.h"

using nd::conformance::allChecks;
using nd::conformance::Check;
using nd::conformance::Report;
using nd::conformance::run;
using testing::Contains;
using testing::HasSubstr;

namespace {

class PlantedFault : public testing::TestWithParam<Fault> {};

/// Lists file and line of each expectation in the headers of the checks.
std::set<std::pair<std::string, int>> expectations() {
  std::set<std::pair<std::string, int>> places;
  for (const auto& entry : std::filesystem::directory_iterator(ND_CONFORMANCE_HEADERS)) {
    std::ifstream file(entry.path());
    std::string text;
    for (int line = 1; std::getline(file, text); ++line) {
      if (text.find("report.expect(") != std::string::npos) places.insert({entry.path().filename(), line});
    }
  }
  return places;
}

}  // namespace

TEST_P(PlantedFault, IsFoundByTheCheckThatIsThereForIt) {
  const Report report = run(checkNamed(GetParam().check), GetParam().makeSubject);
  EXPECT_THAT(report.findings(), Contains(HasSubstr(GetParam().words)));
}

INSTANTIATE_TEST_SUITE_P(Faults, PlantedFault, testing::ValuesIn(allFaults()),
                         [](const auto& each) { return std::string(each.param.name); });

TEST(PlantedFaults, AreThereForEachCheck) {
  std::set<std::string> proved;
  for (const Fault& each : allFaults()) proved.insert(each.check);
  for (const Check& check : allChecks) EXPECT_THAT(proved, Contains(std::string(check.name)));
}

TEST(PlantedFaults, BreakEachExpectation) {
  std::set<std::pair<std::string, int>> unbroken = expectations();
  ASSERT_GT(unbroken.size(), 50U);
  for (const Fault& each : allFaults()) {
    const Report report = run(checkNamed(each.check), each.makeSubject);
    for (const nd::conformance::Place& place : report.places()) {
      unbroken.erase({std::filesystem::path(place.file).filename(), place.line});
    }
  }
  for (const auto& [file, line] : unbroken) ADD_FAILURE() << file << ':' << line << " has no fault";
}
