#include "tests/support/describe.h"

#include <algorithm>
#include <string>

#include "nd_data_adapter/model/AdapterCacheV2.h"
#include "nd_data_adapter/model/AdapterDiagnostic.h"
#include "nd_data_adapter/model/AdapterRegistryV2.h"
#include "nd_data_adapter/model/AdapterType.h"
#include "platform/foundation/meta/Meta.h"
#include "platform/host/ArrayText.h"
#include "platform/host/Workspace.h"
#include "platform/text/Convert.h"
#include "tests/support/ProbeAdapter.h"

using lx::base::ModelElement;
using lx::base::Value;
using lx::text::toUtf8;
using namespace nd::data::adapter;

namespace support {

namespace {

using WorkspacePtr = boost::shared_ptr<inWorkSpace_tag>;

std::string joined(const Lines& lines) {
  std::string text = "[";
  for (const std::string& line : lines) text += (text.size() > 1 ? ", " : "") + line;
  return text + "]";
}

std::string textOf(const ModelElement& element) {
  return element.isAlive() ? toUtf8(element.impl()->getMetaClass().getName()) : "none";
}

std::string textOf(const Value& value) {
  Lines list;
  if (value.is<std::u16string>()) return "'" + toUtf8(value.as<std::u16string>()) + "'";
  if (value.is<bool>()) return value.as<bool>() ? "true" : "false";
  if (value.is<AdapterDiagnostic>()) return std::to_string(static_cast<int>(value.as<AdapterDiagnostic>()));
  if (value.is<AdapterType>()) return std::to_string(static_cast<int>(value.as<AdapterType>()));
  if (value.is<ModelElement>()) return textOf(value.as<ModelElement>());
  if (value.is<lx::base::Model>()) return value.as<lx::base::Model>() ? "model" : "none";
  if (value.is<WorkspacePtr>())
    return value.as<WorkspacePtr>() ? joined(contentsOf(value.as<WorkspacePtr>())) : "none";
  if (value.is<std::shared_ptr<CPPAdapterV2>>()) {
    return ProbeAdapter::labelOf(value.as<std::shared_ptr<CPPAdapterV2>>());
  }
  if (value.is<std::vector<std::u16string>>()) {
    for (const std::u16string& each : value.as<std::vector<std::u16string>>()) list.push_back(toUtf8(each));
    return joined(list);
  }
  if (value.is<std::vector<ModelElement>>()) {
    for (const ModelElement& each : value.as<std::vector<ModelElement>>()) list.push_back(textOf(each));
    return joined(list);
  }
  throw std::logic_error("a property has a value of a type that describe.cpp doesn't know");
}

}  // namespace

Lines stateOfBroker() {
  Lines lines;
  const auto list = [&](const std::string& what, const auto& entries) {
    for (const CPPAdapterV2Entry& entry : entries) {
      lines.push_back(what + " " + toUtf8(entry.adapterName()) + ": " +
                      ProbeAdapter::labelOf(entry.adapter()));
    }
  };
  list("registered", AdapterRegistryV2::getInstance().impl()->getCPPRegistry());
  list("open", AdapterCacheV2::getInstance().impl()->getCPPCache());
  return lines;
}

Lines contentsOf(const lx::base::Model& model) {
  Lines lines;
  for (const ModelElement& element : model.impl()->elements()) {
    const lx::base::meta::Class type = element.impl()->getMetaClass();
    std::string line = toUtf8(type.getName());
    for (const lx::base::meta::Property& property : type.getProperties()) {
      line += " " + toUtf8(property.getName()) + "=" + textOf(element.impl()->getPropertyValue(property));
    }
    lines.push_back(line);
  }
  return lines;
}

Lines contentsOf(const WorkspacePtr& workspace) {
  Lines lines;
  WorkSpaceIterator walk(workspace, false, false, true);
  const hvArray* value = nullptr;
  std::string name;
  while (walk.get_next_variable(value, name)) {
    std::string line = hvFormat(value, name);
    while (!line.empty() && line.back() == '\n') line.pop_back();
    lines.push_back(line);
  }
  return lines;
}

Lines missingIn(const Lines& lines, const Lines& wanted) {
  Lines rest = lines;
  Lines missing;
  for (const std::string& line : wanted) {
    const auto found = std::find(rest.begin(), rest.end(), line);
    if (found == rest.end())
      missing.push_back(line);
    else
      rest.erase(found);
  }
  return missing;
}

}  // namespace support
