#include "nd_data_adapter/broker/internal/Singletons.h"

#include "nd_data_adapter/model/MetaPackageNd_data_adapter.h"

namespace nd::data::adapter::detail {

namespace {

/// Lets go of a singleton at process exit: its model ends, and the element with it, which is found to the
/// last. The handles themselves are never destroyed, so that who asks later still gets a new, empty
/// singleton.
template <class E>
class ReleaseAtExit {
 public:
  explicit ReleaseAtExit(Singleton<E>& singleton) noexcept : singleton_(singleton) {}
  ReleaseAtExit(const ReleaseAtExit&) = delete;
  ReleaseAtExit& operator=(const ReleaseAtExit&) = delete;
  ~ReleaseAtExit() {
    singleton_.model = lx::base::Model();
    singleton_.earlier.clear();
    // What a client's handle of the model keeps alive stays the singleton, for who asks later still.
    if (!singleton_.element.isAlive()) singleton_.element = E();
  }

 private:
  Singleton<E>& singleton_;
};

}  // namespace

// What a static's construction touches first goes after it.

Singleton<AdapterRegistryV2>& registrySingleton() {
  static Singleton<AdapterRegistryV2>& singleton =
      (MetaPackageNd_data_adapter::getInstance(), *new Singleton<AdapterRegistryV2>);
  static const ReleaseAtExit<AdapterRegistryV2> release(singleton);
  return singleton;
}

Singleton<AdapterCacheV2>& cacheSingleton() {
  static Singleton<AdapterCacheV2>& singleton = (registrySingleton(), *new Singleton<AdapterCacheV2>);
  static const ReleaseAtExit<AdapterCacheV2> release(singleton);
  return singleton;
}

}  // namespace nd::data::adapter::detail
