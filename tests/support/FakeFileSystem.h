#pragma once

#include <map>
#include <memory>
#include <string>

#include "platform/services/FileSystem.h"
#include "platform/services/ForwardingFileSystem.h"
#include "tests/support/CallLog.h"

namespace support {

/// A filesystem that notes every question in a log, as "fs.…". Of the paths it knows only those that a test
/// has put in; how paths are taken apart is the real one's business. It can act out a native notation of its
/// own.
class FakeFileSystem final : public lx::services::ForwardingFileSystem {
 public:
  struct File {
    bool isReadable = true;
  };

  explicit FakeFileSystem(std::shared_ptr<CallLog> log) : log_(std::move(log)) {}

  std::map<std::u16string, File> files;
  char16_t nativeSeparator = u'/';  // what stands for "/" in native notation

  std::u16string make_native_form(const std::u16string& path, bool flag) const override;
  std::u16string make_generic_form(const std::u16string& path) const override;
  std::u16string extract_filename(const std::u16string& path) const override;
  std::u16string extract_extension(const std::u16string& path) const override;
  std::u16string extract_parent_path(const std::u16string& path) const override;
  bool exists(const std::u16string& path) const override;
  bool access(const std::u16string& path, int mode) const override;
  unsigned status(const std::u16string& path) const override;

 private:
  std::u16string generic(std::u16string path) const;

  std::shared_ptr<CallLog> log_;
};

}  // namespace support
