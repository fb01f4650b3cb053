#include "platform/foundation/meta/MetaRegistry.h"

#include <algorithm>
#include <utility>

#include <boost/lexical_cast.hpp>
#include <boost/uuid/uuid_io.hpp>

#include "platform/foundation/ModelImpl.h"
#include "platform/foundation/Report.h"
#include "platform/foundation/meta/AbstractMetaPackage.h"
#include "platform/text/Convert.h"

class hvArray;

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

/// Makes the types that the foundation brings itself: package lx.base with its classes and primitives.
class StandardPackage : public AbstractMetaPackage {
 public:
  StandardPackage(const Model& model, MetaRegistry::Names& types, std::vector<Package>& rootPackages)
      : model_(model), types_(types) {
    const Package lx = make<Package>("lx");
    const Package base = make<Package>("base");
    addPackage(lx, base);
    const Class root = addClass<ModelElement>(base, "ModelElement", Class());
    root.impl()->uuid = ModelElement::Uuid();
    addClass<Model>(base, "Model", Class());
    addMetaClasses(base, root);
    addPrimitive<std::u16string>(base, "String", u"std::u16string");
    addPrimitive<std::string>(base, "StdString", u"std::string");
    addPrimitive<bool>(base, "Boolean", u"bool");
    addPrimitive<std::int32_t>(base, "Integer", u"std::int32_t");
    addPrimitive<boost::uuids::uuid>(base, "UUID", u"boost::uuids::uuid");
    addType<hvArray*>(base, "HvArray", u"hvArray");
    rootPackages.push_back(lx);
  }

 private:
  void addMetaClasses(const Package& base, const Class& root) {
    const Package meta = make<Package>("meta");
    addPackage(base, meta);
    const Class named = addClass<NamedElement>(meta, "NamedElement", root);
    const Class type = addClass<Type>(meta, "Type", named);
    const Class typed = addClass<TypedElement>(meta, "TypedElement", named);
    addClass<Package>(meta, "Package", named);
    addClass<Class>(meta, "Class", type);
    addClass<Enum>(meta, "Enum", type);
    addClass<EnumLiteral>(meta, "EnumLiteral", named);
    addClass<PrimitiveType>(meta, "PrimitiveType", type);
    addClass<Property>(meta, "Property", typed);
    addClass<Operation>(meta, "Operation", typed);
    addClass<Argument>(meta, "Argument", typed);
  }

  template <class Handle>
  Handle make(const char* name) const {
    const Handle handle(new typename Handle::Impl(model_, standardUuid(name)));
    handle.impl()->name = text::toUtf16(name);
    handle.impl()->notifyCreated();
    return handle;
  }

  template <class E>
  Class addClass(const Package& package, const char* name, const Class& super) {
    const Class type = make<Class>(name);
    type.impl()->uuid = standardUuid(name);
    type.impl()->setSuperclass(super);
    type.impl()->isAbstract = true;
    type.impl()->nativeType = &typeid(E);
    type.impl()->builderFactory = &makeNoBuilder;
    add(package, type);
    return type;
  }

  template <class T>
  PrimitiveType addType(const Package& package, const char* name, const char16_t* nativeName) {
    const PrimitiveType type = make<PrimitiveType>(name);
    type.impl()->nativeName = nativeName;
    type.impl()->nativeType = &typeid(T);
    add(package, type);
    types_[nativeName] = type;
    return type;
  }

  template <class T>
  void addPrimitive(const Package& package, const char* name, const char16_t* nativeName) {
    const PrimitiveType type = addType<T>(package, name, nativeName);
    PropertySerializerRegistry::getInstance().registerPropertySerializer(
        type.getQualifiedName(), u"", std::make_shared<const DefaultPropertySerializer<T>>());
  }

  void add(const Package& package, const Type& type) {
    AbstractMetaPackage::addType(package, type);
    types_[type.getName()] = type;
    types_[type.getQualifiedName()] = type;
  }

  const Model& model_;
  MetaRegistry::Names& types_;
};

}  // namespace

MetaRegistry::MetaRegistry() {
  PropertySerializerRegistry::getInstance();  // outlives this registry
  makeStandard();
}

/// Begin with a new model that has the types of the foundation and no others; an exception changes nothing.
void MetaRegistry::makeStandard() {
  Model model = Model::create();
  Names types;
  std::vector<Package> rootPackages;
  Transaction transaction = model.impl()->beginTransaction(true);
  const StandardPackage standard(model, types, rootPackages);
  std::vector<ModelElement> made = unpinnedElements(model);
  transaction.commit();
  Model::Freezer::freeze(model);
  pin(std::move(made));
  std::swap(model_, model);
  types_.swap(types);
  rootPackages_.swap(rootPackages);
}

/// Give this registry with a living model, whatever became of the former one.
MetaRegistry& MetaRegistry::standing() {
  if (!model_.isAlive()) makeStandard();
  return *this;
}

/// Give the elements that can't be shared by threads yet, with room for keeping them. Their identities are
/// made now, since being asked for one changes an element.
std::vector<ModelElement> MetaRegistry::unpinnedElements(const Model& model) {
  std::vector<ModelElement> result = model.impl()->elements();
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
  {
    PropertySerializerRegistry& serializers = PropertySerializerRegistry::getInstance();
    const std::scoped_lock lock(serializers.mutex_);
    std::erase_if(serializers.entries_, [&](const auto& entry) {
      const auto type = types_.find(entry.first.first);
      return type != types_.end() && !type->second.isAlive();
    });
  }
  std::erase_if(types_, [](const auto& entry) { return !entry.second.isAlive(); });
}

MetaRegistry::Update::Update(MetaRegistry& registry)
    : registry_(registry),
      lock_(registry.mutex_),
      types_(registry.standing().types_),
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
  std::vector<ModelElement> made = registry_.unpinnedElements(registry_.model_);
  transaction_.commit();
  const bool isPublished = !registry_.model_.impl()->hasOpenTransaction();
  if (isPublished) registry_.pin(std::move(made));
}

}  // namespace meta
}  // namespace lx::base
