#pragma once

#include <exception>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "nd_data_adapter/broker/CPPAdapterV2.h"
#include "nd_data_adapter/conformance/Report.h"
#include "nd_data_adapter/model/AdapterError.h"
#include "nd_data_adapter/model/ChangeReport.h"
#include "nd_data_adapter/model/ConditionControlChangeReport.h"

namespace nd::conformance {

/// Act, and put into words what is thrown: `what` begins the sentence.
template <class Act>
auto namingWhatIsThrown(const std::string& what, Act act) {
  try {
    return act();
  } catch (const std::exception& thrown) {
    throw std::runtime_error(what + " threw: " + thrown.what());
  } catch (...) {
    throw std::runtime_error(what + " threw something that is no std::exception");
  }
}

/// Passes all calls on to an adapter, and puts into words which of them threw what: a `std::runtime_error`
/// with the name of the call, the source, and what the exception said.
class NamedCalls final : public CPPAdapterV2 {
 public:
  explicit NamedCalls(std::shared_ptr<CPPAdapterV2> adapter) : adapter_(std::move(adapter)) {}
  NamedCalls(const NamedCalls&) = delete;
  NamedCalls& operator=(const NamedCalls&) = delete;
  ~NamedCalls() override = default;

  CPPAdapterV2* clone() override {
    CPPAdapterV2* const made = namingWhatIsThrown("clone", [&] { return adapter_->clone(); });
    if (made == adapter_.get()) throw std::runtime_error("clone gave the adapter itself, and not a new one");
    return made == nullptr ? nullptr : new NamedCalls(std::shared_ptr<CPPAdapterV2>(made));
  }
  std::u16string getAdapterName() override {
    return namingWhatIsThrown("getAdapterName", [&] { return adapter_->getAdapterName(); });
  }
  std::vector<std::u16string> getSupportedExtensions() override {
    return namingWhatIsThrown("getSupportedExtensions", [&] { return adapter_->getSupportedExtensions(); });
  }
  std::u16string getSectionName() override {
    return namingWhatIsThrown("getSectionName", [&] { return adapter_->getSectionName(); });
  }
  bool isSourceValid(const std::u16string& source) override {
    return namingWhatIsThrown("isSourceValid" + of(source), [&] { return adapter_->isSourceValid(source); });
  }
  bool supportsReading(const std::u16string& source) override {
    return namingWhatIsThrown("supportsReading" + of(source),
                              [&] { return adapter_->supportsReading(source); });
  }
  bool supportsWriting(const std::u16string& source) override {
    return namingWhatIsThrown("supportsWriting" + of(source),
                              [&] { return adapter_->supportsWriting(source); });
  }
  bool open(const std::u16string& source) override {
    source_ = source;
    return namingWhatIsThrown("open" + of(source), [&] { return adapter_->open(source); });
  }
  bool close() override {
    return namingWhatIsThrown("close" + of(source_), [&] { return adapter_->close(); });
  }
  std::vector<std::u16string> getExternalSources() override {
    return namingWhatIsThrown("getExternalSources" + of(source_),
                              [&] { return adapter_->getExternalSources(); });
  }
  std::u16string getCurrentChecksum() override {
    return namingWhatIsThrown("getCurrentChecksum" + of(source_),
                              [&] { return adapter_->getCurrentChecksum(); });
  }
  bool hasData() override {
    return namingWhatIsThrown("hasData" + of(source_), [&] { return adapter_->hasData(); });
  }
  bool getData(const Workspace& dataCache, MetaDataCache& metaDataCache, const std::u16string& prevChecksum,
               data::adapter::AdapterError& error) override {
    return namingWhatIsThrown("getData" + of(source_), [&] {
      return adapter_->getData(dataCache, metaDataCache, prevChecksum, error);
    });
  }
  bool writeData(const Workspace& dataCache, const Workspace& conditionalCache, MetaDataCache& metaDataCache,
                 const data::adapter::ChangeReport& diff, data::adapter::AdapterError& error) override {
    return namingWhatIsThrown("writeData" + of(source_), [&] {
      return adapter_->writeData(dataCache, conditionalCache, metaDataCache, diff, error);
    });
  }
  bool hasVariants() override {
    return namingWhatIsThrown("hasVariants" + of(source_), [&] { return adapter_->hasVariants(); });
  }
  std::vector<std::u16string> getVariantControls() override {
    return namingWhatIsThrown("getVariantControls" + of(source_),
                              [&] { return adapter_->getVariantControls(); });
  }
  bool getConditionalData(const Workspace& conditionalCache,
                          const data::adapter::ConditionControlChangeReport& cccr,
                          const std::u16string& prevChecksum, data::adapter::AdapterError& error) override {
    return namingWhatIsThrown("getConditionalData" + of(source_), [&] {
      return adapter_->getConditionalData(conditionalCache, cccr, prevChecksum, error);
    });
  }
  data::adapter::AdapterType getType() override {
    return namingWhatIsThrown("getType", [&] { return adapter_->getType(); });
  }
  bool isReady() override {
    return namingWhatIsThrown("isReady", [&] { return adapter_->isReady(); });
  }

 private:
  static std::string of(const std::u16string& source) { return " for the source " + inQuotes(source); }

  std::shared_ptr<CPPAdapterV2> adapter_;
  std::u16string source_;
};

}  // namespace nd::conformance
