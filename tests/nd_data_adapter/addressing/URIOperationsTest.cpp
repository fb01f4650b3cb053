#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <type_traits>
#include <utility>

#include "nd_data_adapter/model/URIOperations.h"
#include "platform/foundation/meta/Meta.h"
#include "platform/text/Convert.h"
#include "tests/support/CallLog.h"
#include "tests/support/FakeFileSystem.h"
#include "tests/support/Thrown.h"

using lx::text::toUtf16;
using lx::text::toUtf8;
using ndx::broker::URIOperations;
using support::everyKindOfException;
using support::isLeftBy;
using support::Lines;
using support::Thrown;

namespace {

struct Case {
  std::u16string uri;
  std::u16string wanted;
};

template <class Operation>
void expectAll(const std::vector<Case>& cases, Operation operation) {
  for (const Case& each : cases)
    EXPECT_EQ(toUtf8(operation(each.uri)), toUtf8(each.wanted)) << toUtf8(each.uri);
}

const std::u16string loneSurrogates{char16_t{0xDC00}, u'x', char16_t{0xD800}};

class OnAFakeFileSystem : public testing::Test {
 protected:
  Lines calls() const { return log->take(); }

  const std::shared_ptr<support::CallLog> log = std::make_shared<support::CallLog>();
  const std::shared_ptr<support::FakeFileSystem> fileSystem = std::make_shared<support::FakeFileSystem>(log);
  const lx::services::FileSystem::Replacement replaced{fileSystem};
};

using RemoveValueOverrideSrcTag = OnAFakeFileSystem;
using RemoveTag = OnAFakeFileSystem;
using GetFileNameWithExtension = OnAFakeFileSystem;
using GetExtension = OnAFakeFileSystem;
using Exists = OnAFakeFileSystem;
using IsReadable = OnAFakeFileSystem;

TEST(URIOperationsClass, HasNoPropertiesAndOnlyStaticOperationsOnAURI) {
  EXPECT_TRUE(URIOperations::metaClass().getProperties().empty());
  EXPECT_FALSE(URIOperations::metaClass().getOwnOperations().empty());
  for (const lx::base::meta::Operation& operation : URIOperations::metaClass().getOwnOperations()) {
    SCOPED_TRACE(toUtf8(operation.getName()));
    EXPECT_TRUE(operation.isStatic());
    const std::vector<lx::base::meta::Argument> arguments = operation.getArguments();
    ASSERT_EQ(arguments.size(), 1U);
    EXPECT_EQ(toUtf8(arguments.front().getName()), "uri");
    EXPECT_EQ(toUtf8(arguments.front().getType().getQualifiedName()), "lx.base.String");
  }
}

TEST(URIOperationsClass, HasSixOperationsThatNeedNoElement) {
  using Text = std::u16string;
  EXPECT_TRUE((std::is_same_v<decltype(&URIOperations::exists), bool (*)(const Text&)>));
  EXPECT_TRUE((std::is_same_v<decltype(&URIOperations::isReadable), bool (*)(const Text&)>));
  EXPECT_TRUE((std::is_same_v<decltype(&URIOperations::removeTag), Text (*)(const Text&)>));
  EXPECT_TRUE((std::is_same_v<decltype(&URIOperations::getFileNameWithExtension), Text (*)(const Text&)>));
  EXPECT_TRUE((std::is_same_v<decltype(&URIOperations::getExtension), Text (*)(const Text&)>));
  EXPECT_TRUE((std::is_same_v<decltype(&URIOperations::removeValueOverrideSrcTag), Text (*)(const Text&)>));
}

// removeValueOverrideSrcTag

TEST_F(RemoveValueOverrideSrcTag, CutsAtTheFirstAmpersandWhateverFollows) {
  expectAll({{u"", u""},
             {u"a.test", u"a.test"},
             {u"a.test&VALUESRC", u"a.test"},
             {u"a.test&", u"a.test"},
             {u"a&b.test", u"a"},
             {u"a&b&c", u"a"},
             {u"&", u""},
             {u"&VALUESRC", u""},
             {u"a.test#KIND&VALUESRC", u"a.test#KIND"},
             {u"a.test&VALUESRC#KIND", u"a.test"},
             {u"a.test&VALUESRC more", u"a.test"},
             {u"a.test&valuesrc", u"a.test"},
             {u"a.test\uFF06VALUESRC", u"a.test\uFF06VALUESRC"}},
            &URIOperations::removeValueOverrideSrcTag);
  EXPECT_TRUE(calls().empty());
}

TEST_F(RemoveValueOverrideSrcTag, TakesAnyText) {
  EXPECT_EQ(URIOperations::removeValueOverrideSrcTag(loneSurrogates + u"&x"), loneSurrogates);
  EXPECT_EQ(URIOperations::removeValueOverrideSrcTag(std::u16string(u"a\0b&c", 5)),
            std::u16string(u"a\0b", 3));
  EXPECT_EQ(URIOperations::removeValueOverrideSrcTag(u"a\n&b"), u"a\n");
  const std::u16string huge(1 << 20, u'x');
  EXPECT_EQ(URIOperations::removeValueOverrideSrcTag(huge + u"&"), huge);
}

// removeTag

TEST_F(RemoveTag, CutsAtTheFirstTagSignBeforeAnyAmpersand) {
  expectAll({{u"", u""},
             {u"a.test", u"a.test"},
             {u"a.test#KIND", u"a.test"},
             {u"a.test#KIND&VALUESRC", u"a.test"},
             {u"a.test#", u"a.test"},
             {u"a#b#c", u"a"},
             {u"#KIND", u""},
             {u"#", u""},
             {u"##", u""},
             {u"a.test#&", u"a.test"},
             {u"a.test#KI&ND#x", u"a.test"}},
            &URIOperations::removeTag);
  EXPECT_TRUE(calls().empty());
}

TEST_F(RemoveTag, GivesAURIWithoutKindTagAsItWasGivenMarkerIncluded) {
  expectAll({{u"a.test&VALUESRC", u"a.test&VALUESRC"},
             {u"a&b.test", u"a&b.test"},
             {u"a&b#KIND", u"a&b#KIND"},
             {u"a.test&VALUESRC#KIND", u"a.test&VALUESRC#KIND"},
             {u"&VALUESRC", u"&VALUESRC"},
             {u"&#", u"&#"}},
            &URIOperations::removeTag);
}

TEST_F(RemoveTag, TakesAnyText) {
  EXPECT_EQ(URIOperations::removeTag(loneSurrogates + u"#x"), loneSurrogates);
  EXPECT_EQ(URIOperations::removeTag(std::u16string(u"a\0b#c", 5)), std::u16string(u"a\0b", 3));
  EXPECT_EQ(URIOperations::removeTag(u"a\n#b\nc"), u"a\n");
}

// getFileNameWithExtension, getExtension

TEST_F(GetFileNameWithExtension, GivesTheLastComponentWithoutTheTag) {
  expectAll({{u"a.test", u"a.test"},
             {u"folder/a.test", u"a.test"},
             {u"/folder.x/a.test#KIND/x", u"a.test"},
             {u"folder/a.test#KIND&VALUESRC", u"a.test"},
             {u"folder/a.test&VALUESRC", u"a.test&VALUESRC"},
             {u"folder/", u""},
             {u"folder/#KIND", u""},
             {u"", u""},
             {u"#KIND", u""}},
            &URIOperations::getFileNameWithExtension);
}

TEST_F(GetExtension, GivesTheExtensionWithoutItsDot) {
  expectAll({{u"a.test", u"test"},
             {u"folder/a.TEST", u"TEST"},
             {u"a.tar.gz", u"gz"},
             {u"a.test#KIND", u"test"},
             {u"a.test#KIND.x", u"test"},
             {u"a.test#KIND&VALUESRC", u"test"},
             {u"a.test&VALUESRC", u"test&VALUESRC"},
             {u"a&b.test#KIND", u"test#KIND"},
             {u"a", u""},
             {u"a.", u""},
             {u".test", u""},
             {u"..", u""},
             {u"folder.test/a", u""},
             {u"a.test/", u""},
             {u"", u""},
             {u"#a.test", u""},
             {u"a\\b.te\\st", u"te\\st"}},
            &URIOperations::getExtension);
}

TEST_F(GetExtension, AsksTheFilesystemForTheNativeFormOfThePathFirst) {
  fileSystem->nativeSeparator = u'\\';
  EXPECT_EQ(URIOperations::getExtension(u"b/a.test#KIND"), u"test");
  EXPECT_EQ(calls(), (Lines{"fs.make_native_form(b/a.test, true)", "fs.extract_extension(b\\a.test)"}));
}

TEST_F(GetFileNameWithExtension, AsksTheFilesystemForTheNativeFormOfThePathFirst) {
  fileSystem->nativeSeparator = u'\\';
  EXPECT_EQ(URIOperations::getFileNameWithExtension(u"b/a.test#KIND"), u"a.test");
  EXPECT_EQ(calls(), (Lines{"fs.make_native_form(b/a.test, true)", "fs.extract_filename(b\\a.test)"}));
}

TEST_F(GetExtension, NeverAsksForTheNativeFormOfAnEmptyPath) {
  for (const std::u16string uri : {u"", u"#KIND", u"#", u"#KIND&VALUESRC"}) {
    EXPECT_EQ(URIOperations::getExtension(uri), u"");
    EXPECT_EQ(calls(), Lines{"fs.extract_extension()"});
    EXPECT_EQ(URIOperations::getFileNameWithExtension(uri), u"");
    EXPECT_EQ(calls(), Lines{"fs.extract_filename()"});
  }
}

TEST_F(GetExtension, LetsTheExceptionsOfTheFilesystemPass) {
  for (const Thrown& thrown : everyKindOfException()) {
    for (const std::string call : {"fs.make_native_form", "fs.extract_extension"}) {
      log->throwAt(call, thrown.object);
      EXPECT_TRUE(isLeftBy(thrown.object, [] { URIOperations::getExtension(u"a.test"); }))
          << thrown.name << call;
    }
  }
}

TEST_F(GetFileNameWithExtension, LetsTheExceptionsOfTheFilesystemPass) {
  for (const Thrown& thrown : everyKindOfException()) {
    for (const std::string call : {"fs.make_native_form", "fs.extract_filename"}) {
      log->throwAt(call, thrown.object);
      EXPECT_TRUE(isLeftBy(thrown.object, [] { URIOperations::getFileNameWithExtension(u"a.test"); }))
          << thrown.name << call;
    }
  }
}

// exists, isReadable

TEST_F(Exists, AsksForThePathWithoutItsTagAndForNothingElse) {
  fileSystem->files[u"b/a.test"] = {};
  EXPECT_TRUE(URIOperations::exists(u"b/a.test"));
  EXPECT_TRUE(URIOperations::exists(u"b/a.test#KIND"));
  EXPECT_TRUE(URIOperations::exists(u"b/a.test#KIND&VALUESRC"));
  EXPECT_FALSE(URIOperations::exists(u"b/a.test&VALUESRC"));
  EXPECT_FALSE(URIOperations::exists(u"B/a.test"));
  EXPECT_EQ(calls(), (Lines{"fs.exists(b/a.test)", "fs.exists(b/a.test)", "fs.exists(b/a.test)",
                            "fs.exists(b/a.test&VALUESRC)", "fs.exists(B/a.test)"}));
}

TEST_F(Exists, AsksForAnEmptyPathToo) {
  EXPECT_FALSE(URIOperations::exists(u""));
  EXPECT_FALSE(URIOperations::exists(u"#KIND"));
  EXPECT_EQ(calls(), (Lines{"fs.exists()", "fs.exists()"}));
}

TEST_F(Exists, IsFalseWhereTheCheckThrows) {
  fileSystem->files[u"a.test"] = {};
  for (const Thrown& thrown : everyKindOfException()) {
    log->throwAt("fs.exists", thrown.object);
    EXPECT_FALSE(URIOperations::exists(u"a.test")) << thrown.name;
    EXPECT_EQ(log->actionsLeft(), 0U);
    EXPECT_TRUE(URIOperations::exists(u"a.test"));
  }
}

TEST_F(IsReadable, AsksForAccessOfMode2ToThePathWithoutItsTag) {
  fileSystem->files[u"b/a.test"] = {};
  fileSystem->files[u"b/secret.test"] = {.isReadable = false};
  EXPECT_TRUE(URIOperations::isReadable(u"b/a.test#KIND&VALUESRC"));
  EXPECT_FALSE(URIOperations::isReadable(u"b/secret.test"));
  EXPECT_FALSE(URIOperations::isReadable(u"b/a.test&VALUESRC"));
  EXPECT_EQ(calls(), (Lines{"fs.access(b/a.test, 2)", "fs.access(b/secret.test, 2)",
                            "fs.access(b/a.test&VALUESRC, 2)"}));
}

TEST_F(IsReadable, IsFalseWhereTheCheckThrows) {
  fileSystem->files[u"a.test"] = {};
  for (const Thrown& thrown : everyKindOfException()) {
    log->throwAt("fs.access", thrown.object);
    EXPECT_FALSE(URIOperations::isReadable(u"a.test")) << thrown.name;
    EXPECT_EQ(log->actionsLeft(), 0U);
    EXPECT_TRUE(URIOperations::isReadable(u"a.test"));
  }
}

// On the real filesystem

class OnARealFolder : public testing::Test {
 protected:
  OnARealFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "uri_operations_XXXXXX").string();
    const char* const made = ::mkdtemp(name.data());
    if (made == nullptr)
      throw std::system_error(errno, std::generic_category(), "The folder " + name + " can't be made");
    folder_ = made;
    std::ofstream(folder_ / "a.test") << "content";
  }
  ~OnARealFolder() override { std::filesystem::remove_all(folder_); }

  std::u16string at(const std::string& name) const { return toUtf16((folder_ / name).string()); }

 private:
  std::filesystem::path folder_;
};

TEST_F(OnARealFolder, FilesAndFoldersExistAndAreReadable) {
  EXPECT_TRUE(URIOperations::exists(at("a.test")));
  EXPECT_TRUE(URIOperations::exists(at("a.test#KIND")));
  EXPECT_TRUE(URIOperations::exists(at("")));
  EXPECT_TRUE(URIOperations::isReadable(at("a.test#KIND&VALUESRC")));
  EXPECT_TRUE(URIOperations::isReadable(at("")));
}

TEST_F(OnARealFolder, WhatIsNotThereNeitherExistsNorIsReadable) {
  for (const char* name : {"b.test", "A.TEST", "a.test&VALUESRC", "a.test/below", "a.test&x#KIND"}) {
    EXPECT_FALSE(URIOperations::exists(at(name))) << name;
    EXPECT_FALSE(URIOperations::isReadable(at(name))) << name;
  }
  EXPECT_FALSE(URIOperations::exists(u""));
  EXPECT_FALSE(URIOperations::isReadable(u"#KIND"));
}

TEST_F(OnARealFolder, LinksThatGoInACircleNeitherExistNorAreReadable) {
  std::filesystem::create_symlink(toUtf8(at("there.test")), toUtf8(at("back.test")));
  std::filesystem::create_symlink(toUtf8(at("back.test")), toUtf8(at("there.test")));
  for (const char* name : {"back.test", "back.test#KIND", "back.test#KIND&VALUESRC", "there.test"}) {
    EXPECT_FALSE(URIOperations::exists(at(name))) << name;
    EXPECT_FALSE(URIOperations::isReadable(at(name))) << name;
  }
}

TEST_F(OnARealFolder, LinksAreFollowed) {
  std::filesystem::create_symlink(toUtf8(at("a.test")), toUtf8(at("link.test")));
  std::filesystem::create_symlink(toUtf8(at("nowhere.test")), toUtf8(at("broken.test")));
  EXPECT_TRUE(URIOperations::exists(at("link.test#KIND")));
  EXPECT_TRUE(URIOperations::isReadable(at("link.test#KIND")));
  EXPECT_FALSE(URIOperations::exists(at("broken.test#KIND")));
  EXPECT_FALSE(URIOperations::isReadable(at("broken.test#KIND")));
}

TEST_F(OnARealFolder, AFileWhoseNameHoldsTheTagSignIsNotFound) {
  const std::u16string name = at("b#c.test");
  std::ofstream(toUtf8(name)) << "content";
  EXPECT_FALSE(URIOperations::exists(name));
}

TEST_F(OnARealFolder, PathsThatNoFileCanHaveDoNotExist) {
  EXPECT_FALSE(URIOperations::exists(at("a.test") + std::u16string(1, u'\0')));
  EXPECT_FALSE(URIOperations::exists(at("") + loneSurrogates));
  EXPECT_FALSE(URIOperations::isReadable(std::u16string(1 << 16, u'x')));
}

}  // namespace
