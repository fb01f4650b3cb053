#include "GainsAdapter.h"

#include <charconv>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <stdexcept>
#include <system_error>
#include <utility>

#include <boost/uuid/name_generator_sha1.hpp>
#include <boost/uuid/uuid_io.hpp>

#include "platform/foundation/ElementMap.h"
#include "platform/text/Convert.h"

using nd::data::adapter::AdapterDiagnostic;
using nd::data::adapter::AdapterError;
using ndx::broker::URIOperations;

namespace {

// [parse]
struct Gain {
  std::string name;
  double value = 0.0;
};

/// Reads all lines, or raises `std::invalid_argument` with the place of the first that is wrong.
std::vector<Gain> parse(const std::string& content) {
  std::vector<Gain> gains;
  std::set<std::string> names;
  std::istringstream lines(content);
  std::string line;
  for (int number = 1; std::getline(lines, line); ++number) {
    const auto wrong = [&](const std::string& words) {
      return std::invalid_argument("Line " + std::to_string(number) + ": " + words);
    };
    std::istringstream words(line);
    Gain gain;
    std::string value;
    std::string more;
    if (!(words >> gain.name)) continue;
    words >> value;
    const char* const end = value.data() + value.size();
    const auto read = std::from_chars(value.data(), end, gain.value);
    if (read.ec != std::errc() || read.ptr != end)
      throw wrong("expected a number, but found '" + value + "'");
    if (words >> more) throw wrong("expected the end of the line, but found '" + more + "'");
    if (!names.insert(gain.name).second) throw wrong("the name '" + gain.name + "' is there already");
    gains.push_back(gain);
  }
  return gains;
}
// [/parse]

// [file]
/// The file of a source, which may carry a tag: "engine.gains#tuned".
std::filesystem::path fileOf(const std::u16string& source) {
  return lx::text::toUtf8(URIOperations::removeTag(source));
}

bool isFile(const std::u16string& source) {
  std::error_code ignored;
  return std::filesystem::is_regular_file(fileOf(source), ignored);
}

bool readFile(const std::u16string& source, std::string& content) {
  if (!isFile(source)) return false;  // a folder can be opened, and waiting for a pipe may take forever
  std::ifstream file(fileOf(source), std::ios::binary);
  if (!file) return false;
  content.assign(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
  return !file.bad();
}
// [/file]

}  // namespace

// [opening]
bool GainsAdapter::isSourceValid(const std::u16string& source) {
  return isFile(source);
}

bool GainsAdapter::open(const std::u16string& source) {
  source_ = source;
  isOpen_ = true;
  return isFile(source);
}

bool GainsAdapter::close() {
  return std::exchange(isOpen_, false);
}

std::u16string GainsAdapter::getCurrentChecksum() {
  std::string content;
  if (!isOpen_ || !readFile(source_, content)) return {};
  const boost::uuids::name_generator_sha1 generate{boost::uuids::ns::oid()};
  return lx::text::toUtf16(to_string(generate(content.data(), content.size())));
}

bool GainsAdapter::hasData() {
  std::string content;
  if (!isOpen_ || !readFile(source_, content)) return false;
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
  if (!readFile(source_, content)) {
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
