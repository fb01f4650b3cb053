#pragma once

#include <cstddef>

/// Lets the n-th allocation by operator new from now on fail, and those behind it succeed; 0 lets all
/// succeed. The source replaces the operator new of the whole program, so it is compiled into programs of
/// their own.
class FailingAllocation {
 public:
  explicit FailingAllocation(std::size_t number) noexcept;
  ~FailingAllocation();
  FailingAllocation(const FailingAllocation&) = delete;
  FailingAllocation& operator=(const FailingAllocation&) = delete;

  /// Tells whether the allocation that was to fail has been asked for.
  static bool hasFailed() noexcept;
};
