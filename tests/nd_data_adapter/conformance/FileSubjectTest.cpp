#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "nd_data_adapter/conformance/FileSubject.h"
#include "platform/text/Convert.h"
#include "tests/nd_data_adapter/conformance/LineAdapter.h"

using testing::EndsWith;
using testing::HasSubstr;
using testing::SizeIs;

namespace {

class Files final : public nd::conformance::FileSubject {
 public:
  explicit Files(nd::conformance::FileContents contents) : FileSubject(std::move(contents)) {}
  Files() : FileSubject({.extension = ".x", .good = "first", .otherGood = "other", .bad = {"b1", "b2"}}) {}
  std::shared_ptr<CPPAdapterV2> makeAdapter() override { return std::make_shared<LineAdapter>(); }
};

std::filesystem::path pathOf(const std::u16string& source) {
  return lx::text::toUtf8(source);
}

std::string contentOf(const std::u16string& source) {
  std::ifstream file(pathOf(source), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace

TEST(FileSubject, WritesTheContentsUnderTheExtension) {
  Files files;
  EXPECT_THAT(lx::text::toUtf8(files.goodSource()), EndsWith(".x"));
  EXPECT_EQ(contentOf(files.goodSource()), "first");
  EXPECT_EQ(contentOf(files.otherGoodSource()), "other");
  ASSERT_THAT(files.badSources(), SizeIs(2));
  EXPECT_EQ(contentOf(files.badSources()[0]), "b1");
  EXPECT_EQ(contentOf(files.badSources()[1]), "b2");
}

TEST(FileSubject, HasNoFileForAnAbsentSource) {
  Files files;
  ASSERT_THAT(files.absentSources(), SizeIs(3));
  for (const std::u16string& source : files.absentSources()) {
    EXPECT_FALSE(std::filesystem::is_regular_file(pathOf(source)));
    EXPECT_THAT(lx::text::toUtf8(source), EndsWith(".x"));
  }
  EXPECT_TRUE(std::filesystem::is_directory(pathOf(files.absentSources().back())));
}

TEST(FileSubject, ChangesTheContentButNotTheTimeAndRewritesTheTimeButNotTheContent) {
  Files files;
  const auto path = pathOf(files.goodSource());
  const auto time = std::filesystem::last_write_time(path);
  files.changeGoodSource();
  EXPECT_EQ(contentOf(files.goodSource()), "other");
  EXPECT_EQ(std::filesystem::last_write_time(path), time);
  files.rewriteGoodSource();
  EXPECT_EQ(contentOf(files.goodSource()), "first");
  const auto rewritten = std::filesystem::last_write_time(path);
  EXPECT_NE(rewritten, time);
  files.rewriteGoodSource();
  EXPECT_EQ(contentOf(files.goodSource()), "first");
  EXPECT_NE(std::filesystem::last_write_time(path), rewritten);
}

TEST(FileSubject, ChangesTheEndAlone) {
  Files files;
  const auto time = std::filesystem::last_write_time(pathOf(files.goodSource()));
  files.changeEndOfGoodSource();
  EXPECT_EQ(contentOf(files.goodSource()), "firsr");
  EXPECT_EQ(std::filesystem::last_write_time(pathOf(files.goodSource())), time);
}

TEST(FileSubject, TakesTheChangeOfTheEndThatIsHandedOver) {
  Files files({.extension = ".x", .good = "first", .otherGood = "other", .changedAtTheEnd = "firs!"});
  files.changeEndOfGoodSource();
  EXPECT_EQ(contentOf(files.goodSource()), "firs!");
}

TEST(FileSubject, SpoilsAndRemovesTheGoodSource) {
  Files files;
  const auto time = std::filesystem::last_write_time(pathOf(files.goodSource()));
  files.spoilGoodSource();
  EXPECT_EQ(contentOf(files.goodSource()), "b1");
  EXPECT_EQ(std::filesystem::last_write_time(pathOf(files.goodSource())), time);
  files.removeGoodSource();
  EXPECT_FALSE(std::filesystem::exists(pathOf(files.goodSource())));
}

TEST(FileSubject, WantsContentsOfOneSizeUnlessTheFormatDoesNotAllowIt) {
  nd::conformance::FileContents contents{.extension = ".x", .good = "first", .otherGood = "second"};
  try {
    Files files(contents);
    FAIL() << "it took contents of two sizes";
  } catch (const std::invalid_argument& refusal) {
    EXPECT_THAT(refusal.what(), HasSubstr("good has 5 bytes and otherGood 6"));
    EXPECT_THAT(refusal.what(), HasSubstr("haveOneSize"));
  }
  contents.haveOneSize = false;
  Files files(contents);
  files.changeEndOfGoodSource();
  EXPECT_EQ(contentOf(files.goodSource()), "second");
}

TEST(FileSubject, WantsTwoContents) {
  EXPECT_THROW(Files({.extension = ".x", .good = "first", .otherGood = "first"}), std::invalid_argument);
}

TEST(FileSubject, DescribesFilesWithTheirContents) {
  Files files;
  const std::string before = files.surroundings();
  EXPECT_THAT(before, HasSubstr("good.x: first\n"));
  EXPECT_THAT(before, HasSubstr("bad_2.x: b2\n"));
  std::ofstream(pathOf(files.absentSources().front())) << "";
  EXPECT_THAT(files.surroundings(), HasSubstr("absent.x: \n"));
}

TEST(FileSubject, HasAFolderOfItsOwnThatGoesWithIt) {
  std::filesystem::path folder;
  {
    Files files;
    Files others;
    EXPECT_NE(files.goodSource(), others.goodSource());
    folder = pathOf(files.goodSource()).parent_path();
    EXPECT_TRUE(std::filesystem::exists(folder));
  }
  EXPECT_FALSE(std::filesystem::exists(folder));
}
