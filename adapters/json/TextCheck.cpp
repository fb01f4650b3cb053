#include "adapters/json/TextCheck.h"

#include <utility>

#include "adapters/json/ExactReader.h"

namespace nd::adapters::json {

boost::optional<Fault> findFault(std::string_view text) {
  try {
    static_cast<void>(ExactReader(text).document());
  } catch (Fault& fault) {
    return std::move(fault);
  }
  return boost::none;
}

}  // namespace nd::adapters::json
