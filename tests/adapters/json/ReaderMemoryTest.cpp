#include <algorithm>
#include <cstddef>
#include <new>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "adapters/json/FormatFailure.h"
#include "adapters/json/Reader.h"
#include "platform/host/ArrayComparison.h"
#include "tests/support/AllocationFault.h"

using nd::adapters::json::PaddedText;
using nd::adapters::json::readDocument;
using nd::adapters::json::Variable;

namespace {

bool areEqual(const std::vector<Variable>& left, const std::vector<Variable>& right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](const auto& one, const auto& other) {
                      return one.name == other.name && hvEqual(one.value.get(), other.value.get());
                    });
}

}  // namespace

TEST(ReaderMemory, PassesOnThatAnAllocationFailsAndLeavesNoArrayBehind) {
  const PaddedText content(std::string_view(
      R"({"a": 1, "b": [[1, 2], [3, 9007199254740993], "x"], "c": ["a", null, "\u00e4"], "d": [[true], [false]],
          "e": [{"p": 1, "q": [1, {}]}, {"q": null, "p": "t"}, {"p": 3}], "f": [null, [null]], "g": {"h": {}},
          "i": {"$class": "struct", "$size": [1, 2], "$fields": ["p"], "$data": [[{"$class": "cell", "$size": [1, 1],
          "$data": ["x"]}], [{"$class": "string", "$size": [1, 2], "$data": ["y", null]}]]},
          "j": {"$class": "single", "$size": [1, 1], "$data": [1], "$imaginary": ["NaN"]},
          "$meta": {"a": {"unit": "V", "limits": [1, 2]}}})"));
  const std::vector<Variable> expected = readDocument(content).variables;
  const std::size_t arrays = hvGetLiveArrayCount();
  std::size_t failures = 0;
  for (std::size_t number = 1;; ++number) {
    const AllocationFault fault(number);
    try {
      // Memory that it can do without may be missing.
      EXPECT_TRUE(areEqual(readDocument(content).variables, expected)) << "allocation " << number;
    } catch (const std::bad_alloc&) {
      ++failures;
    }
    EXPECT_EQ(hvGetLiveArrayCount(), arrays) << "allocation " << number;
    if (!fault.hasOccurred()) break;
  }
  EXPECT_GT(failures, 50U);
}

TEST(ReaderMemory, PassesItOnWhileItSaysWhatIsWrongWithAText) {
  const PaddedText content(std::string_view(R"({"a": [1, 2, {"b": "x" "c"}]})"));
  const std::size_t arrays = hvGetLiveArrayCount();
  bool wasShort = false;
  for (std::size_t number = 1;; ++number) {
    const AllocationFault fault(number);
    try {
      readDocument(content);
      ADD_FAILURE() << "it was read";
    } catch (const std::bad_alloc&) {
      EXPECT_TRUE(fault.hasOccurred()) << "allocation " << number;
      wasShort = true;
    } catch (const nd::adapters::json::FormatFailure&) {
      if (!fault.hasOccurred()) break;
    }
    EXPECT_EQ(hvGetLiveArrayCount(), arrays) << "allocation " << number;
  }
  EXPECT_TRUE(wasShort);
}
