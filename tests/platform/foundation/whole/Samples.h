#pragma once

#include <memory>
#include <string>
#include <vector>

#include <boost/optional.hpp>

#include "platform/foundation/ModelElement.h"
#include "platform/foundation/meta/Meta.h"

/// Values to try properties with.
namespace whole_test {

using lx::base::Model;
using lx::base::ModelElement;
using lx::base::Value;
using lx::base::ValueFlags;

/// One value of a type, and its text; none for a value that has no text.
struct Sample {
  Value value;
  boost::optional<std::u16string> text;
  bool comesBack = true;  // reading the text gives the value
};

/// What is tried of one type.
struct Samples {
  std::u16string type;  // its qualified name
  bool hasSerializer = true;
  bool isTransientOnly = false;
  bool hasOrder = true;
  std::vector<Sample> singles;          // the type's zero first
  std::vector<std::u16string> noTexts;  // what can't be read
  std::vector<Value> optionals;         // the absent one first, then each of the singles
  std::vector<Value> lists, sets;       // the empty one first; sets for a type with an order

  /// Give the values of a property of the type that holds them in this way.
  std::vector<Value> of(ValueFlags flags) const;
};

/// List the samples of each type that isn't a class.
const std::vector<Samples>& allSamples();

/// Give those of a type.
const Samples& samplesOf(const std::u16string& type);

/// Give a value that is of no property's type.
Value alien();

/// Write a value for a message.
std::string written(const Value& value);

/// Tell whether a value is something that a property has: an element, or what an optional or a list holds.
bool isPresent(const Value& value);

}  // namespace whole_test
