#pragma once

#include <memory>
#include <string>

#include "nd_data_adapter/model/CPPAdapterV2Entry.h"
#include "platform/foundation/ElementMap.h"

class CPPAdapterV2;

namespace nd::data::adapter::detail {

/// What the registry and the cache keep their adapters in: entries by key.
using AdapterEntries = lx::base::ElementMap<std::u16string, CPPAdapterV2Entry>;

/// Add an entry for an adapter under a key that is free, in one transaction.
void addEntry(AdapterEntries& entries, const std::u16string& key,
              const std::shared_ptr<CPPAdapterV2>& adapter);

/// Remove an entry in one transaction. Its adapter is let go of last, when that transaction is committed and
/// the entry is gone; a transaction around it keeps both until its own end.
void removeEntry(const CPPAdapterV2Entry& entry);

}  // namespace nd::data::adapter::detail
