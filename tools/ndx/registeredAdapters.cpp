#include "tools/ndx/registeredAdapters.h"

#include <memory>
#include <utility>

#include "nd_data_adapter/broker/CPPAdapterV2.h"
#include "nd_data_adapter/model/AdapterRegistryV2.h"
#include "platform/text/Convert.h"

namespace nd::tools {

using lx::text::toUtf8;

std::vector<RegisteredAdapter> registeredAdapters() {
  const nd::data::adapter::AdapterRegistryV2 registry = nd::data::adapter::AdapterRegistryV2::getInstance();
  std::vector<RegisteredAdapter> result;
  for (const std::u16string& name : registry.getAllAdapterNames()) {
    const std::shared_ptr<CPPAdapterV2> adapter = registry.getCPPAdapterForStaticUse(name);
    if (!adapter) continue;
    RegisteredAdapter each{toUtf8(name), toUtf8(adapter->getSectionName()), {}};
    for (const std::u16string& extension : adapter->getSupportedExtensions()) {
      each.extensions.push_back(toUtf8(extension));
    }
    result.push_back(std::move(each));
  }
  return result;
}

}  // namespace nd::tools
