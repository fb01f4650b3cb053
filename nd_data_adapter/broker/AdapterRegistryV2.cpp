#include "nd_data_adapter/model/AdapterRegistryV2.h"

#include <algorithm>

#include "nd_data_adapter/broker/CPPAdapterV2.h"
#include "nd_data_adapter/broker/internal/AdapterEntries.h"
#include "nd_data_adapter/broker/internal/Singletons.h"
#include "nd_data_adapter/model/URIOperations.h"
#include "platform/text/Compare.h"
#include "platform/text/FoldedCompare.h"

namespace nd::data::adapter {

namespace {

bool claims(CPPAdapterV2& adapter, const std::u16string& dottedExtension) {
  const std::vector<std::u16string> extensions = adapter.getSupportedExtensions();
  return std::any_of(extensions.begin(), extensions.end(), [&](const std::u16string& each) {
    return lx::text::equal(each, dottedExtension) ||
           lx::text::equalNormalizedIgnoringCase(each, dottedExtension);
  });
}

/// List the prototypes in the order of their names. Entries have none while the registry ends, and when its
/// end was undone.
std::vector<std::shared_ptr<CPPAdapterV2>> prototypesOf(const detail::AdapterEntries& entries) {
  std::vector<std::shared_ptr<CPPAdapterV2>> result;
  result.reserve(entries.size());
  for (const CPPAdapterV2Entry& entry : entries) {
    if (std::shared_ptr<CPPAdapterV2> prototype = entry.adapter()) result.push_back(std::move(prototype));
  }
  return result;
}

}  // namespace

AdapterRegistryV2 AdapterRegistryV2::getInstance() {
  return detail::registrySingleton().get();
}

bool AdapterRegistryV2::Impl::registerCPPAdapter(const std::shared_ptr<CPPAdapterV2>& adapter) {
  checkAlive("nd.data.adapter.AdapterRegistryV2.registerCPPAdapter");
  if (!adapter) return false;
  // The adapter may reset the client's pointer while it is asked.
  const auto held = std::shared_ptr<CPPAdapterV2>(adapter);
  const std::u16string name = held->getAdapterName();
  checkAlive("nd.data.adapter.AdapterRegistryV2.registerCPPAdapter");  // the adapter may have ended it
  if (cPPRegistry_.contains(name)) return false;
  detail::addEntry(getCPPRegistryMutable(), name, held);
  return true;
}

bool AdapterRegistryV2::Impl::unregisterCPPAdapter(const std::u16string& adapterName) {
  checkAlive("nd.data.adapter.AdapterRegistryV2.unregisterCPPAdapter");
  const CPPAdapterV2Entry entry = cPPRegistry_.find(adapterName);
  if (!entry) return false;
  getCPPRegistryMutable();  // raises if the registry can't be changed
  detail::removeEntry(entry);
  return true;
}

std::shared_ptr<CPPAdapterV2> AdapterRegistryV2::Impl::getNewCPPAdapter(const std::u16string& adapterName) {
  checkAlive("nd.data.adapter.AdapterRegistryV2.getNewCPPAdapter");
  const CPPAdapterV2Entry entry = cPPRegistry_.find(adapterName);
  if (!entry) return nullptr;
  const std::shared_ptr<CPPAdapterV2> prototype = entry.adapter();
  if (!prototype) return nullptr;
  return std::shared_ptr<CPPAdapterV2>(prototype->clone());
}

std::shared_ptr<CPPAdapterV2> AdapterRegistryV2::Impl::getCPPAdapterForStaticUse(
    const std::u16string& adapterName) {
  checkAlive("nd.data.adapter.AdapterRegistryV2.getCPPAdapterForStaticUse");
  const CPPAdapterV2Entry entry = cPPRegistry_.find(adapterName);
  if (!entry) return nullptr;
  // Never committed: nobody is told of it, and a frozen registry lends nothing.
  const lx::base::Transaction lending = getModel().impl()->beginTransaction(false);
  return entry.adapter();
}

std::vector<std::shared_ptr<CPPAdapterV2>> AdapterRegistryV2::Impl::getCPPAdapterStaticForSource(
    const std::u16string& sourceURI) {
  checkAlive("nd.data.adapter.AdapterRegistryV2.getCPPAdapterStaticForSource");
  const std::u16string extension = u"." + ndx::broker::URIOperations::getExtension(sourceURI);
  std::vector<std::shared_ptr<CPPAdapterV2>> result = prototypesOf(cPPRegistry_);
  std::erase_if(result, [&](const auto& prototype) { return !claims(*prototype, extension); });
  return result;
}

std::vector<std::u16string> AdapterRegistryV2::Impl::getDisplayList() {
  checkAlive("nd.data.adapter.AdapterRegistryV2.getDisplayList");
  std::vector<std::u16string> result;
  for (const std::shared_ptr<CPPAdapterV2>& prototype : prototypesOf(cPPRegistry_)) {
    for (const std::u16string& extension : prototype->getSupportedExtensions()) {
      result.push_back(extension + u" : " + prototype->getAdapterName());
    }
  }
  return result;
}

std::vector<std::u16string> AdapterRegistryV2::Impl::getAllAdapterNames() {
  checkAlive("nd.data.adapter.AdapterRegistryV2.getAllAdapterNames");
  std::vector<std::u16string> result;
  for (const std::shared_ptr<CPPAdapterV2>& prototype : prototypesOf(cPPRegistry_)) {
    result.push_back(prototype->getAdapterName());
  }
  return result;
}

bool AdapterRegistryV2::Impl::isAdapterRegisteredByName(const std::u16string& adapterName) {
  checkAlive("nd.data.adapter.AdapterRegistryV2.isAdapterRegisteredByName");
  return cPPRegistry_.contains(adapterName);
}

bool AdapterRegistryV2::Impl::isAdapterRegisteredByExtension(const std::u16string& adapterExtension) {
  checkAlive("nd.data.adapter.AdapterRegistryV2.isAdapterRegisteredByExtension");
  const std::vector<std::shared_ptr<CPPAdapterV2>> prototypes = prototypesOf(cPPRegistry_);
  return std::any_of(prototypes.begin(), prototypes.end(),
                     [&](const auto& prototype) { return claims(*prototype, adapterExtension); });
}

void AdapterRegistryV2::Impl::aboutToDestroy() {
  checkAlive("nd.data.adapter.AdapterRegistryV2.aboutToDestroy");
  const lx::base::FinalChanges finality(*this);
  lx::base::Transaction transaction = getModel().impl()->beginTransaction(false);
  // The destructor of a prototype may change the registry: the walk goes by key, and again over all that was
  // registered behind it.
  for (bool goesOn = true; goesOn;) {
    goesOn = false;
    std::u16string name;
    for (CPPAdapterV2Entry entry = cPPRegistry_.first(); entry; entry = cPPRegistry_.findGreater(name)) {
      name = entry.adapterName();
      if (!entry.adapter()) continue;
      entry.setAdapter(nullptr);
      goesOn = true;
    }
  }
  transaction.commit();
}

}  // namespace nd::data::adapter
