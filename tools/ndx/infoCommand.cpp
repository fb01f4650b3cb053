#include <optional>

#include "nd_data_adapter/model/AdapterManagerV2.h"
#include "nd_data_adapter/model/URIOperations.h"
#include "platform/host/Workspace.h"
#include "platform/text/Convert.h"
#include "tools/ndx/Failure.h"
#include "tools/ndx/JsonWriter.h"
#include "tools/ndx/Table.h"
#include "tools/ndx/commands.h"
#include "tools/ndx/quote.h"

namespace nd::tools {
namespace {

using lx::text::toUtf16;
using lx::text::toUtf8;
using nd::data::adapter::AdapterConfig;
using nd::data::adapter::AdapterManagerV2;
using nd::data::adapter::AdapterType;
using ndx::broker::URIOperations;

std::string yesOrNo(bool answer) {
  return answer ? "yes" : "no";
}

std::string kindOf(const AdapterConfig& adapter) {
  return adapter.adapterType() == AdapterType::CPPAdapter ? "native" : "host class";
}

/// What reading a source brings to light.
struct Found {
  std::string section;
  std::string checksum;
  std::vector<std::string> externalSources;
  std::size_t variables = 0;
};

Found find(const SourceName& name, const SourceFacts& facts) {
  const Source source(name, facts);
  return {source.section(), source.checksum(), source.externalSources(),
          inGetNumberOfVariables(source.variables())};
}

void writeJson(const SourceName& name, const SourceFacts& facts, const std::optional<Found>& found,
               Output& out) {
  JsonWriter json(out);
  json.beginObject();
  json.key("source").text(name.source);
  json.key("exists").truth(AdapterManagerV2::doesSourceExist(toUtf16(name.source)));
  json.key("readable").truth(URIOperations::isReadable(toUtf16(name.source)));
  json.key("extension").text(URIOperations::getExtension(toUtf16(name.source)));
  json.key("adapters").beginArray();
  for (const AdapterConfig& adapter : facts.adapters) {
    json.beginObject();
    json.key("name").text(adapter.adapterName());
    json.key("section").text(adapter.section());
    json.key("kind").text(kindOf(adapter));
    json.key("reads").truth(adapter.supportsReading());
    json.key("writes").truth(adapter.supportsWriting());
    json.endObject();
  }
  json.endArray();
  if (found) {
    json.key("section").text(found->section);
    json.key("checksum").text(found->checksum);
    json.key("externalSources").beginArray();
    for (const std::string& source : found->externalSources) json.text(source);
    json.endArray();
    json.key("variables").number(std::uint64_t{found->variables});
  }
  json.endObject();
  out.write("\n");
}

void writeText(const SourceName& name, const SourceFacts& facts, const std::optional<Found>& found,
               Output& out) {
  Table table({{""}, {""}});
  table.addRow({"source", name.source});
  table.addRow({"exists", yesOrNo(AdapterManagerV2::doesSourceExist(toUtf16(name.source)))});
  table.addRow({"readable", yesOrNo(URIOperations::isReadable(toUtf16(name.source)))});
  table.addRow({"extension", toUtf8(URIOperations::getExtension(toUtf16(name.source)))});
  if (found) {
    table.addRow({"section", found->section});
    table.addRow({"checksum", found->checksum});
    table.addRow(
        {"depends on", found->externalSources.empty() ? "nothing else" : join(found->externalSources, ", ")});
    table.addRow({"variables", std::to_string(found->variables)});
  }
  table.print(out);
  if (facts.adapters.empty()) return;
  out.write("\n");
  Table adapters({{"ADAPTER"}, {"SECTION"}, {"KIND"}, {"READS"}, {"WRITES"}});
  for (const AdapterConfig& adapter : facts.adapters) {
    adapters.addRow({toUtf8(adapter.adapterName()), toUtf8(adapter.section()), kindOf(adapter),
                     yesOrNo(adapter.supportsReading()), yesOrNo(adapter.supportsWriting())});
  }
  adapters.print(out);
}

}  // namespace

void showInfo(const SourceName& name, bool asJson, Output& out) {
  const SourceFacts facts = factsOf(name);
  const bool isSectionOpen = !name.section && sectionsThatRead(facts).size() > 1;
  std::optional<Found> found;
  std::optional<Failure> failure;
  try {
    if (!isSectionOpen) found = find(name, facts);
  } catch (const Failure& why) {
    failure = why;
  }
  (asJson ? writeJson : writeText)(name, facts, found, out);
  if (failure) throw *failure;
}

}  // namespace nd::tools
