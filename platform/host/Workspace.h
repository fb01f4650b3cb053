#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include <boost/shared_ptr.hpp>
#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "platform/export.h"
#include "platform/host/Array.h"

/// Workspaces: named tables of arrays that keep the order in which their variables were first assigned.
///
///     boost::shared_ptr<inWorkSpace_tag> workspace = inCreateWorkspace(100);
///     hvArrayPtr gain{hvCreateDoubleScalar(2.5)};
///     inAssignInDesiredWS(gain.get(), "gain", workspace);
///     WorkSpaceIterator walk(workspace, false, false, true);
///     const hvArray* value = nullptr;
///     std::string name;
///     while (walk.get_next_variable(value, name)) std::cout << hvFormat(value, name);
///
/// Names are narrow texts compared byte by byte; any text is a name, the empty one too. An empty pointer
/// stands for a workspace that keeps nothing: clearing and assigning do nothing, a look-up finds nothing, a
/// walk ends at once.
struct inWorkSpace_tag;

namespace hvdetail {
class Variable;
}

/// Create an empty workspace. The hint says how many variables are expected; it only saves time. Room for
/// that many, 1024 at most and some 40 KB for these, is made with the first variable.
ND_PLATFORM_EXPORT boost::shared_ptr<inWorkSpace_tag> inCreateWorkspace(std::size_t sizeHint);

/// Store a copy of a value under a name; the caller's array stays the caller's, and the data are shared until
/// one side changes. A null value is stored as an empty 0-by-0 double. A variable that is there already gets
/// the new value and keeps its place in the order. A call that raises leaves the workspace as it was.
ND_PLATFORM_EXPORT void inAssignInDesiredWS(const hvArray* value, const std::string& name,
                                            const boost::shared_ptr<inWorkSpace_tag>& workspace);

/// Remove all variables.
ND_PLATFORM_EXPORT void inClearArraysInDesiredWS(
    const boost::shared_ptr<inWorkSpace_tag>& workspace) noexcept;

/// Lend the value of a variable until that variable is assigned anew or removed, or the workspace goes; null
/// if there is none of that name. Make a copy of a value that is needed for longer.
ND_PLATFORM_EXPORT const hvArray* inGetValueFromWorkspace(
    const std::string& name, const boost::shared_ptr<inWorkSpace_tag>& workspace) noexcept;

/// Tell how many variables there are.
ND_PLATFORM_EXPORT std::size_t inGetNumberOfVariables(
    const boost::shared_ptr<inWorkSpace_tag>& workspace) noexcept;

/// A walk over the variables of a workspace, in the order in which they were first assigned.
///
/// The walk keeps the workspace alive, and the workspace may change meanwhile: a variable that is assigned
/// first while the walk is on comes at its end, one that was removed doesn't come, and one that has a new
/// value comes once, with the value that it has at that moment. After its end a walk goes on if variables
/// have been added. A copy of a walk stands where the walk stands, and shares its loan.
class ND_PLATFORM_EXPORT WorkSpaceIterator {
 public:
  /// Begin a walk before the first variable; whatever the three flags are, it gives every variable once.
  WorkSpaceIterator(boost::shared_ptr<inWorkSpace_tag> workspace, bool, bool, bool) noexcept;
  WorkSpaceIterator(const WorkSpaceIterator& other) noexcept;
  WorkSpaceIterator(WorkSpaceIterator&& other) noexcept;
  WorkSpaceIterator& operator=(const WorkSpaceIterator& other) noexcept;
  WorkSpaceIterator& operator=(WorkSpaceIterator&& other) noexcept;
  ~WorkSpaceIterator();

  /// Go to the next variable and give its value, on loan until the next step, and its name; false at the end,
  /// with value null and name as it was.
  ///
  /// The loan holds whatever happens to the workspace meanwhile: a value that was lent stays as it is when
  /// its variable is removed or assigned anew. It ends with the walk, unless the variable still has it.
  bool get_next_variable(const hvArray*& value, std::string& name);

 private:
  boost::shared_ptr<inWorkSpace_tag> workspace_;
  boost::intrusive_ptr<const hvdetail::Variable> lent_;
  std::uint64_t next_ = 0;
};
