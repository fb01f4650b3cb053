#pragma once

#include "platform/foundation/ElementMap.h"
#include "platform/foundation/Single.h"

namespace lx::base::detail {

/// Set a property by which collections are keyed. In a collection that is, the element moves to where its
/// new key belongs, in the same transaction; a key that is taken raises `UniquenessConstraint` before
/// anything changes.
template <class K>
void setKey(ModelElement::Impl& self, Single<K>& field, const std::type_identity_t<K>& value,
            unsigned index) {
  self.checkWritable(index);
  if (equalValues(field.get(), value)) return;
  K next(value);
  ContainmentSlot* const slot = self.containmentSlot();
  if (slot == nullptr || slot->keyIndex() != index) return assign(self, field, next, index);

  auto& collection = static_cast<KeyedCollectionCore<K>&>(*slot);
  collection.checkFree(next);
  MutationScope scope(*self.modelImpl());
  self.notifyModifying(index);
  collection.rekey(self, [&]() noexcept { field.swap(next); });
  scope.commit();
}

}  // namespace lx::base::detail
