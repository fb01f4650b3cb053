#include "platform/foundation/meta/AbstractMetaPackage.h"

#include <boost/lexical_cast.hpp>
#include <boost/uuid/uuid_io.hpp>

#include "platform/foundation/Report.h"
#include "platform/foundation/meta/MetaRegistry.h"

namespace lx::base::meta {

AbstractMetaPackage::~AbstractMetaPackage() = default;

namespace {

template <class Handle>
Handle make(const boost::uuids::uuid& uuid, const char16_t* name, const char16_t* description) {
  const Handle handle(new typename Handle::Impl(MetaRegistry::getInstance().model(), uuid));
  handle.impl()->name = name;
  handle.impl()->description = description;
  handle.impl()->notifyCreated();
  return handle;
}

boost::uuids::uuid parsed(const char* uuid) {
  return boost::lexical_cast<boost::uuids::uuid>(uuid);
}

boost::uuids::uuid uuidOf(std::uint64_t high, std::uint64_t low) {
  boost::uuids::uuid result{};
  for (std::size_t at = 0; at < 8; ++at) {
    const std::size_t shift = 56 - 8 * at;
    result.data[at] = static_cast<std::uint8_t>(high >> shift);
    result.data[at + 8] = static_cast<std::uint8_t>(low >> shift);
  }
  return result;
}

}  // namespace

Package AbstractMetaPackage::createPackage(const char16_t* name, const char16_t* schema) {
  const Package package = make<Package>({}, name, u"");
  package.impl()->schema = schema;
  return package;
}

Class AbstractMetaPackage::createClass(const char* uuid, const char16_t* name, const char16_t* description) {
  const Class type = make<Class>(parsed(uuid), name, description);
  type.impl()->uuid = parsed(uuid);
  return type;
}

Enum AbstractMetaPackage::createEnum(const char* uuid, const char16_t* name, const char16_t* description) {
  return make<Enum>(parsed(uuid), name, description);
}

EnumLiteral AbstractMetaPackage::createEnumLiteral(const char* uuid, const char16_t* name,
                                                   std::int32_t value) {
  const EnumLiteral literal = make<EnumLiteral>(parsed(uuid), name, u"");
  literal.impl()->value = value;
  return literal;
}

PrimitiveType AbstractMetaPackage::createPrimitiveType(const char* uuid, const char16_t* name,
                                                       const char16_t* nativeName) {
  const PrimitiveType type = make<PrimitiveType>(parsed(uuid), name, u"");
  type.impl()->nativeName = nativeName;
  return type;
}

Property AbstractMetaPackage::createProperty(const char* uuid, const char16_t* name, ValueFlags flags,
                                             const Traits& traits, const char16_t* description) {
  const Property property = make<Property>(parsed(uuid), name, description);
  property.impl()->flags = flags;
  property.impl()->traits = traits;
  return property;
}

Operation AbstractMetaPackage::createOperation(std::uint64_t high, std::uint64_t low, const char16_t* name,
                                               const char16_t* description) {
  return make<Operation>(uuidOf(high, low), name, description);
}

Argument AbstractMetaPackage::createArgument(std::uint64_t high, std::uint64_t low, const char16_t* name) {
  return make<Argument>(uuidOf(high, low), name, u"");
}

void AbstractMetaPackage::addPackage(const Package& parent, const Package& child) {
  child.impl()->parent = parent.impl();
  parent.impl()->packages.push_back(child.impl());
}

void AbstractMetaPackage::addType(const Package& package, const Type& type) {
  type.impl()->package = package.impl();
  package.impl()->types.push_back(type.impl());
}

void AbstractMetaPackage::addLiteral(const Enum& type, const EnumLiteral& literal) {
  type.impl()->literals.push_back(literal.impl());
}

void AbstractMetaPackage::setUnderlyingType(const Enum& type, const Type& underlying) {
  type.impl()->underlyingType = underlying.impl();
}

void AbstractMetaPackage::addProperty(const Class& owner, const Property& property) {
  owner.impl()->addProperty(*property.impl());
}

void AbstractMetaPackage::addOperation(const Class& owner, const Operation& operation) {
  owner.impl()->addOperation(*operation.impl());
}

void AbstractMetaPackage::addArgument(const Operation& operation, const Argument& argument) {
  operation.impl()->arguments.push_back(argument.impl());
}

void AbstractMetaPackage::setPropertyIndex(const Property& property, unsigned index) {
  property.impl()->index = index;
}

void AbstractMetaPackage::setInvoker(const Operation& operation, Invoker invoker) {
  operation.impl()->invoker = invoker;
}

void AbstractMetaPackage::setType(const TypedElement& element, const Type& type, std::int32_t lower,
                                  std::int32_t upper, bool isOrdered) {
  element.impl()->setType(type);
  element.impl()->setLower(lower);
  element.impl()->setUpper(upper);
  element.impl()->setIsOrdered(isOrdered);
}

void AbstractMetaPackage::raiseNoClass(const boost::uuids::uuid& uuid) {
  const std::string text = boost::uuids::to_string(uuid);
  report::noSuchType(u"class " + std::u16string(text.begin(), text.end()));
}

void AbstractMetaPackage::registerRootPackage(const Package& package) {
  MetaRegistry::getInstance().registerRootPackage(package);
}

void AbstractMetaPackage::unregisterRootPackage(const std::u16string& name) {
  MetaRegistry::getInstance().unregisterRootPackage(name);
}

Type AbstractMetaPackage::Parts::type(const char16_t* name) const {
  const auto found = types.find(name);
  return found == types.end() ? MetaRegistry::getInstance().getType(name) : found->second;
}

namespace {

std::u16string joined(const std::u16string& front, const char16_t* name) {
  return front + u"." + name;
}

}  // namespace

void AbstractMetaPackage::instantiate(const PackageRow& row, Parts& parts) {
  const std::u16string qualified = row.qualifiedName;
  const std::u16string name = qualified.substr(qualified.rfind(u'.') + 1);
  parts.packages[qualified] = createPackage(name.c_str(), row.schema);
  for (const PrimitiveRow& primitive : row.primitives) {
    const PrimitiveType made = createPrimitiveType(primitive.uuid, primitive.name, primitive.nativeName);
    made.impl()->nativeType = primitive.nativeType;
    parts.types[joined(qualified, primitive.name)] = made;
  }
  for (const EnumRow& each : row.enumerations) {
    const Enum made = createEnum(each.uuid, each.name, each.description);
    made.impl()->isHidden = each.isHidden;
    made.impl()->nativeType = each.nativeType;
    for (const LiteralRow& literal : each.literals) {
      addLiteral(made, createEnumLiteral(literal.uuid, literal.name, literal.value));
    }
    parts.types[joined(qualified, each.name)] = made;
  }
  for (const ClassRow& each : row.classes) {
    const Class made = createClass(each.uuid, each.name, each.description);
    made.impl()->isHidden = each.isHidden;
    made.impl()->isAbstract = each.isAbstract;
    made.impl()->nativeType = each.nativeType;
    const std::u16string className = joined(qualified, each.name);
    parts.types[className] = parts.classes[className] = made;
    for (const PropertyRow& property : each.properties) {
      parts.properties[joined(className, property.name)] =
          createProperty(property.uuid, property.name, property.flags, property.traits, property.description);
    }
    for (const OperationRow& operation : each.operations) {
      parts.operations[joined(className, operation.name)] =
          createOperation(operation.high, operation.low, operation.name, operation.description);
    }
  }
}

void AbstractMetaPackage::weave(const PackageRow& row, Parts& parts) {
  MetaRegistry& registry = MetaRegistry::getInstance();
  PropertySerializerRegistry& serializers = PropertySerializerRegistry::getInstance();
  const std::u16string qualified = row.qualifiedName;
  const Package& package = parts.packages.at(qualified);
  const std::size_t dot = qualified.rfind(u'.');
  if (dot != std::u16string::npos) addPackage(parts.packages.at(qualified.substr(0, dot)), package);

  for (const PrimitiveRow& primitive : row.primitives) {
    const std::u16string typeName = joined(qualified, primitive.name);
    addType(package, parts.types.at(typeName));
    registry.registerTypeNames(parts.types.at(typeName), {typeName, primitive.nativeName});
    if (primitive.serializer != nullptr) {
      serializers.registerPropertySerializer(typeName, u"", primitive.serializer());
    }
  }
  for (const EnumRow& each : row.enumerations) {
    const std::u16string typeName = joined(qualified, each.name);
    addType(package, parts.types.at(typeName));
    setUnderlyingType(Enum(static_cast<Enum::Impl*>(parts.types.at(typeName).impl())),
                      parts.type(u"Integer"));
    registry.registerTypeNames(parts.types.at(typeName), {typeName, each.scopedName});
    for (const char16_t* format : {u"", u"ID", u"PublicID"}) {
      serializers.registerPropertySerializer(typeName, format, each.serializer());
    }
  }
  for (const ClassRow& each : row.classes) weaveClass(package, each, parts);
}

void AbstractMetaPackage::weaveClass(const Package& package, const ClassRow& row, Parts& parts) {
  MetaRegistry& registry = MetaRegistry::getInstance();
  const std::u16string className = joined(package.getQualifiedName(), row.name);
  const Class& made = parts.classes.at(className);
  addType(package, made);
  const Type super = parts.type(row.superclass);
  made.impl()->setSuperclass(Class(static_cast<Class::Impl*>(super.impl())));
  registry.registerTypeNames(made, {className, row.scopedName});
  registry.registerType(made, row.collection, row.builder);
  for (const PropertyRow& each : row.properties) {
    const Property& property = parts.properties.at(joined(className, each.name));
    addProperty(made, property);
    setPropertyIndex(property, each.index);
    setType(property, parts.type(each.type), each.lower, each.upper, each.traits.isOrdered);
    if (each.defaultText.data() != nullptr) property.impl()->defaultText = std::u16string(each.defaultText);
    if (each.key != nullptr) property.impl()->key = each.key;
  }
  for (const OperationRow& each : row.operations) {
    const Operation& operation = parts.operations.at(joined(className, each.name));
    addOperation(made, operation);
    operation.impl()->isStatic = each.isStatic;
    operation.impl()->isAbstract = each.isAbstract;
    operation.impl()->isPublic = each.isPublic;
    setInvoker(operation, each.invoker);
    const auto bound = [](const TypedElement& element, const Type& type, bool isList, bool isOrdered) {
      setType(element, type, isList ? 0 : 1, isList ? -1 : 1, isOrdered);
    };
    if (each.type != nullptr) bound(operation, parts.type(each.type), each.isList, each.isOrdered);
    for (const ArgumentRow& argument : each.arguments) {
      const Argument added = createArgument(argument.high, argument.low, argument.name);
      bound(added, parts.type(argument.type), argument.isList, argument.isOrdered);
      added.impl()->isOut = argument.isOut;
      addArgument(operation, added);
    }
  }
}

}  // namespace lx::base::meta
