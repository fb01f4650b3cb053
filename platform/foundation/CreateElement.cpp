#include "platform/foundation/CreateElement.h"

#include "platform/foundation/Report.h"

namespace lx::base::detail {

void checkModel(const char* operation, const Model& model) {
  if (!model.isAlive()) report::missingModel(operation);
}

void checkProxy(const meta::Class& ofClass, const Model& model, const boost::uuids::uuid& uuid) {
  const auto subject = [&] { return ofClass.getQualifiedName() + u".createProxy"; };
  if (!model.isAlive()) report::missingModel(subject());
  if (uuid.is_nil()) report::invalidValue(subject(), u"the identity is nil; give that of the element.");
}

}  // namespace lx::base::detail
