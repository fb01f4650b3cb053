#include "adapters/json/WorkspaceReplacement.h"

#include <string>
#include <utility>

#include "platform/host/Workspace.h"

namespace nd::adapters::json {
namespace {

using Workspace = boost::shared_ptr<inWorkSpace_tag>;

std::vector<Variable> copyContent(const Workspace& workspace) {
  std::vector<Variable> variables;
  variables.reserve(inGetNumberOfVariables(workspace));
  WorkSpaceIterator walk(workspace, false, false, true);
  const hvArray* value = nullptr;
  std::string name;
  while (walk.get_next_variable(value, name)) {
    variables.push_back({name, hvArrayPtr(hvCreateSharedDataCopy(value))});
  }
  return variables;
}

void assignAll(const Workspace& workspace, const std::vector<Variable>& variables) {
  inClearArraysInDesiredWS(workspace);
  for (const Variable& variable : variables)
    inAssignInDesiredWS(variable.value.get(), variable.name, workspace);
}

}  // namespace

WorkspaceReplacement::WorkspaceReplacement(Workspace workspace, const std::vector<Variable>& variables)
    : workspace_(std::move(workspace)), former_(copyContent(workspace_)) {
  try {
    assignAll(workspace_, variables);
  } catch (...) {
    restore();
    throw;
  }
}

WorkspaceReplacement::~WorkspaceReplacement() {
  restore();
}

void WorkspaceReplacement::keep() noexcept {
  workspace_.reset();
}

void WorkspaceReplacement::restore() noexcept {
  if (!workspace_) return;
  try {
    assignAll(workspace_, former_);
  } catch (...) {
    inClearArraysInDesiredWS(workspace_);
  }
}

}  // namespace nd::adapters::json
