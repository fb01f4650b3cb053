// [includes]
#include "GainsAdapter.h"

#include <filesystem>
#include <stdexcept>
#include <system_error>
#include <utility>
#include <vector>

#include "gains.h"
#include "platform/foundation/ElementMap.h"
#include "platform/text/Convert.h"

using nd::data::adapter::AdapterDiagnostic;
using nd::data::adapter::AdapterError;
using ndx::broker::URIOperations;

namespace {

/// The file of a source, which may carry a tag: "engine.gains#tuned".
std::filesystem::path fileOf(const std::u16string& source) {
  return lx::text::toUtf8(URIOperations::removeTag(source));
}

}  // namespace
// [/includes]

// [opening]
bool GainsAdapter::isSourceValid(const std::u16string& source) {
  std::error_code ignored;
  return std::filesystem::is_regular_file(fileOf(source), ignored);
}

bool GainsAdapter::open(const std::u16string& source) {
  source_ = source;
  isOpen_ = true;
  return isSourceValid(source);
}

bool GainsAdapter::close() {
  return std::exchange(isOpen_, false);
}

std::u16string GainsAdapter::getCurrentChecksum() {
  std::string content;
  if (!isOpen_ || !readFile(fileOf(source_), content)) return {};
  return checksumOf(content);
}

bool GainsAdapter::hasData() {
  std::string content;
  if (!isOpen_ || !readFile(fileOf(source_), content)) return false;
  try {
    return !parse(content).empty();
  } catch (const std::invalid_argument&) {
    return false;
  }
}
// [/opening]

// [reading]
bool GainsAdapter::getData(const Workspace& dataCache, MetaDataCache& metaDataCache, const std::u16string&,
                           AdapterError& error) {
  const auto fail = [&](AdapterDiagnostic diagnostic, const std::string& words) {
    error.setError(diagnostic, lx::text::toUtf16(words), getAdapterName(), source_);
    return false;
  };
  if (!isOpen_) return fail(AdapterDiagnostic::GenericFailure, "No source is open.");
  std::string content;
  if (!readFile(fileOf(source_), content)) {
    return fail(AdapterDiagnostic::Inaccessible, "There is no file that can be read.");
  }
  std::vector<Gain> gains;
  try {
    gains = parse(content);
  } catch (const std::invalid_argument& wrong) {
    return fail(AdapterDiagnostic::UnrecognizedFormat, wrong.what());
  }

  // From here on nothing can be wrong with the source: only now the client's data are touched.
  inClearArraysInDesiredWS(dataCache);
  metaDataCache.clear();
  for (const Gain& gain : gains) {
    const hvArrayPtr value(hvCreateDoubleScalar(gain.value));
    inAssignInDesiredWS(value.get(), gain.name, dataCache);
  }
  return true;
}

bool GainsAdapter::writeData(const Workspace&, const Workspace&, MetaDataCache&,
                             const nd::data::adapter::ChangeReport&, AdapterError& error) {
  error.setError(AdapterDiagnostic::Unsupported, u"Files of gains are read only, not written.",
                 getAdapterName(), source_);
  return false;
}
// [/reading]
