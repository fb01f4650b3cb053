#pragma once

#include <algorithm>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

#include "tests/platform/foundation/random/TypedAccess.h"

namespace model_walk {

/// Carry a builder of exactly the class E, or of any class for `ModelElement`.
template <class E>
auto wrapped(std::unique_ptr<ModelElement::Builder> builder) {
  if constexpr (std::is_same_v<E, ModelElement>)
    return ModelElement::BuilderWrapper(std::shared_ptr<ModelElement::Builder>(std::move(builder)));
  else
    return lx::base::BuilderOf<E>(dynamic_cast<const typename E::Builder&>(*builder));
}

/// Find the field of an element that refers to others as the property of an index.
class FieldFinder final : public ModelElement::Impl::ContainedVisitor {
 public:
  FieldFinder(ModelElement::Impl& owner, unsigned index) : index_(index) { owner.doDestroy(*this); }
  void visit(ModelElement::Impl&) override {}
  void visitReferring(lx::base::detail::ReferringField& field) override {
    if (field.index() == index_) found = &field;
  }

  lx::base::detail::ReferringField* found = nullptr;

 private:
  unsigned index_;
};

/// A property with one element: contained, if there is a function that creates it there; else referred to.
template <auto Get, auto Set, auto CreateInto = nullptr>
class ElementAccess final : public Access {
 public:
  using M = Member<decltype(Get)>;
  using E = typename M::Result;
  static constexpr bool Contains = !std::is_null_pointer_v<decltype(CreateInto)>;

  explicit ElementAccess(unsigned index) : index_(index) {}

  PropertyOfKind describe() const override {
    PropertyOfKind result{};
    result.form = Contains ? Form::Child : Form::Reference;
    result.isChanged = !std::is_null_pointer_v<decltype(Set)>;
    return result;
  }
  bool accepts(const lx::base::meta::Class& given) const override {
    return given.isSubclassOf(E::metaClass());
  }

  Content read(const Pairing& pairing, Impl& owner) const override {
    return toContent(pairing, (self(owner).*Get)());
  }
  Content readValue(const Pairing& pairing, const Value& value) const override {
    return toContent(pairing, value.as<ModelElement>());
  }
  Value makeValue(const Pairing& pairing, const Content& content) const override {
    return Value(content.empty() ? ModelElement() : pairing[content[0]]);
  }

  void set(const Pairing& pairing, Impl& owner, const Content& content) const override {
    if constexpr (!std::is_null_pointer_v<decltype(Set)>)
      (self(owner).*Set)(as<E>(content.empty() ? ModelElement() : pairing[content[0]]));
  }
  ModelElement resolve(Impl& owner, const ModelElement& proxy) const override {
    if constexpr (Contains) {
      auto* const slot = dynamic_cast<lx::base::ContainedReference<E>*>(proxy.impl()->containmentSlot());
      return slot == nullptr ? ModelElement() : ModelElement(slot->resolveProxy(as<E>(proxy)));
    } else {
      auto* const field = dynamic_cast<lx::base::Reference<E>*>(FieldFinder(owner, index_).found);
      if (field == nullptr) throw std::logic_error("the property doesn't refer");
      return field->resolve();
    }
  }
  void createInto(Impl& owner, std::unique_ptr<ModelElement::Builder> builder) const override {
    if constexpr (Contains) (self(owner).*CreateInto)(wrapped<E>(std::move(builder)), {});
  }

 private:
  static typename M::Impl& self(Impl& owner) { return static_cast<typename M::Impl&>(owner); }
  static Content toContent(const Pairing& pairing, const ModelElement& element) {
    return element ? Content{pairing.idOf(element)} : Content();
  }

  unsigned index_;
};

template <class C>
struct FormOf;
template <class E>
struct FormOf<lx::base::ElementSequence<E>> {
  static constexpr Form form = Form::Children;
  static constexpr bool holdsProxies = true;
};
template <class K, class E>
struct FormOf<lx::base::ElementMap<K, E>> {
  using Key = K;
  static constexpr Form form = Form::Map;
  static constexpr bool holdsProxies = true;
};
template <class K, class E>
struct FormOf<lx::base::ElementMultimap<K, E>> {
  using Key = K;
  static constexpr Form form = Form::Multimap;
  static constexpr bool holdsProxies = true;
};
template <class E, class C>
struct FormOf<lx::base::TypedReferenceCollection<E, C>> {
  static constexpr Form form =
      lx::base::detail::ReferenceKind<C>::Order == lx::base::detail::ReferenceOrder::Kept ? Form::Row
                                                                                          : Form::Bag;
  static constexpr bool holdsProxies = false;
};
template <class E, class C>
struct FormOf<lx::base::TypedReferenceCollectionWithProxies<E, C>> {
  static constexpr Form form = FormOf<lx::base::TypedReferenceCollection<E, C>>::form;
  static constexpr bool holdsProxies = true;
};

/// A collection of elements, which it contains if there is a function that creates them there.
template <auto Get, auto GetMutable, auto CreateInto>
class CollectionAccess final : public Access {
 public:
  using M = Member<decltype(Get)>;
  using C = typename M::Result;
  using E = typename C::Element;
  static constexpr Form form = FormOf<C>::form;

  /// A collection that is sorted by a property of its elements, 0 for none.
  explicit CollectionAccess(unsigned key = 0) : key_(key) {}

  PropertyOfKind describe() const override {
    PropertyOfKind result{};
    result.form = form;
    result.key = key_;
    result.holdsProxies = FormOf<C>::holdsProxies;
    return result;
  }
  bool accepts(const lx::base::meta::Class& given) const override {
    return given.isSubclassOf(E::metaClass());
  }

  Content read(const Pairing& pairing, Impl& owner) const override {
    Content result = order(pairing, owner);
    if constexpr (form == Form::Bag) std::sort(result.begin(), result.end());
    return result;
  }
  Content order(const Pairing& pairing, Impl& owner) const override { return pairing.idsOf(self(owner)); }
  Content readValue(const Pairing& pairing, const Value& value) const override {
    Content result = pairing.idsOf(value.as<std::vector<ModelElement>>());
    if constexpr (form == Form::Bag) std::sort(result.begin(), result.end());
    return result;
  }
  Value makeValue(const Pairing& pairing, const Content& content) const override {
    std::vector<ModelElement> elements;
    for (const Id id : content) elements.push_back(pairing[id]);
    return Value(elements);
  }

  std::string difference(const Pairing& pairing, Impl& owner, const Twin::Element& element,
                         unsigned index) const override {
    const C& collection = self(owner);
    const Content& wanted = element.value(index);
    if (collection.size() != wanted.size() || collection.empty() != wanted.empty()) return "its size";
    if constexpr (isKeyed(form)) {
      if (pairing.idsOf(collection.proxies()) != element.apart(index))
        return "its proxies are " + written(pairing.idsOf(collection.proxies()));
      return differenceOfKeys(pairing, collection, wanted);
    } else {
      for (std::size_t at = 0; at < wanted.size(); ++at) {
        if (!collection.contains(as<E>(pairing[wanted[at]]))) return "what it contains";
        if constexpr (form != Form::Bag) {
          if (pairing.idOf(collection.at(at)) != wanted[at]) return "its positions";
        }
      }
      if constexpr (requires { collection.proxies(); }) {
        Content proxies, found = pairing.idsOf(collection.proxies());
        for (const Id id : wanted) {
          if (pairing[id].isProxy()) proxies.push_back(id);
        }
        if constexpr (form == Form::Bag) std::sort(found.begin(), found.end());
        if (found != proxies) return "its proxies are " + written(found);
      }
      return {};
    }
  }

  bool add(const Pairing& pairing, Impl& owner, int one) const override {
    if constexpr (isReferring(form))
      return changed(owner).add(as<E>(pairing[one]));
    else
      return changed(owner).add(as<E>(pairing[one])), true;
  }
  bool insert(const Pairing& pairing, Impl& owner, std::size_t position, int one) const override {
    if constexpr (form == Form::Row)
      return changed(owner).insert(position, as<E>(pairing[one]));
    else if constexpr (form == Form::Children)
      return changed(owner).insert(position, as<E>(pairing[one])), true;
    else
      return add(pairing, owner, one);
  }
  bool remove(const Pairing& pairing, Impl& owner, int one) const override {
    return changed(owner).remove(as<E>(pairing[one]));
  }
  void clear(Impl& owner) const override { changed(owner).clear(); }
  ModelElement resolve(Impl& owner, const ModelElement& proxy) const override {
    const E expected = changed(owner).peekResolveProxy(as<E>(proxy));
    const E resolved = changed(owner).resolveProxy(as<E>(proxy));
    if (!(expected == resolved)) throw std::logic_error("a glimpse showed another element");
    return resolved;
  }
  void createInto(Impl& owner, std::unique_ptr<ModelElement::Builder> builder) const override {
    if constexpr (!std::is_null_pointer_v<decltype(CreateInto)>)
      (static_cast<typename M::Impl&>(owner).*CreateInto)(wrapped<E>(std::move(builder)), {});
  }

 private:
  static const C& self(Impl& owner) { return (static_cast<typename M::Impl&>(owner).*Get)(); }
  static C& changed(Impl& owner) { return (static_cast<typename M::Impl&>(owner).*GetMutable)(); }

  std::string differenceOfKeys(const Pairing& pairing, const C& collection, const Content& wanted) const {
    using K = typename FormOf<C>::Key;
    const std::vector<K> keys = collection.keys();
    if (keys.size() != wanted.size()) return "the number of its keys";
    for (const K& key : pool<K>()) {
      Content found;
      for (std::size_t at = 0; at < keys.size(); ++at) {
        if (keys[at] == key) found.push_back(wanted[at]);
      }
      if (pairing.idsOf(collection.findAll(key)) != found) return "what it finds under a key";
      if (pairing.idOf(collection.find(key)) != (found.empty() ? 0 : found.front()))
        return "its first of a key";
      if (collection.contains(key) == found.empty()) return "what it contains";
    }
    return {};
  }

  unsigned key_;
};

}  // namespace model_walk
