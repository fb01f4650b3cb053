#include "nd_data_adapter/broker/internal/Singletons.h"

#include "nd_data_adapter/model/MetaPackageNd_data_adapter.h"

namespace nd::data::adapter::detail {

// What a static's construction touches first is destroyed after it.

Singleton<AdapterRegistryV2>& registrySingleton() {
  MetaPackageNd_data_adapter::getInstance();
  static Singleton<AdapterRegistryV2> singleton;
  return singleton;
}

Singleton<AdapterCacheV2>& cacheSingleton() {
  registrySingleton();
  static Singleton<AdapterCacheV2> singleton;
  return singleton;
}

}  // namespace nd::data::adapter::detail
