#pragma once

#include "platform/foundation/ModelElement.h"

namespace lx::base::detail {

/// The element on which an operation is called, held until the operation has returned: whom it lets act may
/// destroy the element and let go of the caller's handle. Raises `InvalidValue` that names the operation if
/// the element is gone.
template <class ImplT>
class Called {
 public:
  Called(ImplT& element, const char* operation) : element_(element), held_(&element) {
    element.checkAlive(operation);
  }
  ImplT* operator->() const noexcept { return &element_; }

 private:
  ImplT& element_;
  ModelElement held_;
};

}  // namespace lx::base::detail
