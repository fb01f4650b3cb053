#pragma once

#include <algorithm>
#include <memory>
#include <vector>

#include <boost/intrusive/set.hpp>

#include "platform/foundation/ContainmentSlot.h"
#include "platform/foundation/FormerOrder.h"
#include "platform/foundation/KeyLess.h"
#include "platform/foundation/ReferringField.h"
#include "platform/foundation/Report.h"
#include "platform/foundation/meta/PropertySerializer.h"

namespace lx::base::detail {

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

  /// Tell whether the collection is as if these elements had been put into an empty one. A list that names no
  /// proxy says nothing of proxies.
  bool isMadeOf(const std::vector<ModelElement>& elements) const {
    std::vector<const ModelElement::Impl*> loaded;
    std::vector<const ModelElement::Impl*> proxies;
    for (const ModelElement& element : elements) {
      if (!holds(element)) return false;
      (element.isProxy() ? proxies : loaded).push_back(element.impl());
    }
    std::stable_sort(loaded.begin(), loaded.end(), [&](const auto* left, const auto* right) {
      return KeyLess<K>()(keyOf_(*left), keyOf_(*right));
    });
    return std::equal(loaded.begin(), loaded.end(), nodes_.begin(), nodes_.end(),
                      [](const auto* element, const Node& node) { return element == node.element; }) &&
           (proxies.empty() || std::equal(proxies.begin(), proxies.end(), proxies_.begin(), proxies_.end()));
  }

  /// Give a child its new key by `assign`, and the place that belongs to it, behind its equals. The caller
  /// has found that the key is free; `assign` must not throw.
  template <class Assign>
  void rekey(ModelElement::Impl& child, Assign assign) {
    Node& node = *findNode(child);
    Operation operation(*this, child, keyIndex_);
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
  const Node* nextPosition(const Node* node) const noexcept { return Present{nodes_}.behind(node); }
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
           areProxiesUnchangedSince(old.top()) && isOrderUnchangedSince(old.top());
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
    journal_.clear();
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

  /// The neighbours of a node; null stands for either end.
  struct Present {
    const Nodes& nodes;
    const Node* behind(const Node* node) const noexcept {
      const auto next = node == nullptr ? nodes.begin() : ++nodes.iterator_to(*node);
      return next == nodes.end() ? nullptr : &*next;
    }
    const Node* before(const Node* node) const noexcept {
      auto place = node == nullptr ? nodes.end() : nodes.iterator_to(*node);
      return place == nodes.begin() ? nullptr : &*--place;
    }
  };

  const Node* toNode(typename Nodes::const_iterator position) const noexcept {
    return position == nodes_.end() ? nullptr : &*position;
  }

  Node* nodeBehind(Node& node) noexcept {
    const auto next = ++nodes_.iterator_to(node);
    return next == nodes_.end() ? nullptr : &*next;
  }

  Node* findNode(const ModelElement::Impl& child) {
    auto [first, last] = nodes_.equal_range(keyOf_(child), nodes_.key_comp());
    for (; first != last; ++first) {  // from both ends, since clearing goes from the back
      if (first->element == &child) return &*first;
      if ((--last)->element == &child) return &*last;
      if (first == last) break;
    }
    return nullptr;
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
    const auto found = std::find(proxies_.rbegin(), proxies_.rend(), &proxy);  // clearing goes from the back
    if (found == proxies_.rend()) return;
    Operation operation(*this);
    const auto position = static_cast<std::size_t>(proxies_.rend() - found) - 1;
    std::unique_ptr<Change> change = makeChange(Change::Kind::ProxyTaken, proxy, position);
    proxy.notifyModifying(ModelElement::Impl::ContainerIndex);
    proxy.basicSetContainer(nullptr);
    proxies_.erase(proxies_.begin() + static_cast<std::ptrdiff_t>(position));
    if (change) journal_.push(std::move(change));
    changed();
    operation.commit();
  }

  /// Give the order in which the elements stood before the changes above the mark.
  FormerOrder<Node, Present> orderAt(const Change* mark) const {
    FormerOrder<Node, Present> order(Present{nodes_});
    for (const Change* change = journal_.top(); change != nullptr && change != mark; change = change->below) {
      if (change->node == nullptr) continue;
      if (change->kind != Change::Kind::Erased) order.erase(change->node);
      if (change->kind != Change::Kind::Inserted) order.insert(change->node, change->next);
    }
    return order;
  }

  std::vector<ModelElement> elementsAt(const Change* mark) const {
    const FormerOrder<Node, Present> order = orderAt(mark);
    std::vector<ModelElement> result;
    result.reserve(nodes_.size());
    for (const Node* node = order.behind(nullptr); node != nullptr; node = order.behind(node)) {
      result.emplace_back(node->element);
    }
    return result;
  }

  bool areProxiesUnchangedSince(const Change* mark) const {
    const Change* change = journal_.top();
    while (change != mark && change->node != nullptr) change = change->below;
    return change == mark || proxiesAt(mark) == proxies_;
  }

  /// Tell whether elements that are the same as before stand as before. An element that was taken out and put
  /// in again has another node.
  bool isOrderUnchangedSince(const Change* mark) const {
    for (const Change* change = journal_.top(); change != mark; change = change->below) {
      if (change->kind == Change::Kind::Inserted) return elementsAt(mark) == elementsAt(journal_.top());
    }
    return orderAt(mark).isPresent();
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

}  // namespace lx::base::detail
