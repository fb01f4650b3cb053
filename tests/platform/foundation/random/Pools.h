#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <boost/uuid/uuid.hpp>

#include "platform/foundation/Model.h"
#include "tests/support/model/Colour.h"
#include "tests/support/model/bodies.h"

namespace model_walk {

/// List the values of a type that properties are set to, ascending if the type has an order. The type's zero
/// is one of them.
template <class T>
const std::vector<T>& pool();
template <>
const std::vector<std::u16string>& pool();
template <>
const std::vector<std::string>& pool();
template <>
const std::vector<bool>& pool();
template <>
const std::vector<std::int32_t>& pool();
template <>
const std::vector<lx::base::Model>& pool();
template <>
const std::vector<boost::uuids::uuid>& pool();
template <>
const std::vector<probe::Colour>& pool();
template <>
const std::vector<std::shared_ptr<int>>& pool();
template <>
const std::vector<probe::TokenTag*>& pool();

/// Give the place of a value in its list; -1 for one that isn't in it.
template <class T>
int placeOf(const T& value) {
  const std::vector<T>& all = pool<T>();
  const auto found = std::find(all.begin(), all.end(), value);
  return found == all.end() ? -1 : static_cast<int>(found - all.begin());
}

template <class T>
T valueAt(int place) {
  return pool<T>()[static_cast<std::size_t>(place)];
}

/// List how often each value that is shared is held.
std::vector<long> usesOfPools();

}  // namespace model_walk
