#include <memory>

#include <params/ParamsAdapter.h>

/// Register the module's adapters with the broker; this is what a program calls that loads the module at run
/// time. False if an adapter of that name is registered already.
extern "C" __attribute__((visibility("default"))) bool nd_register_adapters() {
  return nd::data::adapter::AdapterManagerV2::registerCPPAdapter(std::make_shared<params::ParamsAdapter>());
}
