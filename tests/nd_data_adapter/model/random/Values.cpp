#include "tests/nd_data_adapter/model/random/Values.h"

#include "nd_data_adapter/model/AdapterConfig.h"
#include "nd_data_adapter/model/AdapterType.h"
#include "nd_data_adapter/model/CPPAdapterV2Entry.h"
#include "platform/host/Workspace.h"
#include "tests/support/ProbeAdapter.h"

using namespace model_test;
using nd::data::adapter::AdapterConfig;
using nd::data::adapter::AdapterType;
using nd::data::adapter::CPPAdapterV2Entry;

namespace random_walk {

namespace {

const std::u16string& textOf(const Content& content) {
  return std::get<std::u16string>(content);
}
long numberOf(const Content& content) {
  return std::get<long>(content);
}

/// Give the value for a property that is no text.
Value valueOf(Kind kind, unsigned index, const Content& content) {
  if (std::holds_alternative<std::u16string>(content)) return Value(textOf(content));
  switch (kind) {
    case Kind::Tuple:
      return Value(static_cast<ChangeType>(numberOf(content)));
    case Kind::Config:
      return index == 3 ? Value(static_cast<AdapterType>(numberOf(content))) : Value(numberOf(content) != 0);
    case Kind::Held:
      return Value(Values::get().adapterAt(content));
    default:
      return index == 4 ? Value(Values::get().modelAt(content)) : Value(Values::get().workspaceAt(content));
  }
}

void assignConfig(const AdapterConfig& config, unsigned index, const Content& content) {
  switch (index) {
    case 1:
      return config.setAdapterName(textOf(content));
    case 2:
      return config.setSection(textOf(content));
    case 3:
      return config.setAdapterType(static_cast<AdapterType>(numberOf(content)));
    case 4:
      return config.setSupportsReading(numberOf(content) != 0);
    default:
      return config.setSupportsWriting(numberOf(content) != 0);
  }
}

void assignContainer(const DataContainer& container, unsigned index, const Content& content) {
  switch (index) {
    case 1:
      return container.setDataCache(Values::get().workspaceAt(content));
    case 2:
      return container.setConditionalCache(Values::get().workspaceAt(content));
    default:
      return container.setDataModel(Values::get().modelAt(content));
  }
}

}  // namespace

const Values& Values::get() {
  static const Values values;
  return values;
}

Values::Values() {
  for (std::size_t at = 1; at < 3; ++at) {
    adapters_[at] =
        std::make_shared<support::ProbeAdapter>(std::make_shared<support::CallLog>(), support::ProbeScript{});
    workspaces_[at] = inCreateWorkspace(1);
    models_[at] = Model::create();
  }
}

Values::Adapter Values::adapterAt(const Content& address) const {
  for (const Adapter& each : adapters_) {
    if (each.get() == std::get<const void*>(address)) return each;
  }
  throw std::logic_error("no adapter at this address");
}
Values::Workspace Values::workspaceAt(const Content& address) const {
  for (const Workspace& each : workspaces_) {
    if (each.get() == std::get<const void*>(address)) return each;
  }
  throw std::logic_error("no workspace at this address");
}
Model Values::modelAt(const Content& address) const {
  for (const Model& each : models_) {
    if (each.impl() == std::get<const void*>(address)) return each;
  }
  throw std::logic_error("no model at this address");
}

std::vector<long> Values::uses() const {
  std::vector<long> result;
  for (const Adapter& each : adapters_) result.push_back(each.use_count());
  for (const Workspace& each : workspaces_) result.push_back(each.use_count());
  return result;
}

void assign(const ModelElement& element, Kind kind, unsigned index, const Content& content) {
  switch (kind) {
    case Kind::Tuple:
      return index == 1 ? as<ChangeTuple>(element).setX(static_cast<ChangeType>(numberOf(content)))
                        : as<ChangeTuple>(element).setId(textOf(content));
    case Kind::Entry:
      return index == 1 ? as<ConditionControlChangeEntry>(element).setName(textOf(content))
                        : as<ConditionControlChangeEntry>(element).setPreviousValue(textOf(content));
    case Kind::Metadata:
      return as<MetaDataEntry>(element).setName(textOf(content));
    case Kind::Container:
      return assignContainer(as<DataContainer>(element), index, content);
    case Kind::Held:
      return index == 1 ? as<CPPAdapterV2Entry>(element).setName(textOf(content))
                        : as<CPPAdapterV2Entry>(element).setAdapter(Values::get().adapterAt(content));
    case Kind::Config:
      return assignConfig(as<AdapterConfig>(element), index, content);
    default:
      throw std::logic_error("there is nothing to set");
  }
}

void assignByName(const ModelElement& element, Kind kind, unsigned index, const Content& content) {
  const Value value = valueOf(kind, index, content);
  if (kind == Kind::Held && index == 1) {
    element.invoke(u"setName", {value});
    return;
  }
  element.setPropertyValue(element.getMetaClass().propertyByIndex(index).getName(), value);
}

}  // namespace random_walk
