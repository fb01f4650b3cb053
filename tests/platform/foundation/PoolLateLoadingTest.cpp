// A program that meets the platform only when it loads a library that uses it. What the platform keeps for
// each thread then has to find its place in threads that are there already.

#include <condition_variable>
#include <cstddef>
#include <cstring>
#include <mutex>
#include <thread>
#include <utility>

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <link.h>

namespace {

constexpr int Count = 5000;

// A leak checker doesn't see what a library that was unloaded still refers to.
#ifdef ND_SANITIZED
constexpr int Flags = RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE;
#else
constexpr int Flags = RTLD_NOW | RTLD_LOCAL;
#endif

bool isPlatformLoaded() {
  const auto isPlatform = [](dl_phdr_info* info, std::size_t, void*) {
    return std::strstr(info->dlpi_name, "libnd_platform") != nullptr ? 1 : 0;
  };
  return dl_iterate_phdr(isPlatform, nullptr) != 0;
}

class Library {
 public:
  Library() : handle_(dlopen(ND_LATE_MODULE, Flags)) {
    if (handle_ == nullptr) {
      ADD_FAILURE() << dlerror();
      return;
    }
    useElements_ = reinterpret_cast<int (*)(int)>(dlsym(handle_, "useElements"));
  }
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;
  ~Library() { close(); }

  /// Give the number of elements that were as they should be, -1 if the library isn't there.
  int useElements() const { return useElements_ == nullptr ? -1 : useElements_(Count); }

  bool close() {
    useElements_ = nullptr;
    void* const handle = std::exchange(handle_, nullptr);
    return handle == nullptr || dlclose(handle) == 0;
  }

 private:
  void* handle_;
  int (*useElements_)(int) = nullptr;
};

/// Where threads wait for each other.
class Signal {
 public:
  void give() {
    {
      const std::lock_guard lock(mutex_);
      isGiven_ = true;
    }
    given_.notify_all();
  }
  void await() {
    std::unique_lock lock(mutex_);
    given_.wait(lock, [&] { return isGiven_; });
  }

 private:
  std::mutex mutex_;
  std::condition_variable given_;
  bool isGiven_ = false;
};

// The first test, since a library may stay when it is closed.
TEST(LateLibrary, BringsThePlatformAndServesThisThreadAnOlderAndANewerOne) {
  ASSERT_FALSE(isPlatformLoaded());
  Signal loaded;
  int byOlder = 0;
  int byNewer = 0;
  const Library* shared = nullptr;
  std::thread older([&] {
    loaded.await();
    byOlder = shared->useElements();
  });

  Library library;
  shared = &library;
  loaded.give();
  std::thread newer([&] { byNewer = library.useElements(); });
  const int byThis = library.useElements();
  older.join();
  newer.join();

  EXPECT_TRUE(isPlatformLoaded());
  EXPECT_EQ(byThis, Count);
  EXPECT_EQ(byOlder, Count);
  EXPECT_EQ(byNewer, Count);
  EXPECT_TRUE(library.close());
}

TEST(LateLibrary, CanBeLoadedAgainOnTheSameAndOnANewThread) {
  for (int round = 0; round < 3; ++round) {
    Library library;
    EXPECT_EQ(library.useElements(), Count);
    int byNewer = 0;
    std::thread([&] { byNewer = library.useElements(); }).join();
    EXPECT_EQ(byNewer, Count);
    EXPECT_TRUE(library.close());
  }
}

TEST(LateLibrary, CanBeClosedBeforeAThreadEndsThatUsedIt) {
  Signal used;
  Signal closed;
  int good = 0;
  Library library;
  std::thread user([&] {
    good = library.useElements();
    used.give();
    closed.await();
  });
  used.await();
  EXPECT_TRUE(library.close());
  closed.give();
  user.join();  // gives back what the thread kept
  EXPECT_EQ(good, Count);
}

}  // namespace
