#pragma once

#include <set>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <boost/optional.hpp>

#include "platform/foundation/ContainedReference.h"
#include "platform/foundation/ElementMap.h"
#include "platform/foundation/ElementSequence.h"
#include "platform/foundation/KeyProperty.h"
#include "platform/foundation/PrimitiveSequence.h"
#include "platform/foundation/PrimitiveSet.h"
#include "platform/foundation/Reference.h"
#include "platform/foundation/ReferenceCollection.h"
#include "platform/foundation/Single.h"
#include "platform/foundation/meta/Meta.h"

/// What generated classes are made of besides their declarations: the table of a class's fields, and what is
/// done to all of them alike.
namespace lx::base {

namespace detail {

/// Give an element as one of the class that a property takes; raises `CannotAddIncompatibleTypes`.
template <class E>
typename E::Impl* checkedElement(const AbstractOwnedCollection& property, const ModelElement& element) {
  auto* const impl = dynamic_cast<typename E::Impl*>(element.impl());
  if (impl == nullptr && element) {
    report::cannotAddIncompatibleTypes(property.owner(), property.index(), element, E::metaClass());
  }
  return impl;
}

/// Set a property from a value, by reflection.
template <class ImplT, class T>
void setFromValue(ImplT& self, Single<T>&, void (ImplT::*setter)(const T&), const Value& value) {
  (self.*setter)(value.as<T>());
}
template <class ImplT, class T>
void setFromValue(ImplT&, PrimitiveSequence<T>& field, std::nullptr_t, const Value& value) {
  field.assign(value.as<std::vector<T>>());
}
template <class ImplT, class T>
void setFromValue(ImplT&, PrimitiveSet<T>& field, std::nullptr_t, const Value& value) {
  if (value.is<std::vector<T>>())
    field.assign(value.as<std::vector<T>>());
  else
    field.assign(value.as<std::set<T>>());
}
template <class ImplT, class E>
void setFromValue(ImplT&, Reference<E>& field, void (ImplT::*)(const E&), const Value& value) {
  field.setTarget(checkedElement<E>(field, value.as<ModelElement>()));
}
template <class ImplT, class E>
void setFromValue(ImplT&, ContainedReference<E>& field, void (ImplT::*)(const E&), const Value& value) {
  field.setElement(checkedElement<E>(field, value.as<ModelElement>()));
}

/// Tell whether a collection is as if it had been made of a list.
template <class Collection>
bool isMadeOf(const Collection& field, const std::vector<ModelElement>& elements) {
  if constexpr (requires { field.isMadeOf(elements); })
    return field.isMadeOf(elements);
  else
    return field.toValue() == Value(elements);
}

/// Replace what a collection holds: the former elements are destroyed if it contains them, the new
/// ones put in, in their order. A list that is there already stays. One that names some of what is
/// contained raises `CannotAddNonExistentObject`, one that names an element twice `InvalidValue`; what else
/// adding raises is raised likewise before any element has been told that it is about to be destroyed.
template <class Collection>
void replaceElements(Collection& field, const std::vector<ModelElement>& elements) {
  field.owner().checkWritable(field.index());
  if (isMadeOf(field, elements)) return;
  std::vector<typename Collection::Element> next;
  for (const ModelElement& element : elements) {
    next.emplace_back(checkedElement<typename Collection::Element>(field, element));
  }
  field.checkReplacement(elements);
  Transaction transaction = field.owner().modelImpl()->beginTransaction(false);
  field.clear();
  for (const auto& element : next) field.add(element);
  transaction.commit();
}
template <class ImplT, class Collection>
requires requires {
  typename Collection::Element;
}
void setFromValue(ImplT&, Collection& field, std::nullptr_t, const Value& value) {
  replaceElements(field, value.as<std::vector<ModelElement>>());
}

/// Whether letting go of a value runs no code but the language's own: numbers, texts, lists of them.
template <class T>
struct IsInert : std::is_trivially_destructible<T> {};
template <class C>
struct IsInert<std::basic_string<C>> : std::true_type {};
template <class T>
struct IsInert<std::vector<T>> : IsInert<T> {};
template <class T, class C>
struct IsInert<std::set<T, C>> : IsInert<T> {};
template <class T>
struct IsInert<boost::optional<T>> : IsInert<T> {};
template <class Core>
struct IsInert<JournalMark<Core>> : std::true_type {};  // once it was restored from

}  // namespace detail

/// One field of a class: the index of its property, the member of the element, the member of the storage that
/// keeps its old value, and the setter that reflection uses (null for a collection, and for what can't be
/// set).
template <unsigned Index, auto Member, auto Old, auto Setter = nullptr>
struct Field {
  static constexpr unsigned index = Index;

  template <class ImplT>
  static auto& member(ImplT& self) noexcept {
    return self.*Member;
  }
  template <class StorageT>
  static auto& old(StorageT& storage) noexcept {
    return storage.*Old;
  }
  template <class ImplT>
  static void set([[maybe_unused]] ImplT& self, const meta::Property& property,
                  [[maybe_unused]] const Value& value) {
    property.checkSettable(self);
    using MemberT = std::remove_reference_t<decltype(self.*Member)>;
    constexpr bool isCollection = std::is_base_of_v<AbstractOwnedCollection, MemberT> &&
                                  !std::is_base_of_v<detail::ContainedReferenceCore, MemberT> &&
                                  !std::is_base_of_v<detail::ReferenceCore, MemberT>;
    if constexpr (!isCollection && std::is_null_pointer_v<decltype(Setter)>)
      report::cannotSetReadOnlyProperty(property);
    else
      detail::setFromValue(self, self.*Member, Setter, value);
  }
};

/// The fields that a class adds to those of its superclass. Every function concerns these alone; those of the
/// superclass are its own table's.
template <class... Fields>
struct FieldTable {
  /// Whether the old values of the fields may go while a transaction is being undone.
  template <class StorageT>
  static constexpr bool AreInert =
      (detail::IsInert<std::remove_cvref_t<decltype(Fields::old(std::declval<StorageT&>()))>>::value && ...);

  /// Call f with the field of the index; false if the class adds no such property.
  template <class F>
  static bool withField([[maybe_unused]] unsigned index, [[maybe_unused]] F f) {
    return ((Fields::index == index ? (f(Fields()), true) : false) || ...);
  }

  /// Call f with the field of a property; false if the class adds no such one. The property of another class
  /// is none, whatever its index.
  template <class ImplT, class F>
  static bool withProperty(const ImplT& self, const meta::Property& property, F f) {
    const unsigned index = property.getIndex();
    return withField(index, [](auto) {}) && self.isPropertyOfClass(property) && withField(index, f);
  }

  template <class ImplT, class StorageT>
  static void copyValue(unsigned index, ImplT& self, StorageT& to, StorageT* from) {
    withField(index, [&](auto field) {
      using FieldT = decltype(field);
      if (from != nullptr)
        FieldT::old(to) = std::move(FieldT::old(*from));
      else
        FieldT::member(self).saveTo(FieldT::old(to));
    });
  }

  template <class ImplT, class StorageT>
  static void restore(ImplT& self, StorageT& storage) noexcept {
    ((storage.isChanged(Fields::index) ? Fields::member(self).restoreFrom(Fields::old(storage)) : void()),
     ...);
  }

  template <class ImplT, class StorageT>
  static void revertUnchanged(const ImplT& self, StorageT& storage) {
    ((storage.isChanged(Fields::index) && Fields::member(self).isUnchangedSince(Fields::old(storage))
          ? storage.clearChanged(Fields::index)
          : void()),
     ...);
  }

  template <class ImplT, class StorageT>
  static Value oldValue(unsigned index, const ImplT& self, const StorageT& storage) {
    Value result;
    if (storage.isChanged(index)) {
      withField(index, [&](auto field) {
        using FieldT = decltype(field);
        result = FieldT::member(self).oldValue(FieldT::old(storage));
      });
    }
    return result;
  }

  template <class ImplT>
  static void visitContained(ImplT& self, ModelElement::Impl::ContainedVisitor& visitor) {
    (Fields::member(self).visitContained(visitor), ...);
  }

  template <class ImplT>
  static void letGo(ImplT& self) noexcept {
    (Fields::member(self).letGo(), ...);
  }

  /// Tell whether the property of the index holds a proxy of that identity; false, as an answer of its own,
  /// if the class adds no such property.
  template <class ImplT>
  static bool containsProxyTo(const ImplT& self, unsigned index, const boost::uuids::uuid& uuid,
                              bool& result) {
    return withField(index, [&](auto field) {
      const auto& member = decltype(field)::member(self);
      if constexpr (requires { member.containsProxyTo(uuid); })
        result = member.containsProxyTo(uuid);
      else
        result = false;
    });
  }

  /// Give, ask for and set a property by its description; false, or an empty value, if the class adds no such
  /// one.
  template <class ImplT>
  static bool get(const ImplT& self, const meta::Property& property, Value& result) {
    return withProperty(self, property, [&](auto field) {
      const auto& member = decltype(field)::member(self);
      result = self.isAlive() ? member.toValue() : member.zeroValue();
    });
  }

  template <class ImplT>
  static bool has(const ImplT& self, const meta::Property& property, bool& result) {
    return withProperty(self, property, [&](auto field) {
      result = self.isAlive() && decltype(field)::member(self).hasValue();
    });
  }

  template <class ImplT>
  static bool set(ImplT& self, const meta::Property& property, const Value& value) {
    return withProperty(self, property, [&](auto field) { decltype(field)::set(self, property, value); });
  }
};

}  // namespace lx::base
