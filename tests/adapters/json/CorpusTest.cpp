#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/adapters/json/agreement.h"
#include "tests/adapters/json/readText.h"

namespace {

const std::filesystem::path corpus = std::filesystem::path(ND_JSON_TEST_FOLDER) / "corpus";

std::string contentOf(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  stream.exceptions(std::ios::failbit | std::ios::badbit);
  std::ostringstream content;
  // An empty file gives nothing to insert, which is no failure here.
  if (std::filesystem::file_size(file) > 0) content << stream.rdbuf();
  return content.str();
}

std::vector<std::filesystem::path> filesIn(const char* folder) {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(corpus / folder)) {
    if (entry.path().extension() == ".json") files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

/// What is to be said about each bad file.
std::map<std::string, std::string> expectedFailures() {
  std::map<std::string, std::string> failures;
  std::istringstream lines(contentOf(corpus / "bad" / "expected.txt"));
  for (std::string line; std::getline(lines, line);) {
    const std::size_t separator = line.find(": ");
    failures[line.substr(0, separator)] = line.substr(separator + 2);
  }
  return failures;
}

void expectPlaceOrValue(const std::string& text, std::size_t& refused) {
  const std::string failure = failureOf(text);
  if (failure == "it was read") return;
  ++refused;
  EXPECT_TRUE(failure.starts_with("line ")) << text << "\n" << failure;
  EXPECT_NE(failure.find(": expected "), std::string::npos) << text << "\n" << failure;
}

}  // namespace

TEST(Corpus, IsRefusedWithTheFirstPlaceAtFault) {
  std::map<std::string, std::string> expected = expectedFailures();
  for (const std::filesystem::path& file : filesIn("bad")) {
    const std::string name = file.filename().string();
    EXPECT_EQ(failureOf(contentOf(file)), expected[name]) << name;
    expected.erase(name);
  }
  EXPECT_TRUE(expected.empty()) << "there is no " << expected.begin()->first;
}

TEST(Corpus, IsReadWhereItIsGood) {
  const std::vector<std::filesystem::path> files = filesIn("good");
  EXPECT_GE(files.size(), 3U);
  for (const std::filesystem::path& file : files)
    EXPECT_EQ(failureOf(contentOf(file)), "it was read") << file;
}

TEST(Corpus, IsSeenAlikeByBothWaysOfReading) {
  for (const char* folder : {"good", "bad", "found"}) {
    if (!std::filesystem::exists(corpus / folder)) continue;
    for (const auto& entry : std::filesystem::directory_iterator(corpus / folder))
      EXPECT_EQ(disagreementOn(contentOf(entry.path())), "") << entry.path();
  }
}

TEST(SmallFile, IsRefusedWithAPlaceWhereverItIsCutOff) {
  const std::string text = contentOf(corpus / "good" / "small.json");
  const std::size_t end = text.rfind('}');
  for (std::size_t size = 0; size <= end; ++size) {
    std::size_t refused = 0;
    expectPlaceOrValue(text.substr(0, size), refused);
    EXPECT_EQ(refused, 1U) << size << " bytes";
  }
}

TEST(SmallFile, IsReadOrRefusedWithAPlaceWhicheverByteIsChangedToWhichever) {
  const std::string text = contentOf(corpus / "good" / "small.json");
  std::size_t refused = 0;
  for (std::size_t index = 0; index < text.size(); ++index) {
    for (int byte = 0; byte < 256; ++byte) {
      std::string changed = text;
      changed[index] = static_cast<char>(byte);
      expectPlaceOrValue(changed, refused);
    }
  }
  EXPECT_GT(refused, 128 * text.size());
  EXPECT_LT(refused, 255 * text.size());
}

TEST(SmallFile, IsSeenAlikeByBothWaysOfReadingWhicheverBitIsChanged) {
  const std::string text = contentOf(corpus / "good" / "small.json");
  for (std::size_t index = 0; index < text.size(); ++index) {
    for (unsigned bit = 0; bit < 8; ++bit) {
      std::string changed = text;
      changed[index] = static_cast<char>(static_cast<unsigned char>(changed[index]) ^ (1U << bit));
      ASSERT_EQ(disagreementOn(changed), "") << changed;
    }
  }
}
