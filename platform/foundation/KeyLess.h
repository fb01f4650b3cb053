#pragma once

#include <functional>
#include <string>

#include "platform/text/Compare.h"

namespace lx::base::detail {

/// The order of keys and of sets: texts by code unit, everything else by its own order.
template <class K>
struct KeyLess : std::less<K> {};
template <>
struct KeyLess<std::u16string> : text::Less {};

}  // namespace lx::base::detail
