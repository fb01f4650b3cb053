#include <cstdlib>

#include <gtest/gtest.h>

#include "platform/services/FileSystem.h"
#include "tests/support/AtOnce.h"

namespace {

using lx::services::FileSystem;

bool servesRight() {
  return FileSystem::share().get() == &FileSystem::current() && FileSystem::current().exists(u"/") &&
         FileSystem::current().extract_extension(u"a.json") == u"json";
}

// Each round is a process of its own, in which nobody has used the filesystem before.
TEST(FileSystemThreadsDeathTest, TheFirstUseCanBeOnSeveralThreadsAtOnce) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  for (int round = 0; round < 5; ++round) {
    EXPECT_EXIT(std::exit(support::holdsAtOnce(8, servesRight) ? 0 : 1), testing::ExitedWithCode(0), "");
  }
}

}  // namespace
