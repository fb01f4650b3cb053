#include "adapters/json/MetaData.h"

#include "nd_data_adapter/model/DataContainer.h"
#include "nd_data_adapter/model/MetaDataEntry.h"
#include "platform/foundation/ElementMap.h"
#include "platform/foundation/Model.h"
#include "platform/foundation/Transaction.h"
#include "platform/host/Workspace.h"
#include "platform/text/Convert.h"

namespace nd::adapters::json {
namespace {

using nd::data::adapter::DataContainer;
using nd::data::adapter::MetaDataEntry;

boost::shared_ptr<inWorkSpace_tag> workspaceOf(const std::vector<Variable>& entries) {
  boost::shared_ptr<inWorkSpace_tag> workspace = inCreateWorkspace(entries.size());
  for (const Variable& entry : entries) inAssignInDesiredWS(entry.value.get(), entry.name, workspace);
  return workspace;
}

}  // namespace

void replaceMetaData(CPPAdapterV2::MetaDataCache& metaDataCache,
                     const std::vector<VariableMetaData>& metaData) {
  if (metaData.empty()) return metaDataCache.clear();
  const lx::base::Model model = metaDataCache.getModel();
  lx::base::Transaction change = model.impl()->beginTransaction(false);
  metaDataCache.clear();
  for (const VariableMetaData& each : metaData) {
    const DataContainer holder = DataContainer::create(model);
    holder.setDataCache(workspaceOf(each.entries));
    const MetaDataEntry entry = MetaDataEntry::create(model);
    entry.setName(lx::text::toUtf16(each.variable));
    entry.setValue(holder);
    metaDataCache.add(entry);
  }
  change.commit();
}

}  // namespace nd::adapters::json
