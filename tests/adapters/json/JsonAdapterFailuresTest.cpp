#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <system_error>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "adapters/json/Limits.h"
#include "platform/services/ForwardingFileSystem.h"
#include "tests/adapters/json/AdapterFixture.h"

using nd::data::adapter::AdapterDiagnostic;

namespace {

/// Everything that fails must leave the container as it was.
class JsonAdapterFailures : public AdapterFixture {
 protected:
  JsonAdapterFailures() {
    fillContainer();
    before_ = state();
  }

  void TearDown() override { EXPECT_EQ(state(), before_); }

 private:
  ContainerState before_;
};

}  // namespace

TEST_F(JsonAdapterFailures, NameAMissingFile) {
  const std::u16string source = sourceOf("a.json") + u"#TAG";
  EXPECT_FALSE(adapter_.open(source));
  EXPECT_EQ(getData(), failure(AdapterDiagnostic::Inaccessible, u"There is no such file.", source));
}

TEST_F(JsonAdapterFailures, NameAFileThatIsGoneSinceTheOpening) {
  const std::u16string source = write("a.json", "{}");
  EXPECT_TRUE(adapter_.open(source));
  std::filesystem::remove(folder_.path("a.json"));
  EXPECT_EQ(getData(), failure(AdapterDiagnostic::Inaccessible, u"There is no such file.", source));
}

TEST_F(JsonAdapterFailures, NameAFolder) {
  std::filesystem::create_directory(folder_.path("a.json"));
  const std::u16string source = sourceOf("a.json");
  EXPECT_FALSE(adapter_.open(source));
  EXPECT_EQ(getData(), failure(AdapterDiagnostic::Inaccessible, u"It is a folder and not a file.", source));
}

TEST_F(JsonAdapterFailures, NameAPipeWithoutWaitingForIt) {
  ASSERT_EQ(::mkfifo(folder_.path("a.json").c_str(), 0600), 0);
  const std::u16string source = sourceOf("a.json");
  EXPECT_FALSE(adapter_.open(source));
  EXPECT_EQ(getData(), failure(AdapterDiagnostic::Inaccessible,
                               u"It is a pipe, a device or the like and not a regular file.", source));
}

TEST_F(JsonAdapterFailures, NameAMissingPermission) {
  struct Forbidding : lx::services::ForwardingFileSystem {
    bool access(const std::u16string&, int) const override { return false; }
  };
  const std::u16string source = write("a.json", R"({"gain": 1})");
  const lx::services::FileSystem::Replacement forbidding(std::make_shared<Forbidding>());
  EXPECT_FALSE(adapter_.open(source));
  EXPECT_EQ(getData(),
            failure(AdapterDiagnostic::NoPermission, u"There is no permission to read it.", source));
  EXPECT_EQ(adapter_.getCurrentChecksum(), u"");
  EXPECT_FALSE(adapter_.hasData());
}

TEST_F(JsonAdapterFailures, NameWhatTheHostsFileSystemRaises) {
  struct Broken : lx::services::ForwardingFileSystem {
    bool access(const std::u16string&, int) const override {
      throw std::filesystem::filesystem_error("", std::make_error_code(std::errc::permission_denied));
    }
  };
  const std::u16string source = write("a.json", R"({"gain": 1})");
  const lx::services::FileSystem::Replacement broken(std::make_shared<Broken>());
  EXPECT_FALSE(adapter_.open(source));
  EXPECT_EQ(getData(),
            failure(AdapterDiagnostic::NoPermission, u"There is no permission to read it.", source));
  EXPECT_EQ(adapter_.getCurrentChecksum(), u"");
  EXPECT_FALSE(adapter_.hasData());
}

TEST_F(JsonAdapterFailures, TakeNoOtherFileForOneWhoseNameCannotBe) {
  write("a\xEF\xBF\xBD.json", R"({"gain": 1})");  // what a lone surrogate becomes in UTF-8
  const std::u16string loneSurrogate = sourceOf("a") + u'\xD800' + u".json";
  const std::u16string withNul = write("b.json", R"({"gain": 1})") + u'\0' + u".json";
  for (const std::u16string& source : {loneSurrogate, withNul}) {
    EXPECT_FALSE(adapter_.isSourceValid(source));
    EXPECT_FALSE(adapter_.open(source));
    EXPECT_EQ(getData(), failure(AdapterDiagnostic::Inaccessible, u"There is no such file.", source));
    EXPECT_EQ(adapter_.getCurrentChecksum(), u"");
    EXPECT_FALSE(adapter_.hasData());
  }
}

TEST_F(JsonAdapterFailures, NameAFileThatIsTooLarge) {
  const std::u16string source = write("a.json", "{}");
  std::filesystem::resize_file(folder_.path("a.json"), nd::adapters::json::maximumFileSize + 1);
  EXPECT_TRUE(adapter_.open(source));
  EXPECT_EQ(getData(), failure(AdapterDiagnostic::GenericFailure,
                               u"The file is larger than 2048 MiB, the most that is read.", source));
  EXPECT_EQ(sentenceOfGetData(), u"The source \"" + source +
                                     u"\" could not be used. The file is larger than 2048 MiB, the most that "
                                     u"is read.");
}

TEST_F(JsonAdapterFailures, StillGiveAChecksumOfAFileThatIsTooLargeToBeLoaded) {
  adapter_.open(write("a.json", "no JSON"));
  std::filesystem::resize_file(folder_.path("a.json"), nd::adapters::json::maximumFileSize + 1);
  EXPECT_EQ(adapter_.getCurrentChecksum().size(), 32U);
}

TEST_F(JsonAdapterFailures, NameThePlaceInAnIllFormedText) {
  const std::u16string source = write("a.json", "{\n  \"a\": 1,\n  \"b\": 2 \"c\": 3\n}");
  EXPECT_TRUE(adapter_.open(source));
  EXPECT_EQ(
      getData(),
      failure(AdapterDiagnostic::UnrecognizedFormat,
              u"line 3, column 10: expected ',' or '}' behind the member's value, but found '\"'", source));
}

TEST_F(JsonAdapterFailures, NameAnEmptyFile) {
  const std::u16string source = write("a.json", "");
  EXPECT_TRUE(adapter_.open(source));
  EXPECT_EQ(getData(),
            failure(AdapterDiagnostic::UnrecognizedFormat,
                    u"line 1, column 1: expected '{' at the beginning of the object that holds the "
                    u"variables, but found the end of the text",
                    source));
}

TEST_F(JsonAdapterFailures, NameWhatIsNotUtf8InAFile) {
  const std::u16string source = write("a.json", "{\"a\": \"\xE4\"}");
  EXPECT_TRUE(adapter_.open(source));
  EXPECT_EQ(getData(),
            failure(AdapterDiagnostic::UnrecognizedFormat,
                    u"line 1, column 8: expected well-formed UTF-8, but found the byte 0xE4, which is not "
                    u"UTF-8 here",
                    source));
}

TEST_F(JsonAdapterFailures, NameAMemberThatCannotBeAVariable) {
  const std::u16string source = write("a.json", R"({"good": 1, "not good": 2})");
  EXPECT_TRUE(adapter_.open(source));
  EXPECT_EQ(getData(),
            failure(AdapterDiagnostic::UnrecognizedFormat,
                    u"line 1, column 13: expected the name of a variable (a letter, then letters, digits "
                    u"and underscores), but found \"not good\"",
                    source));
}

TEST_F(JsonAdapterFailures, LeaveTheContainerAloneAtEveryTruncation) {
  const std::string text = R"({"a": [[1, 2], [3, 4]], "b": {"c": "d", "e": null}, "f": [true, "x"]})";
  const ContainerState before = state();
  const std::u16string source = write("a.json", text);
  ASSERT_TRUE(adapter_.open(source));
  for (std::size_t size = 0; size < text.size(); ++size) {
    write("a.json", text.substr(0, size));
    EXPECT_EQ(getData().diagnostic, AdapterDiagnostic::UnrecognizedFormat) << size << " bytes";
    EXPECT_EQ(state(), before) << size << " bytes";
  }
}

TEST_F(JsonAdapterFailures, ComeAgainForTheChecksumOfAFileThatCannotBeRead) {
  const std::u16string source = write("a.json", "{");
  adapter_.open(source);
  EXPECT_EQ(getData().diagnostic, AdapterDiagnostic::UnrecognizedFormat);
  EXPECT_EQ(getData(adapter_.getCurrentChecksum()).diagnostic, AdapterDiagnostic::UnrecognizedFormat);
}

TEST_F(JsonAdapterFailures, SayThatNothingIsOpen) {
  EXPECT_EQ(getData(), failure(AdapterDiagnostic::GenericFailure, u"No source is open.", u""));
}

TEST_F(JsonAdapterFailures, SayThatNothingIsOpenAnyMore) {
  adapter_.open(write("a.json", "{}"));
  adapter_.close();
  EXPECT_EQ(getData().diagnostic, AdapterDiagnostic::GenericFailure);
}

TEST_F(JsonAdapterFailures, SayThatWritingIsNotSupported) {
  using nd::data::adapter::AdapterError;
  const std::u16string source = write("a.json", "{}");
  adapter_.open(source);
  AdapterError error = AdapterError::create(model_);
  const auto report = nd::data::adapter::ChangeReport::create(model_);
  EXPECT_FALSE(
      adapter_.writeData(workspace_, nullptr, container_.impl()->getMetaDataCacheMutable(), report, error));
  EXPECT_EQ((ErrorState{error.getId(), error.errorMessage(), error.getAdapterName(), error.getSource()}),
            failure(AdapterDiagnostic::Unsupported, u"JSON files are read only, not written.", source));
  EXPECT_EQ(std::filesystem::file_size(folder_.path("a.json")), 2U);
}
