#include "adapters/json/register.h"

#include <memory>

#include "adapters/json/JsonAdapter.h"
#include "nd_data_adapter/model/AdapterManagerV2.h"

namespace nd::adapters {

bool registerJsonAdapter() {
  return nd::data::adapter::AdapterManagerV2::registerCPPAdapter(std::make_shared<json::JsonAdapter>());
}

}  // namespace nd::adapters
