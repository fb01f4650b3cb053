#pragma once

#include <type_traits>

#include "platform/foundation/ModelAccess.h"
#include "platform/foundation/meta/Meta.h"

namespace lx::base::detail {

/// Raise `InvalidValue` that names the operation if the model is null or gone.
ND_PLATFORM_EXPORT void checkModel(const char* operation, const Model& model);

/// Raise `InvalidValue` that names the class of a proxy if the model is null or gone or the identity is nil.
ND_PLATFORM_EXPORT void checkProxy(const meta::Class& ofClass, const Model& model,
                                   const boost::uuids::uuid& uuid);

/// Whether a class has no say in the creation of its elements, and none in their end.
template <class ImplT>
inline constexpr bool IsMuteAtCreation =
    std::is_same_v<decltype(&ImplT::didCreate), void (ModelElement::Impl::*)()>;
template <class ImplT>
inline constexpr bool IsMuteAtItsEnd =
    std::is_same_v<decltype(&ImplT::aboutToDestroy), void (ModelElement::Impl::*)()>&&
        std::is_same_v<decltype(&ImplT::notifyDestroying), void (ModelElement::Impl::*)()>;

/// Make an element that is not in its model yet.
template <class E>
E allocateElement(const Model& model, const boost::uuids::uuid& uuid) {
  auto* const impl = new typename E::Impl(model, uuid);
  if constexpr (IsMuteAtItsEnd<typename E::Impl>) ModelAccess::setMute(*impl);
  return E(impl);
}

/// Make an element that has no say in its creation.
template <class E>
E createMute(const Model& model, const boost::uuids::uuid& uuid) {
  ModelAccess::checkUsable(*model.impl());
  E element = allocateElement<E>(model, uuid);
  ModelAccess::createMute(element);
  return element;
}

/// Make an element, in one transaction, which its class is told of.
template <class E>
E createTold(const Model& model, const boost::uuids::uuid& uuid) {
  Transaction transaction = model.impl()->beginTransaction(false);
  E element = allocateElement<E>(model, uuid);
  element.impl()->notifyCreated();
  transaction.commit();
  return element;
}

/// Make an element in a model, in one transaction; an exception leaves nothing of it.
template <class E>
E createElement(const char* operation, const Model& model, const boost::uuids::uuid& uuid) {
  const bool isAlive = model && model.impl()->isAlive();
  if (!isAlive) checkModel(operation, model);
  if constexpr (IsMuteAtCreation<typename E::Impl>)
    return createMute<E>(model, uuid);
  else
    return createTold<E>(model, uuid);
}

}  // namespace lx::base::detail

namespace lx::base {

/// Make a proxy for an element that isn't loaded, in a transaction: it has the class and the identity and no
/// values, and refuses every mutator. It can be put where its element belongs, and be resolved there once the
/// model has the element.
///
/// Raises `InvalidValue` for a null or dead model and for the nil identity, `CannotAddSecondObject` if the
/// model has the element.
template <class E>
E createProxy(const Model& model, const boost::uuids::uuid& uuid) {
  detail::checkProxy(E::metaClass(), model, uuid);
  Transaction transaction = model.impl()->beginTransaction(false);
  const E element = detail::allocateElement<E>(model, uuid);
  static_cast<const ModelElement&>(element).impl()->notifyCreatedAsProxy();
  transaction.commit();
  return element;
}

}  // namespace lx::base
