#pragma once

#include "adapters/json/register.h"

namespace nd::adapters {

/// Register all adapters that come with the library with the broker. False if one was registered already or
/// its name is taken; the others are registered all the same.
///
///     nd::adapters::registerShippedAdapters();
inline bool registerShippedAdapters() {
  return registerJsonAdapter();
}

}  // namespace nd::adapters
