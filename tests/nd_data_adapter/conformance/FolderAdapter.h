#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>
#include <vector>

#include "tests/nd_data_adapter/conformance/LineAdapter.h"

/// Its sources are folders: each file in a ".numbers" folder is a variable, and holds a number.
class FolderAdapter final : public LineAdapter {
 public:
  CPPAdapterV2* clone() override { return new FolderAdapter; }
  std::u16string getAdapterName() override { return u"Folders"; }
  std::vector<std::u16string> getSupportedExtensions() override { return {u".numbers"}; }

 protected:
  bool isThere(const std::filesystem::path& path) const override {
    std::error_code ignored;
    return std::filesystem::is_directory(path, ignored);
  }

  std::string contentOf(const std::filesystem::path& path) const override {
    std::vector<std::string> lines;
    for (const auto& entry : std::filesystem::directory_iterator(path)) {
      std::ifstream file(entry.path());
      std::string value;
      std::getline(file, value);
      lines.push_back(entry.path().filename().string() + " " + value + "\n");
    }
    std::sort(lines.begin(), lines.end());
    std::string content;
    for (const std::string& line : lines) content += line;
    return content;
  }
};
