#include "platform/foundation/ElementSequence.h"

#include <algorithm>

#include "platform/foundation/ReferringField.h"

namespace lx::base::detail {

ElementSequenceCore::~ElementSequenceCore() = default;

void ElementSequenceCore::insertElement(std::size_t position, ModelElement::Impl* child) {
  checkAddable(child);
  if (child->containmentSlot() == this) return;
  if (position > elements_.size()) {
    report::invalidValue(owner().nameOfProperty(index()),
                         u"the position lies behind the end; add at the end.");
  }
  moveIn(*child, [&] {
    Operation operation(*this);
    if (elements_.size() == elements_.capacity())
      elements_.reserve(std::max<std::size_t>(4, 2 * elements_.size()));
    std::unique_ptr<Change> change;
    if (owner().isLogged(index())) change.reset(new Change{nullptr, ModelElement(child), position, true});
    owner()._setContainedByThis(*child, *this);
    elements_.insert(elements_.begin() + static_cast<std::ptrdiff_t>(position), child);
    if (change) journal_.push(std::move(change));
    changed();
    operation.commit();
  });
}

void ElementSequenceCore::takeOut(ModelElement::Impl& child) {
  const auto found = std::find(elements_.rbegin(), elements_.rend(), &child);  // clearing goes from the back
  if (found == elements_.rend()) return;
  Operation operation(*this);
  std::unique_ptr<Change> change;
  const auto position = static_cast<std::size_t>(elements_.rend() - found) - 1;
  if (owner().isLogged(index())) change.reset(new Change{nullptr, ModelElement(&child), position, false});
  child.notifyModifying(ModelElement::Impl::ContainerIndex);
  child.basicSetContainer(nullptr);
  elements_.erase(elements_.begin() + static_cast<std::ptrdiff_t>(position));
  if (change) journal_.push(std::move(change));
  changed();
  operation.commit();
}

void ElementSequenceCore::putInPlaceOf(ModelElement::Impl& proxy, ModelElement::Impl& element) {
  if (element.containmentSlot() == this) takeOut(element);
  const auto place = std::find(elements_.begin(), elements_.end(), &proxy);
  insertElement(static_cast<std::size_t>(place - elements_.begin()), &element);
}

bool ElementSequenceCore::containsProxyTo(const boost::uuids::uuid& uuid) const noexcept {
  return owner().isAlive() &&
         std::any_of(elements_.begin(), elements_.end(),
                     [&](const ModelElement::Impl* element) { return isProxyTo(*element, uuid); });
}

void ElementSequenceCore::clear() {
  owner().checkWritable(index());
  if (elements_.empty()) return;
  Transaction transaction = owner().modelImpl()->beginTransaction(false);
  // What an element does when it is about to be destroyed may change the sequence; each is destroyed once,
  // from the back.
  const std::vector<ModelElement> all(elements_.begin(), elements_.end());
  for (auto each = all.rbegin(); each != all.rend(); ++each) {
    if (each->impl()->containmentSlot() == this) each->destroy();
  }
  transaction.commit();
}

void ElementSequenceCore::restoreFrom(Old& old) noexcept {
  while (journal_.top() != old.top()) {
    const std::unique_ptr<Change> change = journal_.pop();
    const auto place = elements_.begin() + static_cast<std::ptrdiff_t>(change->position);
    if (change->wasInserted)
      elements_.erase(place);
    else
      elements_.insert(place, change->element.impl());  // within the capacity that it had
  }
  old.clear();
  changed();
}

std::vector<ModelElement> ElementSequenceCore::elementsAt(const Change* mark) const {
  std::vector<ModelElement> result(elements_.begin(), elements_.end());
  for (const Change* change = journal_.top(); change != nullptr && change != mark; change = change->below) {
    const auto place = result.begin() + static_cast<std::ptrdiff_t>(change->position);
    if (change->wasInserted)
      result.erase(place);
    else
      result.insert(place, change->element);
  }
  return result;
}

bool ElementSequenceCore::isUnchangedSince(const Old& old) const {
  const auto delta = [](const Change& change) {
    return std::pair<const ModelElement::Impl*, int>(change.element.impl(), change.wasInserted ? 1 : -1);
  };
  return membershipIsUnchanged(static_cast<const Change*>(journal_.top()), old.top(), delta) &&
         elementsAt(old.top()) == elementsAt(journal_.top());
}

Value ElementSequenceCore::oldValue(const Old& old) const {
  return Value(elementsAt(old.top()));
}
Value ElementSequenceCore::toValue() const {
  return Value(elementsAt(journal_.top()));
}

void ElementSequenceCore::visitContained(ModelElement::Impl::ContainedVisitor& visitor) const {
  for (ModelElement::Impl* element : elements_) visitor.visit(*element);
}

void ElementSequenceCore::letGo() noexcept {
  elements_.clear();
  journal_.clear();
  changed();
}

}  // namespace lx::base::detail
