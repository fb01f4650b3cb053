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

namespace shop {

/// A class without members.
class SHOP_EXPORT Nothing : public ::lx::base::ModelElement {
 public:
  class Impl;
  class Builder;
  class BuilderWrapper;
  class Constrainables;

  Nothing() noexcept = default;
  explicit Nothing(Impl* impl) noexcept;
  Impl* impl() const noexcept;

  /// Give the description of the class.
  static ::lx::base::meta::Class metaClass();

  /// Give the fixed identifier of the class.
  static const ::boost::uuids::uuid& Uuid();

  /// Make an element in a model, in a transaction of its own or within the open one. The nil UUID asks for a random
  /// identity. Raises `InvalidValue` for a null or dead model, `CannotAddSecondObject` for a UUID that is in use.
  static Nothing create(const ::lx::base::Model& model, const ::boost::uuids::uuid& uuid = {});
};

/// The element behind a `Nothing`.
class SHOP_EXPORT Nothing::Impl : public ::lx::base::ModelElement::Impl {
 public:
  class Storage;
  class BuilderImpl;
  template <class B>
  class BuilderBase;

  Impl(const ::lx::base::Model& model, const ::boost::uuids::uuid& uuid);
  ~Impl() override;

  ::lx::base::meta::Class getMetaClass() const override;
  bool hasPropertyValue(const ::lx::base::meta::Property& property) const override;
  ::lx::base::Value getPropertyValue(const ::lx::base::meta::Property& property) const override;
  void setPropertyValue(const ::lx::base::meta::Property& property, const ::lx::base::Value& value) override;
  void doDestroy(::lx::base::ModelElement::Impl::ContainedVisitor& visitor) override;
  void basicDisassociateAll() noexcept override;
  ::std::unique_ptr<::lx::base::ModelElement::Impl::Storage> createStorage() const override;
  void copyValue(unsigned index, ::lx::base::ModelElement::Impl::Storage& to, ::lx::base::ModelElement::Impl::Storage* from) override;
  void copyStateFromStorage(::lx::base::ModelElement::Impl::Storage& storage) noexcept override;

 private:
  struct Fields;
  friend class BuilderImpl;
};

/// The old values of a `Nothing` in one transaction.
class SHOP_EXPORT Nothing::Impl::Storage : public ::lx::base::ModelElement::Impl::Storage {
 public:
  Storage();
  ~Storage() override;

  void revertUnchanged(const ::lx::base::ModelElement::Impl& element) override;
  ::lx::base::Value getOldValue(unsigned index) const override;
};

/// What a builder of a `Nothing` has gathered.
class SHOP_EXPORT Nothing::Impl::BuilderImpl : public ::lx::base::ModelElement::Impl::BuilderImpl {
 public:

  bool doSetOrAdd(const ::lx::base::meta::Property& property, const ::lx::base::Value& value);
  bool doSetOrAdd(const ::lx::base::meta::Property& property, const ::std::shared_ptr<::lx::base::ModelElement::Builder>& child);
  void applyTo(Impl& element) const;
  void createChildren(Impl& element, ::lx::base::ModelElement::Builder::Orchestrator& orchestrator) const;

 private:
  struct Fields;
};

/// What the builders of `Nothing` and of its subclasses have in common.
template <class B>
class Nothing::Impl::BuilderBase : public ::lx::base::ModelElement::Impl::BuilderBase<B> {
 public:
};

/// Gathers the values of a `Nothing` before it exists.
class SHOP_EXPORT Nothing::Builder : public ::shop::Nothing::Impl::BuilderBase<::shop::Nothing::Builder> {
 public:
  using Element = ::shop::Nothing;

  Builder() = default;
  explicit Builder(const ::lx::base::Model& model);
  Builder(const Builder&) = default;
  Builder& operator=(const Builder&) = default;
  ~Builder() override;

  ::lx::base::meta::Class getMetaClass() const override;

  /// Make the element, in one transaction; the nil UUID asks for a random identity. Raises `InvalidValue` without a
  /// model.
  ::shop::Nothing create(const ::boost::uuids::uuid& uuid = {});

  ::shop::Nothing::Impl::BuilderImpl& values() noexcept { return values_; }

 private:
  ::shop::Nothing::Impl::BuilderImpl values_;
};

/// Carries a builder of a `Nothing`, or of a subclass, by value.
class SHOP_EXPORT Nothing::BuilderWrapper : public ::lx::base::ModelElement::BuilderWrapper {
 public:
  template <class B, class = ::std::enable_if_t<::std::is_base_of_v<::shop::Nothing, typename B::Element>>>
  BuilderWrapper(B builder) : ::lx::base::ModelElement::BuilderWrapper(::std::move(builder)) {}
};

/// Finds elements of class `Nothing` by conditions on their properties.
class SHOP_EXPORT Nothing::Constrainables : public ::lx::base::query::AbstractQuery {
 public:
  explicit Constrainables(const ::lx::base::Model& model);
  ~Constrainables() override;
};

}  // namespace shop
