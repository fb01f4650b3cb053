#include <cstddef>
#include <string>

#include <gtest/gtest.h>

#include "tests/adapters/json/AdapterFixture.h"
#include "tests/support/AllocationFault.h"

namespace {

using JsonAdapterMemory = AdapterFixture;

}  // namespace

TEST_F(JsonAdapterMemory, ReadsAgainWhateverChecksumComesBackOnceAReadHasFailed) {
  const std::string text = R"({"a": 1, "b": "text", "$meta": {"a": {"unit": "V"}}})";
  adapter_.open(write("a.json", text));
  const std::u16string checksum = adapter_.getCurrentChecksum();
  ASSERT_EQ(getData(), ErrorState());
  const ContainerState good = state();
  std::size_t emptied = 0;
  std::size_t failures = 0;
  for (std::size_t number = 1;; ++number) {
    nd::data::adapter::AdapterError error = nd::data::adapter::AdapterError::create(model_);
    bool isShort = false;
    {
      const AllocationFault fault(number, AllocationFault::Extent::WithAllThatFollow);
      try {
        adapter_.getData(workspace_, container_.impl()->getMetaDataCacheMutable(), u"another", error);
      } catch (const std::bad_alloc&) {
        isShort = true;
      }
    }
    if (!isShort) break;
    ++failures;
    emptied += state() == good ? 0U : 1U;
    ASSERT_EQ(getData(checksum), ErrorState()) << "allocation " << number;
    ASSERT_EQ(state(), good) << "allocation " << number;
  }
  EXPECT_GT(failures, 30U);
  EXPECT_GT(emptied, 0U);
}

TEST_F(JsonAdapterMemory, LeavesTheContainerAloneWhenAnAllocationOfAReadFails) {
  adapter_.open(
      write("a.json", R"({"a": [1, "x", {"b": [[1, 2], [3, 4]]}], "c": "text", "d": [{"e": 1}, {"e": 2}]})"));
  fillContainer();
  const ContainerState before = state();
  auto& metaData = container_.impl()->getMetaDataCacheMutable();
  std::size_t failures = 0;
  for (std::size_t number = 1;; ++number) {
    nd::data::adapter::AdapterError error = nd::data::adapter::AdapterError::create(model_);
    error.setError(nd::data::adapter::AdapterDiagnostic::NoDiagnostic, u"", u"", u"");
    const std::size_t arrays = hvGetLiveArrayCount();
    const auto [isShort, hasFailed] =
        attemptWithout(number, [&] { adapter_.getData(workspace_, metaData, u"", error); });
    ASSERT_EQ(error.getId(), nd::data::adapter::AdapterDiagnostic::NoDiagnostic) << "allocation " << number;
    if (isShort) {
      ++failures;
      ASSERT_EQ(state(), before) << "allocation " << number;
      ASSERT_EQ(hvGetLiveArrayCount(), arrays) << "allocation " << number;
    } else if (hasFailed) {
      // It went without that memory; the next round begins where this one did.
      ASSERT_TRUE(state().metaData.empty());
      emptyContainer();
      fillContainer();
    } else {
      break;
    }
  }
  EXPECT_GT(failures, 30U);
  EXPECT_EQ(state().variables.size(), 3U);
  EXPECT_TRUE(state().metaData.empty());
}
