#include "platform/foundation/OwnedCollection.h"

#include <algorithm>
#include <functional>

#include "platform/foundation/Report.h"
#include "platform/foundation/meta/Meta.h"

namespace lx::base {

AbstractOwnedCollection::~AbstractOwnedCollection() = default;

void AbstractOwnedCollection::modifying() {
  owner_->notifyModifying(index_);
}

meta::Property AbstractOwnedCollection::getCollectionProperty() const {
  return owner_->getPropertyByIndex(index_);
}

namespace detail {

void checkEachOnce(const AbstractOwnedCollection& property, const std::vector<ModelElement>& elements) {
  std::vector<const ModelElement::Impl*> sorted;
  sorted.reserve(elements.size());
  for (const ModelElement& element : elements) sorted.push_back(element.impl());
  std::sort(sorted.begin(), sorted.end(), std::less<>());
  if (std::adjacent_find(sorted.begin(), sorted.end()) == sorted.end()) return;
  report::invalidValue(property.owner().nameOfProperty(property.index()),
                       u"the list names an element twice; name it once.");
}

}  // namespace detail
}  // namespace lx::base
