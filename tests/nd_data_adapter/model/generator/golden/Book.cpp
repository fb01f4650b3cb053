// Generated from tests/nd_data_adapter/model/generator/small.yaml; do not edit.
#include "tests/nd_data_adapter/model/generator/small/Book.h"

#include <boost/lexical_cast.hpp>
#include <boost/uuid/uuid_io.hpp>
#include "platform/foundation/CreateElement.h"
#include "tests/nd_data_adapter/model/generator/small/MetaPackageSmall.h"

namespace shop::stock {

// The handle

Book::Book(Impl* impl) noexcept : ::shop::stock::Article(impl) {}
Book::Impl* Book::impl() const noexcept { return static_cast<Impl*>(::lx::base::ModelElement::impl()); }

::lx::base::meta::Class Book::metaClass() {
  return ::shop::detail::MetaPackageSmall::getInstance().getClass(Uuid());
}

const ::boost::uuids::uuid& Book::Uuid() {
  static const ::boost::uuids::uuid uuid = ::boost::lexical_cast<::boost::uuids::uuid>("5a8a29a0-3c02-3a4e-9d0b-6a0f7b1f0a02");
  return uuid;
}

Book Book::create(const ::lx::base::Model& model, const ::boost::uuids::uuid& uuid) {
  return ::lx::base::detail::createElement<::shop::stock::Book>("shop.stock.Book.create", model, uuid);
}

::boost::optional<::std::string> Book::author() const {
  return static_cast<Impl&>(this->self("shop.stock.Book.author")).getAuthor();
}

bool Book::hasAuthor() const { return static_cast<Impl&>(this->self("shop.stock.Book.author")).hasAuthor(); }

void Book::setAuthor(const ::boost::optional<::std::string>& value) const {
  static_cast<Impl&>(this->self("shop.stock.Book.author")).setAuthor(value);
}

const ::lx::base::PrimitiveSequence<::std::u16string>& Book::chapters() const {
  return static_cast<Impl&>(this->self("shop.stock.Book.chapters")).getChapters();
}

bool Book::hasChapters() const { return static_cast<Impl&>(this->self("shop.stock.Book.chapters")).hasChapters(); }

::lx::base::PrimitiveSequence<::std::u16string>& Book::getChaptersMutable() const {
  return static_cast<Impl&>(this->self("shop.stock.Book.chapters")).getChaptersMutable();
}

void Book::open() const {
  return ::lx::base::detail::checkedAlive(static_cast<Impl&>(this->self("shop.stock.Book.open")), "shop.stock.Book.open").open();
}

// The element

struct Book::Impl::Fields {
  using Table = ::lx::base::FieldTable<
      ::lx::base::Field<7, &Impl::author_, &Storage::author_, &Impl::setAuthor>,
      ::lx::base::Field<8, &Impl::chapters_, &Storage::chapters_>>;
};

Book::Impl::Impl(const ::lx::base::Model& model, const ::boost::uuids::uuid& uuid)
    : ::shop::stock::Article::Impl(model, uuid),
      chapters_(*this, 8) {}

Book::Impl::~Impl() = default;

::boost::optional<::std::string> Book::Impl::getAuthor() const { return ::lx::base::detail::get(*this, author_); }
bool Book::Impl::hasAuthor() const { return isAlive() && author_.hasValue(); }
void Book::Impl::setAuthor(const ::boost::optional<::std::string>& value) {
  ::lx::base::detail::set(*this, author_, value, 7);
}

const ::lx::base::PrimitiveSequence<::std::u16string>& Book::Impl::getChapters() const { return chapters_; }
::lx::base::PrimitiveSequence<::std::u16string>& Book::Impl::getChaptersMutable() {
  checkWritable(8);
  return chapters_;
}
bool Book::Impl::hasChapters() const { return !chapters_.empty(); }

::lx::base::meta::Class Book::Impl::getMetaClass() const { return Book::metaClass(); }

bool Book::Impl::hasPropertyValue(const ::lx::base::meta::Property& property) const {
  bool result = false;
  return Fields::Table::has(*this, property, result) ? result : ::shop::stock::Article::Impl::hasPropertyValue(property);
}

::lx::base::Value Book::Impl::getPropertyValue(const ::lx::base::meta::Property& property) const {
  ::lx::base::Value result;
  return Fields::Table::get(*this, property, result) ? result : ::shop::stock::Article::Impl::getPropertyValue(property);
}

void Book::Impl::setPropertyValue(const ::lx::base::meta::Property& property, const ::lx::base::Value& value) {
  if (!Fields::Table::set(*this, property, value)) ::shop::stock::Article::Impl::setPropertyValue(property, value);
}

void Book::Impl::doDestroy(::lx::base::ModelElement::Impl::ContainedVisitor& visitor) {
  ::shop::stock::Article::Impl::doDestroy(visitor);
  Fields::Table::visitContained(*this, visitor);
}

void Book::Impl::basicDisassociateAll() noexcept {
  Fields::Table::letGo(*this);
  ::shop::stock::Article::Impl::basicDisassociateAll();
}

::std::unique_ptr<::lx::base::ModelElement::Impl::Storage> Book::Impl::createStorage() const {
  return ::std::make_unique<Storage>();
}

void Book::Impl::copyValue(unsigned index, ::lx::base::ModelElement::Impl::Storage& to, ::lx::base::ModelElement::Impl::Storage* from) {
  ::shop::stock::Article::Impl::copyValue(index, to, from);
  Fields::Table::copyValue(index, *this, static_cast<Storage&>(to), static_cast<Storage*>(from));
}

void Book::Impl::copyStateFromStorage(::lx::base::ModelElement::Impl::Storage& storage) noexcept {
  Fields::Table::restore(*this, static_cast<Storage&>(storage));
  ::shop::stock::Article::Impl::copyStateFromStorage(storage);
}

// Its storage

Book::Impl::Storage::Storage() = default;
Book::Impl::Storage::~Storage() = default;

void Book::Impl::Storage::revertUnchanged(const ::lx::base::ModelElement::Impl& element) {
  Fields::Table::revertUnchanged(static_cast<const Impl&>(element), *this);
  ::shop::stock::Article::Impl::Storage::revertUnchanged(element);
}

::lx::base::Value Book::Impl::Storage::getOldValue(unsigned index) const {
  const ::lx::base::Value value = Fields::Table::oldValue(index, static_cast<const Impl&>(*element()), *this);
  return value.isEmpty() ? ::shop::stock::Article::Impl::Storage::getOldValue(index) : value;
}

// Its builder

struct Book::Impl::BuilderImpl::Fields {
  using Table = ::lx::base::BuilderTable<
      Impl,
      ::lx::base::BuilderField<7, &Impl::author_, &BuilderImpl::author_>,
      ::lx::base::BuilderField<8, &Impl::chapters_, &BuilderImpl::chapters_>>;
};

void Book::Impl::BuilderImpl::doSetAuthor(const ::boost::optional<::std::string>& value) { author_ = value; }

void Book::Impl::BuilderImpl::doSetChapters(const ::std::vector<::std::u16string>& values) { chapters_ = values; }

bool Book::Impl::BuilderImpl::doSetOrAdd(const ::lx::base::meta::Property& property, const ::lx::base::Value& value) {
  return Fields::Table::setOrAdd(*this, property, value) || ::shop::stock::Article::Impl::BuilderImpl::doSetOrAdd(property, value);
}

bool Book::Impl::BuilderImpl::doSetOrAdd(const ::lx::base::meta::Property& property, const ::std::shared_ptr<::lx::base::ModelElement::Builder>& child) {
  return Fields::Table::setOrAdd(*this, property, child) || ::shop::stock::Article::Impl::BuilderImpl::doSetOrAdd(property, child);
}

void Book::Impl::BuilderImpl::applyTo(Impl& element) const {
  ::shop::stock::Article::Impl::BuilderImpl::applyTo(element);
  Fields::Table::applyTo(*this, element);
}

void Book::Impl::BuilderImpl::createChildren(Impl& element, ::lx::base::ModelElement::Builder::Orchestrator& orchestrator) const {
  ::shop::stock::Article::Impl::BuilderImpl::createChildren(element, orchestrator);
  Fields::Table::createChildren(*this, element, orchestrator);
}

Book::Builder::Builder(const ::lx::base::Model& model) { ::lx::base::ModelElement::Builder::setModel(model); }
Book::Builder::~Builder() = default;

::lx::base::meta::Class Book::Builder::getMetaClass() const { return Book::metaClass(); }

Book Book::Builder::create(const ::boost::uuids::uuid& uuid) {
  return Book(static_cast<Book::Impl*>(::lx::base::ModelElement::Builder::create(uuid).impl()));
}

// Its query

Book::Constrainables::Constrainables(const ::lx::base::Model& searched_)
    : ::shop::stock::Article::Constrainables(searched_),
      author(*this, [](const ::lx::base::ModelElement::Impl& element_) -> ::boost::optional<::std::string> {
        return static_cast<const Impl&>(element_).getAuthor();
      }),
      chapters(*this, [](const ::lx::base::ModelElement::Impl& element_) -> ::std::vector<::std::u16string> {
        return static_cast<const Impl&>(element_).getChapters().values();
      }) {
  addCondition([](const ::lx::base::ModelElement::Impl& element_) { return dynamic_cast<const Impl*>(&element_) != nullptr; });
}

Book::Constrainables::~Constrainables() = default;

}  // namespace shop::stock
