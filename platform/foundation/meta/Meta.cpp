#include "platform/foundation/meta/Meta.h"

#include <algorithm>

#include <boost/uuid/name_generator_md5.hpp>

#include "platform/foundation/Builder.h"
#include "platform/foundation/Report.h"
#include "platform/foundation/meta/MetaImpl.h"
#include "platform/foundation/meta/MetaRegistry.h"
#include "platform/text/Compare.h"
#include "platform/text/Convert.h"

namespace lx::base::meta {

namespace {

/// Give what is behind a handle of the meta model.
template <class Handle>
auto& held(const Handle& handle) {
  if (!handle) report::invalidValue("lx.base.meta", "the handle is null; look the element up first.");
  return *handle.impl();
}

template <class Handle, class ImplT>
std::vector<Handle> handles(const std::vector<ImplT*>& elements) {
  return std::vector<Handle>(elements.begin(), elements.end());
}

std::u16string joined(const std::u16string& front, const std::u16string& name) {
  return front.empty() ? name : front + u"." + name;
}

std::u16string qualified(const Package::Impl* package) {
  return package == nullptr ? std::u16string() : joined(qualified(package->parent), package->name);
}

std::u16string qualified(const Class::Impl* owner, const std::u16string& member) {
  return joined(owner == nullptr ? std::u16string() : owner->getQualifiedName(), member);
}

}  // namespace

#define LX_META_HANDLE(Name, Super)                                      \
  Name::Name(Impl* impl) noexcept : Super(impl) {}                       \
  Name::Impl* Name::impl() const noexcept {                              \
    return static_cast<Impl*>(ModelElement::impl());                     \
  }                                                                      \
  Class Name::metaClass() {                                              \
    return MetaRegistry::getInstance().getClass(u"lx.base.meta." #Name); \
  }                                                                      \
  const boost::uuids::uuid& Name::Uuid() {                               \
    static const boost::uuids::uuid uuid = standardUuid(#Name);          \
    return uuid;                                                         \
  }

LX_META_HANDLE(NamedElement, ModelElement)
LX_META_HANDLE(Package, NamedElement)
LX_META_HANDLE(Type, NamedElement)
LX_META_HANDLE(PrimitiveType, Type)
LX_META_HANDLE(EnumLiteral, NamedElement)
LX_META_HANDLE(Enum, Type)
LX_META_HANDLE(TypedElement, NamedElement)
LX_META_HANDLE(Property, TypedElement)
LX_META_HANDLE(Argument, TypedElement)
LX_META_HANDLE(Operation, TypedElement)
LX_META_HANDLE(Class, Type)

#undef LX_META_HANDLE

std::u16string NamedElement::getName() const {
  return held(*this).name;
}
std::u16string NamedElement::getDescription() const {
  return held(*this).description;
}

Package Package::getParent() const {
  return Package(held(*this).parent);
}
std::u16string Package::getSchema() const {
  return held(*this).schema;
}
std::vector<Package> Package::getPackages() const {
  return handles<Package>(held(*this).packages);
}
std::vector<Type> Package::getTypes() const {
  return handles<Type>(held(*this).types);
}
std::u16string Package::getQualifiedName() const {
  return qualified(&held(*this));
}

Package Type::getPackage() const {
  return Package(held(*this).package);
}
std::u16string Type::getQualifiedName() const {
  return held(*this).getQualifiedName();
}
bool Type::isHidden() const {
  return held(*this).isHidden;
}

std::u16string PrimitiveType::getNativeName() const {
  return held(*this).nativeName;
}
std::int32_t EnumLiteral::getValue() const {
  return held(*this).value;
}
std::vector<EnumLiteral> Enum::getLiterals() const {
  return handles<EnumLiteral>(held(*this).literals);
}

Type Enum::getUnderlyingType() const {
  return Type(held(*this).underlyingType);
}

Type TypedElement::getType() const {
  return held(*this).getType();
}
std::int32_t TypedElement::getLower() const {
  return held(*this).lower;
}
bool TypedElement::isUniqueInQualification() const {
  return held(*this).isUniqueInQualification;
}
std::int32_t TypedElement::getUpper() const {
  return held(*this).upper;
}
bool TypedElement::isOrdered() const {
  return held(*this).isOrdered;
}

unsigned Property::getIndex() const {
  return held(*this).index;
}
ValueFlags Property::getValueFlags() const {
  return held(*this).flags;
}
const Traits& Property::traits() const {
  return held(*this).traits;
}
boost::optional<std::u16string> Property::getDefaultText() const {
  return held(*this).defaultText;
}
std::u16string Property::getKey() const {
  return held(*this).key;
}
Class Property::getOwner() const {
  return Class(held(*this).owner);
}

std::u16string Property::getQualifiedName() const {
  const Impl& property = held(*this);
  return qualified(property.owner, property.name);
}

void Property::checkPublicGetter() const {
  if (traits().hasPublicGetter) return;
  report::invalidValue(getQualifiedName(), u"the property is not public; ask an operation of its class.");
}

void Property::checkSettable() const {
  const Traits& what = traits();
  if (what.isReadOnly || what.isDerived || !what.hasPublicSetter) report::cannotSetReadOnlyProperty(*this);
}

void Property::checkSettable(const ModelElement::Impl& element) const {
  if (!element.isAlive() || element.isProxy()) report::notWritable(element, getQualifiedName());
  checkSettable();
}

bool Argument::isOut() const {
  return held(*this).isOut;
}

std::vector<Argument> Operation::getArguments() const {
  return handles<Argument>(held(*this).arguments);
}
bool Operation::isStatic() const {
  return held(*this).isStatic;
}
bool Operation::isAbstract() const {
  return held(*this).isAbstract;
}
bool Operation::isPublic() const {
  return held(*this).isPublic;
}
Class Operation::getOwner() const {
  return Class(held(*this).owner);
}
bool Operation::hasInvoker() const {
  return held(*this).invoker != nullptr;
}

std::u16string Operation::getQualifiedName() const {
  const Impl& operation = held(*this);
  return qualified(operation.owner, operation.name);
}

void Operation::checkPublic() const {
  if (isPublic()) return;
  report::invalidValue(getQualifiedName(), u"the operation is not public; call a public one of its class.");
}

Value Operation::invoke(ModelElement::Impl& self, const std::vector<Value>& arguments) const {
  const Impl& operation = held(*this);
  if (operation.invoker == nullptr) {
    report::invalidValue(getQualifiedName(),
                         u"the operation can't be called by reflection; call it natively.");
  }
  if (arguments.size() != operation.arguments.size()) {
    report::invalidValue(getQualifiedName(),
                         u"the operation takes " + text::toUtf16(std::to_string(operation.arguments.size())) +
                             u" arguments, not " + text::toUtf16(std::to_string(arguments.size())) + u".");
  }
  if (!self.getMetaClass().isSubclassOf(getOwner())) {
    report::cannotCast(ModelElement(&self), getOwner());
  }
  self.checkAlive(text::toUtf8(getQualifiedName()).c_str());
  return operation.invoker(self, arguments);
}

boost::uuids::uuid Class::getUuid() const {
  return held(*this).uuid;
}
Class Class::getSuperclass() const {
  return Class(held(*this).superclass);
}
bool Class::isAbstract() const {
  return held(*this).isAbstract;
}

bool Class::isSubclassOf(const Class& other) const {
  for (const Impl* each = impl(); each != nullptr; each = each->superclass) {
    if (each == other.impl()) return true;
  }
  return false;
}

std::vector<Property> Class::getOwnProperties() const {
  return handles<Property>(held(*this).properties);
}
std::vector<Operation> Class::getOwnOperations() const {
  return handles<Operation>(held(*this).operations);
}

std::vector<Property> Class::getProperties() const {
  const Class super = getSuperclass();
  std::vector<Property> result = super ? super.getProperties() : std::vector<Property>();
  for (const Property& own : getOwnProperties()) result.push_back(own);
  return result;
}

Property Class::property(const std::u16string& name) const {
  const Property::Impl* const found = held(*this).findProperty(name);
  if (found == nullptr) report::noSuchType(joined(getQualifiedName(), name));
  return Property(const_cast<Property::Impl*>(found));  // handles are shallow
}

Operation Class::operation(const std::u16string& name) const {
  const Operation::Impl* const found = held(*this).findOperation(name);
  if (found == nullptr) report::noSuchType(joined(getQualifiedName(), name));
  return Operation(const_cast<Operation::Impl*>(found));
}

Property Class::propertyByIndex(unsigned index) const {
  for (const Impl* each = &held(*this); each != nullptr; each = each->superclass) {
    const auto found = std::find_if(each->properties.begin(), each->properties.end(),
                                    [&](const Property::Impl* property) { return property->index == index; });
    if (index != 0 && found != each->properties.end()) return Property(*found);
  }
  report::noSuchType(joined(getQualifiedName(), u"#" + text::toUtf16(std::to_string(index))));
}

// What is behind the handles

boost::uuids::uuid standardUuid(std::string_view name) {
  return boost::uuids::name_generator_md5(ModelElement::Uuid())(name.data(), name.size());
}

Class Package::Impl::getMetaClass() const {
  return Package::metaClass();
}
Class PrimitiveType::Impl::getMetaClass() const {
  return PrimitiveType::metaClass();
}
Class EnumLiteral::Impl::getMetaClass() const {
  return EnumLiteral::metaClass();
}
Class Enum::Impl::getMetaClass() const {
  return Enum::metaClass();
}
Class Property::Impl::getMetaClass() const {
  return Property::metaClass();
}
Class Argument::Impl::getMetaClass() const {
  return Argument::metaClass();
}
Class Operation::Impl::getMetaClass() const {
  return Operation::metaClass();
}
Class Class::Impl::getMetaClass() const {
  return Class::metaClass();
}

std::u16string Type::Impl::getQualifiedName() const {
  return joined(qualified(package), name);
}

void Package::Impl::basicDisassociateAll() noexcept {
  parent = nullptr;
  packages.clear();
  types.clear();
}

void Enum::Impl::basicDisassociateAll() noexcept {
  literals.clear();
  underlyingType = nullptr;
  Type::Impl::basicDisassociateAll();
}

void Property::Impl::basicDisassociateAll() noexcept {
  owner = nullptr;
  TypedElement::Impl::basicDisassociateAll();
}

void Operation::Impl::basicDisassociateAll() noexcept {
  owner = nullptr;
  arguments.clear();
  TypedElement::Impl::basicDisassociateAll();
}

void Class::Impl::basicDisassociateAll() noexcept {
  superclass = nullptr;
  properties.clear();
  operations.clear();
  Type::Impl::basicDisassociateAll();
}

void Class::Impl::addProperty(Property::Impl& property) {
  property.owner = this;
  properties.push_back(&property);
}

void Class::Impl::addOperation(Operation::Impl& operation) {
  operation.owner = this;
  operations.push_back(&operation);
}

namespace {

/// Find a member by name. A class has so few that comparing the names costs less than hashing one of them.
template <class T>
const T* findByName(const std::vector<T*>& members, const std::u16string& name) noexcept {
  for (const T* member : members) {
    if (text::equal(member->name, name)) return member;
  }
  return nullptr;
}

}  // namespace

const Property::Impl* Class::Impl::findProperty(const std::u16string& wanted) const noexcept {
  const Property::Impl* found = nullptr;
  for (const Impl* each = this; each != nullptr && found == nullptr; each = each->superclass) {
    found = findByName(each->properties, wanted);
  }
  return found;
}

const Operation::Impl* Class::Impl::findOperation(const std::u16string& wanted) const noexcept {
  const Operation::Impl* found = nullptr;
  for (const Impl* each = this; each != nullptr && found == nullptr; each = each->superclass) {
    found = findByName(each->operations, wanted);
  }
  return found;
}

std::shared_ptr<const AbstractOwnedCollection> Class::Impl::instantiateCollection(
    ModelElement::Impl& owner, const Property& property) const {
  return collectionFactory == nullptr ? nullptr : collectionFactory(owner, property);
}

std::unique_ptr<ModelElement::Builder> makeNoBuilder(const Model&) {
  return nullptr;
}

std::unique_ptr<ModelElement::Builder> Class::Impl::instantiateBuilder(const Model& model) const {
  return builderFactory == nullptr ? nullptr : builderFactory(model);
}

}  // namespace lx::base::meta
