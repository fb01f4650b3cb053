#include "nd_data_adapter/model/DataContainer.h"

#include "platform/host/Workspace.h"

namespace nd::data::adapter {

void DataContainer::Impl::destroyContainer() {
  if (getDataCache()) {
    inClearArraysInDesiredWS(getDataCache());
    setDataCache(nullptr);
  }
  if (getConditionalCache()) {
    inClearArraysInDesiredWS(getConditionalCache());
    setConditionalCache(nullptr);
  }
}

}  // namespace nd::data::adapter
