#include "nd_data_adapter/model/CPPAdapterV2Entry.h"

namespace nd::data::adapter {

void CPPAdapterV2Entry::Impl::setName(const std::u16string& name) {
  constexpr unsigned AdapterName = 1;
  if (containmentSlot() != nullptr) return lx::base::detail::setKey(*this, adapterName_, name, AdapterName);
  // No collection is keyed by an entry that stands alone: there is nothing to keep in order, and nobody to
  // tell.
  std::u16string copy(name);
  adapterName_.swap(copy);
}

}  // namespace nd::data::adapter
