#include <memory>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <params/ParamsAdapter.h>
#include <tests/TemporaryFolder.h>

#include "platform/services/ForwardingFileSystem.h"

using nd::data::adapter::AdapterDiagnostic;
using nd::data::adapter::AdapterError;
using nd::data::adapter::ChangeReport;
using nd::data::adapter::DataContainer;
using params::ParamsAdapter;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

namespace {

class ParamsAdapterTest : public testing::Test {
 protected:
  bool read() { return adapter.getData(workspace, container.getMetaDataCacheMutable(), u"", error); }

  TemporaryFolder folder;
  lx::base::Model model = lx::base::Model::create();
  DataContainer container = DataContainer::create(model);
  AdapterError error = AdapterError::create(model);
  CPPAdapterV2::Workspace workspace = inCreateWorkspace(10);
  ParamsAdapter adapter;
};

}  // namespace

TEST_F(ParamsAdapterTest, ServesFilesOfItsExtensionUnderItsName) {
  EXPECT_EQ(adapter.getAdapterName(), u"Params");
  EXPECT_EQ(adapter.getSectionName(), u"Params");
  EXPECT_THAT(adapter.getSupportedExtensions(), ElementsAre(u".params"));
}

TEST_F(ParamsAdapterTest, ReadsFilesOfItsExtensionWhateverTheirCaseAndTag) {
  EXPECT_TRUE(adapter.supportsReading(u"/no/such/engine.params"));
  EXPECT_TRUE(adapter.supportsReading(u"engine.PARAMS#tuned"));
  EXPECT_FALSE(adapter.supportsReading(u"engine.json"));
  EXPECT_FALSE(adapter.supportsReading(u"params"));
}

TEST_F(ParamsAdapterTest, WritesNothing) {
  EXPECT_FALSE(adapter.supportsWriting(folder.write("a.params", "a = 1")));
  EXPECT_FALSE(adapter.writeData(workspace, nullptr, container.getMetaDataCacheMutable(),
                                 ChangeReport::create(model), error));
  EXPECT_EQ(error.getId(), AdapterDiagnostic::Unsupported);
}

TEST_F(ParamsAdapterTest, TakesOnlyARegularFileForASource) {
  EXPECT_TRUE(adapter.isSourceValid(folder.write("a.params", "")));
  EXPECT_TRUE(adapter.isSourceValid(folder.source("a.params#tuned")));
  EXPECT_FALSE(adapter.isSourceValid(folder.source("b.params")));
  std::filesystem::create_directory(folder.path() / "c.params");
  EXPECT_FALSE(adapter.isSourceValid(folder.source("c.params")));
}

TEST_F(ParamsAdapterTest, HasDataIfTheOpenFileHoldsAVariable) {
  EXPECT_FALSE(adapter.hasData());
  adapter.open(folder.write("a.params", "a = 1"));
  EXPECT_TRUE(adapter.hasData());
  folder.write("a.params", "# a = 1");
  EXPECT_FALSE(adapter.hasData());
  folder.write("a.params", "a = 1\nb");
  EXPECT_FALSE(adapter.hasData());
  adapter.open(folder.source("b.params"));
  EXPECT_FALSE(adapter.hasData());
}

TEST_F(ParamsAdapterTest, HoldsNothingOfAnOpeningThatIsClosed) {
  EXPECT_FALSE(adapter.close());
  EXPECT_TRUE(adapter.open(folder.write("a.params", "a = 1")));
  EXPECT_TRUE(adapter.close());
  EXPECT_FALSE(adapter.hasData());
  EXPECT_THAT(adapter.getCurrentChecksum(), IsEmpty());
  EXPECT_FALSE(read());
  EXPECT_EQ(error.getId(), AdapterDiagnostic::GenericFailure);
  EXPECT_EQ(error.errorMessage(), u"No source is open.");
}

TEST_F(ParamsAdapterTest, ClonesWithoutTheOpening) {
  adapter.open(folder.write("a.params", "a = 1"));
  const std::unique_ptr<CPPAdapterV2> clone(adapter.clone());
  EXPECT_EQ(clone->getAdapterName(), u"Params");
  EXPECT_FALSE(clone->hasData());
  EXPECT_TRUE(adapter.hasData());
}

TEST_F(ParamsAdapterTest, GivesAChecksumThatFollowsTheContent) {
  adapter.open(folder.write("a.params", "a = 1"));
  const std::u16string first = adapter.getCurrentChecksum();
  EXPECT_THAT(first, Not(IsEmpty()));
  folder.write("a.params", "a = 2");
  EXPECT_NE(adapter.getCurrentChecksum(), first);
  folder.write("a.params", "a = 1");
  EXPECT_EQ(adapter.getCurrentChecksum(), first);
}

TEST_F(ParamsAdapterTest, GivesAFileOfTheSameContentTheSameChecksum) {
  adapter.open(folder.write("a.params", "a = 1"));
  ParamsAdapter other;
  other.open(folder.write("b.params", "a = 1"));
  EXPECT_EQ(adapter.getCurrentChecksum(), other.getCurrentChecksum());
}

TEST_F(ParamsAdapterTest, GivesNoChecksumOfAFileThatIsNotThere) {
  adapter.open(folder.source("a.params"));
  EXPECT_THAT(adapter.getCurrentChecksum(), IsEmpty());
}

TEST_F(ParamsAdapterTest, GivesAChecksumOfAContentThatCanNotBeRead) {
  adapter.open(folder.write("a.params", "a ="));
  EXPECT_THAT(adapter.getCurrentChecksum(), Not(IsEmpty()));
}

TEST_F(ParamsAdapterTest, StatesAMissingPermission) {
  struct Locked : lx::services::ForwardingFileSystem {
    bool access(const std::u16string&, int) const override { return false; }
  };
  const std::u16string source = folder.write("a.params", "a = 1");
  const lx::services::FileSystem::Replacement locked(std::make_shared<Locked>());
  EXPECT_FALSE(adapter.open(source));
  EXPECT_FALSE(read());
  EXPECT_EQ(error.getId(), AdapterDiagnostic::NoPermission);
  EXPECT_EQ(error.errorMessage(), u"There is no permission to read it.");
}

TEST_F(ParamsAdapterTest, ReadsAFileThatIsLargerThanItsBuffer) {
  std::string content;
  for (int i = 0; i < 5000; ++i) content += "a" + std::to_string(i) + " = " + std::to_string(i) + "\n";
  adapter.open(folder.write("a.params", content));
  ASSERT_TRUE(read());
  EXPECT_EQ(inGetNumberOfVariables(workspace), 5000U);
  EXPECT_EQ(hvPreview(inGetValueFromWorkspace("a4999", workspace), 20), "4999");
}

TEST_F(ParamsAdapterTest, LeavesNoArrayBehind) {
  const std::size_t before = hvGetLiveArrayCount();
  adapter.open(folder.write("a.params", "a = 1\nb = [2]\nc = \"x\""));
  ASSERT_TRUE(read());
  EXPECT_EQ(hvGetLiveArrayCount(), before + 3);
  inClearArraysInDesiredWS(workspace);
  EXPECT_EQ(hvGetLiveArrayCount(), before);
}
