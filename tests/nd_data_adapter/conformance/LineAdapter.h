#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "nd_data_adapter/nd_data_adapter.h"
#include "platform/foundation/ElementMap.h"

/// A small adapter that keeps its contract: each line of a ".lines" file is a name, a blank and a number. Its
/// parts are there to be overridden, so that each way to break the contract is a few lines.
class LineAdapter : public CPPAdapterV2 {
 public:
  using Error = nd::data::adapter::AdapterError;

  CPPAdapterV2* clone() override { return new LineAdapter; }
  std::u16string getAdapterName() override { return u"Lines"; }
  std::vector<std::u16string> getSupportedExtensions() override { return {u".lines"}; }
  bool isSourceValid(const std::u16string& source) override;
  bool supportsReading(const std::u16string&) override { return true; }
  bool supportsWriting(const std::u16string&) override { return false; }
  bool open(const std::u16string& source) override;
  bool close() override;
  std::u16string getCurrentChecksum() override;
  bool hasData() override;
  bool getData(const Workspace& dataCache, MetaDataCache& metaDataCache, const std::u16string& prevChecksum,
               Error& error) override;
  bool writeData(const Workspace& dataCache, const Workspace& conditionalCache, MetaDataCache& metaDataCache,
                 const nd::data::adapter::ChangeReport& diff, Error& error) override;

 protected:
  using Variables = std::vector<std::pair<std::string, double>>;

  bool isOpen() const noexcept { return isOpen_; }

  /// Bind to a source; tells whether its file is there.
  bool bind(const std::u16string& source);

  /// Give the source that is read when something is asked of the content.
  virtual std::u16string boundSource() const { return source_; }

  /// Tell whether what the source names is there, and give its content.
  virtual bool isThere(const std::filesystem::path& path) const;
  virtual std::string contentOf(const std::filesystem::path& path) const;

  /// Give the content of the source; false if it isn't there.
  bool readContent(std::string& content) const;

  /// Read the lines of a content; false at the first that is wrong, with those before it read.
  static bool parse(std::string_view content, Variables& variables);

  static void assign(const Variables& variables, const Workspace& workspace);
  static void addUnit(MetaDataCache& metaDataCache);
  bool fail(Error& error, nd::data::adapter::AdapterDiagnostic diagnostic, const std::u16string& message);

 private:
  bool isOpen_ = false;
  std::u16string source_;
};
