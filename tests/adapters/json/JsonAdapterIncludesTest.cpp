#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "adapters/json/Limits.h"
#include "platform/host/ArrayComparison.h"
#include "platform/services/ForwardingFileSystem.h"
#include "tests/adapters/json/IncludesFixture.h"
#include "tests/adapters/json/arrays.h"

using nd::data::adapter::AdapterDiagnostic;

namespace {

using JsonAdapterIncludes = IncludesFixture;

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

TEST_F(JsonAdapterIncludes, OverrideOnceMoreWhereTheyAreNamedAgain) {
  write("one.json", R"({"a": 1, "b": 1})");
  write("two.json", R"({"b": 2})");
  EXPECT_EQ(read(write("a.json", R"({"$include": ["one.json", "two.json", "one.json"]})")), noFailure);
  EXPECT_TRUE(is("a", 1) && is("b", 1));
  EXPECT_EQ(adapter_.getExternalSources(),
            (std::vector<std::u16string>{sourceOf("one.json"), sourceOf("two.json")}));
}

TEST_F(JsonAdapterIncludes, MayBeAsManyInARowAsTheLimitSays) {
  for (int number = 1; number < 64; ++number) {
    write("f" + std::to_string(number) + ".json",
          "{\"$include\": \"f" + std::to_string(number + 1) + ".json\"}");
  }
  write("f64.json", R"({"a": 1})");
  EXPECT_EQ(read(sourceOf("f1.json")), noFailure);
  EXPECT_TRUE(is("a", 1));
}

TEST_F(JsonAdapterIncludes, CountFromTheFolderOfTheFileThatALinkLeadsTo) {
  std::filesystem::create_directories(folder_.path("x"));
  std::filesystem::create_directories(folder_.path("y"));
  write("y/real.json", R"({"$include": "base.json"})");
  write("y/base.json", R"({"a": 1})");
  write("x/base.json", R"({"a": 2})");
  std::filesystem::create_symlink("../y/real.json", folder_.path("x/link.json"));
  std::filesystem::create_symlink("link.json", folder_.path("x/again.json"));
  // Whichever name comes first, it is one file with one meaning.
  for (const char* names :
       {R"(["x/link.json"])", R"(["x/link.json", "y/real.json"])", R"(["y/real.json", "x/again.json"])"}) {
    EXPECT_EQ(read(write("a.json", std::string("{\"$include\": ") + names + "}")), noFailure) << names;
    EXPECT_TRUE(is("a", 1)) << names;
    EXPECT_EQ(adapter_.getExternalSources().size(), 2U) << names;
  }
}

TEST_F(JsonAdapterIncludes, CountAlsoForTheSourceFromTheFolderOfTheFileThatItIsALinkTo) {
  std::filesystem::create_directories(folder_.path("y"));
  write("y/real.json", R"({"$include": "base.json"})");
  write("y/base.json", R"({"a": 1})");
  std::filesystem::create_symlink(folder_.path("y/real.json"), folder_.path("link.json"));
  EXPECT_EQ(read(sourceOf("link.json")), noFailure);
  EXPECT_TRUE(is("a", 1));
}

TEST_F(JsonAdapterIncludes, CountFromTheWorkingFolderForASourceWithoutOne) {
  write("b.json", R"({"a": 1})");
  write("a.json", R"({"$include": "b.json"})");
  const std::filesystem::path former = std::filesystem::current_path();
  std::filesystem::current_path(folder_.path(""));
  EXPECT_EQ(read(u"a.json"), noFailure);
  EXPECT_EQ(adapter_.getExternalSources(), (std::vector<std::u16string>{u"b.json"}));
  std::filesystem::current_path(former);
  EXPECT_TRUE(is("a", 1));
}

TEST_F(JsonAdapterIncludes, ChangeTheChecksumWhenALinkLeadsElsewhere) {
  write("one.json", R"({"a": 1})");
  write("two.json", R"({"a": 2})");
  const auto retarget = [&](const char* target) {
    std::filesystem::remove(folder_.path("link.json"));
    std::filesystem::create_symlink(target, folder_.path("link.json"));
  };
  retarget("one.json");
  adapter_.open(write("a.json", R"({"$include": ["one.json", "two.json", "link.json"]})"));
  EXPECT_EQ(getData(), noFailure);
  EXPECT_TRUE(is("a", 1));
  const std::u16string checksum = adapter_.getCurrentChecksum();
  // The files are the same ones, with the same content, and found in the same order.
  retarget("two.json");
  EXPECT_NE(adapter_.getCurrentChecksum(), checksum);
  EXPECT_EQ(getData(checksum), noFailure);
  EXPECT_TRUE(is("a", 2));
  retarget("one.json");
  EXPECT_EQ(adapter_.getCurrentChecksum(), checksum);
}

TEST_F(JsonAdapterIncludes, MayBeginWithAByteOrderMark) {
  write("b.json", "\xEF\xBB\xBF{\"$include\": \"c.json\", \"a\": 1}");
  write("c.json", "\xEF\xBB\xBF{\"b\": 2}");
  EXPECT_EQ(read(write("a.json", R"({"$include": "b.json"})")), noFailure);
  EXPECT_TRUE(is("a", 1) && is("b", 2));
  EXPECT_EQ(adapter_.getExternalSources().size(), 2U);
}

TEST_F(JsonAdapterIncludes, AreFoundAlsoWhereTheBeginningOfAFileEndsWithinAName) {
  // The beginning that is looked at first has 65536 bytes.
  const std::string name = "\xC3\xA4\xF0\x9F\x98\x80.json";
  write(name, R"({"b": 1})");
  const std::string escaped = R"("\u00e4\ud83d\ude00.json")";
  for (const std::string& spelling : {"\"" + name + "\"", escaped}) {
    for (std::size_t behind = 0; behind <= spelling.size() + 2; ++behind) {
      const std::string begin = R"({"$include": [)";
      const std::string space(65536 - begin.size() - behind, ' ');
      adapter_.open(write("a.json", begin + space + spelling + "]}"));
      EXPECT_EQ(adapter_.getExternalSources(), (std::vector<std::u16string>{sourceOf(name)})) << behind;
      const std::u16string checksum = adapter_.getCurrentChecksum();
      EXPECT_EQ(getData(), noFailure);
      emptyContainer();
      EXPECT_EQ(getData(checksum), noFailure);
      EXPECT_EQ(variable("b"), nullptr) << "the checksum of a read is another one";
    }
  }
}

TEST_F(JsonAdapterIncludes, MayBeAsManyAsTheLimitSays) {
  std::string names;
  for (std::size_t number = 1; number < nd::adapters::json::maximumFileCount; ++number) {
    const std::string name = "f" + std::to_string(number) + ".json";
    write(name, "{\"v" + std::to_string(number) + "\": 1}");
    names += (number == 1 ? "\"" : ", \"") + name + "\"";
  }
  EXPECT_EQ(read(write("a.json", "{\"$include\": [" + names + "]}")), noFailure);
  EXPECT_EQ(state().variables.size(), nd::adapters::json::maximumFileCount - 1);
  const std::u16string source = write("a.json", "{\"$include\": [" + names + ",\n \"f1000.json\"]}");
  write("f1000.json", "{}");
  EXPECT_EQ(read(source), failure(AdapterDiagnostic::GenericFailure,
                                  u"in " + quoted("a.json") +
                                      u", line 2, column 2: expected a file that can be read, but found " +
                                      quoted("f1000.json") +
                                      u". The source has more than 1000 files, the most that are read.",
                                  source));
  EXPECT_EQ(adapter_.getExternalSources().size(), nd::adapters::json::maximumFileCount - 1);
}
