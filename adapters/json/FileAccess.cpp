#include "adapters/json/FileAccess.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "adapters/json/Checksum.h"
#include "adapters/json/Limits.h"
#include "adapters/json/Wording.h"
#include "adapters/json/messages.h"
#include "platform/text/Convert.h"

namespace nd::adapters::json {
namespace {

/// An open file, closed when it goes.
class OpenFile {
 public:
  explicit OpenFile(const std::string& path) {
    refuseUnlessRegular(path);
    // Another file may have taken the place meanwhile: a pipe must not be waited for, a terminal not be taken
    // over.
    do {
      descriptor_ = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    } while (descriptor_ < 0 && errno == EINTR);
    if (descriptor_ < 0) throw fileFailure(errno);
  }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;
  ~OpenFile() { ::close(descriptor_); }

  std::uint64_t size() const {
    struct stat status {};
    if (::fstat(descriptor_, &status) != 0) throw fileFailure(errno);
    if (!S_ISREG(status.st_mode)) throw notRegular(status.st_mode);
    return static_cast<std::uint64_t>(status.st_size);
  }

  /// Read up to `size` bytes; fewer only at the end of the file.
  std::size_t read(char* into, std::size_t size) const {
    std::size_t done = 0;
    while (done < size) {
      const ssize_t count = ::read(descriptor_, into + done, size - done);
      if (count == 0) break;
      if (count > 0) {
        done += static_cast<std::size_t>(count);
      } else if (errno != EINTR) {
        throw fileFailure(errno);
      }
    }
    return done;
  }

 private:
  static FileFailure notRegular(mode_t mode) {
    if (S_ISDIR(mode)) return {FileFailureKind::Inaccessible, messages::IsFolder()};
    return {FileFailureKind::Inaccessible, messages::NoRegularFile()};
  }

  static void refuseUnlessRegular(const std::string& path) {
    if (path.find('\0') != std::string::npos) throw fileFailure(ENOENT);
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) throw fileFailure(errno);
    if (!S_ISREG(status.st_mode)) throw notRegular(status.st_mode);
  }

  int descriptor_ = -1;
};

void refuseIfTooLarge(std::uint64_t size, std::uint64_t most) {
  if (size > maximumFileSize)
    throw FileFailure(FileFailureKind::TooLarge, messages::FileTooLarge(spelled(maximumFileSize >> 20)));
  if (size > most)
    throw FileFailure(FileFailureKind::TooLarge, messages::FilesTooLarge(spelled(maximumTotalSize >> 20)));
}

}  // namespace

FileFailure fileFailure(int errorNumber) {
  switch (errorNumber) {
    case ENOENT:
    case ENOTDIR:
      return {FileFailureKind::Inaccessible, messages::NoSuchFile()};
    case EACCES:
    case EPERM:
      return {FileFailureKind::NoPermission, messages::NoReadPermission()};
    default:
      return {FileFailureKind::Inaccessible,
              messages::UnreadableFile(lx::text::toUtf16(std::generic_category().message(errorNumber)))};
  }
}

bool isRegularFile(const std::string& path) noexcept {
  struct stat status {};
  return path.find('\0') == std::string::npos && ::stat(path.c_str(), &status) == 0 &&
         S_ISREG(status.st_mode);
}

void checkFile(const std::string& path) {
  static_cast<void>(OpenFile(path).size());
}

PaddedText readFile(const std::string& path, std::uint64_t most) {
  const OpenFile file(path);
  const std::uint64_t size = file.size();
  refuseIfTooLarge(size, most);
  PaddedText content(size);
  std::size_t done = file.read(content.data(), content.size());
  // The size may have been out of date, and some file systems never tell it.
  while (done == content.size()) {
    char next = 0;
    if (file.read(&next, 1) == 0) break;
    PaddedText larger(std::max<std::size_t>(4096, 2 * done));
    std::copy_n(content.data(), done, larger.data());
    larger.data()[done] = next;
    content = std::move(larger);
    done += 1 + file.read(content.data() + done + 1, content.size() - done - 1);
    refuseIfTooLarge(done, most);
  }
  content.shrink(done);
  return content;
}

std::u16string checksumOfFile(const std::string& path, std::string* head) {
  constexpr std::size_t pieceSize = std::size_t{1} << 18;
  const OpenFile file(path);
  static_cast<void>(file.size());
  std::vector<char> piece(pieceSize);
  Checksum checksum;
  while (const std::size_t count = file.read(piece.data(), piece.size())) {
    checksum.add(std::string_view(piece.data(), count));
    if (head && head->size() < headSize) head->append(piece.data(), std::min(count, headSize - head->size()));
  }
  return checksum.text();
}

}  // namespace nd::adapters::json
