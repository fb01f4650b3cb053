#pragma once

#include <algorithm>
#include <set>
#include <type_traits>
#include <utility>

#include "platform/foundation/FieldTable.h"
#include "tests/platform/foundation/random/Access.h"
#include "tests/platform/foundation/random/Pools.h"

namespace model_walk {

/// Take a member function apart.
template <class F>
struct Member;
template <class ImplT, class R>
struct Member<R (ImplT::*)()> {
  using Impl = ImplT;
  using Result = std::remove_cvref_t<R>;
};
template <class ImplT, class R>
struct Member<R (ImplT::*)() const> {
  using Impl = ImplT;
  using Result = std::remove_cvref_t<R>;
};

template <class T>
struct IsOptional : std::false_type {};
template <class T>
struct IsOptional<boost::optional<T>> : std::true_type {
  using Inner = T;
};

/// A property with one value. One without setter has null for it.
template <auto Get, auto Set>
class ValueAccess final : public Access {
 public:
  using M = Member<decltype(Get)>;
  using T = typename M::Result;

  /// A property whose new elements have another value than the type's zero.
  explicit ValueAccess(T initial = T{}) : initial_(std::move(initial)) {}

  PropertyOfKind describe() const override {
    PropertyOfKind result{};
    result.form = IsOptional<T>::value ? Form::Optional : Form::Value;
    result.zero = toContent(T{});
    result.initial = toContent(initial_);
    if constexpr (IsOptional<T>::value)
      result.many = static_cast<int>(pool<typename IsOptional<T>::Inner>().size());
    else
      result.many = static_cast<int>(pool<T>().size());
    result.isChanged = !std::is_null_pointer_v<decltype(Set)>;
    return result;
  }

  Content read(const Pairing&, Impl& owner) const override { return toContent((self(owner).*Get)()); }
  Content readValue(const Pairing&, const Value& value) const override { return toContent(value.as<T>()); }
  Value makeValue(const Pairing&, const Content& content) const override { return Value(toT(content)); }

  void set(const Pairing&, Impl& owner, const Content& content) const override {
    if constexpr (!std::is_null_pointer_v<decltype(Set)>) (self(owner).*Set)(toT(content));
  }

 private:
  static typename M::Impl& self(Impl& owner) { return static_cast<typename M::Impl&>(owner); }
  static Content toContent(const T& value) {
    if constexpr (IsOptional<T>::value)
      return value ? Content{placeOf(*value)} : Content();
    else
      return {placeOf(value)};
  }
  static T toT(const Content& content) {
    if constexpr (IsOptional<T>::value)
      return content.empty() ? T() : T(valueAt<typename IsOptional<T>::Inner>(content[0]));
    else
      return valueAt<T>(content[0]);
  }

  T initial_;
};

template <class C>
struct IsSet : std::false_type {};
template <class T>
struct IsSet<lx::base::PrimitiveSet<T>> : std::true_type {};

/// A collection of values. One that nobody changes has null for the second function.
template <auto Get, auto GetMutable>
class ValuesAccess final : public Access {
 public:
  using M = Member<decltype(Get)>;
  using C = typename M::Result;
  using T = typename C::value_type;
  static constexpr bool IsChanged = !std::is_null_pointer_v<decltype(GetMutable)>;
  static constexpr bool Ascends = IsSet<C>::value;

  PropertyOfKind describe() const override {
    PropertyOfKind result{};
    result.form = Ascends ? Form::Set : Form::List;
    result.many = static_cast<int>(pool<T>().size());
    result.isChanged = IsChanged;
    return result;
  }

  Content read(const Pairing&, Impl& owner) const override { return toContent(self(owner).values()); }
  Content readValue(const Pairing&, const Value& value) const override {
    if constexpr (Ascends)
      return toContent(value.as<std::set<T>>());
    else
      return toContent(value.as<std::vector<T>>());
  }
  Value makeValue(const Pairing&, const Content& content) const override {
    const std::vector<T> values = toVector(content);
    if constexpr (Ascends) {
      const std::set<T> set(values.begin(), values.end());
      return content.size() % 2 == 0 ? Value(set) : Value(values);
    } else {
      return Value(values);
    }
  }
  std::string difference(const Pairing&, Impl& owner, const Twin::Element& element,
                         unsigned index) const override {
    const Content& wanted = element.value(index);
    Content walked;
    for (const T& each : self(owner)) walked.push_back(placeOf(each));
    if (walked != wanted) return "its walk is " + written(walked);
    if (self(owner).size() != wanted.size() || self(owner).empty() != wanted.empty()) return "its size";
    if constexpr (Ascends) {
      for (int place = 0; place < static_cast<int>(pool<T>().size()); ++place) {
        const bool isIn = std::find(wanted.begin(), wanted.end(), place) != wanted.end();
        if (self(owner).contains(valueAt<T>(place)) != isIn) return "what it contains";
      }
    }
    return {};
  }

  void set(const Pairing&, Impl& owner, const Content& content) const override {
    if constexpr (IsChanged) changed(owner).assign(toVector(content));
  }
  bool add(const Pairing&, Impl& owner, int one) const override {
    if constexpr (!IsChanged)
      return false;
    else if constexpr (Ascends)
      return changed(owner).add(valueAt<T>(one));
    else
      return changed(owner).add(valueAt<T>(one)), true;
  }
  bool remove(const Pairing&, Impl& owner, int one) const override {
    if constexpr (Ascends)
      return changed(owner).remove(valueAt<T>(one));
    else
      return false;
  }
  void clear(Impl& owner) const override {
    if constexpr (IsChanged) changed(owner).clear();
  }

 private:
  static const C& self(Impl& owner) { return (static_cast<typename M::Impl&>(owner).*Get)(); }
  static C& changed(Impl& owner) { return (static_cast<typename M::Impl&>(owner).*GetMutable)(); }
  template <class List>
  static Content toContent(const List& values) {
    Content result;
    for (const T& each : values) result.push_back(placeOf(each));
    return result;
  }
  static std::vector<T> toVector(const Content& content) {
    std::vector<T> result;
    for (const int each : content) result.push_back(valueAt<T>(each));
    return result;
  }
};

}  // namespace model_walk
