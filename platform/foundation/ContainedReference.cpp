#include "platform/foundation/ContainedReference.h"

#include "platform/foundation/ReferringField.h"

namespace lx::base::detail {

ContainedReferenceCore::~ContainedReferenceCore() = default;

void ContainedReferenceCore::setElement(ModelElement::Impl* child) {
  owner().checkPresent(index());
  if (child == target_) return;
  owner().checkWritable(index());
  if (child != nullptr) checkAddable(child);
  const ModelElement keep(child);
  Transaction transaction = owner().modelImpl()->beginTransaction(false);
  // The child may hang below the element that it replaces, so that it is taken out before that is destroyed.
  if (child != nullptr && child->containmentSlot() != nullptr) child->containmentSlot()->takeOut(*child);
  while (target_ != nullptr && target_ != child) {  // what is destroyed may have put an heir into its place
    owner().checkWritable(index());
    if (target_->isBeingDestroyed())
      takeOut(*target_);  // comes to its end where its destruction was begun
    else
      target_->destroy();
  }
  if (child != target_) {
    checkAddable(child);
    moveIn(*child, [&] {
      Operation operation(*this);
      owner()._setContainedByThis(*child, *this);
      target_ = child;
      changed();
      operation.commit();
    });
  }
  transaction.commit();
}

void ContainedReferenceCore::putInPlaceOf(ModelElement::Impl&, ModelElement::Impl& element) {
  setElement(&element);
}

bool ContainedReferenceCore::containsProxyTo(const boost::uuids::uuid& uuid) const noexcept {
  return target() != nullptr && isProxyTo(*target(), uuid);
}

void ContainedReferenceCore::checkVacant() const {
  owner().checkWritable(index());
  if (target_ != nullptr) report::cannotAddSecondObject(owner(), index());
}

void ContainedReferenceCore::takeOut(ModelElement::Impl& child) {
  if (target_ != &child) return;
  Operation operation(*this);
  child.notifyModifying(ModelElement::Impl::ContainerIndex);
  child.basicSetContainer(nullptr);
  target_ = nullptr;
  changed();
  operation.commit();
}

}  // namespace lx::base::detail
