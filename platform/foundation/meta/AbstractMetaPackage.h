#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <typeinfo>

#include "platform/export.h"
#include "platform/foundation/meta/MetaImpl.h"
#include "platform/foundation/meta/PropertySerializer.h"

namespace lx::base::meta {

/// The rows of the tables in which a generated metapackage describes its types. Identifiers are UUIDs as
/// text, those of operations and arguments two numbers, of which `high` has the first eight bytes; types are
/// named by their qualified names, those of the foundation by their names alone.
struct ArgumentRow {
  std::uint64_t high;
  std::uint64_t low;
  const char16_t* name;
  const char16_t* type;
  bool isList = false;
  bool isOrdered = false;
  bool isOut = false;
};

struct OperationRow {
  std::uint64_t high;
  std::uint64_t low;
  const char16_t* name;
  const char16_t* description;
  const char16_t* type = nullptr;  // null for an operation without result
  bool isList = false;
  bool isOrdered = false;
  bool isStatic = false;
  bool isAbstract = false;
  bool isPublic = true;
  Invoker invoker = nullptr;  // null for an operation that reflection doesn't call
  std::span<const ArgumentRow> arguments = {};
};

struct PropertyRow {
  const char* uuid;
  const char16_t* name;
  const char16_t* description;
  unsigned index = 0;  // 0 for a derived one
  ValueFlags flags = ValueFlags::Single;
  Traits traits = {};
  const char16_t* type = nullptr;
  std::int32_t lower = 1;
  std::int32_t upper = 1;
  std::u16string_view defaultText = {};  // one of nothing, not even of "", if the type's zero is the default
  const char16_t* key = nullptr;         // null for a property that isn't keyed
};

struct LiteralRow {
  const char* uuid;
  const char16_t* name;
  std::int32_t value;
};

using SerializerFactory = std::shared_ptr<const PropertySerializer> (*)();

struct PrimitiveRow {
  const char* uuid;
  const char16_t* name;
  const char16_t* nativeName;
  const std::type_info* nativeType;
  SerializerFactory serializer = nullptr;  // null for a type without text and default
};

struct EnumRow {
  const char* uuid;
  const char16_t* name;
  const char16_t* scopedName;
  const char16_t* description;
  const std::type_info* nativeType;
  bool isHidden = false;
  std::span<const LiteralRow> literals = {};
  SerializerFactory serializer = nullptr;
};

struct ClassRow {
  const char* uuid;
  const char16_t* name;
  const char16_t* scopedName;
  const char16_t* description;
  const char16_t* superclass;
  const std::type_info* nativeType;  // that of its handles
  bool isHidden = false;
  bool isAbstract = false;
  std::span<const PropertyRow> properties = {};
  std::span<const OperationRow> operations = {};
  CollectionFactory collection = nullptr;
  BuilderFactory builder = nullptr;
};

struct PackageRow {
  const char16_t* qualifiedName;
  const char16_t* schema;
  std::span<const PrimitiveRow> primitives = {};
  std::span<const EnumRow> enumerations = {};
  std::span<const ClassRow> classes = {};
};

/// What a generated metapackage makes its meta elements with. Its calls run within a `MetaRegistry::Update`.
class ND_PLATFORM_EXPORT AbstractMetaPackage {
 public:
  virtual ~AbstractMetaPackage();

 protected:
  AbstractMetaPackage() = default;

  /// What was made so far, by qualified name.
  struct Parts {
    std::map<std::u16string, Package> packages;
    std::map<std::u16string, Type> types;
    std::map<std::u16string, Class> classes;
    std::map<std::u16string, Property> properties;
    std::map<std::u16string, Operation> operations;

    /// Give a type that was made here, or one of the foundation's.
    Type type(const char16_t* name) const;
  };

  /// The two steps by which a package comes into being: all that it holds is made, and then put where it
  /// belongs, given its types, and registered.
  static void instantiate(const PackageRow& package, Parts& parts);
  static void weave(const PackageRow& package, Parts& parts);

  /// Create a meta element, bare: what it belongs to is set when all of them are there. Identifiers are given
  /// as in the rows.
  static Package createPackage(const char16_t* name, const char16_t* schema);
  static Class createClass(const char* uuid, const char16_t* name, const char16_t* description);
  static Enum createEnum(const char* uuid, const char16_t* name, const char16_t* description);
  static EnumLiteral createEnumLiteral(const char* uuid, const char16_t* name, std::int32_t value);
  static PrimitiveType createPrimitiveType(const char* uuid, const char16_t* name,
                                           const char16_t* nativeName);
  static Property createProperty(const char* uuid, const char16_t* name, ValueFlags flags,
                                 const Traits& traits, const char16_t* description);
  static Operation createOperation(std::uint64_t high, std::uint64_t low, const char16_t* name,
                                   const char16_t* description);
  static Argument createArgument(std::uint64_t high, std::uint64_t low, const char16_t* name);

  /// Put a meta element where it belongs.
  static void addPackage(const Package& parent, const Package& child);
  static void addType(const Package& package, const Type& type);
  static void addLiteral(const Enum& type, const EnumLiteral& literal);
  static void addProperty(const Class& owner, const Property& property);
  static void addOperation(const Class& owner, const Operation& operation);
  static void addArgument(const Operation& operation, const Argument& argument);

  /// Set the type of an enumeration's numbers.
  static void setUnderlyingType(const Enum& type, const Type& underlying);

  /// Set a property's index, and what calls an operation by reflection.
  static void setPropertyIndex(const Property& property, unsigned index);
  static void setInvoker(const Operation& operation, Invoker invoker);

  /// Set the type and the bounds of a property, an argument or a result.
  static void setType(const TypedElement& element, const Type& type, std::int32_t lower, std::int32_t upper,
                      bool isOrdered);

  /// Raise `NoSuchType` that names a class by its identifier.
  [[noreturn]] static void raiseNoClass(const boost::uuids::uuid& uuid);

  /// Register a root package, or take one away, as `MetaRegistry` does.
  static void registerRootPackage(const Package& package);
  static void unregisterRootPackage(const std::u16string& name);

 private:
  static void weaveClass(const Package& package, const ClassRow& row, Parts& parts);
};

}  // namespace lx::base::meta
