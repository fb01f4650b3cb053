#pragma once

#include <cstddef>
#include <new>

/// Lets the n-th allocation by operator new from now on fail, alone or with all that follow, until the end of
/// the scope; number 0 lets all succeed. The source replaces the operator new of the whole program, which is
/// for one thread at a time then: it is compiled into programs of their own.
class AllocationFault {
 public:
  enum class Extent { Alone, WithAllThatFollow };

  explicit AllocationFault(std::size_t number, Extent extent = Extent::Alone) noexcept;
  ~AllocationFault();
  AllocationFault(const AllocationFault&) = delete;
  AllocationFault& operator=(const AllocationFault&) = delete;

  /// Tell whether an allocation has failed since the latest fault was set up.
  static bool hasOccurred() noexcept;

  /// Count the allocations that were asked for since the program began.
  static std::size_t requests() noexcept;

  /// Count the blocks that were freed since the program began.
  static std::size_t releases() noexcept;

  /// Count the allocations that were not freed yet. What the pool of the thread keeps is freed for good
  /// before.
  static std::size_t live() noexcept;
};

/// What came of a step of which an allocation was to fail.
struct AllocationAttempt {
  bool isRefused;    // std::bad_alloc left the step
  bool hasOccurred;  // the step asked for that allocation
};

/// Run a step whose n-th allocation fails.
template <class Step>
AllocationAttempt attemptWithout(std::size_t number, const Step& step,
                                 AllocationFault::Extent extent = AllocationFault::Extent::Alone) {
  const AllocationFault fault(number, extent);
  bool isRefused = false;
  try {
    step();
  } catch (const std::bad_alloc&) {
    isRefused = true;
  }
  return {isRefused, AllocationFault::hasOccurred()};
}
