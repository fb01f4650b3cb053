// An adapter that claims ".json" beside the one that is shipped, serves the section "Second", depends on two
// other sources, and throws when it is asked to read a source whose name holds "throw".

#include <memory>
#include <stdexcept>

#include "nd_data_adapter/nd_data_adapter.h"

namespace {

using nd::data::adapter::AdapterError;
using nd::data::adapter::AdapterManagerV2;
using nd::data::adapter::ChangeReport;

class SecondAdapter final : public CPPAdapterV2 {
 public:
  CPPAdapterV2* clone() override { return new SecondAdapter; }
  std::u16string getAdapterName() override { return u"SecondJson"; }
  std::u16string getSectionName() override { return u"Second"; }
  std::vector<std::u16string> getSupportedExtensions() override { return {u".json"}; }
  bool isSourceValid(const std::u16string&) override { return true; }
  bool supportsReading(const std::u16string&) override { return true; }
  bool supportsWriting(const std::u16string&) override { return false; }
  bool open(const std::u16string& source) override {
    source_ = source;
    return true;
  }
  bool close() override { return true; }
  std::vector<std::u16string> getExternalSources() override { return {u"first.json", u"other.json"}; }
  std::u16string getCurrentChecksum() override { return u"0"; }
  bool hasData() override { return true; }
  bool getData(const Workspace& dataCache, MetaDataCache&, const std::u16string&, AdapterError&) override {
    if (source_.find(u"throw") != std::u16string::npos)
      throw std::runtime_error("the second adapter is out of sorts");
    const hvArrayPtr value(hvCreateDoubleScalar(2));
    inAssignInDesiredWS(value.get(), "Second", dataCache);
    return true;
  }
  bool writeData(const Workspace&, const Workspace&, MetaDataCache&, const ChangeReport&,
                 AdapterError&) override {
    return false;
  }

 private:
  std::u16string source_;
};

}  // namespace

extern "C" __attribute__((visibility("default"))) bool nd_register_adapters() {
  return AdapterManagerV2::registerCPPAdapter(std::make_shared<SecondAdapter>());
}
