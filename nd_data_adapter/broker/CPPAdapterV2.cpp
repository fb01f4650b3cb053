#include "nd_data_adapter/broker/CPPAdapterV2.h"

#include "nd_data_adapter/model/AdapterError.h"
#include "nd_data_adapter/model/AdapterType.h"
#include "platform/host/Workspace.h"

using nd::data::adapter::AdapterDiagnostic;
using nd::data::adapter::AdapterError;
using nd::data::adapter::AdapterType;
using nd::data::adapter::ConditionControlChangeReport;

CPPAdapterV2::~CPPAdapterV2() = default;

std::u16string CPPAdapterV2::getSectionName() {
  return getAdapterName();
}
std::vector<std::u16string> CPPAdapterV2::getExternalSources() {
  return {};
}
bool CPPAdapterV2::hasVariants() {
  return false;
}
std::vector<std::u16string> CPPAdapterV2::getVariantControls() {
  return {};
}

bool CPPAdapterV2::getConditionalData(const Workspace& conditionalCache, const ConditionControlChangeReport&,
                                      const std::u16string&, AdapterError& error) {
  inClearArraysInDesiredWS(conditionalCache);
  error.setError(AdapterDiagnostic::Unsupported, u"", u"", u"");
  return false;
}

AdapterType CPPAdapterV2::getType() {
  return AdapterType::CPPAdapter;
}
bool CPPAdapterV2::isReady() {
  return true;
}
