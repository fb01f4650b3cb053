#include "platform/foundation/ContainedReference.h"

namespace lx::base::detail {

ContainedReferenceCore::~ContainedReferenceCore() = default;

void ContainedReferenceCore::setElement(ModelElement::Impl* child) {
  owner().checkWritable(index());
  if (child == target_) return;
  if (child != nullptr) checkAddable(child);
  const ModelElement keep(child);
  Transaction transaction = owner().modelImpl()->beginTransaction(false);
  // The child may hang below the element that it replaces, so that it is taken out before that is destroyed.
  if (child != nullptr && child->containmentSlot() != nullptr) child->containmentSlot()->takeOut(*child);
  if (target_ != nullptr) target_->destroy();
  if (target_ != nullptr) takeOut(*target_);  // its destruction is under way and comes to its end elsewhere
  if (child != nullptr) {
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
