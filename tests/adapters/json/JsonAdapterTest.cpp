#include <filesystem>
#include <memory>
#include <string>
#include <system_error>
#include <vector>

#include <gtest/gtest.h>

#include "adapters/json/JsonAdapter.h"
#include "platform/host/ArrayComparison.h"
#include "tests/adapters/json/AdapterFixture.h"
#include "tests/adapters/json/arrays.h"

using nd::adapters::json::JsonAdapter;

namespace {

using JsonAdapterTest = AdapterFixture;

const ErrorState noFailure;

}  // namespace

TEST_F(JsonAdapterTest, SaysWhatItIs) {
  EXPECT_EQ(adapter_.getAdapterName(), u"JSON");
  EXPECT_EQ(adapter_.getSectionName(), u"JSON");
  EXPECT_EQ(adapter_.getSupportedExtensions(), (std::vector<std::u16string>{u".json"}));
  EXPECT_EQ(adapter_.getType(), nd::data::adapter::AdapterType::CPPAdapter);
  EXPECT_TRUE(adapter_.isReady());
  EXPECT_FALSE(adapter_.hasVariants());
  EXPECT_TRUE(adapter_.getVariantControls().empty());
  EXPECT_TRUE(adapter_.getExternalSources().empty());
}

TEST_F(JsonAdapterTest, ReadsButDoesNotWriteSourcesWithItsExtension) {
  for (const char16_t* source :
       {u"a.json", u"/b/c.JSON", u"a.json#TAG", u"a.json#TAG&VALUESRC", u"a.b.json"}) {
    EXPECT_TRUE(adapter_.supportsReading(source)) << lx::text::toUtf8(source);
    EXPECT_FALSE(adapter_.supportsWriting(source)) << lx::text::toUtf8(source);
  }
  for (const char16_t* source :
       {u"", u"json", u".json", u"a.jso", u"a.json.txt", u"a.json/", u"a.json&VALUESRC"}) {
    EXPECT_FALSE(adapter_.supportsReading(source)) << lx::text::toUtf8(source);
  }
}

TEST_F(JsonAdapterTest, HoldsAnExistingFileForAValidSource) {
  const std::u16string source = write("a.json", "not even JSON");
  EXPECT_TRUE(adapter_.isSourceValid(source));
  EXPECT_TRUE(adapter_.isSourceValid(source + u"#TAG"));
  EXPECT_TRUE(adapter_.isSourceValid(source + u"#TAG&VALUESRC"));
  EXPECT_FALSE(adapter_.isSourceValid(source + u"&VALUESRC"));
  EXPECT_FALSE(adapter_.isSourceValid(sourceOf("b.json")));
  EXPECT_FALSE(adapter_.isSourceValid(sourceOf("")));
  EXPECT_FALSE(adapter_.isSourceValid(u""));
}

TEST_F(JsonAdapterTest, AssignsTheMembersInTheirOrder) {
  ASSERT_TRUE(adapter_.open(write("a.json", R"({"gain": 2.5, "table": [[1, 2], [3, 4]], "unit": "V"})")));
  EXPECT_EQ(getData(), noFailure);
  const ContainerState after = state();
  ASSERT_EQ(after.variables.size(), 3U);
  EXPECT_TRUE(after.variables[0].starts_with("gain"));
  EXPECT_TRUE(after.variables[1].starts_with("table"));
  EXPECT_TRUE(after.variables[2].starts_with("unit"));
  EXPECT_TRUE(hvEqual(variable("gain"), arrays::scalar(2.5).get()));
  EXPECT_TRUE(hvEqual(variable("table"), arrays::doubles({2, 2}, {1, 3, 2, 4}).get()));
  EXPECT_TRUE(hvEqual(variable("unit"), arrays::row(u"V").get()));
}

TEST_F(JsonAdapterTest, ReplacesAllVariablesAndMetadata) {
  fillContainer();
  ASSERT_EQ(state().metaData, (std::vector<std::u16string>{u"a", u"former"}));
  adapter_.open(write("a.json", R"({"gain": 1})"));
  EXPECT_EQ(getData(), noFailure);
  EXPECT_EQ(variable("former"), nullptr);
  EXPECT_NE(variable("gain"), nullptr);
  EXPECT_TRUE(state().metaData.empty());
}

TEST_F(JsonAdapterTest, EmptiesTheContainerForAFileWithoutVariables) {
  fillContainer();
  adapter_.open(write("a.json", "{}"));
  EXPECT_EQ(getData(), noFailure);
  EXPECT_EQ(state(), ContainerState{});
}

TEST_F(JsonAdapterTest, ReadsASourceWithATag) {
  const std::u16string source = write("a.json", R"({"gain": 1})");
  for (const char16_t* tag : {u"#TAG", u"#TAG&VALUESRC", u"#A#B"}) {
    EXPECT_TRUE(adapter_.open(source + tag)) << lx::text::toUtf8(tag);
    EXPECT_EQ(getData(), noFailure);
    EXPECT_NE(variable("gain"), nullptr);
    inClearArraysInDesiredWS(workspace_);
  }
}

TEST_F(JsonAdapterTest, ReadsAFileWithANameBeyondAscii) {
  EXPECT_TRUE(
      adapter_.open(write("gr\xC3\xB6\xC3\x9F"
                          "e.json",
                          R"({"gain": 1})")));
  EXPECT_EQ(getData(), noFailure);
  EXPECT_NE(variable("gain"), nullptr);
}

TEST_F(JsonAdapterTest, BearsAnEmptyPointerForTheWorkspace) {
  workspace_.reset();
  adapter_.open(write("a.json", R"({"gain": [1, 2, 3]})"));
  EXPECT_EQ(getData(), noFailure);
}

TEST_F(JsonAdapterTest, ReadsTheFileAnewAtEachCall) {
  const std::u16string source = write("a.json", R"({"gain": 1})");
  adapter_.open(source);
  EXPECT_EQ(getData(), noFailure);
  write("a.json", R"({"gain": 2})");
  EXPECT_EQ(getData(), noFailure);
  EXPECT_TRUE(hvEqual(variable("gain"), arrays::scalar(2).get()));
}

TEST_F(JsonAdapterTest, ReadsAFileThatIsMadeAfterItsOpening) {
  EXPECT_FALSE(adapter_.open(sourceOf("a.json")));
  write("a.json", R"({"gain": 1})");
  EXPECT_EQ(getData(), noFailure);
  EXPECT_NE(variable("gain"), nullptr);
}

TEST_F(JsonAdapterTest, BindsAnewWhenItIsOpenedAgain) {
  adapter_.open(write("a.json", R"({"first": 1})"));
  EXPECT_EQ(getData(), noFailure);
  adapter_.open(write("b.json", R"({"second": 1})"));
  EXPECT_EQ(getData(), noFailure);
  EXPECT_EQ(variable("first"), nullptr);
  EXPECT_NE(variable("second"), nullptr);
}

TEST_F(JsonAdapterTest, HoldsNoFileOpenBetweenTheCalls) {
  adapter_.open(write("a.json", R"({"gain": 1})"));
  EXPECT_EQ(getData(), noFailure);
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    std::error_code ignored;
    EXPECT_NE(std::filesystem::read_symlink(entry.path(), ignored), folder_.path("a.json"));
  }
}

TEST_F(JsonAdapterTest, GivesAChecksumThatFollowsTheContent) {
  adapter_.open(write("a.json", R"({"gain": 1})"));
  const std::u16string first = adapter_.getCurrentChecksum();
  EXPECT_EQ(first.size(), 32U);
  EXPECT_EQ(first.find_first_not_of(u"0123456789abcdef"), std::u16string::npos);
  EXPECT_EQ(adapter_.getCurrentChecksum(), first);
  write("a.json", R"({"gain": 2})");
  const std::u16string second = adapter_.getCurrentChecksum();
  EXPECT_NE(second, first);
  write("a.json", R"({"gain": 1})");
  EXPECT_EQ(adapter_.getCurrentChecksum(), first);
}

TEST_F(JsonAdapterTest, GivesNoChecksumOfWhatItCannotRead) {
  EXPECT_EQ(adapter_.getCurrentChecksum(), u"");
  adapter_.open(sourceOf("a.json"));
  EXPECT_EQ(adapter_.getCurrentChecksum(), u"");
  adapter_.open(sourceOf(""));
  EXPECT_EQ(adapter_.getCurrentChecksum(), u"");
}

TEST_F(JsonAdapterTest, LeavesTheContainerAsItIsIfItHasReadThatContentIntoIt) {
  adapter_.open(write("a.json", R"({"gain": 1})"));
  EXPECT_EQ(getData(), noFailure);
  fillContainer();
  const ContainerState before = state();
  EXPECT_EQ(getData(adapter_.getCurrentChecksum()), noFailure);
  EXPECT_EQ(state(), before);
}

TEST_F(JsonAdapterTest, ReadsDespiteTheChecksumWhatItHasNotReadBefore) {
  adapter_.open(write("a.json", R"({"gain": 1})"));
  EXPECT_EQ(getData(adapter_.getCurrentChecksum()), noFailure);
  EXPECT_NE(variable("gain"), nullptr);
}

TEST_F(JsonAdapterTest, ReadsDespiteTheChecksumIntoAnotherWorkspace) {
  adapter_.open(write("a.json", R"({"gain": 1})"));
  EXPECT_EQ(getData(), noFailure);
  workspace_ = inCreateWorkspace(10);
  EXPECT_EQ(getData(adapter_.getCurrentChecksum()), noFailure);
  EXPECT_NE(variable("gain"), nullptr);
}

TEST_F(JsonAdapterTest, ReadsDespiteTheChecksumIntoOtherMetadata) {
  adapter_.open(write("a.json", R"({"gain": 1, "$meta": {"gain": {"unit": "V"}}})"));
  EXPECT_EQ(getData(), noFailure);
  container_.impl()->getMetaDataCacheMutable().clear();
  container_.destroyContainer();
  container_ = nd::data::adapter::DataContainer::create(model_);
  container_.setDataCache(workspace_);
  EXPECT_EQ(getData(adapter_.getCurrentChecksum()), noFailure);
  EXPECT_EQ(state().metaData, (std::vector<std::u16string>{u"gain"}));
}

TEST_F(JsonAdapterTest, ReadsAgainIfTheClientHasSeenAnotherChecksum) {
  adapter_.open(write("a.json", R"({"gain": 1})"));
  EXPECT_EQ(getData(), noFailure);
  fillContainer();
  EXPECT_EQ(getData(u"another"), noFailure);
  EXPECT_EQ(variable("former"), nullptr);
}

TEST_F(JsonAdapterTest, ReadsAgainIfTheContentIsAnotherOne) {
  adapter_.open(write("a.json", R"({"gain": 1})"));
  EXPECT_EQ(getData(), noFailure);
  const std::u16string checksum = adapter_.getCurrentChecksum();
  write("a.json", R"({"gain": 2})");
  EXPECT_EQ(getData(checksum), noFailure);
  EXPECT_TRUE(hvEqual(variable("gain"), arrays::scalar(2).get()));
}

TEST_F(JsonAdapterTest, TellsWhetherThereAreVariables) {
  EXPECT_FALSE(adapter_.hasData());
  adapter_.open(write("a.json", R"({"gain": 1})"));
  EXPECT_TRUE(adapter_.hasData());
  write("a.json", "{}");
  EXPECT_FALSE(adapter_.hasData());
  write("a.json", "{");
  EXPECT_FALSE(adapter_.hasData());
  std::filesystem::remove(folder_.path("a.json"));
  EXPECT_FALSE(adapter_.hasData());
}

TEST_F(JsonAdapterTest, ClosesOnce) {
  EXPECT_FALSE(adapter_.close());
  adapter_.open(write("a.json", "{}"));
  EXPECT_TRUE(adapter_.close());
  EXPECT_FALSE(adapter_.close());
  EXPECT_EQ(adapter_.getCurrentChecksum(), u"");
}

TEST_F(JsonAdapterTest, MakesClonesThatHaveNothingOpen) {
  adapter_.open(write("a.json", R"({"gain": 1})"));
  const std::unique_ptr<CPPAdapterV2> clone(adapter_.clone());
  EXPECT_EQ(clone->getAdapterName(), u"JSON");
  EXPECT_EQ(clone->getCurrentChecksum(), u"");
  EXPECT_FALSE(clone->hasData());
  EXPECT_FALSE(clone->close());
}
