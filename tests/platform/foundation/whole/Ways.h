#pragma once

#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "platform/foundation/Builder.h"
#include "platform/foundation/Cast.h"
#include "platform/foundation/CreateElement.h"
#include "platform/foundation/messages.h"
#include "tests/platform/foundation/raised.h"
#include "tests/platform/foundation/whole/Samples.h"

/// Drives a property by every way that leads to it, and compares what the ways give.
namespace whole_test {

using lx::base::Transaction;
using lx::base::meta::Class;
using lx::base::meta::Property;
using Builder = lx::base::ModelElement::Builder;
using Elements = std::vector<ModelElement>;
using Children = lx::base::detail::BuilderChildren;

/// A class whose elements can be made.
struct Maker {
  Class (*metaClass)() = nullptr;
  ModelElement (*create)(const Model& model) = nullptr;
  std::unique_ptr<Builder> (*builder)() = nullptr;
};

template <class E>
Maker makerOf() {
  return {&E::metaClass, [](const Model& model) -> ModelElement { return E::create(model); },
          []() -> std::unique_ptr<Builder> { return std::make_unique<typename E::Builder>(); }};
}

/// A property of a class, and the ways to it that the compiler knows. Every value goes as a `Value` of the
/// type that the property has by reflection.
struct Ways {
  Maker maker;
  const char16_t* name = u"";
  std::string qualifiedName;
  unsigned index = 0;
  const char16_t* type = u"";
  ValueFlags flags = ValueFlags::Single;
  Value initial;           // empty if it is the type's zero
  bool isReadable = true;  // by reflection
  bool isSettable = true;  // by reflection
  bool isContained = false;
  std::vector<const char16_t*> fitting, misfits;  // classes of elements that the property takes, and doesn't
  Value (*get)(const ModelElement& element) = nullptr;
  bool (*has)(const ModelElement& element) = nullptr;
  void (*set)(const ModelElement& element, const Value& value) = nullptr;
  void (*build)(Builder& builder, const Value& value) = nullptr;
  void (*buildChild)(Builder& builder, Builder& child) = nullptr;
  Value (*gathered)(Builder& builder) = nullptr;     // of values; empty if the builder was given none
  Children (*children)(Builder& builder) = nullptr;  // of elements
  ModelElement (*createInto)(const ModelElement& element, Builder& child) = nullptr;
  ModelElement (*peekResolve)(const ModelElement& element) = nullptr;
  ModelElement (*resolve)(const ModelElement& element) = nullptr;
  const char16_t* child = u"";  // the class whose builder these two take
};

/// Drive a property that holds values; one that holds elements; one that is worked out.
void driveValue(const Ways& ways);
void driveElements(const Ways& ways);
void driveDerived(const Ways& ways);

/// Expect that a builder tells what it was given last for a property of values, and what was added to that;
/// every element and every builder that it was given for a property of elements.
void expectGatheredValue(const Ways& ways);
void expectGatheredElements(const Ways& ways);

/// Expect that a class has these properties and no others.
void expectProperties(const Class& type, const std::vector<std::u16string>& names);

// What generated ways are written with.

template <class E>
E of(const ModelElement& element) {
  return lx::base::castTo<E>(element);
}
template <class E>
typename E::Impl& implOf(const ModelElement& element) {
  return *of<E>(element).impl();
}
template <class E>
typename E::Builder& builderOf(Builder& builder) {
  return dynamic_cast<typename E::Builder&>(builder);
}

template <class T>
Value valueOf(const T& content) {
  return Value(content);
}

template <class Collection>
Value listed(const Collection& collection) {
  Elements result;
  for (const auto& each : collection) result.push_back(each);
  return Value(result);
}
template <class Collection>
Value asSet(const Collection& collection) {
  const auto values = collection.values();
  return Value(std::set<typename Collection::value_type>(values.begin(), values.end()));
}
/// Give what a builder has gathered for a property; empty if nothing.
template <class T>
Value contentOf(const boost::optional<T>& gathered) {
  return gathered ? Value(*gathered) : Value();
}
template <class T>
Value setIn(const boost::optional<std::vector<T>>& gathered) {
  return gathered ? Value(std::set<T>(gathered->begin(), gathered->end())) : Value();
}

template <class Collection>
void refill(Collection& collection, const Value& value) {
  collection.clear();
  for (const ModelElement& each : value.as<Elements>())
    collection.add(lx::base::castTo<typename Collection::Element>(each));
}

// What the drivers have in common.

inline Transaction begin(const Model& model) {
  return model.impl()->beginTransaction(false);
}

/// Make an element of a class by its name.
ModelElement make(const Model& model, const char16_t* className);
std::unique_ptr<Builder> builderFor(const Model& model, const char16_t* className);

/// Expect that the property has a value, by every way of asking.
void expectValue(const Ways& ways, const ModelElement& element, const Value& value);

/// Expect that reflection refuses to set the property, and leaves it.
void expectNotSettable(const Ways& ways, const ModelElement& element, const Value& value);

/// Expect that reflection and builders refuse a value of another type, and leave the property.
void expectOtherTypesRefused(const Ways& ways, const Model& model);

/// Expect how the description describes the property, and give it.
Property described(const Ways& ways);

/// Expect what is asked of and done to a property of an element that is gone, or a proxy.
void expectEnd(const Ways& ways, const Value& zero, const Value& value);

}  // namespace whole_test
