// The operators new that give null in place of an exception, through the one that may be let fail: the JSON
// parser allocates by them. The standard library's do the same, but those of the address sanitizer go their
// own way.

#include <cstddef>
#include <new>

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

void operator delete(void* memory, const std::nothrow_t&) noexcept {
  operator delete(memory);
}

void operator delete[](void* memory, const std::nothrow_t&) noexcept {
  operator delete(memory);
}
