#include <fmt/format.h>

#include "platform/host/ArrayComparison.h"
#include "platform/host/ArrayText.h"
#include "platform/host/Workspace.h"
#include "tools/ndx/JsonWriter.h"
#include "tools/ndx/Table.h"
#include "tools/ndx/commands.h"
#include "tools/ndx/quote.h"
#include "tools/ndx/writeValue.h"

namespace nd::tools {
namespace {

constexpr std::size_t PreviewWidthInJson = 60;

/// Give the sizes along all dimensions: "3x4".
std::string sizeOf(const hvArray* value) {
  std::vector<std::string> sizes;
  for (const std::size_t size : hvGetDimensions(value)) sizes.push_back(std::to_string(size));
  return join(sizes, "x");
}

}  // namespace

void listVariables(const SourceName& name, bool asJson, Output& out) {
  const Source source(name, factsOf(name));
  const std::vector<std::string> names = source.names();
  if (asJson) {
    JsonWriter json(out);
    json.beginObject();
    json.key("source").text(name.source);
    json.key("section").text(source.section());
    json.key("variables").beginArray();
    for (const std::string& each : names) {
      const hvArray* const value = inGetValueFromWorkspace(each, source.variables());
      json.beginObject();
      json.key("name").text(each);
      json.key("class").text(hvGetClassName(value));
      json.key("size");
      writeSize(json, value);
      json.key("bytes").number(std::uint64_t{hvGetByteSize(value)});
      json.key("preview").text(hvPreview(value, PreviewWidthInJson));
      json.endObject();
    }
    json.endArray();
    json.endObject();
    out.write("\n");
    return;
  }
  std::size_t total = 0;
  Table table({{"NAME"},
               {"CLASS"},
               {"SIZE", Table::Alignment::Right},
               {"BYTES", Table::Alignment::Right},
               {"PREVIEW", Table::Alignment::Cut}});
  for (const std::string& each : names) {
    const hvArray* const value = inGetValueFromWorkspace(each, source.variables());
    const std::size_t bytes = hvGetByteSize(value);
    total += bytes;
    table.addRow({each, std::string(hvGetClassName(value)), sizeOf(value), std::to_string(bytes),
                  hvPreview(value, out.look().width)});
  }
  table.print(out);
  out.write(fmt::format("{}, {}\n", count(names.size(), "variable"), count(total, "byte")));
}

}  // namespace nd::tools
