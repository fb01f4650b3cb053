// Generated from tests/nd_data_adapter/model/generator/small.yaml; do not edit.
#pragma once

#include <boost/optional.hpp>
#include <boost/uuid/uuid.hpp>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>
#include "platform/foundation/Builder.h"
#include "platform/foundation/Query.h"
#include "tests/nd_data_adapter/model/generator/export.h"
#include "tests/nd_data_adapter/model/generator/small/Article.h"

namespace shop::stock {

/// An article to read.
class SHOP_EXPORT Book : public ::shop::stock::Article {
 public:
  class Impl;
  class Builder;
  class BuilderWrapper;
  class Constrainables;

  Book() noexcept = default;
  explicit Book(Impl* impl) noexcept;
  Impl* impl() const noexcept;

  /// Give the description of the class.
  static ::lx::base::meta::Class metaClass();

  /// Give the fixed identifier of the class.
  static const ::boost::uuids::uuid& Uuid();

  /// Make an element in a model, in a transaction of its own or within the open one. The nil UUID asks for a random
  /// identity. Raises `InvalidValue` for a null or dead model, `CannotAddSecondObject` for a UUID that is in use.
  static Book create(const ::lx::base::Model& model, const ::boost::uuids::uuid& uuid = {});

  /// Who wrote it; absent if that is not known.
  ::boost::optional<::std::string> author() const;
  bool hasAuthor() const;

  /// What its parts are called.
  const ::lx::base::PrimitiveSequence<::std::u16string>& chapters() const;
  bool hasChapters() const;

  // What changes the properties; raises `InvalidValue` on an element that is gone, `CannotModifyProxy` on a proxy.
  void setAuthor(const ::boost::optional<::std::string>& value) const;
  ::lx::base::PrimitiveSequence<::std::u16string>& getChaptersMutable() const;

  /// Opens it.
  void open() const;
};

/// The element behind a `Book`.
class SHOP_EXPORT Book::Impl : public ::shop::stock::Article::Impl {
 public:
  class Storage;
  class BuilderImpl;
  template <class B>
  class BuilderBase;

  Impl(const ::lx::base::Model& model, const ::boost::uuids::uuid& uuid);
  ~Impl() override;

  ::boost::optional<::std::string> getAuthor() const;
  bool hasAuthor() const;
  void setAuthor(const ::boost::optional<::std::string>& value);

  const ::lx::base::PrimitiveSequence<::std::u16string>& getChapters() const;
  ::lx::base::PrimitiveSequence<::std::u16string>& getChaptersMutable();
  bool hasChapters() const;

  ::lx::base::meta::Class getMetaClass() const override;
  bool hasPropertyValue(const ::lx::base::meta::Property& property) const override;
  ::lx::base::Value getPropertyValue(const ::lx::base::meta::Property& property) const override;
  void setPropertyValue(const ::lx::base::meta::Property& property, const ::lx::base::Value& value) override;
  void doDestroy(::lx::base::ModelElement::Impl::ContainedVisitor& visitor) override;
  void didCreate() override;
  void basicDisassociateAll() noexcept override;
  ::std::unique_ptr<::lx::base::ModelElement::Impl::Storage> createStorage() const override;
  void copyValue(unsigned index, ::lx::base::ModelElement::Impl::Storage& to, ::lx::base::ModelElement::Impl::Storage* from) override;
  void copyStateFromStorage(::lx::base::ModelElement::Impl::Storage& storage) noexcept override;

  virtual void open();

 private:
  struct Fields;
  friend class BuilderImpl;
  ::lx::base::Single<::boost::optional<::std::string>> author_;
  ::lx::base::PrimitiveSequence<::std::u16string> chapters_;
};

/// The old values of a `Book` in one transaction.
class SHOP_EXPORT Book::Impl::Storage : public ::shop::stock::Article::Impl::Storage {
 public:
  Storage();
  ~Storage() override;

  void revertUnchanged(const ::lx::base::ModelElement::Impl& element) override;
  ::lx::base::Value getOldValue(unsigned index) const override;

  ::lx::base::Single<::boost::optional<::std::string>>::Old author_{};
  ::lx::base::PrimitiveSequence<::std::u16string>::Old chapters_{};
};

/// What a builder of a `Book` has gathered.
class SHOP_EXPORT Book::Impl::BuilderImpl : public ::shop::stock::Article::Impl::BuilderImpl {
 public:
  void doSetAuthor(const ::boost::optional<::std::string>& value);
  const ::boost::optional<::boost::optional<::std::string>>& getAuthor() const noexcept { return author_; }
  void doSetChapters(const ::std::vector<::std::u16string>& values);
  const ::boost::optional<::std::vector<::std::u16string>>& getChapters() const noexcept { return chapters_; }

  bool doSetOrAdd(const ::lx::base::meta::Property& property, const ::lx::base::Value& value);
  bool doSetOrAdd(const ::lx::base::meta::Property& property, const ::std::shared_ptr<::lx::base::ModelElement::Builder>& child);
  void applyTo(Impl& element) const;
  void createChildren(Impl& element, ::lx::base::ModelElement::Builder::Orchestrator& orchestrator) const;

 private:
  struct Fields;
  ::boost::optional<::boost::optional<::std::string>> author_;
  ::boost::optional<::std::vector<::std::u16string>> chapters_;
};

/// What the builders of `Book` and of its subclasses have in common.
template <class B>
class Book::Impl::BuilderBase : public ::shop::stock::Article::Impl::BuilderBase<B> {
 public:
  B& setAuthor(const ::boost::optional<::std::string>& value) {
    this->self().values().doSetAuthor(value);
    return this->self();
  }
  B& setChapters(const ::std::vector<::std::u16string>& value) {
    this->self().values().doSetChapters(value);
    return this->self();
  }
};

/// Gathers the values of a `Book` before it exists.
class SHOP_EXPORT Book::Builder : public ::shop::stock::Book::Impl::BuilderBase<::shop::stock::Book::Builder> {
 public:
  using Element = ::shop::stock::Book;

  Builder() = default;
  explicit Builder(const ::lx::base::Model& model);
  Builder(const Builder&) = default;
  Builder& operator=(const Builder&) = default;
  ~Builder() override;

  ::lx::base::meta::Class getMetaClass() const override;

  /// Make the element, in one transaction; the nil UUID asks for a random identity. Raises `InvalidValue` without a
  /// model.
  ::shop::stock::Book create(const ::boost::uuids::uuid& uuid = {});

  ::shop::stock::Book::Impl::BuilderImpl& values() noexcept { return values_; }

 private:
  ::shop::stock::Book::Impl::BuilderImpl values_;
};

/// Carries a builder of a `Book`, or of a subclass, by value.
class SHOP_EXPORT Book::BuilderWrapper : public ::shop::stock::Article::BuilderWrapper {
 public:
  template <class B, class = ::std::enable_if_t<::std::is_base_of_v<::shop::stock::Book, typename B::Element>>>
  BuilderWrapper(B builder) : ::shop::stock::Article::BuilderWrapper(::std::move(builder)) {}
};

/// Finds elements of class `Book` by conditions on their properties.
class SHOP_EXPORT Book::Constrainables : public ::shop::stock::Article::Constrainables {
 public:
  explicit Constrainables(const ::lx::base::Model& model);
  ~Constrainables() override;

  ::lx::base::query::Constrainable<::boost::optional<::std::string>> author;
  ::lx::base::query::Constrainable<::std::vector<::std::u16string>> chapters;
};

}  // namespace shop::stock
