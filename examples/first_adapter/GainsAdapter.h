#pragma once

// [class]
#include <string>
#include <vector>

#include "nd_data_adapter/nd_data_adapter.h"

/// Reads the lines of a `.gains` file, each a name and a number, as variables.
class GainsAdapter final : public CPPAdapterV2 {
 public:
  CPPAdapterV2* clone() override { return new GainsAdapter; }
  std::u16string getAdapterName() override { return u"Gains"; }
  std::vector<std::u16string> getSupportedExtensions() override { return {u".gains"}; }

  bool isSourceValid(const std::u16string& source) override;
  bool supportsReading(const std::u16string&) override { return true; }
  bool supportsWriting(const std::u16string&) override { return false; }

  bool open(const std::u16string& source) override;
  bool close() override;
  std::u16string getCurrentChecksum() override;
  bool hasData() override;
  bool getData(const Workspace& dataCache, MetaDataCache& metaDataCache, const std::u16string& prevChecksum,
               nd::data::adapter::AdapterError& error) override;
  bool writeData(const Workspace& dataCache, const Workspace& conditionalCache, MetaDataCache& metaDataCache,
                 const nd::data::adapter::ChangeReport& diff,
                 nd::data::adapter::AdapterError& error) override;

 private:
  bool isOpen_ = false;
  std::u16string source_;
};
// [/class]
