#include <array>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string_view>
#include <utility>

#include <boost/uuid/name_generator_sha1.hpp>
#include <boost/uuid/uuid_io.hpp>
#include <params/ParamsAdapter.h>
#include <params/Reader.h>

#include "platform/text/Convert.h"
#include "platform/text/FoldedCompare.h"

namespace params {
namespace {

using nd::data::adapter::AdapterDiagnostic;
using ndx::broker::URIOperations;

/// A source that can't be read. `what` is a sentence for people.
class SourceFailure : public std::runtime_error {
 public:
  SourceFailure(AdapterDiagnostic diagnostic, const char* words)
      : std::runtime_error(words), diagnostic_(diagnostic) {}

  AdapterDiagnostic diagnostic() const noexcept { return diagnostic_; }

 private:
  AdapterDiagnostic diagnostic_;
};

std::filesystem::path pathOf(const std::u16string& source) {
  return lx::text::toUtf8(URIOperations::removeTag(source));
}

bool isRegularFile(const std::u16string& source) {
  std::error_code ignored;
  return std::filesystem::is_regular_file(pathOf(source), ignored);
}

void checkFile(const std::u16string& source) {
  if (!URIOperations::exists(source)) {
    throw SourceFailure(AdapterDiagnostic::Inaccessible, "There is no such file.");
  }
  // Opening a pipe would wait for somebody who writes into it.
  if (!isRegularFile(source)) {
    throw SourceFailure(AdapterDiagnostic::Inaccessible, "It is not a regular file.");
  }
  if (!URIOperations::isReadable(source)) {
    throw SourceFailure(AdapterDiagnostic::NoPermission, "There is no permission to read it.");
  }
}

std::string readFile(const std::u16string& source) {
  checkFile(source);
  std::ifstream file(pathOf(source), std::ios::binary);
  std::string content;
  std::array<char, 16384> piece{};
  while (file) {
    file.read(piece.data(), piece.size());
    content.append(piece.data(), static_cast<std::size_t>(file.gcount()));
  }
  if (!file.eof()) throw SourceFailure(AdapterDiagnostic::HardError, "Reading it broke off.");
  return content;
}

/// Replace all variables of a workspace. If the memory runs out on the way, the workspace is left without
/// variables and the exception passes.
void replaceContent(const CPPAdapterV2::Workspace& workspace, const std::vector<Variable>& variables) {
  inClearArraysInDesiredWS(workspace);
  try {
    for (const Variable& variable : variables) {
      inAssignInDesiredWS(variable.value.get(), variable.name, workspace);
    }
  } catch (...) {
    inClearArraysInDesiredWS(workspace);
    throw;
  }
}

}  // namespace

CPPAdapterV2* ParamsAdapter::clone() {
  return new ParamsAdapter;
}

std::u16string ParamsAdapter::getAdapterName() {
  return u"Params";
}

std::vector<std::u16string> ParamsAdapter::getSupportedExtensions() {
  return {u".params"};
}

bool ParamsAdapter::isSourceValid(const std::u16string& source) {
  return URIOperations::exists(source) && isRegularFile(source);
}

bool ParamsAdapter::supportsReading(const std::u16string& source) {
  return lx::text::equalNormalizedIgnoringCase(URIOperations::getExtension(source), u"params");
}

bool ParamsAdapter::supportsWriting(const std::u16string&) {
  return false;
}

bool ParamsAdapter::open(const std::u16string& source) {
  source_ = source;
  isOpen_ = true;
  try {
    checkFile(source_);
  } catch (const SourceFailure&) {
    return false;
  }
  return true;
}

bool ParamsAdapter::close() {
  return std::exchange(isOpen_, false);
}

std::u16string ParamsAdapter::getCurrentChecksum() {
  if (!isOpen_) return {};
  try {
    const std::string content = readFile(source_);
    const boost::uuids::name_generator_sha1 generate{boost::uuids::ns::oid()};
    return lx::text::toUtf16(to_string(generate(content.data(), content.size())));
  } catch (const SourceFailure&) {
    return {};
  }
}

bool ParamsAdapter::hasData() {
  if (!isOpen_) return false;
  try {
    return !readVariables(readFile(source_)).empty();
  } catch (const SourceFailure&) {
    return false;
  } catch (const FormatError&) {
    return false;
  }
}

bool ParamsAdapter::getData(const Workspace& dataCache, MetaDataCache& metaDataCache, const std::u16string&,
                            nd::data::adapter::AdapterError& error) {
  const auto fail = [&](AdapterDiagnostic diagnostic, std::string_view words) {
    error.setError(diagnostic, lx::text::toUtf16(words), getAdapterName(), source_);
    return false;
  };
  if (!isOpen_) return fail(AdapterDiagnostic::GenericFailure, "No source is open.");
  try {
    const std::vector<Variable> variables = readVariables(readFile(source_));
    metaDataCache.clear();
    replaceContent(dataCache, variables);
  } catch (const SourceFailure& failure) {
    return fail(failure.diagnostic(), failure.what());
  } catch (const FormatError& failure) {
    return fail(AdapterDiagnostic::UnrecognizedFormat, failure.what());
  }
  return true;
}

bool ParamsAdapter::writeData(const Workspace&, const Workspace&, MetaDataCache&,
                              const nd::data::adapter::ChangeReport&,
                              nd::data::adapter::AdapterError& error) {
  error.setError(AdapterDiagnostic::Unsupported, u"Files of parameters are read only, not written.",
                 getAdapterName(), source_);
  return false;
}

}  // namespace params
