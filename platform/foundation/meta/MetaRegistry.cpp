#include "platform/foundation/meta/MetaRegistry.h"

#include <algorithm>

#include <boost/lexical_cast.hpp>
#include <boost/uuid/name_generator_md5.hpp>
#include <boost/uuid/uuid_io.hpp>

#include "platform/foundation/ModelImpl.h"
#include "platform/foundation/Report.h"
#include "platform/foundation/meta/AbstractMetaPackage.h"
#include "platform/text/Convert.h"

namespace lx::base {

const boost::uuids::uuid& ModelElement::Uuid() {
  static const auto uuid = boost::lexical_cast<boost::uuids::uuid>("3c7a7b52-7f0e-3a55-9d3e-0a8f1d0a6b41");
  return uuid;
}

meta::Class ModelElement::metaClass() {
  return meta::MetaRegistry::getInstance().getClass(u"lx.base.ModelElement");
}

namespace meta {

namespace {

/// The types that the foundation brings itself: package lx.base with its classes and primitives.
class StandardPackage : public AbstractMetaPackage {
 public:
  explicit StandardPackage(MetaRegistry& registry) : registry_(registry) {
    const Package lx = make<Package>(u"lx");
    const Package base = make<Package>(u"base");
    const Package meta = make<Package>(u"meta");
    addPackage(lx, base);
    addPackage(base, meta);

    const Class root = addClass(base, u"ModelElement", Class());
    root.impl()->uuid = ModelElement::Uuid();
    root.impl()->nativeType = &typeid(ModelElement);
    for (const char16_t* name : {u"Package", u"Class", u"Enum", u"EnumLiteral", u"PrimitiveType", u"Property",
                                 u"Operation", u"Argument"}) {
      addClass(meta, name, root);
    }

    addPrimitive<std::u16string>(base, u"String", u"std::u16string");
    addPrimitive<std::string>(base, u"StdString", u"std::string");
    addPrimitive<bool>(base, u"Boolean", u"bool");
    addPrimitive<std::int32_t>(base, u"Integer", u"std::int32_t");
    addPrimitive<boost::uuids::uuid>(base, u"UUID", u"boost::uuids::uuid");
    addType(base, u"Model", u"lx::base::Model").impl()->nativeType = &typeid(Model);
    addType(base, u"HvArray", u"hvArray");
    registry_.registerRootPackage(lx);
  }

 private:
  /// Make a meta element; its identifier follows from its name.
  template <class Handle>
  Handle make(const char16_t* name) const {
    const boost::uuids::name_generator_md5 identify(ModelElement::Uuid());
    const Handle handle(new typename Handle::Impl(registry_.model(), identify(text::toUtf8(name))));
    handle.impl()->name = name;
    handle.impl()->notifyCreated();
    return handle;
  }

  Class addClass(const Package& package, const char16_t* name, const Class& super) {
    const Class type = make<Class>(name);
    type.impl()->uuid = type.identifier();
    type.impl()->setSuperclass(super);
    type.impl()->isAbstract = true;
    AbstractMetaPackage::addType(package, type);
    registry_.registerTypeNames(type, {name, type.getQualifiedName()});
    return type;
  }

  PrimitiveType addType(const Package& package, const char16_t* name, const char16_t* nativeName) {
    const PrimitiveType type = make<PrimitiveType>(name);
    type.impl()->nativeName = nativeName;
    AbstractMetaPackage::addType(package, type);
    registry_.registerTypeNames(type, {name, type.getQualifiedName(), nativeName});
    return type;
  }

  template <class T>
  void addPrimitive(const Package& package, const char16_t* name, const char16_t* nativeName) {
    const PrimitiveType type = addType(package, name, nativeName);
    type.impl()->nativeType = &typeid(T);
    PropertySerializerRegistry::getInstance().registerPropertySerializer(
        type.getQualifiedName(), u"", std::make_shared<const DefaultPropertySerializer<T>>());
  }

  MetaRegistry& registry_;
};

}  // namespace

MetaRegistry::MetaRegistry() : model_(Model::create()) {
  PropertySerializerRegistry::getInstance();  // outlives this registry
  Transaction transaction = model_.impl()->beginTransaction(true);
  const StandardPackage standard(*this);
  std::vector<ModelElement> made = unpinnedElements();
  transaction.commit();
  pin(std::move(made));
  Model::Freezer::freeze(model_);
}

/// Give the elements that can't be shared by threads yet, with room for keeping them. Their identities are
/// made now, since being asked for one changes an element.
std::vector<ModelElement> MetaRegistry::unpinnedElements() {
  std::vector<ModelElement> result = model_.impl()->elements();
  std::erase_if(result, [](const ModelElement& element) { return element.impl()->isPinned(); });
  for (const ModelElement& element : result) static_cast<void>(element.identifier());
  pinned_.reserve(pinned_.size() + result.size());
  return result;
}

void MetaRegistry::pin(std::vector<ModelElement> elements) noexcept {
  for (ModelElement& element : elements) {
    element.impl()->pin();
    pinned_.push_back(std::move(element));
  }
}

MetaRegistry& MetaRegistry::getInstance() {
  static MetaRegistry& registry = *new MetaRegistry;  // outlives all that may ask at process exit
  return registry;
}

Type MetaRegistry::findType(const std::u16string& name) const {
  const std::scoped_lock lock(mutex_);
  const auto found = types_.find(name);
  return found == types_.end() ? Type() : found->second;
}

Type MetaRegistry::getType(const std::u16string& name) const {
  const Type type = findType(name);
  if (!type) report::noSuchType(name);
  return type;
}

Class MetaRegistry::getClass(const std::u16string& name) const {
  auto* const found = dynamic_cast<Class::Impl*>(getType(name).impl());
  if (found == nullptr) report::noSuchType(name);
  return Class(found);
}

PrimitiveType MetaRegistry::getPrimitiveType(const std::u16string& name) const {
  auto* const found = dynamic_cast<PrimitiveType::Impl*>(getType(name).impl());
  if (found == nullptr) report::noSuchType(name);
  return PrimitiveType(found);
}

bool MetaRegistry::isCorrectTypeForTypeId(const Type& type, std::type_index native) const {
  if (!type || type.impl()->nativeType == nullptr) return false;
  if (*type.impl()->nativeType == native) return true;
  auto* const asClass = dynamic_cast<Class::Impl*>(type.impl());
  if (asClass == nullptr) return false;
  const std::scoped_lock lock(mutex_);
  return std::any_of(types_.begin(), types_.end(), [&](const auto& entry) {
    auto* const other = dynamic_cast<Class::Impl*>(entry.second.impl());
    return other != nullptr && other->nativeType != nullptr && *other->nativeType == native &&
           Class(other).isSubclassOf(Class(asClass));
  });
}

std::vector<Package> MetaRegistry::getRootPackages() const {
  const std::scoped_lock lock(mutex_);
  return rootPackages_;
}

Package MetaRegistry::findRootPackage(const std::u16string& name) const {
  const std::scoped_lock lock(mutex_);
  const auto found = std::find_if(rootPackages_.begin(), rootPackages_.end(),
                                  [&](const Package& package) { return package.getName() == name; });
  return found == rootPackages_.end() ? Package() : *found;
}

void MetaRegistry::registerTypeNames(const Type& type, const std::vector<std::u16string>& names) {
  for (const std::u16string& name : names) types_[name] = type;
}

void MetaRegistry::registerType(const Class& type, CollectionFactory collectionFactory,
                                BuilderFactory builderFactory) {
  type.impl()->collectionFactory = collectionFactory;
  type.impl()->builderFactory = builderFactory;
}

void MetaRegistry::registerRootPackage(const Package& package) {
  if (findRootPackage(package.getName()))
    report::cannotAddSecondObject(u"The root package " + package.getName());
  rootPackages_.push_back(package);
}

namespace {

void destroyMembers(const Class& type) {
  for (const Property& property : type.getOwnProperties()) property.destroy();
  for (const Operation& operation : type.getOwnOperations()) {
    for (const Argument& argument : operation.getArguments()) argument.destroy();
    operation.destroy();
  }
}

void destroyPackage(const Package& package) {
  for (const Package& inner : package.getPackages()) destroyPackage(inner);
  for (const Type& type : package.getTypes()) {
    if (auto* const asClass = dynamic_cast<Class::Impl*>(type.impl())) destroyMembers(Class(asClass));
    if (auto* const asEnum = dynamic_cast<Enum::Impl*>(type.impl())) {
      for (const EnumLiteral& literal : Enum(asEnum).getLiterals()) literal.destroy();
    }
    type.destroy();
  }
  package.destroy();
}

}  // namespace

void MetaRegistry::unregisterRootPackage(const std::u16string& name) {
  const Package package = findRootPackage(name);
  if (!package) report::noSuchType(name);
  destroyPackage(package);
  std::erase(rootPackages_, package);
  std::erase_if(types_, [](const auto& entry) { return !entry.second.isAlive(); });
}

MetaRegistry::Update::Update(MetaRegistry& registry)
    : registry_(registry),
      lock_(registry.mutex_),
      types_(registry.types_),
      rootPackages_(registry.rootPackages_),
      serializers_([] {
        const PropertySerializerRegistry& serializers = PropertySerializerRegistry::getInstance();
        const std::scoped_lock lock(serializers.mutex_);
        return serializers.entries_;
      }()),
      thawer_(Model::Freezer::thaw(registry.model_)),
      transaction_(registry.model_.impl()->beginTransaction(true)) {}

MetaRegistry::Update::~Update() {
  if (!transaction_.isOpen()) return;
  registry_.types_.swap(types_);
  registry_.rootPackages_.swap(rootPackages_);
  PropertySerializerRegistry& serializers = PropertySerializerRegistry::getInstance();
  const std::scoped_lock lock(serializers.mutex_);
  serializers.entries_.swap(serializers_);
}

void MetaRegistry::Update::commit() {
  std::vector<ModelElement> made = registry_.unpinnedElements();
  transaction_.commit();
  const bool isPublished = !registry_.model_.impl()->hasOpenTransaction();
  if (isPublished) registry_.pin(std::move(made));
}

}  // namespace meta
}  // namespace lx::base
