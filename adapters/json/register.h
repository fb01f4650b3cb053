#pragma once

#include "adapters/json/export.h"

namespace nd::adapters {

/// Register the adapter for JSON files, "JSON", with the broker. False if an adapter of this name is
/// registered already; nothing has then changed.
///
///     nd::adapters::registerJsonAdapter();
///     AdapterManagerV2::openSource(u"gains.json", u"JSON", observer);
ND_JSON_ADAPTER_EXPORT bool registerJsonAdapter();

}  // namespace nd::adapters
