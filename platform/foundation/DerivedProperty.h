#pragma once

#include <cstddef>
#include <type_traits>

#include "platform/foundation/ModelElement.h"
#include "platform/foundation/Report.h"
#include "platform/foundation/meta/MetaImpl.h"

namespace lx::base {

/// A property that has no field: the class works its value out when it is asked for.
template <class ImplT>
struct DerivedProperty {
  const char16_t* name;
  Value (*get)(const ImplT& self);
  bool (*has)(const ImplT& self);
};

namespace detail {

template <auto Getter>
struct Derived;
template <class ImplT, class T, T (ImplT::*Getter)() const>
struct Derived<Getter> {
  /// Give the value; the type's zero if the element is gone. The getter may come to let go of the handle
  /// through which it was called.
  static T get(const ImplT& self) {
    const ModelElement held(const_cast<ImplT*>(&self));
    return self.isAlive() ? (self.*Getter)() : T{};
  }

  /// Tell whether there is a value: an element, or what an optional holds.
  static bool has(const ImplT& self) {
    if constexpr (std::is_constructible_v<bool, T> && !std::is_arithmetic_v<T>)
      return static_cast<bool>(get(self));
    else
      return self.isAlive();
  }

  static constexpr DerivedProperty<ImplT> row(const char16_t* name) {
    return {name, [](const ImplT& self) { return Value(get(self)); }, &has};
  }
};

/// Find a property among those that a class derives; null if it is none of them.
template <class ImplT, std::size_t Size>
const DerivedProperty<ImplT>* findDerived(const ImplT& self, const DerivedProperty<ImplT> (&rows)[Size],
                                          const meta::Property& property) {
  if (property.getIndex() != 0 || !self.isPropertyOfClass(property)) return nullptr;
  for (const DerivedProperty<ImplT>& row : rows) {
    if (property.impl()->name == row.name) return &row;
  }
  return nullptr;
}

}  // namespace detail
}  // namespace lx::base
