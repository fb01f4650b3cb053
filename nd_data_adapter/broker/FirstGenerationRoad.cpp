#include "nd_data_adapter/broker/internal/FirstGenerationRoad.h"

#include <utility>

namespace nd::data::adapter::detail {

namespace {

std::unique_ptr<FirstGenerationRoad>& replacement() {
  static std::unique_ptr<FirstGenerationRoad>& road = *new std::unique_ptr<FirstGenerationRoad>;
  return road;
}

}  // namespace

FirstGenerationRoad::~FirstGenerationRoad() = default;

FirstGenerationRoad& FirstGenerationRoad::current() {
  static FirstGenerationRoad& empty = *new FirstGenerationRoad;  // the facade may be asked until the very end
  return replacement() ? *replacement() : empty;
}

std::unique_ptr<FirstGenerationRoad> FirstGenerationRoad::replace(std::unique_ptr<FirstGenerationRoad> road) {
  replacement().swap(road);
  return road;
}

bool FirstGenerationRoad::isAdapterRegisteredByName(const std::u16string&) {
  return false;
}
bool FirstGenerationRoad::isAdapterRegisteredByExtension(const std::u16string&) {
  return false;
}
std::vector<std::u16string> FirstGenerationRoad::getAllAdapterNames() {
  return {};
}
bool FirstGenerationRoad::hasReadingAdapters(const std::u16string&) {
  return false;
}
bool FirstGenerationRoad::hasWritingAdapters(const std::u16string&) {
  return false;
}

std::vector<AdapterConfig> FirstGenerationRoad::getAdapterConfig(const std::u16string&,
                                                                 const lx::base::Model&) {
  return {};
}

std::u16string FirstGenerationRoad::getChecksum(const std::u16string&, const std::u16string&) {
  return {};
}

std::vector<std::u16string> FirstGenerationRoad::getExternalSources(const std::u16string&,
                                                                    const std::u16string&) {
  return {};
}

void FirstGenerationRoad::getData(const std::u16string& source, const std::u16string&, const DataContainer&,
                                  const boost::shared_ptr<inWorkSpace_tag>&, const AdapterError& error) {
  error.setError(AdapterDiagnostic::Unsupported, u"", u"", source);
}

}  // namespace nd::data::adapter::detail
