#include "nd_data_adapter/model/DataContainer.h"

#include "platform/foundation/meta/Meta.h"
#include "platform/host/Workspace.h"

namespace nd::data::adapter {

void DataContainer::Impl::destroyContainer() {
  checkAlive("nd.data.adapter.DataContainer.destroyContainer");
  // What is read-only is not cleared either: variables don't come back.
  if (getDataCache()) {
    checkWritable(metaClass().property(u"DataCache").getIndex());
    inClearArraysInDesiredWS(getDataCache());
    setDataCache(nullptr);
  }
  if (getConditionalCache()) {
    checkWritable(metaClass().property(u"ConditionalCache").getIndex());
    inClearArraysInDesiredWS(getConditionalCache());
    setConditionalCache(nullptr);
  }
}

}  // namespace nd::data::adapter
