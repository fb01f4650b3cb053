#pragma once

#include <string>
#include <vector>

#include "nd_data_adapter/nd_data_adapter.h"

namespace params {

/// Reads the lines of a `.params` file as variables; README.md tells the format. It doesn't write.
///
/// The file is read whole whenever something is asked of its content, and closed again. Variables and
/// metadata of the client are replaced once all of the file has been read without an error, and stay as they
/// are if it can't be.
class ParamsAdapter final : public CPPAdapterV2 {
 public:
  CPPAdapterV2* clone() override;
  std::u16string getAdapterName() override;
  std::vector<std::u16string> getSupportedExtensions() override;

  /// Tells whether the source is a regular file.
  bool isSourceValid(const std::u16string& source) override;

  /// Tells whether the source has the adapter's extension; the file is not looked at.
  bool supportsReading(const std::u16string& source) override;
  bool supportsWriting(const std::u16string& source) override;

  /// Binds to the source. False if it can't be read now; `getData` then says why, unless it can be by then.
  bool open(const std::u16string& source) override;
  bool close() override;

  /// Gives a UUID made from the content as it is now; empty if the file can't be read.
  std::u16string getCurrentChecksum() override;

  /// Tells whether the file can be read and holds at least one variable.
  bool hasData() override;

  /// Reads the file into the workspace, whatever the client has seen before, and leaves no metadata.
  ///
  /// Failures: `Inaccessible` for a source that isn't there or is no regular file, `NoPermission`,
  /// `HardError` when reading breaks off, `UnrecognizedFormat` with line and column for a content that breaks
  /// a rule, and `GenericFailure` when nothing is open.
  bool getData(const Workspace& dataCache, MetaDataCache& metaDataCache, const std::u16string& prevChecksum,
               nd::data::adapter::AdapterError& error) override;

  /// States `Unsupported`; nothing is written.
  bool writeData(const Workspace& dataCache, const Workspace& conditionalCache, MetaDataCache& metaDataCache,
                 const nd::data::adapter::ChangeReport& diff,
                 nd::data::adapter::AdapterError& error) override;

 private:
  bool isOpen_ = false;
  std::u16string source_;
};

}  // namespace params
