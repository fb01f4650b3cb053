#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/services/FileSystem.h"
#include "platform/services/ForwardingFileSystem.h"
#include "platform/text/Convert.h"

namespace {

using lx::services::FileSystem;
using lx::services::ForwardingFileSystem;
using lx::text::toUtf16;
using lx::text::toUtf8;

const FileSystem& service() {
  return FileSystem::current();
}

const std::vector<std::u16string> hostilePaths = {
    u"",
    u"/",
    u"//",
    u"///a//b//",
    u".",
    u"..",
    u"./a/../b",
    u"a\\b",
    u"C:\\a",
    u" a ",
    u"\n",
    {u'a', 0, u'b'},
    {0xD800},
    {u'/', 0xDC00, u'/', 0xD800, u'.', 0xDFFF},
    std::u16string(1'000'000, u'/'),
    std::u16string(1'000'000, u'.'),
    std::u16string(1'000'000, u'a'),
};

TEST(FileSystemForms, AreThePathAsItIs) {
  for (const std::u16string& path : hostilePaths) {
    EXPECT_TRUE(service().make_native_form(path, true) == path);
    EXPECT_TRUE(service().make_native_form(path, false) == path);
    EXPECT_TRUE(service().make_generic_form(path) == path);
  }
}

struct Parts {
  std::u16string path;
  std::u16string filename;
  std::u16string extension;
  std::u16string parent;
};

TEST(FileSystemParts, AreSplitAtSlashesAndTheLastDot) {
  const std::vector<Parts> table = {
      {u"", u"", u"", u""},
      {u"a", u"a", u"", u""},
      {u"a.test", u"a.test", u"test", u""},
      {u"a.tar.gz", u"a.tar.gz", u"gz", u""},
      {u"a.TEST", u"a.TEST", u"TEST", u""},
      {u".test", u".test", u"", u""},
      {u".test.x", u".test.x", u"x", u""},
      {u"a.", u"a.", u"", u""},
      {u"a..", u"a..", u"", u""},
      {u"a..x", u"a..x", u"x", u""},
      {u"..a", u"..a", u"a", u""},
      {u".", u".", u"", u""},
      {u"..", u"..", u"", u""},
      {u"...", u"...", u"", u""},
      {u"dir.d/file", u"file", u"", u"dir.d"},
      {u"dir.d/.file", u".file", u"", u"dir.d"},
      {u"dir/..", u"..", u"", u"dir"},
      {u"a.test/", u"", u"", u"a.test"},
      {u"a.test//", u"", u"", u"a.test"},
      {u"dir/a.test", u"a.test", u"test", u"dir"},
      {u"dir//a.test", u"a.test", u"test", u"dir"},
      {u"/dir/sub/a.test", u"a.test", u"test", u"/dir/sub"},
      {u"/x", u"x", u"", u"/"},
      {u"//x", u"x", u"", u"/"},
      {u"/", u"", u"", u"/"},
      {u"//", u"", u"", u"/"},
      {u"/.x", u".x", u"", u"/"},
      {u"./x.y", u"x.y", u"y", u"."},
      {u"a\\b.c\\d", u"a\\b.c\\d", u"c\\d", u""},
      {u"x.test&VALUESRC", u"x.test&VALUESRC", u"test&VALUESRC", u""},
      {u"dir/\u00E9.\U0001D11E", u"\u00E9.\U0001D11E", u"\U0001D11E", u"dir"},
      {{u'd', 0, u'/', 0xD800, u'.', 0xDC00}, {0xD800, u'.', 0xDC00}, {0xDC00}, {u'd', 0}},
  };
  for (const Parts& parts : table) {
    const std::string shown = toUtf8(parts.path);
    EXPECT_EQ(service().extract_filename(parts.path), parts.filename) << shown;
    EXPECT_EQ(service().extract_extension(parts.path), parts.extension) << shown;
    EXPECT_EQ(service().extract_parent_path(parts.path), parts.parent) << shown;
  }
}

TEST(FileSystemParts, AreThoseOfTheStandardLibraryForRandomPaths) {
  std::mt19937 random(99);
  const std::u16string_view units = u"a.b/./";
  for (int round = 0; round < 50000; ++round) {
    std::u16string path(random() % 12, u'\0');
    for (char16_t& unit : path) unit = units[random() % units.size()];
    const std::filesystem::path standard(path);
    ASSERT_EQ(service().extract_filename(path), standard.filename().u16string()) << standard;
    const std::u16string extension = standard.extension().u16string();
    ASSERT_EQ(service().extract_extension(path), extension.empty() ? extension : extension.substr(1))
        << standard;
    // The standard library keeps all slashes of a root; here a root is one slash.
    std::u16string parent = standard.parent_path().u16string();
    if (parent.find_first_not_of(u'/') == std::u16string::npos && !parent.empty()) parent = u"/";
    ASSERT_EQ(service().extract_parent_path(path), parent) << standard;
  }
}

TEST(FileSystemParts, OfHugePathsAreFound) {
  const std::u16string slashes(1'000'000, u'/');
  EXPECT_EQ(service().extract_parent_path(slashes), u"/");
  EXPECT_EQ(service().extract_parent_path(u"a" + slashes + u"b"), u"a");
  EXPECT_EQ(service().extract_filename(slashes), u"");
  const std::u16string dots(1'000'000, u'.');
  EXPECT_EQ(service().extract_extension(dots), u"");
  EXPECT_EQ(service().extract_extension(dots + u"x"), u"x");
}

// A folder of its own for each test, and paths in it.
class FileSystemOnDisk : public testing::Test {
 protected:
  FileSystemOnDisk() {
    std::string pattern = testing::TempDir() + "filesystem_test_XXXXXX";
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no folder for the test");
    folder_ = pattern;
    // For the tests that give up their rights.
    std::filesystem::permissions(folder_, std::filesystem::perms::all);
  }

  ~FileSystemOnDisk() override {
    std::error_code ignored;
    std::filesystem::permissions(folder_ / "locked", std::filesystem::perms::all, ignored);
    std::filesystem::remove_all(folder_, ignored);
  }

  std::u16string at(const std::u16string& name) const { return toUtf16(folder_.string()) + u"/" + name; }

  std::u16string makeFile(const std::u16string& name) const {
    std::ofstream(toUtf8(at(name))) << "content";
    return at(name);
  }

  std::u16string makeFolder(const std::u16string& name) const {
    std::filesystem::create_directory(toUtf8(at(name)));
    return at(name);
  }

  std::u16string makeLink(const std::u16string& name, const std::u16string& target) const {
    std::filesystem::create_symlink(toUtf8(target), toUtf8(at(name)));
    return at(name);
  }

  static unsigned typeOf(const std::u16string& path) {
    return service().status(path) & FileSystem::file_type_mask;
  }

  static void expectAbsent(const std::u16string& path) {
    EXPECT_FALSE(service().exists(path));
    EXPECT_FALSE(service().access(path, FileSystem::read_access));
    EXPECT_EQ(typeOf(path), 0U);
  }

  std::filesystem::path folder_;
};

// The superuser may read everything, so a test of rights runs as somebody else.
class WithoutPrivileges {
 public:
  WithoutPrivileges() : former_(geteuid()) {
    if (former_ == 0 && seteuid(65534) != 0) throw std::runtime_error("the rights can't be given up");
  }
  WithoutPrivileges(const WithoutPrivileges&) = delete;
  WithoutPrivileges& operator=(const WithoutPrivileges&) = delete;
  ~WithoutPrivileges() {
    if (former_ == 0 && seteuid(former_) != 0) std::abort();
  }

 private:
  uid_t former_;
};

template <typename Call>
void expectError(Call call, std::errc error, const std::u16string& path) {
  try {
    call();
    ADD_FAILURE() << "nothing was thrown";
  } catch (const std::filesystem::filesystem_error& raised) {
    EXPECT_EQ(raised.code(), std::make_error_condition(error)) << raised.what();
    EXPECT_EQ(raised.path1(), toUtf8(path));
    EXPECT_THAT(raised.what(), testing::HasSubstr(toUtf8(path)));
  }
}

TEST_F(FileSystemOnDisk, FindsAFile) {
  const std::u16string path = makeFile(u"a.test");
  EXPECT_TRUE(service().exists(path));
  EXPECT_TRUE(service().access(path, 2));
  EXPECT_EQ(typeOf(path), FileSystem::regular_file);
}

TEST_F(FileSystemOnDisk, FindsAFolderWithAndWithoutSlashAtItsEnd) {
  const std::u16string path = makeFolder(u"folder.d");
  for (const std::u16string& form : {path, path + u"/", path + u"//."}) {
    EXPECT_TRUE(service().exists(form));
    EXPECT_TRUE(service().access(form, 2));
    EXPECT_EQ(typeOf(form), FileSystem::directory_file);
  }
  EXPECT_EQ(typeOf(u"/"), FileSystem::directory_file);
  EXPECT_EQ(typeOf(u"//"), FileSystem::directory_file);
  EXPECT_EQ(typeOf(u"."), FileSystem::directory_file);
}

TEST_F(FileSystemOnDisk, FindsNamesBeyondAscii) {
  const std::u16string path = makeFile(u"\u00E9\u4E2D\U0001F600 x");
  EXPECT_TRUE(std::filesystem::exists(folder_ / "\xC3\xA9\xE4\xB8\xAD\xF0\x9F\x98\x80 x"));
  EXPECT_EQ(typeOf(path), FileSystem::regular_file);
  expectAbsent(at(u"e\u0301\u4E2D\U0001F600 x"));
}

TEST_F(FileSystemOnDisk, GivesOtherTypesTheirOwnBits) {
  const std::u16string path = at(u"pipe");
  ASSERT_EQ(mkfifo(toUtf8(path).c_str(), 0600), 0);
  EXPECT_TRUE(service().exists(path));
  EXPECT_EQ(typeOf(path), static_cast<unsigned>(S_IFIFO));
  EXPECT_NE(typeOf(path), FileSystem::regular_file);
  EXPECT_NE(typeOf(path), FileSystem::directory_file);
}

TEST_F(FileSystemOnDisk, FindsNothingWhereNothingIs) {
  const std::u16string file = makeFile(u"file");
  expectAbsent(u"");
  expectAbsent(at(u"missing"));
  expectAbsent(at(u"missing/folder/file"));
  expectAbsent(file + u"/");
  expectAbsent(file + u"/below");
  expectAbsent(at(u"FILE"));
  expectAbsent(file + u"#TAG&VALUESRC");
}

TEST_F(FileSystemOnDisk, FindsNothingUnderNamesThatNoFileCanHave) {
  const std::u16string file = makeFile(u"file");
  makeFile(u"file\uFFFD");
  const std::u16string nul(1, u'\0');
  expectAbsent(nul);
  expectAbsent(file + nul);
  expectAbsent(file + nul + u"more");
  expectAbsent(file + std::u16string{0xD800});
  expectAbsent(file + std::u16string{0xDC00});
  expectAbsent(file + std::u16string{0xDC00, 0xD800});
  expectAbsent(file + std::u16string{0xD800, u'x'});
  EXPECT_TRUE(service().exists(file + u"\uFFFD"));
}

TEST_F(FileSystemOnDisk, FindsNothingUnderNamesThatAreTooLong) {
  expectAbsent(at(std::u16string(300, u'x')));
  expectAbsent(at(std::u16string(1'000'000, u'x')));
  std::u16string deep;
  for (int level = 0; level < 5000; ++level) deep += u"d/";
  expectAbsent(at(deep));
}

TEST_F(FileSystemOnDisk, FollowsLinks) {
  const std::u16string file = makeFile(u"file");
  const std::u16string folder = makeFolder(u"folder");
  EXPECT_EQ(typeOf(makeLink(u"toFile", file)), FileSystem::regular_file);
  EXPECT_EQ(typeOf(makeLink(u"toFolder", folder)), FileSystem::directory_file);
  EXPECT_EQ(typeOf(makeLink(u"toLink", at(u"toFile"))), FileSystem::regular_file);
  EXPECT_TRUE(service().exists(at(u"toLink")));
  EXPECT_TRUE(service().access(at(u"toLink"), 2));
  expectAbsent(makeLink(u"dangling", at(u"missing")));
}

TEST_F(FileSystemOnDisk, RaisesForLinksThatLeadInACircle) {
  const std::u16string path = makeLink(u"circle", at(u"circle"));
  expectError([&] { service().exists(path); }, std::errc::too_many_symbolic_link_levels, path);
  expectError([&] { service().status(path); }, std::errc::too_many_symbolic_link_levels, path);
  expectError([&] { service().access(path, 2); }, std::errc::too_many_symbolic_link_levels, path);
}

TEST_F(FileSystemOnDisk, FindsAFileThatMayNotBeReadButGivesNoAccess) {
  const std::u16string path = makeFile(u"secret");
  std::filesystem::permissions(toUtf8(path), std::filesystem::perms::none);
  const WithoutPrivileges asSomebodyElse;
  EXPECT_TRUE(service().exists(path));
  EXPECT_FALSE(service().access(path, 2));
  EXPECT_EQ(typeOf(path), FileSystem::regular_file);
}

TEST_F(FileSystemOnDisk, GivesReadingOfAFileThatMayOnlyBeReadAndNotOfOneThatMayOnlyBeWritten) {
  const std::u16string readOnly = makeFile(u"readOnly");
  std::filesystem::permissions(toUtf8(readOnly), static_cast<std::filesystem::perms>(0444));
  const std::u16string writeOnly = makeFile(u"writeOnly");
  std::filesystem::permissions(toUtf8(writeOnly), static_cast<std::filesystem::perms>(0222));
  const WithoutPrivileges asSomebodyElse;
  EXPECT_TRUE(service().access(readOnly, 2));
  EXPECT_FALSE(service().access(writeOnly, 2));
}

TEST_F(FileSystemOnDisk, RaisesWhenAFolderOnTheWayMayNotBeSearched) {
  makeFolder(u"locked");
  const std::u16string path = makeFile(u"locked/file");
  std::filesystem::permissions(folder_ / "locked", std::filesystem::perms::none);
  const WithoutPrivileges asSomebodyElse;
  expectError([&] { service().exists(path); }, std::errc::permission_denied, path);
  expectError([&] { service().status(path); }, std::errc::permission_denied, path);
  EXPECT_FALSE(service().access(path, 2));
}

TEST_F(FileSystemOnDisk, RefusesOtherModesOfAccess) {
  const std::u16string path = makeFile(u"file");
  for (const int mode : {-1, 0, 1, 3, 4, 6}) {
    expectError([&] { service().access(path, mode); }, std::errc::invalid_argument, path);
  }
}

TEST_F(FileSystemOnDisk, AnswersHostilePathsWithoutError) {
  for (const std::u16string& path : hostilePaths) {
    EXPECT_NO_THROW(EXPECT_EQ(service().exists(path), typeOf(path) != 0));
    EXPECT_NO_THROW(service().access(path, 2));
  }
}

struct Unreachable : ForwardingFileSystem {
  bool exists(const std::u16string&) const override { throw std::runtime_error("offline"); }
};

TEST(FileSystemReplacement, ServesUntilTheFormerOneIsHandedBack) {
  FileSystem* const standard = &FileSystem::current();
  const auto other = std::make_shared<Unreachable>();
  std::shared_ptr<FileSystem> former = FileSystem::replace(other);
  EXPECT_EQ(former.get(), standard);
  EXPECT_EQ(&FileSystem::current(), other.get());
  EXPECT_EQ(FileSystem::share(), other);
  EXPECT_THROW(FileSystem::current().exists(u"/"), std::runtime_error);
  EXPECT_EQ(FileSystem::replace(std::move(former)), other);
  EXPECT_EQ(&FileSystem::current(), standard);
  EXPECT_TRUE(FileSystem::current().exists(u"/"));
}

TEST(FileSystemReplacement, ByNullBringsTheDefaultBack) {
  FileSystem* const standard = &FileSystem::current();
  EXPECT_EQ(FileSystem::replace(nullptr).get(), standard);
  EXPECT_EQ(&FileSystem::current(), standard);
  const auto other = std::make_shared<Unreachable>();
  FileSystem::replace(other);
  EXPECT_EQ(FileSystem::replace(nullptr), other);
  EXPECT_EQ(&FileSystem::current(), standard);
}

TEST(FileSystemReplacement, KeepsTheObjectAliveAndLetsItGo) {
  auto other = std::make_shared<Unreachable>();
  const std::weak_ptr<Unreachable> watched = other;
  FileSystem::replace(std::move(other));
  EXPECT_FALSE(watched.expired());
  FileSystem::replace(nullptr);
  EXPECT_TRUE(watched.expired());
}

TEST(FileSystemReplacement, EndsWithItsScope) {
  FileSystem* const standard = &FileSystem::current();
  const auto outer = std::make_shared<Unreachable>();
  const auto inner = std::make_shared<Unreachable>();
  {
    const FileSystem::Replacement outerScope(outer);
    EXPECT_EQ(&FileSystem::current(), outer.get());
    try {
      const FileSystem::Replacement innerScope(inner);
      EXPECT_EQ(&FileSystem::current(), inner.get());
      FileSystem::current().exists(u"/");
      FAIL();
    } catch (const std::runtime_error&) {
      EXPECT_EQ(&FileSystem::current(), outer.get());
    }
  }
  EXPECT_EQ(&FileSystem::current(), standard);
}

}  // namespace
