#pragma once

#include <vector>

#include <boost/intrusive/set.hpp>

#include "platform/foundation/CollectionIterator.h"
#include "platform/foundation/ContainmentSlot.h"
#include "platform/foundation/CreateInto.h"
#include "platform/foundation/KeyLess.h"
#include "platform/foundation/ReferringField.h"
#include "platform/foundation/meta/PropertySerializer.h"

namespace lx::base {

namespace detail {

/// A collection that contains its elements in the order of a key, which is read in the element itself.
///
/// The tree is linked through nodes that point to the elements. Undoing relinks a node before its former
/// neighbour and compares nothing, so that it does not depend on the keys having been restored. Proxies have
/// no key and are held apart, in a list.
template <class K>
class KeyedCollectionCore : public ContainmentSlot {
 public:
  using KeyOf = const K& (*)(const ModelElement::Impl& element) noexcept;

  struct Node : boost::intrusive::set_base_hook<boost::intrusive::link_mode<boost::intrusive::normal_link>> {
    explicit Node(ModelElement::Impl& held) : element(&held) {}
    ModelElement::Impl* element;
  };

  struct Change {
    enum class Kind { Inserted, Erased, Moved, ProxyAdded, ProxyTaken };
    Change* below;
    Kind kind;
    Node* node;                  // null for a change of the proxies
    Node* next;                  // what the node stood before; null for the end
    std::unique_ptr<Node> kept;  // an erased node, until the erasure is final
    ModelElement element;        // kept, since old values may be asked for when it has ended
    std::size_t position;        // of a proxy
  };
  using Old = JournalMark<KeyedCollectionCore>;
  using Position = const Node*;

  KeyedCollectionCore(ModelElement::Impl& owner, unsigned index, unsigned keyIndex, KeyOf keyOf,
                      bool isUnique)
      : ContainmentSlot(owner, index),
        nodes_(Order{keyOf}),
        keyOf_(keyOf),
        keyIndex_(keyIndex),
        isUnique_(isUnique) {}
  ~KeyedCollectionCore() override { letGo(); }

  unsigned keyIndex() const noexcept override { return keyIndex_; }
  bool empty() const noexcept { return size() == 0; }
  std::size_t size() const noexcept { return owner().isAlive() ? nodes_.size() : 0; }

  void insertElement(ModelElement::Impl* child) {
    checkInsertable(child);
    if (child->containmentSlot() == this) return;
    if (child->isProxy()) return insertProxy(*child);
    moveIn(*child, [&] {
      Operation operation(*this);
      auto node = std::make_unique<Node>(*child);
      std::unique_ptr<Change> change = makeChange(Change::Kind::Inserted, *node, nullptr);
      owner()._setContainedByThis(*child, *this);
      nodes_.insert_before(nodes_.upper_bound(keyOf_(*child), nodes_.key_comp()), *node.release());
      if (change) journal_.push(std::move(change));
      changed();
      operation.commit();
    });
  }

  void takeOut(ModelElement::Impl& child) override {
    Node* const node = findNode(child);
    if (node == nullptr) return takeOutProxy(child);
    Operation operation(*this);
    std::unique_ptr<Change> change = makeChange(Change::Kind::Erased, *node, nodeBehind(*node));
    child.notifyModifying(ModelElement::Impl::ContainerIndex);
    child.basicSetContainer(nullptr);
    nodes_.erase(nodes_.iterator_to(*node));
    std::unique_ptr<Node> kept(node);
    if (change) {
      change->kept = std::move(kept);
      journal_.push(std::move(change));
    }
    changed();
    operation.commit();
  }

  void setApart(ModelElement::Impl& child) override {
    Node* const node = findNode(child);
    if (node == nullptr) return;
    Operation operation(*this);
    makeRoomForProxy();
    std::unique_ptr<Change> erased = makeChange(Change::Kind::Erased, *node, nodeBehind(*node));
    std::unique_ptr<Change> added = makeChange(Change::Kind::ProxyAdded, child, proxies_.size());
    nodes_.erase(nodes_.iterator_to(*node));
    proxies_.push_back(&child);
    std::unique_ptr<Node> kept(node);
    if (erased) {
      erased->kept = std::move(kept);
      journal_.push(std::move(erased));
      journal_.push(std::move(added));
    }
    changed();
    operation.commit();
  }

  /// Tell whether the collection holds a proxy of that identity.
  bool containsProxyTo(const boost::uuids::uuid& uuid) const noexcept {
    return owner().isAlive() &&
           std::any_of(proxies_.begin(), proxies_.end(),
                       [&](const ModelElement::Impl* proxy) { return isProxyTo(*proxy, uuid); });
  }

  /// Raise `UniquenessConstraint` if the key stands for an element already and must stand for one only.
  void checkFree(const K& key) const {
    if (!isUnique_ || nodes_.find(key, nodes_.key_comp()) == nodes_.end()) return;
    using meta::detail::toText;
    report::uniquenessConstraint(owner(), index(), toText(key));
  }

  /// Raise what `ContainmentSlot::checkReplacement` says, and `UniquenessConstraint` for a key that stands
  /// for two of the elements and must stand for one only.
  void checkReplacement(const std::vector<ModelElement>& elements) const {
    ContainmentSlot::checkReplacement(elements);
    if (!isUnique_) return;
    std::vector<const K*> keys;
    for (const ModelElement& element : elements) {
      if (!element.isProxy()) keys.push_back(&keyOf_(*element.impl()));
    }
    std::sort(keys.begin(), keys.end(),
              [](const K* left, const K* right) { return KeyLess<K>()(*left, *right); });
    const auto twice = std::adjacent_find(
        keys.begin(), keys.end(), [](const K* left, const K* right) { return !KeyLess<K>()(*left, *right); });
    using meta::detail::toText;
    if (twice != keys.end()) report::uniquenessConstraint(owner(), index(), toText(**twice));
  }

  /// Give a child its new key by `assign`, and the place that belongs to it, behind its equals. The caller
  /// has found that the key is free and noted the change of the child's property; `assign` must not throw.
  template <class Assign>
  void rekey(ModelElement::Impl& child, Assign assign) {
    Node& node = *findNode(child);
    Operation operation(*this);
    std::unique_ptr<Change> change = makeChange(Change::Kind::Moved, node, nodeBehind(node));
    nodes_.erase(nodes_.iterator_to(node));
    assign();
    nodes_.insert_before(nodes_.upper_bound(keyOf_(child), nodes_.key_comp()), node);
    if (change) journal_.push(std::move(change));
    changed();
    operation.commit();
  }

  /// Destroy all elements, in one transaction.
  void clear() {
    owner().checkWritable(index());
    if (nodes_.empty() && proxies_.empty()) return;
    Transaction transaction = owner().modelImpl()->beginTransaction(false);
    // What an element does when it is about to be destroyed may change the collection; each is destroyed
    // once.
    std::vector<ModelElement> all = elementsAt(journal_.top());
    for (ModelElement::Impl* proxy : proxies_) all.emplace_back(proxy);
    for (auto each = all.rbegin(); each != all.rend(); ++each) {
      if (each->impl()->containmentSlot() == this) each->destroy();
    }
    transaction.commit();
  }

  const Node* firstNode() const noexcept { return owner().isAlive() ? toNode(nodes_.begin()) : nullptr; }
  const Node* lowerBound(const K& key) const {
    return owner().isAlive() ? toNode(nodes_.lower_bound(key, nodes_.key_comp())) : nullptr;
  }
  const Node* upperBound(const K& key) const {
    return owner().isAlive() ? toNode(nodes_.upper_bound(key, nodes_.key_comp())) : nullptr;
  }
  const Node* nextPosition(const Node* node) const noexcept { return toNode(++nodes_.iterator_to(*node)); }
  const K& keyAt(const Node* node) const noexcept { return keyOf_(*node->element); }

  std::vector<ModelElement> proxyElements() const {
    return owner().isAlive() ? std::vector<ModelElement>(proxies_.begin(), proxies_.end())
                             : std::vector<ModelElement>();
  }

  Journal<Change>& journal() noexcept { return journal_; }

  // What a table of fields asks of each field.
  void saveTo(Old& old) noexcept { old.set(*this); }

  void restoreFrom(Old& old) noexcept {
    while (journal_.top() != old.top()) {
      const std::unique_ptr<Change> change = journal_.pop();
      if (change->node == nullptr) {
        const auto place = proxies_.begin() + static_cast<std::ptrdiff_t>(change->position);
        if (change->kind == Change::Kind::ProxyAdded)
          proxies_.erase(place);
        else
          proxies_.insert(place, change->element.impl());  // within the capacity that it had
        continue;
      }
      Node& node = *change->node;
      if (change->kind != Change::Kind::Erased) nodes_.erase(nodes_.iterator_to(node));
      if (change->kind == Change::Kind::Inserted) {
        delete &node;
        continue;
      }
      nodes_.insert_before(change->next == nullptr ? nodes_.end() : nodes_.iterator_to(*change->next), node);
      static_cast<void>(change->kept.release());
    }
    old.clear();
    changed();
  }

  bool isUnchangedSince(const Old& old) const {
    const auto delta = [](const Change& change) {
      using Kind = typename Change::Kind;
      const bool isIn = change.kind == Kind::Inserted || change.kind == Kind::ProxyAdded;
      const bool isOut = change.kind == Kind::Erased || change.kind == Kind::ProxyTaken;
      return std::pair<const ModelElement::Impl*, int>(change.element.impl(), isIn ? 1 : isOut ? -1 : 0);
    };
    return membershipIsUnchanged(static_cast<const Change*>(journal_.top()), old.top(), delta) &&
           elementsAt(old.top()) == elementsAt(journal_.top()) && proxiesAt(old.top()) == proxies_;
  }

  Value oldValue(const Old& old) const { return Value(elementsAt(old.top())); }
  Value toValue() const { return Value(elementsAt(journal_.top())); }
  static Value zeroValue() { return Value(std::vector<ModelElement>()); }
  bool hasValue() const noexcept { return !empty(); }

  void visitContained(ModelElement::Impl::ContainedVisitor& visitor) const {
    for (const Node& node : nodes_) visitor.visit(*node.element);
    for (ModelElement::Impl* proxy : proxies_) visitor.visit(*proxy);
  }

  void letGo() noexcept {
    nodes_.clear_and_dispose([](Node* node) { delete node; });
    proxies_.clear();
    journal_.trimTo(nullptr);
    changed();
  }

 protected:
  /// Raise what adding the child raises, which goes under its key unless it is a proxy.
  void checkInsertable(const ModelElement::Impl* child) const override {
    checkAddable(child);
    if (child->containmentSlot() != this && !child->isProxy()) checkFree(keyOf_(*child));
  }

  void putInPlaceOf(ModelElement::Impl&, ModelElement::Impl& element) override { insertElement(&element); }

 private:
  struct Order {
    KeyOf keyOf;
    bool operator()(const Node& left, const Node& right) const noexcept {
      return KeyLess<K>()(keyOf(*left.element), keyOf(*right.element));
    }
    bool operator()(const K& left, const Node& right) const noexcept {
      return KeyLess<K>()(left, keyOf(*right.element));
    }
    bool operator()(const Node& left, const K& right) const noexcept {
      return KeyLess<K>()(keyOf(*left.element), right);
    }
  };
  using Nodes = boost::intrusive::multiset<Node, boost::intrusive::compare<Order>>;

  const Node* toNode(typename Nodes::const_iterator position) const noexcept {
    return position == nodes_.end() ? nullptr : &*position;
  }

  Node* nodeBehind(Node& node) noexcept {
    const auto next = ++nodes_.iterator_to(node);
    return next == nodes_.end() ? nullptr : &*next;
  }

  Node* findNode(const ModelElement::Impl& child) {
    const auto [first, last] = nodes_.equal_range(keyOf_(child), nodes_.key_comp());
    const auto found = std::find_if(first, last, [&](const Node& node) { return node.element == &child; });
    return found == last ? nullptr : &*found;
  }

  std::unique_ptr<Change> makeChange(typename Change::Kind kind, Node& node, Node* next) const {
    if (!owner().isLogged(index())) return nullptr;
    return std::unique_ptr<Change>(
        new Change{nullptr, kind, &node, next, nullptr, ModelElement(node.element), 0});
  }
  std::unique_ptr<Change> makeChange(typename Change::Kind kind, ModelElement::Impl& proxy,
                                     std::size_t position) const {
    if (!owner().isLogged(index())) return nullptr;
    return std::unique_ptr<Change>(
        new Change{nullptr, kind, nullptr, nullptr, nullptr, ModelElement(&proxy), position});
  }

  void makeRoomForProxy() {
    if (proxies_.size() == proxies_.capacity())
      proxies_.reserve(std::max<std::size_t>(4, 2 * proxies_.size()));
  }

  void insertProxy(ModelElement::Impl& proxy) {
    moveIn(proxy, [&] {
      Operation operation(*this);
      makeRoomForProxy();
      std::unique_ptr<Change> change = makeChange(Change::Kind::ProxyAdded, proxy, proxies_.size());
      owner()._setContainedByThis(proxy, *this);
      proxies_.push_back(&proxy);
      if (change) journal_.push(std::move(change));
      changed();
      operation.commit();
    });
  }

  void takeOutProxy(ModelElement::Impl& proxy) {
    const auto found = std::find(proxies_.begin(), proxies_.end(), &proxy);
    if (found == proxies_.end()) return;
    Operation operation(*this);
    const auto position = static_cast<std::size_t>(found - proxies_.begin());
    std::unique_ptr<Change> change = makeChange(Change::Kind::ProxyTaken, proxy, position);
    proxy.notifyModifying(ModelElement::Impl::ContainerIndex);
    proxy.basicSetContainer(nullptr);
    proxies_.erase(found);
    if (change) journal_.push(std::move(change));
    changed();
    operation.commit();
  }

  std::vector<ModelElement> elementsAt(const Change* mark) const {
    std::vector<const Node*> order;
    order.reserve(nodes_.size());
    for (const Node& node : nodes_) order.push_back(&node);
    for (const Change* change = journal_.top(); change != nullptr && change != mark; change = change->below) {
      if (change->node == nullptr) continue;
      if (change->kind != Change::Kind::Erased) std::erase(order, change->node);
      if (change->kind == Change::Kind::Inserted) continue;
      const auto place =
          change->next == nullptr ? order.end() : std::find(order.begin(), order.end(), change->next);
      order.insert(place, change->node);
    }
    std::vector<ModelElement> result;
    result.reserve(order.size());
    for (const Node* node : order) result.emplace_back(node->element);
    return result;
  }

  std::vector<ModelElement::Impl*> proxiesAt(const Change* mark) const {
    std::vector<ModelElement::Impl*> result = proxies_;
    for (const Change* change = journal_.top(); change != nullptr && change != mark; change = change->below) {
      const auto place = result.begin() + static_cast<std::ptrdiff_t>(change->position);
      if (change->kind == Change::Kind::ProxyAdded)
        result.erase(place);
      else if (change->kind == Change::Kind::ProxyTaken)
        result.insert(place, change->element.impl());
    }
    return result;
  }

  Nodes nodes_;
  std::vector<ModelElement::Impl*> proxies_;
  Journal<Change> journal_;
  KeyOf keyOf_;
  unsigned keyIndex_;
  bool isUnique_;
};

}  // namespace detail

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
      result.push_back(typed(each.impl()));
    }
    return result;
  }

  /// What `ContainmentSlot` says of resolving, as elements of class E. The element goes under its own key.
  E resolveProxy(const E& proxy) { return typed(Slot::resolveProxy(proxy).impl()); }
  E peekResolveProxy(const E& proxy) const { return typed(Slot::peekResolveProxy(proxy).impl()); }

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
  iterator end() const { return iterator(*this, nullptr); }

  E atPosition(const typename Core::Node* node) const { return node == nullptr ? E() : typed(node->element); }

 private:
  using Slot = detail::ContainmentSlot;

  static E typed(ModelElement::Impl* element) { return E(static_cast<typename E::Impl*>(element)); }
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
