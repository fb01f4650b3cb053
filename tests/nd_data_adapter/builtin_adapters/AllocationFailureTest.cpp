// The test adapter when memory runs out: each operation is called with its first allocation failing, then
// with its second, and so on until it comes through; once alone and once with all that follow.

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

#include "nd_data_adapter/builtin_adapters/TestV2Adapter.h"
#include "nd_data_adapter/model/AdapterError.h"
#include "nd_data_adapter/model/ConditionControlChangeReport.h"
#include "nd_data_adapter/model/DataContainer.h"
#include "platform/host/Workspace.h"
#include "platform/host/hv.h"
#include "platform/text/Convert.h"
#include "tests/support/AllocationWalk.h"
#include "tests/support/BrokerTest.h"
#include "tests/support/describe.h"

using namespace nd::data::adapter;
using allocation_test::Extent;
using allocation_test::failInTurn;
using lx::base::Model;
using support::contentsOf;
using support::Lines;

namespace {

using Workspace = boost::shared_ptr<inWorkSpace_tag>;

class TestV2AdapterWithoutMemory : public support::BrokerTest {
 protected:
  TestV2AdapterWithoutMemory() { error.setError(AdapterDiagnostic::HardError, u"m", u"n", u"s"); }

  /// Calls with each allocation failing until one comes through, twice: each alone, and each with all that
  /// follow. Looks after each call at what it left; counts the failed ones.
  static std::size_t callUntilItWorks(const std::function<void()>& prepare, const std::function<void()>& call,
                                      const std::function<void(bool)>& look) {
    std::size_t failed = 0;
    for (const Extent extent : {Extent::Alone, Extent::WithAllThatFollow}) {
      failInTurn(extent, [&](std::size_t number) {
        prepare();
        const AllocationAttempt attempt = attemptWithout(number, call, extent);
        EXPECT_EQ(attempt.isRefused, attempt.hasOccurred);
        if (attempt.isRefused) ++failed;
        look(!attempt.isRefused);
        return attempt.hasOccurred;
      });
    }
    return failed;
  }

  /// Reads all counts with memory at hand. The reading counts itself.
  static Lines read(TestV2Adapter& adapter, const DataContainer& container, AdapterError& error) {
    const Workspace workspace = inCreateWorkspace(12);
    adapter.getData(workspace, container.getMetaDataCacheMutable(), u"", error);
    return contentsOf(workspace);
  }

  const Model model = Model::create();
  const DataContainer container = DataContainer::create(model);
  AdapterError error = AdapterError::create(model);
  const std::string failure = "AdapterError Diagnostic=6 ErrorMessage='m' Adapter='n' SourceFile='s'";
};

TEST_F(TestV2AdapterWithoutMemory, LeavesTheVariablesThatItAssignedAndHasCountedTheRead) {
  const Lines whole = [&] {
    TestV2Adapter fresh;
    return read(fresh, container, error);
  }();
  ASSERT_EQ(whole.size(), 12U);
  std::unique_ptr<TestV2Adapter> adapter;
  Workspace workspace;
  std::size_t longest = 0;
  const std::size_t failed = callUntilItWorks(
      [&] {
        adapter = std::make_unique<TestV2Adapter>();
        workspace = inCreateWorkspace(12);
      },
      [&] { adapter->getData(workspace, container.getMetaDataCacheMutable(), u"", error); },
      [&](bool hasWorked) {
        const Lines left = contentsOf(workspace);
        ASSERT_LE(left.size(), whole.size());
        EXPECT_EQ(left, Lines(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(left.size())));
        EXPECT_GE(left.size(), longest) << "a later failure leaves no less";
        longest = hasWorked ? 0 : left.size();
        EXPECT_EQ(left.size() == whole.size(), hasWorked);
        EXPECT_EQ(read(*adapter, container, error)[10], "getData: 1x1 int32 = 2") << "the broken one counts";
        EXPECT_EQ(contentsOf(model).at(1), failure);
        EXPECT_TRUE(container.metaDataCache().empty());
      });
  EXPECT_GT(failed, 2 * 12U) << "each variable takes memory";
}

TEST_F(TestV2AdapterWithoutMemory, AssignsTheConditionalDataOrNothingAndCountsNothing) {
  TestV2Adapter adapter;
  const auto report = ConditionControlChangeReport::create(model);
  Workspace workspace;
  const std::size_t failed = callUntilItWorks(
      [&] { workspace = inCreateWorkspace(1); },
      [&] { adapter.getConditionalData(workspace, report, u"", error); },
      [&](bool hasWorked) {
        EXPECT_EQ(contentsOf(workspace), hasWorked ? Lines{"VariantData: 1x1 int32 = 10"} : Lines{});
      });
  EXPECT_GT(failed, 0U);
  EXPECT_EQ(adapter.getCurrentChecksum(), u"1");
  EXPECT_EQ(contentsOf(model).at(1), failure);
}

TEST_F(TestV2AdapterWithoutMemory, GivesNoChecksumAndCountsThatItWasAsked) {
  TestV2Adapter adapter;
  constexpr std::size_t Calls = 10'000'000;  // a number of this length fits into no short string
  for (std::size_t call = 0; call < Calls; ++call) adapter.hasData();
  std::u16string checksum;
  const std::size_t failed =
      callUntilItWorks([&] { checksum.clear(); }, [&] { checksum = adapter.getCurrentChecksum(); },
                       [&](bool hasWorked) { EXPECT_EQ(checksum.empty(), !hasWorked); });
  EXPECT_GT(failed, 0U);
  EXPECT_EQ(checksum, lx::text::toUtf16(std::to_string(Calls + failed + 2)));
}

TEST_F(TestV2AdapterWithoutMemory, MakesAWholeAdapterOrNone) {
  std::shared_ptr<CPPAdapterV2> made;
  std::size_t live = 0;
  const std::size_t failed = callUntilItWorks(
      [&] {
        made.reset();
        live = AllocationFault::live();
      },
      [&] { made = TestV2Adapter::make(); },
      [&](bool hasWorked) {
        EXPECT_EQ(made != nullptr, hasWorked);
        if (hasWorked)
          EXPECT_GT(AllocationFault::live(), live);
        else
          EXPECT_EQ(AllocationFault::live(), live) << "half an adapter stays";
      });
  EXPECT_GE(failed, 2 * 2U) << "the adapter, its names, and what shares it";
  EXPECT_EQ(made->getCurrentChecksum(), u"1");
}

TEST_F(TestV2AdapterWithoutMemory, ClonesAWholeAdapterOrNoneAndCountsNothing) {
  TestV2Adapter adapter;
  std::unique_ptr<CPPAdapterV2> cloned;
  const std::size_t failed =
      callUntilItWorks([&] { cloned.reset(); }, [&] { cloned.reset(adapter.clone()); },
                       [&](bool hasWorked) { EXPECT_EQ(cloned != nullptr, hasWorked); });
  EXPECT_GT(failed, 0U);
  EXPECT_EQ(cloned->getCurrentChecksum(), u"1");
  EXPECT_EQ(adapter.getCurrentChecksum(), u"1");
}

}  // namespace
