#include "platform/foundation/meta/StandardTypes.h"

#include <atomic>

#include "platform/foundation/meta/MetaRegistry.h"

namespace lx::base::meta {

namespace {

Class lookUpClass(const char16_t* name) {
  return MetaRegistry::getInstance().getClass(name);
}

PrimitiveType lookUp(const char16_t* name) {
  return MetaRegistry::getInstance().getPrimitiveType(name);
}

struct Kept {
  explicit Kept(const Kept* before) : former(before) {}

  const Kept* const former;  // of a registry's model that is gone; handed out, so that it stays
  const Class modelElement = lookUpClass(u"ModelElement");
  const Class model = lookUpClass(u"Model");
  const PrimitiveType string = lookUp(u"String");
  const PrimitiveType stdString = lookUp(u"StdString");
  const PrimitiveType boolean = lookUp(u"Boolean");
  const PrimitiveType integer = lookUp(u"Integer");
  const PrimitiveType uuid = lookUp(u"UUID");
  const PrimitiveType hvArray = lookUp(u"HvArray");
};

bool isOutdated(const Kept* kept) {
  if (kept == nullptr) return true;
  if (kept->modelElement.isAlive()) return false;
  const Type present = MetaRegistry::getInstance().findType(u"ModelElement");
  return present.isAlive() && !(present == kept->modelElement);
}

const Kept& kept() {
  static std::atomic<const Kept*> latest = nullptr;  // can be asked for at process exit, too
  const Kept* present = latest.load(std::memory_order_acquire);
  if (isOutdated(present)) {
    const std::scoped_lock lock(MetaRegistry::getInstance().mutex());
    present = latest.load(std::memory_order_relaxed);
    if (isOutdated(present)) {
      present = new const Kept(present);
      latest.store(present, std::memory_order_release);
    }
  }
  return *present;
}

}  // namespace

const Class& StandardTypes::modelElement() {
  return kept().modelElement;
}
const Class& StandardTypes::model() {
  return kept().model;
}
const PrimitiveType& StandardTypes::string() {
  return kept().string;
}
const PrimitiveType& StandardTypes::stdString() {
  return kept().stdString;
}
const PrimitiveType& StandardTypes::boolean() {
  return kept().boolean;
}
const PrimitiveType& StandardTypes::integer() {
  return kept().integer;
}
const PrimitiveType& StandardTypes::uuid() {
  return kept().uuid;
}
const PrimitiveType& StandardTypes::hvArray() {
  return kept().hvArray;
}

}  // namespace lx::base::meta
