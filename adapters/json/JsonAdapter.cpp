#include "adapters/json/JsonAdapter.h"

#include <cerrno>
#include <filesystem>
#include <string_view>
#include <utility>

#include "adapters/json/FileAccess.h"
#include "adapters/json/FormatFailure.h"
#include "adapters/json/MetaData.h"
#include "adapters/json/SourceFiles.h"
#include "adapters/json/WorkspaceReplacement.h"
#include "adapters/json/messages.h"
#include "nd_data_adapter/model/AdapterDiagnostic.h"
#include "nd_data_adapter/model/AdapterError.h"
#include "nd_data_adapter/model/URIOperations.h"
#include "platform/services/CatalogMessage.h"
#include "platform/services/FileSystem.h"
#include "platform/text/Convert.h"
#include "platform/text/FoldedCompare.h"

namespace nd::adapters::json {
namespace {

using lx::services::FileSystem;
using nd::data::adapter::AdapterDiagnostic;
using ndx::broker::URIOperations;

constexpr std::u16string_view adapterName = u"JSON";
constexpr std::u16string_view extension = u"json";

AdapterDiagnostic diagnosticOf(FileFailureKind kind) {
  switch (kind) {
    case FileFailureKind::NoPermission:
      return AdapterDiagnostic::NoPermission;
    case FileFailureKind::TooLarge:
      return AdapterDiagnostic::GenericFailure;
    case FileFailureKind::Inaccessible:
      break;
  }
  return AdapterDiagnostic::Inaccessible;
}

void checkRights(const std::string& path, const std::u16string& location) {
  // The system's own refusal names the cause; beyond that the host may forbid more than the system does.
  checkFile(path);
  try {
    const FileSystem& host = FileSystem::current();
    if (host.access(location, FileSystem::read_access)) return;
    throw fileFailure(host.exists(location) ? EACCES : ENOENT);
  } catch (const std::filesystem::filesystem_error& error) {
    throw fileFailure(error.code().value());
  }
}

}  // namespace

CPPAdapterV2* JsonAdapter::clone() {
  return new JsonAdapter;
}

std::u16string JsonAdapter::getAdapterName() {
  return std::u16string(adapterName);
}

std::vector<std::u16string> JsonAdapter::getSupportedExtensions() {
  return {u"." + std::u16string(extension)};
}

bool JsonAdapter::isSourceValid(const std::u16string& source) {
  return URIOperations::exists(source) && isRegularFile(lx::text::toUtf8(URIOperations::removeTag(source)));
}

bool JsonAdapter::supportsReading(const std::u16string& source) {
  return lx::text::equalNormalizedIgnoringCase(URIOperations::getExtension(source), extension);
}

bool JsonAdapter::supportsWriting(const std::u16string&) {
  return false;
}

bool JsonAdapter::open(const std::u16string& source) {
  std::u16string itsSource = source;
  std::u16string location = URIOperations::removeTag(source);
  std::string path = lx::text::toUtf8(location);
  close();
  source_ = std::move(itsSource);
  location_ = std::move(location);
  path_ = std::move(path);
  isOpen_ = true;
  try {
    checkRights(path_, location_);
  } catch (const FileFailure&) {
    return false;
  }
  return true;
}

bool JsonAdapter::close() {
  forgetRead();
  return std::exchange(isOpen_, false);
}

std::u16string JsonAdapter::getCurrentChecksum() {
  if (!isOpen_) return {};
  try {
    return SourceFiles::survey(path_, rights()).checksum();
  } catch (const FileFailure&) {
    return {};
  }
}

std::vector<std::u16string> JsonAdapter::getExternalSources() {
  if (!isOpen_) return {};
  std::vector<std::u16string> sources;
  try {
    for (const std::string& path : SourceFiles::survey(path_, rights()).included())
      sources.push_back(lx::text::toUtf16(path));
  } catch (const FileFailure&) {
    return {};
  }
  return sources;
}

bool JsonAdapter::hasData() {
  if (!isOpen_) return false;
  try {
    return !SourceFiles::read(path_, rights()).takeContent().variables.empty();
  } catch (const FileFailure&) {
    return false;
  } catch (const FormatFailure&) {
    return false;
  }
}

bool JsonAdapter::getData(const Workspace& dataCache, MetaDataCache& metaDataCache,
                          const std::u16string& prevChecksum, nd::data::adapter::AdapterError& error) {
  const auto fail = [&](AdapterDiagnostic diagnostic, const lx::services::CatalogMessage& message) {
    error.setError(diagnostic, message.text(), getAdapterName(), source_);
    return false;
  };
  if (!isOpen_) return fail(AdapterDiagnostic::GenericFailure, messages::NothingOpen());
  try {
    read(dataCache, metaDataCache, prevChecksum);
  } catch (const FileFailure& failure) {
    return fail(diagnosticOf(failure.kind()), failure);
  } catch (const FormatFailure& failure) {
    return fail(AdapterDiagnostic::UnrecognizedFormat, failure);
  }
  return true;
}

bool JsonAdapter::writeData(const Workspace&, const Workspace&, MetaDataCache&,
                            const nd::data::adapter::ChangeReport&, nd::data::adapter::AdapterError& error) {
  error.setError(AdapterDiagnostic::Unsupported, messages::ReadOnly().text(), getAdapterName(), source_);
  return false;
}

void JsonAdapter::read(const Workspace& dataCache, MetaDataCache& metaDataCache,
                       const std::u16string& prevChecksum) {
  SourceFiles files = SourceFiles::read(path_, rights());
  std::u16string checksum = files.checksum();
  const MetaDataIdentity metaData{metaDataCache.owner().identifier(), metaDataCache.index()};
  if (prevChecksum == checksum && wasReadInto(dataCache, metaData, checksum)) return;
  const Content content = files.takeContent();

  // What a failure leaves of the caches is not what was read before.
  forgetRead();
  WorkspaceReplacement replacement(dataCache, content.variables);
  replaceMetaData(metaDataCache, content.metaData);
  replacement.keep();
  lastChecksum_ = std::move(checksum);
  lastWorkspace_ = dataCache;
  lastMetaData_ = metaData;
}

void JsonAdapter::forgetRead() noexcept {
  lastChecksum_.clear();
  lastWorkspace_.reset();
}

std::function<void(const std::string& path)> JsonAdapter::rights() const {
  return [this](const std::string& path) {
    checkRights(path, path == path_ ? location_ : lx::text::toUtf16(path));
  };
}

bool JsonAdapter::wasReadInto(const Workspace& dataCache, const MetaDataIdentity& metaData,
                              const std::u16string& checksum) const {
  const bool isSameWorkspace =
      !lastWorkspace_.owner_before(dataCache) && !dataCache.owner_before(lastWorkspace_);
  return !lastChecksum_.empty() && lastChecksum_ == checksum && isSameWorkspace && lastMetaData_ == metaData;
}

}  // namespace nd::adapters::json
