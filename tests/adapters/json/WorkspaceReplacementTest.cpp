#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "adapters/json/WorkspaceReplacement.h"
#include "platform/host/ArrayComparison.h"
#include "platform/host/Workspace.h"
#include "tests/adapters/json/arrays.h"
#include "tests/support/AllocationFault.h"

using nd::adapters::json::Variable;
using nd::adapters::json::WorkspaceReplacement;

namespace {

std::vector<std::string> namesIn(const boost::shared_ptr<inWorkSpace_tag>& workspace) {
  std::vector<std::string> names;
  WorkSpaceIterator walk(workspace, false, false, true);
  const hvArray* value = nullptr;
  std::string name;
  while (walk.get_next_variable(value, name)) names.push_back(name);
  return names;
}

std::vector<Variable> newContent() {
  std::vector<Variable> variables;
  for (const char* name : {"b", "c", "d"}) variables.push_back({name, arrays::row(u"new")});
  return variables;
}

boost::shared_ptr<inWorkSpace_tag> filledWorkspace() {
  auto workspace = inCreateWorkspace(10);
  inAssignInDesiredWS(arrays::scalar(1).get(), "a", workspace);
  inAssignInDesiredWS(arrays::scalar(2).get(), "b", workspace);
  return workspace;
}

}  // namespace

TEST(WorkspaceReplacement, ReplacesAllVariables) {
  const auto workspace = filledWorkspace();
  WorkspaceReplacement(workspace, newContent()).keep();
  EXPECT_EQ(namesIn(workspace), (std::vector<std::string>{"b", "c", "d"}));
  EXPECT_TRUE(hvEqual(inGetValueFromWorkspace("b", workspace), arrays::row(u"new").get()));
}

TEST(WorkspaceReplacement, EmptiesTheWorkspaceForNoVariables) {
  const auto workspace = filledWorkspace();
  WorkspaceReplacement(workspace, {}).keep();
  EXPECT_TRUE(namesIn(workspace).empty());
}

TEST(WorkspaceReplacement, IsTakenBackUnlessItIsKept) {
  const auto workspace = filledWorkspace();
  const std::size_t before = hvGetLiveArrayCount();
  {
    const WorkspaceReplacement replacement(workspace, newContent());
    EXPECT_EQ(namesIn(workspace), (std::vector<std::string>{"b", "c", "d"}));
  }
  EXPECT_EQ(namesIn(workspace), (std::vector<std::string>{"a", "b"}));
  EXPECT_TRUE(hvEqual(inGetValueFromWorkspace("a", workspace), arrays::scalar(1).get()));
  EXPECT_TRUE(hvEqual(inGetValueFromWorkspace("b", workspace), arrays::scalar(2).get()));
  EXPECT_EQ(hvGetLiveArrayCount(), before);
}

TEST(WorkspaceReplacement, LeavesAnEmptyWorkspaceIfThereIsNoMemoryToTakeItBack) {
  const auto workspace = filledWorkspace();
  const std::size_t before = hvGetLiveArrayCount();
  {
    const std::vector<Variable> variables = newContent();
    auto replacement = std::make_unique<WorkspaceReplacement>(workspace, variables);
    const AllocationFault fault(1);
    replacement.reset();
  }
  EXPECT_TRUE(namesIn(workspace).empty());
  EXPECT_EQ(hvGetLiveArrayCount(), before - 2);
}

TEST(WorkspaceReplacement, BearsAnEmptyPointer) {
  const std::size_t before = hvGetLiveArrayCount();
  WorkspaceReplacement(nullptr, newContent()).keep();
  EXPECT_EQ(hvGetLiveArrayCount(), before);
}

TEST(WorkspaceReplacement, LeavesTheWorkspaceAsItWasWhenAnAllocationFails) {
  const auto workspace = filledWorkspace();
  const std::vector<Variable> variables = newContent();
  const std::size_t before = hvGetLiveArrayCount();
  std::size_t number = 1;
  for (;; ++number) {
    const auto [isShort, hasFailed] =
        attemptWithout(number, [&] { WorkspaceReplacement(workspace, variables).keep(); });
    EXPECT_EQ(isShort, hasFailed);
    if (!isShort) break;
    EXPECT_EQ(namesIn(workspace), (std::vector<std::string>{"a", "b"})) << "allocation " << number;
    EXPECT_TRUE(hvEqual(inGetValueFromWorkspace("a", workspace), arrays::scalar(1).get()))
        << "allocation " << number;
    EXPECT_TRUE(hvEqual(inGetValueFromWorkspace("b", workspace), arrays::scalar(2).get()))
        << "allocation " << number;
    EXPECT_EQ(hvGetLiveArrayCount(), before) << "allocation " << number;
  }
  EXPECT_GT(number, 3U);
  EXPECT_EQ(namesIn(workspace), (std::vector<std::string>{"b", "c", "d"}));
}
