#pragma once

#include <cstddef>
#include <cstdint>
#include <new>

#include "platform/export.h"

/// Memory for elements and for what transactions keep of them: blocks that come and go by the thousand.
///
/// A freed block is kept for the next one of its size, up to four megabytes for each size and thread, and
/// given back when the thread ends. Every block comes from `operator new`, so that memory that runs out is
/// seen there. Under a sanitizer nothing is kept, so that it sees who uses what was freed.
namespace lx::base::detail {

/// The freed blocks of one size. Plain data, which outlives everything on its thread.
struct Shelf {
  void* first;  // each begins with a pointer to the next
  std::size_t bytes;
};

struct Pool {
  static constexpr std::size_t Largest = 512;
  static constexpr std::size_t KeptBytes = std::size_t{4} << 20;

  // Sizes are rounded to what an allocator hands out anyway: a multiple of 16 less the word that it keeps
  // itself.
  static constexpr std::size_t shelfOf(std::size_t size) noexcept { return (size + 7) / 16; }
  static constexpr std::size_t rounded(std::size_t size) noexcept { return shelfOf(size) * 16 + 8; }

  enum class State : std::uint8_t { New, Keeping, NotKeeping };

  Shelf shelves[(Largest + 7) / 16 + 1];
  State state;

  /// Begin to keep blocks, unless the thread ends or doesn't want to.
  ND_PLATFORM_EXPORT bool open() noexcept;
};

extern constinit thread_local ND_PLATFORM_EXPORT Pool pool __attribute__((tls_model("initial-exec")));

inline void* allocateBlock(std::size_t size) {
  if (size > Pool::Largest) return ::operator new(size);
  Shelf& shelf = pool.shelves[Pool::shelfOf(size)];
  void* const block = shelf.first;
  if (block == nullptr) return ::operator new(Pool::rounded(size));
  shelf.first = *static_cast<void**>(block);
  shelf.bytes -= Pool::rounded(size);
  return block;
}

inline void freeBlock(void* block, std::size_t size) noexcept {
  if (size <= Pool::Largest && block != nullptr && (pool.state == Pool::State::Keeping || pool.open())) {
    Shelf& shelf = pool.shelves[Pool::shelfOf(size)];
    if (shelf.bytes < Pool::KeptBytes) {
      *static_cast<void**>(block) = shelf.first;
      shelf.first = block;
      shelf.bytes += Pool::rounded(size);
      return;
    }
  }
  ::operator delete(block);
}

/// Let every block that this thread frees go to `operator delete` at once, or keep them again. A program that
/// looks for leaks, or makes memory run out, asks for this first.
ND_PLATFORM_EXPORT void keepFreedBlocks(bool keep) noexcept;

}  // namespace lx::base::detail
