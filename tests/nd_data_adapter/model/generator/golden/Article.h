// Generated from tests/nd_data_adapter/model/generator/small.yaml; do not edit.
#pragma once

#include <boost/optional.hpp>
#include <boost/uuid/uuid.hpp>
#include <cstdint>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>
#include "platform/foundation/Builder.h"
#include "platform/foundation/Query.h"
#include "tests/nd_data_adapter/model/generator/export.h"
#include "tests/nd_data_adapter/model/generator/small/Size.h"

namespace shop::stock {

/// Something that is sold. It has a number, by which it is found, and a size; what else is said about it
/// stands on a long line, so that the comment is wrapped.
class SHOP_EXPORT Article : public ::lx::base::ModelElement {
 public:
  class Impl;
  class Builder;
  class BuilderWrapper;
  class Constrainables;

  Article() noexcept = default;
  explicit Article(Impl* impl) noexcept;
  Impl* impl() const noexcept;

  /// Give the description of the class.
  static ::lx::base::meta::Class metaClass();

  /// Give the fixed identifier of the class.
  static const ::boost::uuids::uuid& Uuid();

  /// Make an element in a model, in a transaction of its own or within the open one. The nil UUID asks for a random
  /// identity. Raises `InvalidValue` for a null or dead model, `CannotAddSecondObject` for a UUID that is in use.
  static Article create(const ::lx::base::Model& model, const ::boost::uuids::uuid& uuid = {});

  /// The number by which it is found.
  ::std::int32_t number() const;

  /// What stands on it.
  ::std::u16string label() const;

  /// How large it is.
  ::shop::Size size() const;

  /// What it costs.
  ::std::int64_t price() const;

  /// What is to be said of it.
  ::std::u16string comment() const;

  // What changes the properties; raises `InvalidValue` on an element that is gone, `CannotModifyProxy` on a proxy.
  void setNumber(const ::std::int32_t& value) const;
  void setLabel(const ::std::u16string& value) const;
  void setSize(const ::shop::Size& value) const;
  void setComment(const ::std::u16string& value) const;

  /// Makes it cheaper.
  bool reduce(const ::std::int64_t& by, const ::std::u16string& because, const ::std::vector<::shop::stock::Article>& also, const ::std::vector<::shop::Size>& sizes) const;

  /// Finds articles.
  static ::std::vector<::shop::stock::Article> find(const ::lx::base::Model& model, ::std::int32_t Number);

 protected:
  bool sold() const;
};

/// The element behind a `Article`.
class SHOP_EXPORT Article::Impl : public ::lx::base::ModelElement::Impl {
 public:
  class Storage;
  class BuilderImpl;
  template <class B>
  class BuilderBase;

  Impl(const ::lx::base::Model& model, const ::boost::uuids::uuid& uuid);
  ~Impl() override;

  ::std::int32_t getNumber() const;
  void setNumber(const ::std::int32_t& value);
  static constexpr unsigned NumberIndex = 1;
  static const ::std::int32_t& keyOfNumber(const ::lx::base::ModelElement::Impl& element) noexcept;

  ::std::u16string getLabel() const;
  void setLabel(const ::std::u16string& value);
  static constexpr unsigned LabelIndex = 2;
  static const ::std::u16string& keyOfLabel(const ::lx::base::ModelElement::Impl& element) noexcept;

  ::shop::Size getSize() const;
  void setSize(const ::shop::Size& value);

  bool getSold() const;
  void setSold(const bool& value);

  ::std::int64_t getPrice() const;

  ::std::u16string getComment() const;
  void setComment(const ::std::u16string& value);

  ::lx::base::meta::Class getMetaClass() const override;
  bool hasPropertyValue(const ::lx::base::meta::Property& property) const override;
  ::lx::base::Value getPropertyValue(const ::lx::base::meta::Property& property) const override;
  void setPropertyValue(const ::lx::base::meta::Property& property, const ::lx::base::Value& value) override;
  void doDestroy(::lx::base::ModelElement::Impl::ContainedVisitor& visitor) override;
  void basicDisassociateAll() noexcept override;
  ::std::unique_ptr<::lx::base::ModelElement::Impl::Storage> createStorage() const override;
  void copyValue(unsigned index, ::lx::base::ModelElement::Impl::Storage& to, ::lx::base::ModelElement::Impl::Storage* from) override;
  void copyStateFromStorage(::lx::base::ModelElement::Impl::Storage& storage) noexcept override;

  virtual bool reduce(const ::std::int64_t& by, const ::std::u16string& because, const ::std::vector<::shop::stock::Article>& also, const ::std::vector<::shop::Size>& sizes);

 private:
  struct Fields;
  friend class BuilderImpl;
  ::lx::base::Single<::std::int32_t> number_;
  ::lx::base::Single<::std::u16string> label_;
  ::lx::base::Single<::shop::Size> size_;
  ::lx::base::Single<bool> sold_;
  ::lx::base::Single<::std::int64_t> price_;
  ::lx::base::Single<::std::u16string> comment_;
};

/// The old values of a `Article` in one transaction.
class SHOP_EXPORT Article::Impl::Storage : public ::lx::base::ModelElement::Impl::Storage {
 public:
  Storage();
  ~Storage() override;

  void revertUnchanged(const ::lx::base::ModelElement::Impl& element) override;
  ::lx::base::Value getOldValue(unsigned index) const override;

  ::lx::base::Single<::std::int32_t>::Old number_{};
  ::lx::base::Single<::std::u16string>::Old label_{};
  ::lx::base::Single<::shop::Size>::Old size_{};
  ::lx::base::Single<bool>::Old sold_{};
  ::lx::base::Single<::std::int64_t>::Old price_{};
  ::lx::base::Single<::std::u16string>::Old comment_{};
};

/// What a builder of a `Article` has gathered.
class SHOP_EXPORT Article::Impl::BuilderImpl : public ::lx::base::ModelElement::Impl::BuilderImpl {
 public:
  void doSetNumber(const ::std::int32_t& value);
  const ::boost::optional<::std::int32_t>& getNumber() const noexcept { return number_; }
  void doSetLabel(const ::std::u16string& value);
  const ::boost::optional<::std::u16string>& getLabel() const noexcept { return label_; }
  void doSetSize(const ::shop::Size& value);
  const ::boost::optional<::shop::Size>& getSize() const noexcept { return size_; }
  void doSetSold(const bool& value);
  const ::boost::optional<bool>& getSold() const noexcept { return sold_; }
  void doSetPrice(const ::std::int64_t& value);
  const ::boost::optional<::std::int64_t>& getPrice() const noexcept { return price_; }
  void doSetComment(const ::std::u16string& value);
  const ::boost::optional<::std::u16string>& getComment() const noexcept { return comment_; }

  bool doSetOrAdd(const ::lx::base::meta::Property& property, const ::lx::base::Value& value);
  bool doSetOrAdd(const ::lx::base::meta::Property& property, const ::std::shared_ptr<::lx::base::ModelElement::Builder>& child);
  void applyTo(Impl& element) const;
  void createChildren(Impl& element, ::lx::base::ModelElement::Builder::Orchestrator& orchestrator) const;

 private:
  struct Fields;
  ::boost::optional<::std::int32_t> number_;
  ::boost::optional<::std::u16string> label_;
  ::boost::optional<::shop::Size> size_;
  ::boost::optional<bool> sold_;
  ::boost::optional<::std::int64_t> price_;
  ::boost::optional<::std::u16string> comment_;
};

/// What the builders of `Article` and of its subclasses have in common.
template <class B>
class Article::Impl::BuilderBase : public ::lx::base::ModelElement::Impl::BuilderBase<B> {
 public:
  B& setNumber(const ::std::int32_t& value) {
    this->self().values().doSetNumber(value);
    return this->self();
  }
  B& setLabel(const ::std::u16string& value) {
    this->self().values().doSetLabel(value);
    return this->self();
  }
  B& setSize(const ::shop::Size& value) {
    this->self().values().doSetSize(value);
    return this->self();
  }
  B& setSold(const bool& value) {
    this->self().values().doSetSold(value);
    return this->self();
  }
  B& setPrice(const ::std::int64_t& value) {
    this->self().values().doSetPrice(value);
    return this->self();
  }
  B& setComment(const ::std::u16string& value) {
    this->self().values().doSetComment(value);
    return this->self();
  }
};

/// Gathers the values of a `Article` before it exists.
class SHOP_EXPORT Article::Builder : public ::shop::stock::Article::Impl::BuilderBase<::shop::stock::Article::Builder> {
 public:
  using Element = ::shop::stock::Article;

  Builder() = default;
  explicit Builder(const ::lx::base::Model& model);
  Builder(const Builder&) = default;
  Builder& operator=(const Builder&) = default;
  ~Builder() override;

  ::lx::base::meta::Class getMetaClass() const override;

  /// Make the element, in one transaction; the nil UUID asks for a random identity. Raises `InvalidValue` without a
  /// model.
  ::shop::stock::Article create(const ::boost::uuids::uuid& uuid = {});

  ::shop::stock::Article::Impl::BuilderImpl& values() noexcept { return values_; }

 private:
  ::shop::stock::Article::Impl::BuilderImpl values_;
};

/// Carries a builder of a `Article`, or of a subclass, by value.
class SHOP_EXPORT Article::BuilderWrapper : public ::lx::base::ModelElement::BuilderWrapper {
 public:
  template <class B, class = ::std::enable_if_t<::std::is_base_of_v<::shop::stock::Article, typename B::Element>>>
  BuilderWrapper(B builder) : ::lx::base::ModelElement::BuilderWrapper(::std::move(builder)) {}
};

/// Finds elements of class `Article` by conditions on their properties.
class SHOP_EXPORT Article::Constrainables : public ::lx::base::query::AbstractQuery {
 public:
  explicit Constrainables(const ::lx::base::Model& model);
  ~Constrainables() override;

  ::lx::base::query::Constrainable<::std::int32_t> number;
  ::lx::base::query::Constrainable<::std::u16string> label;
  ::lx::base::query::Constrainable<::shop::Size> size;
  ::lx::base::query::Constrainable<bool> sold;
  ::lx::base::query::Constrainable<::std::int64_t> price;
  ::lx::base::query::Constrainable<::std::u16string> comment;
};

}  // namespace shop::stock
