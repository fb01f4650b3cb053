#pragma once

#include <cstdlib>
#include <stdexcept>

/// A content of values that throws from its destructor when it is told to: all of them, from then on.
struct Throwing {
  static inline bool throws = false;
  Throwing() = default;
  Throwing(const Throwing&) = default;
  Throwing& operator=(const Throwing&) = default;
  ~Throwing() noexcept(false) {  // NOLINT(bugprone-exception-escape): this is what is tested
    if (throws) throw std::length_error("thrown by a destructor");
  }
  friend bool operator==(const Throwing&, const Throwing&) { return true; }
};

/// Run a step, and end the program well behind it, also if it lets an exception pass.
template <class Step>
void endWellBehind(Step step) {
  try {
    step();
  } catch (...) {
    std::_Exit(0);
  }
  std::_Exit(0);
}
