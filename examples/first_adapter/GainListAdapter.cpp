#include "GainListAdapter.h"

#include <filesystem>
#include <set>
#include <sstream>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "gains.h"
#include "platform/foundation/ElementMap.h"
#include "platform/foundation/Transaction.h"
#include "platform/text/Convert.h"

using nd::data::adapter::AdapterDiagnostic;
using nd::data::adapter::AdapterError;
using nd::data::adapter::DataContainer;
using nd::data::adapter::MetaDataEntry;
using ndx::broker::URIOperations;

namespace {

/// A gain, and the file where it stands.
struct Found {
  Gain gain;
  std::filesystem::path file;
};

std::filesystem::path listOf(const std::u16string& source) {
  return lx::text::toUtf8(URIOperations::removeTag(source));
}

// [external]
/// Lists the files that a list names; none if there is no list.
std::vector<std::filesystem::path> filesOf(const std::filesystem::path& list) {
  std::vector<std::filesystem::path> files;
  std::string content;
  if (!readFile(list, content)) return files;
  std::istringstream lines(content);
  for (std::string line; std::getline(lines, line);) files.push_back(list.parent_path() / line);
  return files;
}

/// Gives a checksum of the list and of all that it names; a file that can't be read counts as an empty one.
std::u16string checksumOfAll(const std::filesystem::path& list) {
  std::string content;
  if (!readFile(list, content)) return {};
  std::u16string all = checksumOf(content);
  for (const std::filesystem::path& file : filesOf(list)) {
    content.clear();
    readFile(file, content);
    all += checksumOf(content);
  }
  return checksumOf(lx::text::toUtf8(all));
}
// [/external]

/// Reads all files of a list, or raises `std::invalid_argument` with the name of the first that is wrong.
std::vector<Found> readAll(const std::filesystem::path& list) {
  std::vector<Found> all;
  std::set<std::string> names;
  for (const std::filesystem::path& file : filesOf(list)) {
    const auto wrong = [&](const std::string& words) {
      return std::invalid_argument(file.filename().string() + ": " + words);
    };
    std::string content;
    if (!readFile(file, content)) throw wrong("There is no file that can be read.");
    try {
      for (Gain& gain : parse(content)) {
        if (!names.insert(gain.name).second) {
          throw std::invalid_argument("Another file has the name '" + gain.name + "' already.");
        }
        all.push_back({std::move(gain), file.filename()});
      }
    } catch (const std::invalid_argument& reason) {
      throw wrong(reason.what());
    }
  }
  return all;
}

// [metadata]
/// Makes the entry of a variable: under its name a container, in which each thing to say is a variable.
void addMetaData(CPPAdapterV2::MetaDataCache& metaDataCache, const Found& found) {
  const lx::base::Model model = metaDataCache.getModel();
  lx::base::Transaction change = model.impl()->beginTransaction(false);

  const DataContainer said = DataContainer::create(model);
  said.setDataCache(inCreateWorkspace(1));
  const hvArrayPtr file(hvCreateString(found.file.string()));
  inAssignInDesiredWS(file.get(), "file", said.dataCache());

  const MetaDataEntry entry = MetaDataEntry::create(model);
  entry.setName(lx::text::toUtf16(found.gain.name));
  entry.setValue(said);
  metaDataCache.add(entry);
  change.commit();
}
// [/metadata]

}  // namespace

bool GainListAdapter::isSourceValid(const std::u16string& source) {
  std::error_code ignored;
  return std::filesystem::is_regular_file(listOf(source), ignored);
}

bool GainListAdapter::open(const std::u16string& source) {
  source_ = source;
  isOpen_ = true;
  return isSourceValid(source);
}

bool GainListAdapter::close() {
  return std::exchange(isOpen_, false);
}

// [answers]
std::vector<std::u16string> GainListAdapter::getExternalSources() {
  std::vector<std::u16string> sources;
  if (!isOpen_) return sources;
  for (const std::filesystem::path& file : filesOf(listOf(source_))) {
    sources.push_back(lx::text::toUtf16(file.string()));
  }
  return sources;
}

std::u16string GainListAdapter::getCurrentChecksum() {
  return isOpen_ ? checksumOfAll(listOf(source_)) : std::u16string();
}
// [/answers]

bool GainListAdapter::hasData() {
  try {
    return isOpen_ && !readAll(listOf(source_)).empty();
  } catch (const std::invalid_argument&) {
    return false;
  }
}

bool GainListAdapter::getData(const Workspace& dataCache, MetaDataCache& metaDataCache, const std::u16string&,
                              AdapterError& error) {
  const auto fail = [&](AdapterDiagnostic diagnostic, const std::string& words) {
    error.setError(diagnostic, lx::text::toUtf16(words), getAdapterName(), source_);
    return false;
  };
  if (!isOpen_) return fail(AdapterDiagnostic::GenericFailure, "No source is open.");
  if (!isSourceValid(source_)) {
    return fail(AdapterDiagnostic::Inaccessible, "There is no list that can be read.");
  }
  std::vector<Found> all;
  try {
    all = readAll(listOf(source_));
  } catch (const std::invalid_argument& wrong) {
    return fail(AdapterDiagnostic::UnrecognizedFormat, wrong.what());
  }

  inClearArraysInDesiredWS(dataCache);
  metaDataCache.clear();
  for (const Found& found : all) {
    const hvArrayPtr value(hvCreateDoubleScalar(found.gain.value));
    inAssignInDesiredWS(value.get(), found.gain.name, dataCache);
    addMetaData(metaDataCache, found);
  }
  return true;
}

bool GainListAdapter::writeData(const Workspace&, const Workspace&, MetaDataCache&,
                                const nd::data::adapter::ChangeReport&, AdapterError& error) {
  error.setError(AdapterDiagnostic::Unsupported, u"Lists of gains are read only, not written.",
                 getAdapterName(), source_);
  return false;
}
