// Generated from tests/nd_data_adapter/model/generator/small.yaml; do not edit.
#include "tests/nd_data_adapter/model/generator/small/Article.h"

#include <boost/lexical_cast.hpp>
#include <boost/uuid/uuid_io.hpp>
#include "platform/foundation/CreateElement.h"
#include "tests/nd_data_adapter/model/generator/small/MetaPackageSmall.h"

namespace shop::stock {

// The handle

Article::Article(Impl* impl) noexcept : ::lx::base::ModelElement(impl) {}
Article::Impl* Article::impl() const noexcept { return static_cast<Impl*>(::lx::base::ModelElement::impl()); }

::lx::base::meta::Class Article::metaClass() {
  return ::shop::detail::MetaPackageSmall::getInstance().getClass(Uuid());
}

const ::boost::uuids::uuid& Article::Uuid() {
  static const ::boost::uuids::uuid uuid = ::boost::lexical_cast<::boost::uuids::uuid>("5a8a29a0-3c02-3a4e-9d0b-6a0f7b1f0a03");
  return uuid;
}

Article Article::create(const ::lx::base::Model& model, const ::boost::uuids::uuid& uuid) {
  return ::lx::base::detail::createElement<::shop::stock::Article>("shop.stock.Article.create", model, uuid);
}

::std::int32_t Article::number() const {
  return static_cast<Impl&>(this->self("shop.stock.Article.Number")).getNumber();
}

void Article::setNumber(const ::std::int32_t& value) const {
  static_cast<Impl&>(this->self("shop.stock.Article.Number")).setNumber(value);
}

::std::u16string Article::label() const {
  return static_cast<Impl&>(this->self("shop.stock.Article.label")).getLabel();
}

void Article::setLabel(const ::std::u16string& value) const {
  static_cast<Impl&>(this->self("shop.stock.Article.label")).setLabel(value);
}

::shop::Size Article::size() const {
  return static_cast<Impl&>(this->self("shop.stock.Article.size")).getSize();
}

void Article::setSize(const ::shop::Size& value) const {
  static_cast<Impl&>(this->self("shop.stock.Article.size")).setSize(value);
}

bool Article::sold() const {
  return static_cast<Impl&>(this->self("shop.stock.Article.Sold")).getSold();
}

::std::int64_t Article::price() const {
  return static_cast<Impl&>(this->self("shop.stock.Article.Price")).getPrice();
}

::std::u16string Article::comment() const {
  return static_cast<Impl&>(this->self("shop.stock.Article.comment")).getComment();
}

void Article::setComment(const ::std::u16string& value) const {
  static_cast<Impl&>(this->self("shop.stock.Article.comment")).setComment(value);
}

bool Article::reduce(const ::std::int64_t& by, const ::std::u16string& because, const ::std::vector<::shop::stock::Article>& also, const ::std::vector<::shop::Size>& sizes) const {
  return ::lx::base::detail::checkedAlive(static_cast<Impl&>(this->self("shop.stock.Article.reduce")), "shop.stock.Article.reduce").reduce(by, because, also, sizes);
}

// The element

struct Article::Impl::Fields {
  using Table = ::lx::base::FieldTable<
      ::lx::base::Field<1, &Impl::number_, &Storage::number_, &Impl::setNumber>,
      ::lx::base::Field<2, &Impl::label_, &Storage::label_, &Impl::setLabel>,
      ::lx::base::Field<3, &Impl::size_, &Storage::size_, &Impl::setSize>,
      ::lx::base::Field<4, &Impl::sold_, &Storage::sold_, &Impl::setSold>,
      ::lx::base::Field<5, &Impl::price_, &Storage::price_>,
      ::lx::base::Field<6, &Impl::comment_, &Storage::comment_, &Impl::setComment>>;
};

Article::Impl::Impl(const ::lx::base::Model& model, const ::boost::uuids::uuid& uuid)
    : ::lx::base::ModelElement::Impl(model, uuid),
      number_(-1),
      label_(u"\"none\"\012"),
      size_(::shop::Size::Large),
      sold_(true),
      comment_(u"") {}

Article::Impl::~Impl() = default;

::std::int32_t Article::Impl::getNumber() const { return ::lx::base::detail::get(*this, number_); }
void Article::Impl::setNumber(const ::std::int32_t& value) {
  ::lx::base::detail::setKey(*this, number_, value, 1);
}
const ::std::int32_t& Article::Impl::keyOfNumber(const ::lx::base::ModelElement::Impl& element) noexcept {
  return static_cast<const Impl&>(element).number_.get();
}

::std::u16string Article::Impl::getLabel() const { return ::lx::base::detail::get(*this, label_); }
void Article::Impl::setLabel(const ::std::u16string& value) {
  ::lx::base::detail::setKey(*this, label_, value, 2);
}
const ::std::u16string& Article::Impl::keyOfLabel(const ::lx::base::ModelElement::Impl& element) noexcept {
  return static_cast<const Impl&>(element).label_.get();
}

::shop::Size Article::Impl::getSize() const { return ::lx::base::detail::get(*this, size_); }
void Article::Impl::setSize(const ::shop::Size& value) {
  ::lx::base::detail::set(*this, size_, value, 3);
}

bool Article::Impl::getSold() const { return ::lx::base::detail::get(*this, sold_); }
void Article::Impl::setSold(const bool& value) {
  ::lx::base::detail::set(*this, sold_, value, 4);
}

::std::int64_t Article::Impl::getPrice() const { return ::lx::base::detail::get(*this, price_); }

::std::u16string Article::Impl::getComment() const { return ::lx::base::detail::get(*this, comment_); }
void Article::Impl::setComment(const ::std::u16string& value) {
  ::lx::base::detail::set(*this, comment_, value, 6);
}

::lx::base::meta::Class Article::Impl::getMetaClass() const { return Article::metaClass(); }

bool Article::Impl::hasPropertyValue(const ::lx::base::meta::Property& property) const {
  bool result = false;
  return Fields::Table::has(*this, property, result) ? result : ::lx::base::ModelElement::Impl::hasPropertyValue(property);
}

::lx::base::Value Article::Impl::getPropertyValue(const ::lx::base::meta::Property& property) const {
  ::lx::base::Value result;
  return Fields::Table::get(*this, property, result) ? result : ::lx::base::ModelElement::Impl::getPropertyValue(property);
}

void Article::Impl::setPropertyValue(const ::lx::base::meta::Property& property, const ::lx::base::Value& value) {
  if (!Fields::Table::set(*this, property, value)) ::lx::base::ModelElement::Impl::setPropertyValue(property, value);
}

void Article::Impl::doDestroy(::lx::base::ModelElement::Impl::ContainedVisitor& visitor) {
  ::lx::base::ModelElement::Impl::doDestroy(visitor);
  Fields::Table::visitContained(*this, visitor);
}

void Article::Impl::basicDisassociateAll() noexcept {
  Fields::Table::letGo(*this);
  ::lx::base::ModelElement::Impl::basicDisassociateAll();
}

::std::unique_ptr<::lx::base::ModelElement::Impl::Storage> Article::Impl::createStorage() const {
  return ::std::make_unique<Storage>();
}

void Article::Impl::copyValue(unsigned index, ::lx::base::ModelElement::Impl::Storage& to, ::lx::base::ModelElement::Impl::Storage* from) {
  ::lx::base::ModelElement::Impl::copyValue(index, to, from);
  Fields::Table::copyValue(index, *this, static_cast<Storage&>(to), static_cast<Storage*>(from));
}

void Article::Impl::copyStateFromStorage(::lx::base::ModelElement::Impl::Storage& storage) noexcept {
  Fields::Table::restore(*this, static_cast<Storage&>(storage));
  ::lx::base::ModelElement::Impl::copyStateFromStorage(storage);
}

// Its storage

Article::Impl::Storage::Storage() = default;
Article::Impl::Storage::~Storage() = default;

void Article::Impl::Storage::revertUnchanged(const ::lx::base::ModelElement::Impl& element) {
  Fields::Table::revertUnchanged(static_cast<const Impl&>(element), *this);
  ::lx::base::ModelElement::Impl::Storage::revertUnchanged(element);
}

::lx::base::Value Article::Impl::Storage::getOldValue(unsigned index) const {
  const ::lx::base::Value value = Fields::Table::oldValue(index, static_cast<const Impl&>(*element()), *this);
  return value.isEmpty() ? ::lx::base::ModelElement::Impl::Storage::getOldValue(index) : value;
}

// Its builder

struct Article::Impl::BuilderImpl::Fields {
  using Table = ::lx::base::BuilderTable<
      Impl,
      ::lx::base::BuilderField<1, &Impl::number_, &BuilderImpl::number_>,
      ::lx::base::BuilderField<2, &Impl::label_, &BuilderImpl::label_>,
      ::lx::base::BuilderField<3, &Impl::size_, &BuilderImpl::size_>,
      ::lx::base::BuilderField<4, &Impl::sold_, &BuilderImpl::sold_>,
      ::lx::base::BuilderField<5, &Impl::price_, &BuilderImpl::price_>,
      ::lx::base::BuilderField<6, &Impl::comment_, &BuilderImpl::comment_>>;
};

void Article::Impl::BuilderImpl::doSetNumber(const ::std::int32_t& value) { number_ = value; }

void Article::Impl::BuilderImpl::doSetLabel(const ::std::u16string& value) { label_ = value; }

void Article::Impl::BuilderImpl::doSetSize(const ::shop::Size& value) { size_ = value; }

void Article::Impl::BuilderImpl::doSetSold(const bool& value) { sold_ = value; }

void Article::Impl::BuilderImpl::doSetPrice(const ::std::int64_t& value) { price_ = value; }

void Article::Impl::BuilderImpl::doSetComment(const ::std::u16string& value) { comment_ = value; }

bool Article::Impl::BuilderImpl::doSetOrAdd(const ::lx::base::meta::Property& property, const ::lx::base::Value& value) {
  return Fields::Table::setOrAdd(*this, property, value) || ::lx::base::ModelElement::Impl::BuilderImpl::doSetOrAdd(property, value);
}

bool Article::Impl::BuilderImpl::doSetOrAdd(const ::lx::base::meta::Property& property, const ::std::shared_ptr<::lx::base::ModelElement::Builder>& child) {
  return Fields::Table::setOrAdd(*this, property, child) || ::lx::base::ModelElement::Impl::BuilderImpl::doSetOrAdd(property, child);
}

void Article::Impl::BuilderImpl::applyTo(Impl& element) const {
  ::lx::base::ModelElement::Impl::BuilderImpl::applyTo(element);
  Fields::Table::applyTo(*this, element);
}

void Article::Impl::BuilderImpl::createChildren(Impl& element, ::lx::base::ModelElement::Builder::Orchestrator& orchestrator) const {
  ::lx::base::ModelElement::Impl::BuilderImpl::createChildren(element, orchestrator);
  Fields::Table::createChildren(*this, element, orchestrator);
}

Article::Builder::Builder(const ::lx::base::Model& model) { ::lx::base::ModelElement::Builder::setModel(model); }
Article::Builder::~Builder() = default;

::lx::base::meta::Class Article::Builder::getMetaClass() const { return Article::metaClass(); }

Article Article::Builder::create(const ::boost::uuids::uuid& uuid) {
  return Article(static_cast<Article::Impl*>(::lx::base::ModelElement::Builder::create(uuid).impl()));
}

// Its query

Article::Constrainables::Constrainables(const ::lx::base::Model& searched_)
    : ::lx::base::query::AbstractQuery(searched_),
      number(*this, [](const ::lx::base::ModelElement::Impl& element_) -> ::std::int32_t {
        return static_cast<const Impl&>(element_).getNumber();
      }),
      label(*this, [](const ::lx::base::ModelElement::Impl& element_) -> ::std::u16string {
        return static_cast<const Impl&>(element_).getLabel();
      }),
      size(*this, [](const ::lx::base::ModelElement::Impl& element_) -> ::shop::Size {
        return static_cast<const Impl&>(element_).getSize();
      }),
      sold(*this, [](const ::lx::base::ModelElement::Impl& element_) -> bool {
        return static_cast<const Impl&>(element_).getSold();
      }),
      price(*this, [](const ::lx::base::ModelElement::Impl& element_) -> ::std::int64_t {
        return static_cast<const Impl&>(element_).getPrice();
      }),
      comment(*this, [](const ::lx::base::ModelElement::Impl& element_) -> ::std::u16string {
        return static_cast<const Impl&>(element_).getComment();
      }) {
  addCondition([](const ::lx::base::ModelElement::Impl& element_) { return dynamic_cast<const Impl*>(&element_) != nullptr; });
}

Article::Constrainables::~Constrainables() = default;

}  // namespace shop::stock
