#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "nd_data_adapter/builtin_adapters/TestV2Adapter.h"
#include "nd_data_adapter/conformance/registerConformanceTests.h"

namespace {

// [subject]
/// Any text is a source of the test adapter, and what it delivers is how often it was asked.
class AnyText final : public nd::conformance::Subject {
 public:
  std::shared_ptr<CPPAdapterV2> makeAdapter() override { return TestV2Adapter::make(); }
  std::u16string goodSource() override { return u"a.test"; }
  std::u16string otherGoodSource() override { return u"b.test"; }
  bool meetsBadSources() const override { return false; }
  bool meetsAbsentSources() const override { return false; }
  bool hasDataOnlyWhileOpen() const override { return false; }
  bool canChangeSources() const override { return false; }
  bool answersFromSourceAlone() const override { return false; }
  bool replacesWhatTheClientHeld() const override { return false; }
};
// [/subject]

[[maybe_unused]] const bool registered =
    nd::conformance::registerConformanceTests<AnyText>("TestV2AdapterConformance");

}  // namespace

TEST(TestV2AdapterInTheChecks, IsSparedOnlyWhatAnAdapterWithoutSourcesCanNotBeAsked) {
  std::vector<std::string> skipped;
  for (const nd::conformance::Check& check : nd::conformance::allChecks) {
    const nd::conformance::Report report =
        nd::conformance::run(check, [] { return std::make_unique<AnyText>(); });
    if (!report.skipped().empty()) skipped.emplace_back(check.name);
  }
  EXPECT_THAT(skipped,
              testing::UnorderedElementsAre("ReplacesWhatTheClientHeld", "ReadsWhatTheClientHasNotSeen",
                                            "ChecksumFollowsTheContent", "LeavesTheClientsDataAfterAnError",
                                            "StatesErrorsWithNameAndSource"));
}
