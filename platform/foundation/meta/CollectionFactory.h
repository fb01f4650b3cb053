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

template <template <class, class> class Keyed, class E, class Keys>
std::unique_ptr<AbstractOwnedCollection> makeKeyed(ModelElement::Impl& owner, const Property& property,
                                                   const Keys& keys) {
  for (const KeyRow& key : keys) {
    if (property.impl()->key != key.name) continue;
    if (key.text != nullptr) {
      return std::make_unique<Keyed<std::u16string, E>>(owner, property.getIndex(), key.index, key.text);
    }
    return std::make_unique<Keyed<std::int32_t, E>>(owner, property.getIndex(), key.index, key.number);
  }
  return nullptr;
}

template <class E, template <class, class> class Referring>
std::unique_ptr<AbstractOwnedCollection> makeReferring(ModelElement::Impl& owner, const Property& property) {
  if (property.getValueFlags() == ValueFlags::Set) {
    return std::make_unique<Referring<E, std::unordered_set<E>>>(owner, property.getIndex());
  }
  return std::make_unique<Referring<E, std::vector<E>>>(owner, property.getIndex());
}

}  // namespace detail

/// The collection factory of a class: makes an empty collection of the kind in which a property holds
/// elements of class E. `Keys` lists the properties of the class by which it can be keyed.
template <class E, const auto& Keys>
std::unique_ptr<AbstractOwnedCollection> makeCollection(ModelElement::Impl& owner, const Property& property) {
  const Traits& traits = property.traits();
  switch (property.getValueFlags()) {
    case ValueFlags::Map:
      return detail::makeKeyed<ElementMap, E>(owner, property, Keys);
    case ValueFlags::Multimap:
      return detail::makeKeyed<ElementMultimap, E>(owner, property, Keys);
    case ValueFlags::Sequence:
      if (traits.isContained) return std::make_unique<ElementSequence<E>>(owner, property.getIndex());
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
