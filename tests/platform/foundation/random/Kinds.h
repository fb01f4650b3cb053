#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <boost/container/small_vector.hpp>

#include "tests/support/walks/Outcome.h"

namespace model_walk {

using walking::Outcome;

/// Elements are numbered in the order of their creation, from 1; 0 is none.
using Id = int;

/// What a property holds: the numbers of elements; or values by their places in the list of those that are
/// drawn of their type, which ascends where the type has an order. What is absent is no number.
using Content = boost::container::small_vector<int, 4>;

/// The classes that walks make elements of.
enum class Kind {
  Values,
  Optionals,
  Defaults,
  Traits,
  Lists,
  Sets,
  Thing,
  Machine,
  Robot,
  Containers,
  References,
  MoreReferences,
  Branch,
  Leaf,
  Twig,
  Square,
  Cube
};
constexpr int Kinds = 17;

/// How a property holds its content. `Reference`, `Row` and `Bag` refer to elements; from `Child` to
/// `Multimap` they contain them.
enum class Form { Value, Optional, List, Set, Child, Children, Map, Multimap, Reference, Row, Bag };

constexpr bool isOfElements(Form form) {
  return form >= Form::Child;
}
constexpr bool isContaining(Form form) {
  return form >= Form::Child && form <= Form::Multimap;
}
constexpr bool isKeyed(Form form) {
  return form == Form::Map || form == Form::Multimap;
}
constexpr bool isReferring(Form form) {
  return form >= Form::Reference;
}
constexpr bool isSingle(Form form) {
  return form == Form::Value || form == Form::Optional || form == Form::Child || form == Form::Reference;
}

struct PropertyOfKind {
  Form form;
  int many = 0;              // values that are drawn
  Content zero;              // what one that is gone, or a proxy, gives
  Content initial;           // what a new element has
  unsigned key = 0;          // the property of the children by which they are sorted
  std::uint32_t kinds = 0;   // a bit for each kind of elements that it takes
  bool holdsProxies = true;  // false for a collection that refers to loaded elements only
  bool isChanged = true;     // false for one that its class lets nobody change
  bool isSetByName = true;

  bool takes(Kind kind) const { return (kinds >> static_cast<int>(kind) & 1U) != 0; }
};

/// List the properties of a kind of elements; the one with index 1 comes first.
const std::vector<PropertyOfKind>& propertiesOf(Kind kind);

const char* nameOf(Kind kind);
std::string written(const Content& content);

}  // namespace model_walk
