#pragma once

#include <string>
#include <vector>

#include "nd_data_adapter/nd_data_adapter.h"

/// Reads the `.gains` files that a `.gainlist` file names, each in a line, beside the list. Of each variable
/// its metadata tell the file that it comes from.
class GainListAdapter final : public CPPAdapterV2 {
 public:
  CPPAdapterV2* clone() override { return new GainListAdapter; }
  std::u16string getAdapterName() override { return u"GainList"; }
  std::vector<std::u16string> getSupportedExtensions() override { return {u".gainlist"}; }

  bool isSourceValid(const std::u16string& source) override;
  bool supportsReading(const std::u16string&) override { return true; }
  bool supportsWriting(const std::u16string&) override { return false; }

  bool open(const std::u16string& source) override;
  bool close() override;
  std::vector<std::u16string> getExternalSources() override;
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
