#include <cstddef>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/adapters/json/agreement.h"
#include "tests/adapters/json/corpusFiles.h"
#include "tests/adapters/json/readText.h"

using corpus::contentOf;
using corpus::filesIn;

namespace {

void expectPlaceOrValue(const std::string& text, std::size_t& refused) {
  const std::string failure = failureOf(text);
  if (failure == "it was read") return;
  ++refused;
  EXPECT_TRUE(failure.starts_with("line ")) << text << "\n" << failure;
  EXPECT_NE(failure.find(": expected "), std::string::npos) << text << "\n" << failure;
}

}  // namespace

TEST(Corpus, IsRefusedWithTheFirstPlaceAtFault) {
  std::map<std::string, std::string> expected = corpus::expectedFailures();
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
    const std::vector<std::filesystem::path> files = filesIn(folder);
    EXPECT_GE(files.size(), 3U) << folder;
    for (const std::filesystem::path& file : files) EXPECT_EQ(disagreementOn(contentOf(file)), "") << file;
  }
}

TEST(SmallFile, IsRefusedWithAPlaceWhereverItIsCutOff) {
  const std::string text = corpus::good("small.json");
  const std::size_t end = text.rfind('}');
  for (std::size_t size = 0; size <= end; ++size) {
    std::size_t refused = 0;
    expectPlaceOrValue(text.substr(0, size), refused);
    EXPECT_EQ(refused, 1U) << size << " bytes";
  }
}

TEST(SmallFile, IsReadOrRefusedWithAPlaceWhicheverByteIsChangedToWhichever) {
  const std::string text = corpus::good("small.json");
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
  const std::string text = corpus::good("small.json");
  for (std::size_t index = 0; index < text.size(); ++index) {
    for (unsigned bit = 0; bit < 8; ++bit) {
      std::string changed = text;
      changed[index] = static_cast<char>(static_cast<unsigned char>(changed[index]) ^ (1U << bit));
      ASSERT_EQ(disagreementOn(changed), "") << changed;
    }
  }
}
