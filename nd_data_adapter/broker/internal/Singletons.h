#pragma once

#include <vector>

#include "nd_data_adapter/model/AdapterCacheV2.h"
#include "nd_data_adapter/model/AdapterRegistryV2.h"

namespace nd::data::adapter::detail {

/// The handles of a process-wide element and of the model that holds nothing else.
template <class E>
struct Singleton {
  lx::base::Model model;
  E element;
  std::vector<E> earlier;  // elements that are gone; an open transaction may undo the end of some

  /// Give the element. It is made when it is not there, and so is its model. One whose destruction was
  /// undone is there again.
  E get() {
    if (element.isAlive()) return element;
    if (!model.isAlive()) model = lx::base::Model::create();
    for (const E& each : earlier) {
      if (each.isAlive()) return element = each;
    }
    if (!model.impl()->hasOpenTransaction()) earlier.clear();
    if (element) earlier.push_back(element);
    lx::base::Transaction making = model.impl()->beginTransaction(false);
    element = E::create(model);
    // An observer that asks gets this one; one that destroys it leaves a dead one to the caller.
    making.commit();
    return element;
  }
};

/// The two singletons. The metamodel outlives both, and the registry outlives the cache.
Singleton<AdapterRegistryV2>& registrySingleton();
Singleton<AdapterCacheV2>& cacheSingleton();

}  // namespace nd::data::adapter::detail
