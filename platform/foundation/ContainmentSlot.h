#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <type_traits>
#include <utility>
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
  void modifying() { owner_->notifyModifying(index_); }

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

/// The steps of a collection that a rollback takes back: a stack, the latest on top. `Change` has a member
/// `below`; changes are freed as they are taken back or become final.
template <class Change>
class Journal {
 public:
  Journal() noexcept = default;
  Journal(const Journal&) = delete;
  Journal& operator=(const Journal&) = delete;
  ~Journal() { trimTo(nullptr); }

  Change* top() const noexcept { return top_; }
  void push(std::unique_ptr<Change> change) noexcept {
    change->below = top_;
    top_ = change.release();
  }
  std::unique_ptr<Change> pop() noexcept {
    std::unique_ptr<Change> change(top_);
    top_ = change->below;
    return change;
  }
  void trimTo(const Change* mark) noexcept {
    while (top_ != nullptr && top_ != mark) pop();
  }

 private:
  Change* top_ = nullptr;
};

/// What a storage keeps of a collection: the place in its journal up to which changes are to be taken back.
/// When it goes unused, what lies above it is final.
template <class Core>
class JournalMark {
 public:
  JournalMark() noexcept = default;
  JournalMark(const JournalMark&) = delete;
  JournalMark& operator=(const JournalMark&) = delete;
  JournalMark& operator=(JournalMark&& other) noexcept {
    core_ = std::exchange(other.core_, nullptr);
    top_ = other.top_;
    return *this;
  }
  ~JournalMark() {
    if (core_ != nullptr && !core_->owner().isLogged(core_->index())) core_->journal().trimTo(top_);
  }

  void set(Core& core) noexcept {
    core_ = &core;
    top_ = core.journal().top();
  }
  void clear() noexcept { core_ = nullptr; }
  const typename Core::Change* top() const noexcept { return top_; }

 private:
  Core* core_ = nullptr;
  const typename Core::Change* top_ = nullptr;
};

/// Tell whether a journal's changes down to a mark cancel each other out in number, element by element.
/// `delta` gives the element that a change concerns and +1, -1 or 0.
template <class Change, class Delta>
bool membershipIsUnchanged(const Change* top, const Change* mark, Delta delta) {
  std::vector<std::pair<const ModelElement::Impl*, int>> sums;
  for (; top != nullptr && top != mark; top = top->below) sums.push_back(delta(*top));
  std::sort(sums.begin(), sums.end());
  for (std::size_t at = 0; at < sums.size();) {
    int sum = 0;
    const ModelElement::Impl* const element = sums[at].first;
    for (; at < sums.size() && sums[at].first == element; ++at) sum += sums[at].second;
    if (sum != 0) return false;
  }
  return true;
}

}  // namespace detail
}  // namespace lx::base
