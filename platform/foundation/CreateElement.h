#pragma once

#include "platform/foundation/ModelImpl.h"

namespace lx::base::detail {

/// Raise `InvalidValue` that names the operation if the model is null or gone.
ND_PLATFORM_EXPORT void checkModel(const char* operation, const Model& model);

/// Make an element in a model, in one transaction; an exception leaves nothing of it.
template <class E>
E createElement(const char* operation, const Model& model, const boost::uuids::uuid& uuid) {
  checkModel(operation, model);
  Transaction transaction = model.impl()->beginTransaction(false);
  const E element(new typename E::Impl(model, uuid));
  element.impl()->notifyCreated();
  transaction.commit();
  return element;
}

/// Give the element on which an operation is called; raise `InvalidValue` that names it if the element is
/// gone.
template <class ImplT>
ImplT& checkedAlive(ImplT& element, const char* operation) {
  element.checkAlive(operation);
  return element;
}

}  // namespace lx::base::detail
