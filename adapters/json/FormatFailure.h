#pragma once

#include <string_view>

#include "adapters/json/Place.h"
#include "platform/services/CatalogMessage.h"

namespace nd::adapters::json {

/// A text that is not JSON or that no variables can be made of. The sentence begins with the place.
class FormatFailure : public lx::services::CatalogMessage {
 public:
  /// Make the failure of a text that is wrong at a place as a message says.
  FormatFailure(const Place& place, const lx::services::CatalogMessage& fault);

  /// Make the failure of a source of which an included file is wrong; the sentence names that file.
  FormatFailure(const FormatFailure& failure, std::string_view includedFile);

  const Place& place() const noexcept { return place_; }

 private:
  Place place_;
};

}  // namespace nd::adapters::json
