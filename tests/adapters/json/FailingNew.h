#pragma once

#include <cstddef>

/// Lets an allocation by `new` fail. A program that links this has its own operator new.
///
///     for (std::size_t number = 1;; ++number) {
///       FailingNew fault(number);
///       …                            // the allocation of this number, from here on, throws std::bad_alloc
///       if (!fault.hasFailed()) break;
///     }
class FailingNew {
 public:
  /// Let the allocation of this number fail, counted from 1. All others succeed.
  explicit FailingNew(std::size_t number) noexcept;
  FailingNew(const FailingNew&) = delete;
  FailingNew& operator=(const FailingNew&) = delete;
  ~FailingNew();

  /// Tell whether the allocation has failed; nothing fails from then on.
  bool hasFailed() const noexcept;
};
