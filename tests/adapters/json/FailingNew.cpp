#include "tests/adapters/json/FailingNew.h"

#include <cstdlib>
#include <new>

namespace {

/// How many allocations succeed before one fails, plus one; none fails at 0.
std::size_t untilFailure = 0;
bool failed = false;

bool failsNow() noexcept {
  if (untilFailure == 0 || --untilFailure > 0) return false;
  failed = true;
  return true;
}

void* allocate(std::size_t size) noexcept {
  return failsNow() ? nullptr : std::malloc(size == 0 ? 1 : size);
}

void* allocate(std::size_t size, std::align_val_t alignment) noexcept {
  if (failsNow()) return nullptr;
  const auto boundary = static_cast<std::size_t>(alignment);
  return std::aligned_alloc(boundary, (size + boundary - 1) / boundary * boundary);
}

void* orThrow(void* memory) {
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace

FailingNew::FailingNew(std::size_t number) noexcept {
  failed = false;
  untilFailure = number;
}

FailingNew::~FailingNew() {
  untilFailure = 0;
}

bool FailingNew::hasFailed() const noexcept {
  return failed;
}

void* operator new(std::size_t size) {
  return orThrow(allocate(size));
}
void* operator new[](std::size_t size) {
  return orThrow(allocate(size));
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return allocate(size);
}
void* operator new(std::size_t size, std::align_val_t alignment) {
  return orThrow(allocate(size, alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
  return orThrow(allocate(size, alignment));
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete[](void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::align_val_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::align_val_t) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::size_t, std::align_val_t) noexcept {
  std::free(memory);
}
