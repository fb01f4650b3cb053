#pragma once

#include <memory>
#include <string>
#include <typeinfo>
#include <vector>

#include "platform/foundation/meta/Meta.h"

namespace lx::base {

class AbstractOwnedCollection;

namespace meta {

/// Makes a builder of a class for a model.
using BuilderFactory = std::unique_ptr<ModelElement::Builder> (*)(const Model& model);

/// Makes an empty collection of the kind in which a property of the owner holds elements of a class; null for
/// a property that is no collection. What is made is not the owner's own collection.
using CollectionFactory = std::unique_ptr<AbstractOwnedCollection> (*)(ModelElement::Impl& owner,
                                                                       const Property& property);

/// The elements of the meta model. Their fields are filled by the metapackage that makes them, in the
/// transaction of their creation, and read afterwards; there is nothing to undo but their creation. An
/// element that is gone for good keeps its name and lets go of the others, since they may be gone, too.
class ND_PLATFORM_EXPORT NamedElement::Impl : public ModelElement::Impl {
 public:
  using ModelElement::Impl::Impl;
  Class getMetaClass() const override;

  std::u16string name;
  std::u16string description;

 protected:
  /// Names the class of this element within package lx.base.meta.
  virtual const char16_t* metaClassName() const noexcept = 0;
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
  void basicDisassociateAll() noexcept override;

  std::u16string schema;
  Impl* parent = nullptr;
  std::vector<Impl*> packages;
  std::vector<Type::Impl*> types;

 private:
  const char16_t* metaClassName() const noexcept override;
};

class ND_PLATFORM_EXPORT PrimitiveType::Impl : public Type::Impl {
 public:
  using Type::Impl::Impl;

  std::u16string nativeName;

 private:
  const char16_t* metaClassName() const noexcept override;
};

class ND_PLATFORM_EXPORT EnumLiteral::Impl : public NamedElement::Impl {
 public:
  using NamedElement::Impl::Impl;

  std::int32_t value = 0;

 private:
  const char16_t* metaClassName() const noexcept override;
};

class ND_PLATFORM_EXPORT Enum::Impl : public Type::Impl {
 public:
  using Type::Impl::Impl;
  void basicDisassociateAll() noexcept override;

  std::vector<EnumLiteral::Impl*> literals;
  Type::Impl* underlyingType = nullptr;

 private:
  const char16_t* metaClassName() const noexcept override;
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
  void basicDisassociateAll() noexcept override;

  Class::Impl* owner = nullptr;
  unsigned index = 0;
  ValueFlags flags = ValueFlags::Single;
  Traits traits;
  boost::optional<std::u16string> defaultText;
  std::u16string key;

 private:
  const char16_t* metaClassName() const noexcept override;
};

class ND_PLATFORM_EXPORT Argument::Impl : public TypedElement::Impl {
 public:
  using TypedElement::Impl::Impl;

  bool isOut = false;

 private:
  const char16_t* metaClassName() const noexcept override;
};

class ND_PLATFORM_EXPORT Operation::Impl : public TypedElement::Impl {
 public:
  using TypedElement::Impl::Impl;
  void basicDisassociateAll() noexcept override;

  Class::Impl* owner = nullptr;
  std::vector<Argument::Impl*> arguments;
  Invoker invoker = nullptr;
  bool isStatic = false;
  bool isAbstract = false;
  bool isPublic = true;

 private:
  const char16_t* metaClassName() const noexcept override;
};

class ND_PLATFORM_EXPORT Class::Impl : public Type::Impl {
 public:
  using Type::Impl::Impl;

  void setSuperclass(const Class& value) { superclass = value.impl(); }
  void basicDisassociateAll() noexcept override;

  /// Make a builder for a model; null for an abstract class.
  std::unique_ptr<ModelElement::Builder> instantiateBuilder(const Model& model) const;

  /// Make an empty collection of the kind in which a property of the owner holds elements of this class. Null
  /// for a property that is no collection, and for a class that was registered without such a factory.
  std::unique_ptr<AbstractOwnedCollection> instantiateCollection(ModelElement::Impl& owner,
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

 private:
  const char16_t* metaClassName() const noexcept override;
};

}  // namespace meta
}  // namespace lx::base
