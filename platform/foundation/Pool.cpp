#include "platform/foundation/Pool.h"

#include <cstdint>
#include <new>

namespace lx::base::detail {

namespace {

struct Block {
  Block* next;
};

/// The freed blocks of one size.
struct Shelf {
  Block* first;
  std::size_t bytes;
};

// Sizes are rounded to what an allocator hands out anyway: a multiple of 16 less the word that it keeps
// itself.
constexpr std::size_t Step = 16;
constexpr std::size_t Word = 8;
constexpr std::size_t Largest = 512;
constexpr std::size_t KeptBytes = std::size_t{4} << 20;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool CanKeep = false;  // so that the sanitizer sees who uses what was freed
#else
constexpr bool CanKeep = true;
#endif

constexpr std::size_t numberOfShelf(std::size_t size) noexcept {
  return (size + Step - Word - 1) / Step;
}
constexpr std::size_t roundedUp(std::size_t size) noexcept {
  return numberOfShelf(size) * Step + Word;
}

enum class State : std::uint8_t { New, Used, Closed };

// Plain data, which outlives everything on its thread; the shelves are looked up without a call.
__attribute__((tls_model("initial-exec"))) constinit thread_local Shelf shelves[numberOfShelf(Largest) + 1]{};
__attribute__((tls_model("initial-exec"))) constinit thread_local State state = State::New;
bool keeps = CanKeep;

void clear() noexcept {
  for (Shelf& shelf : shelves) {
    while (shelf.first != nullptr) {
      Block* const block = shelf.first;
      shelf.first = block->next;
      ::operator delete(block);
    }
    shelf.bytes = 0;
  }
}

/// Give back what a thread keeps, when it ends.
struct Keeper {
  ~Keeper() {
    state = State::Closed;
    clear();
  }
};

[[gnu::noinline]] bool open() noexcept {
  if (state == State::Closed) return false;
  static thread_local const Keeper keeper;
  static_cast<void>(keeper);
  state = State::Used;
  return true;
}

bool isOpen() noexcept {
  return state == State::Used || open();
}

}  // namespace

void* allocateBlock(std::size_t size) {
  if (size <= Largest) {
    Shelf& shelf = shelves[numberOfShelf(size)];
    if (Block* const block = shelf.first) {
      shelf.first = block->next;
      shelf.bytes -= roundedUp(size);
      return block;
    }
  }
  return ::operator new(roundedUp(size));
}

void freeBlock(void* memory, std::size_t size) noexcept {
  if (memory == nullptr) return;
  if (keeps && size <= Largest) {
    Shelf& shelf = shelves[numberOfShelf(size)];
    if (shelf.bytes < KeptBytes && isOpen()) {
      shelf.first = ::new (memory) Block{shelf.first};
      shelf.bytes += roundedUp(size);
      return;
    }
  }
  ::operator delete(memory);
}

void keepFreedBlocks(bool keep) noexcept {
  keeps = keep && CanKeep;
  if (!keeps) clear();
}

}  // namespace lx::base::detail
