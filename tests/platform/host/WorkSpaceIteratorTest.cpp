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

}  // namespace
