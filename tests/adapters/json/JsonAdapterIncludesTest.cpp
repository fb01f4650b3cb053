#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/host/ArrayComparison.h"
#include "platform/services/ForwardingFileSystem.h"
#include "tests/adapters/json/AdapterFixture.h"
#include "tests/adapters/json/arrays.h"

using nd::data::adapter::AdapterDiagnostic;

namespace {

class JsonAdapterIncludes : public AdapterFixture {
 protected:
  /// Read a source; gives what the error states.
  ErrorState read(const std::u16string& source) {
    adapter_.open(source);
    return getData();
  }

  bool is(const std::string& name, double value) const {
    return hvEqual(variable(name), arrays::scalar(value).get());
  }

  std::u16string quoted(std::string_view name) const { return u"\"" + sourceOf(name) + u"\""; }
};

const ErrorState noFailure;

}  // namespace

TEST_F(JsonAdapterIncludes, AreReadFirstAndOverridden) {
  write("base.json", R"({"a": 1, "b": 2})");
  EXPECT_EQ(read(write("a.json", R"({"$include": "base.json", "b": 3, "c": 4})")), noFailure);
  ASSERT_EQ(state().variables.size(), 3U);
  EXPECT_TRUE(state().variables[0].starts_with("a"));
  EXPECT_TRUE(state().variables[1].starts_with("b"));
  EXPECT_TRUE(is("a", 1) && is("b", 3) && is("c", 4));
}

TEST_F(JsonAdapterIncludes, OverrideOneAnotherInTheirOrder) {
  write("one.json", R"({"a": 1, "b": 1, "c": 1})");
  write("two.json", R"({"b": 2, "c": 2})");
  EXPECT_EQ(read(write("a.json", R"({"$include": ["one.json", "two.json"], "c": 3})")), noFailure);
  EXPECT_TRUE(is("a", 1) && is("b", 2) && is("c", 3));
}

TEST_F(JsonAdapterIncludes, CountFromTheFolderOfTheIncludingFile) {
  std::filesystem::create_directories(folder_.path("sub/deep"));
  write("sub/one.json", R"({"$include": ["deep/two.json", "../three.json"]})");
  write("sub/deep/two.json", R"({"a": 2})");
  write("three.json", R"({"b": 3})");
  EXPECT_EQ(read(write("a.json", R"({"$include": "sub/one.json"})")), noFailure);
  EXPECT_TRUE(is("a", 2) && is("b", 3));
}

TEST_F(JsonAdapterIncludes, MayBeNamedByWholePaths) {
  const std::string path = lx::text::toUtf8(write("base.json", R"({"a": 1})"));
  EXPECT_EQ(read(write("a.json", "{\"$include\": \"" + path + "\"}")), noFailure);
  EXPECT_TRUE(is("a", 1));
}

TEST_F(JsonAdapterIncludes, MayBeNone) {
  EXPECT_EQ(read(write("a.json", R"({"$include": [], "a": 1})")), noFailure);
  EXPECT_TRUE(is("a", 1));
  EXPECT_TRUE(adapter_.getExternalSources().empty());
}

TEST_F(JsonAdapterIncludes, AreReadOnceHoweverOftenTheyAreNamed) {
  // Each file names the next one twice: two to the power of sixty readings, were each of them read anew.
  write("f60.json", R"({"a": 1})");
  for (int number = 59; number >= 1; --number) {
    const std::string next = "\"f" + std::to_string(number + 1) + ".json\"";
    write("f" + std::to_string(number) + ".json", "{\"$include\": [" + next + ", " + next + "]}");
  }
  EXPECT_EQ(read(sourceOf("f1.json")), noFailure);
  EXPECT_TRUE(is("a", 1));
  EXPECT_EQ(adapter_.getExternalSources().size(), 59U);
}

TEST_F(JsonAdapterIncludes, AreTheExternalSources) {
  const std::u16string source = write("a.json", R"({"$include": ["b.json", "missing.json"]})");
  EXPECT_TRUE(adapter_.getExternalSources().empty());
  adapter_.open(source);
  write("b.json", R"({"$include": "c.json"})");
  write("c.json", "not even JSON");
  EXPECT_EQ(adapter_.getExternalSources(),
            (std::vector<std::u16string>{sourceOf("b.json"), sourceOf("c.json"), sourceOf("missing.json")}));
}

TEST_F(JsonAdapterIncludes, AreFoundAlsoBehindTheBeginningOfAFile) {
  write("b.json", R"({"b": 1})");
  const std::string space(100000, ' ');
  EXPECT_EQ(read(write("a.json", "{" + space + "\"$include\": \"b.json\"}")), noFailure);
  EXPECT_TRUE(is("b", 1));
  EXPECT_EQ(adapter_.getExternalSources(), (std::vector<std::u16string>{sourceOf("b.json")}));
}

TEST_F(JsonAdapterIncludes, CountInTheChecksum) {
  write("b.json", R"({"$include": "c.json"})");
  write("c.json", R"({"a": 1})");
  adapter_.open(write("a.json", R"({"$include": "b.json"})"));
  const std::u16string first = adapter_.getCurrentChecksum();
  EXPECT_EQ(first.size(), 32U);
  EXPECT_EQ(adapter_.getCurrentChecksum(), first);
  write("c.json", R"({"a": 2})");
  const std::u16string second = adapter_.getCurrentChecksum();
  EXPECT_NE(second, first);
  std::filesystem::remove(folder_.path("c.json"));
  EXPECT_NE(adapter_.getCurrentChecksum(), first);
  EXPECT_NE(adapter_.getCurrentChecksum(), second);
  write("c.json", R"({"a": 1})");
  EXPECT_EQ(adapter_.getCurrentChecksum(), first);
}

TEST_F(JsonAdapterIncludes, AreReadAgainOnlyIfOneOfThemChanged) {
  write("b.json", R"({"a": 1})");
  adapter_.open(write("a.json", R"({"$include": "b.json"})"));
  EXPECT_EQ(getData(), noFailure);
  fillContainer();
  const std::u16string checksum = adapter_.getCurrentChecksum();
  EXPECT_EQ(getData(checksum), noFailure);
  EXPECT_NE(variable("former"), nullptr);
  write("b.json", R"({"a": 2})");
  EXPECT_EQ(getData(checksum), noFailure);
  EXPECT_EQ(variable("former"), nullptr);
  EXPECT_TRUE(is("a", 2));
}

TEST_F(JsonAdapterIncludes, AreAnErrorWithTheChainIfTheyFormACircle) {
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

TEST_F(JsonAdapterIncludes, AreAnErrorForAFileThatIncludesItselfByAnotherName) {
  const std::u16string source = write("a.json", R"({"$include": "link.json"})");
  std::filesystem::create_symlink(folder_.path("a.json"), folder_.path("link.json"));
  EXPECT_EQ(
      read(source),
      failure(AdapterDiagnostic::UnrecognizedFormat,
              u"line 1, column 14: expected files that don't include one another in a circle, but found " +
                  quoted("a.json") + u" → " + quoted("a.json"),
              source));
}

TEST_F(JsonAdapterIncludes, AreAnErrorThatNamesBothFilesIfOneIsMissing) {
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

TEST_F(JsonAdapterIncludes, AreAnErrorIfTheHostForbidsToReadOne) {
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

TEST_F(JsonAdapterIncludes, TakeNoOtherFileForOneWhoseNameHoldsANul) {
  write("b.json", "{}");
  const std::u16string source = write("a.json", R"({"$include": "b.json\u0000x"})");
  const ErrorState error = read(source);
  EXPECT_EQ(error.diagnostic, AdapterDiagnostic::Inaccessible);
  EXPECT_TRUE(error.message.ends_with(u"There is no such file.")) << lx::text::toUtf8(error.message);
}

TEST_F(JsonAdapterIncludes, AreAnErrorIfOneIsAFolder) {
  std::filesystem::create_directory(folder_.path("sub"));
  const std::u16string source = write("a.json", R"({"$include": "sub"})");
  EXPECT_EQ(read(source), failure(AdapterDiagnostic::Inaccessible,
                                  u"in " + quoted("a.json") +
                                      u", line 1, column 14: expected a file that can be read, but found " +
                                      quoted("sub") + u". It is a folder and not a file.",
                                  source));
}

TEST_F(JsonAdapterIncludes, AreAnErrorWithFileAndPlaceIfOneIsIllFormed) {
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

TEST_F(JsonAdapterIncludes, AreAnErrorBeyondTheLimit) {
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

TEST_F(JsonAdapterIncludes, AreNamedByStringsOnly) {
  const std::u16string source = write("a.json", R"({"$include": 1})");
  EXPECT_EQ(read(source).message,
            u"line 1, column 14: expected the name of a file, or an array of names, in double quotes, but "
            u"found '1'");
  write("a.json", R"({"$include": ["b.json", null]})");
  write("b.json", "{}");
  EXPECT_EQ(read(source).message,
            u"line 1, column 25: expected the name of a file in double quotes, but found 'null'");
}
