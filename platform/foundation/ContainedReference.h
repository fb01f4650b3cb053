#pragma once

#include "platform/foundation/ContainmentSlot.h"
#include "platform/foundation/Report.h"

namespace lx::base {

namespace detail {

/// A property that contains at most one element, whatever its class.
class ND_PLATFORM_EXPORT ContainedReferenceCore : public ContainmentSlot {
 public:
  using Old = ModelElement;  // a handle, since old values may be asked for when the element has ended

  ContainedReferenceCore(ModelElement::Impl& owner, unsigned index) noexcept
      : ContainmentSlot(owner, index) {}
  ~ContainedReferenceCore() override;

  ModelElement::Impl* target() const noexcept { return owner().isAlive() ? target_ : nullptr; }

  /// Put an element here, or none. The one that was here is destroyed in the same transaction.
  void setElement(ModelElement::Impl* child);

  /// Raise `CannotAddSecondObject` if an element is here.
  void checkVacant() const;

  void takeOut(ModelElement::Impl& child) override;

  /// Tell whether the element is a proxy of that identity.
  bool containsProxyTo(const boost::uuids::uuid& uuid) const noexcept;

  // What a table of fields asks of each field.
  void saveTo(Old& old) const noexcept { old = ModelElement(target_); }
  void restoreFrom(Old& old) noexcept { target_ = old.impl(); }
  bool isUnchangedSince(const Old& old) const noexcept { return target_ == old.impl(); }
  Value oldValue(const Old& old) const { return Value(old); }
  Value toValue() const { return Value(ModelElement(target_)); }
  static Value zeroValue() { return Value(ModelElement()); }
  bool hasValue() const noexcept { return target() != nullptr; }
  void visitContained(ModelElement::Impl::ContainedVisitor& visitor) const {
    if (target_ != nullptr) visitor.visit(*target_);
  }
  void letGo() noexcept { target_ = nullptr; }

 protected:
  void putInPlaceOf(ModelElement::Impl& proxy, ModelElement::Impl& element) override;

 private:
  ModelElement::Impl* target_ = nullptr;
};

}  // namespace detail

/// A property that contains at most one element.
template <class E>
class ContainedReference : public detail::ContainedReferenceCore {
 public:
  using Element = E;
  using detail::ContainedReferenceCore::ContainedReferenceCore;

  /// Give the element; a null handle if there is none.
  E get() const { return detail::typed<E>(target()); }

  /// Put an element here, or none for a null handle. The one that was here is destroyed in the same
  /// transaction. Raises what `ElementSequence` says of adding.
  void set(const E& element) { setElement(static_cast<const ModelElement&>(element).impl()); }

  /// Put an element here; raises `CannotAddSecondObject` if there is one.
  void add(const E& element) {
    checkVacant();
    set(element);
  }

  /// What `ContainmentSlot` says of resolving, as elements of class E.
  E resolveProxy(const E& proxy) { return detail::typed<E>(ContainmentSlot::resolveProxy(proxy).impl()); }
  E peekResolveProxy(const E& proxy) const {
    return detail::typed<E>(ContainmentSlot::peekResolveProxy(proxy).impl());
  }

  bool accepts(const ModelElement::Impl& element) const noexcept override {
    return detail::isOfClass<E>(element);
  }
};

}  // namespace lx::base
