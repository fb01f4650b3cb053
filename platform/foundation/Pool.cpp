#include "platform/foundation/Pool.h"

namespace lx::base::detail {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr Pool::State AtFirst = Pool::State::NotKeeping;
#else
constexpr Pool::State AtFirst = Pool::State::New;
#endif

constinit thread_local Pool pool{{}, AtFirst};

namespace {

void clear() noexcept {
  for (Shelf& shelf : pool.shelves) {
    while (shelf.first != nullptr) {
      void* const block = shelf.first;
      shelf.first = *static_cast<void**>(block);
      ::operator delete(block);
    }
    shelf.bytes = 0;
  }
}

/// Give back what a thread keeps, when it ends.
struct Keeper {
  ~Keeper() { keepFreedBlocks(false); }
};

}  // namespace

bool Pool::open() noexcept {
  if (state == State::NotKeeping) return false;
  static thread_local const Keeper keeper;
  static_cast<void>(keeper);
  state = State::Keeping;
  return true;
}

void keepFreedBlocks(bool keep) noexcept {
  pool.state = keep ? AtFirst : Pool::State::NotKeeping;
  if (!keep) clear();
}

}  // namespace lx::base::detail
