#include <memory>
#include <string>

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include "nd_data_adapter/conformance/registerConformanceTests.h"
#include "tests/nd_data_adapter/conformance/LineAdapter.h"

using nd::conformance::allChecks;
using nd::conformance::expectNothingFound;
using nd::conformance::Report;

namespace {

class Lines final : public nd::conformance::FileSubject {
 public:
  Lines()
      : FileSubject(
            {.extension = ".lines", .good = "gain 1\n", .otherGood = "gain 2\n", .bad = {"gain 3\nrate\n"}}) {
  }
  std::shared_ptr<CPPAdapterV2> makeAdapter() override { return std::make_shared<LineAdapter>(); }
};

const bool registered = nd::conformance::registerConformanceTests<Lines>("LineAdapterConformance");

}  // namespace

TEST(RegisterConformanceTests, MakesATestOfEachCheck) {
  ASSERT_TRUE(registered);
  const testing::UnitTest& program = *testing::UnitTest::GetInstance();
  int found = 0;
  for (int at = 0; at < program.total_test_suite_count(); ++at) {
    const testing::TestSuite& suite = *program.GetTestSuite(at);
    if (suite.name() != std::string("LineAdapterConformance")) continue;
    found = suite.total_test_count();
    EXPECT_STREQ(suite.GetTestInfo(0)->name(), allChecks[0].name);
    EXPECT_STREQ(suite.GetTestInfo(0)->file(), __FILE__);
  }
  EXPECT_EQ(found, static_cast<int>(allChecks.size()));
}

TEST(ExpectNothingFound, FailsWithTheFindings) {
  Report report;
  report.expect(true, "this one holds");
  report.expect(false, "the name changes");
  EXPECT_NONFATAL_FAILURE(expectNothingFound(report),
                          "  - the name changes [RegisterConformanceTestsTest.cpp:");
  EXPECT_EQ(report.findings().size(), 1U);
}

TEST(ExpectNothingFound, FailsAlsoWhenTheCheckHadNothingMoreToAsk) {
  Report report;
  report.expect(false, "the name changes");
  report.skip("every source can be read");
  EXPECT_NONFATAL_FAILURE(expectNothingFound(report), "the name changes");
}

TEST(ExpectNothingFound, PassesWithoutFindings) {
  expectNothingFound(Report());
}
