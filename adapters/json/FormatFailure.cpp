#include "adapters/json/FormatFailure.h"

#include "adapters/json/messages.h"
#include "platform/text/Convert.h"

namespace nd::adapters::json {

FormatFailure::FormatFailure(const Place& place, const lx::services::CatalogMessage& fault)
    : CatalogMessage(messages::FaultAtPlace(lx::text::toUtf16(describe(place)), fault.text())),
      place_(place) {}

}  // namespace nd::adapters::json
