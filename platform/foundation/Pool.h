#pragma once

#include <cstddef>
#include <cstdint>
#include <new>

#include "platform/export.h"

/// Memory for elements and for what transactions keep of them: blocks that come and go by the thousand.
///
/// A freed block is kept for the next one of its size, up to eight megabytes for each thread, whatever the
/// sizes, and given back when the thread ends. Every block comes from `operator new`, so that memory that
/// runs out is seen there. Under a sanitizer nothing is kept, so that it sees who uses what was freed.
///
/// Thread-local objects that end behind the pool may still make and destroy elements: blocks then come from
/// `operator new` and go to `operator delete` at once. The same holds for static objects, which end behind
/// the thread-local ones of the main thread.
namespace lx::base::detail {

struct Pool {
  static constexpr std::size_t Largest = 512;
  static constexpr std::size_t KeptBytes = std::size_t{8} << 20;

  // Sizes are rounded to what an allocator hands out anyway: a multiple of 16 less the word that it keeps
  // itself.
  static constexpr std::size_t shelfOf(std::size_t size) noexcept { return (size + 7) / 16; }
  static constexpr std::size_t rounded(std::size_t size) noexcept { return shelfOf(size) * 16 + 8; }

  enum class State : std::uint8_t { New, Keeping, NotKeeping, Ended };

  void* shelves[(Largest + 7) / 16 + 1];  // the freed blocks by size, each with a pointer to the next
  std::size_t room;                       // the bytes that may be kept besides; 0 in every state but Keeping
  State state;

  /// Begin to keep blocks. To be called in the state New.
  ND_PLATFORM_EXPORT bool open() noexcept;
};

// Plain data, which outlives everything on its thread, at a fixed place in the memory of the thread. A
// program has little such room for libraries that it loads late: glibc sets 512 bytes aside, besides some for
// its own.
extern constinit thread_local ND_PLATFORM_EXPORT Pool pool __attribute__((tls_model("initial-exec")));
static_assert(sizeof(Pool) <= 320, "a library that is loaded late must find room for it");

inline void* allocateBlock(std::size_t size) {
  if (size > Pool::Largest) return ::operator new(size);
  void*& shelf = pool.shelves[Pool::shelfOf(size)];
  void* const block = shelf;
  if (block == nullptr) return ::operator new(Pool::rounded(size));
  shelf = *static_cast<void**>(block);
  pool.room += Pool::rounded(size);
  return block;
}

inline void freeBlock(void* block, std::size_t size) noexcept {
  if (size <= Pool::Largest && block != nullptr &&
      (pool.room >= Pool::rounded(size) || (pool.state == Pool::State::New && pool.open()))) {
    void*& shelf = pool.shelves[Pool::shelfOf(size)];
    *static_cast<void**>(block) = shelf;
    shelf = block;
    pool.room -= Pool::rounded(size);
    return;
  }
  ::operator delete(block);
}

/// Let every block that this thread frees go to `operator delete` at once, or keep them again. A program that
/// looks for leaks, or makes memory run out, asks for this first. Does nothing for a thread whose pool has
/// ended.
ND_PLATFORM_EXPORT void keepFreedBlocks(bool keep) noexcept;

/// Tell whether this thread keeps blocks that it frees, as long as there is room.
ND_PLATFORM_EXPORT bool keepsFreedBlocks() noexcept;

}  // namespace lx::base::detail
