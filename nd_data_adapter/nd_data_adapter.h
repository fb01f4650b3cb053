#pragma once

/// All that a client of the library needs: the facade, its elements, the contract for adapters, models,
/// arrays and workspaces.

#include "nd_data_adapter/broker/CPPAdapterV2.h"
#include "nd_data_adapter/builtin_adapters/TestV2Adapter.h"
#include "nd_data_adapter/model/AdapterCacheV2.h"
#include "nd_data_adapter/model/AdapterConfig.h"
#include "nd_data_adapter/model/AdapterError.h"
#include "nd_data_adapter/model/AdapterManagerV2.h"
#include "nd_data_adapter/model/AdapterRegistryV2.h"
#include "nd_data_adapter/model/ChangeReport.h"
#include "nd_data_adapter/model/ConditionControlChangeReport.h"
#include "nd_data_adapter/model/DataContainer.h"
#include "nd_data_adapter/model/MetaDataEntry.h"
#include "nd_data_adapter/model/URIOperations.h"
#include "platform/foundation/Model.h"
#include "platform/host/Workspace.h"
#include "platform/host/hv.h"
#include "platform/services/Diagnostic.h"
#include "platform/text/Convert.h"
