#include <string>

#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <tests/TemporaryFolder.h>

#include "nd_data_adapter/nd_data_adapter.h"

using nd::data::adapter::AdapterDiagnostic;
using nd::data::adapter::AdapterError;
using nd::data::adapter::AdapterManagerV2;
using nd::data::adapter::DataContainer;
using nd::data::adapter::MetaDataEntry;
using testing::Contains;
using testing::IsEmpty;

namespace {

/// The module as a program sees it that loads it at run time. It stays loaded, for the registry holds its
/// adapter.
class ModuleTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    void* const module = ::dlopen(EXAMPLE_MODULE, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(module, nullptr) << ::dlerror();
    registerAdapters = reinterpret_cast<bool (*)()>(::dlsym(module, "nd_register_adapters"));
    ASSERT_NE(registerAdapters, nullptr) << ::dlerror();
    if (!AdapterManagerV2::isExtensionRegistered(u".params")) {
      ASSERT_TRUE(registerAdapters());
    }
  }

  ModuleTest() { container.setDataCache(inCreateWorkspace(10)); }
  ~ModuleTest() override {
    for (const std::u16string& qualifier : AdapterManagerV2::getAllOpenedAdapterNamesWithSection()) {
      AdapterManagerV2::closeAdapterbyNamesWithSection(qualifier);
    }
  }

  static bool open(const std::u16string& source) {
    return AdapterManagerV2::openSource(source, u"Params", {});
  }

  AdapterError read(const std::u16string& source, const std::u16string& prevChecksum = u"") const {
    return AdapterManagerV2::getData(source, u"Params", container, prevChecksum, model);
  }

  static std::string show(const CPPAdapterV2::Workspace& workspace) {
    std::string shown;
    WorkSpaceIterator walk(workspace, false, false, true);
    const hvArray* value = nullptr;
    std::string name;
    while (walk.get_next_variable(value, name)) shown += hvFormat(value, name);
    return shown;
  }

  std::string content() const { return show(container.dataCache()); }

  void addMetaData() const {
    container.createIntoMetaDataCache(MetaDataEntry::Builder().setName(u"of another source"));
  }

  static inline bool (*registerAdapters)() = nullptr;
  TemporaryFolder folder;
  lx::base::Model model = lx::base::Model::create();
  DataContainer container = DataContainer::create(model);
};

}  // namespace

TEST_F(ModuleTest, RegistersItsAdapterOnce) {
  EXPECT_THAT(AdapterManagerV2::getAllRegisteredAdapterNames(), Contains(u"Params"));
  EXPECT_TRUE(AdapterManagerV2::isExtensionRegistered(u".params"));
  EXPECT_FALSE(registerAdapters());
  EXPECT_TRUE(AdapterManagerV2::unregisterAdapterByName(u"Params"));
  EXPECT_TRUE(registerAdapters());
}

TEST_F(ModuleTest, ReadsAnOpenSource) {
  const std::u16string source = folder.write("a.params", "gain = [1, 2]\nunit = \"m\"\n");
  ASSERT_TRUE(open(source));
  EXPECT_EQ(read(source).getId(), AdapterDiagnostic::NoDiagnostic);
  EXPECT_EQ(content(), "gain: 1x2 double = [1 2]\nunit: 1x1 char = \"m\"\n");
}

TEST_F(ModuleTest, ReadsASourceWithAKindTag) {
  folder.write("a.params", "gain = 1\n");
  ASSERT_TRUE(open(folder.source("a.params#tuned")));
  EXPECT_EQ(read(folder.source("a.params#tuned")).getId(), AdapterDiagnostic::NoDiagnostic);
  EXPECT_EQ(content(), "gain: 1x1 double = 1\n");
}

TEST_F(ModuleTest, ReplacesAllThatTheClientHeld) {
  const std::u16string source = folder.write("a.params", "old = 1\ngain = 1\n");
  open(source);
  read(source);
  addMetaData();
  folder.write("a.params", "gain = 2\n");
  EXPECT_EQ(read(source).getId(), AdapterDiagnostic::NoDiagnostic);
  EXPECT_EQ(content(), "gain: 1x1 double = 2\n");
  EXPECT_FALSE(container.hasMetaDataCache());
}

TEST_F(ModuleTest, ReadsAgainAlsoWhenTheClientHasSeenTheContent) {
  const std::u16string source = folder.write("a.params", "gain = 1\n");
  open(source);
  const std::u16string checksum = AdapterManagerV2::getChecksum(source, u"Params");
  EXPECT_EQ(read(source, checksum).getId(), AdapterDiagnostic::NoDiagnostic);
  EXPECT_EQ(content(), "gain: 1x1 double = 1\n");
}

TEST_F(ModuleTest, LeavesTheClientsDataAloneAfterAnErrorInTheLastLine) {
  const std::u16string source = folder.write("a.params", "gain = 1\n");
  open(source);
  read(source);
  addMetaData();
  folder.write("a.params", "gain = 2\nrate = 3\nunit = m\n");
  const AdapterError error = read(source);
  EXPECT_EQ(error.getId(), AdapterDiagnostic::UnrecognizedFormat);
  EXPECT_EQ(error.errorMessage(),
            u"line 3, column 8: expected a number, a list, a text, true or false, but found 'm'");
  EXPECT_EQ(error.getAdapterName(), u"Params");
  EXPECT_EQ(error.getSource(), source);
  EXPECT_EQ(content(), "gain: 1x1 double = 1\n");
  EXPECT_TRUE(container.metaDataCache().contains(u"of another source"));
}

TEST_F(ModuleTest, SaysOfAMissingFileThatItIsNotThereUntilItIs) {
  const std::u16string source = folder.source("a.params");
  EXPECT_FALSE(open(source));
  const AdapterError error = read(source);
  EXPECT_EQ(error.getId(), AdapterDiagnostic::Inaccessible);
  EXPECT_EQ(error.errorMessage(), u"There is no such file.");
  EXPECT_EQ(error.getSource(), source);
  folder.write("a.params", "gain = 1\n");
  EXPECT_EQ(read(source).getId(), AdapterDiagnostic::NoDiagnostic);
  EXPECT_EQ(content(), "gain: 1x1 double = 1\n");
}

TEST_F(ModuleTest, RefusesAFolderAndAPipe) {
  std::filesystem::create_directory(folder.path() / "folder.params");
  ASSERT_EQ(::mkfifo((folder.path() / "pipe.params").c_str(), 0600), 0);
  for (const char* const name : {"folder.params", "pipe.params"}) {
    const std::u16string source = folder.source(name);
    EXPECT_FALSE(AdapterManagerV2::doesSourceExist(source));
    EXPECT_FALSE(open(source));
    const AdapterError error = read(source);
    EXPECT_EQ(error.getId(), AdapterDiagnostic::Inaccessible);
    EXPECT_EQ(error.errorMessage(), u"It is not a regular file.");
  }
}

TEST_F(ModuleTest, BearsAnEmptyWorkspacePointer) {
  container.setDataCache(nullptr);
  const std::u16string good = folder.write("a.params", "gain = 1\n");
  const std::u16string bad = folder.write("b.params", "gain\n");
  open(good);
  open(bad);
  EXPECT_EQ(read(good).getId(), AdapterDiagnostic::NoDiagnostic);
  EXPECT_EQ(read(bad).getId(), AdapterDiagnostic::UnrecognizedFormat);
  EXPECT_EQ(container.dataCache(), nullptr);
}

TEST_F(ModuleTest, KeepsTwoOpenSourcesApart) {
  const std::u16string first = folder.write("a.params", "gain = 1\n");
  const std::u16string second = folder.write("b.params", "rate = 2\n");
  open(first);
  open(second);
  EXPECT_NE(AdapterManagerV2::getChecksum(first, u"Params"),
            AdapterManagerV2::getChecksum(second, u"Params"));
  read(first);
  EXPECT_EQ(content(), "gain: 1x1 double = 1\n");
  read(second);
  EXPECT_EQ(content(), "rate: 1x1 double = 2\n");
}

TEST_F(ModuleTest, HasNothingToDoWithASourceThatIsClosed) {
  const std::u16string source = folder.write("a.params", "gain = 1\n");
  open(source);
  EXPECT_TRUE(AdapterManagerV2::closeSource(source, u"Params", {}));
  EXPECT_THAT(AdapterManagerV2::getChecksum(source, u"Params"), IsEmpty());
  EXPECT_EQ(read(source).getId(), AdapterDiagnostic::Unsupported);
  EXPECT_EQ(content(), "");
}
