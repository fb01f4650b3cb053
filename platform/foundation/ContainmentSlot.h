#pragma once

#include <vector>

#include "platform/foundation/Journal.h"
#include "platform/foundation/OwnedCollection.h"

namespace lx::base::detail {

/// A property of an element that contains other elements: where a contained element hangs.
class ND_PLATFORM_EXPORT ContainmentSlot : public AbstractOwnedCollection {
 public:
  ContainmentSlot(ModelElement::Impl& owner, unsigned index) noexcept
      : AbstractOwnedCollection(owner, index) {
    owner.flags_ |= ModelElement::Impl::Composite;
  }
  ~ContainmentSlot() override;

  /// Called when a child is to become a proxy, within its transaction.
  virtual void setApart(ModelElement::Impl& child);

  /// Tell whether the element is contained here.
  bool holds(const ModelElement& element) const noexcept {
    return element.isAlive() && element.impl()->containmentSlot() == this;
  }

  /// Take a child out, within a transaction, without destroying it; its container is then none.
  virtual void takeOut(ModelElement::Impl& child) = 0;

  /// Give the index of the children's property by whose value they are kept, 0 for a slot without key.
  virtual unsigned keyIndex() const noexcept;

  static constexpr bool isComposite() noexcept { return true; }

  /// Tell whether the element is of a class that the property takes.
  virtual bool accepts(const ModelElement::Impl& element) const noexcept = 0;

  /// Put the element that a proxy held here stands for into the proxy's place, and give it; the proxy is
  /// destroyed, and what referred to it refers to the element, as far as that is of the class. A null handle,
  /// with nothing changed, if the model doesn't have the element, or the proxy is not here. Raises what
  /// adding raises.
  ModelElement resolveProxy(const ModelElement& proxy);

  /// Give what `resolveProxy` would, and change nothing.
  ModelElement peekResolveProxy(const ModelElement& proxy) const;

  /// Raise unless the child is of the model of the owner.
  void checkCompatibleModel(const ModelElement::Impl& child) const;

  /// Raise unless all elements of a list can take the place of what the slot holds: each can go into it,
  /// stands in the list once, and doesn't go with what the slot holds now (`CannotAddNonExistentObject`).
  void checkReplacement(const std::vector<ModelElement>& elements) const;

 protected:
  /// Raise unless the child can go into this slot: it is there, of this model, and doesn't contain the owner.
  void checkAddable(const ModelElement::Impl* child) const;

  /// Raise what adding the child raises.
  virtual void checkInsertable(const ModelElement::Impl* child) const;

  /// Put an element where a proxy stands; the proxy may stay beside it.
  virtual void putInPlaceOf(ModelElement::Impl& proxy, ModelElement::Impl& element) = 0;

  /// Run an insertion of the child, which is taken out of its former container in the same transaction.
  template <class Insertion>
  void moveIn(ModelElement::Impl& child, Insertion insert) {
    if (child.containmentSlot() == nullptr) return insert();
    Transaction transaction = owner().modelImpl()->beginTransaction(false);
    child.containmentSlot()->takeOut(child);
    insert();
    transaction.commit();
  }
};

}  // namespace lx::base::detail
