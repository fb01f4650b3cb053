#include "platform/foundation/CreateElement.h"

#include "platform/foundation/Report.h"

namespace lx::base::detail {

namespace {

constexpr const char* NoModel = "the model is null or was destroyed; give one that is alive.";

}  // namespace

void checkModel(const char* operation, const Model& model) {
  if (!model.isAlive()) report::invalidValue(operation, NoModel);
}

void checkProxy(const meta::Class& ofClass, const Model& model, const boost::uuids::uuid& uuid) {
  const auto raise = [&](const std::string& cure) {
    report::invalidValue(ofClass.getQualifiedName() + u".createProxy",
                         std::u16string(cure.begin(), cure.end()));
  };
  if (!model.isAlive()) raise(NoModel);
  if (uuid.is_nil()) raise("the identity is nil; give that of the element.");
}

}  // namespace lx::base::detail
