#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace support {

/// Gives the place of a virtual operation in the table of its class, counted from 0. In the Itanium C++ ABI a
/// pointer to a virtual member holds 1 and the place's offset in bytes.
template <class Function>
std::size_t slotOf(Function function) {
  std::uintptr_t word = 0;
  static_assert(sizeof function >= sizeof word);
  std::memcpy(&word, &function, sizeof word);
  return word / sizeof(void*);
}

/// Tells whether a pointer to a member is one to a virtual operation.
template <class Function>
bool isVirtual(Function function) {
  std::uintptr_t word = 0;
  std::memcpy(&word, &function, sizeof word);
  return (word & 1U) != 0;
}

/// Gives what stands in a place of an object's table.
inline void* entryOf(const void* object, std::size_t slot) {
  void* const* table = nullptr;
  std::memcpy(&table, object, sizeof table);
  return table[slot];
}

/// Calls the operation without arguments and result that stands in a place of an object's table.
inline void callSlot(void* object, std::size_t slot) {
  void* const entry = entryOf(object, slot);
  void (*function)(void*) = nullptr;
  std::memcpy(&function, &entry, sizeof function);
  function(object);
}

}  // namespace support
