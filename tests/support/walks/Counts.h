#pragma once

#include <map>
#include <ostream>
#include <string_view>

namespace walking {

/// How often walks went each kind of step. Names are literals.
class Counts {
 public:
  struct Count {
    unsigned long gone = 0, done = 0;  // all, and those that weren't refused
  };

  void count(std::string_view name, bool isDone) {
    Count& count = all_[name];
    ++count.gone;
    if (isDone) ++count.done;
  }
  void add(const Counts& other) {
    for (const auto& [name, count] : other.all_) {
      Count& sum = all_[name];
      sum.gone += count.gone;
      sum.done += count.done;
    }
  }

  const std::map<std::string_view, Count>& all() const noexcept { return all_; }
  Count of(std::string_view name) const {
    const auto found = all_.find(name);
    return found == all_.end() ? Count() : found->second;
  }

 private:
  std::map<std::string_view, Count> all_;
};

inline std::ostream& operator<<(std::ostream& out, const Counts& counts) {
  for (const auto& [name, count] : counts.all())
    out << "  " << name << ": " << count.done << " of " << count.gone << " done\n";
  return out;
}

}  // namespace walking
