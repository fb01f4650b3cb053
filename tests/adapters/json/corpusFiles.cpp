#include "tests/adapters/json/corpusFiles.h"

#include <algorithm>
#include <cstddef>
#include <fstream>
#include <sstream>

namespace corpus {
namespace {

const std::filesystem::path root = std::filesystem::path(ND_JSON_TEST_FOLDER) / "corpus";

}  // namespace

std::string contentOf(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  stream.exceptions(std::ios::failbit | std::ios::badbit);
  std::ostringstream content;
  // An empty file gives nothing to insert, which is no failure here.
  if (std::filesystem::file_size(file) > 0) content << stream.rdbuf();
  return content.str();
}

std::vector<std::filesystem::path> filesIn(const std::string& folder) {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(root / folder)) {
    if (entry.path().extension() == ".json") files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

std::string good(const std::string& name) {
  return contentOf(root / "good" / name);
}

std::map<std::string, std::string> expectedFailures() {
  std::map<std::string, std::string> failures;
  std::istringstream lines(contentOf(root / "bad" / "expected.txt"));
  for (std::string line; std::getline(lines, line);) {
    const std::size_t separator = line.find(": ");
    failures[line.substr(0, separator)] = line.substr(separator + 2);
  }
  return failures;
}

}  // namespace corpus
