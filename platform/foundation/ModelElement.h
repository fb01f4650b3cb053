#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <boost/optional.hpp>
#include <boost/uuid/uuid.hpp>

#include "platform/export.h"
#include "platform/foundation/ElementImpl.h"
#include "platform/foundation/Model.h"
#include "platform/foundation/Pool.h"
#include "platform/foundation/Value.h"

namespace lx::base {

namespace detail {
class ContainmentSlot;
class ReferringField;
struct Level;
struct Link;
}  // namespace detail

/// A handle to an element of a model; the root of all handles.
///
/// A handle shares the memory of its element and not its life: the model owns the element. Handles are
/// shallow, so that all operations are const. A getter on an element that is gone answers with the type's
/// zero, a mutator raises `InvalidValue`; so does every operation through a null handle.
class ND_PLATFORM_EXPORT ModelElement {
 public:
  class Impl;
  class Builder;
  class BuilderWrapper;

  ModelElement() noexcept = default;
  explicit ModelElement(Impl* impl) noexcept;
  ModelElement(const ModelElement& other) noexcept;
  ModelElement(ModelElement&& other) noexcept : impl_(other.impl_) { other.impl_ = nullptr; }
  ModelElement& operator=(const ModelElement& other) noexcept;
  ModelElement& operator=(ModelElement&& other) noexcept;
  ~ModelElement();

  /// Give the class of which all others are subclasses.
  static meta::Class metaClass();

  /// Give that class's identifier.
  static const boost::uuids::uuid& Uuid();

  /// Tell whether the handle is not null. It says nothing of life: `isAlive` does.
  explicit operator bool() const noexcept { return impl_ != nullptr; }

  /// Tell whether the handle's element exists.
  bool isAlive() const noexcept;

  /// Tell whether the element stands for one that isn't loaded. False for a null handle and for an element
  /// that is gone.
  bool isProxy() const noexcept;

  /// Add a reference by hand; it must be taken away by `removeRef`. Does nothing through a null handle.
  void addRef() const noexcept;
  void removeRef() const noexcept;

  Model getModel() const;
  meta::Class getMetaClass() const;

  /// Give the element's identity, random unless it was created with one, and made when first asked for.
  boost::uuids::uuid identifier() const;

  /// Give the element that contains this one; null if none does.
  ModelElement container() const;

  /// List the elements of the model that refer to this one without containing it, each once, the one with the
  /// oldest reference first.
  std::vector<ModelElement> referrers() const;

  /// Destroy the element and all that it contains. Destroying what is gone is no error.
  void destroy() const;

  /// Give the value of a property by name: a handle for a single element, a `std::vector` for a list.
  /// Raises `NoSuchType` for an unknown name, `InvalidValue` for a property without public getter.
  Value getPropertyValue(const std::u16string& name) const;

  /// Tell whether a property has a value: a list an element, a reference its target, an optional its value.
  bool hasPropertyValue(const std::u16string& name) const;

  /// Set a property by name. Raises `NoSuchType`, `CannotSetReadOnlyProperty` for one that is read-only,
  /// derived or without public setter, and `CannotCastIncompatibleTypes` for a value of another type.
  void setPropertyValue(const std::u16string& name, const Value& value) const;

  /// Call an operation by name. Raises `NoSuchType` for an unknown name, `InvalidValue` for one that is not
  /// public, has no invoker or takes another number of arguments.
  Value invoke(const std::u16string& operation, const std::vector<Value>& arguments) const;

  Impl* impl() const noexcept { return impl_; }

  friend bool operator==(const ModelElement& left, const ModelElement& right) noexcept {
    return left.impl_ == right.impl_;
  }

 protected:
  /// Give the element behind the handle; raises `InvalidValue` that names the operation if it is null.
  Impl& self(const char* operation) const {
    if (impl_ == nullptr) raiseNull(operation);
    return *impl_;
  }

 private:
  friend class ModelAccess;

  [[noreturn]] static void raiseNull(const char* operation);

  Impl* impl_ = nullptr;
};

/// An element itself. Generated classes derive from it, hold their properties as fields and override what
/// depends on them; the virtual operations of a class follow these.
class ND_PLATFORM_EXPORT ModelElement::Impl : public ElementImpl {
 public:
  class Storage;
  class Changes;
  class ContainedVisitor;
  class BuilderImpl;
  template <class B>
  class BuilderBase;

  /// Bits of a storage's mask that belong to no property: the element's life and its container. The indices
  /// between them are those of the properties; LAST_INDEX of the class generator is the greatest of them.
  static constexpr unsigned LifeIndex = 0;
  static constexpr unsigned ContainerIndex = 63;

  Impl(const Model& model, const boost::uuids::uuid& uuid)
      : flags_(uuid.is_nil() ? 0U : Identified), model_(model.impl()), uuid_(uuid) {}
  ~Impl() override = default;

  static void* operator new(std::size_t size) { return detail::allocateBlock(size); }
  static void operator delete(void* block, std::size_t size) noexcept { detail::freeBlock(block, size); }

  Model getModel() const override;
  meta::Class getMetaClass() const override;
  void removeRef() const noexcept override;

  /// Cut the element off from its model, which goes or takes the creation back. It is dead from then on.
  virtual void invalidate() noexcept;

  /// Ask for a property's value, give it and set it. Raise `NoSuchType` for a property of another class.
  virtual bool hasPropertyValue(const meta::Property& property) const;
  virtual Value getPropertyValue(const meta::Property& property) const;
  virtual void setPropertyValue(const meta::Property& property, const Value& value);

  /// Call an operation through its invoker.
  virtual Value invoke(const meta::Operation& operation, const std::vector<Value>& arguments);

  virtual boost::uuids::uuid identifier() const;

  /// Show every contained element, and every property that refers to elements, to the visitor, in the order
  /// of the properties.
  virtual void doDestroy(ContainedVisitor& visitor);

  /// Note, and forget, that a field of an element of the model refers to this one.
  virtual void inverseAdd(detail::Link& link) noexcept;
  virtual void inverseRemove(detail::Link& link) noexcept;

  /// Tell whether a property of this element holds a proxy of that identity.
  virtual bool inverseContainsProxyTo(unsigned index, const boost::uuids::uuid& uuid) const;

  /// Tell the element and all that it contains, container first, that they are about to be destroyed. What
  /// comes into it meanwhile is told afterwards.
  virtual void notifyDestroying();

  /// Called when the element was destroyed, within the transaction: no living element of the model refers to
  /// it any more.
  virtual void disassociateIncoming();

  /// Called when the element is to become a proxy, within the transaction: collections that hold it by a key
  /// set it apart, collections that hold no proxies let go of it.
  virtual void convertReferencesToProxies();

  /// Called while the whole model still stands. The values that the element sets here in what it contains are
  /// final at once, but for keys; elements and references come back when the destruction is undone. An
  /// exception keeps the element alive. A transaction that was open before must not end here: the
  /// destruction then raises `InvalidValue`.
  virtual void aboutToDestroy();

  /// Called when the element was created, within the transaction of its creation.
  virtual void didCreate();

  /// Let go of all values for good: the element is dead, and nothing brings it back.
  virtual void basicDisassociateAll() noexcept {}

  /// Make the element a proxy, which stands for one that isn't loaded: class and identity stay, what it
  /// contains is destroyed, and its values go. What contains it and what refers to it goes on doing so, as
  /// far as it takes proxies. It refuses every mutator from then on. Raises `InvalidValue` if the element is
  /// gone, its model frozen, or something that it contains is being destroyed.
  virtual void convertToProxy();

  /// Make the record of what changed since the storage was filled.
  virtual std::unique_ptr<Changes> createChanges(const Storage& storage) const;

  virtual std::unique_ptr<Storage> createStorage() const;

  /// Copy a property's present value into a storage or, when a storage is given as the source, move the
  /// old value that this one holds. Only the copy can throw, before anything has changed.
  virtual void copyValue(unsigned index, Storage& to, Storage* from);

  /// Give the values of a storage back to the element. Values change places, so that none is let go here.
  virtual void copyStateFromStorage(Storage& storage) noexcept;

  virtual meta::Property getPropertyByIndex(unsigned index) const;

  /// Tell whether the element exists: it was created, and neither destroyed nor left behind by its model.
  bool isAlive() const noexcept { return (flags_ & Alive) != 0; }
  bool isProxy() const noexcept { return (flags_ & (Alive | Proxy)) == (Alive | Proxy); }

  /// Tell whether the element was told that it is about to be destroyed, and the destruction is under way.
  bool isBeingDestroyed() const noexcept { return (flags_ & Told) != 0; }

  /// Tell whether a property is that of the element's class or of a superclass.
  bool isPropertyOfClass(const meta::Property& property) const;

  /// Bring a newly made element into its model. Called once, by what creates it.
  void notifyCreated();

  /// Bring it into its model as a proxy, without values.
  void notifyCreatedAsProxy();

  /// Say that a property is about to change: saves its old value if a transaction can ask for it back.
  void notifyModifying(unsigned index);

  /// Tell whether the open transaction has the property's old value already, or needs none since the element
  /// was made in it.
  bool isSavedInOpenTransaction(unsigned index) const noexcept;

  /// Destroy the element and all that it contains, also what an `aboutToDestroy` adds to it. An exception of
  /// `aboutToDestroy` passes and undoes it.
  void destroy();

  boost::uuids::uuid getProxyId() const { return identifier(); }

  /// Give the identity by which a stored form names the element. Where none was made yet, true makes it and
  /// false gives the nil one.
  boost::uuids::uuid getPersistentProxyId(bool create) const { return create ? identifier() : uuid_; }

  Impl* container() const noexcept;
  detail::ContainmentSlot* containmentSlot() const noexcept { return slot_; }

  /// Make this element the container of the child, in the slot of one of its properties.
  void _setContainedByThis(Impl& child, detail::ContainmentSlot& slot);

  /// Let the element that this proxy stands for take its place: in its container, where the proxy is
  /// destroyed, and in all that refers to it and takes the element's class. Gives the element; a null handle,
  /// with nothing changed, if the model doesn't have it or this is no proxy. Raises what adding to the
  /// container raises.
  ModelElement resolve();

  /// Note at the target of a link that a field of this element refers to it.
  void _inverseAddThis(detail::Link& link) noexcept;

  /// Tell whether a property of this element is noted at an element as referring to it.
  bool _inverseContainsThis(const Impl& target, unsigned index) const noexcept;

  /// Give the latest link to this element; the links are chained.
  detail::Link* incoming() const noexcept { return incoming_; }

  /// List the living elements that refer to this one.
  std::vector<ModelElement> referrers() const;

  /// Set the container without more ado; null for none.
  void basicSetContainer(detail::ContainmentSlot* slot) noexcept { slot_ = slot; }

  /// Raise if a mutator must not run: `CannotModifyProxy` on a proxy, `InvalidValue` on an element that is
  /// gone or whose model is frozen.
  void checkWritable(unsigned index) const;

  /// Raise likewise, but not for a frozen model: what changes nothing may be done there.
  void checkPresent(unsigned index) const;

  /// Raise `InvalidValue` for a frozen model, of an element that is there.
  void checkThawed(unsigned index) const;

  /// Raise `InvalidValue` that names the operation if the element is gone.
  void checkAlive(const char* operation) const;

  /// Tell whether changes of the property must be kept for undoing; asked behind `notifyModifying`.
  bool isLogged(unsigned index) const noexcept;

  /// Tell whether an open transaction, when it is abandoned, brings the element back to life or to another
  /// container.
  bool isMovedInOpenTransaction() const noexcept;

  Model::Impl* modelImpl() const noexcept { return model_; }

  /// Give the qualified name of a property, for messages.
  std::u16string nameOfProperty(unsigned index) const;

 protected:
  Impl() noexcept;

 private:
  friend class detail::ContainmentSlot;
  friend class FinalChanges;
  friend class ModelAccess;
  friend class Model::Impl;

  enum Flag : std::uint32_t {
    Alive = 1,
    Proxy = 2,
    Told = 4,         // that it is about to be destroyed
    Dying = 8,        // is in its aboutToDestroy
    Identified = 16,  // has an identity
    Mute = 32,        // is known to do nothing when it is told of its end
    Composite = 64    // has a property that contains elements
  };

  [[noreturn]] void raiseNotWritable(unsigned index) const;
  void saveOldValue(unsigned index);
  void comeIntoModel();
  void becomeProxy();

  mutable std::uint32_t flags_ = 0;
  Model::Impl* model_ = nullptr;
  Storage* storage_ = nullptr;  // of the innermost open level that this element was changed or created in
  Impl* previous_ = nullptr;    // the model's elements, in the order of their creation
  Impl* next_ = nullptr;
  detail::ContainmentSlot* slot_ = nullptr;
  detail::Link* incoming_ = nullptr;  // what refers to this element
  mutable boost::uuids::uuid uuid_;
};

/// Shown the contained elements of an element, and its fields that refer to others, one by one.
class ND_PLATFORM_EXPORT ModelElement::Impl::ContainedVisitor {
 public:
  virtual ~ContainedVisitor();
  virtual void visit(Impl& child) = 0;
  virtual void visitReferring(detail::ReferringField& field);
};

/// The old values of one element in one transaction, and which properties they belong to. Bit n of the mask
/// is that of the property with index n.
class ND_PLATFORM_EXPORT ModelElement::Impl::Storage {
 public:
  Storage() noexcept = default;
  Storage(Impl& element, unsigned index) noexcept : mask_(std::uint64_t{1} << index), element_(&element) {}
  Storage(const Storage&) = delete;
  Storage& operator=(const Storage&) = delete;
  virtual ~Storage();

  static void* operator new(std::size_t size) { return detail::allocateBlock(size); }
  static void operator delete(void* block, std::size_t size) noexcept { detail::freeBlock(block, size); }

  /// Keep the container that the element had.
  virtual void setOldContainer(detail::ContainmentSlot* slot) noexcept;

  /// Clear the bit of every property whose old value equals the present one.
  virtual void revertUnchanged(const Impl& element);

  /// Give a property's old value; empty for a property that was not changed.
  virtual Value getOldValue(unsigned index) const;

  std::uint64_t mask() const noexcept { return mask_; }
  bool isChanged(unsigned index) const noexcept { return (mask_ >> index & 1U) != 0; }
  void clearChanged(unsigned index) noexcept { mask_ &= ~(std::uint64_t{1} << index); }

 protected:
  /// The element whose old values these are.
  const Impl* element() const noexcept { return element_; }

  /// Say that letting go of what is kept may run code of others, so that it has to wait until all is undone.
  void keepForeign() noexcept { isInert_ = false; }

 private:
  friend class ModelElement::Impl;
  friend class Model::Impl;
  friend class ModelAccess;
  friend struct detail::Level;

  std::uint64_t mask_ = 0;
  std::uint64_t maskBefore_ = 0;  // while a commit clears bits
  detail::Level* level_ = nullptr;
  Storage* outer_ = nullptr;  // of the same element, at an enclosing level
  Storage* next_ = nullptr;   // of the same level
  Impl* element_ = nullptr;
  detail::ContainmentSlot* oldSlot_ = nullptr;
  std::uint32_t oldLife_ = 0;  // alive or not, a proxy or not
  bool isInert_ = true;        // nobody else notices when what is kept is let go
};

/// What one element's properties were before a transaction.
class ND_PLATFORM_EXPORT ModelElement::Impl::Changes {
 public:
  Changes(const Impl& element, const Storage& storage);

  const ModelElement& element() const noexcept { return element_; }

  /// List the indices of the properties that changed, ascending.
  const std::vector<unsigned>& properties() const noexcept { return properties_; }

  /// Give a property's old value; empty if it did not change.
  Value oldValue(unsigned index) const;

 private:
  ModelElement element_;
  std::vector<unsigned> properties_;
  std::vector<Value> oldValues_;
};

inline bool ModelElement::isAlive() const noexcept {
  return impl_ != nullptr && impl_->isAlive();
}
inline bool ModelElement::isProxy() const noexcept {
  return impl_ != nullptr && impl_->isProxy();
}
inline ModelElement::ModelElement(Impl* impl) noexcept : impl_(impl) {
  if (impl_ != nullptr) impl_->addRef();
}
inline ModelElement::ModelElement(const ModelElement& other) noexcept : ModelElement(other.impl_) {}
inline ModelElement::~ModelElement() {
  if (impl_ != nullptr) impl_->dropRef();
}
inline ModelElement& ModelElement::operator=(const ModelElement& other) noexcept {
  ModelElement copy(other);
  return *this = std::move(copy);
}
inline ModelElement& ModelElement::operator=(ModelElement&& other) noexcept {
  ModelElement taken(std::move(other));
  std::swap(impl_, taken.impl_);
  return *this;
}

}  // namespace lx::base
