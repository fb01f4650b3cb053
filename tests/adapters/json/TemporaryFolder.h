#pragma once

#include <filesystem>
#include <string>
#include <string_view>

/// A folder of its own for a test, removed with all that is in it.
class TemporaryFolder {
 public:
  TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder();

  /// The path of something in the folder.
  std::string path(std::string_view name) const { return (folder_ / name).string(); }

  /// Write a file anew and give its path.
  std::string write(std::string_view name, std::string_view content) const;

 private:
  std::filesystem::path folder_;
};
