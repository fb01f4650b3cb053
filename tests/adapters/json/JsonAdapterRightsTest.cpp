#include <filesystem>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "tests/adapters/json/AdapterFixture.h"
#include "tests/adapters/json/withoutRights.h"

using nd::data::adapter::AdapterDiagnostic;
using std::filesystem::perms;

namespace {

/// A folder that everybody may search, so that a test takes away exactly the right that it is about.
class JsonAdapterRights : public AdapterFixture {
 protected:
  JsonAdapterRights() { permit("", perms::owner_all | perms::others_read | perms::others_exec); }

  void permit(std::string_view name, perms rights) const {
    std::filesystem::permissions(folder_.path(name), rights);
  }

  /// What the system refuses is refused by each operation in its way, and the container stays as it is.
  void expectRefusal(const std::u16string& source) {
    fillContainer();
    const ContainerState before = state();
    EXPECT_FALSE(adapter_.open(source));
    EXPECT_EQ(getData(),
              failure(AdapterDiagnostic::NoPermission, u"There is no permission to read it.", source));
    EXPECT_EQ(state(), before);
    EXPECT_EQ(adapter_.getCurrentChecksum(), u"");
    EXPECT_FALSE(adapter_.hasData());
  }
};

}  // namespace

TEST_F(JsonAdapterRights, ReadAFileThatEverybodyMayRead) {
  const std::u16string source = write("a.json", R"({"gain": 1})");
  permit("a.json", perms::others_read);
  EXPECT_TRUE(holdsWithoutRights([&] {
    EXPECT_TRUE(adapter_.isSourceValid(source));
    EXPECT_TRUE(adapter_.open(source));
    EXPECT_EQ(getData(), ErrorState{});
    EXPECT_EQ(adapter_.getCurrentChecksum().size(), 32U);
    EXPECT_TRUE(adapter_.hasData());
  }));
}

TEST_F(JsonAdapterRights, RefuseAFileThatNobodyMayRead) {
  const std::u16string source = write("a.json", R"({"gain": 1})");
  permit("a.json", perms::none);
  EXPECT_TRUE(holdsWithoutRights([&] {
    EXPECT_TRUE(adapter_.isSourceValid(source));
    expectRefusal(source);
  }));
}

TEST_F(JsonAdapterRights, RefuseAFileInAFolderThatNobodyMaySearch) {
  std::filesystem::create_directory(folder_.path("closed"));
  const std::u16string source = write("closed/a.json", R"({"gain": 1})");
  permit("closed/a.json", perms::others_read);
  permit("closed", perms::none);
  EXPECT_TRUE(holdsWithoutRights([&] {
    EXPECT_FALSE(adapter_.isSourceValid(source));
    expectRefusal(source);
  }));
  permit("closed", perms::owner_all);
}

TEST_F(JsonAdapterRights, RefuseAFileThatLosesItsRightsAfterTheOpening) {
  const std::u16string source = write("a.json", R"({"gain": 1})");
  permit("a.json", perms::none);
  adapter_.open(source);
  fillContainer();
  const ContainerState before = state();
  EXPECT_TRUE(holdsWithoutRights([&] {
    EXPECT_EQ(getData(),
              failure(AdapterDiagnostic::NoPermission, u"There is no permission to read it.", source));
    EXPECT_EQ(state(), before);
    EXPECT_EQ(adapter_.getCurrentChecksum(), u"");
  }));
}
