#include <cstddef>
#include <new>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/host/ArrayComparison.h"
#include "tests/adapters/json/AdapterFixture.h"
#include "tests/adapters/json/arrays.h"
#include "tests/support/AllocationFault.h"

using nd::data::adapter::AdapterDiagnostic;

namespace {

class JsonAdapterMetaData : public AdapterFixture {
 protected:
  ErrorState read(std::string_view content) {
    adapter_.open(write("a.json", content));
    return getData();
  }
};

const ErrorState noFailure;

}  // namespace

TEST_F(JsonAdapterMetaData, ReachesTheCacheUnderTheVariablesName) {
  EXPECT_EQ(read(R"({"gain": 2, "table": [1, 2],
                     "$meta": {"gain": {"unit": "V/s", "description": "of the loop", "limits": [0, 10]},
                               "table": {}}})"),
            noFailure);
  EXPECT_EQ(state().variables.size(), 2U);
  EXPECT_EQ(state().metaData, (std::vector<std::u16string>{u"gain", u"table"}));
  EXPECT_TRUE(hvEqual(entry(u"gain", "unit"), arrays::row(u"V/s").get()));
  EXPECT_TRUE(hvEqual(entry(u"gain", "description"), arrays::row(u"of the loop").get()));
  EXPECT_TRUE(hvEqual(entry(u"gain", "limits"), arrays::doubles({1, 2}, {0, 10}).get()));
  EXPECT_EQ(entry(u"table", "unit"), nullptr);
}

TEST_F(JsonAdapterMetaData, MayStandAheadOfTheVariables) {
  EXPECT_EQ(read(R"({"$meta": {"gain": {"unit": "V"}}, "gain": 2})"), noFailure);
  EXPECT_TRUE(hvEqual(entry(u"gain", "unit"), arrays::row(u"V").get()));
}

TEST_F(JsonAdapterMetaData, IsReplacedWhollyByTheNextRead) {
  fillContainer();
  EXPECT_EQ(read(R"({"gain": 2, "$meta": {"gain": {"unit": "V"}}})"), noFailure);
  EXPECT_EQ(state().metaData, (std::vector<std::u16string>{u"gain"}));
  EXPECT_EQ(read(R"({"gain": 2})"), noFailure);
  EXPECT_TRUE(state().metaData.empty());
}

TEST_F(JsonAdapterMetaData, OfIncludedFilesIsOverriddenEntryByEntry) {
  write("base.json",
        R"({"a": 1, "b": 1, "$meta": {"a": {"unit": "V", "description": "old"}, "b": {"unit": "A"}}})");
  EXPECT_EQ(read(R"({"$include": "base.json", "a": 2, "$meta": {"a": {"description": "new"}}})"), noFailure);
  EXPECT_TRUE(hvEqual(entry(u"a", "unit"), arrays::row(u"V").get()));
  EXPECT_TRUE(hvEqual(entry(u"a", "description"), arrays::row(u"new").get()));
  EXPECT_TRUE(hvEqual(entry(u"b", "unit"), arrays::row(u"A").get()));
}

TEST_F(JsonAdapterMetaData, StaysWithAVariableThatIsOverridden) {
  write("base.json", R"({"a": 1, "$meta": {"a": {"unit": "V"}}})");
  EXPECT_EQ(read(R"({"$include": "base.json", "a": "text"})"), noFailure);
  EXPECT_TRUE(hvEqual(variable("a"), arrays::row(u"text").get()));
  EXPECT_TRUE(hvEqual(entry(u"a", "unit"), arrays::row(u"V").get()));
}

TEST_F(JsonAdapterMetaData, MayBeAboutAVariableOfAnIncludedFile) {
  write("base.json", R"({"a": 1})");
  EXPECT_EQ(read(R"({"$include": "base.json", "$meta": {"a": {"unit": "V"}}})"), noFailure);
  EXPECT_TRUE(hvEqual(entry(u"a", "unit"), arrays::row(u"V").get()));
}

TEST_F(JsonAdapterMetaData, IsAnErrorInAnIncludedFileForAVariableOfTheIncludingOneOnly) {
  const std::u16string base = write("base.json", "{\"b\": 1,\n \"$meta\": {\"a\": {\"unit\": \"V\"}}}");
  const std::u16string source = write("a.json", R"({"$include": "base.json", "a": 1})");
  adapter_.open(source);
  EXPECT_EQ(
      getData(),
      failure(AdapterDiagnostic::UnrecognizedFormat,
              u"in the included file \"" + base +
                  u"\", line 2, column 12: expected the name of a variable of the source, perhaps \"b\", "
                  u"but found \"a\"",
              source));
}

TEST_F(JsonAdapterMetaData, IsAnErrorForANameThatBeginsWithADollarSign) {
  EXPECT_EQ(read(R"({"gain": 1, "$meta": {"$gain": {"unit": "V"}}})").message,
            u"line 1, column 23: expected the name of a variable, perhaps \"gain\", but found \"$gain\"");
  write("base.json", R"({"gain": 1})");
  EXPECT_EQ(read(R"({"$include": "base.json", "speed": 1, "$meta": {"$gain": {"unit": "V"}}})").message,
            u"line 1, column 49: expected the name of a variable of the source, perhaps \"gain\", but found "
            u"\"$gain\"");
}

TEST_F(JsonAdapterMetaData, IsAnErrorForWhatIsNoVariable) {
  EXPECT_EQ(read(R"({"gain": 2, "$meta": {"gian": {"unit": "V"}}})").message,
            u"line 1, column 23: expected the name of a variable of the source, perhaps \"gain\", but found "
            u"\"gian\"");
  EXPECT_EQ(
      read(R"({"$meta": {"gain": {"unit": "V"}}})").message,
      u"line 1, column 12: expected no metadata in a source without variables, but found that of \"gain\"");
  EXPECT_TRUE(state().metaData.empty());
}

TEST_F(JsonAdapterMetaData, IsAnErrorInAnotherForm) {
  EXPECT_EQ(
      read(R"({"$meta": 1})").message,
      u"line 1, column 11: expected '{' at the beginning of the object with the metadata of the variables, "
      u"but found '1'");
  EXPECT_EQ(
      read(R"({"$meta": {"a": 1}})").message,
      u"line 1, column 17: expected '{' at the beginning of the object with the metadata of a variable, but "
      u"found '1'");
  EXPECT_EQ(read(R"({"a": 1, "$meta": {"a": {"unit": 1}}})").message,
            u"line 1, column 34: expected a string for \"unit\", but found '1'");
  EXPECT_EQ(read(R"({"a": 1, "$meta": {"a": {"$unit": "V"}}})").message,
            u"line 1, column 26: expected a member such as \"unit\", but found \"$unit\"");
}

TEST_F(JsonAdapterMetaData, IsAsItWasWhenAnAllocationFails) {
  fillContainer();
  const ContainerState before = state();
  write("base.json", R"({"b": 1, "$meta": {"b": {"unit": "A"}}})");
  adapter_.open(write(
      "a.json",
      R"({"$include": "base.json", "a": 1, "b": 2, "$meta": {"a": {"unit": "V"}, "b": {"x": {"y": [1, "z"]}}}})"));
  auto& metaData = container_.impl()->getMetaDataCacheMutable();
  nd::data::adapter::AdapterError error = nd::data::adapter::AdapterError::create(model_);
  std::size_t failures = 0;
  for (std::size_t number = 1;; ++number) {
    const std::size_t arrays = hvGetLiveArrayCount();
    bool isShort = false;
    bool hasFailed = false;
    {
      const AllocationFault fault(number);
      try {
        adapter_.getData(workspace_, metaData, u"", error);
      } catch (const std::bad_alloc&) {
        isShort = true;
      }
      hasFailed = fault.hasOccurred();
    }
    if (isShort) {
      ++failures;
      ASSERT_EQ(state(), before) << "allocation " << number;
      ASSERT_EQ(hvGetLiveArrayCount(), arrays) << "allocation " << number;
    } else if (hasFailed) {
      emptyContainer();
      fillContainer();
    } else {
      break;
    }
  }
  EXPECT_GT(failures, 30U);
  EXPECT_EQ(state().metaData, (std::vector<std::u16string>{u"a", u"b"}));
}
