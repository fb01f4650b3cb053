#include "nd_data_adapter/model/CPPAdapterV2Entry.h"

namespace nd::data::adapter {

void CPPAdapterV2Entry::Impl::setName(const std::u16string& name) {
  checkAlive("nd.data.adapter.CPPAdapterV2Entry.setName");
  const lx::base::detail::ContainmentSlot* const slot = containmentSlot();
  if (slot != nullptr && slot->keyIndex() == AdapterNameIndex)
    return lx::base::detail::setKey(*this, adapterName_, name, AdapterNameIndex);
  // No collection is keyed by this entry: there is nothing to keep in order, and nobody to
  // tell.
  std::u16string copy(name);
  if (isMovedInOpenTransaction()) notifyModifying(AdapterNameIndex);  // going back there needs the old key
  adapterName_.swap(copy);
}

}  // namespace nd::data::adapter
