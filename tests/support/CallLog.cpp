#include "tests/support/CallLog.h"

#include <utility>

namespace support {

void CallLog::enter(const std::string& object, const std::string& operation, const std::string& arguments) {
  const std::string call = object + "." + operation;
  note(call + arguments);
  std::vector<Action> due;
  for (auto [planned, end] = actions_.equal_range(call); planned != end;) {
    const auto here = planned++;
    if (--here->second.calls > 0) continue;
    due.push_back(std::move(here->second.action));
    actions_.erase(here);
  }
  for (const Action& action : due) action();
}

std::vector<std::string> CallLog::take() {
  return std::exchange(lines_, {});
}

void CallLog::at(const std::string& call, Action action, std::size_t number) {
  actions_.emplace(call, Planned{number, std::move(action)});
}

void CallLog::throwAt(const std::string& call, const std::exception_ptr& thrown, std::size_t number) {
  at(
      call, [thrown] { std::rethrow_exception(thrown); }, number);
}

}  // namespace support
