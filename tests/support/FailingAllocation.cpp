#include "tests/support/FailingAllocation.h"

#include <cstdlib>
#include <new>

namespace {

std::size_t remaining = 0;
bool failed = false;

bool isToFail() noexcept {
  if (remaining == 0 || --remaining > 0) return false;
  failed = true;
  return true;
}

}  // namespace

FailingAllocation::FailingAllocation(std::size_t number) noexcept {
  failed = false;
  remaining = number;
}

FailingAllocation::~FailingAllocation() {
  remaining = 0;
}

bool FailingAllocation::hasFailed() noexcept {
  return failed;
}

void* operator new(std::size_t size) {
  void* const memory = isToFail() ? nullptr : std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

void* operator new[](std::size_t size) {
  return operator new(size);
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
