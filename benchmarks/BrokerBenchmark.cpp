// What does the broker add to the calls of an adapter? The floor of opening makes the same virtual calls over
// a vector, clones, makes a shared pointer, and inserts into and erases from a std::map. The floor of reading
// forms the qualifier, finds it in a std::map, and makes one element.

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "benchmarks/KeepAlive.h"
#include "benchmarks/Ratios.h"
#include "nd_data_adapter/nd_data_adapter.h"
#include "platform/text/FoldedCompare.h"

using nd::data::adapter::AdapterError;
using nd::data::adapter::AdapterManagerV2;
using nd::data::adapter::AdapterRegistryV2;
using nd::data::adapter::ChangeReport;
using nd::data::adapter::DataContainer;

namespace {

/// Does as little as an adapter can.
class Idle final : public CPPAdapterV2 {
 public:
  explicit Idle(std::u16string name) : name_(std::move(name)) {}
  CPPAdapterV2* clone() override { return new Idle(name_); }
  std::u16string getAdapterName() override { return name_; }
  std::vector<std::u16string> getSupportedExtensions() override { return {u".idle"}; }
  bool isSourceValid(const std::u16string&) override { return true; }
  bool supportsReading(const std::u16string&) override { return true; }
  bool supportsWriting(const std::u16string&) override { return false; }
  bool open(const std::u16string&) override { return true; }
  bool close() override { return true; }
  std::u16string getCurrentChecksum() override { return {}; }
  bool hasData() override { return false; }
  bool getData(const Workspace&, MetaDataCache&, const std::u16string&, AdapterError&) override {
    return true;
  }
  bool writeData(const Workspace&, const Workspace&, MetaDataCache&, const ChangeReport&,
                 AdapterError&) override {
    return true;
  }

 private:
  std::u16string name_;
};

std::u16string nameOf(std::int64_t number) {
  const std::string digits = std::to_string(100000 + number);
  return u"idle" + std::u16string(digits.begin(), digits.end());
}

const std::u16string Source = u"folder/source.idle";

void OpenAndCloseFloor(benchmark::State& state) {
  std::vector<std::shared_ptr<CPPAdapterV2>> prototypes;
  for (std::int64_t number = 0; number < state.range(0); ++number) {
    prototypes.push_back(std::make_shared<Idle>(nameOf(number)));
  }
  const std::u16string section = nameOf(0);
  std::map<std::u16string, std::shared_ptr<CPPAdapterV2>> cache;
  for (auto _ : state) {
    std::vector<std::shared_ptr<CPPAdapterV2>> claiming;
    for (const auto& each : prototypes) {
      for (const std::u16string& extension : each->getSupportedExtensions()) {
        if (extension == u".idle") claiming.push_back(each);
      }
    }
    std::shared_ptr<CPPAdapterV2> opened;
    for (const auto& each : claiming) {
      if (each->getSectionName() != section) continue;
      opened.reset(each->clone());
      break;
    }
    const std::u16string qualifier = Source + u"::" + section;
    cache.emplace(qualifier, opened);
    bool done = opened->open(Source);
    keepAlive(done);
    cache.erase(qualifier);
  }
}
BENCHMARK(OpenAndCloseFloor)->Arg(1)->Arg(10)->Arg(100)->Arg(1000);

void OpenAndClose(benchmark::State& state) {
  measureBy(state, "OpenAndCloseFloor/" + std::to_string(state.range(0)));
  for (std::int64_t number = 0; number < state.range(0); ++number) {
    AdapterManagerV2::registerCPPAdapter(std::make_shared<Idle>(nameOf(number)));
  }
  const std::u16string section = nameOf(0);
  for (auto _ : state) {
    bool done = AdapterManagerV2::openSource(Source, section, {});
    keepAlive(done);
    AdapterManagerV2::closeSource(Source, section, {});
  }
  AdapterRegistryV2::getInstance().destroy();
}
BENCHMARK(OpenAndClose)->Arg(1)->Arg(10)->Arg(100)->Arg(1000);

/// A model for elements that stay; it is made anew before there are many.
class ModelInUse {
 public:
  const lx::base::Model& forNext(benchmark::State& state) {
    constexpr int many = 1000;
    if (++elements_ == many) {
      state.PauseTiming();
      model_ = lx::base::Model::create();
      elements_ = 0;
      state.ResumeTiming();
    }
    return model_;
  }

 private:
  lx::base::Model model_ = lx::base::Model::create();
  int elements_ = 0;
};

void GetDataFloor(benchmark::State& state) {
  const std::u16string section = nameOf(0);
  const std::map<std::u16string, std::shared_ptr<CPPAdapterV2>> cache{
      {Source + u"::" + section, std::make_shared<Idle>(section)}};
  ModelInUse model;
  for (auto _ : state) {
    const std::u16string qualifier = Source + u"::" + section;
    const auto found = cache.find(qualifier);
    keepAlive(found);
    const AdapterError made = AdapterError::create(model.forNext(state));
    keepAlive(made);
  }
}
BENCHMARK(GetDataFloor);

void GetData(benchmark::State& state) {
  measureBy(state, "GetDataFloor");
  const std::u16string section = nameOf(0);
  AdapterManagerV2::registerCPPAdapter(std::make_shared<Idle>(section));
  AdapterManagerV2::openSource(Source, section, {});
  const lx::base::Model owner = lx::base::Model::create();
  const DataContainer container = DataContainer::create(owner);
  ModelInUse model;
  for (auto _ : state) {
    const AdapterError error =
        AdapterManagerV2::getData(Source, section, container, u"", model.forNext(state));
    keepAlive(error);
  }
  AdapterManagerV2::closeSource(Source, section, {});
  AdapterRegistryV2::getInstance().destroy();
}
BENCHMARK(GetData);

void CompareExtensionsFloor(benchmark::State& state) {
  const std::u16string left = u".test";
  const std::u16string right = u".TEST";
  const auto fold = [](char16_t unit) { return unit >= u'A' && unit <= u'Z' ? unit + 32 : unit + 0; };
  for (auto _ : state) {
    keepAlive(left);
    bool equal = left.size() == right.size();
    for (std::size_t at = 0; equal && at < left.size(); ++at) equal = fold(left[at]) == fold(right[at]);
    keepAlive(equal);
  }
}
BENCHMARK(CompareExtensionsFloor);

void CompareExtensions(benchmark::State& state) {
  measureBy(state, "CompareExtensionsFloor");
  const std::u16string left = u".test";
  const std::u16string right = u".TEST";
  for (auto _ : state) {
    keepAlive(left);
    bool equal = lx::text::equalNormalizedIgnoringCase(left, right);
    keepAlive(equal);
  }
}
BENCHMARK(CompareExtensions);

}  // namespace
