#include "platform/foundation/ContainmentSlot.h"

#include <functional>

#include "platform/foundation/ReferringField.h"
#include "platform/foundation/Report.h"
#include "platform/foundation/meta/Meta.h"

namespace lx::base {

namespace detail {

void ContainmentSlot::checkCompatibleModel(const ModelElement::Impl& child) const {
  if (child.modelImpl() != owner().modelImpl()) report::cannotCreateCrossModelAssociation(owner(), index());
}

void ContainmentSlot::checkAddable(const ModelElement::Impl* child) const {
  owner().checkWritable(index());
  if (child == nullptr || !child->isAlive()) report::cannotAddNonExistentObject(owner(), index());
  checkCompatibleModel(*child);
  for (const ModelElement::Impl* ancestor = &owner(); ancestor != nullptr; ancestor = ancestor->container()) {
    if (ancestor == child) {
      report::invalidValue(
          owner().nameOfProperty(index()),
          u"the element contains the one it would be put into; an element can't contain itself.");
    }
  }
}

void ContainmentSlot::checkReplacement(const std::vector<ModelElement>& elements) const {
  for (const ModelElement& element : elements) checkAddable(element.impl());
  checkEachOnce(*this, elements);
  for (const ModelElement& element : elements) {
    for (const ModelElement::Impl* each = element.impl(); each != nullptr; each = each->container()) {
      if (each->containmentSlot() == this) report::cannotAddNonExistentObject(owner(), index());
    }
  }
}

void ContainmentSlot::checkInsertable(const ModelElement::Impl* child) const {
  checkAddable(child);
}

ModelElement ContainmentSlot::resolveProxy(const ModelElement& proxy) {
  owner().checkWritable(index());
  // What is resolved may change the handle that was given.
  const ModelElement keep(proxy);  // NOLINT(performance-unnecessary-copy-initialization)
  const ModelElement loaded = peekResolveProxy(keep);
  if (!loaded) return loaded;
  checkInsertable(loaded.impl());
  Transaction transaction = owner().modelImpl()->beginTransaction(false);
  resolveReferences(*keep.impl(), *loaded.impl());
  putInPlaceOf(*keep.impl(), *loaded.impl());
  if (holds(keep)) keep.destroy();
  transaction.commit();
  return loaded;
}

ModelElement ContainmentSlot::peekResolveProxy(const ModelElement& proxy) const {
  if (!owner().isAlive() || !holds(proxy)) return {};
  const ModelElement loaded = loadedElement(proxy);
  return loaded && accepts(*loaded.impl()) ? loaded : ModelElement();
}

ContainmentSlot::~ContainmentSlot() = default;
void ContainmentSlot::setApart(ModelElement::Impl&) {}
unsigned ContainmentSlot::keyIndex() const noexcept {
  return 0;
}

}  // namespace detail
}  // namespace lx::base
