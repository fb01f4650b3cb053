#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "nd_data_adapter/broker/CPPAdapterV2.h"
#include "nd_data_adapter/model/AdapterType.h"
#include "tests/support/CallLog.h"

namespace support {

/// What a probe and all of its clones answer. A test may change it at any time.
struct ProbeScript {
  using Workspace = CPPAdapterV2::Workspace;
  using MetaDataCache = CPPAdapterV2::MetaDataCache;
  using Error = nd::data::adapter::AdapterError;

  std::u16string name;
  std::optional<std::u16string> section;  // none: what the contract says
  std::vector<std::u16string> extensions{u".test"};
  bool clones = true;  // false: `clone` gives null
  bool sourceIsValid = true;
  bool reads = true;
  bool writes = true;
  bool opens = true;
  std::vector<std::u16string> externalSources;
  std::u16string checksum;
  bool hasVariants = false;
  std::vector<std::u16string> controls;
  nd::data::adapter::AdapterType type{};
  std::function<bool(const Workspace&, MetaDataCache&, const std::u16string&, Error&)> getData;  // none: true
  std::function<std::shared_ptr<void>()> hold;  // what each object takes as it is made and has till its end
};

/// An adapter that notes every call in a log and answers what its script says.
///
/// A prototype goes by its label in the log, its clones by that with a number: "a", then "a'1", "a'2". The
/// end of an object is the line "a'1.~". All objects of a kind share log and script.
class ProbeAdapter : public CPPAdapterV2 {
 public:
  /// Makes a prototype whose label is its name.
  ProbeAdapter(std::shared_ptr<CallLog> log, ProbeScript script);
  ProbeAdapter(const ProbeAdapter&) = delete;
  ProbeAdapter& operator=(const ProbeAdapter&) = delete;
  ~ProbeAdapter() override;

  const std::string& label() const noexcept { return label_; }
  ProbeScript& script() const noexcept { return kind_->script; }

  /// Counts the probes that are alive.
  static std::size_t live() noexcept;

  /// Gives the label of an adapter, "null" for none and "?" for one that is no probe.
  static std::string labelOf(const std::shared_ptr<CPPAdapterV2>& adapter);

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
  std::u16string getCurrentChecksum() override;
  bool hasData() override;
  bool getData(const Workspace& dataCache, MetaDataCache& metaDataCache, const std::u16string& prevChecksum,
               nd::data::adapter::AdapterError& error) override;
  bool writeData(const Workspace& dataCache, const Workspace& conditionalCache, MetaDataCache& metaDataCache,
                 const nd::data::adapter::ChangeReport& diff,
                 nd::data::adapter::AdapterError& error) override;
  bool hasVariants() override;
  std::vector<std::u16string> getVariantControls() override;
  bool getConditionalData(const Workspace& conditionalCache,
                          const nd::data::adapter::ConditionControlChangeReport& cccr,
                          const std::u16string& prevChecksum,
                          nd::data::adapter::AdapterError& error) override;
  nd::data::adapter::AdapterType getType() override;
  bool isReady() override;

 private:
  struct Kind {
    std::shared_ptr<CallLog> log;
    ProbeScript script;
    std::string label;
    std::size_t clones = 0;
  };

  ProbeAdapter(std::shared_ptr<Kind> kind, std::string label);

  void enter(const char* operation, const std::string& arguments = {});

  std::shared_ptr<Kind> kind_;
  std::string label_;
  std::shared_ptr<void> held_;
};

}  // namespace support
