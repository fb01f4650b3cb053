#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <gtest/gtest.h>

#include "tests/adapters/json/AdapterFixture.h"

using nd::data::adapter::AdapterDiagnostic;

namespace {

const std::filesystem::path corpus = std::filesystem::path(ND_JSON_TEST_FOLDER) / "corpus";

std::string contentOf(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

using JsonAdapterCorpus = AdapterFixture;

}  // namespace

TEST_F(JsonAdapterCorpus, IsRefusedAsAFormatAndLeavesTheContainerAlone) {
  fillContainer();
  const ContainerState before = state();
  std::size_t files = 0;
  for (const auto& entry : std::filesystem::directory_iterator(corpus / "bad")) {
    if (entry.path().extension() != ".json") continue;
    ++files;
    const std::u16string source = write("a.json", contentOf(entry.path()));
    adapter_.open(source);
    const ErrorState error = getData();
    EXPECT_EQ(error.diagnostic, AdapterDiagnostic::UnrecognizedFormat) << entry.path();
    EXPECT_EQ(error.source, source) << entry.path();
    EXPECT_TRUE(error.message.starts_with(u"line ")) << entry.path();
    EXPECT_EQ(state(), before) << entry.path();
  }
  EXPECT_GT(files, 40U);
}

TEST_F(JsonAdapterCorpus, FillsTheContainerWhollyOrNotAtAllWhicheverByteIsChanged) {
  const std::string text = contentOf(corpus / "good" / "small.json");
  const std::u16string source = write("a.json", text);
  adapter_.open(source);
  std::size_t refused = 0;
  for (std::size_t index = 0; index < text.size(); ++index) {
    for (const unsigned change : {0x01U, 0x20U, 0x80U}) {
      std::string changed = text;
      changed[index] = static_cast<char>(static_cast<unsigned char>(changed[index]) ^ change);
      write("a.json", changed);
      inClearArraysInDesiredWS(workspace_);
      container_.impl()->getMetaDataCacheMutable().clear();
      fillContainer();
      const ContainerState before = state();
      const ErrorState error = getData();
      if (error.diagnostic == AdapterDiagnostic::NoDiagnostic) {
        EXPECT_EQ(state().variables.size(), 6U) << changed;
        EXPECT_EQ(state().metaData.size(), 1U) << changed;
      } else {
        ++refused;
        EXPECT_EQ(error.diagnostic, AdapterDiagnostic::UnrecognizedFormat) << changed;
        EXPECT_EQ(state(), before) << changed;
      }
    }
  }
  EXPECT_GT(refused, text.size());
}
