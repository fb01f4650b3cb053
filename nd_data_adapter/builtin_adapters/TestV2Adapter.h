#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "nd_data_adapter/broker/CPPAdapterV2.h"
#include "nd_data_adapter/export.h"

/// An adapter that needs no source: every string is one. It says yes to everything, counts how often it was
/// asked what, and delivers the counts as its data, so that a reader sees which operations the broker made.
class ND_DATA_ADAPTER_EXPORT TestV2Adapter final : private CPPAdapterV2 {
 public:
  /// Make an adapter with all counters at zero.
  static std::shared_ptr<CPPAdapterV2> make();

  TestV2Adapter();
  ~TestV2Adapter() override;

  CPPAdapterV2* clone() override;
  std::u16string getAdapterName() override;
  std::vector<std::u16string> getSupportedExtensions() override;
  std::u16string getSectionName() override;
  bool isSourceValid(const std::u16string& source) override;
  bool supportsReading(const std::u16string& source) override;
  bool supportsWriting(const std::u16string& source) override;
  bool open(const std::u16string& source) override;
  bool close() override;
  std::vector<std::u16string> getExternalSources() override;

  /// Give the sum of all counters, this call counted, so that no two calls give the same.
  std::u16string getCurrentChecksum() override;
  bool hasData() override;

  /// Assign an int32 scalar for each counter, this call counted, under the name of its operation.
  bool getData(const boost::shared_ptr<inWorkSpace_tag>& dataCache,
               lx::base::ElementMultimap<std::u16string, nd::data::adapter::MetaDataEntry>& metaDataCache,
               const std::u16string& prevChecksum, nd::data::adapter::AdapterError& error) override;
  bool writeData(const boost::shared_ptr<inWorkSpace_tag>& dataCache,
                 const boost::shared_ptr<inWorkSpace_tag>& conditionalCache,
                 lx::base::ElementMultimap<std::u16string, nd::data::adapter::MetaDataEntry>& metaDataCache,
                 const nd::data::adapter::ChangeReport& diff,
                 nd::data::adapter::AdapterError& error) override;
  bool hasVariants() override;
  std::vector<std::u16string> getVariantControls() override;

  /// Assign the int32 scalar 10 under "VariantData".
  bool getConditionalData(const boost::shared_ptr<inWorkSpace_tag>& conditionalCache,
                          const nd::data::adapter::ConditionControlChangeReport& cccr,
                          const std::u16string& prevChecksum,
                          nd::data::adapter::AdapterError& error) override;

  using CPPAdapterV2::getType;
  using CPPAdapterV2::isReady;

 private:
  static constexpr std::size_t Operations = 12;

  void count(std::size_t operation) noexcept;

  std::array<std::int32_t, Operations> counters_{};
  std::array<std::u16string, Operations> names_;
};
