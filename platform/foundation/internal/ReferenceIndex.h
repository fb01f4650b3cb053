#pragma once

#include <cstddef>
#include <vector>

#include "platform/foundation/ReferenceCollection.h"

namespace lx::base::detail {

/// Finds the entry of an element by the hash of its address. Inserting within what was reserved, and erasing,
/// need no memory.
class ReferenceIndex {
 public:
  void reserve(std::size_t count);
  void insert(ReferenceEntry& entry) noexcept;
  void erase(ReferenceEntry& entry) noexcept;
  ReferenceEntry* find(const ModelElement::Impl& element) const noexcept;

 private:
  std::size_t placeOf(const ModelElement::Impl* element) const noexcept;

  std::vector<ReferenceEntry*> heads_;  // as many as a power of two; the entries of one are a chain
};

}  // namespace lx::base::detail
