#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <map>
#include <string>

#include <gtest/gtest.h>

#include "tests/adapters/json/AdapterFixture.h"
#include "tests/adapters/json/corpusFiles.h"

using nd::data::adapter::AdapterDiagnostic;

namespace {

/// Texts as files, alone or included by a good one, read into a container that holds something.
class JsonAdapterCorpus : public AdapterFixture {
 protected:
  JsonAdapterCorpus() {
    fillContainer();
    before_ = state();
  }

  /// Read a text; a failure is to be told with `begin` and to leave the container as it is. Gives what is
  /// told behind that, in UTF-8; nothing if the container was filled.
  std::string readText(const std::string& text, const std::u16string& source, const std::u16string& begin) {
    const ErrorState error = getData();
    if (error.diagnostic == AdapterDiagnostic::NoDiagnostic) {
      const ContainerState after = state();
      EXPECT_EQ(after.variables.size(), 6U) << text;
      EXPECT_EQ(after.metaData.size(), 1U) << text;
      EXPECT_EQ(after.contentOfMetaData.size(), 1U) << text;
      emptyContainer();
      fillContainer();
      return {};
    }
    EXPECT_EQ(error.diagnostic, AdapterDiagnostic::UnrecognizedFormat) << text;
    EXPECT_EQ(error.source, source) << text;
    EXPECT_TRUE(error.message.starts_with(begin + u"line ")) << lx::text::toUtf8(error.message) << text;
    EXPECT_EQ(state(), before_) << text;
    return lx::text::toUtf8(error.message.substr(std::min(begin.size(), error.message.size())));
  }

  /// Read all texts that begin as the small good one does, or differ from it in one byte. Each has to be
  /// there as `name` first.
  void readVariationsOfSmallFile(const char* name, const std::u16string& source,
                                 const std::u16string& begin) {
    const std::string text = corpus::good("small.json");
    std::size_t refused = 0;
    const auto read = [&](const std::string& variation) {
      write(name, variation);
      const bool isRefused = !readText(variation, source, begin).empty();
      refused += isRefused ? 1U : 0U;
      return isRefused;
    };
    const std::size_t end = text.rfind('}');
    for (std::size_t size = 0; size <= end; ++size) EXPECT_TRUE(read(text.substr(0, size))) << size;
    for (std::size_t index = 0; index < text.size(); ++index) {
      for (const unsigned change : {0x01U, 0x20U, 0x80U}) {
        std::string changed = text;
        changed[index] = static_cast<char>(static_cast<unsigned char>(changed[index]) ^ change);
        read(changed);
      }
    }
    EXPECT_GT(refused, 2 * text.size());
    EXPECT_LT(refused, 4 * text.size());
  }

  ContainerState before_;
};

}  // namespace

TEST_F(JsonAdapterCorpus, IsRefusedAsAFormatAndLeavesTheContainerAlone) {
  std::map<std::string, std::string> expected = corpus::expectedFailures();
  EXPECT_GT(expected.size(), 40U);
  const std::u16string source = write("a.json", "{}");
  adapter_.open(source);
  for (const std::filesystem::path& file : corpus::filesIn("bad")) {
    const std::string text = corpus::contentOf(file);
    write("a.json", text);
    EXPECT_EQ(readText(text, source, u""), expected[file.filename().string()]) << file;
  }
}

TEST_F(JsonAdapterCorpus, IsRefusedWithTheFilesNameWhereAGoodFileIncludesIt) {
  std::map<std::string, std::string> expected = corpus::expectedFailures();
  const std::u16string source = write("main.json", R"({"$include": "a.json", "gain": 1})");
  const std::u16string begin = u"in the included file \"" + sourceOf("a.json") + u"\", ";
  adapter_.open(source);
  for (const std::filesystem::path& file : corpus::filesIn("bad")) {
    const std::string text = corpus::contentOf(file);
    write("a.json", text);
    EXPECT_EQ(readText(text, source, begin), expected[file.filename().string()]) << file;
  }
}

TEST_F(JsonAdapterCorpus, FillsTheContainerWhollyOrNotAtAllWhereverAFileIsCutOffOrChanged) {
  const std::u16string source = write("a.json", "{}");
  adapter_.open(source);
  readVariationsOfSmallFile("a.json", source, u"");
}

TEST_F(JsonAdapterCorpus, FillsTheContainerWhollyOrNotAtAllWhereverAnIncludedFileIsCutOffOrChanged) {
  const std::u16string source = write("main.json", R"({"$include": "a.json"})");
  adapter_.open(source);
  readVariationsOfSmallFile("a.json", source, u"in the included file \"" + sourceOf("a.json") + u"\", ");
}
