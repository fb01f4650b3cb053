#include <limits>

#include "platform/host/Workspace.h"
#include "tests/platform/host/HostTest.h"

namespace {

using Workspace = boost::shared_ptr<inWorkSpace_tag>;
using Contents = std::vector<std::pair<std::string, double>>;

class WorkspaceTest : public HostTest {
 protected:
  Workspace workspace_ = inCreateWorkspace(100);

  void assign(const std::string& name, double value) {
    inAssignInDesiredWS(doubleScalar(value).get(), name, workspace_);
  }

  void assignCellOfThree(const std::string& name) {
    const hvArrayPtr cell(hvCreateCellArray({1, 3}));
    for (std::size_t i = 0; i < 3; ++i) hvSetCell(cell.get(), i, doubleScalar(1));
    inAssignInDesiredWS(cell.get(), name, workspace_);
  }

  double number(const std::string& name) const {
    return *hvGetData<double>(inGetValueFromWorkspace(name, workspace_));
  }

  Contents contents() const {
    Contents result;
    WorkSpaceIterator walk(workspace_, false, false, true);
    const hvArray* value = nullptr;
    std::string name;
    while (walk.get_next_variable(value, name)) result.emplace_back(name, *hvGetData<double>(value));
    return result;
  }
};

TEST_F(WorkspaceTest, StartsWithoutVariables) {
  EXPECT_EQ(inGetNumberOfVariables(workspace_), 0U);
  EXPECT_EQ(inGetValueFromWorkspace("a", workspace_), nullptr);
  EXPECT_EQ(contents(), Contents());
}

TEST_F(WorkspaceTest, FindsWhatWasAssigned) {
  assign("a", 1);
  assign("b", 2);
  EXPECT_EQ(number("a"), 1);
  EXPECT_EQ(number("b"), 2);
  EXPECT_EQ(inGetValueFromWorkspace("c", workspace_), nullptr);
  EXPECT_EQ(inGetNumberOfVariables(workspace_), 2U);
}

TEST_F(WorkspaceTest, KeepsTheOrderOfTheFirstAssignment) {
  assign("z", 1);
  assign("a", 2);
  assign("m", 3);
  assign("z", 4);
  EXPECT_EQ(contents(), (Contents{{"z", 4}, {"a", 2}, {"m", 3}}));
}

TEST_F(WorkspaceTest, AnyTextIsAName) {
  const std::string names[] = {
      "", " ", "\xC3\xA9", "a.b", std::string("a\0b", 3), "a", std::string(1000, 'x')};
  double value = 0;
  for (const std::string& name : names) assign(name, ++value);
  value = 0;
  for (const std::string& name : names) EXPECT_EQ(number(name), ++value);
  EXPECT_EQ(inGetNumberOfVariables(workspace_), std::size(names));
}

TEST_F(WorkspaceTest, StoresACopyThatTheCallersArrayDoesNotChange) {
  const hvArrayPtr mine = doubleScalar(1);
  inAssignInDesiredWS(mine.get(), "a", workspace_);
  EXPECT_EQ(hvGetData<double>(inGetValueFromWorkspace("a", workspace_)), hvGetData<double>(mine.get()))
      << "the data are shared until one side changes";
  hvGetWritableData<double>(mine.get())[0] = 2;
  EXPECT_EQ(number("a"), 1);
}

TEST_F(WorkspaceTest, StoresNullAsAnEmptyDouble) {
  inAssignInDesiredWS(nullptr, "a", workspace_);
  const hvArray* const value = inGetValueFromWorkspace("a", workspace_);
  ASSERT_NE(value, nullptr);
  EXPECT_EQ(hvDescribe(value), "0x0 double");
  assign("b", 1);
  inAssignInDesiredWS(nullptr, "b", workspace_);
  EXPECT_EQ(hvDescribe(inGetValueFromWorkspace("b", workspace_)), "0x0 double");
}

TEST_F(WorkspaceTest, AVariableIsOneArrayWithThoseInIt) {
  assign("a", 1);
  EXPECT_EQ(arraysMade(), 1U);
  assignCellOfThree("b");
  EXPECT_EQ(arraysMade(), 5U);
}

TEST_F(WorkspaceTest, ReplacingFreesTheFormerValue) {
  assignCellOfThree("a");
  const std::size_t before = arraysMade();
  assign("a", 2);
  EXPECT_EQ(arraysMade(), before - 3);
}

// What code in debug mode checks at each access to writable data, and code in release mode doesn't.
TEST_F(WorkspaceTest, AssigningEndsThePermitToWriteIntoTheCallersArray) {
  const hvArrayPtr first = doubleScalar(1);
  const hvdetail::WritePermit toFirst(first.get());
  toFirst.check();
  inAssignInDesiredWS(first.get(), "a", workspace_);
  EXPECT_EQ(raised([&] { toFirst.check(); }), "hv:messages/StaleData");
  const hvArrayPtr second = doubleScalar(2);
  const hvdetail::WritePermit toSecond(second.get());
  inAssignInDesiredWS(second.get(), "a", workspace_);
  EXPECT_EQ(raised([&] { toSecond.check(); }), "hv:messages/StaleData");
}

#ifndef NDEBUG

TEST_F(WorkspaceTest, WritableDataAreStaleOnceTheArrayWasAssigned) {
  const hvArrayPtr array = doubleScalar(1);
  const hvData<double> data = hvGetWritableData<double>(array.get());
  inAssignInDesiredWS(array.get(), "a", workspace_);
  EXPECT_EQ(raised([&] { data[0] = 7; }), "hv:messages/StaleData");
  EXPECT_EQ(number("a"), 1);
}

TEST_F(WorkspaceTest, WritableDataAreStaleOnceTheArrayHasReplacedAVariable) {
  assign("a", 1);
  const hvArrayPtr array = doubleScalar(2);
  const hvData<double> data = hvGetWritableData<double>(array.get());
  inAssignInDesiredWS(array.get(), "a", workspace_);
  EXPECT_EQ(raised([&] { *data = 7; }), "hv:messages/StaleData");
  EXPECT_EQ(number("a"), 2);
}

#endif

TEST_F(WorkspaceTest, AVariableCanBeAssignedItsOwnValue) {
  assign("a", 1);
  inAssignInDesiredWS(inGetValueFromWorkspace("a", workspace_), "a", workspace_);
  EXPECT_EQ(number("a"), 1);
  inAssignInDesiredWS(inGetValueFromWorkspace("a", workspace_), "b", workspace_);
  EXPECT_EQ(number("b"), 1);
}

TEST_F(WorkspaceTest, ALentValueSurvivesOtherAssignments) {
  assign("a", 1);
  const hvArray* const lent = inGetValueFromWorkspace("a", workspace_);
  for (int i = 0; i < 1000; ++i) assign("v" + std::to_string(i), i);
  EXPECT_EQ(inGetValueFromWorkspace("a", workspace_), lent);
  EXPECT_EQ(*hvGetData<double>(lent), 1);
}

TEST_F(WorkspaceTest, ALentValueBelongsToTheWorkspace) {
  assign("a", 1);
  auto* const taken = const_cast<hvArray*>(inGetValueFromWorkspace("a", workspace_));
  EXPECT_EQ(raised([&] { hvGetWritableData<double>(taken); }), "hv:messages/AlreadyTakenOver");
  hvDestroyArray(taken);
  EXPECT_EQ(number("a"), 1);
}

TEST_F(WorkspaceTest, ClearingRemovesAndFreesEverything) {
  assign("a", 1);
  assign("b", 2);
  inClearArraysInDesiredWS(workspace_);
  EXPECT_EQ(inGetNumberOfVariables(workspace_), 0U);
  EXPECT_EQ(inGetValueFromWorkspace("a", workspace_), nullptr);
  EXPECT_EQ(arraysMade(), 0U);
  inClearArraysInDesiredWS(workspace_);
  assign("b", 3);
  assign("a", 4);
  EXPECT_EQ(contents(), (Contents{{"b", 3}, {"a", 4}})) << "the order begins anew";
}

TEST_F(WorkspaceTest, FreesItsVariablesWithItself) {
  assign("a", 1);
  workspace_.reset();
  EXPECT_EQ(arraysMade(), 0U);
}

TEST_F(WorkspaceTest, AnEmptyPointerKeepsNothing) {
  const Workspace none;
  inAssignInDesiredWS(doubleScalar(1).get(), "a", none);
  inAssignInDesiredWS(nullptr, "a", none);
  EXPECT_EQ(inGetValueFromWorkspace("a", none), nullptr);
  EXPECT_EQ(inGetNumberOfVariables(none), 0U);
  inClearArraysInDesiredWS(none);
  WorkSpaceIterator walk(none, true, true, true);
  const hvArray* value = nullptr;
  std::string name;
  EXPECT_FALSE(walk.get_next_variable(value, name));
}

TEST_F(WorkspaceTest, AHintOfAnySizeChangesNothing) {
  for (const std::size_t hint : {std::size_t{0}, std::size_t{1}, std::numeric_limits<std::size_t>::max()}) {
    workspace_ = inCreateWorkspace(hint);
    assign("a", 1);
    assign("b", 2);
    EXPECT_EQ(contents(), (Contents{{"a", 1}, {"b", 2}}));
  }
}

TEST_F(WorkspaceTest, ManyVariablesAreFoundAndKeepTheirOrder) {
  constexpr int count = 20000;
  const auto name = [](int i) { return "variable_" + std::to_string(i * 7919 % count); };
  for (int i = 0; i < count; ++i) assign(name(i), i);
  for (int i = 0; i < count; ++i) ASSERT_EQ(number(name(i)), i);
  EXPECT_EQ(inGetValueFromWorkspace("variable_" + std::to_string(count), workspace_), nullptr);
  const Contents seen = contents();
  ASSERT_EQ(seen.size(), static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i)
    ASSERT_EQ(seen[static_cast<std::size_t>(i)], std::make_pair(name(i), double(i)));
}

TEST_F(WorkspaceTest, WorkspacesKnowNothingOfEachOther) {
  const Workspace other = inCreateWorkspace(1);
  assign("a", 1);
  inAssignInDesiredWS(doubleScalar(2).get(), "a", other);
  EXPECT_EQ(number("a"), 1);
  inClearArraysInDesiredWS(other);
  EXPECT_EQ(number("a"), 1);
}

}  // namespace
