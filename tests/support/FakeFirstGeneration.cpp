#include "tests/support/FakeFirstGeneration.h"

#include <utility>

#include "platform/text/Convert.h"

using lx::text::toUtf8;
using nd::data::adapter::AdapterConfig;

namespace support {

FakeFirstGeneration& FakeFirstGeneration::install(std::shared_ptr<CallLog> log) {
  auto fake = std::make_unique<FakeFirstGeneration>(std::move(log));
  FakeFirstGeneration& result = *fake;
  Road::replace(std::move(fake));
  return result;
}

bool FakeFirstGeneration::isAdapterRegisteredByName(const std::u16string& adapterName) {
  log_->enter("first", "isAdapterRegisteredByName", "(" + toUtf8(adapterName) + ")");
  return knowsName;
}

bool FakeFirstGeneration::isAdapterRegisteredByExtension(const std::u16string& extension) {
  log_->enter("first", "isAdapterRegisteredByExtension", "(" + toUtf8(extension) + ")");
  return knowsExtension;
}

std::vector<std::u16string> FakeFirstGeneration::getAllAdapterNames() {
  log_->enter("first", "getAllAdapterNames");
  return names;
}

bool FakeFirstGeneration::hasReadingAdapters(const std::u16string& source) {
  log_->enter("first", "hasReadingAdapters", "(" + toUtf8(source) + ")");
  return reads;
}

bool FakeFirstGeneration::hasWritingAdapters(const std::u16string& source) {
  log_->enter("first", "hasWritingAdapters", "(" + toUtf8(source) + ")");
  return writes;
}

std::vector<AdapterConfig> FakeFirstGeneration::getAdapterConfig(const std::u16string& source,
                                                                 const lx::base::Model& tmpModel) {
  log_->enter("first", "getAdapterConfig", "(" + toUtf8(source) + ")");
  std::vector<AdapterConfig> result;
  for (const std::u16string& name : configNames) {
    result.push_back(AdapterConfig::create(tmpModel));
    result.back().setAdapterName(name);
    result.back().setSection(name);
  }
  return result;
}

std::u16string FakeFirstGeneration::getChecksum(const std::u16string& source, const std::u16string& section) {
  log_->enter("first", "getChecksum", "(" + toUtf8(source) + ", " + toUtf8(section) + ")");
  return checksum;
}

std::vector<std::u16string> FakeFirstGeneration::getExternalSources(const std::u16string& source,
                                                                    const std::u16string& section) {
  log_->enter("first", "getExternalSources", "(" + toUtf8(source) + ", " + toUtf8(section) + ")");
  return externalSources;
}

void FakeFirstGeneration::getData(const std::u16string& source, const std::u16string& section,
                                  const nd::data::adapter::DataContainer& cache,
                                  const boost::shared_ptr<inWorkSpace_tag>& dataCache,
                                  const nd::data::adapter::AdapterError& error) {
  log_->enter("first", "getData", "(" + toUtf8(source) + ", " + toUtf8(section) + ")");
  if (read)
    read(cache, dataCache, error);
  else
    Road::getData(source, section, cache, dataCache, error);
}

}  // namespace support
