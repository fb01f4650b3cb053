#include <map>

#include "nd_data_adapter/broker/CPPAdapterV2.h"
#include "nd_data_adapter/model/AdapterRegistryV2.h"
#include "platform/text/Convert.h"
#include "tools/ndx/JsonWriter.h"
#include "tools/ndx/Table.h"
#include "tools/ndx/commands.h"
#include "tools/ndx/quote.h"

namespace nd::tools {
namespace {

using lx::text::toUtf8;
using nd::data::adapter::AdapterRegistryV2;

struct Listed {
  std::string name;
  std::string section;
  std::vector<std::string> extensions;
};

std::vector<Listed> listed() {
  const AdapterRegistryV2 registry = AdapterRegistryV2::getInstance();
  std::vector<Listed> result;
  for (const std::u16string& name : registry.getAllAdapterNames()) {
    const std::shared_ptr<CPPAdapterV2> adapter = registry.getCPPAdapterForStaticUse(name);
    if (!adapter) continue;
    Listed each{toUtf8(name), toUtf8(adapter->getSectionName()), {}};
    for (const std::u16string& extension : adapter->getSupportedExtensions()) {
      each.extensions.push_back(toUtf8(extension));
    }
    result.push_back(std::move(each));
  }
  return result;
}

}  // namespace

void showAdapters(bool asJson, Output& out) {
  const std::vector<Listed> adapters = listed();
  if (asJson) {
    JsonWriter json(out);
    json.beginObject();
    json.key("adapters").beginArray();
    for (const Listed& adapter : adapters) {
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
  for (const Listed& adapter : adapters)
    table.addRow({adapter.name, adapter.section, join(adapter.extensions, " ")});
  table.print(out);
}

}  // namespace nd::tools
