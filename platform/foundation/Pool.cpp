#include "platform/foundation/Pool.h"

namespace lx::base::detail {

// The build says whether it uses a sanitizer; who compiles by flags of their own is seen by these compilers
// that define a macro for it.
#if defined(ND_SANITIZED) || defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr Pool::State AtFirst = Pool::State::NotKeeping;
#else
constexpr Pool::State AtFirst = Pool::State::New;
#endif

constinit thread_local Pool pool{{}, 0, AtFirst};

namespace {

void stopKeeping(Pool::State next) noexcept {
  pool.state = next;
  pool.room = 0;
  for (void*& shelf : pool.shelves) {
    while (shelf != nullptr) {
      void* const block = shelf;
      shelf = *static_cast<void**>(block);
      ::operator delete(block);
    }
  }
}

/// Give back what a thread keeps, when it ends. Once it has ended nothing would give back what was kept, so
/// that nothing is kept any more.
struct Keeper {
  ~Keeper() { stopKeeping(Pool::State::Ended); }
};

}  // namespace

bool Pool::open() noexcept {
  static thread_local const Keeper keeper;
  static_cast<void>(keeper);
  state = State::Keeping;
  room = KeptBytes;
  return true;
}

void keepFreedBlocks(bool keep) noexcept {
  if (pool.state == Pool::State::Ended) return;
  if (!keep)
    stopKeeping(Pool::State::NotKeeping);
  else if (pool.state == Pool::State::NotKeeping)
    pool.state = AtFirst;
}

bool keepsFreedBlocks() noexcept {
  return pool.state == Pool::State::New || pool.state == Pool::State::Keeping;
}

}  // namespace lx::base::detail
