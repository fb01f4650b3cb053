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
#include "platform/foundation/CreateElement.h"
#include "platform/foundation/FieldTable.h"

namespace lx::base {

/// Gathers the values of an element before it exists, without a model.
///
///     report.createIntoChanges(ChangeTuple::Builder().setX(ChangeType::Modify).setId(u"gain"));
///
/// A builder makes as many elements as it is asked for, and one in each creation: where it is given to
/// several properties, they get the same element. What is contained is made in its place; then what is only
/// referred to, in no container; references are made when all elements of the creation are there, so that
/// they may form circles. Nothing of an element stays when making it fails.
class ND_PLATFORM_EXPORT ModelElement::Builder {
 public:
  class Orchestrator;

  Builder() = default;
  Builder(const Builder& other) : model_(other.model_) {}  // a creation that is under way is not the copy's
  Builder& operator=(const Builder& other) {
    if (this != &other) model_ = other.model_;
    return *this;
  }
  virtual ~Builder();

  /// Give the class of the elements that the builder makes.
  virtual meta::Class getMetaClass() const = 0;

  /// Set a property, or add to a list: a value, a list, or an element that is to be contained or referred to.
  /// Raises `NoSuchType` for a property of another class, `CannotCastIncompatibleTypes` for another type.
  virtual void setOrAdd(const meta::Property& property, const Value& value) = 0;

  /// Set or add what a child builder is to make. Raises `CannotAddSecondObject` for a second child of a
  /// property that holds one, `InvalidValue` for a property that takes no elements.
  virtual void setOrAdd(const meta::Property& property, std::unique_ptr<Builder> child) = 0;

  /// Make the element, or give the one that this builder's orchestrator has already, also if it is still
  /// being made. True defers its announcement, and the adding to its container, to the orchestrator's commit.
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
  /// Give the element that a builder has made, from when it is allocated; a null handle if it hasn't.
  ModelElement getCreatedElement(const Builder& builder) const;

  /// Tell whether that element has all that it is to contain.
  bool isFinished(const Builder& builder) const;

  /// Note an element, and that it is finished.
  void add(const Builder& builder, const ModelElement& element);
  void finish(const Builder& builder);

  /// Keep the rest of a creation until the commit.
  void defer(std::function<void()> rest);

  /// Keep a reference until the commit: to an element that is there, or to what a builder makes in the model.
  void refer(std::shared_ptr<Builder> builder, const ModelElement& element, const Model& model,
             std::function<void(const ModelElement& target)> set);

  /// Do what was deferred, in its order; then make what is only referred to, and all references.
  void commit();

 private:
  struct Made {
    ModelElement element;
    bool isFinished = false;
  };
  struct Pending {
    std::shared_ptr<Builder> builder;
    ModelElement element;
    Model model;
    std::function<void(const ModelElement&)> set;
  };

  std::unordered_map<const Builder*, Made> created_;
  std::vector<std::function<void()>> deferred_;
  std::vector<Pending> references_;
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

  /// Carry the builder from now on without keeping it. It must outlive what this is given to: so a child
  /// refers to the builder of its parent, which keeps that of the child.
  void borrow() { builder_ = std::shared_ptr<Builder>(std::shared_ptr<void>(), builder_.get()); }

  void setModel(const Model& model) { builder_->setModel(model); }
  ModelElement create(const boost::uuids::uuid& uuid) { return builder_->create(uuid); }
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

/// What a builder is to put into a property that contains elements or refers to them: what a child builder
/// makes, or an element that is there.
struct BuilderChild {
  std::shared_ptr<ModelElement::Builder> builder;
  ModelElement element;
};
using BuilderChildren = std::vector<BuilderChild>;

[[noreturn]] ND_PLATFORM_EXPORT void raiseContainsNothing(const meta::Property& property);
[[noreturn]] ND_PLATFORM_EXPORT void raiseForeignProperty(const ModelElement::Builder& builder,
                                                          const meta::Property& property);
[[noreturn]] ND_PLATFORM_EXPORT void raiseSecondChild(const meta::Property& property);
[[noreturn]] ND_PLATFORM_EXPORT void raiseAbstract(const ModelElement::Builder& builder);

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
template <class List, class T>
void gather(boost::optional<List>& gathered, const PrimitiveSet<T>*, const meta::Property&,
            const Value& value) {
  List next;
  if (value.is<T>()) {
    if (gathered) next = *gathered;
    next.insert(next.end(), value.as<T>());
  } else if (value.is<std::vector<T>>()) {
    for (const auto& each : value.as<std::vector<T>>()) next.insert(next.end(), each);
  } else {
    for (const auto& each : value.as<std::set<T>>()) next.insert(next.end(), each);
  }
  gathered = std::move(next);
}
inline void gather(BuilderChildren& gathered, const void*, const meta::Property& property,
                   const Value& value) {
  if (property.getUpper() != 1 && value.is<std::vector<ModelElement>>()) {
    for (const ModelElement& each : value.as<std::vector<ModelElement>>())
      gathered.push_back({nullptr, each});
    return;
  }
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
template <class List, class T>
void applyGathered(const boost::optional<List>& gathered, PrimitiveSet<T>& field) {
  if (!gathered) return;
  typename PrimitiveSet<T>::Values values(gathered->begin(), gathered->end());
  field.restoreFrom(values);
}
template <class Slot>
void applyGathered(const BuilderChildren&, Slot&) {}

template <class E>
void takeReference(Reference<E>& field, const E& element) {
  field.set(element);
}
template <class Collection>
void takeReference(Collection& field, const typename Collection::Element& element) {
  field.add(element);
}

template <class FieldT>
void createGathered(const BuilderChildren& gathered, FieldT& field,
                    ModelElement::Builder::Orchestrator& orchestrator) {
  using E = typename FieldT::Element;
  const ModelElement owner(&field.owner());
  for (const BuilderChild& child : gathered) {
    if constexpr (std::is_base_of_v<ReferringField, FieldT>) {
      orchestrator.refer(child.builder, child.element, field.getModel(),
                         [&field, owner](const ModelElement& target) {
                           takeReference(field, E(checkedElement<E>(field, target)));
                         });
    } else {
      const ModelElement element =
          child.builder ? child.builder->createWithin(orchestrator, field.getModel()) : child.element;
      const E checked(checkedElement<E>(field, element));
      const bool isAnnounced = !child.builder || !element || element.isAlive();
      if (isAnnounced)
        field.add(checked);
      else
        orchestrator.defer([&field, owner, checked] { field.add(checked); });
    }
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
  if (ModelElement known = orchestrator.getCreatedElement(builder)) return known;
  const ModelElement element = allocateElement<E>(builder.getModel(), uuid);
  auto* const impl = static_cast<typename E::Impl*>(element.impl());
  values.applyTo(*impl);
  orchestrator.add(builder, element);
  const auto rest = [element, impl, &builder, &values, &orchestrator] {
    element.impl()->notifyCreated();
    values.createChildren(*impl, orchestrator);
    orchestrator.finish(builder);
  };
  if (defer)
    orchestrator.defer(rest);
  else
    rest();
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
    using E = typename B::Element;
    if constexpr (std::is_constructible_v<typename E::Impl, const Model&, const boost::uuids::uuid&>)
      return detail::build<E>(*this, self().values(), orchestrator(), defer, uuid);
    else
      detail::raiseAbstract(*this);
  }

 protected:
  B& self() noexcept { return static_cast<B&>(*this); }
};

}  // namespace lx::base
