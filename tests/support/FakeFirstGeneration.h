#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "nd_data_adapter/broker/internal/FirstGenerationRoad.h"
#include "tests/support/CallLog.h"

namespace support {

/// A first generation of adapters that notes every question in a log, as "first.…", and gives the answers
/// that a test has put in.
class FakeFirstGeneration final : public nd::data::adapter::detail::FirstGenerationRoad {
 public:
  using Road = nd::data::adapter::detail::FirstGenerationRoad;

  explicit FakeFirstGeneration(std::shared_ptr<CallLog> log) : log_(std::move(log)) {}

  /// Makes one and lets the broker take it. It lives until the broker takes another.
  static FakeFirstGeneration& install(std::shared_ptr<CallLog> log);

  bool knowsName = false;
  bool knowsExtension = false;
  bool reads = false;
  bool writes = false;
  std::vector<std::u16string> names;
  std::vector<std::u16string> configNames;  // an `AdapterConfig` is made for each
  std::u16string checksum;
  std::vector<std::u16string> externalSources;

  /// Reads a source; none: what the broker has without a first generation.
  std::function<void(const nd::data::adapter::DataContainer&, const boost::shared_ptr<inWorkSpace_tag>&,
                     const nd::data::adapter::AdapterError&)>
      read;

  bool isAdapterRegisteredByName(const std::u16string& adapterName) override;
  bool isAdapterRegisteredByExtension(const std::u16string& extension) override;
  std::vector<std::u16string> getAllAdapterNames() override;
  bool hasReadingAdapters(const std::u16string& source) override;
  bool hasWritingAdapters(const std::u16string& source) override;
  std::vector<nd::data::adapter::AdapterConfig> getAdapterConfig(const std::u16string& source,
                                                                 const lx::base::Model& tmpModel) override;
  std::u16string getChecksum(const std::u16string& source, const std::u16string& section) override;
  std::vector<std::u16string> getExternalSources(const std::u16string& source,
                                                 const std::u16string& section) override;
  void getData(const std::u16string& source, const std::u16string& section,
               const nd::data::adapter::DataContainer& cache,
               const boost::shared_ptr<inWorkSpace_tag>& dataCache,
               const nd::data::adapter::AdapterError& error) override;

 private:
  std::shared_ptr<CallLog> log_;
};

}  // namespace support
