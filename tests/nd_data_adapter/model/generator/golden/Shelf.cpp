// Generated from tests/nd_data_adapter/model/generator/small.yaml; do not edit.
#include "tests/nd_data_adapter/model/generator/small/Shelf.h"

#include <boost/lexical_cast.hpp>
#include <boost/uuid/uuid_io.hpp>
#include "platform/foundation/CreateElement.h"
#include "tests/nd_data_adapter/model/generator/small/Article.h"
#include "tests/nd_data_adapter/model/generator/small/Book.h"
#include "tests/nd_data_adapter/model/generator/small/MetaPackageSmall.h"

namespace shop {

// The handle

Shelf::Shelf(Impl* impl) noexcept : ::lx::base::ModelElement(impl) {}
Shelf::Impl* Shelf::impl() const noexcept { return static_cast<Impl*>(::lx::base::ModelElement::impl()); }

::lx::base::meta::Class Shelf::metaClass() {
  return ::shop::detail::MetaPackageSmall::getInstance().getClass(Uuid());
}

const ::boost::uuids::uuid& Shelf::Uuid() {
  static const ::boost::uuids::uuid uuid = ::boost::lexical_cast<::boost::uuids::uuid>("5a8a29a0-3c02-3a4e-9d0b-6a0f7b1f0a04");
  return uuid;
}

Shelf Shelf::create(const ::lx::base::Model& model, const ::boost::uuids::uuid& uuid) {
  return ::lx::base::detail::createElement<::shop::Shelf>("shop.Shelf.create", model, uuid);
}

const ::lx::base::ElementMap<::std::int32_t, ::shop::stock::Article>& Shelf::articles() const {
  return static_cast<Impl&>(this->self("shop.Shelf.articles")).getArticles();
}

bool Shelf::hasArticles() const { return static_cast<Impl&>(this->self("shop.Shelf.articles")).hasArticles(); }

::lx::base::ElementMap<::std::int32_t, ::shop::stock::Article>& Shelf::getArticlesMutable() const {
  return static_cast<Impl&>(this->self("shop.Shelf.articles")).getArticlesMutable();
}

::shop::stock::Article Shelf::createIntoArticles(const ::shop::stock::Article::BuilderWrapper& builder, const ::boost::uuids::uuid& uuid) const {
  return static_cast<Impl&>(this->self("shop.Shelf.articles")).createIntoArticles(builder, uuid);
}

const ::lx::base::ElementMultimap<::std::u16string, ::shop::stock::Article>& Shelf::byLabel() const {
  return static_cast<Impl&>(this->self("shop.Shelf.byLabel")).getByLabel();
}

bool Shelf::hasByLabel() const { return static_cast<Impl&>(this->self("shop.Shelf.byLabel")).hasByLabel(); }

::lx::base::ElementMultimap<::std::u16string, ::shop::stock::Article>& Shelf::getByLabelMutable() const {
  return static_cast<Impl&>(this->self("shop.Shelf.byLabel")).getByLabelMutable();
}

::shop::stock::Article Shelf::createIntoByLabel(const ::shop::stock::Article::BuilderWrapper& builder, const ::boost::uuids::uuid& uuid) const {
  return static_cast<Impl&>(this->self("shop.Shelf.byLabel")).createIntoByLabel(builder, uuid);
}

const ::lx::base::ElementSequence<::shop::stock::Article>& Shelf::row() const {
  return static_cast<Impl&>(this->self("shop.Shelf.row")).getRow();
}

bool Shelf::hasRow() const { return static_cast<Impl&>(this->self("shop.Shelf.row")).hasRow(); }

::shop::stock::Book Shelf::best() const {
  return static_cast<Impl&>(this->self("shop.Shelf.best")).getBest();
}

bool Shelf::hasBest() const { return static_cast<Impl&>(this->self("shop.Shelf.best")).hasBest(); }

void Shelf::setBest(const ::shop::stock::Book& value) const {
  static_cast<Impl&>(this->self("shop.Shelf.best")).setBest(value);
}

::shop::stock::Book Shelf::createIntoBest(const ::shop::stock::Book::BuilderWrapper& builder, const ::boost::uuids::uuid& uuid) const {
  return static_cast<Impl&>(this->self("shop.Shelf.best")).createIntoBest(builder, uuid);
}

::lx::base::ModelElement Shelf::anything() const {
  return static_cast<Impl&>(this->self("shop.Shelf.anything")).getAnything();
}

void Shelf::setAnything(const ::lx::base::ModelElement& value) const {
  static_cast<Impl&>(this->self("shop.Shelf.anything")).setAnything(value);
}

::lx::base::ModelElement Shelf::createIntoAnything(const ::lx::base::ModelElement::BuilderWrapper& builder, const ::boost::uuids::uuid& uuid) const {
  return static_cast<Impl&>(this->self("shop.Shelf.anything")).createIntoAnything(builder, uuid);
}

::shop::Till* Shelf::till() const {
  return ::lx::base::detail::checkedAlive(static_cast<Impl&>(this->self("shop.Shelf.till")), "shop.Shelf.till").till();
}

// The element

struct Shelf::Impl::Fields {
  using Table = ::lx::base::FieldTable<
      ::lx::base::Field<1, &Impl::articles_, &Storage::articles_>,
      ::lx::base::Field<2, &Impl::byLabel_, &Storage::byLabel_>,
      ::lx::base::Field<3, &Impl::row_, &Storage::row_>,
      ::lx::base::Field<4, &Impl::best_, &Storage::best_, &Impl::setBest>,
      ::lx::base::Field<5, &Impl::anything_, &Storage::anything_, &Impl::setAnything>>;
};

Shelf::Impl::Impl(const ::lx::base::Model& model, const ::boost::uuids::uuid& uuid)
    : ::lx::base::ModelElement::Impl(model, uuid),
      articles_(*this, 1, 1, &::shop::stock::Article::Impl::keyOfNumber),
      byLabel_(*this, 2, 2, &::shop::stock::Article::Impl::keyOfLabel),
      row_(*this, 3),
      best_(*this, 4),
      anything_(*this, 5) {}

Shelf::Impl::~Impl() = default;

const ::lx::base::ElementMap<::std::int32_t, ::shop::stock::Article>& Shelf::Impl::getArticles() const { return articles_; }
::lx::base::ElementMap<::std::int32_t, ::shop::stock::Article>& Shelf::Impl::getArticlesMutable() {
  checkWritable(1);
  return articles_;
}
bool Shelf::Impl::hasArticles() const { return !articles_.empty(); }
::shop::stock::Article Shelf::Impl::createIntoArticles(const ::shop::stock::Article::BuilderWrapper& builder, const ::boost::uuids::uuid& uuid) {
  return ::lx::base::detail::createInto<::shop::stock::Article>(articles_, builder, uuid);
}

const ::lx::base::ElementMultimap<::std::u16string, ::shop::stock::Article>& Shelf::Impl::getByLabel() const { return byLabel_; }
::lx::base::ElementMultimap<::std::u16string, ::shop::stock::Article>& Shelf::Impl::getByLabelMutable() {
  checkWritable(2);
  return byLabel_;
}
bool Shelf::Impl::hasByLabel() const { return !byLabel_.empty(); }
::shop::stock::Article Shelf::Impl::createIntoByLabel(const ::shop::stock::Article::BuilderWrapper& builder, const ::boost::uuids::uuid& uuid) {
  return ::lx::base::detail::createInto<::shop::stock::Article>(byLabel_, builder, uuid);
}

const ::lx::base::ElementSequence<::shop::stock::Article>& Shelf::Impl::getRow() const { return row_; }
::lx::base::ElementSequence<::shop::stock::Article>& Shelf::Impl::getRowMutable() {
  checkWritable(3);
  return row_;
}
bool Shelf::Impl::hasRow() const { return !row_.empty(); }
::shop::stock::Article Shelf::Impl::createIntoRow(const ::shop::stock::Article::BuilderWrapper& builder, const ::boost::uuids::uuid& uuid) {
  return ::lx::base::detail::createInto<::shop::stock::Article>(row_, builder, uuid);
}

::shop::stock::Book Shelf::Impl::getBest() const { return best_.get(); }
bool Shelf::Impl::hasBest() const { return best_.hasValue(); }
void Shelf::Impl::setBest(const ::shop::stock::Book& value) { best_.set(value); }
::shop::stock::Book Shelf::Impl::createIntoBest(const ::shop::stock::Book::BuilderWrapper& builder, const ::boost::uuids::uuid& uuid) {
  best_.checkVacant();
  return ::lx::base::detail::createInto<::shop::stock::Book>(best_, builder, uuid);
}

::lx::base::ModelElement Shelf::Impl::getAnything() const { return anything_.get(); }
bool Shelf::Impl::hasAnything() const { return anything_.hasValue(); }
void Shelf::Impl::setAnything(const ::lx::base::ModelElement& value) { anything_.set(value); }
::lx::base::ModelElement Shelf::Impl::createIntoAnything(const ::lx::base::ModelElement::BuilderWrapper& builder, const ::boost::uuids::uuid& uuid) {
  anything_.checkVacant();
  return ::lx::base::detail::createInto<::lx::base::ModelElement>(anything_, builder, uuid);
}

::lx::base::meta::Class Shelf::Impl::getMetaClass() const { return Shelf::metaClass(); }

bool Shelf::Impl::hasPropertyValue(const ::lx::base::meta::Property& property) const {
  bool result = false;
  return Fields::Table::has(*this, property, result) ? result : ::lx::base::ModelElement::Impl::hasPropertyValue(property);
}

::lx::base::Value Shelf::Impl::getPropertyValue(const ::lx::base::meta::Property& property) const {
  ::lx::base::Value result;
  return Fields::Table::get(*this, property, result) ? result : ::lx::base::ModelElement::Impl::getPropertyValue(property);
}

void Shelf::Impl::setPropertyValue(const ::lx::base::meta::Property& property, const ::lx::base::Value& value) {
  if (!Fields::Table::set(*this, property, value)) ::lx::base::ModelElement::Impl::setPropertyValue(property, value);
}

void Shelf::Impl::doDestroy(::lx::base::ModelElement::Impl::ContainedVisitor& visitor) {
  ::lx::base::ModelElement::Impl::doDestroy(visitor);
  Fields::Table::visitContained(*this, visitor);
}

void Shelf::Impl::basicDisassociateAll() noexcept {
  Fields::Table::letGo(*this);
  ::lx::base::ModelElement::Impl::basicDisassociateAll();
}

::std::unique_ptr<::lx::base::ModelElement::Impl::Storage> Shelf::Impl::createStorage() const {
  return ::std::make_unique<Storage>();
}

void Shelf::Impl::copyValue(unsigned index, ::lx::base::ModelElement::Impl::Storage& to, ::lx::base::ModelElement::Impl::Storage* from) {
  ::lx::base::ModelElement::Impl::copyValue(index, to, from);
  Fields::Table::copyValue(index, *this, static_cast<Storage&>(to), static_cast<Storage*>(from));
}

void Shelf::Impl::copyStateFromStorage(::lx::base::ModelElement::Impl::Storage& storage) noexcept {
  Fields::Table::restore(*this, static_cast<Storage&>(storage));
  ::lx::base::ModelElement::Impl::copyStateFromStorage(storage);
}

// Its storage

Shelf::Impl::Storage::Storage() = default;
Shelf::Impl::Storage::~Storage() = default;

void Shelf::Impl::Storage::revertUnchanged(const ::lx::base::ModelElement::Impl& element) {
  Fields::Table::revertUnchanged(static_cast<const Impl&>(element), *this);
  ::lx::base::ModelElement::Impl::Storage::revertUnchanged(element);
}

::lx::base::Value Shelf::Impl::Storage::getOldValue(unsigned index) const {
  const ::lx::base::Value value = Fields::Table::oldValue(index, static_cast<const Impl&>(*element()), *this);
  return value.isEmpty() ? ::lx::base::ModelElement::Impl::Storage::getOldValue(index) : value;
}

// Its builder

struct Shelf::Impl::BuilderImpl::Fields {
  using Table = ::lx::base::BuilderTable<
      Impl,
      ::lx::base::BuilderField<1, &Impl::articles_, &BuilderImpl::articles_>,
      ::lx::base::BuilderField<2, &Impl::byLabel_, &BuilderImpl::byLabel_>,
      ::lx::base::BuilderField<3, &Impl::row_, &BuilderImpl::row_>,
      ::lx::base::BuilderField<4, &Impl::best_, &BuilderImpl::best_>,
      ::lx::base::BuilderField<5, &Impl::anything_, &BuilderImpl::anything_>>;
};

void Shelf::Impl::BuilderImpl::doSetArticles(const ::shop::stock::Article::BuilderWrapper& builder) {
  articles_.push_back({builder.builder(), ::lx::base::ModelElement()});
}

void Shelf::Impl::BuilderImpl::doSetByLabel(const ::shop::stock::Article::BuilderWrapper& builder) {
  byLabel_.push_back({builder.builder(), ::lx::base::ModelElement()});
}

void Shelf::Impl::BuilderImpl::doSetRow(const ::shop::stock::Article::BuilderWrapper& builder) {
  row_.push_back({builder.builder(), ::lx::base::ModelElement()});
}

void Shelf::Impl::BuilderImpl::doSetBest(const ::shop::stock::Book::BuilderWrapper& builder) {
  if (!best_.empty()) ::lx::base::report::cannotAddSecondObject(u"shop.Shelf.best");
  best_.push_back({builder.builder(), ::lx::base::ModelElement()});
}

void Shelf::Impl::BuilderImpl::doSetAnything(const ::lx::base::ModelElement::BuilderWrapper& builder) {
  if (!anything_.empty()) ::lx::base::report::cannotAddSecondObject(u"shop.Shelf.anything");
  anything_.push_back({builder.builder(), ::lx::base::ModelElement()});
}

bool Shelf::Impl::BuilderImpl::doSetOrAdd(const ::lx::base::meta::Property& property, const ::lx::base::Value& value) {
  return Fields::Table::setOrAdd(*this, property, value) || ::lx::base::ModelElement::Impl::BuilderImpl::doSetOrAdd(property, value);
}

bool Shelf::Impl::BuilderImpl::doSetOrAdd(const ::lx::base::meta::Property& property, const ::std::shared_ptr<::lx::base::ModelElement::Builder>& child) {
  return Fields::Table::setOrAdd(*this, property, child) || ::lx::base::ModelElement::Impl::BuilderImpl::doSetOrAdd(property, child);
}

void Shelf::Impl::BuilderImpl::applyTo(Impl& element) const {
  ::lx::base::ModelElement::Impl::BuilderImpl::applyTo(element);
  Fields::Table::applyTo(*this, element);
}

void Shelf::Impl::BuilderImpl::createChildren(Impl& element, ::lx::base::ModelElement::Builder::Orchestrator& orchestrator) const {
  ::lx::base::ModelElement::Impl::BuilderImpl::createChildren(element, orchestrator);
  Fields::Table::createChildren(*this, element, orchestrator);
}

Shelf::Builder::Builder(const ::lx::base::Model& model) { ::lx::base::ModelElement::Builder::setModel(model); }
Shelf::Builder::~Builder() = default;

::lx::base::meta::Class Shelf::Builder::getMetaClass() const { return Shelf::metaClass(); }

Shelf Shelf::Builder::create(const ::boost::uuids::uuid& uuid) {
  return Shelf(static_cast<Shelf::Impl*>(::lx::base::ModelElement::Builder::create(uuid).impl()));
}

// Its query

Shelf::Constrainables::Constrainables(const ::lx::base::Model& searched_)
    : ::lx::base::query::AbstractQuery(searched_),
      articles(*this, [](const ::lx::base::ModelElement::Impl& element_) -> ::std::vector<::lx::base::ModelElement> {
        return static_cast<const Impl&>(element_).getArticles().toValue().as<::std::vector<::lx::base::ModelElement>>();
      }),
      byLabel(*this, [](const ::lx::base::ModelElement::Impl& element_) -> ::std::vector<::lx::base::ModelElement> {
        return static_cast<const Impl&>(element_).getByLabel().toValue().as<::std::vector<::lx::base::ModelElement>>();
      }),
      row(*this, [](const ::lx::base::ModelElement::Impl& element_) -> ::std::vector<::lx::base::ModelElement> {
        return static_cast<const Impl&>(element_).getRow().toValue().as<::std::vector<::lx::base::ModelElement>>();
      }),
      best(*this, [](const ::lx::base::ModelElement::Impl& element_) -> ::shop::stock::Book {
        return static_cast<const Impl&>(element_).getBest();
      }),
      anything(*this, [](const ::lx::base::ModelElement::Impl& element_) -> ::lx::base::ModelElement {
        return static_cast<const Impl&>(element_).getAnything();
      }) {
  addCondition([](const ::lx::base::ModelElement::Impl& element_) { return dynamic_cast<const Impl*>(&element_) != nullptr; });
}

Shelf::Constrainables::~Constrainables() = default;

}  // namespace shop
