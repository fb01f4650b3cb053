#pragma once

#include "nd_data_adapter/model/AdapterCacheV2.h"
#include "nd_data_adapter/model/AdapterRegistryV2.h"

namespace nd::data::adapter::detail {

/// The handles of a process-wide element and of the model that holds nothing else.
template <class E>
struct Singleton {
  lx::base::Model model;
  E element;

  /// Give the element. It is made when it is not there, and so is its model. One whose destruction was
  /// undone is there again.
  E get() {
    if (element.isAlive()) return element;
    if (!model.isAlive()) model = lx::base::Model::create();
    for (const lx::base::ModelElement& each : model.impl()->roots()) {
      if (auto* const found = dynamic_cast<typename E::Impl*>(each.impl())) return element = E(found);
    }
    return element = E::create(model);
  }
};

/// The two singletons. The metamodel outlives both, and the registry outlives the cache.
Singleton<AdapterRegistryV2>& registrySingleton();
Singleton<AdapterCacheV2>& cacheSingleton();

}  // namespace nd::data::adapter::detail
