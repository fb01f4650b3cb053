#include "nd_data_adapter/model/URIOperations.h"

#include <string_view>

#include "platform/services/FileSystem.h"

namespace ndx::broker {

namespace {

using lx::services::FileSystem;

/// Give a path in the notation of the platform; an empty one stays empty.
std::u16string normalised(const std::u16string& path) {
  return path.empty() ? path : FileSystem::current().make_native_form(path, true);
}

}  // namespace

bool URIOperations::exists(const std::u16string& uri) {
  const std::u16string path = removeTag(uri);
  try {
    return FileSystem::current().exists(path);
  } catch (...) {
    return false;
  }
}

bool URIOperations::isReadable(const std::u16string& uri) {
  const std::u16string path = removeTag(uri);
  try {
    return FileSystem::current().access(path, FileSystem::read_access);
  } catch (...) {
    return false;
  }
}

std::u16string URIOperations::removeTag(const std::u16string& uri) {
  const std::u16string_view shortened = std::u16string_view(uri).substr(0, uri.find(u'&'));
  return uri.substr(0, shortened.find(u'#'));
}

std::u16string URIOperations::getFileNameWithExtension(const std::u16string& uri) {
  return FileSystem::current().extract_filename(normalised(removeTag(uri)));
}

std::u16string URIOperations::getExtension(const std::u16string& uri) {
  return FileSystem::current().extract_extension(normalised(removeTag(uri)));
}

std::u16string URIOperations::removeValueOverrideSrcTag(const std::u16string& uri) {
  return uri.substr(0, uri.find(u'&'));
}

}  // namespace ndx::broker
