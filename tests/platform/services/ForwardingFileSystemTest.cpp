#include <memory>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/services/ForwardingFileSystem.h"

namespace {

using lx::services::FileSystem;
using lx::services::ForwardingFileSystem;
using testing::Return;

class MockFileSystem : public FileSystem {
 public:
  MOCK_METHOD(std::u16string, make_native_form, (const std::u16string&, bool), (const, override));
  MOCK_METHOD(std::u16string, make_generic_form, (const std::u16string&), (const, override));
  MOCK_METHOD(std::u16string, extract_filename, (const std::u16string&), (const, override));
  MOCK_METHOD(std::u16string, extract_extension, (const std::u16string&), (const, override));
  MOCK_METHOD(std::u16string, extract_parent_path, (const std::u16string&), (const, override));
  MOCK_METHOD(bool, exists, (const std::u16string&), (const, override));
  MOCK_METHOD(bool, access, (const std::u16string&, int), (const, override));
  MOCK_METHOD(unsigned, status, (const std::u16string&), (const, override));
};

const std::u16string path = u"a/b";

TEST(ForwardingFileSystem, HandsEveryQuestionOn) {
  const auto target = std::make_shared<testing::StrictMock<MockFileSystem>>();
  EXPECT_CALL(*target, make_native_form(path, true)).WillOnce(Return(u"native"));
  EXPECT_CALL(*target, make_native_form(path, false)).WillOnce(Return(u"plain"));
  EXPECT_CALL(*target, make_generic_form(path)).WillOnce(Return(u"generic"));
  EXPECT_CALL(*target, extract_filename(path)).WillOnce(Return(u"filename"));
  EXPECT_CALL(*target, extract_extension(path)).WillOnce(Return(u"extension"));
  EXPECT_CALL(*target, extract_parent_path(path)).WillOnce(Return(u"parent"));
  EXPECT_CALL(*target, exists(path)).WillOnce(Return(true));
  EXPECT_CALL(*target, access(path, 5)).WillOnce(Return(true));
  EXPECT_CALL(*target, status(path)).WillOnce(Return(12345U));
  const ForwardingFileSystem forwarding(target);
  EXPECT_EQ(forwarding.make_native_form(path, true), u"native");
  EXPECT_EQ(forwarding.make_native_form(path, false), u"plain");
  EXPECT_EQ(forwarding.make_generic_form(path), u"generic");
  EXPECT_EQ(forwarding.extract_filename(path), u"filename");
  EXPECT_EQ(forwarding.extract_extension(path), u"extension");
  EXPECT_EQ(forwarding.extract_parent_path(path), u"parent");
  EXPECT_TRUE(forwarding.exists(path));
  EXPECT_TRUE(forwarding.access(path, 5));
  EXPECT_EQ(forwarding.status(path), 12345U);
}

TEST(ForwardingFileSystem, ForwardsToWhatServedWhenItWasMade) {
  const auto target = std::make_shared<testing::StrictMock<MockFileSystem>>();
  EXPECT_CALL(*target, exists(path)).WillOnce(Return(true));
  const FileSystem::Replacement outer(target);
  const FileSystem::Replacement inner(std::make_shared<ForwardingFileSystem>());
  EXPECT_NE(&FileSystem::current(), target.get());
  EXPECT_TRUE(FileSystem::current().exists(path));
}

}  // namespace
