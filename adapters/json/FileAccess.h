#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "adapters/json/Limits.h"
#include "adapters/json/PaddedText.h"
#include "platform/services/CatalogMessage.h"

namespace nd::adapters::json {

enum class FileFailureKind {
  Inaccessible,  ///< it isn't there, is no regular file, or can't be read
  NoPermission,  ///< the process has no right to it
  TooLarge       ///< it is larger than `maximumFileSize`
};

/// A file that can't be read. The sentence doesn't name it.
class FileFailure : public lx::services::CatalogMessage {
 public:
  FileFailure(FileFailureKind kind, const lx::services::CatalogMessage& message) noexcept
      : CatalogMessage(message), kind_(kind) {}

  FileFailureKind kind() const noexcept { return kind_; }

 private:
  FileFailureKind kind_;
};

/// Make the failure that an error number of the system stands for.
FileFailure fileFailure(int errorNumber);

/// Tell whether there is a regular file at the path; false too if that can't be found out.
bool isRegularFile(const std::string& path) noexcept;

/// Check that a regular file is there and can be opened for reading. Raises `FileFailure`.
void checkFile(const std::string& path);

/// Read all of a regular file; it is closed on return. A pipe or a device is refused and not opened, so the
/// call doesn't wait for anyone. Raises `FileFailure`, also for a file that has more bytes than `most`, which
/// is what other files have left of the limit.
PaddedText readFile(const std::string& path, std::uint64_t most = maximumFileSize);

/// How much of a file counts as its beginning, in bytes.
inline constexpr std::size_t headSize = std::size_t{1} << 16;

/// Give the checksum of a regular file's content, as `checksumOf` does of the same bytes, with little memory
/// whatever its size; and its beginning, if that is wanted. Raises `FileFailure`.
std::u16string checksumOfFile(const std::string& path, std::string* head = nullptr);

}  // namespace nd::adapters::json
