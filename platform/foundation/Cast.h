#pragma once

#include "platform/foundation/ModelElement.h"
#include "platform/foundation/Report.h"

namespace lx::base {

/// Give an element as one of class E. A null handle is of every class. Raises `CannotCastIncompatibleTypes`
/// for an element of another class.
template <class E>
E castTo(const ModelElement& element) {
  auto* const impl = dynamic_cast<typename E::Impl*>(element.impl());
  if (impl == nullptr && element) report::cannotCast(element, E::metaClass());
  return E(impl);
}

}  // namespace lx::base
