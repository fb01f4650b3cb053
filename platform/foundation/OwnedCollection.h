#pragma once

#include <cstdint>
#include <type_traits>
#include <vector>

#include "platform/export.h"
#include "platform/foundation/ModelAccess.h"

namespace lx::base {

/// What a collection is to the element that holds it: a property that changes by operations.
class ND_PLATFORM_EXPORT AbstractOwnedCollection {
 public:
  class Operation;

  AbstractOwnedCollection(const AbstractOwnedCollection&) = delete;
  AbstractOwnedCollection& operator=(const AbstractOwnedCollection&) = delete;
  virtual ~AbstractOwnedCollection();

  ModelElement::Impl& owner() const noexcept { return *owner_; }
  unsigned index() const noexcept { return index_; }
  meta::Property getCollectionProperty() const;

  /// Give the model of the elements, in which new ones are to be made.
  Model getModel() const { return owner_->getModel(); }

  /// Say that the collection is about to change.
  virtual void modifying();

  /// Count the changes, so that who walks over the collection can see that it changed.
  std::uint32_t stamp() const noexcept { return stamp_; }

 protected:
  AbstractOwnedCollection(ModelElement::Impl& owner, unsigned index) noexcept
      : owner_(&owner), index_(index) {}

  void changed() noexcept { ++stamp_; }

 private:
  ModelElement::Impl* owner_;
  unsigned index_;
  std::uint32_t stamp_ = 0;
};

/// The guard around each change of a collection: tests that the owner may be changed, begins a transaction or
/// joins one, and marks the collection. What follows it must do all that can throw before it changes
/// anything.
class AbstractOwnedCollection::Operation {
 public:
  explicit Operation(AbstractOwnedCollection& collection)
      : scope_((collection.owner().checkWritable(collection.index()), *collection.owner().modelImpl())) {
    collection.modifying();
  }

  /// Begin one that changes a property of an element as well, which is marked first.
  Operation(AbstractOwnedCollection& collection, ModelElement::Impl& element, unsigned index)
      : scope_((collection.owner().checkWritable(collection.index()), *collection.owner().modelImpl())) {
    element.notifyModifying(index);
    collection.modifying();
  }

  void commit() { scope_.commit(); }

 private:
  MutationScope scope_;
};

namespace detail {

/// Tell whether an element is of the class E or of a subclass.
template <class E>
bool isOfClass([[maybe_unused]] const ModelElement::Impl& element) noexcept {
  if constexpr (std::is_same_v<typename E::Impl, ModelElement::Impl>)
    return true;
  else
    return dynamic_cast<const typename E::Impl*>(&element) != nullptr;
}

/// Give a handle of class E to an element that is known to be of it, or to none.
template <class E>
E typed(ModelElement::Impl* element) {
  return E(static_cast<typename E::Impl*>(element));
}

/// Raise `InvalidValue` that names the property if a list names an element twice.
void checkEachOnce(const AbstractOwnedCollection& property, const std::vector<ModelElement>& elements);

}  // namespace detail
}  // namespace lx::base
