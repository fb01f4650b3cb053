#pragma once

#include <cstdint>

#include "platform/foundation/ReferringField.h"

namespace lx::base {

namespace detail {

/// A property that refers to at most one element, whatever its class.
class ND_PLATFORM_EXPORT ReferenceCore : public ReferringField {
 public:
  struct Old {
    ModelElement target;
    std::uint64_t number = 0;
  };

  ReferenceCore(ModelElement::Impl& owner, unsigned index) noexcept : ReferringField(owner, index) {}
  ~ReferenceCore() override;

  ModelElement::Impl* target() const noexcept { return owner().isAlive() ? link_.target.impl() : nullptr; }

  /// Refer to an element, or to none.
  void setTarget(ModelElement::Impl* element);

  /// Tell whether the target is a proxy of that identity.
  bool containsProxyTo(const boost::uuids::uuid& uuid) const noexcept {
    return target() != nullptr && isProxyTo(*target(), uuid);
  }

  void targetDies(Link& link) override;
  void targetBecomesProxy(Link& link) override;
  void targetIsResolved(Link& link, ModelElement::Impl& element) override;
  void loseAll() override { setTarget(nullptr); }

  // What a table of fields asks of each field.
  void saveTo(Old& old) const noexcept { old = {link_.target, link_.number}; }
  void restoreFrom(Old& old) noexcept { swap(old); }
  bool isUnchangedSince(const Old& old) const noexcept { return link_.target == old.target; }
  Value oldValue(const Old& old) const { return Value(old.target); }
  Value toValue() const { return Value(link_.target); }
  static Value zeroValue() { return Value(ModelElement()); }
  bool hasValue() const noexcept { return target() != nullptr; }
  void visitContained(ModelElement::Impl::ContainedVisitor& visitor) { visitor.visitReferring(*this); }
  void letGo() noexcept;

 private:
  void swap(Old& other) noexcept;

  Link link_;
};

}  // namespace detail

/// A property that refers to at most one element and doesn't contain it.
///
/// The element may be of another model. One of the same model that is destroyed is referred to no longer,
/// from the same transaction on; one of another model is then read as a handle that isn't alive. It may be a
/// proxy, also one that it becomes later.
template <class E>
class Reference final : public detail::ReferenceCore {
 public:
  using Element = E;
  using detail::ReferenceCore::ReferenceCore;

  /// Give the element; a null handle if there is none.
  E get() const { return E(static_cast<typename E::Impl*>(target())); }

  /// Refer to an element, or to none for a null handle; to the same again does nothing. Raises `InvalidValue`
  /// for an element that was destroyed.
  void set(const E& element) { setTarget(static_cast<const ModelElement&>(element).impl()); }

  /// Refer to the element that the target, a proxy, stands for, and give it. A null handle, with nothing
  /// changed, if the proxy's model doesn't have it; a target that is no proxy is given as it is.
  E resolve() {
    owner().checkWritable(index());
    const E loaded = peekResolve();
    if (loaded) set(loaded);
    return loaded;
  }

  /// Give what `resolve` would, and change nothing.
  E peekResolve() const {
    const ModelElement held(target());
    const ModelElement loaded = held.isProxy() ? detail::loadedElement(held) : held;
    return E(dynamic_cast<typename E::Impl*>(loaded.impl()));
  }

  bool accepts(const ModelElement::Impl& element) const noexcept override {
    return detail::isOfClass<E>(element);
  }
};

}  // namespace lx::base
