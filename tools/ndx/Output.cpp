#include "tools/ndx/Output.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <system_error>

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace nd::tools {
namespace {

constexpr std::size_t bufferSize = std::size_t{64} * 1024;

std::string_view environment(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? std::string_view() : value;
}

Look lookOf(int descriptor) {
  Look look;
  if (::isatty(descriptor) == 0) return look;
  winsize size{};
  if (::ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) look.width = size.ws_col;
  const std::string_view terminal = environment("TERM");
  look.hasColours = environment("NO_COLOR").empty() && !terminal.empty() && terminal != "dumb";
  return look;
}

[[noreturn]] void raise(int error) {
  throw OutputFailure(std::generic_category().message(error), error == EPIPE);
}

void waitUntilWritable(int descriptor) {
  pollfd request{descriptor, POLLOUT, 0};
  if (::poll(&request, 1, -1) < 0 && errno != EINTR) raise(errno);
}

}  // namespace

Output::~Output() = default;

template <typename Action>
void Output::unlessFailed(Action action) {
  if (hasFailed_) return;
  try {
    action();
  } catch (const OutputFailure&) {
    hasFailed_ = true;
    buffer_.clear();
    throw;
  }
}

void Output::write(std::string_view text) {
  unlessFailed([&] {
    buffer_ += text;
    if (buffer_.size() < bufferSize) return;
    put(buffer_);
    buffer_.clear();
  });
}

void Output::finish() {
  unlessFailed([&] {
    put(buffer_);
    buffer_.clear();
    settle();
  });
}

FileOutput::FileOutput(int descriptor) : Output(lookOf(descriptor)), descriptor_(descriptor) {}

void FileOutput::put(std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = ::write(descriptor_, text.data(), text.size());
    if (written >= 0) {
      text.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno == EAGAIN) {
      waitUntilWritable(descriptor_);
    } else if (errno != EINTR) {
      raise(errno);
    }
  }
}

void FileOutput::settle() {
  // Some filesystems tell of a lack of space only when a descriptor is closed; a copy of it does for that.
  const int copy = ::dup(descriptor_);
  if (copy >= 0 && ::close(copy) != 0 && errno != EINTR) raise(errno);
}

void prepareStandardStreams() noexcept {
  for (int descriptor = 0; descriptor <= 2; ++descriptor) {
    if (::fcntl(descriptor, F_GETFD) != -1 || errno != EBADF) continue;
    // The lowest free descriptor is taken, which is this one.
    static_cast<void>(::open("/dev/null", descriptor == 0 ? O_WRONLY : O_RDONLY));
  }
  static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
}

}  // namespace nd::tools
