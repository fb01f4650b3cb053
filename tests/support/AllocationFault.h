#pragma once

#include <cstddef>

/// Lets the n-th allocation by operator new from now on fail, alone or with all that follow, until the end of
/// the scope; number 0 lets all succeed. The source replaces the operator new of the whole program, which is
/// for one thread then: it is compiled into programs of their own.
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

  /// Count the allocations that were not freed yet.
  static std::size_t live() noexcept;
};
