#pragma once

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <string>
#include <system_error>
#include <vector>

namespace nd::conformance {

/// List what the process has open, by what the system shows for each file handle.
inline std::vector<std::string> openFiles() {
  std::vector<std::string> files;
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    std::error_code goneMeanwhile;
    files.push_back(std::filesystem::read_symlink(entry.path(), goneMeanwhile).string());
  }
  std::sort(files.begin(), files.end());
  return files;
}

/// Name what is open now and was not open before; empty if nothing is.
inline std::string openedSince(const std::vector<std::string>& before) {
  const std::vector<std::string> now = openFiles();
  std::vector<std::string> added;
  std::set_difference(now.begin(), now.end(), before.begin(), before.end(), std::back_inserter(added));
  std::string text;
  for (const std::string& file : added) text += (text.empty() ? "" : ", ") + file;
  return text;
}

}  // namespace nd::conformance
