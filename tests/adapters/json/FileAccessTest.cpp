#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "adapters/json/Checksum.h"
#include "adapters/json/FileAccess.h"
#include "adapters/json/Limits.h"
#include "tests/adapters/json/TemporaryFolder.h"

using nd::adapters::json::checkFile;
using nd::adapters::json::checksumOf;
using nd::adapters::json::checksumOfFile;
using nd::adapters::json::FileFailure;
using nd::adapters::json::fileFailure;
using nd::adapters::json::FileFailureKind;
using nd::adapters::json::isRegularFile;
using nd::adapters::json::maximumFileSize;
using nd::adapters::json::readFile;

namespace {

struct Failure {
  FileFailureKind kind;
  std::string words;

  friend bool operator==(const Failure&, const Failure&) = default;
  friend std::ostream& operator<<(std::ostream& stream, const Failure& failure) {
    return stream << static_cast<int>(failure.kind) << ": " << failure.words;
  }
};

template <typename Call>
Failure failureOf(const Call& call) {
  try {
    call();
  } catch (const FileFailure& failure) {
    return {failure.kind(), failure.what()};
  }
  return {FileFailureKind::Inaccessible, "there was none"};
}

/// All three ways to a file must fail alike.
Failure failureOfFile(const std::string& path) {
  const Failure failure = failureOf([&] { readFile(path); });
  EXPECT_EQ(failureOf([&] { checkFile(path); }), failure);
  EXPECT_EQ(failureOf([&] { checksumOfFile(path); }), failure);
  return failure;
}

std::size_t countOpenFiles() {
  std::size_t count = 0;
  for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) ++count;
  return count;
}

const Failure noSuchFile{FileFailureKind::Inaccessible, "There is no such file."};

}  // namespace

TEST(ReadFile, GivesAllBytes) {
  const TemporaryFolder folder;
  const std::string content("a\0b\r\n\xFF", 6);
  EXPECT_EQ(readFile(folder.write("a.json", content)).content(), content);
}

TEST(ReadFile, ReadsAnEmptyFile) {
  const TemporaryFolder folder;
  EXPECT_EQ(readFile(folder.write("a.json", "")).content(), "");
}

TEST(ReadFile, FollowsALink) {
  const TemporaryFolder folder;
  std::filesystem::create_symlink(folder.write("a.json", "{}"), folder.path("link.json"));
  EXPECT_EQ(readFile(folder.path("link.json")).content(), "{}");
}

TEST(ReadFile, ReadsAFileWhoseSizeTheSystemDoesNotTell) {
  // Files of the process file system are regular and say that they have no bytes.
  const std::string path = "/proc/self/status";
  ASSERT_EQ(std::filesystem::file_size(path), 0U);
  const auto content = readFile(path);
  EXPECT_TRUE(content.content().starts_with("Name:"));
  EXPECT_EQ(content.content().back(), '\n');
}

TEST(ReadFile, ClosesTheFile) {
  const TemporaryFolder folder;
  const std::string path = folder.write("a.json", "{}");
  const std::size_t before = countOpenFiles();
  readFile(path);
  checkFile(path);
  checksumOfFile(path);
  failureOfFile(folder.path(""));
  EXPECT_EQ(countOpenFiles(), before);
}

TEST(ReadFile, RefusesAMissingFile) {
  const TemporaryFolder folder;
  EXPECT_EQ(failureOfFile(folder.path("missing.json")), noSuchFile);
  EXPECT_EQ(failureOfFile(folder.path("missing/a.json")), noSuchFile);
  EXPECT_EQ(failureOfFile(folder.write("a.json", "{}") + "/b.json"), noSuchFile);
  EXPECT_EQ(failureOfFile(""), noSuchFile);
}

TEST(ReadFile, RefusesAPathWithANulWhichWouldNameAnotherFile) {
  const TemporaryFolder folder;
  const std::string path = folder.write("a.json", "{}");
  EXPECT_EQ(failureOfFile(path + std::string("\0.json", 6)), noSuchFile);
}

TEST(ReadFile, RefusesAFolder) {
  const TemporaryFolder folder;
  EXPECT_EQ(failureOfFile(folder.path("")),
            (Failure{FileFailureKind::Inaccessible, "It is a folder and not a file."}));
}

TEST(ReadFile, RefusesAPipeWithoutWaitingForAWriter) {
  const TemporaryFolder folder;
  const std::string path = folder.path("pipe.json");
  ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
  EXPECT_EQ(failureOfFile(path), (Failure{FileFailureKind::Inaccessible,
                                          "It is a pipe, a device or the like and not a regular file."}));
}

TEST(ReadFile, RefusesADevice) {
  EXPECT_EQ(
      failureOfFile("/dev/null"),
      (Failure{FileFailureKind::Inaccessible, "It is a pipe, a device or the like and not a regular file."}));
}

TEST(ReadFile, RefusesALinkThatLeadsToItself) {
  const TemporaryFolder folder;
  std::filesystem::create_symlink(folder.path("a.json"), folder.path("a.json"));
  const Failure failure = failureOfFile(folder.path("a.json"));
  EXPECT_EQ(failure.kind, FileFailureKind::Inaccessible);
  EXPECT_TRUE(failure.words.starts_with("It can't be read: ")) << failure.words;
}

TEST(ReadFile, RefusesAFileBeyondTheLimitWithoutReadingIt) {
  const TemporaryFolder folder;
  const std::string path = folder.write("large.json", "{}");
  std::filesystem::resize_file(path, maximumFileSize + 1);  // sparse: it takes no room
  EXPECT_EQ(failureOf([&] { readFile(path); }),
            (Failure{FileFailureKind::TooLarge, "The file is larger than 2048 MiB, the most that is read."}));
}

TEST(FileFailures, CarryTheMessageOfTheCatalogue) {
  const FileFailure failure = fileFailure(EIO);
  EXPECT_STREQ(failure.catalogue(), "json:messages");
  EXPECT_STREQ(failure.key(), "UnreadableFile");
  EXPECT_EQ(failure.arguments(), (std::vector<std::u16string>{u"Input/output error"}));
  EXPECT_STREQ(failure.what(), "It can't be read: Input/output error.");
}

TEST(FileFailureKinds, FollowFromTheErrorNumber) {
  EXPECT_EQ(fileFailure(ENOENT).kind(), FileFailureKind::Inaccessible);
  EXPECT_EQ(fileFailure(ENOTDIR).kind(), FileFailureKind::Inaccessible);
  EXPECT_EQ(fileFailure(EIO).kind(), FileFailureKind::Inaccessible);
  EXPECT_EQ(fileFailure(EMFILE).kind(), FileFailureKind::Inaccessible);
  EXPECT_EQ(fileFailure(EACCES).kind(), FileFailureKind::NoPermission);
  EXPECT_EQ(fileFailure(EPERM).kind(), FileFailureKind::NoPermission);
  EXPECT_STREQ(fileFailure(EACCES).what(), "There is no permission to read it.");
}

TEST(IsRegularFile, HoldsForAFileOnly) {
  const TemporaryFolder folder;
  const std::string path = folder.write("a.json", "");
  EXPECT_TRUE(isRegularFile(path));
  EXPECT_FALSE(isRegularFile(folder.path("")));
  EXPECT_FALSE(isRegularFile(folder.path("b.json")));
  EXPECT_FALSE(isRegularFile("/dev/null"));
  EXPECT_FALSE(isRegularFile(path + std::string("\0", 1)));
}

TEST(ChecksumOfFile, IsThatOfItsBytes) {
  const TemporaryFolder folder;
  std::string content;
  while (content.size() < 600000) content += std::to_string(content.size());
  EXPECT_EQ(checksumOfFile(folder.write("a.json", content)), checksumOf(content));
  EXPECT_EQ(checksumOfFile(folder.write("b.json", "")), checksumOf(""));
}
