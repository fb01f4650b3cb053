#pragma once

#include <cstddef>
#include <iterator>

#include "platform/foundation/OwnedCollection.h"
#include "platform/foundation/Report.h"

namespace lx::base {

/// Walks over a collection by position. Going on, or looking, raises `InvalidValue` after the collection has
/// changed or its owner has gone, at the end, and in an iterator of no collection; the iterator keeps the
/// owner's memory.
template <class Collection>
class CollectionIterator {
 public:
  using iterator_category = std::input_iterator_tag;
  using value_type = typename Collection::value_type;
  using difference_type = std::ptrdiff_t;
  using pointer = void;
  using reference = value_type;

  CollectionIterator() = default;
  CollectionIterator(const Collection& collection, typename Collection::Position position)
      : collection_(&collection),
        owner_(&collection.owner()),
        position_(position),
        stamp_(collection.stamp()) {}

  value_type operator*() const {
    check();
    return collection_->atPosition(position_);
  }
  CollectionIterator& operator++() {
    check();
    position_ = collection_->nextPosition(position_);
    return *this;
  }
  CollectionIterator operator++(int) {
    CollectionIterator former = *this;
    ++*this;
    return former;
  }
  friend bool operator==(const CollectionIterator& left, const CollectionIterator& right) {
    return left.position_ == right.position_;
  }

 private:
  void check() const {
    if (collection_ == nullptr) report::walkOfNothing();
    if (!owner_.isAlive() || collection_->stamp() != stamp_)
      report::changedWhileWalked(collection_->owner(), collection_->index());
    if (position_ == collection_->endPosition())
      report::walkedTooFar(collection_->owner(), collection_->index());
  }

  const Collection* collection_ = nullptr;
  ModelElement owner_;
  typename Collection::Position position_{};
  std::uint32_t stamp_ = 0;
};

}  // namespace lx::base
