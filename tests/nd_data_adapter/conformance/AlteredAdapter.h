#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "nd_data_adapter/model/AdapterType.h"
#include "tests/nd_data_adapter/conformance/LineAdapter.h"

/// A `LineAdapter` some of whose operations were replaced, so that a way to go wrong, or to be right in
/// another way, is a line of a table.
class AlteredAdapter final : public LineAdapter {
 public:
  using Self = AlteredAdapter;
  using Text = std::u16string;

  /// What to do in place of the operation of the same name; the original is `self.LineAdapter::open(…)`.
  struct Ways {
    std::function<CPPAdapterV2*(Self&)> clone{};
    std::function<Text(Self&)> name{};
    std::function<Text(Self&)> section{};
    std::function<std::vector<Text>(Self&)> extensions{};
    std::function<nd::data::adapter::AdapterType(Self&)> type{};
    std::function<bool(Self&, const Text&)> isSourceValid{};
    std::function<bool(Self&, const Text&)> supportsReading{};
    std::function<bool(Self&, const Text&)> supportsWriting{};
    std::function<bool(Self&, const Text&)> open{};
    std::function<bool(Self&)> close{};
    std::function<std::vector<Text>(Self&)> externalSources{};
    std::function<Text(Self&)> checksum{};
    std::function<bool(Self&)> hasData{};
    std::function<bool(Self&, const Workspace&, MetaDataCache&, const Text&, Error&)> getData{};
    std::function<bool(Self&, const Workspace&, MetaDataCache&, Error&)> writeData{};
    std::function<bool(Self&)> hasVariants{};
    std::function<std::vector<Text>(Self&)> variantControls{};
    std::function<void(Self&)> destructor{};
  };

  explicit AlteredAdapter(Ways ways) : ways_(std::move(ways)) {}
  AlteredAdapter(const AlteredAdapter&) = delete;
  AlteredAdapter& operator=(const AlteredAdapter&) = delete;
  ~AlteredAdapter() override {
    if (ways_.destructor) ways_.destructor(*this);
  }

  CPPAdapterV2* clone() override { return ways_.clone ? ways_.clone(*this) : new AlteredAdapter(ways_); }
  Text getAdapterName() override { return ways_.name ? ways_.name(*this) : LineAdapter::getAdapterName(); }
  Text getSectionName() override {
    return ways_.section ? ways_.section(*this) : LineAdapter::getSectionName();
  }
  std::vector<Text> getSupportedExtensions() override {
    return ways_.extensions ? ways_.extensions(*this) : LineAdapter::getSupportedExtensions();
  }
  nd::data::adapter::AdapterType getType() override {
    return ways_.type ? ways_.type(*this) : LineAdapter::getType();
  }
  bool isSourceValid(const Text& source) override {
    return ways_.isSourceValid ? ways_.isSourceValid(*this, source) : LineAdapter::isSourceValid(source);
  }
  bool supportsReading(const Text& source) override {
    return ways_.supportsReading ? ways_.supportsReading(*this, source)
                                 : LineAdapter::supportsReading(source);
  }
  bool supportsWriting(const Text& source) override {
    return ways_.supportsWriting ? ways_.supportsWriting(*this, source)
                                 : LineAdapter::supportsWriting(source);
  }
  bool open(const Text& source) override {
    return ways_.open ? ways_.open(*this, source) : LineAdapter::open(source);
  }
  bool close() override { return ways_.close ? ways_.close(*this) : LineAdapter::close(); }
  std::vector<Text> getExternalSources() override {
    return ways_.externalSources ? ways_.externalSources(*this) : LineAdapter::getExternalSources();
  }
  Text getCurrentChecksum() override {
    return ways_.checksum ? ways_.checksum(*this) : LineAdapter::getCurrentChecksum();
  }
  bool hasData() override { return ways_.hasData ? ways_.hasData(*this) : LineAdapter::hasData(); }
  bool getData(const Workspace& dataCache, MetaDataCache& metaDataCache, const Text& prevChecksum,
               Error& error) override {
    return ways_.getData ? ways_.getData(*this, dataCache, metaDataCache, prevChecksum, error)
                         : LineAdapter::getData(dataCache, metaDataCache, prevChecksum, error);
  }
  bool writeData(const Workspace& dataCache, const Workspace& conditionalCache, MetaDataCache& metaDataCache,
                 const nd::data::adapter::ChangeReport& diff, Error& error) override {
    return ways_.writeData ? ways_.writeData(*this, dataCache, metaDataCache, error)
                           : LineAdapter::writeData(dataCache, conditionalCache, metaDataCache, diff, error);
  }
  bool hasVariants() override {
    return ways_.hasVariants ? ways_.hasVariants(*this) : LineAdapter::hasVariants();
  }
  std::vector<Text> getVariantControls() override {
    return ways_.variantControls ? ways_.variantControls(*this) : LineAdapter::getVariantControls();
  }

  using LineAdapter::addUnit;
  using LineAdapter::assign;
  using LineAdapter::bind;
  using LineAdapter::boundSource;
  using LineAdapter::fail;
  using LineAdapter::isOpen;
  using LineAdapter::parse;
  using LineAdapter::readContent;
  using LineAdapter::Variables;

  /// What an altered operation notes in its object; a clone has nothing of it.
  int count = 0;
  Text note;
  CPPAdapterV2* other = nullptr;
  Workspace workspace;

 private:
  Ways ways_;
};
