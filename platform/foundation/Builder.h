#pragma once

#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <vector>

#include <boost/optional.hpp>

#include "platform/export.h"
#include "platform/foundation/FieldTable.h"

namespace lx::base {

/// Gathers the values of an element before it exists, without a model.
///
///     report.createIntoChanges(ChangeTuple::Builder().setX(ChangeType::Modify).setId(u"gain"));
///
/// A builder makes as many elements as it is asked for. Nothing of an element stays when making it fails.
class ND_PLATFORM_EXPORT ModelElement::Builder {
 public:
  class Orchestrator;

  Builder() = default;
  Builder(const Builder&) = default;
  Builder& operator=(const Builder&) = default;
  virtual ~Builder();

  /// Give the class of the elements that the builder makes.
  virtual meta::Class getMetaClass() const = 0;

  /// Set a property, or adds to a list: a value, or an element that is to be contained.
  /// Raises `NoSuchType` for a property of another class, `CannotCastIncompatibleTypes` for another type.
  virtual void setOrAdd(const meta::Property& property, const Value& value) = 0;

  /// Set or adds what a child builder is to make. Raises `CannotAddSecondObject` for a second child of a
  /// property that holds one, `InvalidValue` for a property that contains nothing.
  virtual void setOrAdd(const meta::Property& property, std::unique_ptr<Builder> child) = 0;

  /// Make the element, or gives the one that this builder's orchestrator has already. True defers its
  /// announcement, and the adding to its container, to the orchestrator's commit.
  virtual ModelElement doCreate(bool defer, const boost::uuids::uuid& uuid) = 0;

  void setModel(const Model& model) { model_ = model; }
  const Model& getModel() const noexcept { return model_; }

  /// Make an element with all that it is to contain, in one transaction. Raises `InvalidValue` without a
  /// model.
  ModelElement create(const boost::uuids::uuid& uuid = {});

  /// Do so in a model that the builder has for the time of the creation only.
  ModelElement createIn(const Model& model, const boost::uuids::uuid& uuid = {});

  /// Make the element as a part of what an orchestrator makes, in a model that the builder has meanwhile.
  ModelElement createWithin(Orchestrator& orchestrator, const Model& model,
                            const boost::uuids::uuid& uuid = {});

 protected:
  /// Give the orchestrator of the creation that is under way. Raises `InvalidValue` if none is.
  Orchestrator& orchestrator() const;

 private:
  Model model_;
  Orchestrator* orchestrator_ = nullptr;
};

/// Keeps, during one creation, which builder has made which element, so that each makes one.
class ND_PLATFORM_EXPORT ModelElement::Builder::Orchestrator {
 public:
  /// Give the element that a builder has made and finished; a null handle if it hasn't.
  ModelElement getCreatedElement(const Builder& builder) const;

  void add(const Builder& builder, const ModelElement& element);

  /// Keep the rest of a creation until the commit.
  void defer(std::function<void()> rest);

  /// Do what was deferred, in its order.
  void commit();

 private:
  std::unordered_map<const Builder*, ModelElement> created_;
  std::vector<std::function<void()>> deferred_;
};

/// Carry a copy of a builder by value, whatever its class.
///
/// Copies of a wrapper share what they carry, so that they are one builder within a creation: given twice,
/// they make one element, which the last place gets. A builder that is given twice is wrapped twice and makes
/// two.
class ND_PLATFORM_EXPORT ModelElement::BuilderWrapper {
 public:
  template <class B, class = std::enable_if_t<std::is_base_of_v<Builder, B>>>
  BuilderWrapper(B builder)  // NOLINT(google-explicit-constructor): a builder is what is carried
      : builder_(std::make_shared<B>(std::move(builder))) {}
  explicit BuilderWrapper(std::shared_ptr<Builder> builder);

  void setModel(const Model& model) { builder_->setModel(model); }
  ModelElement create(const boost::uuids::uuid& uuid) { return builder_->create(uuid); }
  ModelElement createIn(const Model& model, const boost::uuids::uuid& uuid) {
    return builder_->createIn(model, uuid);
  }
  const std::shared_ptr<Builder>& builder() const noexcept { return builder_; }

 private:
  std::shared_ptr<Builder> builder_;
};

/// The root of what builders gather.
class ND_PLATFORM_EXPORT ModelElement::Impl::BuilderImpl {
 public:
  bool doSetOrAdd(const meta::Property&, const Value&) { return false; }
  bool doSetOrAdd(const meta::Property&, const std::shared_ptr<Builder>&) { return false; }
  void applyTo(Impl&) const {}
  void createChildren(Impl&, Builder::Orchestrator&) const {}
};

namespace detail {

/// What a builder is to put into a property that contains elements: a child builder's, or one that is there.
struct BuilderChild {
  std::shared_ptr<ModelElement::Builder> builder;
  ModelElement element;
};
using BuilderChildren = std::vector<BuilderChild>;

[[noreturn]] ND_PLATFORM_EXPORT void raiseContainsNothing(const meta::Property& property);
[[noreturn]] ND_PLATFORM_EXPORT void raiseForeignProperty(const ModelElement::Builder& builder,
                                                          const meta::Property& property);
[[noreturn]] ND_PLATFORM_EXPORT void raiseSecondChild(const meta::Property& property);

template <class T>
void gather(boost::optional<T>& gathered, const Single<T>*, const meta::Property&, const Value& value) {
  gathered = value.as<T>();
}
template <class T>
void gather(boost::optional<std::vector<T>>& gathered, const PrimitiveSequence<T>*, const meta::Property&,
            const Value& value) {
  if (!value.is<T>()) {
    gathered = value.as<std::vector<T>>();
    return;
  }
  if (!gathered) gathered.emplace();
  gathered->push_back(value.as<T>());
}
inline void gather(BuilderChildren& gathered, const void*, const meta::Property& property,
                   const Value& value) {
  if (!gathered.empty() && property.getUpper() == 1) raiseSecondChild(property);
  gathered.push_back({nullptr, value.as<ModelElement>()});
}

inline void gatherChild(BuilderChildren& gathered, const meta::Property& property,
                        const std::shared_ptr<ModelElement::Builder>& child) {
  if (!gathered.empty() && property.getUpper() == 1) raiseSecondChild(property);
  gathered.push_back({child, ModelElement()});
}
template <class T>
void gatherChild(boost::optional<T>&, const meta::Property& property,
                 const std::shared_ptr<ModelElement::Builder>&) {
  raiseContainsNothing(property);
}

template <class T>
void applyGathered(const boost::optional<T>& gathered, Single<T>& field) {
  if (!gathered) return;
  T value(*gathered);
  field.swap(value);
}
template <class T>
void applyGathered(const boost::optional<std::vector<T>>& gathered, PrimitiveSequence<T>& field) {
  if (!gathered) return;
  std::vector<T> values(*gathered);
  field.restoreFrom(values);
}
template <class Slot>
void applyGathered(const BuilderChildren&, Slot&) {}

template <class Slot>
void createGathered(const BuilderChildren& gathered, Slot& field,
                    ModelElement::Builder::Orchestrator& orchestrator) {
  for (const BuilderChild& child : gathered) {
    const ModelElement element =
        child.builder ? child.builder->createWithin(orchestrator, field.getModel()) : child.element;
    const typename Slot::Element checked(checkedElement<typename Slot::Element>(field, element));
    const bool isAnnounced = !child.builder || !checked || checked.isAlive();
    if (isAnnounced)
      field.add(checked);
    else
      orchestrator.defer([&field, owner = ModelElement(&field.owner()), checked] { field.add(checked); });
  }
}
template <class T, class FieldT>
void createGathered(const boost::optional<T>&, FieldT&, ModelElement::Builder::Orchestrator&) {}

}  // namespace detail

/// A property in a builder: its index, the member of the element, and the member that gathers its value.
template <unsigned Index, auto Member, auto Gathered>
struct BuilderField {
  static constexpr unsigned index = Index;
  template <class ImplT>
  static auto& member(ImplT& self) noexcept {
    return self.*Member;
  }
  template <class ValuesT>
  static auto& gathered(ValuesT& values) noexcept {
    return values.*Gathered;
  }
};

/// The properties that a class adds to the builder of its superclass.
template <class ImplT, class... Fields>
struct BuilderTable {
  template <class F>
  static bool withField([[maybe_unused]] unsigned index, [[maybe_unused]] F f) {
    return ((Fields::index == index ? (f(Fields()), true) : false) || ...);
  }

  template <class ValuesT>
  static bool setOrAdd(ValuesT& values, const meta::Property& property, const Value& value) {
    return withField(property.getIndex(), [&](auto field) {
      using FieldT = decltype(field);
      using MemberT = std::remove_reference_t<decltype(FieldT::member(std::declval<ImplT&>()))>;
      detail::gather(FieldT::gathered(values), static_cast<const MemberT*>(nullptr), property, value);
    });
  }

  template <class ValuesT>
  static bool setOrAdd(ValuesT& values, const meta::Property& property,
                       const std::shared_ptr<ModelElement::Builder>& child) {
    return withField(property.getIndex(), [&](auto field) {
      detail::gatherChild(decltype(field)::gathered(values), property, child);
    });
  }

  template <class ValuesT>
  static void applyTo(const ValuesT& values, ImplT& element) {
    (detail::applyGathered(Fields::gathered(values), Fields::member(element)), ...);
  }

  template <class ValuesT>
  static void createChildren(const ValuesT& values, ImplT& element,
                             ModelElement::Builder::Orchestrator& orchestrator) {
    (detail::createGathered(Fields::gathered(values), Fields::member(element), orchestrator), ...);
  }
};

namespace detail {

/// Gather by a property that must be one of the builder's class.
template <class ValuesT, class Content>
void setOrAdd(const ModelElement::Builder& builder, ValuesT& values, const meta::Property& property,
              Content&& content) {
  if (!builder.getMetaClass().isSubclassOf(property.getOwner()) ||
      !values.doSetOrAdd(property, std::forward<Content>(content))) {
    raiseForeignProperty(builder, property);
  }
}

/// Make an element of what a builder has gathered.
template <class E, class ValuesT>
ModelElement build(const ModelElement::Builder& builder, const ValuesT& values,
                   ModelElement::Builder::Orchestrator& orchestrator, bool defer,
                   const boost::uuids::uuid& uuid) {
  if (ModelElement done = orchestrator.getCreatedElement(builder)) return done;
  const E element(new typename E::Impl(builder.getModel(), uuid));
  values.applyTo(*element.impl());
  const auto rest = [element, &values, &orchestrator] {
    element.impl()->notifyCreated();
    values.createChildren(*element.impl(), orchestrator);
  };
  if (defer)
    orchestrator.defer(rest);
  else
    rest();
  orchestrator.add(builder, element);
  return element;
}

}  // namespace detail

/// The root of what builders have in common; B is the builder of a class.
template <class B>
class ModelElement::Impl::BuilderBase : public ModelElement::Builder {
 public:
  void setOrAdd(const meta::Property& property, const Value& value) override {
    detail::setOrAdd(*this, self().values(), property, value);
  }

  void setOrAdd(const meta::Property& property, std::unique_ptr<Builder> child) override {
    detail::setOrAdd(*this, self().values(), property, std::shared_ptr<Builder>(std::move(child)));
  }

  ModelElement doCreate(bool defer, const boost::uuids::uuid& uuid) override {
    return detail::build<typename B::Element>(*this, self().values(), orchestrator(), defer, uuid);
  }

 protected:
  B& self() noexcept { return static_cast<B&>(*this); }
};

}  // namespace lx::base
