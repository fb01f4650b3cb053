#include "platform/foundation/Reference.h"

#include <utility>

#include "platform/foundation/Report.h"

namespace lx::base::detail {

ReferenceCore::~ReferenceCore() {
  unlink(link_);
}

void ReferenceCore::setTarget(ModelElement::Impl* element) {
  owner().checkPresent(index());
  if (element == link_.target.impl()) return;
  owner().checkWritable(index());
  if (element != nullptr && !element->isAlive()) {
    report::invalidValue(owner().nameOfProperty(index()),
                         u"the element was destroyed; refer to one that exists, or to none.");
  }
  Old next{ModelElement(element), 0};  // lets go of the former target behind the commit
  Operation operation(*this);
  swap(next);
  operation.commit();
}

void ReferenceCore::targetDies(Link&) {
  setTarget(nullptr);
}
void ReferenceCore::targetBecomesProxy(Link&) {}
void ReferenceCore::targetIsResolved(Link&, ModelElement::Impl& element) {
  setTarget(&element);
}

void ReferenceCore::swap(Old& other) noexcept {
  unlink(link_);
  std::swap(link_.target, other.target);
  std::swap(link_.number, other.number);
  link(link_);
  changed();
}

void ReferenceCore::letGo() noexcept {
  Old none;
  swap(none);
}

}  // namespace lx::base::detail
