#pragma once

#include <vector>

#include <boost/smart_ptr/shared_ptr.hpp>

#include "adapters/json/Document.h"

struct inWorkSpace_tag;

namespace nd::adapters::json {

/// Replaces all variables of a workspace, and takes that back unless it is kept; an empty pointer is borne.
///
///     WorkspaceReplacement replacement(workspace, variables);
///     whatElseMayFail();
///     replacement.keep();
///
/// Taking it back needs a few dozen bytes a variable. When there is not even that much memory left, the
/// workspace ends up without variables.
class WorkspaceReplacement {
 public:
  /// Replace the variables. If the memory runs out on the way, the workspace has got back what it held.
  WorkspaceReplacement(boost::shared_ptr<inWorkSpace_tag> workspace, const std::vector<Variable>& variables);
  WorkspaceReplacement(const WorkspaceReplacement&) = delete;
  WorkspaceReplacement& operator=(const WorkspaceReplacement&) = delete;
  ~WorkspaceReplacement();

  /// Let the new variables stay.
  void keep() noexcept;

 private:
  void restore() noexcept;

  boost::shared_ptr<inWorkSpace_tag> workspace_;
  std::vector<Variable> former_;
};

}  // namespace nd::adapters::json
