#pragma once

#include <stdexcept>
#include <string>

#include "adapters/json/Place.h"

namespace nd::adapters::json {

/// A text that is not JSON or that no variables can be made of. `what` is a sentence for people and begins
/// with the place.
class FormatFailure : public std::runtime_error {
 public:
  FormatFailure(const Place& place, const std::string& words)
      : std::runtime_error(describe(place) + ": " + words), place_(place) {}

  const Place& place() const noexcept { return place_; }

 private:
  Place place_;
};

}  // namespace nd::adapters::json
