#include "nd_data_adapter/model/AdapterManagerV2.h"

#include <algorithm>
#include <string_view>

#include "nd_data_adapter/broker/CPPAdapterV2.h"
#include "nd_data_adapter/broker/internal/FirstGenerationRoad.h"
#include "nd_data_adapter/model/AdapterCacheV2.h"
#include "nd_data_adapter/model/AdapterRegistryV2.h"
#include "nd_data_adapter/model/URIOperations.h"
#include "platform/foundation/CreateElement.h"
#include "platform/text/Compare.h"

namespace nd::data::adapter {

namespace {

using Adapters = std::vector<std::shared_ptr<CPPAdapterV2>>;

detail::FirstGenerationRoad& firstGeneration() {
  return detail::FirstGenerationRoad::current();
}

Adapters adaptersFor(const std::u16string& source) {
  return AdapterRegistryV2::getInstance().getCPPAdapterStaticForSource(source);
}

std::u16string qualifierOf(const std::u16string& source, const std::u16string& section) {
  constexpr std::u16string_view separator = u"::";
  std::u16string qualifier;
  qualifier.reserve(source.size() + separator.size() + section.size());
  qualifier += source;
  qualifier += separator;
  qualifier += section;
  return qualifier;
}

std::shared_ptr<CPPAdapterV2> openedAdapter(const std::u16string& source, const std::u16string& section) {
  return AdapterCacheV2::getInstance().getCPPAdapter(qualifierOf(source, section));
}

}  // namespace

bool AdapterManagerV2::registerCPPAdapter(const std::shared_ptr<CPPAdapterV2>& adapter) {
  if (!adapter) return false;
  // The adapter may reset the client's pointer while it is asked.
  const auto held = std::shared_ptr<CPPAdapterV2>(adapter);
  const std::u16string name = held->getAdapterName();
  const AdapterRegistryV2 registry = AdapterRegistryV2::getInstance();
  if (registry.isAdapterRegisteredByName(name) || firstGeneration().isAdapterRegisteredByName(name))
    return false;
  return registry.registerCPPAdapter(held);
}

bool AdapterManagerV2::unregisterAdapterByName(const std::u16string& adapterName) {
  return AdapterRegistryV2::getInstance().unregisterCPPAdapter(adapterName);
}

bool AdapterManagerV2::isExtensionRegistered(const std::u16string& extension) {
  return firstGeneration().isAdapterRegisteredByExtension(extension) ||
         AdapterRegistryV2::getInstance().isAdapterRegisteredByExtension(extension);
}

std::vector<std::u16string> AdapterManagerV2::getAllRegisteredAdapterNames() {
  std::vector<std::u16string> names = firstGeneration().getAllAdapterNames();
  for (std::u16string& name : AdapterRegistryV2::getInstance().getAllAdapterNames())
    names.push_back(std::move(name));
  std::sort(names.begin(), names.end(), lx::text::Less());
  return names;
}

std::vector<std::u16string> AdapterManagerV2::getAllOpenedAdapterNamesWithSection() {
  return AdapterCacheV2::getInstance().getAllAdapterQualifiers();
}

bool AdapterManagerV2::closeAdapterbyNamesWithSection(const std::u16string& adapterNameAndSection) {
  return AdapterCacheV2::getInstance().removeCPPAdapterFromCache(adapterNameAndSection);
}

bool AdapterManagerV2::doesSourceExist(const std::u16string& source) {
  const Adapters adapters = adaptersFor(source);
  if (adapters.empty()) return ndx::broker::URIOperations::exists(source);
  return std::any_of(adapters.begin(), adapters.end(),
                     [&](const auto& adapter) { return adapter->isSourceValid(source); });
}

bool AdapterManagerV2::hasReadingAdapters(const std::u16string& source) {
  const Adapters adapters = adaptersFor(source);
  return std::any_of(adapters.begin(), adapters.end(),
                     [&](const auto& adapter) { return adapter->supportsReading(source); }) ||
         firstGeneration().hasReadingAdapters(source);
}

bool AdapterManagerV2::hasWritingAdapters(const std::u16string& source) {
  const Adapters adapters = adaptersFor(source);
  return std::any_of(adapters.begin(), adapters.end(),
                     [&](const auto& adapter) { return adapter->supportsWriting(source); }) ||
         firstGeneration().hasWritingAdapters(source);
}

std::vector<AdapterConfig> AdapterManagerV2::getAdapterConfig(const std::u16string& source,
                                                              const lx::base::Model& tmpModel) {
  lx::base::detail::checkModel("nd.data.adapter.AdapterManagerV2.getAdapterConfig", tmpModel);
  lx::base::Transaction transaction = tmpModel.impl()->beginTransaction(false);
  std::vector<AdapterConfig> result = firstGeneration().getAdapterConfig(source, tmpModel);
  for (const std::shared_ptr<CPPAdapterV2>& adapter : adaptersFor(source)) {
    const AdapterConfig config = AdapterConfig::create(tmpModel);
    config.setAdapterName(adapter->getAdapterName());
    config.setSection(adapter->getSectionName());
    config.setSupportsReading(adapter->supportsReading(source));
    config.setSupportsWriting(adapter->supportsWriting(source));
    config.setAdapterType(adapter->getType());
    result.push_back(config);
  }
  transaction.commit();
  return result;
}

bool AdapterManagerV2::openSource(const std::u16string& source, const std::u16string& section,
                                  const boost::uuids::uuid&) {
  const AdapterRegistryV2 registry = AdapterRegistryV2::getInstance();
  const AdapterCacheV2 cache = AdapterCacheV2::getInstance();
  const Adapters adapters = registry.getCPPAdapterStaticForSource(source);
  const auto found = std::find_if(adapters.begin(), adapters.end(),
                                  [&](const auto& adapter) { return adapter->getSectionName() == section; });
  if (found == adapters.end()) return false;
  const std::shared_ptr<CPPAdapterV2> opened = registry.getNewCPPAdapter((*found)->getAdapterName());
  if (!opened) return false;
  // A qualifier that is taken keeps its adapter; the new one is asked to open all the same and then goes.
  cache.addCPPAdapterToCache(opened, qualifierOf(source, section));
  return opened->open(source);
}

std::u16string AdapterManagerV2::getChecksum(const std::u16string& source, const std::u16string& section) {
  const std::shared_ptr<CPPAdapterV2> adapter = openedAdapter(source, section);
  return adapter ? adapter->getCurrentChecksum() : firstGeneration().getChecksum(source, section);
}

std::vector<std::u16string> AdapterManagerV2::getExternalSources(const std::u16string& source,
                                                                 const std::u16string& section) {
  const std::shared_ptr<CPPAdapterV2> adapter = openedAdapter(source, section);
  return adapter ? adapter->getExternalSources() : firstGeneration().getExternalSources(source, section);
}

AdapterError AdapterManagerV2::getData(const std::u16string& source, const std::u16string& section,
                                       const DataContainer& cache, const std::u16string& prevChecksum,
                                       const lx::base::Model& tmpModel) {
  lx::base::detail::checkModel("nd.data.adapter.AdapterManagerV2.getData", tmpModel);
  const AdapterError result = AdapterError::create(tmpModel);
  result.setError(AdapterDiagnostic::NoDiagnostic, u"", u"", u"");
  // The adapter may do as it likes with the handles that it can reach; these stay.
  const DataContainer container(cache.impl());
  AdapterError error = result;
  const boost::shared_ptr<inWorkSpace_tag> dataCache = container.dataCache();
  const std::shared_ptr<CPPAdapterV2> adapter = openedAdapter(source, section);
  if (!adapter) {
    firstGeneration().getData(source, section, container, dataCache, error);
    return result;
  }
  adapter->getData(dataCache, container.getMetaDataCacheMutable(), prevChecksum, error);
  if (result.getId() != AdapterDiagnostic::NoDiagnostic) return result;
  container.getConditionControlsMutable().clear();
  if (adapter->hasVariants()) {
    for (const std::u16string& control : adapter->getVariantControls())
      container.getConditionControlsMutable().add(control);
  }
  return result;
}

bool AdapterManagerV2::closeSource(const std::u16string& source, const std::u16string& section,
                                   const boost::uuids::uuid&) {
  return AdapterCacheV2::getInstance().removeCPPAdapterFromCache(qualifierOf(source, section));
}

}  // namespace nd::data::adapter
