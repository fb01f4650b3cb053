#include "tools/ndx/Source.h"

#include <algorithm>
#include <memory>

#include <fmt/format.h>

#include "nd_data_adapter/model/AdapterError.h"
#include "nd_data_adapter/model/AdapterManagerV2.h"
#include "nd_data_adapter/model/URIOperations.h"
#include "platform/host/Workspace.h"
#include "platform/services/Diagnostic.h"
#include "platform/text/Convert.h"
#include "tools/ndx/Failure.h"
#include "tools/ndx/nearNames.h"
#include "tools/ndx/quote.h"
#include "tools/ndx/registeredAdapters.h"

namespace nd::tools {
namespace {

using lx::text::toUtf16;
using lx::text::toUtf8;
using nd::data::adapter::AdapterConfig;
using nd::data::adapter::AdapterDiagnostic;
using nd::data::adapter::AdapterError;
using nd::data::adapter::AdapterManagerV2;
using nd::data::adapter::DataContainer;
using ndx::broker::URIOperations;

constexpr std::size_t UsualNumberOfVariables = 100;

/// Say of each adapter why it doesn't read the source.
std::vector<std::string> whyNoneReads(const SourceName& name, const SourceFacts& facts) {
  std::vector<std::string> hints;
  const std::string extension = toUtf8(URIOperations::getExtension(toUtf16(name.source)));
  std::vector<std::string> known;
  for (const RegisteredAdapter& adapter : registeredAdapters()) {
    known.insert(known.end(), adapter.extensions.begin(), adapter.extensions.end());
    if (facts.adapters.empty()) {
      hints.push_back(fmt::format("The adapter {} was tried: it reads {} and not {}.", quote(adapter.name),
                                  quoteAll(adapter.extensions),
                                  extension.empty() ? "names without extension" : quote("." + extension)));
    }
  }
  if (known.empty()) hints.emplace_back("No adapter is registered; load one with --load MODULE.");
  for (const std::string& near : nearNames("." + extension, known, 1)) {
    if (facts.adapters.empty())
      hints.push_back(fmt::format("Did you mean a file with the extension {}?", quote(near)));
  }
  for (const AdapterConfig& adapter : facts.adapters) {
    hints.push_back(fmt::format("The adapter {} claims the extension and doesn't read this source.",
                                quote(adapter.adapterName())));
  }
  for (const std::string& hint : hintsForPath(name.source)) hints.push_back(hint);
  return hints;
}

}  // namespace

SourceFacts factsOf(const SourceName& name) {
  const std::vector<std::string> hints = hintsForTag(name.source);
  const bool namesAnotherFile = !hints.empty() && AdapterManagerV2::doesSourceExist(toUtf16(name.source));
  if (namesAnotherFile) {
    throw Failure(ExitStatus::WrongUsage, fmt::format("{} can mean two files", quote(name.source)), hints);
  }
  SourceFacts facts{lx::base::Model::create(), {}};
  facts.adapters = AdapterManagerV2::getAdapterConfig(toUtf16(name.source), facts.model);
  return facts;
}

std::vector<std::string> sectionsThatRead(const SourceFacts& facts) {
  std::vector<std::string> result;
  for (const AdapterConfig& adapter : facts.adapters) {
    if (adapter.supportsReading()) result.push_back(toUtf8(adapter.section()));
  }
  return result;
}

std::string chooseSection(const SourceName& name, const SourceFacts& facts) {
  const std::vector<std::string> sections = sectionsThatRead(facts);
  if (sections.empty()) {
    throw Failure(ExitStatus::NoAdapter, fmt::format("no adapter reads {}", quote(name.source)),
                  whyNoneReads(name, facts));
  }
  if (name.section) {
    if (std::find(sections.begin(), sections.end(), *name.section) != sections.end()) return *name.section;
    std::vector<std::string> hints{fmt::format("Its sections are {}.", quoteAll(sections))};
    for (const std::string& near : nearNames(*name.section, sections, 1))
      hints.push_back(fmt::format("Did you mean {}?", quote(near)));
    throw Failure(
        ExitStatus::NoAdapter,
        fmt::format("no adapter reads the section {} of {}", quote(*name.section), quote(name.source)),
        hints);
  }
  if (sections.size() > 1) {
    throw Failure(ExitStatus::WrongUsage,
                  fmt::format("{} read {}", count(sections.size(), "adapter"), quote(name.source)),
                  {fmt::format("Choose one with --section; the sections are {}.", quoteAll(sections))});
  }
  return sections.front();
}

Source::Source(const SourceName& name, const SourceFacts& facts)
    : source_(name.source),
      section_(chooseSection(name, facts)),
      model_(lx::base::Model::create()),
      container_(DataContainer::create(model_)) {
  container_.setDataCache(inCreateWorkspace(UsualNumberOfVariables));
  try {
    // What an open that fails has to say comes with the read.
    AdapterManagerV2::openSource(toUtf16(source_), toUtf16(section_), model_.identifier());
    read();
  } catch (...) {
    close();
    throw;
  }
}

Source::~Source() {
  close();
}

void Source::close() noexcept {
  try {
    AdapterManagerV2::closeSource(toUtf16(source_), toUtf16(section_), model_.identifier());
  } catch (...) {
    // The data is here already, and the process ends soon: nobody is helped by hearing of it.
  }
}

void Source::read() {
  const AdapterError error =
      AdapterManagerV2::getData(toUtf16(source_), toUtf16(section_), container_, u"", model_);
  if (error.getId() == AdapterDiagnostic::NoDiagnostic) return;
  const bool isAbsent = error.getId() == AdapterDiagnostic::Inaccessible;
  const std::unique_ptr<ndsvDiagnosticImpl, void (*)(ndsvDiagnosticImpl*) noexcept> diagnostic(
      AdapterError::convertAdapterErrorsToDiagnostic({error}), &ndsvDestroyDiagnostic);
  const std::string message = toUtf8(ndsvFormatDiagnostic(diagnostic.get()));
  throw Failure(ExitStatus::Unreadable, message,
                isAbsent ? hintsForPath(source_) : std::vector<std::string>());
}

std::vector<std::string> Source::names() const {
  std::vector<std::string> result;
  WorkSpaceIterator walk(variables(), false, false, true);
  const hvArray* value = nullptr;
  std::string name;
  while (walk.get_next_variable(value, name)) result.push_back(name);
  return result;
}

std::string Source::checksum() const {
  return toUtf8(AdapterManagerV2::getChecksum(toUtf16(source_), toUtf16(section_)));
}

std::vector<std::string> Source::externalSources() const {
  std::vector<std::string> result;
  for (const std::u16string& each :
       AdapterManagerV2::getExternalSources(toUtf16(source_), toUtf16(section_))) {
    result.push_back(toUtf8(each));
  }
  return result;
}

}  // namespace nd::tools
