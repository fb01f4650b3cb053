#include "platform/services/FileSystem.h"

#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/text/Convert.h"

namespace lx::services {

namespace {

static_assert(FileSystem::file_type_mask == S_IFMT);
static_assert(FileSystem::regular_file == S_IFREG);
static_assert(FileSystem::directory_file == S_IFDIR);

bool holdsLoneSurrogate(std::u16string_view text) {
  for (std::size_t at = 0; at < text.size(); ++at) {
    const unsigned kind = text[at] & 0xFC00U;
    if (kind == 0xDC00U) return true;
    if (kind != 0xD800U) continue;
    if (++at == text.size() || (text[at] & 0xFC00U) != 0xDC00U) return true;
  }
  return false;
}

// The path as the system takes it; none if no file can have it as its name.
std::optional<std::string> systemPath(const std::u16string& path) {
  if (path.find(u'\0') != std::u16string::npos || holdsLoneSurrogate(path)) return std::nullopt;
  return lx::text::toUtf8(path);
}

bool meansAbsent(int error) {
  return error == ENOENT || error == ENOTDIR || error == ENAMETOOLONG;
}

[[noreturn]] void raise(const char* what, const std::string& path, int error) {
  throw std::filesystem::filesystem_error(what, path, std::error_code(error, std::generic_category()));
}

std::u16string_view lastComponent(std::u16string_view path) {
  const std::size_t slash = path.rfind(u'/');
  return slash == std::u16string_view::npos ? path : path.substr(slash + 1);
}

class PosixFileSystem final : public FileSystem {
 public:
  std::u16string make_native_form(const std::u16string& path, bool /*flag*/) const override { return path; }

  std::u16string make_generic_form(const std::u16string& path) const override { return path; }

  std::u16string extract_filename(const std::u16string& path) const override {
    return std::u16string(lastComponent(path));
  }

  std::u16string extract_extension(const std::u16string& path) const override {
    const std::u16string_view name = lastComponent(path);
    const std::size_t dot = name.rfind(u'.');
    if (dot == std::u16string_view::npos || dot == 0) return {};
    return std::u16string(name.substr(dot + 1));
  }

  std::u16string extract_parent_path(const std::u16string& path) const override {
    const std::size_t slash = path.rfind(u'/');
    if (slash == std::u16string::npos) return {};
    const std::size_t end = path.find_last_not_of(u'/', slash);
    return end == std::u16string::npos ? u"/" : path.substr(0, end + 1);
  }

  bool exists(const std::u16string& path) const override {
    struct ::stat found = {};
    return look(path, found, "It can't be found out whether the path exists");
  }

  bool access(const std::u16string& path, int mode) const override {
    if (mode != read_access) {
      raise("The mode of an access must be 2, which asks whether the path may be read",
            lx::text::toUtf8(path), EINVAL);
    }
    const std::optional<std::string> name = systemPath(path);
    if (!name) return false;
    if (::faccessat(AT_FDCWD, name->c_str(), R_OK, AT_EACCESS) == 0) return true;
    const int error = errno;
    if (meansAbsent(error) || error == EACCES || error == EPERM) return false;
    raise("It can't be found out whether the path may be read", *name, error);
  }

  unsigned status(const std::u16string& path) const override {
    struct ::stat found = {};
    return look(path, found, "The status of the path can't be found out") ? found.st_mode : 0U;
  }

 private:
  static bool look(const std::u16string& path, struct ::stat& found, const char* complaint) {
    const std::optional<std::string> name = systemPath(path);
    if (!name) return false;
    if (::stat(name->c_str(), &found) == 0) return true;
    const int error = errno;
    if (meansAbsent(error)) return false;
    raise(complaint, *name, error);
  }
};

// Keeps an object that is never destroyed: what goes at the end of the process may still ask about a path.
template <typename Object>
union Undestroyed {
  template <typename... Arguments>
  explicit Undestroyed(Arguments&&... arguments) noexcept : object(std::forward<Arguments>(arguments)...) {}
  Undestroyed(const Undestroyed&) = delete;
  Undestroyed& operator=(const Undestroyed&) = delete;
  // A defaulted destructor of this union would be deleted.
  ~Undestroyed() {}  // NOLINT(modernize-use-equals-default)

  Object object;
};

FileSystem& posix() noexcept {
  static Undestroyed<PosixFileSystem> standard;
  return standard.object;
}

std::shared_ptr<FileSystem> unowned(FileSystem& object) noexcept {
  return std::shared_ptr<FileSystem>(std::shared_ptr<void>(), &object);
}

std::shared_ptr<FileSystem>& serving() noexcept {
  static Undestroyed<std::shared_ptr<FileSystem>> server(unowned(posix()));
  return server.object;
}

}  // namespace

FileSystem::~FileSystem() = default;

FileSystem& FileSystem::current() noexcept {
  return *serving();
}

std::shared_ptr<FileSystem> FileSystem::share() noexcept {
  return serving();
}

std::shared_ptr<FileSystem> FileSystem::replace(std::shared_ptr<FileSystem> other) noexcept {
  if (!other) other = unowned(posix());
  serving().swap(other);
  return other;
}

}  // namespace lx::services
