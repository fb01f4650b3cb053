#include "platform/services/ForwardingFileSystem.h"

#include <utility>

namespace lx::services {

ForwardingFileSystem::ForwardingFileSystem() : target_(share()) {}

ForwardingFileSystem::ForwardingFileSystem(std::shared_ptr<const FileSystem> target) noexcept
    : target_(std::move(target)) {}

ForwardingFileSystem::~ForwardingFileSystem() = default;

std::u16string ForwardingFileSystem::make_native_form(const std::u16string& path, bool flag) const {
  return target_->make_native_form(path, flag);
}

std::u16string ForwardingFileSystem::make_generic_form(const std::u16string& path) const {
  return target_->make_generic_form(path);
}

std::u16string ForwardingFileSystem::extract_filename(const std::u16string& path) const {
  return target_->extract_filename(path);
}

std::u16string ForwardingFileSystem::extract_extension(const std::u16string& path) const {
  return target_->extract_extension(path);
}

std::u16string ForwardingFileSystem::extract_parent_path(const std::u16string& path) const {
  return target_->extract_parent_path(path);
}

bool ForwardingFileSystem::exists(const std::u16string& path) const {
  return target_->exists(path);
}

bool ForwardingFileSystem::access(const std::u16string& path, int mode) const {
  return target_->access(path, mode);
}

unsigned ForwardingFileSystem::status(const std::u16string& path) const {
  return target_->status(path);
}

}  // namespace lx::services
