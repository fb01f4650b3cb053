#include "platform/foundation/Report.h"

#include <cstdint>
#include <string>
#include <typeinfo>
#include <vector>

#include <boost/core/demangle.hpp>
#include <boost/uuid/uuid.hpp>

#include "platform/foundation/messages.h"
#include "platform/foundation/meta/Meta.h"
#include "platform/text/Convert.h"

namespace lx::base {

namespace report {

namespace {

std::u16string nameOf(const ModelElement& element) {
  return element ? element.impl()->getMetaClass().getQualifiedName() : std::u16string(u"null");
}

}  // namespace

void invalidValue(const std::u16string& subject, const std::u16string& cure) {
  throw lxb::messages::InvalidValue(subject, cure);
}

void invalidValue(const char* subject, const char* cure) {
  invalidValue(text::toUtf16(subject), text::toUtf16(cure));
}

void missingModel(const std::u16string& subject) {
  invalidValue(subject, u"the model is null or was destroyed; give one that is alive.");
}

void missingModel(const char* subject) {
  missingModel(text::toUtf16(subject));
}

void notWritable(const ModelElement::Impl& element, const std::u16string& what) {
  if (element.isProxy()) throw lxb::messages::CannotModifyProxy(what);
  if (!element.isAlive()) invalidValue(what, u"the element was destroyed; create another one.");
  invalidValue(what, u"the element's model is frozen; thaw it first.");
}

void cannotAddSecondObject(const ModelElement::Impl& owner, unsigned index) {
  cannotAddSecondObject(owner.nameOfProperty(index));
}

void cannotAddSecondObject(const std::u16string& place) {
  throw lxb::messages::CannotAddSecondObject(place);
}

void cannotAddNonExistentObject(const ModelElement::Impl& owner, unsigned index) {
  throw lxb::messages::CannotAddNonExistentObject(owner.nameOfProperty(index));
}

void cannotCreateCrossModelAssociation(const ModelElement::Impl& owner, unsigned index) {
  throw lxb::messages::CannotCreateCrossModelAssociation(owner.nameOfProperty(index));
}

void uniquenessConstraint(const ModelElement::Impl& owner, unsigned index, const std::u16string& key) {
  throw lxb::messages::UniquenessConstraint(owner.nameOfProperty(index), key);
}

void cannotAddIncompatibleTypes(const ModelElement::Impl& owner, unsigned index, const ModelElement& given,
                                const meta::Class& wanted) {
  throw lxb::messages::CannotAddIncompatibleTypes(owner.nameOfProperty(index), nameOf(given),
                                                  wanted.getQualifiedName());
}

void cannotSetReadOnlyProperty(const meta::Property& property) {
  throw lxb::messages::CannotSetReadOnlyProperty(property.getQualifiedName());
}

void noSuchType(const std::u16string& name) {
  throw lxb::messages::NoSuchType(name);
}

void cannotCast(const ModelElement& given, const meta::Class& wanted) {
  throw lxb::messages::CannotCastIncompatibleTypes(nameOf(given), wanted.getQualifiedName());
}

void changedWhileWalked(const ModelElement::Impl& owner, unsigned index) {
  const std::u16string name = owner.isAlive() ? owner.nameOfProperty(index) : u"A collection";
  invalidValue(name, u"the collection changed while it was walked; start again from its beginning.");
}
void walkedTooFar(const ModelElement::Impl& owner, unsigned index) {
  invalidValue(owner.nameOfProperty(index), u"the walk is at the end of the collection; stop there.");
}
void walkOfNothing() {
  invalidValue("CollectionIterator", "the iterator is of no collection; take that of one.");
}

}  // namespace report

namespace detail {

namespace {

template <class T>
bool isOneOrMany(const std::type_info& type, const char16_t* name, std::u16string& result) {
  if (type == typeid(T)) result = name;
  if (type == typeid(std::vector<T>)) result = std::u16string(u"a list of ") + name;
  return !result.empty();
}

/// Give the name that a type has in models, or else the one that it has in C++.
std::u16string nameOf(const std::type_info& type) {
  std::u16string name;
  const bool isKnown =
      isOneOrMany<std::u16string>(type, u"String", name) ||
      isOneOrMany<std::string>(type, u"StdString", name) || isOneOrMany<bool>(type, u"Boolean", name) ||
      isOneOrMany<std::int32_t>(type, u"Integer", name) ||
      isOneOrMany<ModelElement>(type, u"ModelElement", name) || isOneOrMany<Model>(type, u"Model", name) ||
      isOneOrMany<boost::uuids::uuid>(type, u"UUID", name);
  return isKnown ? name : text::toUtf16(boost::core::demangle(type.name()));
}

}  // namespace

void raiseBadValueCast(const std::type_info* given, const std::type_info& wanted) {
  throw lxb::messages::CannotCastIncompatibleTypes(given == nullptr ? u"an empty value" : nameOf(*given),
                                                   nameOf(wanted));
}

void raiseOtherClass(const ModelElement& given, meta::Class (*wanted)()) {
  report::cannotCast(given, wanted());
}

}  // namespace detail
}  // namespace lx::base
