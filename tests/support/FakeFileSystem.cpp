#include "tests/support/FakeFileSystem.h"

#include <algorithm>
#include <utility>

#include "platform/text/Convert.h"

using lx::text::toUtf8;

namespace support {

std::u16string FakeFileSystem::generic(std::u16string path) const {
  std::replace(path.begin(), path.end(), nativeSeparator, u'/');
  return path;
}

std::u16string FakeFileSystem::make_native_form(const std::u16string& path, bool flag) const {
  log_->enter("fs", "make_native_form", "(" + toUtf8(path) + (flag ? ", true)" : ", false)"));
  std::u16string native = path;
  std::replace(native.begin(), native.end(), u'/', nativeSeparator);
  return native;
}

std::u16string FakeFileSystem::make_generic_form(const std::u16string& path) const {
  log_->enter("fs", "make_generic_form", "(" + toUtf8(path) + ")");
  return generic(path);
}

std::u16string FakeFileSystem::extract_filename(const std::u16string& path) const {
  log_->enter("fs", "extract_filename", "(" + toUtf8(path) + ")");
  return ForwardingFileSystem::extract_filename(generic(path));
}

std::u16string FakeFileSystem::extract_extension(const std::u16string& path) const {
  log_->enter("fs", "extract_extension", "(" + toUtf8(path) + ")");
  return ForwardingFileSystem::extract_extension(generic(path));
}

std::u16string FakeFileSystem::extract_parent_path(const std::u16string& path) const {
  log_->enter("fs", "extract_parent_path", "(" + toUtf8(path) + ")");
  return ForwardingFileSystem::extract_parent_path(generic(path));
}

bool FakeFileSystem::exists(const std::u16string& path) const {
  log_->enter("fs", "exists", "(" + toUtf8(path) + ")");
  return files.count(path) != 0;
}

bool FakeFileSystem::access(const std::u16string& path, int mode) const {
  log_->enter("fs", "access", "(" + toUtf8(path) + ", " + std::to_string(mode) + ")");
  const auto found = files.find(path);
  return found != files.end() && found->second.isReadable;
}

unsigned FakeFileSystem::status(const std::u16string& path) const {
  log_->enter("fs", "status", "(" + toUtf8(path) + ")");
  return files.count(path) != 0 ? regular_file : 0U;
}

}  // namespace support
