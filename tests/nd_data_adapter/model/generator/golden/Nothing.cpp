// Generated from tests/nd_data_adapter/model/generator/small.yaml; do not edit.
#include "tests/nd_data_adapter/model/generator/small/Nothing.h"

#include <boost/lexical_cast.hpp>
#include <boost/uuid/uuid_io.hpp>
#include "platform/foundation/CreateElement.h"
#include "tests/nd_data_adapter/model/generator/small/MetaPackageSmall.h"

namespace shop {

// The handle

Nothing::Nothing(Impl* impl) noexcept : ::lx::base::ModelElement(impl) {}
Nothing::Impl* Nothing::impl() const noexcept { return static_cast<Impl*>(::lx::base::ModelElement::impl()); }

::lx::base::meta::Class Nothing::metaClass() {
  return ::shop::detail::MetaPackageSmall::getInstance().getClass(Uuid());
}

const ::boost::uuids::uuid& Nothing::Uuid() {
  static const ::boost::uuids::uuid uuid = ::boost::lexical_cast<::boost::uuids::uuid>("5a8a29a0-3c02-3a4e-9d0b-6a0f7b1f0a05");
  return uuid;
}

Nothing Nothing::create(const ::lx::base::Model& model, const ::boost::uuids::uuid& uuid) {
  return ::lx::base::detail::createElement<::shop::Nothing>("shop.Nothing.create", model, uuid);
}

// The element

struct Nothing::Impl::Fields {
  using Table = ::lx::base::FieldTable<>;
};

Nothing::Impl::Impl(const ::lx::base::Model& model, const ::boost::uuids::uuid& uuid)
    : ::lx::base::ModelElement::Impl(model, uuid) {}

Nothing::Impl::~Impl() = default;

::lx::base::meta::Class Nothing::Impl::getMetaClass() const { return Nothing::metaClass(); }

bool Nothing::Impl::hasPropertyValue(const ::lx::base::meta::Property& property) const {
  bool result = false;
  return Fields::Table::has(*this, property, result) ? result : ::lx::base::ModelElement::Impl::hasPropertyValue(property);
}

::lx::base::Value Nothing::Impl::getPropertyValue(const ::lx::base::meta::Property& property) const {
  ::lx::base::Value result;
  return Fields::Table::get(*this, property, result) ? result : ::lx::base::ModelElement::Impl::getPropertyValue(property);
}

void Nothing::Impl::setPropertyValue(const ::lx::base::meta::Property& property, const ::lx::base::Value& value) {
  if (!Fields::Table::set(*this, property, value)) ::lx::base::ModelElement::Impl::setPropertyValue(property, value);
}

void Nothing::Impl::doDestroy(::lx::base::ModelElement::Impl::ContainedVisitor& visitor) {
  ::lx::base::ModelElement::Impl::doDestroy(visitor);
  Fields::Table::visitContained(*this, visitor);
}

void Nothing::Impl::basicDisassociateAll() noexcept {
  Fields::Table::letGo(*this);
  ::lx::base::ModelElement::Impl::basicDisassociateAll();
}

::std::unique_ptr<::lx::base::ModelElement::Impl::Storage> Nothing::Impl::createStorage() const {
  return ::std::make_unique<Storage>();
}

void Nothing::Impl::copyValue(unsigned index, ::lx::base::ModelElement::Impl::Storage& to, ::lx::base::ModelElement::Impl::Storage* from) {
  ::lx::base::ModelElement::Impl::copyValue(index, to, from);
  Fields::Table::copyValue(index, *this, static_cast<Storage&>(to), static_cast<Storage*>(from));
}

void Nothing::Impl::copyStateFromStorage(::lx::base::ModelElement::Impl::Storage& storage) noexcept {
  Fields::Table::restore(*this, static_cast<Storage&>(storage));
  ::lx::base::ModelElement::Impl::copyStateFromStorage(storage);
}

// Its storage

Nothing::Impl::Storage::Storage() = default;
Nothing::Impl::Storage::~Storage() = default;

void Nothing::Impl::Storage::revertUnchanged(const ::lx::base::ModelElement::Impl& element) {
  Fields::Table::revertUnchanged(static_cast<const Impl&>(element), *this);
  ::lx::base::ModelElement::Impl::Storage::revertUnchanged(element);
}

::lx::base::Value Nothing::Impl::Storage::getOldValue(unsigned index) const {
  const ::lx::base::Value value = Fields::Table::oldValue(index, static_cast<const Impl&>(*element()), *this);
  return value.isEmpty() ? ::lx::base::ModelElement::Impl::Storage::getOldValue(index) : value;
}

// Its builder

struct Nothing::Impl::BuilderImpl::Fields {
  using Table = ::lx::base::BuilderTable<
      Impl>;
};

bool Nothing::Impl::BuilderImpl::doSetOrAdd(const ::lx::base::meta::Property& property, const ::lx::base::Value& value) {
  return Fields::Table::setOrAdd(*this, property, value) || ::lx::base::ModelElement::Impl::BuilderImpl::doSetOrAdd(property, value);
}

bool Nothing::Impl::BuilderImpl::doSetOrAdd(const ::lx::base::meta::Property& property, const ::std::shared_ptr<::lx::base::ModelElement::Builder>& child) {
  return Fields::Table::setOrAdd(*this, property, child) || ::lx::base::ModelElement::Impl::BuilderImpl::doSetOrAdd(property, child);
}

void Nothing::Impl::BuilderImpl::applyTo(Impl& element) const {
  ::lx::base::ModelElement::Impl::BuilderImpl::applyTo(element);
  Fields::Table::applyTo(*this, element);
}

void Nothing::Impl::BuilderImpl::createChildren(Impl& element, ::lx::base::ModelElement::Builder::Orchestrator& orchestrator) const {
  ::lx::base::ModelElement::Impl::BuilderImpl::createChildren(element, orchestrator);
  Fields::Table::createChildren(*this, element, orchestrator);
}

Nothing::Builder::Builder(const ::lx::base::Model& model) { ::lx::base::ModelElement::Builder::setModel(model); }
Nothing::Builder::~Builder() = default;

::lx::base::meta::Class Nothing::Builder::getMetaClass() const { return Nothing::metaClass(); }

Nothing Nothing::Builder::create(const ::boost::uuids::uuid& uuid) {
  return Nothing(static_cast<Nothing::Impl*>(::lx::base::ModelElement::Builder::create(uuid).impl()));
}

// Its query

Nothing::Constrainables::Constrainables(const ::lx::base::Model& searched_)
    : ::lx::base::query::AbstractQuery(searched_) {
  addCondition([](const ::lx::base::ModelElement::Impl& element_) { return dynamic_cast<const Impl*>(&element_) != nullptr; });
}

Nothing::Constrainables::~Constrainables() = default;

}  // namespace shop
