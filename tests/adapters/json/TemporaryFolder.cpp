#include "tests/adapters/json/TemporaryFolder.h"

#include <cerrno>
#include <fstream>
#include <system_error>

#include <stdlib.h>

TemporaryFolder::TemporaryFolder() {
  std::string pattern = (std::filesystem::temp_directory_path() / "nd-json-XXXXXX").string();
  if (::mkdtemp(pattern.data()) == nullptr) throw std::system_error(errno, std::generic_category(), pattern);
  folder_ = pattern;
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

std::string TemporaryFolder::write(std::string_view name, std::string_view content) const {
  const std::string file = path(name);
  std::ofstream stream(file, std::ios::binary | std::ios::trunc);
  stream.exceptions(std::ios::failbit | std::ios::badbit);
  stream.write(content.data(), static_cast<std::streamsize>(content.size()));
  return file;
}
