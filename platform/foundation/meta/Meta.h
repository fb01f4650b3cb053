#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <boost/optional.hpp>

#include "platform/export.h"
#include "platform/foundation/ModelElement.h"

/// The description of classes at run time: what a model's elements are made of, by name.
///
/// Meta elements are elements of the registry's model. They are made by a metapackage within one transaction,
/// and their shape is fixed from its commit on.
namespace lx::base {

/// How a property holds its values.
enum class ValueFlags : std::uint8_t {
  Optional = 0,
  Single = 1,
  Sequence = 2,
  Set = 4,
  Multimap = 5,
  Map = 6,
};

namespace meta {

class Class;
class Package;
class Type;

/// What is true of a property beside its type and kind.
struct Traits {
  bool isContained = false;
  bool isReadOnly = false;
  bool isDerived = false;
  bool isTransient = false;
  bool isOrdered = false;
  bool isUnique = false;
  bool isHidden = false;
  bool hasPublicGetter = true;
  bool hasPublicSetter = true;
  bool acceptsProxies = false;  // of a collection that refers to elements
};

/// What all meta elements have in common. Each class of them has a class that describes it, as every class of
/// elements has; the foundation registers them in package lx.base.meta.
class ND_PLATFORM_EXPORT NamedElement : public ModelElement {
 public:
  class Impl;
  NamedElement() noexcept = default;
  explicit NamedElement(Impl* impl) noexcept;
  Impl* impl() const noexcept;

  /// Give the class of which these elements are, and its identifier.
  static Class metaClass();
  static const boost::uuids::uuid& Uuid();

  std::u16string getName() const;

  /// Give what the element is for, in a sentence.
  std::u16string getDescription() const;
};

class ND_PLATFORM_EXPORT Package : public NamedElement {
 public:
  class Impl;
  Package() noexcept = default;
  explicit Package(Impl* impl) noexcept;
  Impl* impl() const noexcept;
  static Class metaClass();
  static const boost::uuids::uuid& Uuid();

  Package getParent() const;
  std::u16string getSchema() const;
  std::vector<Package> getPackages() const;
  std::vector<Type> getTypes() const;

  /// Give the names from the root package down, joined by dots.
  std::u16string getQualifiedName() const;
};

class ND_PLATFORM_EXPORT Type : public NamedElement {
 public:
  class Impl;
  Type() noexcept = default;
  explicit Type(Impl* impl) noexcept;
  Impl* impl() const noexcept;
  static Class metaClass();
  static const boost::uuids::uuid& Uuid();

  Package getPackage() const;

  /// Give the name with those of its packages, joined by dots.
  std::u16string getQualifiedName() const;
  bool isHidden() const;
};

class ND_PLATFORM_EXPORT PrimitiveType : public Type {
 public:
  class Impl;
  PrimitiveType() noexcept = default;
  explicit PrimitiveType(Impl* impl) noexcept;
  Impl* impl() const noexcept;
  static Class metaClass();
  static const boost::uuids::uuid& Uuid();

  /// Give the name of the native type that the values have.
  std::u16string getNativeName() const;
};

class ND_PLATFORM_EXPORT EnumLiteral : public NamedElement {
 public:
  class Impl;
  EnumLiteral() noexcept = default;
  explicit EnumLiteral(Impl* impl) noexcept;
  Impl* impl() const noexcept;
  static Class metaClass();
  static const boost::uuids::uuid& Uuid();

  std::int32_t getValue() const;
};

class ND_PLATFORM_EXPORT Enum : public Type {
 public:
  class Impl;
  Enum() noexcept = default;
  explicit Enum(Impl* impl) noexcept;
  Impl* impl() const noexcept;
  static Class metaClass();
  static const boost::uuids::uuid& Uuid();

  std::vector<EnumLiteral> getLiterals() const;

  /// Give the type of the numbers that stand for the literals.
  Type getUnderlyingType() const;
};

/// What has a type: a property, an argument, an operation with its result.
class ND_PLATFORM_EXPORT TypedElement : public NamedElement {
 public:
  class Impl;
  TypedElement() noexcept = default;
  explicit TypedElement(Impl* impl) noexcept;
  Impl* impl() const noexcept;
  static Class metaClass();
  static const boost::uuids::uuid& Uuid();

  /// Give the type; a null handle for an operation without result.
  Type getType() const;
  std::int32_t getLower() const;

  /// Give how many values there may be, -1 for any number.
  std::int32_t getUpper() const;
  bool isOrdered() const;

  /// Tell whether the element is unique in its qualification: true of every one. It says nothing of the
  /// values, as the trait of the same name does.
  bool isUniqueInQualification() const;
};

class ND_PLATFORM_EXPORT Property : public TypedElement {
 public:
  class Impl;
  Property() noexcept = default;
  explicit Property(Impl* impl) noexcept;
  Impl* impl() const noexcept;
  static Class metaClass();
  static const boost::uuids::uuid& Uuid();

  /// Give the index within the class, starting at 1 and going on in subclasses; 0 for a derived property.
  unsigned getIndex() const;
  ValueFlags getValueFlags() const;
  const Traits& traits() const;

  /// Give the default as text; none if the type's zero is the default.
  boost::optional<std::u16string> getDefaultText() const;

  /// Give the name of the elements' property by which a map is keyed; empty for what isn't keyed.
  std::u16string getKey() const;
  Class getOwner() const;
  std::u16string getQualifiedName() const;

  /// Raise `InvalidValue` unless the property has a public getter.
  void checkPublicGetter() const;

  /// Raise `CannotSetReadOnlyProperty` unless reflection may set the property; before that, where an element
  /// is given, `CannotModifyProxy` if it is a proxy and `InvalidValue` if it is gone.
  void checkSettable() const;
  void checkSettable(const ModelElement::Impl& element) const;
};

class ND_PLATFORM_EXPORT Argument : public TypedElement {
 public:
  class Impl;
  Argument() noexcept = default;
  explicit Argument(Impl* impl) noexcept;
  Impl* impl() const noexcept;
  static Class metaClass();
  static const boost::uuids::uuid& Uuid();

  bool isOut() const;
};

/// What calls an operation on an element by reflection.
using Invoker = Value (*)(ModelElement::Impl& self, const std::vector<Value>& arguments);

class ND_PLATFORM_EXPORT Operation : public TypedElement {
 public:
  class Impl;
  Operation() noexcept = default;
  explicit Operation(Impl* impl) noexcept;
  Impl* impl() const noexcept;
  static Class metaClass();
  static const boost::uuids::uuid& Uuid();

  std::vector<Argument> getArguments() const;
  bool isStatic() const;
  bool isAbstract() const;
  bool isPublic() const;
  Class getOwner() const;
  std::u16string getQualifiedName() const;
  bool hasInvoker() const;

  /// Raise `InvalidValue` unless the operation is public.
  void checkPublic() const;

  /// Call the operation. Raises `InvalidValue` with the qualified name if it has no invoker, or for another
  /// number of arguments, and `CannotCastIncompatibleTypes` for an argument of another type.
  Value invoke(ModelElement::Impl& self, const std::vector<Value>& arguments) const;
};

class ND_PLATFORM_EXPORT Class : public Type {
 public:
  class Impl;
  Class() noexcept = default;
  explicit Class(Impl* impl) noexcept;
  Impl* impl() const noexcept;
  static Class metaClass();
  static const boost::uuids::uuid& Uuid();

  /// Give the fixed identifier of the class that this element describes.
  boost::uuids::uuid getUuid() const;
  Class getSuperclass() const;
  bool isAbstract() const;
  bool isSubclassOf(const Class& other) const;

  /// List the properties: those of the superclass first, then the class's own in their order.
  std::vector<Property> getProperties() const;
  std::vector<Property> getOwnProperties() const;
  std::vector<Operation> getOwnOperations() const;

  /// Give a property or operation by name, own or inherited. Raises `NoSuchType`.
  Property property(const std::u16string& name) const;
  Operation operation(const std::u16string& name) const;

  /// Give a property by its index. Raises `NoSuchType`.
  Property propertyByIndex(unsigned index) const;
};

}  // namespace meta
}  // namespace lx::base
