#pragma once

#include <cstddef>
#include <exception>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace support {

/// What fakes were asked, one line a call in the order of the calls, with the object and the arguments:
/// "a'1.open(x.test)". A test may attach an action to a call, which runs in it, behind its line: to throw, to
/// call back, to change answers.
///
///     log.throwAt("a'1.open", std::make_exception_ptr(std::runtime_error("offline")));
///     log.at("b.getSectionName", [&] { AdapterManagerV2::unregisterAdapterByName(u"b"); });
class CallLog {
 public:
  using Action = std::function<void()>;

  /// Called by the fakes: notes the call and runs the action that is attached to it.
  void enter(const std::string& object, const std::string& operation, const std::string& arguments = {});

  /// Notes a line of the test's own.
  void note(std::string line) { lines_.push_back(std::move(line)); }

  /// Gives the lines since the last time and forgets them.
  std::vector<std::string> take();

  /// Runs an action at the n-th call from now on, counted from 1, of an operation of an object.
  void at(const std::string& call, Action action, std::size_t number = 1);

  /// Throws an object at the n-th call from now on.
  void throwAt(const std::string& call, const std::exception_ptr& thrown, std::size_t number = 1);

  /// Takes all actions away.
  void forgetActions() noexcept { actions_.clear(); }

  /// Counts the actions that have not run.
  std::size_t actionsLeft() const noexcept { return actions_.size(); }

 private:
  struct Planned {
    std::size_t calls;  // until the action runs
    Action action;
  };

  std::vector<std::string> lines_;
  std::multimap<std::string, Planned, std::less<>> actions_;
};

using Lines = std::vector<std::string>;

}  // namespace support
