// [register]
#include <memory>

#include "GainsAdapter.h"

extern "C" __attribute__((visibility("default"))) bool nd_register_adapters() {
  return nd::data::adapter::AdapterManagerV2::registerCPPAdapter(std::make_shared<GainsAdapter>());
}
// [/register]
