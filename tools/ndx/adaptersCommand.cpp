#include <fmt/format.h>

#include "tools/ndx/Failure.h"
#include "tools/ndx/JsonWriter.h"
#include "tools/ndx/Table.h"
#include "tools/ndx/commands.h"
#include "tools/ndx/quote.h"
#include "tools/ndx/registeredAdapters.h"

namespace nd::tools {
namespace {

std::vector<std::string> sectionsOf(const std::vector<RegisteredAdapter>& adapters) {
  std::vector<std::string> sections;
  sections.reserve(adapters.size());
  for (const RegisteredAdapter& adapter : adapters) sections.push_back(adapter.section);
  return sections;
}

}  // namespace

void showAdapters(const std::optional<std::string>& section, bool asJson, Output& out) {
  std::vector<RegisteredAdapter> adapters = registeredAdapters();
  if (section) {
    const std::vector<std::string> sections = sectionsOf(adapters);
    std::erase_if(adapters, [&](const RegisteredAdapter& adapter) { return adapter.section != *section; });
    if (adapters.empty()) {
      throw Failure(ExitStatus::NoAdapter, fmt::format("no adapter is for the section {}", quote(*section)),
                    {fmt::format("The sections are {}.", quoteAll(sections))});
    }
  }
  if (asJson) {
    JsonWriter json(out);
    json.beginObject();
    json.key("adapters").beginArray();
    for (const RegisteredAdapter& adapter : adapters) {
      json.beginObject();
      json.key("name").text(adapter.name);
      json.key("section").text(adapter.section);
      json.key("extensions").beginArray();
      for (const std::string& extension : adapter.extensions) json.text(extension);
      json.endArray();
      json.endObject();
    }
    json.endArray();
    json.endObject();
    out.write("\n");
    return;
  }
  Table table({{"NAME"}, {"SECTION"}, {"EXTENSIONS"}});
  for (const RegisteredAdapter& adapter : adapters)
    table.addRow({adapter.name, adapter.section, join(adapter.extensions, " ")});
  table.print(out);
}

}  // namespace nd::tools
