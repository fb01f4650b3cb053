#include <array>
#include <cstddef>
#include <functional>
#include <string>

#include <gtest/gtest.h>

#include "platform/services/Diagnostic.h"
#include "platform/services/FileSystem.h"
#include "tests/support/AllocationFault.h"

namespace {

class Sample : public lx::services::CatalogMessage {
 public:
  explicit Sample(const std::u16string& text)
      : CatalogMessage("sample:component", "Sample", u"{0}", {text}) {}
};

const std::u16string longText(100, u'x');

// Runs an operation with its first allocation failing, then with its second, and so on until it succeeds.
// Each failure must come out as std::bad_alloc and pass the check. Gives the number of failures.
std::size_t failEach(const std::function<void()>& operation, const std::function<void()>& checkUnchanged) {
  for (std::size_t number = 1;; ++number) {
    const AllocationAttempt attempt = attemptWithout(number, operation);
    if (!attempt.hasOccurred) return number - 1;
    EXPECT_TRUE(attempt.isRefused) << "allocation " << number << " failed unnoticed";
    checkUnchanged();
  }
}

void concatenateWithoutMemory(bool addedFirst) {
  ndsvDiagnosticImpl* result = ndsvCreateDiagnostic(Sample(u"result"), u"");
  ndsvDiagnosticImpl* const added = ndsvCreateDiagnostic(Sample(u"added"), u"");
  const ndsvDiagnosticImpl* const before = result;
  const std::size_t failures = failEach([&] { ndsvConcatenateDiagnosticsNoCheck(result, added, addedFirst); },
                                        [&] {
                                          EXPECT_EQ(result, before);
                                          ASSERT_EQ(ndsvGetNumItemsInDiagnostic(result), 1U);
                                          ASSERT_EQ(ndsvGetNumItemsInDiagnostic(added), 1U);
                                          EXPECT_EQ(ndsvGetDiagnosticItemText(result, 0), u"result");
                                          EXPECT_EQ(ndsvGetDiagnosticItemText(added, 0), u"added");
                                          EXPECT_EQ(ndsvGetLiveDiagnosticCount(), 2U);
                                        });
  EXPECT_EQ(failures, 1U);
  EXPECT_EQ(ndsvFormatDiagnostic(result), addedFirst ? u"added\nresult" : u"result\nadded");
  EXPECT_EQ(ndsvGetLiveDiagnosticCount(), 1U);
  ndsvDestroyDiagnostic(result);
}

TEST(AllocationFailure, LeavesBothDiagnosticsAsTheyWereWhenJoinedBehind) {
  concatenateWithoutMemory(false);
}

TEST(AllocationFailure, LeavesBothDiagnosticsAsTheyWereWhenJoinedBefore) {
  concatenateWithoutMemory(true);
}

TEST(AllocationFailure, MakesNoDiagnostic) {
  const Sample message(longText);
  ndsvDiagnosticImpl* made = nullptr;
  const std::size_t failures = failEach([&] { made = ndsvCreateDiagnostic(message, longText); },
                                        [&] {
                                          EXPECT_EQ(made, nullptr);
                                          EXPECT_EQ(ndsvGetLiveDiagnosticCount(), 0U);
                                        });
  EXPECT_GE(failures, 3U);
  EXPECT_EQ(ndsvGetLiveDiagnosticCount(), 1U);
  ndsvDestroyDiagnostic(made);
}

TEST(AllocationFailure, LeavesTheConstructorOfAMessage) {
  const std::size_t failures = failEach([] { const Sample message(longText); }, [] {});
  EXPECT_GE(failures, 3U);
}

TEST(AllocationFailure, DoesNotReachCopiesOfAMessage) {
  const Sample message(longText);
  const AllocationFault failing(1);
  const std::array<Sample, 2> copies = {message, message};
  EXPECT_EQ(copies[1].what(), message.what());
  EXPECT_FALSE(AllocationFault::hasOccurred());
}

TEST(AllocationFailure, DoesNotReachTheReplacementOfTheFilesystem) {
  using lx::services::FileSystem;
  const AllocationFault failing(1);
  FileSystem* const standard = &FileSystem::current();
  FileSystem::replace(FileSystem::replace(nullptr));
  FileSystem::replace(FileSystem::share());
  EXPECT_FALSE(AllocationFault::hasOccurred());
  EXPECT_EQ(&FileSystem::current(), standard);
}

}  // namespace
