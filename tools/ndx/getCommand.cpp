#include <fmt/format.h>

#include "platform/host/ArrayText.h"
#include "platform/host/Workspace.h"
#include "tools/ndx/Failure.h"
#include "tools/ndx/JsonWriter.h"
#include "tools/ndx/commands.h"
#include "tools/ndx/nearNames.h"
#include "tools/ndx/quote.h"
#include "tools/ndx/writeValue.h"

namespace nd::tools {
namespace {

/// Raise NoVariable that names all that are missing, with near names.
void checkNames(const Source& source, const SourceName& name, const std::vector<std::string>& variables) {
  std::vector<std::string> missing;
  std::vector<std::string> hints;
  const std::vector<std::string> known = source.names();
  for (const std::string& variable : variables) {
    if (inGetValueFromWorkspace(variable, source.variables()) != nullptr) continue;
    missing.push_back(variable);
    const std::vector<std::string> near = nearNames(variable, known);
    if (!near.empty())
      hints.push_back(fmt::format("Instead of {}, did you mean {}?", quote(variable), quoteAll(near)));
  }
  if (missing.empty()) return;
  hints.push_back(
      fmt::format("ndx ls {} lists {}.", shellWord(name.source), count(known.size(), "variable")));
  throw Failure(ExitStatus::NoVariable,
                fmt::format("{} has no variable {}", quote(name.source), quoteAll(missing)), hints);
}

}  // namespace

void getVariables(const SourceName& name, const std::vector<std::string>& variables, bool asJson,
                  Output& out) {
  const Source source(name, factsOf(name));
  checkNames(source, name, variables);
  if (!asJson) {
    for (const std::string& variable : variables) {
      out.write(hvFormat(inGetValueFromWorkspace(variable, source.variables()), variable, out.look().width));
    }
    return;
  }
  JsonWriter json(out);
  json.beginObject();
  json.key("source").text(name.source);
  json.key("section").text(source.section());
  json.key("variables").beginArray();
  for (const std::string& variable : variables) {
    json.beginObject();
    json.key("name").text(variable);
    json.key("value");
    writeValue(json, inGetValueFromWorkspace(variable, source.variables()));
    json.endObject();
  }
  json.endArray();
  json.endObject();
  out.write("\n");
}

}  // namespace nd::tools
