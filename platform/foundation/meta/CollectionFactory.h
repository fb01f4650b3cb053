#pragma once

#include <array>
#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

#include "platform/foundation/FieldTable.h"
#include "platform/foundation/ReferenceCollection.h"
#include "platform/foundation/meta/MetaImpl.h"

namespace lx::base::meta {

/// A property by which collections of a class's elements can be keyed: what reads it is one of the two.
struct KeyRow {
  const char16_t* name;
  unsigned index;
  const std::u16string& (*text)(const ModelElement::Impl& element) noexcept;
  const std::int32_t& (*number)(const ModelElement::Impl& element) noexcept;

  constexpr KeyRow(const char16_t* keyName, unsigned keyIndex,
                   const std::u16string& (*read)(const ModelElement::Impl&) noexcept)
      : name(keyName), index(keyIndex), text(read), number(nullptr) {}
  constexpr KeyRow(const char16_t* keyName, unsigned keyIndex,
                   const std::int32_t& (*read)(const ModelElement::Impl&) noexcept)
      : name(keyName), index(keyIndex), text(nullptr), number(read) {}
};

namespace detail {

/// A collection that no element has as its own, with a handle that keeps its owner in memory.
template <class Collection>
struct Detached {
  template <class... Rest>
  explicit Detached(ModelElement::Impl& of, const Property& property, Rest... rest)
      : owner(&of), collection(of, property.getIndex(), rest...) {}

  const ModelElement owner;
  const Collection collection;
};

template <class Collection, class... Rest>
std::shared_ptr<const AbstractOwnedCollection> makeDetached(ModelElement::Impl& owner,
                                                            const Property& property, Rest... rest) {
  const auto made = std::make_shared<const Detached<Collection>>(owner, property, rest...);
  return {made, &made->collection};
}

template <template <class, class> class Keyed, class E, class Keys>
std::shared_ptr<const AbstractOwnedCollection> makeKeyed(ModelElement::Impl& owner, const Property& property,
                                                         const Keys& keys) {
  for (const KeyRow& key : keys) {
    if (property.impl()->key != key.name) continue;
    if (key.text != nullptr) {
      return makeDetached<Keyed<std::u16string, E>>(owner, property, key.index, key.text);
    }
    return makeDetached<Keyed<std::int32_t, E>>(owner, property, key.index, key.number);
  }
  return nullptr;
}

template <class E, template <class, class> class Referring>
std::shared_ptr<const AbstractOwnedCollection> makeReferring(ModelElement::Impl& owner,
                                                             const Property& property) {
  if (property.getValueFlags() == ValueFlags::Set) {
    return makeDetached<Referring<E, std::unordered_set<E>>>(owner, property);
  }
  return makeDetached<Referring<E, std::vector<E>>>(owner, property);
}

}  // namespace detail

/// The collection factory of a class: makes an empty collection of the kind in which a property holds
/// elements of class E. `Keys` lists the properties of the class by which it can be keyed.
template <class E, const auto& Keys>
std::shared_ptr<const AbstractOwnedCollection> makeCollection(ModelElement::Impl& owner,
                                                              const Property& property) {
  const Traits& traits = property.traits();
  switch (property.getValueFlags()) {
    case ValueFlags::Map:
      return detail::makeKeyed<ElementMap, E>(owner, property, Keys);
    case ValueFlags::Multimap:
      return detail::makeKeyed<ElementMultimap, E>(owner, property, Keys);
    case ValueFlags::Sequence:
      if (traits.isContained) return detail::makeDetached<ElementSequence<E>>(owner, property);
      [[fallthrough]];
    case ValueFlags::Set:
      if (traits.acceptsProxies)
        return detail::makeReferring<E, TypedReferenceCollectionWithProxies>(owner, property);
      return detail::makeReferring<E, TypedReferenceCollection>(owner, property);
    case ValueFlags::Optional:
    case ValueFlags::Single:
      break;
  }
  return nullptr;
}

}  // namespace lx::base::meta
