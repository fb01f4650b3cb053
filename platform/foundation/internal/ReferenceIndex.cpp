#include "platform/foundation/internal/ReferenceIndex.h"

#include <bit>
#include <cstdint>

namespace lx::base::detail {

void ReferenceIndex::reserve(std::size_t count) {
  if (count <= heads_.size()) return;
  std::vector<ReferenceEntry*> former(std::bit_ceil(count < 8 ? 8 : count));
  former.swap(heads_);
  for (ReferenceEntry* entry : former) {
    while (entry != nullptr) {
      ReferenceEntry& each = *entry;
      entry = each.nextOfHash;
      insert(each);
    }
  }
}

std::size_t ReferenceIndex::placeOf(const ModelElement::Impl* element) const noexcept {
  // Addresses differ in their middle bits, which the product carries to the top.
  const std::uint64_t spread = reinterpret_cast<std::uintptr_t>(element) * 0x9e3779b97f4a7c15U;
  return (spread >> 32) & (heads_.size() - 1);
}

void ReferenceIndex::insert(ReferenceEntry& entry) noexcept {
  ReferenceEntry*& head = heads_[placeOf(entry.target.impl())];
  entry.nextOfHash = head;
  head = &entry;
}

void ReferenceIndex::erase(ReferenceEntry& entry) noexcept {
  ReferenceEntry** place = &heads_[placeOf(entry.target.impl())];
  while (*place != &entry) place = &(*place)->nextOfHash;
  *place = entry.nextOfHash;
}

ReferenceEntry* ReferenceIndex::find(const ModelElement::Impl& element) const noexcept {
  if (heads_.empty()) return nullptr;
  ReferenceEntry* entry = heads_[placeOf(&element)];
  while (entry != nullptr && entry->target.impl() != &element) entry = entry->nextOfHash;
  return entry;
}

}  // namespace lx::base::detail
