#pragma once

#include <memory>
#include <string>
#include <utility>

#include "platform/export.h"

namespace lx::services {

/// What the system asks of a filesystem, on paths in UTF-16. One object serves the whole process:
///
///     if (FileSystem::current().exists(path)) …
///
/// The default object is that of POSIX: paths are split at "/" and at nothing else, and go to the system in
/// UTF-8. A path that holds a NUL or a surrogate without its partner can't name a file there, and one longer
/// than the system allows can't either: all three count as absent. What goes wrong beyond that is thrown as
/// `std::filesystem::filesystem_error`, with the path in its text.
///
/// All operations may run on any thread. The object is replaced only while no other thread uses it.
class ND_PLATFORM_EXPORT FileSystem {
 public:
  /// The bits of a status word that tell the type of a file, and their values for the types that matter here.
  static constexpr unsigned file_type_mask = 0170000;
  static constexpr unsigned regular_file = 0100000;
  static constexpr unsigned directory_file = 0040000;

  /// The mode of `access` that asks whether a path may be read.
  static constexpr int read_access = 2;

  virtual ~FileSystem();

  /// Give the path in the platform's native notation. With POSIX that is the path as it is, whatever the
  /// flag: nothing is made absolute, no "." or doubled slash removed, and a backslash is a character like any
  /// other.
  virtual std::u16string make_native_form(const std::u16string& path, bool flag) const = 0;

  /// Give the path in the platform's generic notation. With POSIX that is the path as it is.
  virtual std::u16string make_generic_form(const std::u16string& path) const = 0;

  /// Give the last component with its extension: what follows the last "/", so nothing for a path that ends
  /// in one.
  virtual std::u16string extract_filename(const std::u16string& path) const = 0;

  /// Give what follows the last dot of the last component, without the dot. A dot at the component's
  /// beginning makes no extension, and neither does "..": ".test", "a.", "dir.d/file" and "a.test/" have
  /// none, "a.tar.gz" has "gz".
  virtual std::u16string extract_extension(const std::u16string& path) const = 0;

  /// Give the path without its last component and the slashes before that; empty for a bare file name. The
  /// root is kept: it is the parent of "/x" and of itself.
  virtual std::u16string extract_parent_path(const std::u16string& path) const = 0;

  /// Tell whether something is at the path; links are followed. Throws when that can't be found out, as
  /// when a folder on the way may not be searched.
  virtual bool exists(const std::u16string& path) const = 0;

  /// Tell whether the path permits an access; links are followed. Mode 2, `read_access`, asks whether
  /// the process may read what is there; an absent path and missing rights give false. There is no other
  /// mode: any other value throws.
  virtual bool access(const std::u16string& path, int mode) const = 0;

  /// Give the status word of what is at the path; links are followed. An absent path gives a word without
  /// type bits. Throws when the status can't be found out, as when a folder on the way may not be searched.
  virtual unsigned status(const std::u16string& path) const = 0;

  /// Get the object that serves the process.
  static FileSystem& current() noexcept;

  /// Get the object that serves the process, for one who keeps it: it stays whole also when it is replaced.
  static std::shared_ptr<FileSystem> share() noexcept;

  /// Let another object serve the process, or the default one when given null. Returns the former object,
  /// never null, which may be handed back to restore it. Do not call while another thread uses the
  /// filesystem.
  static std::shared_ptr<FileSystem> replace(std::shared_ptr<FileSystem> other) noexcept;

  class Replacement;

 protected:
  FileSystem() = default;
  FileSystem(const FileSystem&) = default;
  FileSystem& operator=(const FileSystem&) = default;
};

/// Lets another object serve as the filesystem for the life of a scope. Scopes end in the reverse order of
/// their beginning.
class FileSystem::Replacement {
 public:
  explicit Replacement(std::shared_ptr<FileSystem> other) noexcept : former_(replace(std::move(other))) {}
  Replacement(const Replacement&) = delete;
  Replacement& operator=(const Replacement&) = delete;
  ~Replacement() { replace(std::move(former_)); }

 private:
  std::shared_ptr<FileSystem> former_;
};

}  // namespace lx::services
