#include "platform/foundation/ContainedReference.h"

namespace lx::base::detail {

ContainedReferenceCore::~ContainedReferenceCore() = default;

void ContainedReferenceCore::setElement(ModelElement::Impl* child) {
  owner().checkWritable(index());
  if (child == target_) return;
  if (child != nullptr) checkAddable(child);
  Transaction transaction = owner().modelImpl()->beginTransaction(false);
  if (target_ != nullptr) target_->destroy();
  if (child != nullptr) {
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
