#include "platform/foundation/CreateElement.h"

#include "platform/foundation/Report.h"

namespace lx::base::detail {

void checkIdentity(const char* operation, const boost::uuids::uuid& uuid) {
  if (uuid.is_nil()) report::invalidValue(operation, "the identity is nil; give that of the element.");
}

}  // namespace lx::base::detail
