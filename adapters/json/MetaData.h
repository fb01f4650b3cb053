#pragma once

#include <vector>

#include "adapters/json/Document.h"
#include "nd_data_adapter/broker/CPPAdapterV2.h"

namespace nd::adapters::json {

/// Replace all metadata by that of some variables, in one transaction: an entry for each variable, under its
/// name, whose value is a `DataContainer`; the entries of the variable's metadata are the variables of its
/// `DataCache`. A failure leaves the metadata as it was.
void replaceMetaData(CPPAdapterV2::MetaDataCache& metaDataCache,
                     const std::vector<VariableMetaData>& metaData);

}  // namespace nd::adapters::json
