#include "nd_data_adapter/model/AdapterCacheV2.h"

#include "nd_data_adapter/broker/CPPAdapterV2.h"
#include "nd_data_adapter/broker/internal/AdapterEntries.h"
#include "nd_data_adapter/broker/internal/Singletons.h"

namespace nd::data::adapter {

AdapterCacheV2 AdapterCacheV2::getInstance() {
  return detail::cacheSingleton().get();
}

bool AdapterCacheV2::Impl::addCPPAdapterToCache(const std::shared_ptr<CPPAdapterV2>& adapter,
                                                const std::u16string& adapterQualifier) {
  checkAlive("nd.data.adapter.AdapterCacheV2.addCPPAdapterToCache");
  if (cPPCache_.contains(adapterQualifier)) return false;
  if (!adapter) return false;
  detail::addEntry(getCPPCacheMutable(), adapterQualifier, adapter);
  return true;
}

bool AdapterCacheV2::Impl::removeCPPAdapterFromCache(const std::u16string& adapterQualifier) {
  checkAlive("nd.data.adapter.AdapterCacheV2.removeCPPAdapterFromCache");
  const CPPAdapterV2Entry entry = cPPCache_.find(adapterQualifier);
  if (!entry) return false;
  getCPPCacheMutable();  // raises if the cache can't be changed
  detail::removeEntry(entry);
  return true;
}

std::shared_ptr<CPPAdapterV2> AdapterCacheV2::Impl::getCPPAdapter(const std::u16string& adapterQualifier) {
  checkAlive("nd.data.adapter.AdapterCacheV2.getCPPAdapter");
  const CPPAdapterV2Entry entry = cPPCache_.find(adapterQualifier);
  return entry ? entry.adapter() : nullptr;
}

std::vector<std::u16string> AdapterCacheV2::Impl::getAllAdapterQualifiers() {
  checkAlive("nd.data.adapter.AdapterCacheV2.getAllAdapterQualifiers");
  return cPPCache_.keys();
}

void AdapterCacheV2::Impl::aboutToDestroy() {
  checkAlive("nd.data.adapter.AdapterCacheV2.aboutToDestroy");
  const lx::base::FinalChanges finality(*this);
  lx::base::Transaction transaction = getModel().impl()->beginTransaction(false);
  // An adapter may change the cache while it is closed, so the walk goes by key, once: what it adds before
  // that key stays as it is.
  std::u16string qualifier;
  for (CPPAdapterV2Entry entry = cPPCache_.first(); entry; entry = cPPCache_.findGreater(qualifier)) {
    qualifier = entry.adapterName();
    const std::shared_ptr<CPPAdapterV2> adapter = entry.adapter();
    if (!adapter) continue;
    adapter->close();
    // It may have taken its own entry away or made it a proxy: then there is nothing more to let go of here.
    if (entry.impl()->container() == this && !entry.isProxy()) entry.setAdapter(nullptr);
  }
  transaction.commit();
}

}  // namespace nd::data::adapter
