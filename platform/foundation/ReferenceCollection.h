#pragma once

#include <memory>
#include <unordered_set>
#include <vector>

#include "platform/foundation/CollectionIterator.h"
#include "platform/foundation/Journal.h"
#include "platform/foundation/ReferringField.h"
#include "platform/foundation/SaturatedBloomFilter.h"

namespace lx::base {

/// A collection that refers to elements and doesn't contain them.
class ND_PLATFORM_EXPORT ReferenceCollection : public detail::ReferringField {
 public:
  /// Tell whether the collection contains its elements.
  static constexpr bool isComposite() noexcept { return false; }

  /// Raise `CannotCreateCrossModelAssociation` unless the element is of the model of the owner.
  void checkCompatibleModel(const ModelElement::Impl& element) const;

  /// Put the element that a proxy of the collection stands for into its place, and give it. A null handle,
  /// with nothing changed, if the model doesn't have it, or the collection not the proxy.
  ModelElement resolveProxy(const ModelElement& proxy);

  /// Give what `resolveProxy` would, and change nothing.
  ModelElement peekResolveProxy(const ModelElement& proxy) const;

 protected:
  using ReferringField::ReferringField;

  virtual bool holds(const ModelElement::Impl& element) const noexcept = 0;
  virtual void replace(ModelElement::Impl& proxy, ModelElement::Impl& element) = 0;
};

namespace detail {

class ReferenceIndex;

/// One reference of a collection.
struct ReferenceEntry : Link {
  ReferenceEntry* nextOfHash = nullptr;  // used by what finds entries
  std::size_t position = 0;              // kept where the order is free
  bool isProxy = false;
};

/// How a collection of references works.
enum class ReferenceOrder { Kept, Free };
enum class Proxies { Refused, Held };

/// A collection of references, whatever the class of the elements. Its entries stand in a vector. Where the
/// order is free, the last entry takes the place of one that goes, and entries are found by their hash.
class ND_PLATFORM_EXPORT ReferenceCollectionCore : public ReferenceCollection {
 public:
  using Entry = ReferenceEntry;
  struct Change {
    enum class Kind { Inserted, Removed, BecameProxy };
    Change* below;
    Kind kind;
    std::size_t position;
    Entry* entry;
    std::unique_ptr<Entry> kept;  // a removed entry, until the removal is final
  };
  using Old = JournalMark<ReferenceCollectionCore>;
  using Position = std::size_t;

  ReferenceCollectionCore(ModelElement::Impl& owner, unsigned index, ReferenceOrder order, Proxies proxies);
  ~ReferenceCollectionCore() override;

  bool empty() const noexcept { return size() == 0; }
  std::size_t size() const noexcept { return owner().isAlive() ? entries_.size() : 0; }

  /// Give the elements, proxies too; those that are proxies.
  std::vector<ModelElement> elements() const;
  std::vector<ModelElement> proxyElements() const;

  /// Put an element before the one at the position; false if it is there already.
  bool insertElement(std::size_t position, ModelElement::Impl* element);
  bool addElement(ModelElement::Impl* element) { return insertElement(entries_.size(), element); }

  /// Take an element out; false if it isn't there.
  bool removeElement(const ModelElement& element);

  /// Take all elements out, in one transaction.
  void clear();

  bool holds(const ModelElement::Impl& element) const noexcept override { return find(element) != nullptr; }
  ModelElement::Impl* targetAt(std::size_t position) const noexcept {
    return entries_[position]->target.impl();
  }

  /// Raise `InvalidValue` that there is no element at a position.
  [[noreturn]] void raiseNoElement() const;

  /// Tell whether the collection holds a proxy of that identity.
  bool containsProxyTo(const boost::uuids::uuid& uuid) const noexcept;

  /// Raise what adding raises unless all elements of a list can be added, and `InvalidValue` for a list that
  /// names an element twice.
  void checkReplacement(const std::vector<ModelElement>& elements) const;

  /// Tell whether the collection is as if these elements had been added to an empty one.
  bool isMadeOf(const std::vector<ModelElement>& elements) const;

  void targetDies(Link& link) override;
  void targetBecomesProxy(Link& link) override;
  void targetIsResolved(Link& link, ModelElement::Impl& element) override;
  void loseAll() override { clear(); }

  Journal<Change>& journal() noexcept { return journal_; }

  // What a table of fields asks of each field.
  void saveTo(Old& old) noexcept { old.set(*this); }
  void restoreFrom(Old& old) noexcept;
  bool isUnchangedSince(const Old& old) const;
  Value oldValue(const Old& old) const;
  Value toValue() const { return Value(elements()); }
  static Value zeroValue() { return Value(std::vector<ModelElement>()); }
  bool hasValue() const noexcept { return !empty(); }
  void visitContained(ModelElement::Impl::ContainedVisitor& visitor) { visitor.visitReferring(*this); }
  void letGo() noexcept;

 protected:
  void replace(ModelElement::Impl& proxy, ModelElement::Impl& element) override;

 private:
  void checkAddable(const ModelElement::Impl* element) const;
  Entry* find(const ModelElement::Impl& element) const noexcept;
  std::size_t positionOf(const Entry& entry) const noexcept;
  void removeEntry(Entry& entry);
  void makeRoom();
  void makeRoomForProxy(const ModelElement::Impl& element);
  std::unique_ptr<Change> makeChange(Change::Kind kind, std::size_t position, Entry& entry) const;
  void put(std::size_t position, Entry& entry) noexcept;
  Entry& take(std::size_t position) noexcept;
  void count(const Entry& entry, bool isThere) noexcept;
  std::vector<ModelElement> elementsAt(const Change* mark) const;

  std::vector<Entry*> entries_;
  Journal<Change> journal_;
  std::unique_ptr<ReferenceIndex> byHash_;        // where the order is free and there is an entry
  std::unique_ptr<SaturatedBloomFilter> filter_;  // of the proxies' identities, since there was a proxy
  std::size_t proxies_ = 0;
  const ReferenceOrder order_;
  const Proxies proxiesAre_;
};

/// What the type of a container says of a collection of references.
template <class C>
struct ReferenceKind;
template <class... A>
struct ReferenceKind<std::vector<A...>> {
  static constexpr ReferenceOrder Order = ReferenceOrder::Kept;
};
template <class... A>
struct ReferenceKind<std::unordered_set<A...>> {
  static constexpr ReferenceOrder Order = ReferenceOrder::Free;
};

/// What collections of references to elements of class E have in common.
template <class E, class C, Proxies P>
class TypedReferences : public ReferenceCollectionCore {
 public:
  using value_type = E;
  using Element = E;
  using iterator = CollectionIterator<TypedReferences>;
  static constexpr ReferenceOrder Order = ReferenceKind<C>::Order;

  TypedReferences(ModelElement::Impl& owner, unsigned index)
      : ReferenceCollectionCore(owner, index, Order, P) {}

  /// Add an element, behind the last one where the order is kept; false if it is there already.
  bool add(const E& element) { return addElement(static_cast<const ModelElement&>(element).impl()); }

  /// Take an element out, which lives on; false if it isn't there.
  bool remove(const E& element) { return removeElement(element); }

  bool contains(const E& element) const noexcept {
    const ModelElement& any = element;
    return any.isAlive() && owner().isAlive() && holds(*any.impl());
  }

  /// Give an element by its position, from 0; raises `InvalidValue` behind the end.
  E at(std::size_t position) const requires(Order == ReferenceOrder::Kept) {
    if (position >= size()) raiseNoElement();
    return atPosition(position);
  }

  /// Put an element before the one at the position; false if it is there already. Raises `InvalidValue` if
  /// the position lies behind the end.
  bool insert(std::size_t position, const E& element) requires(Order == ReferenceOrder::Kept) {
    return insertElement(position, static_cast<const ModelElement&>(element).impl());
  }

  /// What `ReferenceCollection` says, as an element of class E. One of another class is none.
  E resolveProxy(const E& proxy) { return typed<E>(ReferenceCollection::resolveProxy(proxy).impl()); }
  E peekResolveProxy(const E& proxy) const {
    return typed<E>(ReferenceCollection::peekResolveProxy(proxy).impl());
  }

  iterator begin() const { return iterator(*this, 0); }
  iterator end() const { return iterator(*this, endPosition()); }
  std::size_t endPosition() const noexcept { return size(); }

  E atPosition(std::size_t position) const { return typed<E>(targetAt(position)); }
  std::size_t nextPosition(std::size_t position) const noexcept { return position + 1; }

  bool accepts(const ModelElement::Impl& element) const noexcept override { return isOfClass<E>(element); }
};

}  // namespace detail

/// A collection that refers to elements of the owner's model, each once, and doesn't contain them.
///
/// C says what it is like: `std::vector<E>` keeps an order by position; `std::unordered_set<E>` promises no
/// order and adds, removes and finds in constant time. It is named only; nothing is kept in one.
///
/// Every change is a transaction of its own or joins the open one; undoing one brings the order back too.
/// Adding raises `CannotAddNonExistentObject` for an element that isn't there or is a proxy, and
/// `CannotCreateCrossModelAssociation` for one of another model; nothing has then changed. An element that is
/// destroyed, or becomes a proxy, leaves the collection in the same transaction. Walking over it while it
/// changes raises `InvalidValue`.
template <class E, class C>
class TypedReferenceCollection final : public detail::TypedReferences<E, C, detail::Proxies::Refused> {
 public:
  using detail::TypedReferences<E, C, detail::Proxies::Refused>::TypedReferences;
};

/// The same for a collection that holds proxies too, until they are resolved. They stand between the other
/// elements and are walked over, counted and found like these.
template <class E, class C>
class TypedReferenceCollectionWithProxies final
    : public detail::TypedReferences<E, C, detail::Proxies::Held> {
 public:
  using detail::TypedReferences<E, C, detail::Proxies::Held>::TypedReferences;

  /// List those elements that are proxies.
  std::vector<E> proxies() const {
    std::vector<E> result;
    for (const ModelElement& each : this->proxyElements()) result.push_back(detail::typed<E>(each.impl()));
    return result;
  }
};

}  // namespace lx::base
