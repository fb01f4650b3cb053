// Lists what the installed adapters could do with a file.
//
// Prints: JSON reads gains.json
// Uses: nd_adapter_json
#include <iostream>

#include "adapters/registerShippedAdapters.h"
#include "nd_data_adapter/nd_data_adapter.h"
#include "platform/text/Convert.h"

int main() {
  using nd::data::adapter::AdapterManagerV2;

  nd::adapters::registerShippedAdapters();
  for (const std::u16string& name : AdapterManagerV2::getAllRegisteredAdapterNames()) {
    std::cout << "There is an adapter " << lx::text::toUtf8(name) << '\n';
  }

  const lx::base::Model model = lx::base::Model::create();
  for (const auto& config : AdapterManagerV2::getAdapterConfig(u"gains.json", model)) {
    std::cout << lx::text::toUtf8(config.adapterName())
              << (config.supportsReading() ? " reads" : " does not read") << " gains.json\n";
  }
}
