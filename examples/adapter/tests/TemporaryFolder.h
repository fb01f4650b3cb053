#pragma once

#include <atomic>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include <unistd.h>

#include "platform/text/Convert.h"

/// A folder of its own for a test, removed with all that is in it.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    static std::atomic<int> count = 0;
    const std::string name = "params_" + std::to_string(::getpid()) + "_" + std::to_string(++count);
    folder_ = std::filesystem::temp_directory_path() / name;
    std::filesystem::create_directory(folder_);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }

  /// Give the path of something in the folder, as a source.
  std::u16string source(std::string_view name) const { return lx::text::toUtf16((folder_ / name).string()); }

  /// Write a file anew and give its path, as a source.
  std::u16string write(std::string_view name, std::string_view content) const {
    std::ofstream(folder_ / name, std::ios::binary) << content;
    return source(name);
  }

  const std::filesystem::path& path() const noexcept { return folder_; }

 private:
  std::filesystem::path folder_;
};
