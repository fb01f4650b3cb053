#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <typeinfo>
#include <vector>

#include "platform/foundation/meta/Meta.h"

namespace lx::base {

class AbstractOwnedCollection;

namespace meta {

class AbstractMetaPackage;

/// Give the identifier of a type that the foundation brings itself; it follows from the name.
boost::uuids::uuid standardUuid(std::string_view name);

/// Makes a builder of a class for a model; null if the class is abstract.
using BuilderFactory = std::unique_ptr<ModelElement::Builder> (*)(const Model& model);

/// The builder factory of every abstract class.
ND_PLATFORM_EXPORT std::unique_ptr<ModelElement::Builder> makeNoBuilder(const Model& model);

/// Makes an empty collection of the kind in which a property of the owner holds elements of a class; null for
/// a property that is no collection.
///
/// It is not the owner's own collection. What came into it would have a container that doesn't know of it,
/// and no transaction would take it out again, so that the collection is const and stays empty. It keeps its
/// owner in memory.
using CollectionFactory = std::shared_ptr<const AbstractOwnedCollection> (*)(ModelElement::Impl& owner,
                                                                             const Property& property);

/// The elements of the meta model. Their fields are filled by the metapackage that makes them, in the
/// transaction of their creation, and read afterwards; there is nothing to undo but their creation. An
/// element that is gone for good keeps its name and lets go of the others, since they may be gone, too.
class ND_PLATFORM_EXPORT NamedElement::Impl : public ModelElement::Impl {
 public:
  using ModelElement::Impl::Impl;
  Class getMetaClass() const override = 0;

  std::u16string name;
  std::u16string description;
};

class ND_PLATFORM_EXPORT Type::Impl : public NamedElement::Impl {
 public:
  using NamedElement::Impl::Impl;

  /// Give the name with those of its packages, joined by dots.
  std::u16string getQualifiedName() const;
  void basicDisassociateAll() noexcept override { package = nullptr; }

  Package::Impl* package = nullptr;
  bool isHidden = false;
  const std::type_info* nativeType = nullptr;
};

class ND_PLATFORM_EXPORT Package::Impl : public NamedElement::Impl {
 public:
  using NamedElement::Impl::Impl;
  Class getMetaClass() const override;
  void basicDisassociateAll() noexcept override;

  std::u16string schema;
  Impl* parent = nullptr;
  std::vector<Impl*> packages;
  std::vector<Type::Impl*> types;
};

class ND_PLATFORM_EXPORT PrimitiveType::Impl : public Type::Impl {
 public:
  using Type::Impl::Impl;
  Class getMetaClass() const override;

  std::u16string nativeName;
};

class ND_PLATFORM_EXPORT EnumLiteral::Impl : public NamedElement::Impl {
 public:
  using NamedElement::Impl::Impl;
  Class getMetaClass() const override;

  std::int32_t value = 0;
};

class ND_PLATFORM_EXPORT Enum::Impl : public Type::Impl {
 public:
  using Type::Impl::Impl;
  Class getMetaClass() const override;
  void basicDisassociateAll() noexcept override;

  std::vector<EnumLiteral::Impl*> literals;
  Type::Impl* underlyingType = nullptr;
};

class ND_PLATFORM_EXPORT TypedElement::Impl : public NamedElement::Impl {
 public:
  using NamedElement::Impl::Impl;

  Type getType() const { return Type(type); }
  void setType(const Type& value) { type = value.impl(); }
  void setLower(std::int32_t value) noexcept { lower = value; }
  void setUpper(std::int32_t value) noexcept { upper = value; }
  void setIsOrdered(bool value) noexcept { isOrdered = value; }
  void basicDisassociateAll() noexcept override { type = nullptr; }

  Type::Impl* type = nullptr;
  std::int32_t lower = 1;
  std::int32_t upper = 1;
  bool isOrdered = false;
  bool isUniqueInQualification = true;
};

class ND_PLATFORM_EXPORT Property::Impl : public TypedElement::Impl {
 public:
  using TypedElement::Impl::Impl;
  Class getMetaClass() const override;
  void basicDisassociateAll() noexcept override;

  Class::Impl* owner = nullptr;
  unsigned index = 0;
  ValueFlags flags = ValueFlags::Single;
  Traits traits;
  boost::optional<std::u16string> defaultText;
  std::u16string key;
};

class ND_PLATFORM_EXPORT Argument::Impl : public TypedElement::Impl {
 public:
  using TypedElement::Impl::Impl;
  Class getMetaClass() const override;

  bool isOut = false;
};

class ND_PLATFORM_EXPORT Operation::Impl : public TypedElement::Impl {
 public:
  using TypedElement::Impl::Impl;
  Class getMetaClass() const override;
  void basicDisassociateAll() noexcept override;

  Class::Impl* owner = nullptr;
  std::vector<Argument::Impl*> arguments;
  Invoker invoker = nullptr;
  bool isStatic = false;
  bool isAbstract = false;
  bool isPublic = true;
};

class ND_PLATFORM_EXPORT Class::Impl : public Type::Impl {
 public:
  using Type::Impl::Impl;
  Class getMetaClass() const override;

  void setSuperclass(const Class& value) { superclass = value.impl(); }
  void basicDisassociateAll() noexcept override;

  /// Make a builder for a model; null for an abstract class.
  std::unique_ptr<ModelElement::Builder> instantiateBuilder(const Model& model) const;

  /// Make an empty collection of the kind in which a property of the owner holds elements of this class, to
  /// be looked at; see `CollectionFactory`. Null for a property that is no collection, and for a class that
  /// was registered without such a factory.
  std::shared_ptr<const AbstractOwnedCollection> instantiateCollection(ModelElement::Impl& owner,
                                                                       const Property& property) const;

  void addProperty(Property::Impl& property);
  void addOperation(Operation::Impl& operation);
  const Property::Impl* findProperty(const std::u16string& name) const noexcept;
  const Operation::Impl* findOperation(const std::u16string& name) const noexcept;

  boost::uuids::uuid uuid{};
  Impl* superclass = nullptr;
  bool isAbstract = false;
  CollectionFactory collectionFactory = nullptr;
  BuilderFactory builderFactory = nullptr;
  std::vector<Property::Impl*> properties;
  std::vector<Operation::Impl*> operations;
};

}  // namespace meta
}  // namespace lx::base
