#include "platform/foundation/meta/StandardTypes.h"

#include "platform/foundation/meta/MetaRegistry.h"

namespace lx::base::meta {

namespace {

// Kept for good, so that they can be asked for at process exit, too.

const PrimitiveType& keep(const char16_t* name) {
  return *new PrimitiveType(MetaRegistry::getInstance().getPrimitiveType(name));
}

}  // namespace

const Class& StandardTypes::modelElement() {
  static const Class& type = *new Class(MetaRegistry::getInstance().getClass(u"ModelElement"));
  return type;
}

const PrimitiveType& StandardTypes::string() {
  static const PrimitiveType& type = keep(u"String");
  return type;
}

const PrimitiveType& StandardTypes::stdString() {
  static const PrimitiveType& type = keep(u"StdString");
  return type;
}

const PrimitiveType& StandardTypes::boolean() {
  static const PrimitiveType& type = keep(u"Boolean");
  return type;
}

const PrimitiveType& StandardTypes::integer() {
  static const PrimitiveType& type = keep(u"Integer");
  return type;
}

const PrimitiveType& StandardTypes::uuid() {
  static const PrimitiveType& type = keep(u"UUID");
  return type;
}

const PrimitiveType& StandardTypes::model() {
  static const PrimitiveType& type = keep(u"Model");
  return type;
}

const PrimitiveType& StandardTypes::hvArray() {
  static const PrimitiveType& type = keep(u"HvArray");
  return type;
}

}  // namespace lx::base::meta
