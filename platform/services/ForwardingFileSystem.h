#pragma once

#include <memory>
#include <string>

#include "platform/services/FileSystem.h"

namespace lx::services {

/// A filesystem that hands every question to another one. Derive from it to change single answers:
///
///     struct Emptied : ForwardingFileSystem {
///       bool exists(const std::u16string&) const override { return false; }
///     };
///     FileSystem::Replacement emptied(std::make_shared<Emptied>());
class ND_PLATFORM_EXPORT ForwardingFileSystem : public FileSystem {
 public:
  /// Forward to what serves the process when the object is made.
  ForwardingFileSystem();

  /// Forward to the given filesystem, which must not be null.
  explicit ForwardingFileSystem(std::shared_ptr<const FileSystem> target) noexcept;

  ~ForwardingFileSystem() override;

  std::u16string make_native_form(const std::u16string& path, bool flag) const override;
  std::u16string make_generic_form(const std::u16string& path) const override;
  std::u16string extract_filename(const std::u16string& path) const override;
  std::u16string extract_extension(const std::u16string& path) const override;
  std::u16string extract_parent_path(const std::u16string& path) const override;
  bool exists(const std::u16string& path) const override;
  bool access(const std::u16string& path, int mode) const override;
  unsigned status(const std::u16string& path) const override;

 private:
  std::shared_ptr<const FileSystem> target_;
};

}  // namespace lx::services
