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
#include "tests/nd_data_adapter/model/generator/small/Book.h"

namespace shop { class Till; }

namespace shop {

/// Where articles stand.
class SHOP_EXPORT Shelf : public ::lx::base::ModelElement {
 public:
  class Impl;
  class Builder;
  class BuilderWrapper;
  class Constrainables;

  Shelf() noexcept = default;
  explicit Shelf(Impl* impl) noexcept;
  Impl* impl() const noexcept;

  /// Give the description of the class.
  static ::lx::base::meta::Class metaClass();

  /// Give the fixed identifier of the class.
  static const ::boost::uuids::uuid& Uuid();

  /// Make an element in a model, in a transaction of its own or within the open one. The nil UUID asks for a random
  /// identity. Raises `InvalidValue` for a null or dead model, `CannotAddSecondObject` for a UUID that is in use.
  static Shelf create(const ::lx::base::Model& model, const ::boost::uuids::uuid& uuid = {});

  /// What stands there.
  const ::lx::base::ElementMap<::std::int32_t, ::shop::stock::Article>& articles() const;
  bool hasArticles() const;

  /// What lies there.
  const ::lx::base::ElementMultimap<::std::u16string, ::shop::stock::Article>& byLabel() const;
  bool hasByLabel() const;

  /// What is in line.
  const ::lx::base::ElementSequence<::shop::stock::Article>& row() const;
  bool hasRow() const;

  /// What is shown.
  ::shop::stock::Book best() const;
  bool hasBest() const;

  // What changes the properties; raises `InvalidValue` on an element that is gone, `CannotModifyProxy` on a proxy.
  ::lx::base::ElementMap<::std::int32_t, ::shop::stock::Article>& getArticlesMutable() const;
  ::shop::stock::Article createIntoArticles(const ::shop::stock::Article::BuilderWrapper& builder, const ::boost::uuids::uuid& uuid = {}) const;
  ::lx::base::ElementMultimap<::std::u16string, ::shop::stock::Article>& getByLabelMutable() const;
  ::shop::stock::Article createIntoByLabel(const ::shop::stock::Article::BuilderWrapper& builder, const ::boost::uuids::uuid& uuid = {}) const;
  void setBest(const ::shop::stock::Book& value) const;
  ::shop::stock::Book createIntoBest(const ::shop::stock::Book::BuilderWrapper& builder, const ::boost::uuids::uuid& uuid = {}) const;
  void setAnything(const ::lx::base::ModelElement& value) const;
  ::lx::base::ModelElement createIntoAnything(const ::lx::base::ModelElement::BuilderWrapper& builder, const ::boost::uuids::uuid& uuid = {}) const;

  /// Gives the till beside it.
  ::shop::Till* till() const;

 protected:
  ::lx::base::ModelElement anything() const;
};

/// The element behind a `Shelf`.
class SHOP_EXPORT Shelf::Impl : public ::lx::base::ModelElement::Impl {
 public:
  class Storage;
  class BuilderImpl;
  template <class B>
  class BuilderBase;

  Impl(const ::lx::base::Model& model, const ::boost::uuids::uuid& uuid);
  ~Impl() override;

  const ::lx::base::ElementMap<::std::int32_t, ::shop::stock::Article>& getArticles() const;
  ::lx::base::ElementMap<::std::int32_t, ::shop::stock::Article>& getArticlesMutable();
  bool hasArticles() const;
  ::shop::stock::Article createIntoArticles(const ::shop::stock::Article::BuilderWrapper& builder, const ::boost::uuids::uuid& uuid = {});

  const ::lx::base::ElementMultimap<::std::u16string, ::shop::stock::Article>& getByLabel() const;
  ::lx::base::ElementMultimap<::std::u16string, ::shop::stock::Article>& getByLabelMutable();
  bool hasByLabel() const;
  ::shop::stock::Article createIntoByLabel(const ::shop::stock::Article::BuilderWrapper& builder, const ::boost::uuids::uuid& uuid = {});

  const ::lx::base::ElementSequence<::shop::stock::Article>& getRow() const;
  ::lx::base::ElementSequence<::shop::stock::Article>& getRowMutable();
  bool hasRow() const;
  ::shop::stock::Article createIntoRow(const ::shop::stock::Article::BuilderWrapper& builder, const ::boost::uuids::uuid& uuid = {});

  ::shop::stock::Book getBest() const;
  bool hasBest() const;
  void setBest(const ::shop::stock::Book& value);
  ::shop::stock::Book createIntoBest(const ::shop::stock::Book::BuilderWrapper& builder, const ::boost::uuids::uuid& uuid = {});

  ::lx::base::ModelElement getAnything() const;
  bool hasAnything() const;
  void setAnything(const ::lx::base::ModelElement& value);
  ::lx::base::ModelElement createIntoAnything(const ::lx::base::ModelElement::BuilderWrapper& builder, const ::boost::uuids::uuid& uuid = {});

  ::lx::base::meta::Class getMetaClass() const override;
  bool hasPropertyValue(const ::lx::base::meta::Property& property) const override;
  ::lx::base::Value getPropertyValue(const ::lx::base::meta::Property& property) const override;
  void setPropertyValue(const ::lx::base::meta::Property& property, const ::lx::base::Value& value) override;
  void doDestroy(::lx::base::ModelElement::Impl::ContainedVisitor& visitor) override;
  void aboutToDestroy() override;
  void basicDisassociateAll() noexcept override;
  ::std::unique_ptr<::lx::base::ModelElement::Impl::Storage> createStorage() const override;
  void copyValue(unsigned index, ::lx::base::ModelElement::Impl::Storage& to, ::lx::base::ModelElement::Impl::Storage* from) override;
  void copyStateFromStorage(::lx::base::ModelElement::Impl::Storage& storage) noexcept override;

  virtual ::shop::Till* till();

 private:
  struct Fields;
  friend class BuilderImpl;
  ::lx::base::ElementMap<::std::int32_t, ::shop::stock::Article> articles_;
  ::lx::base::ElementMultimap<::std::u16string, ::shop::stock::Article> byLabel_;
  ::lx::base::ElementSequence<::shop::stock::Article> row_;
  ::lx::base::ContainedReference<::shop::stock::Book> best_;
  ::lx::base::ContainedReference<::lx::base::ModelElement> anything_;
};

/// The old values of a `Shelf` in one transaction.
class SHOP_EXPORT Shelf::Impl::Storage : public ::lx::base::ModelElement::Impl::Storage {
 public:
  Storage();
  ~Storage() override;

  void revertUnchanged(const ::lx::base::ModelElement::Impl& element) override;
  ::lx::base::Value getOldValue(unsigned index) const override;

  ::lx::base::ElementMap<::std::int32_t, ::shop::stock::Article>::Old articles_{};
  ::lx::base::ElementMultimap<::std::u16string, ::shop::stock::Article>::Old byLabel_{};
  ::lx::base::ElementSequence<::shop::stock::Article>::Old row_{};
  ::lx::base::ContainedReference<::shop::stock::Book>::Old best_{};
  ::lx::base::ContainedReference<::lx::base::ModelElement>::Old anything_{};
};

/// What a builder of a `Shelf` has gathered.
class SHOP_EXPORT Shelf::Impl::BuilderImpl : public ::lx::base::ModelElement::Impl::BuilderImpl {
 public:
  void doSetArticles(const ::shop::stock::Article::BuilderWrapper& builder);
  const ::lx::base::detail::BuilderChildren& getArticles() const noexcept { return articles_; }
  void doSetByLabel(const ::shop::stock::Article::BuilderWrapper& builder);
  const ::lx::base::detail::BuilderChildren& getByLabel() const noexcept { return byLabel_; }
  void doSetRow(const ::shop::stock::Article::BuilderWrapper& builder);
  const ::lx::base::detail::BuilderChildren& getRow() const noexcept { return row_; }
  void doSetBest(const ::shop::stock::Book::BuilderWrapper& builder);
  const ::lx::base::detail::BuilderChildren& getBest() const noexcept { return best_; }
  void doSetAnything(const ::lx::base::ModelElement::BuilderWrapper& builder);
  const ::lx::base::detail::BuilderChildren& getAnything() const noexcept { return anything_; }

  bool doSetOrAdd(const ::lx::base::meta::Property& property, const ::lx::base::Value& value);
  bool doSetOrAdd(const ::lx::base::meta::Property& property, const ::std::shared_ptr<::lx::base::ModelElement::Builder>& child);
  void applyTo(Impl& element) const;
  void createChildren(Impl& element, ::lx::base::ModelElement::Builder::Orchestrator& orchestrator) const;

 private:
  struct Fields;
  ::lx::base::detail::BuilderChildren articles_;
  ::lx::base::detail::BuilderChildren byLabel_;
  ::lx::base::detail::BuilderChildren row_;
  ::lx::base::detail::BuilderChildren best_;
  ::lx::base::detail::BuilderChildren anything_;
};

/// What the builders of `Shelf` and of its subclasses have in common.
template <class B>
class Shelf::Impl::BuilderBase : public ::lx::base::ModelElement::Impl::BuilderBase<B> {
 public:
  /// Add what a builder is to make to `articles`.
  B& setArticles(const ::shop::stock::Article::BuilderWrapper& builder) {
    this->self().values().doSetArticles(builder);
    return this->self();
  }
  /// Add what a builder is to make to `byLabel`.
  B& setByLabel(const ::shop::stock::Article::BuilderWrapper& builder) {
    this->self().values().doSetByLabel(builder);
    return this->self();
  }
  /// Add what a builder is to make to `row`.
  B& setRow(const ::shop::stock::Article::BuilderWrapper& builder) {
    this->self().values().doSetRow(builder);
    return this->self();
  }
  /// Add what a builder is to make to `best`.
  B& setBest(const ::shop::stock::Book::BuilderWrapper& builder) {
    this->self().values().doSetBest(builder);
    return this->self();
  }
  /// Add what a builder is to make to `anything`.
  B& setAnything(const ::lx::base::ModelElement::BuilderWrapper& builder) {
    this->self().values().doSetAnything(builder);
    return this->self();
  }
};

/// Gathers the values of a `Shelf` before it exists.
class SHOP_EXPORT Shelf::Builder : public ::shop::Shelf::Impl::BuilderBase<::shop::Shelf::Builder> {
 public:
  using Element = ::shop::Shelf;

  Builder() = default;
  explicit Builder(const ::lx::base::Model& model);
  Builder(const Builder&) = default;
  Builder& operator=(const Builder&) = default;
  ~Builder() override;

  ::lx::base::meta::Class getMetaClass() const override;

  /// Make the element, in one transaction; the nil UUID asks for a random identity. Raises `InvalidValue` without a
  /// model.
  ::shop::Shelf create(const ::boost::uuids::uuid& uuid = {});

  ::shop::Shelf::Impl::BuilderImpl& values() noexcept { return values_; }

 private:
  ::shop::Shelf::Impl::BuilderImpl values_;
};

/// Carries a builder of a `Shelf`, or of a subclass, by value.
class SHOP_EXPORT Shelf::BuilderWrapper : public ::lx::base::ModelElement::BuilderWrapper {
 public:
  template <class B, class = ::std::enable_if_t<::std::is_base_of_v<::shop::Shelf, typename B::Element>>>
  BuilderWrapper(B builder) : ::lx::base::ModelElement::BuilderWrapper(::std::move(builder)) {}
};

/// Finds elements of class `Shelf` by conditions on their properties.
class SHOP_EXPORT Shelf::Constrainables : public ::lx::base::query::AbstractQuery {
 public:
  explicit Constrainables(const ::lx::base::Model& model);
  ~Constrainables() override;

  ::lx::base::query::Constrainable<::std::vector<::lx::base::ModelElement>> articles;
  ::lx::base::query::Constrainable<::std::vector<::lx::base::ModelElement>> byLabel;
  ::lx::base::query::Constrainable<::std::vector<::lx::base::ModelElement>> row;
  ::lx::base::query::Constrainable<::shop::stock::Book> best;
  ::lx::base::query::Constrainable<::lx::base::ModelElement> anything;
};

}  // namespace shop
