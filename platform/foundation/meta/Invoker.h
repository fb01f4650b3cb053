#pragma once

#include <type_traits>
#include <utility>
#include <vector>

#include "platform/foundation/Report.h"
#include "platform/foundation/Value.h"
#include "platform/foundation/meta/Meta.h"

namespace lx::base::meta {

namespace detail {

template <class T>
inline constexpr bool IsHandle = std::is_base_of_v<ModelElement, T>;

/// Gives an argument out of a value: a handle of any class for one of its superclass, a list of them
/// likewise.
template <class T>
struct FromValue {
  static T get(const Value& value) {
    if constexpr (!IsHandle<T>) {
      return value.as<T>();
    } else if constexpr (std::is_same_v<T, ModelElement>) {
      return value.as<ModelElement>();
    } else {
      const ModelElement& element = value.as<ModelElement>();
      auto* const impl = dynamic_cast<typename T::Impl*>(element.impl());
      if (impl == nullptr && element) report::cannotCast(element, T::metaClass());
      return T(impl);
    }
  }
};

template <class T>
requires IsHandle<T>
struct FromValue<std::vector<T>> {
  static std::vector<T> get(const Value& value) {
    std::vector<T> result;
    for (const ModelElement& element : value.as<std::vector<ModelElement>>()) {
      result.push_back(FromValue<T>::get(Value(element)));
    }
    return result;
  }
};

template <class ImplT, class Result, class... Arguments, std::size_t... At>
Value call(ImplT& self, Result (ImplT::*member)(Arguments...), const std::vector<Value>& arguments,
           std::index_sequence<At...>) {
  if constexpr (std::is_void_v<Result>) {
    (self.*member)(FromValue<std::decay_t<Arguments>>::get(arguments[At])...);
    return {};
  } else {
    return Value((self.*member)(FromValue<std::decay_t<Arguments>>::get(arguments[At])...));
  }
}

template <class ImplT, class Result, class... Arguments, std::size_t... At>
Value call(const ImplT& self, Result (ImplT::*member)(Arguments...) const,
           const std::vector<Value>& arguments, std::index_sequence<At...>) {
  if constexpr (std::is_void_v<Result>) {
    (self.*member)(FromValue<std::decay_t<Arguments>>::get(arguments[At])...);
    return {};
  } else {
    return Value((self.*member)(FromValue<std::decay_t<Arguments>>::get(arguments[At])...));
  }
}

template <class ImplT, class Result, class... Arguments>
Value callMember(ModelElement::Impl& self, Result (ImplT::*member)(Arguments...) const,
                 [[maybe_unused]] const std::vector<Value>& arguments) {
  return call(static_cast<const ImplT&>(self), member, arguments, std::index_sequence_for<Arguments...>());
}

template <class ImplT, class Result, class... Arguments>
Value callMember(ModelElement::Impl& self, Result (ImplT::*member)(Arguments...),
                 [[maybe_unused]] const std::vector<Value>& arguments) {
  return call(static_cast<ImplT&>(self), member, arguments, std::index_sequence_for<Arguments...>());
}

}  // namespace detail

/// The invoker of an operation: calls it through its virtual slot. The caller has tested the element's class
/// and the number of arguments. An operation without result gives an empty value.
template <auto Member>
Value invokeMember(ModelElement::Impl& self, const std::vector<Value>& arguments) {
  return detail::callMember(self, Member, arguments);
}

}  // namespace lx::base::meta
