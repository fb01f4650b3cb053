#include <functional>

#include "platform/host/Workspace.h"
#include "tests/platform/host/HostTest.h"
#include "tests/support/AllocationFault.h"

namespace {

class AllocationFailureTest : public HostTest {
 protected:
  // Runs an operation with its first allocation failing, then with its second, and so on until it succeeds,
  // and checks after each failure that it changed nothing. Gives the number of failures.
  static std::size_t failEach(const std::function<void()>& operation,
                              const std::function<void()>& checkUnchanged) {
    for (std::size_t number = 1;; ++number) {
      const std::size_t before = hvGetLiveArrayCount();
      const AllocationAttempt attempt = attemptWithout(number, operation);
      if (!attempt.hasOccurred) return number - 1;
      EXPECT_TRUE(attempt.isRefused) << "allocation " << number << " failed unnoticed";
      EXPECT_EQ(hvGetLiveArrayCount(), before) << "allocation " << number;
      checkUnchanged();
      if (number > 1000) {
        ADD_FAILURE() << "the operation never succeeds";
        return number;
      }
    }
  }

  static void nothingToCheck() {}

  static std::size_t failEachCreation(const std::function<hvArray*()>& create) {
    hvArrayPtr made;
    return failEach([&] { made.reset(create()); }, nothingToCheck);
  }
};

TEST_F(AllocationFailureTest, CreatingLeavesNothingBehind) {
  EXPECT_EQ(failEachCreation([] { return hvCreateNumericMatrix(2, 3, hvClassCode::Double); }), 2U);
  EXPECT_GE(failEachCreation([] {
              return hvCreateNumericArray({2, 3, 4}, hvClassCode::Int8, hvComplexity::Complex);
            }),
            3U);
  EXPECT_EQ(failEachCreation([] { return hvCreateDoubleScalar(1); }), 2U);
  EXPECT_EQ(failEachCreation([] { return hvCreateLogicalScalar(true); }), 2U);
  EXPECT_GE(failEachCreation([] { return hvCreateLogicalArray({2, 2}); }), 2U);
  EXPECT_GE(failEachCreation([] { return hvCreateCharArray({2, 2, 2}); }), 2U);
  EXPECT_GE(failEachCreation(
                [] { return hvCreateString("a text that is longer than what a string keeps inside"); }),
            3U);
  EXPECT_EQ(failEachCreation([] { return hvCreateString(u"wide"); }), 2U);
  EXPECT_GE(failEachCreation([] { return hvCreateStringArray({2, 2}); }), 3U);
  EXPECT_GE(failEachCreation(
                [] { return hvCreateStringScalar(u"a text that is longer than what a string keeps"); }),
            4U);
  EXPECT_GE(failEachCreation([] { return hvCreateCellArray({2, 2}); }), 3U);
  EXPECT_GE(failEachCreation([] { return hvCreateStructArray({2, 2}, {"a", "b"}); }), 4U);
  EXPECT_GE(failEachCreation([] {
              return hvCreateStructArray({1, 1}, {"a", "b", "c", "d", "e", "f", "g", "h", "i", "j"});
            }),
            10U);
}

TEST_F(AllocationFailureTest, CopyingLeavesNothingBehind) {
  const hvArrayPtr number = doubleScalar(1);
  EXPECT_EQ(failEachCreation([&] { return hvCreateSharedDataCopy(number.get()); }), 1U);
}

TEST_F(AllocationFailureTest, PartingFromACopyKeepsBothWhole) {
  const hvArrayPtr original = doubleMatrix(1, 2, {1, 2});
  const hvArrayPtr copy = copyOf(original);
  const auto unchanged = [&] {
    EXPECT_EQ(hvGetData<double>(original.get())[1], 2);
    EXPECT_EQ(hvGetData<double>(copy.get())[1], 2);
  };
  EXPECT_GE(failEach([&] { hvGetWritableData<double>(copy.get())[1] = 5; }, unchanged), 1U);
  EXPECT_EQ(hvGetData<double>(original.get())[1], 2);
  EXPECT_EQ(hvGetData<double>(copy.get())[1], 5);
}

TEST_F(AllocationFailureTest, PartingOfTextsKeepsBothWhole) {
  const hvArrayPtr original(hvCreateStringArray({1, 2}));
  hvSetString(original.get(), 0, std::u16string(100, u'x'));
  const hvArrayPtr copy = copyOf(original);
  const auto unchanged = [&] { EXPECT_TRUE(hvEqual(original.get(), copy.get())); };
  EXPECT_GE(failEach([&] { hvSetString(copy.get(), 1, std::u16string(100, u'y')); }, unchanged), 3U);
  EXPECT_EQ(textAt(original, 1), u"");
}

TEST_F(AllocationFailureTest, SettingACellKeepsTheCellAndTheValue) {
  const hvArrayPtr original(hvCreateCellArray({1, 3}));
  hvSetCell(original.get(), 0, doubleScalar(1));
  hvSetCell(original.get(), 1, doubleScalar(2));
  const hvArrayPtr copy = copyOf(original);
  hvArrayPtr value = doubleScalar(3);
  const auto unchanged = [&] {
    ASSERT_NE(value, nullptr);
    EXPECT_TRUE(hvEqual(original.get(), copy.get()));
    EXPECT_EQ(*hvGetWritableData<double>(value.get()), 3) << "the value is still the caller's";
  };
  EXPECT_GE(failEach([&] { hvSetCell(copy.get(), 1, std::move(value)); }, unchanged), 4U);
  EXPECT_EQ(value, nullptr);
  EXPECT_EQ(*hvGetData<double>(hvGetCell(copy.get(), 1)), 3);
  EXPECT_EQ(*hvGetData<double>(hvGetCell(original.get(), 1)), 2);
}

TEST_F(AllocationFailureTest, SettingAFieldKeepsTheStructureAndTheValue) {
  const hvArrayPtr original(hvCreateStructArray({1, 2}, {"a", "b"}));
  hvSetField(original.get(), 0, "a", doubleScalar(1));
  const hvArrayPtr copy = copyOf(original);
  hvArrayPtr value = doubleScalar(3);
  const auto unchanged = [&] {
    ASSERT_NE(value, nullptr);
    EXPECT_TRUE(hvEqual(original.get(), copy.get()));
  };
  EXPECT_GE(failEach([&] { hvSetField(copy.get(), 1, "b", std::move(value)); }, unchanged), 3U);
  EXPECT_EQ(*hvGetData<double>(hvGetField(copy.get(), 1, "b")), 3);
  EXPECT_EQ(hvGetField(original.get(), 1, "b"), nullptr);
}

TEST_F(AllocationFailureTest, CreatingAWorkspaceLeavesNothingBehind) {
  boost::shared_ptr<inWorkSpace_tag> workspace;
  EXPECT_GE(failEach([&] { workspace = inCreateWorkspace(100); }, nothingToCheck), 1U);
}

TEST_F(AllocationFailureTest, AssigningANewVariableKeepsTheWorkspace) {
  const std::string name = "a name that is longer than what a string keeps inside";
  for (const std::size_t present : {0U, 1U, 5U, 10U, 682U, 683U, 1024U}) {
    const auto workspace = inCreateWorkspace(0);
    const hvArrayPtr value = doubleScalar(1);
    for (std::size_t i = 0; i < present; ++i) inAssignInDesiredWS(value.get(), std::to_string(i), workspace);
    const auto unchanged = [&] {
      EXPECT_EQ(inGetNumberOfVariables(workspace), present);
      EXPECT_EQ(inGetValueFromWorkspace(name, workspace), nullptr);
      if (present > 0) {
        EXPECT_NE(inGetValueFromWorkspace(std::to_string(present - 1), workspace), nullptr);
      }
    };
    EXPECT_GE(failEach([&] { inAssignInDesiredWS(value.get(), name, workspace); }, unchanged),
              present == 0 ? 3U : 1U);
    EXPECT_EQ(inGetNumberOfVariables(workspace), present + 1);
    EXPECT_NE(inGetValueFromWorkspace(name, workspace), nullptr);
  }
}

TEST_F(AllocationFailureTest, AssigningNullKeepsTheFormerValue) {
  const auto workspace = inCreateWorkspace(0);
  inAssignInDesiredWS(doubleScalar(1).get(), "a", workspace);
  const auto unchanged = [&] { EXPECT_EQ(*hvGetData<double>(inGetValueFromWorkspace("a", workspace)), 1); };
  EXPECT_GE(failEach([&] { inAssignInDesiredWS(nullptr, "a", workspace); }, unchanged), 1U);
  EXPECT_TRUE(hvIsEmpty(inGetValueFromWorkspace("a", workspace)));
}

TEST_F(AllocationFailureTest, ReplacingAVariableAllocatesNothing) {
  const auto workspace = inCreateWorkspace(0);
  inAssignInDesiredWS(doubleScalar(1).get(), "a", workspace);
  const hvArrayPtr value = doubleScalar(2);
  EXPECT_EQ(failEach([&] { inAssignInDesiredWS(value.get(), "a", workspace); }, nothingToCheck), 0U);
}

TEST_F(AllocationFailureTest, ReplacingAVariableThatAWalkLendsKeepsTheFormerValue) {
  const auto workspace = inCreateWorkspace(0);
  inAssignInDesiredWS(doubleScalar(1).get(), "a", workspace);
  WorkSpaceIterator walk(workspace, false, false, true);
  const hvArray* lent = nullptr;
  std::string name;
  ASSERT_TRUE(walk.get_next_variable(lent, name));
  const hvArrayPtr value = doubleScalar(2);
  const auto unchanged = [&] { EXPECT_EQ(inGetValueFromWorkspace("a", workspace), lent); };
  EXPECT_EQ(failEach([&] { inAssignInDesiredWS(value.get(), "a", workspace); }, unchanged), 1U);
  EXPECT_EQ(*hvGetData<double>(inGetValueFromWorkspace("a", workspace)), 2);
  EXPECT_EQ(*hvGetData<double>(lent), 1);
}

TEST_F(AllocationFailureTest, LookingUpAndClearingAllocateNothing) {
  const auto workspace = inCreateWorkspace(0);
  const std::string name(100, 'x');
  const hvArrayPtr value = doubleScalar(1);
  inAssignInDesiredWS(value.get(), name, workspace);
  EXPECT_EQ(failEach([&] { static_cast<void>(inGetValueFromWorkspace(name, workspace)); }, nothingToCheck),
            0U);
  EXPECT_EQ(failEach([&] { inClearArraysInDesiredWS(workspace); }, nothingToCheck), 0U);
}

TEST_F(AllocationFailureTest, AStepOfAWalkThatFailsCanBeTakenAgain) {
  const auto workspace = inCreateWorkspace(0);
  const std::string first(100, 'x');
  inAssignInDesiredWS(doubleScalar(1).get(), first, workspace);
  inAssignInDesiredWS(doubleScalar(2).get(), "second", workspace);
  WorkSpaceIterator walk(workspace, false, false, true);
  const hvArray* value = nullptr;
  std::string name;
  EXPECT_EQ(failEach([&] { walk.get_next_variable(value, name); }, [&] { EXPECT_EQ(value, nullptr); }), 1U);
  EXPECT_EQ(name, first);
  EXPECT_EQ(*hvGetData<double>(value), 1);
}

TEST_F(AllocationFailureTest, ShowingAValueLeavesNothingBehind) {
  const hvArrayPtr cell(hvCreateCellArray({1, 2}));
  hvSetCell(cell.get(), 0, doubleMatrix(2, 2, {1, 2, 3, 4}));
  hvSetCell(cell.get(), 1,
            hvArrayPtr(hvCreateString("a text that is longer than what a string keeps inside")));
  std::string text;
  EXPECT_GE(failEach([&] { text = hvFormat(cell.get(), "x"); }, [&] { EXPECT_EQ(text, ""); }), 3U);
  text.clear();
  EXPECT_GE(failEach([&] { text = hvPreview(cell.get(), 100); }, [&] { EXPECT_EQ(text, ""); }), 1U);
}

}  // namespace
