#include "platform/foundation/ModelElement.h"

#include <utility>

#include "platform/foundation/ContainmentSlot.h"
#include "platform/foundation/Identity.h"
#include "platform/foundation/ModelAccess.h"
#include "platform/foundation/ModelImpl.h"
#include "platform/foundation/ReferringField.h"
#include "platform/foundation/Report.h"
#include "platform/foundation/meta/Meta.h"
#include "platform/foundation/meta/MetaRegistry.h"

namespace lx::base {

// The handle

void ModelElement::raiseNull(const char* operation) {
  report::invalidValue(operation, "the handle is null; give it an element first.");
}

void ModelElement::addRef() const noexcept {
  if (impl_ != nullptr) impl_->addRef();
}

void ModelElement::removeRef() const noexcept {
  if (impl_ != nullptr) impl_->removeRef();
}

Model ModelElement::getModel() const {
  return self("ModelElement.getModel").getModel();
}
meta::Class ModelElement::getMetaClass() const {
  return self("ModelElement.getMetaClass").getMetaClass();
}
boost::uuids::uuid ModelElement::identifier() const {
  return self("ModelElement.identifier").identifier();
}
ModelElement ModelElement::container() const {
  return ModelElement(self("ModelElement.container").container());
}
std::vector<ModelElement> ModelElement::referrers() const {
  return self("ModelElement.referrers").referrers();
}
void ModelElement::destroy() const {
  self("ModelElement.destroy").destroy();
}

Value ModelElement::getPropertyValue(const std::u16string& name) const {
  Impl& element = self("ModelElement.getPropertyValue");
  const meta::Property property = element.getMetaClass().property(name);
  property.checkPublicGetter();
  return element.getPropertyValue(property);
}

bool ModelElement::hasPropertyValue(const std::u16string& name) const {
  Impl& element = self("ModelElement.hasPropertyValue");
  const meta::Property property = element.getMetaClass().property(name);
  property.checkPublicGetter();
  return element.hasPropertyValue(property);
}

void ModelElement::setPropertyValue(const std::u16string& name, const Value& value) const {
  Impl& element = self("ModelElement.setPropertyValue");
  element.setPropertyValue(element.getMetaClass().property(name), value);
}

Value ModelElement::invoke(const std::u16string& operation, const std::vector<Value>& arguments) const {
  Impl& element = self("ModelElement.invoke");
  const ModelElement held(*this);  // the operation may come to let go of this handle
  const meta::Operation found = element.getMetaClass().operation(operation);
  found.checkPublic();
  return element.invoke(found, arguments);
}

// The element

Model ModelElement::Impl::getModel() const {
  return Model(isAlive() ? model_ : nullptr);
}
meta::Class ModelElement::Impl::getMetaClass() const {
  return ModelElement::metaClass();
}

void ModelElement::Impl::removeRef() const noexcept {
  if (isPinned() || --references_ != 0) return;
  delete this;
}

void ModelElement::Impl::invalidate() noexcept {
  flags_ &= ~(Alive | Proxy);
  model_ = nullptr;
  storage_ = nullptr;
  slot_ = nullptr;
}

bool ModelElement::Impl::hasPropertyValue(const meta::Property& property) const {
  report::noSuchType(getMetaClass().getQualifiedName() + u"." + property.getName());
}

Value ModelElement::Impl::getPropertyValue(const meta::Property& property) const {
  report::noSuchType(getMetaClass().getQualifiedName() + u"." + property.getName());
}

void ModelElement::Impl::setPropertyValue(const meta::Property& property, const Value&) {
  report::noSuchType(getMetaClass().getQualifiedName() + u"." + property.getName());
}

bool ModelElement::Impl::isPropertyOfClass(const meta::Property& property) const {
  if (!property) return false;
  // Every reflective access asks this: a handle for each class on the way would cost more than the
  // comparison.
  const meta::Class ofElement = getMetaClass();
  const meta::Class::Impl* each = ofElement.impl();
  while (each != nullptr && each != property.impl()->owner) each = each->superclass;
  return each != nullptr;
}

Value ModelElement::Impl::invoke(const meta::Operation& operation, const std::vector<Value>& arguments) {
  return operation.invoke(*this, arguments);
}

boost::uuids::uuid ModelElement::Impl::identifier() const {
  if ((flags_ & Identified) == 0 && isAlive()) {
    const boost::uuids::uuid fresh = detail::randomIdentity();
    model_->identify(fresh,
                     const_cast<Impl&>(*this));  // being asked for its identity does not change an element
    uuid_ = fresh;
    flags_ |= Identified;
  }
  return uuid_;
}

void ModelElement::Impl::doDestroy(ContainedVisitor&) {}

void ModelElement::Impl::inverseAdd(detail::Link& link) noexcept {
  link.previous = nullptr;
  link.next = incoming_;
  if (incoming_ != nullptr) incoming_->previous = &link;
  incoming_ = &link;
}

void ModelElement::Impl::inverseRemove(detail::Link& link) noexcept {
  (link.previous == nullptr ? incoming_ : link.previous->next) = link.next;
  if (link.next != nullptr) link.next->previous = link.previous;
}

bool ModelElement::Impl::inverseContainsProxyTo(unsigned, const boost::uuids::uuid&) const {
  return false;
}
void ModelElement::Impl::notifyDestroying() {
  ModelAccess::tell(*this);
}
void ModelElement::Impl::disassociateIncoming() {
  detail::endReferences(*this);
}
void ModelElement::Impl::convertReferencesToProxies() {
  if (slot_ != nullptr) slot_->setApart(*this);
  detail::referencesBecomeProxies(*this);
}
void ModelElement::Impl::aboutToDestroy() {}
void ModelElement::Impl::didCreate() {}
void ModelElement::Impl::convertToProxy() {
  checkAlive("ModelElement.convertToProxy");
  if (isProxy()) return;
  Transaction transaction = model_->beginTransaction(false);
  static_cast<void>(identifier());
  const bool isEmpty = ModelAccess::destroyContents(*this);
  checkAlive("ModelElement.convertToProxy");
  if (!isProxy()) {  // else what was destroyed has done it
    if (!isEmpty) {
      report::invalidValue("ModelElement.convertToProxy",
                           "an element that it contains is being destroyed; convert it afterwards.");
    }
    convertReferencesToProxies();
    becomeProxy();
  }
  transaction.commit();
}

void ModelElement::Impl::becomeProxy() {
  const std::uint64_t referring = detail::loseReferences(*this);
  const std::unique_ptr<Storage> zeros = createStorage();
  for (const meta::Property& property : getMetaClass().getProperties()) {
    const unsigned index = property.getIndex();
    const bool isEmpty = property.traits().isContained || (referring >> index & 1U) != 0;
    if (isEmpty || index == 0) continue;
    notifyModifying(index);
    zeros->mask_ |= std::uint64_t{1} << index;
  }
  notifyModifying(LifeIndex);
  copyStateFromStorage(*zeros);
  flags_ |= Proxy;
}

ModelElement ModelElement::Impl::resolve() {
  checkAlive("ModelElement.resolve");
  const ModelElement keep(this), loaded = detail::loadedElement(keep);
  if (!loaded) return loaded;
  Transaction transaction = model_->beginTransaction(false);
  if (slot_ == nullptr || !slot_->resolveProxy(keep)) detail::resolveReferences(*this, *loaded.impl());
  transaction.commit();
  return loaded;
}

std::unique_ptr<ModelElement::Impl::Changes> ModelElement::Impl::createChanges(const Storage& storage) const {
  return std::make_unique<Changes>(*this, storage);
}

std::unique_ptr<ModelElement::Impl::Storage> ModelElement::Impl::createStorage() const {
  return std::make_unique<Storage>();
}

void ModelElement::Impl::copyValue(unsigned index, Storage& to, Storage* from) {
  if (index == ContainerIndex) to.setOldContainer(from == nullptr ? slot_ : from->oldSlot_);
  if (index == LifeIndex) to.oldLife_ = from == nullptr ? flags_ & (Alive | Proxy) : from->oldLife_;
}

void ModelElement::Impl::copyStateFromStorage(Storage& storage) noexcept {
  if (storage.isChanged(LifeIndex)) flags_ = (flags_ & ~(Alive | Proxy)) | storage.oldLife_;
  if (storage.isChanged(ContainerIndex)) slot_ = storage.oldSlot_;
}

meta::Property ModelElement::Impl::getPropertyByIndex(unsigned index) const {
  return getMetaClass().propertyByIndex(index);
}

void ModelElement::Impl::notifyCreated() {
  comeIntoModel();
  didCreate();
}

void ModelElement::Impl::notifyCreatedAsProxy() {
  comeIntoModel();
  becomeProxy();
}

void ModelElement::Impl::comeIntoModel() {
  if (model_ == nullptr || !model_->isAlive())
    report::missingModel(getMetaClass().getQualifiedName() + u".create");
  if (!uuid_.is_nil()) model_->identify(uuid_, *this);
  ModelAccess::link(*this);
}

void ModelElement::Impl::saveOldValue(unsigned index) {
  detail::Level& level = *model_->top_;
  const bool here = storage_ != nullptr && storage_->level_ == &level;
  if (here) {
    copyValue(index, *storage_, nullptr);
  } else {
    std::unique_ptr<Storage> fresh = createStorage();
    fresh->level_ = &level;
    fresh->element_ = this;
    copyValue(index, *fresh, nullptr);
    fresh->outer_ = storage_;
    fresh->next_ = level.saved;
    storage_ = fresh.release();
    level.saved = storage_;
    addRef();
  }
  storage_->mask_ |= std::uint64_t{1} << index;
}

bool ModelElement::Impl::isLogged(unsigned index) const noexcept {
  return model_ != nullptr && model_->top_ != nullptr && storage_ != nullptr &&
         storage_->level_ == model_->top_ && storage_ != &model_->top_->created && storage_->isChanged(index);
}

bool ModelElement::Impl::isMovedInOpenTransaction() const noexcept {
  for (const Storage* storage = storage_; storage != nullptr; storage = storage->outer_) {
    if (storage->element_ != nullptr && (storage->isChanged(ContainerIndex) || storage->isChanged(LifeIndex)))
      return true;
  }
  return false;
}

void ModelElement::Impl::destroy() {
  ModelAccess::destroy(*this);
}

ModelElement::Impl* ModelElement::Impl::container() const noexcept {
  return slot_ == nullptr || !isAlive() ? nullptr : &slot_->owner();
}

void ModelElement::Impl::_setContainedByThis(Impl& child, detail::ContainmentSlot& slot) {
  child.notifyModifying(ContainerIndex);
  child.basicSetContainer(&slot);
}

void ModelElement::Impl::_inverseAddThis(detail::Link& link) noexcept {
  if (link.number == 0) link.number = ++model_->links_;
  link.target.impl()->inverseAdd(link);
}

bool ModelElement::Impl::_inverseContainsThis(const Impl& target, unsigned index) const noexcept {
  const detail::Link* link = target.incoming_;
  while (link != nullptr && (&link->field->owner() != this || link->field->index() != index))
    link = link->next;
  return link != nullptr;
}

std::vector<ModelElement> ModelElement::Impl::referrers() const {
  return detail::referrersOf(*this);
}

std::u16string ModelElement::Impl::nameOfProperty(unsigned index) const {
  return getMetaClass().propertyByIndex(index).getQualifiedName();
}

void ModelElement::Impl::raiseNotWritable(unsigned index) const {
  report::notWritable(*this, nameOfProperty(index));
}

void ModelElement::Impl::checkAlive(const char* operation) const {
  if (!isAlive()) report::invalidValue(operation, "the element was destroyed; create another one.");
}

// What else belongs to it

ModelElement::Impl::ContainedVisitor::~ContainedVisitor() = default;
void ModelElement::Impl::ContainedVisitor::visitReferring(detail::ReferringField&) {}
ModelElement::Impl::Storage::~Storage() = default;

void ModelElement::Impl::Storage::setOldContainer(detail::ContainmentSlot* slot) noexcept {
  oldSlot_ = slot;
}

void ModelElement::Impl::Storage::revertUnchanged(const Impl& element) {
  if (isChanged(ContainerIndex) && oldSlot_ == element.slot_) clearChanged(ContainerIndex);
}

Value ModelElement::Impl::Storage::getOldValue(unsigned) const {
  return {};
}

ModelElement::Impl::Changes::Changes(const Impl& element, const Storage& storage)
    : element_(const_cast<Impl*>(&element)) {  // handles are shallow
  for (unsigned index = LifeIndex + 1; index < ContainerIndex; ++index) {
    if (!storage.isChanged(index)) continue;
    properties_.push_back(index);
    oldValues_.push_back(storage.getOldValue(index));
  }
}

Value ModelElement::Impl::Changes::oldValue(unsigned index) const {
  for (std::size_t at = 0; at < properties_.size(); ++at) {
    if (properties_[at] == index) return oldValues_[at];
  }
  return {};
}

}  // namespace lx::base
