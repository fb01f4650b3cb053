#pragma once

#include "platform/foundation/KeyedCollectionCore.h"
#include "platform/foundation/Single.h"

namespace lx::base::detail {

/// Set a property by which collections are keyed. In a collection that is, the element moves to where its
/// new key belongs, in the same transaction; a key that is taken raises `UniquenessConstraint` before
/// anything changes.
template <class K>
void setKey(ModelElement::Impl& self, Single<K>& field, const std::type_identity_t<K>& value,
            unsigned index) {
  self.checkPresent(index);
  if (equalValues(field.get(), value)) return;
  self.checkWritable(index);
  K next(value);
  ContainmentSlot* const slot = self.containmentSlot();
  if (slot == nullptr || slot->keyIndex() != index) {
    self.notifyModifying(index);  // never final: undoing may bring the element back to where its key counts
    return assign(self, field, next, index);
  }
  auto& collection = static_cast<KeyedCollectionCore<K>&>(*slot);
  collection.checkFree(next);
  collection.rekey(self, [&]() noexcept { field.swap(next); });
}

}  // namespace lx::base::detail
