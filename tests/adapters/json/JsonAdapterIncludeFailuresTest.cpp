#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "adapters/json/Limits.h"
#include "platform/services/ForwardingFileSystem.h"
#include "tests/adapters/json/IncludesFixture.h"

using nd::data::adapter::AdapterDiagnostic;

namespace {

using JsonAdapterIncludeFailures = IncludesFixture;

const ErrorState noFailure;

}  // namespace

TEST_F(JsonAdapterIncludeFailures, AreAnErrorWithTheChainIfTheyFormACircle) {
  const std::u16string source = write("a.json", "{\n\"$include\": \"b.json\"}");
  write("b.json", "{\"$include\":\n [\"c.json\"]}");
  write("c.json", R"({"$include": "./a.json"})");
  EXPECT_EQ(
      read(source),
      failure(
          AdapterDiagnostic::UnrecognizedFormat,
          u"in the included file " + quoted("c.json") +
              u", line 1, column 14: expected files that don't include one another in a circle, but found " +
              quoted("a.json") + u" → " + quoted("b.json") + u" → " + quoted("c.json") + u" → " +
              quoted("a.json"),
          source));
  EXPECT_EQ(adapter_.getCurrentChecksum().size(), 32U);
}

TEST_F(JsonAdapterIncludeFailures, AreAnErrorForAFileThatIncludesItselfByAnotherName) {
  const std::u16string source = write("a.json", R"({"$include": "link.json"})");
  std::filesystem::create_symlink(folder_.path("a.json"), folder_.path("link.json"));
  EXPECT_EQ(
      read(source),
      failure(AdapterDiagnostic::UnrecognizedFormat,
              u"line 1, column 14: expected files that don't include one another in a circle, but found " +
                  quoted("a.json") + u" → " + quoted("a.json"),
              source));
}

TEST_F(JsonAdapterIncludeFailures, AreAnErrorThatNamesBothFilesIfOneIsMissing) {
  fillContainer();
  const ContainerState before = state();
  const std::u16string source = write("a.json", R"({"$include": "b.json"})");
  EXPECT_EQ(read(source), failure(AdapterDiagnostic::Inaccessible,
                                  u"in " + quoted("a.json") +
                                      u", line 1, column 14: expected a file that can be read, but found " +
                                      quoted("b.json") + u". There is no such file.",
                                  source));
  write("b.json", "{\"$include\":\n\"c.json\"}");
  EXPECT_EQ(read(source), failure(AdapterDiagnostic::Inaccessible,
                                  u"in " + quoted("b.json") +
                                      u", line 2, column 1: expected a file that can be read, but found " +
                                      quoted("c.json") + u". There is no such file.",
                                  source));
  EXPECT_EQ(state(), before);
}

TEST_F(JsonAdapterIncludeFailures, AreAnErrorIfTheHostForbidsToReadOne) {
  struct Forbidding : lx::services::ForwardingFileSystem {
    bool access(const std::u16string& path, int mode) const override {
      return !path.ends_with(u"b.json") && ForwardingFileSystem::access(path, mode);
    }
  };
  write("b.json", "{}");
  const std::u16string source = write("a.json", R"({"$include": "b.json"})");
  const lx::services::FileSystem::Replacement forbidding(std::make_shared<Forbidding>());
  EXPECT_EQ(read(source), failure(AdapterDiagnostic::NoPermission,
                                  u"in " + quoted("a.json") +
                                      u", line 1, column 14: expected a file that can be read, but found " +
                                      quoted("b.json") + u". There is no permission to read it.",
                                  source));
}

TEST_F(JsonAdapterIncludeFailures, TakeNoOtherFileForOneWhoseNameHoldsANul) {
  write("b.json", "{}");
  const std::u16string source = write("a.json", R"({"$include": "b.json\u0000x"})");
  const ErrorState error = read(source);
  EXPECT_EQ(error.diagnostic, AdapterDiagnostic::Inaccessible);
  EXPECT_TRUE(error.message.ends_with(u"There is no such file.")) << lx::text::toUtf8(error.message);
}

TEST_F(JsonAdapterIncludeFailures, AreAnErrorIfOneIsAFolder) {
  std::filesystem::create_directory(folder_.path("sub"));
  const std::u16string source = write("a.json", R"({"$include": "sub"})");
  EXPECT_EQ(read(source), failure(AdapterDiagnostic::Inaccessible,
                                  u"in " + quoted("a.json") +
                                      u", line 1, column 14: expected a file that can be read, but found " +
                                      quoted("sub") + u". It is a folder and not a file.",
                                  source));
}

TEST_F(JsonAdapterIncludeFailures, AreAnErrorWithFileAndPlaceIfOneIsIllFormed) {
  fillContainer();
  const ContainerState before = state();
  const std::u16string source = write("a.json", R"({"$include": "b.json", "a": 1})");
  write("b.json", "{\"b\": 1,\n \"c\" 2}");
  EXPECT_EQ(read(source),
            failure(AdapterDiagnostic::UnrecognizedFormat,
                    u"in the included file " + quoted("b.json") +
                        u", line 2, column 6: expected ':' behind the member's name, but found '2'",
                    source));
  EXPECT_EQ(state(), before);
}

TEST_F(JsonAdapterIncludeFailures, AreAnErrorBeyondTheLimit) {
  for (int number = 1; number <= 65; ++number) {
    write("f" + std::to_string(number) + ".json",
          "{\"$include\": \"f" + std::to_string(number + 1) + ".json\"}");
  }
  write("f66.json", "{}");
  const ErrorState error = read(sourceOf("f1.json"));
  EXPECT_EQ(error.diagnostic, AdapterDiagnostic::UnrecognizedFormat);
  EXPECT_EQ(error.message,
            u"in the included file " + quoted("f64.json") +
                u", line 1, column 14: expected at most 64 files that include one another in a "
                u"row, but found " +
                quoted("f65.json") + u" behind them");
}

TEST_F(JsonAdapterIncludeFailures, AreNamedByStringsOnly) {
  const std::u16string source = write("a.json", R"({"$include": 1})");
  EXPECT_EQ(read(source).message,
            u"line 1, column 14: expected the name of a file, or an array of names, in double quotes, but "
            u"found '1'");
  write("a.json", R"({"$include": ["b.json", null]})");
  write("b.json", "{}");
  EXPECT_EQ(read(source).message,
            u"line 1, column 25: expected the name of a file in double quotes, but found 'null'");
}

TEST_F(JsonAdapterIncludeFailures, AreAnErrorIfTheFilesAreTooLargeTogether) {
  const std::u16string source = write("a.json", R"({"$include": "b.json"})");
  write("b.json", "{}");
  std::filesystem::resize_file(folder_.path("b.json"), nd::adapters::json::maximumFileSize);
  EXPECT_EQ(
      read(source),
      failure(AdapterDiagnostic::GenericFailure,
              u"in " + quoted("a.json") +
                  u", line 1, column 14: expected a file that can be read, but found " + quoted("b.json") +
                  u". The files of the source have more than 2048 MiB together, the most that is read.",
              source));
}

TEST_F(JsonAdapterIncludeFailures, NameTheFirstOfTwoThatAreMissing) {
  const std::u16string source = write("a.json", R"({"$include": ["b.json", "c.json"]})");
  EXPECT_EQ(read(source), failure(AdapterDiagnostic::Inaccessible,
                                  missing("a.json", u"line 1, column 15", "b.json"), source));
}

TEST_F(JsonAdapterIncludeFailures, ComeAlsoForTheChecksumOfAGoodReadIfOneGoesOrBreaksAfterwards) {
  write("b.json", R"({"a": 1})");
  const std::u16string source = write("a.json", R"({"$include": "b.json"})");
  EXPECT_EQ(read(source), noFailure);
  const ContainerState before = state();
  const std::u16string good = adapter_.getCurrentChecksum();
  std::filesystem::remove(folder_.path("b.json"));
  for (const std::u16string& checksum : {good, adapter_.getCurrentChecksum()}) {
    EXPECT_EQ(getData(checksum), failure(AdapterDiagnostic::Inaccessible,
                                         missing("a.json", u"line 1, column 14", "b.json"), source));
  }
  write("b.json", "{\"a\" 1}");
  for (const std::u16string& checksum : {good, adapter_.getCurrentChecksum()}) {
    EXPECT_EQ(getData(checksum),
              failure(AdapterDiagnostic::UnrecognizedFormat,
                      u"in the included file " + quoted("b.json") +
                          u", line 1, column 6: expected ':' behind the member's name, but found '1'",
                      source));
  }
  EXPECT_EQ(state(), before);
  write("b.json", R"({"a": 1})");
  EXPECT_EQ(getData(good), noFailure);
}

TEST_F(JsonAdapterIncludeFailures, LeaveTheQuestionsAnswered) {
  adapter_.open(write("a.json", R"({"$include": ["b.json", "missing.json"], "a": 1})"));
  write("b.json", R"({"$include": "a.json"})");
  EXPECT_FALSE(adapter_.hasData());
  EXPECT_EQ(adapter_.getExternalSources(),
            (std::vector<std::u16string>{sourceOf("b.json"), sourceOf("missing.json")}));
  EXPECT_EQ(adapter_.getCurrentChecksum().size(), 32U);
  write("b.json", "{}");
  EXPECT_FALSE(adapter_.hasData());
  write("missing.json", "{}");
  EXPECT_TRUE(adapter_.hasData());
}

TEST_F(JsonAdapterIncludeFailures, CountColumnsBehindTheByteOrderMark) {
  write("b.json", "\xEF\xBB\xBF{\"a\" 1}");
  EXPECT_EQ(read(write("a.json", R"({"$include": "b.json"})")).message,
            u"in the included file " + quoted("b.json") +
                u", line 1, column 6: expected ':' behind the member's name, but found '1'");
}
