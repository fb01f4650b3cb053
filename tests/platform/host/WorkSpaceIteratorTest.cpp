#include <string>
#include <utility>

#include "platform/host/Workspace.h"
#include "tests/platform/host/HostTest.h"

namespace {

class WorkSpaceIteratorTest : public HostTest {
 protected:
  boost::shared_ptr<inWorkSpace_tag> workspace_ = inCreateWorkspace(10);

  void assign(const std::string& name, double value) {
    inAssignInDesiredWS(doubleScalar(value).get(), name, workspace_);
  }

  // Gives "name=value" of the next variable, or "end".
  static std::string next(WorkSpaceIterator& walk) {
    const hvArray* value = nullptr;
    std::string name;
    if (!walk.get_next_variable(value, name)) return "end";
    return name + "=" + hvPreview(value, 20);
  }
};

TEST_F(WorkSpaceIteratorTest, TheFlagsChangeNothing) {
  assign("b", 1);
  assign("a", 2);
  for (unsigned flags = 0; flags < 8; ++flags) {
    WorkSpaceIterator walk(workspace_, (flags & 1U) != 0, (flags & 2U) != 0, (flags & 4U) != 0);
    EXPECT_EQ(next(walk), "b=1");
    EXPECT_EQ(next(walk), "a=2");
    EXPECT_EQ(next(walk), "end");
  }
}

TEST_F(WorkSpaceIteratorTest, TheEndGivesNullAndLeavesTheName) {
  assign("a", 1);
  WorkSpaceIterator walk(workspace_, false, false, true);
  const hvArray* value = nullptr;
  std::string name;
  EXPECT_TRUE(walk.get_next_variable(value, name));
  EXPECT_EQ(value, inGetValueFromWorkspace("a", workspace_));
  EXPECT_FALSE(walk.get_next_variable(value, name));
  EXPECT_EQ(value, nullptr);
  EXPECT_EQ(name, "a");
}

TEST_F(WorkSpaceIteratorTest, TwoWalksGoTheirOwnWays) {
  assign("a", 1);
  assign("b", 2);
  WorkSpaceIterator first(workspace_, false, false, true);
  EXPECT_EQ(next(first), "a=1");
  WorkSpaceIterator second = first;
  EXPECT_EQ(next(first), "b=2");
  EXPECT_EQ(next(second), "b=2");
  EXPECT_EQ(next(first), "end");
}

TEST_F(WorkSpaceIteratorTest, AVariableAssignedOnTheWayComesAtTheEnd) {
  assign("b", 1);
  WorkSpaceIterator walk(workspace_, false, false, true);
  EXPECT_EQ(next(walk), "b=1");
  assign("a", 2);
  EXPECT_EQ(next(walk), "a=2");
  EXPECT_EQ(next(walk), "end");
  assign("c", 3);
  EXPECT_EQ(next(walk), "c=3");
  EXPECT_EQ(next(walk), "end");
}

TEST_F(WorkSpaceIteratorTest, AVariableWithANewValueComesOnceAndWithThatValue) {
  assign("a", 1);
  assign("b", 2);
  WorkSpaceIterator walk(workspace_, false, false, true);
  EXPECT_EQ(next(walk), "a=1");
  assign("a", 10);
  assign("b", 20);
  EXPECT_EQ(next(walk), "b=20");
  EXPECT_EQ(next(walk), "end");
}

TEST_F(WorkSpaceIteratorTest, ClearingOnTheWayEndsTheWalkUntilThereAreNewVariables) {
  for (int i = 0; i < 5; ++i) assign("v" + std::to_string(i), i);
  WorkSpaceIterator walk(workspace_, false, false, true);
  EXPECT_EQ(next(walk), "v0=0");
  inClearArraysInDesiredWS(workspace_);
  EXPECT_EQ(next(walk), "end");
  assign("v3", 30);
  assign("new", 40);
  EXPECT_EQ(next(walk), "v3=30");
  EXPECT_EQ(next(walk), "new=40");
  EXPECT_EQ(next(walk), "end");
}

TEST_F(WorkSpaceIteratorTest, AWalkAfterAClearingBeginsAtTheNewVariables) {
  assign("a", 1);
  inClearArraysInDesiredWS(workspace_);
  assign("b", 2);
  WorkSpaceIterator walk(workspace_, false, false, true);
  EXPECT_EQ(next(walk), "b=2");
  EXPECT_EQ(next(walk), "end");
}

TEST_F(WorkSpaceIteratorTest, TheWalkKeepsItsWorkspaceAlive) {
  assign("a", 1);
  WorkSpaceIterator walk(workspace_, false, false, true);
  workspace_.reset();
  EXPECT_EQ(next(walk), "a=1");
}

// Steps to a variable and gives its value.
const hvArray* lentBy(WorkSpaceIterator& walk) {
  const hvArray* value = nullptr;
  std::string name;
  EXPECT_TRUE(walk.get_next_variable(value, name));
  return value;
}

TEST_F(WorkSpaceIteratorTest, ALentValueStaysWhenTheWorkspaceIsCleared) {
  assign("a", 1);
  WorkSpaceIterator walk(workspace_, false, false, true);
  const hvArray* const lent = lentBy(walk);
  const double* const data = hvGetData<double>(lent);
  inClearArraysInDesiredWS(workspace_);
  EXPECT_EQ(hvPreview(lent, 20), "1");
  EXPECT_EQ(hvGetData<double>(lent), data);
  EXPECT_EQ(inGetNumberOfVariables(workspace_), 0U);
  EXPECT_EQ(arraysMade(), 1U);
  EXPECT_EQ(next(walk), "end");
  EXPECT_EQ(arraysMade(), 0U) << "the loan has ended";
}

TEST_F(WorkSpaceIteratorTest, ALentValueStaysWhenItsVariableIsAssignedAnew) {
  for (const char* name : {"a", "b", "c"}) assign(name, 1);
  WorkSpaceIterator walk(workspace_, false, false, true);
  EXPECT_EQ(next(walk), "a=1");
  const hvArray* const lent = lentBy(walk);
  const double* const data = hvGetData<double>(lent);
  assign("b", 10);
  assign("b", 20);
  EXPECT_EQ(hvPreview(lent, 20), "1");
  EXPECT_EQ(hvGetData<double>(lent), data);
  EXPECT_EQ(hvPreview(inGetValueFromWorkspace("b", workspace_), 20), "20");
  EXPECT_EQ(inGetNumberOfVariables(workspace_), 3U);
  EXPECT_EQ(arraysMade(), 4U);
  EXPECT_EQ(next(walk), "c=1") << "the variable has kept its place";
  EXPECT_EQ(arraysMade(), 3U) << "the loan has ended";
  EXPECT_EQ(next(walk), "end");
}

TEST_F(WorkSpaceIteratorTest, ALentValueStaysWhenTheWorkspaceGoes) {
  assign("a", 1);
  {
    WorkSpaceIterator walk(workspace_, false, false, true);
    const hvArray* const lent = lentBy(walk);
    inClearArraysInDesiredWS(workspace_);
    workspace_.reset();
    EXPECT_EQ(hvPreview(lent, 20), "1");
    EXPECT_EQ(arraysMade(), 1U);
  }
  EXPECT_EQ(arraysMade(), 0U);
}

TEST_F(WorkSpaceIteratorTest, ALentValueStaysBehindTheWalkWhileItsVariableHasIt) {
  assign("a", 1);
  const hvArray* lent = nullptr;
  {
    WorkSpaceIterator walk(workspace_, false, false, true);
    lent = lentBy(walk);
  }
  EXPECT_EQ(lent, inGetValueFromWorkspace("a", workspace_));
  assign("a", 2);
  EXPECT_EQ(lent, inGetValueFromWorkspace("a", workspace_)) << "nobody lends it any more";
}

TEST_F(WorkSpaceIteratorTest, ALentValueBelongsToNobodyElse) {
  assign("a", 1);
  WorkSpaceIterator walk(workspace_, false, false, true);
  auto* const lent = const_cast<hvArray*>(lentBy(walk));
  inClearArraysInDesiredWS(workspace_);
  EXPECT_EQ(raised([&] { hvGetWritableData<double>(lent); }), "hv:messages/AlreadyTakenOver");
  hvDestroyArray(lent);
  EXPECT_EQ(hvPreview(lent, 20), "1");
}

TEST_F(WorkSpaceIteratorTest, ACopyOfAWalkSharesItsLoan) {
  assign("a", 1);
  assign("b", 2);
  WorkSpaceIterator first(workspace_, false, false, true);
  const hvArray* const lent = lentBy(first);
  WorkSpaceIterator second = first;
  EXPECT_EQ(next(first), "b=2");
  inClearArraysInDesiredWS(workspace_);
  EXPECT_EQ(hvPreview(lent, 20), "1");
  EXPECT_EQ(arraysMade(), 2U);
  second = first;
  EXPECT_EQ(arraysMade(), 1U);
  WorkSpaceIterator third = std::move(first);
  second = WorkSpaceIterator(workspace_, false, false, true);
  EXPECT_EQ(arraysMade(), 1U);
  third = std::move(second);
  EXPECT_EQ(arraysMade(), 0U);
}

TEST_F(WorkSpaceIteratorTest, EachVariableCanBeAssignedAnewFromItsLentValue) {
  constexpr int count = 1000;
  for (int i = 0; i < count; ++i) assign("v" + std::to_string(i), i);
  WorkSpaceIterator walk(workspace_, false, false, true);
  const hvArray* value = nullptr;
  std::string name;
  while (walk.get_next_variable(value, name)) {
    const double former = *hvGetData<double>(value);
    assign(name, former + 0.5);
    EXPECT_EQ(*hvGetData<double>(value), former);
  }
  EXPECT_EQ(arraysMade(), static_cast<std::size_t>(count));
  WorkSpaceIterator again(workspace_, false, false, true);
  for (int i = 0; i < count; ++i) {
    ASSERT_EQ(next(again), "v" + std::to_string(i) + "=" + std::to_string(i) + ".5");
    ASSERT_EQ(*hvGetData<double>(inGetValueFromWorkspace("v" + std::to_string(i), workspace_)), i + 0.5);
  }
  EXPECT_EQ(next(again), "end");
}

}  // namespace
