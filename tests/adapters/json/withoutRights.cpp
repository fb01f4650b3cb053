#include "tests/adapters/json/withoutRights.h"

#include <cerrno>
#include <cstdio>
#include <exception>
#include <system_error>

#include <grp.h>
#include <gtest/gtest.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr id_t stranger = 65534;

bool giveUpRights() {
  if (::geteuid() != 0) return true;
  return ::setgroups(0, nullptr) == 0 && ::setresgid(stranger, stranger, stranger) == 0 &&
         ::setresuid(stranger, stranger, stranger) == 0;
}

}  // namespace

bool holdsWithoutRights(const std::function<void()>& checks) {
  std::fflush(nullptr);
  const pid_t child = ::fork();
  if (child < 0) throw std::system_error(errno, std::generic_category(), "fork");
  if (child == 0) {
    try {
      if (giveUpRights()) {
        checks();
      } else {
        ADD_FAILURE() << "the rights can't be given up";
      }
    } catch (const std::exception& error) {
      ADD_FAILURE() << error.what();
    }
    std::fflush(nullptr);
    ::_exit(testing::Test::HasFailure() ? 1 : 0);
  }
  int status = 0;
  while (::waitpid(child, &status, 0) < 0) {
    if (errno != EINTR) throw std::system_error(errno, std::generic_category(), "waitpid");
  }
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}
