#pragma once

#include <type_traits>

#include "nd_data_adapter/model/AdapterCacheV2.h"
#include "tests/nd_data_adapter/model/random/Pairing.h"

namespace random_walk {

/// Call f with the collection that is a property of an element.
template <class F>
void withCollection(const ModelElement& owner, Kind kind, F f) {
  switch (kind) {
    case Kind::Report:
      return f(as<model_test::ChangeReport>(owner).getChangesMutable());
    case Kind::Variants:
      return f(as<model_test::ConditionControlChangeReport>(owner).getVariantsMutable());
    case Kind::Container:
      return f(as<model_test::DataContainer>(owner).getMetaDataCacheMutable());
    default:
      return f(as<nd::data::adapter::AdapterCacheV2>(owner).impl()->getCPPCacheMutable());
  }
}

template <class Collection>
using ElementOf = typename std::remove_reference_t<Collection>::Element;

}  // namespace random_walk
