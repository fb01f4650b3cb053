#pragma once

#include <vector>

#include "platform/foundation/CollectionIterator.h"
#include "platform/foundation/ContainmentSlot.h"

namespace lx::base {

namespace detail {

/// An ordered collection that contains its elements, whatever their class.
class ND_PLATFORM_EXPORT ElementSequenceCore : public ContainmentSlot {
 public:
  struct Change {
    Change* below;
    ModelElement element;  // kept, since old values may be asked for when it has ended
    std::size_t position;
    bool wasInserted;
  };
  using Old = JournalMark<ElementSequenceCore>;
  using Position = std::size_t;

  ElementSequenceCore(ModelElement::Impl& owner, unsigned index) noexcept : ContainmentSlot(owner, index) {}
  ~ElementSequenceCore() override;

  bool empty() const noexcept { return size() == 0; }
  std::size_t size() const noexcept { return owner().isAlive() ? elements_.size() : 0; }

  void insertElement(std::size_t position, ModelElement::Impl* child);
  void takeOut(ModelElement::Impl& child) override;

  /// Tell whether the collection holds a proxy of that identity.
  bool containsProxyTo(const boost::uuids::uuid& uuid) const noexcept;

  /// Destroy all elements, in one transaction.
  void clear();

  Journal<Change>& journal() noexcept { return journal_; }
  const std::vector<ModelElement::Impl*>& elements() const noexcept { return elements_; }

  // What a table of fields asks of each field.
  void saveTo(Old& old) noexcept { old.set(*this); }
  void restoreFrom(Old& old) noexcept;
  bool isUnchangedSince(const Old& old) const;
  Value oldValue(const Old& old) const;
  Value toValue() const;
  static Value zeroValue() { return Value(std::vector<ModelElement>()); }
  bool hasValue() const noexcept { return !empty(); }
  void visitContained(ModelElement::Impl::ContainedVisitor& visitor) const;
  void letGo() noexcept;

 protected:
  void putInPlaceOf(ModelElement::Impl& proxy, ModelElement::Impl& element) override;

 private:
  std::vector<ModelElement> elementsAt(const Change* mark) const;

  std::vector<ModelElement::Impl*> elements_;
  Journal<Change> journal_;
};

}  // namespace detail

/// An ordered collection of elements that it contains: an element that leaves it is destroyed, unless another
/// container takes it.
///
/// Every change is a transaction of its own or joins the open one. Adding raises `CannotAddNonExistentObject`
/// for an element that isn't there, `CannotCreateCrossModelAssociation` for one of another model, and
/// `InvalidValue` for one that contains the owner; nothing has then changed. Adding the element that is there
/// already does nothing. Walking over it while it changes raises `InvalidValue`. A proxy is held like any
/// other element.
template <class E>
class ElementSequence : public detail::ElementSequenceCore {
 public:
  using value_type = E;
  using Element = E;
  using iterator = CollectionIterator<ElementSequence>;
  using detail::ElementSequenceCore::ElementSequenceCore;

  /// Give an element by its position, from 0; raises `InvalidValue` behind the end.
  E at(std::size_t position) const {
    if (position >= size()) {
      report::invalidValue(owner().nameOfProperty(index()), u"there is no element at this position.");
    }
    return atPosition(position);
  }

  /// Put an element behind the last one.
  void add(const E& element) {
    insertElement(elements().size(), static_cast<const ModelElement&>(element).impl());
  }

  /// Put an element before the one at the position; raises `InvalidValue` if that lies behind the end.
  void insert(std::size_t position, const E& element) {
    insertElement(position, static_cast<const ModelElement&>(element).impl());
  }

  /// Destroy an element of the collection; false if it holds no such element.
  bool remove(const E& element) {
    owner().checkWritable(index());
    if (!contains(element)) return false;
    static_cast<const ModelElement&>(element).destroy();
    return true;
  }

  bool contains(const E& element) const noexcept { return holds(element); }

  /// What `ContainmentSlot` says of resolving, as elements of class E.
  E resolveProxy(const E& proxy) { return detail::typed<E>(ContainmentSlot::resolveProxy(proxy).impl()); }
  E peekResolveProxy(const E& proxy) const {
    return detail::typed<E>(ContainmentSlot::peekResolveProxy(proxy).impl());
  }

  bool accepts(const ModelElement::Impl& element) const noexcept override {
    return detail::isOfClass<E>(element);
  }

  iterator begin() const { return iterator(*this, 0); }
  iterator end() const { return iterator(*this, endPosition()); }
  std::size_t endPosition() const noexcept { return size(); }

  E atPosition(std::size_t position) const { return detail::typed<E>(elements()[position]); }
  std::size_t nextPosition(std::size_t position) const noexcept { return position + 1; }
};

}  // namespace lx::base
