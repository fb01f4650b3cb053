#include "adapters/json/FormatFailure.h"

#include "adapters/json/Wording.h"
#include "adapters/json/messages.h"
#include "platform/text/Convert.h"

namespace nd::adapters::json {

FormatFailure::FormatFailure(const Place& place, const lx::services::CatalogMessage& fault)
    : CatalogMessage(messages::FaultAtPlace(lx::text::toUtf16(describe(place)), fault.text())),
      place_(place) {}

FormatFailure::FormatFailure(const FormatFailure& failure, std::string_view includedFile)
    : CatalogMessage(messages::InIncludedFile(lx::text::toUtf16(quotePath(includedFile)), failure.text())),
      place_(failure.place()) {}

}  // namespace nd::adapters::json
