#include "tests/support/AllocationFault.h"

#include <cstdlib>
#include <new>

#include "platform/foundation/Pool.h"

namespace {

std::size_t remaining = 0;
bool failsOn = false;
bool occurred = false;
std::size_t asked = 0;
std::size_t given = 0;
std::size_t released = 0;

bool isToFail() noexcept {
  ++asked;
  if (remaining == 0 || --remaining > 0) return false;
  if (failsOn) remaining = 1;
  occurred = true;
  return true;
}

void release(void* memory) noexcept {
  if (memory != nullptr) ++released;
  std::free(memory);
}

}  // namespace

AllocationFault::AllocationFault(std::size_t number, Extent extent) noexcept {
  lx::base::detail::keepFreedBlocks(false);
  occurred = false;
  failsOn = extent == Extent::WithAllThatFollow;
  remaining = number;
}

AllocationFault::~AllocationFault() {
  remaining = 0;
}

bool AllocationFault::hasOccurred() noexcept {
  return occurred;
}

std::size_t AllocationFault::requests() noexcept {
  return asked;
}

std::size_t AllocationFault::releases() noexcept {
  return released;
}

std::size_t AllocationFault::live() noexcept {
  lx::base::detail::keepFreedBlocks(false);
  return given - released;
}

void* operator new(std::size_t size) {
  void* const memory = isToFail() ? nullptr : std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) throw std::bad_alloc();
  ++given;
  return memory;
}

void* operator new[](std::size_t size) {
  return operator new(size);
}

// Some allocate by these; the standard library's go through the ones above, a sanitizer's don't.

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  try {
    return operator new(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return operator new(size, std::nothrow);
}
void operator delete(void* memory) noexcept {
  release(memory);
}
void operator delete[](void* memory) noexcept {
  release(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  release(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  release(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
  release(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept {
  release(memory);
}
