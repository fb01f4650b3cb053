#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

#include "tests/nd_data_adapter/conformance/LineAdapter.h"

/// Adapters with one fault each, such as real adapters come to have.
namespace broken {

template <class Self>
class Adapter : public LineAdapter {
 public:
  CPPAdapterV2* clone() override { return new Self; }
};

class GetsANameByItsOpening final : public Adapter<GetsANameByItsOpening> {
 public:
  std::u16string getAdapterName() override { return isOpen() ? boundSource() : u"Lines"; }
  std::u16string getSectionName() override { return u"Lines"; }
};

class ForgetsTheDot final : public Adapter<ForgetsTheDot> {
 public:
  std::vector<std::u16string> getSupportedExtensions() override { return {u"lines"}; }
};

class TakesAnythingForASource final : public Adapter<TakesAnythingForASource> {
 public:
  bool isSourceValid(const std::u16string&) override { return true; }
};

class ClonesItsOpening final : public LineAdapter {
 public:
  CPPAdapterV2* clone() override { return new ClonesItsOpening(*this); }
};

class SharesItsOpening final : public Adapter<SharesItsOpening> {
 public:
  bool open(const std::u16string& source) override {
    latest() = source;
    return LineAdapter::open(source);
  }

 protected:
  std::u16string boundSource() const override { return isOpen() ? latest() : std::u16string(); }

 private:
  static std::u16string& latest() {
    static std::u16string source;
    return source;
  }
};

class BindsToWhatItIsAskedAbout final : public Adapter<BindsToWhatItIsAskedAbout> {
 public:
  bool isSourceValid(const std::u16string& source) override { return bind(source); }
};

class StaysWithItsFirstSource final : public Adapter<StaysWithItsFirstSource> {
 public:
  bool open(const std::u16string& source) override { return isOpen() || LineAdapter::open(source); }
};

class AddsToTheMetadata final : public Adapter<AddsToTheMetadata> {
 public:
  bool getData(const Workspace& dataCache, MetaDataCache& metaDataCache, const std::u16string&,
               Error& error) override {
    std::string content;
    Variables variables;
    if (!isOpen() || !readContent(content) || !parse(content, variables)) {
      return fail(error, nd::data::adapter::AdapterDiagnostic::Inaccessible, u"It can't be read.");
    }
    inClearArraysInDesiredWS(dataCache);
    assign(variables, dataCache);
    addUnit(metaDataCache);
    return true;
  }
};

class TrustsAnyChecksum final : public Adapter<TrustsAnyChecksum> {
 public:
  bool getData(const Workspace& dataCache, MetaDataCache& metaDataCache, const std::u16string& prevChecksum,
               Error& error) override {
    return !prevChecksum.empty() || LineAdapter::getData(dataCache, metaDataCache, prevChecksum, error);
  }
};

class TakesTheSizeForAChecksum final : public Adapter<TakesTheSizeForAChecksum> {
 public:
  std::u16string getCurrentChecksum() override {
    std::string content;
    if (!isOpen() || !readContent(content)) return {};
    return lx::text::toUtf16(std::to_string(content.size()));
  }
};

class TakesTheTimeForAChecksum final : public Adapter<TakesTheTimeForAChecksum> {
 public:
  std::u16string getCurrentChecksum() override {
    std::string content;
    if (!isOpen() || !readContent(content)) return {};
    const auto time = std::filesystem::last_write_time(lx::text::toUtf8(boundSource()));
    return lx::text::toUtf16(std::to_string(time.time_since_epoch().count()));
  }
};

class DeliversWhileItReads final : public Adapter<DeliversWhileItReads> {
 public:
  bool getData(const Workspace& dataCache, MetaDataCache& metaDataCache, const std::u16string& prevChecksum,
               Error& error) override {
    std::string content;
    Variables variables;
    if (isOpen() && readContent(content)) {
      parse(content, variables);
      inClearArraysInDesiredWS(dataCache);
      assign(variables, dataCache);
    }
    return LineAdapter::getData(dataCache, metaDataCache, prevChecksum, error);
  }
};

class DropsTheMetadataFirst final : public Adapter<DropsTheMetadataFirst> {
 public:
  bool getData(const Workspace& dataCache, MetaDataCache& metaDataCache, const std::u16string& prevChecksum,
               Error& error) override {
    const std::vector<std::u16string> names = metaDataCache.keys();
    metaDataCache.clear();
    if (LineAdapter::getData(dataCache, metaDataCache, prevChecksum, error)) return true;
    for (const std::u16string& name : names) {
      metaDataCache.createInto(nd::data::adapter::MetaDataEntry::Builder().setName(name));
    }
    return false;
  }
};

class ForgetsTheSource final : public Adapter<ForgetsTheSource> {
 public:
  bool getData(const Workspace& dataCache, MetaDataCache& metaDataCache, const std::u16string& prevChecksum,
               Error& error) override {
    if (LineAdapter::getData(dataCache, metaDataCache, prevChecksum, error)) return true;
    error.setError(error.getId(), error.errorMessage(), getAdapterName(), u"");
    return false;
  }
};

class SaysThatItWrote final : public Adapter<SaysThatItWrote> {
 public:
  bool writeData(const Workspace&, const Workspace&, MetaDataCache&, const nd::data::adapter::ChangeReport&,
                 Error&) override {
    return true;
  }
};

class WantsAWorkspace final : public Adapter<WantsAWorkspace> {
 public:
  bool getData(const Workspace& dataCache, MetaDataCache& metaDataCache, const std::u16string& prevChecksum,
               Error& error) override {
    if (!dataCache) throw std::invalid_argument("there is no workspace");
    return LineAdapter::getData(dataCache, metaDataCache, prevChecksum, error);
  }
};

class ThrowsAtOddSources final : public Adapter<ThrowsAtOddSources> {
 public:
  bool isSourceValid(const std::u16string& source) override {
    return std::filesystem::is_regular_file(lx::text::toUtf8(source));  // throws if that can't be found out
  }
};

class LeaksAnArray final : public Adapter<LeaksAnArray> {
 public:
  bool getData(const Workspace& dataCache, MetaDataCache& metaDataCache, const std::u16string& prevChecksum,
               Error& error) override {
    leaked().emplace_back(hvCreateDoubleScalar(1.0));
    return LineAdapter::getData(dataCache, metaDataCache, prevChecksum, error);
  }

 private:
  /// Out of reach for the adapter, though not for the test program, which has a sanitizer to please.
  static std::vector<hvArrayPtr>& leaked() {
    static std::vector<hvArrayPtr> arrays;
    return arrays;
  }
};

/// Holds its file open from open to close, or to its end.
template <class Self>
class HoldsItsFile : public Adapter<Self> {
 public:
  HoldsItsFile() = default;
  HoldsItsFile(const HoldsItsFile&) = delete;
  HoldsItsFile& operator=(const HoldsItsFile&) = delete;
  ~HoldsItsFile() override = default;

  bool open(const std::u16string& source) override {
    release();
    file_ = ::open(lx::text::toUtf8(source).c_str(), O_RDONLY | O_CLOEXEC);
    return Adapter<Self>::open(source);
  }
  bool close() override {
    release();
    return Adapter<Self>::close();
  }

 protected:
  void release() noexcept {
    if (file_ >= 0) ::close(file_);
    file_ = -1;
  }

 private:
  int file_ = -1;
};

class KeepsItsFileOpen final : public HoldsItsFile<KeepsItsFileOpen> {
 public:
  KeepsItsFileOpen() = default;
  ~KeepsItsFileOpen() override { release(); }
};

class ReleasesItsFileInCloseOnly final : public HoldsItsFile<ReleasesItsFileInCloseOnly> {};

class FailsBehindTheRead final : public Adapter<FailsBehindTheRead> {
 public:
  bool hasVariants() override { throw std::logic_error("nobody asks this"); }
};

class HasNoClones final : public LineAdapter {
 public:
  CPPAdapterV2* clone() override { return nullptr; }
};

}  // namespace broken
