#pragma once

#include <vector>

#include "platform/foundation/CollectionIterator.h"
#include "platform/foundation/CreateInto.h"
#include "platform/foundation/KeyedCollectionCore.h"

namespace lx::base {

/// A collection that contains its elements under the value of one of their properties, in the order of the
/// keys: texts by code unit.
///
/// An element that leaves the collection is destroyed, unless another container takes it. An element whose
/// key changes moves, in the same transaction. What is raised when is said at `ElementSequence`; `Unique`
/// collections raise `UniquenessConstraint` besides, for a key that stands for another element, before
/// anything has changed.
///
/// Proxies are contained without a key: walking, counting, finding and the list of keys pass over them until
/// they are resolved. An element that becomes a proxy is set apart likewise. Observers are told of the
/// collection when its proxies change, too.
template <class K, class E, bool Unique>
class KeyedCollection : public detail::KeyedCollectionCore<K> {
 public:
  using Core = detail::KeyedCollectionCore<K>;
  using Element = E;
  using value_type = E;
  using iterator = CollectionIterator<KeyedCollection>;

  /// A collection that is property `index` of the owner, keyed by the elements' property `keyIndex`.
  KeyedCollection(ModelElement::Impl& owner, unsigned index, unsigned keyIndex, typename Core::KeyOf keyOf)
      : Core(owner, index, keyIndex, keyOf, Unique) {}

  /// Put an element where its key belongs, behind its equals.
  void add(const E& element) { this->insertElement(static_cast<const ModelElement&>(element).impl()); }

  /// Make an element from a builder and put it where its key belongs, in one transaction. Gives the
  /// element.
  template <class Builder>
  E createInto(Builder builder, const boost::uuids::uuid& uuid = {}) {
    return detail::createInto<E>(*this, std::move(builder), uuid);
  }

  /// Find the first element under a key; a null handle if there is none.
  E find(const K& key) const {
    const typename Core::Node* const node = this->lowerBound(key);
    return node == nullptr || detail::KeyLess<K>()(key, this->keyAt(node)) ? E() : atPosition(node);
  }

  bool contains(const K& key) const { return static_cast<bool>(find(key)); }
  bool contains(const E& element) const noexcept { return this->holds(element); }

  /// List the proxies, in the order of their coming.
  std::vector<E> proxies() const {
    std::vector<E> result;
    for (const ModelElement& each : this->proxyElements()) {
      result.push_back(detail::typed<E>(each.impl()));
    }
    return result;
  }

  /// What `ContainmentSlot` says of resolving, as elements of class E. The element goes under its own key.
  E resolveProxy(const E& proxy) { return detail::typed<E>(Slot::resolveProxy(proxy).impl()); }
  E peekResolveProxy(const E& proxy) const { return detail::typed<E>(Slot::peekResolveProxy(proxy).impl()); }

  bool accepts(const ModelElement::Impl& element) const noexcept override {
    return detail::isOfClass<E>(element);
  }

  /// List all elements under a key, in the order of their adding.
  std::vector<E> findAll(const K& key) const {
    std::vector<E> result;
    const typename Core::Node* const end = this->upperBound(key);
    for (const auto* node = this->lowerBound(key); node != end; node = this->nextPosition(node)) {
      result.push_back(atPosition(node));
    }
    return result;
  }

  /// Give the element with the lowest key; a null handle if there is none.
  E first() const { return atPosition(this->firstNode()); }

  /// Find the first element whose key is greater; a null handle if there is none.
  E findGreater(const K& key) const { return atPosition(this->upperBound(key)); }

  /// List the keys in their order.
  std::vector<K> keys() const {
    std::vector<K> result;
    for (const auto* node = this->firstNode(); node != nullptr; node = this->nextPosition(node)) {
      result.push_back(this->keyAt(node));
    }
    return result;
  }

  /// Destroy an element of the collection; false if it holds no such element.
  bool remove(const E& element) {
    this->owner().checkWritable(this->index());
    if (!contains(element)) return false;
    static_cast<const ModelElement&>(element).destroy();
    return true;
  }

  iterator begin() const { return iterator(*this, this->firstNode()); }
  iterator end() const { return iterator(*this, endPosition()); }
  const typename Core::Node* endPosition() const noexcept { return nullptr; }

  E atPosition(const typename Core::Node* node) const {
    return node == nullptr ? E() : detail::typed<E>(node->element);
  }

 private:
  using Slot = detail::ContainmentSlot;
};

/// Keyed, one element a key.
template <class K, class E>
class ElementMap : public KeyedCollection<K, E, true> {
 public:
  using KeyedCollection<K, E, true>::KeyedCollection;
};

/// Keyed; elements of one key stand in the order of their adding.
template <class K, class E>
class ElementMultimap : public KeyedCollection<K, E, false> {
 public:
  using KeyedCollection<K, E, false>::KeyedCollection;
};

}  // namespace lx::base
