#include "tests/nd_data_adapter/conformance/LineAdapter.h"

#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <sstream>
#include <system_error>

using nd::data::adapter::AdapterDiagnostic;
using nd::data::adapter::MetaDataEntry;

namespace {

std::filesystem::path pathOf(const std::u16string& source) {
  return lx::text::toUtf8(ndx::broker::URIOperations::removeTag(source));
}

}  // namespace

bool LineAdapter::isThere(const std::filesystem::path& path) const {
  std::error_code ignored;
  return std::filesystem::is_regular_file(path, ignored);
}

std::string LineAdapter::contentOf(const std::filesystem::path& path) const {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

bool LineAdapter::isSourceValid(const std::u16string& source) {
  return isThere(pathOf(source));
}

bool LineAdapter::bind(const std::u16string& source) {
  source_ = source;
  isOpen_ = true;
  return isThere(pathOf(source));
}

bool LineAdapter::open(const std::u16string& source) {
  return bind(source);
}

bool LineAdapter::close() {
  source_.clear();
  return std::exchange(isOpen_, false);
}

bool LineAdapter::readContent(std::string& content) const {
  const std::filesystem::path path = pathOf(boundSource());
  if (!isThere(path)) return false;
  content = contentOf(path);
  return true;
}

std::u16string LineAdapter::getCurrentChecksum() {
  std::string content;
  if (!isOpen_ || !readContent(content)) return {};
  return lx::text::toUtf16(std::to_string(std::hash<std::string>()(content)));
}

bool LineAdapter::hasData() {
  std::string content;
  Variables variables;
  return isOpen_ && readContent(content) && parse(content, variables) && !variables.empty();
}

bool LineAdapter::getData(const Workspace& dataCache, MetaDataCache& metaDataCache, const std::u16string&,
                          Error& error) {
  std::string content;
  Variables variables;
  if (!isOpen_) return fail(error, AdapterDiagnostic::GenericFailure, u"No source is open.");
  if (!readContent(content)) return fail(error, AdapterDiagnostic::Inaccessible, u"There is no such file.");
  if (!parse(content, variables)) {
    return fail(error, AdapterDiagnostic::UnrecognizedFormat, u"A line is no name and number.");
  }
  inClearArraysInDesiredWS(dataCache);
  assign(variables, dataCache);
  metaDataCache.clear();
  addUnit(metaDataCache);
  return true;
}

bool LineAdapter::writeData(const Workspace&, const Workspace&, MetaDataCache&,
                            const nd::data::adapter::ChangeReport&, Error& error) {
  return fail(error, AdapterDiagnostic::Unsupported, u"Files of lines are not written.");
}

bool LineAdapter::parse(std::string_view content, Variables& variables) {
  std::istringstream lines{std::string(content)};
  std::string line;
  while (std::getline(lines, line)) {
    std::istringstream words(line);
    std::string name;
    double value = 0.0;
    if (!(words >> name >> value)) return false;
    variables.emplace_back(name, value);
  }
  return true;
}

void LineAdapter::assign(const Variables& variables, const Workspace& workspace) {
  for (const auto& [name, value] : variables) {
    const hvArrayPtr array(hvCreateDoubleScalar(value));
    inAssignInDesiredWS(array.get(), name, workspace);
  }
}

void LineAdapter::addUnit(MetaDataCache& metaDataCache) {
  metaDataCache.createInto(MetaDataEntry::Builder().setName(u"unit"));
}

bool LineAdapter::fail(Error& error, AdapterDiagnostic diagnostic, const std::u16string& message) {
  error.setError(diagnostic, message, getAdapterName(), boundSource());
  return false;
}
