#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <boost/smart_ptr/shared_ptr.hpp>
#include <boost/smart_ptr/weak_ptr.hpp>
#include <boost/uuid/uuid.hpp>

#include "adapters/json/export.h"
#include "nd_data_adapter/broker/CPPAdapterV2.h"

namespace nd::adapters::json {

/// Reads the members of the object at the top of a JSON file as variables; `docs/formats/json.md` tells how
/// values map. It doesn't write. The broker uses it once it is registered (`registerJsonAdapter` does that);
/// by itself it is used so:
///
///     JsonAdapter adapter;
///     adapter.open(u"gains.json");
///     if (!adapter.getData(workspace, metaDataCache, u"", error)) show(error.errorMessage());
///     adapter.close();
///
/// Its files are read whole at each `getData` and closed again; between reads the adapter holds nothing of
/// them. Data and metadata of the client are replaced once all of it has been read, and stay as they are if
/// it can't be.
class ND_JSON_ADAPTER_EXPORT JsonAdapter final : public CPPAdapterV2 {
 public:
  CPPAdapterV2* clone() override;
  std::u16string getAdapterName() override;
  std::vector<std::u16string> getSupportedExtensions() override;

  /// Tell whether the source is a regular file. Rights are not looked at.
  bool isSourceValid(const std::u16string& source) override;

  /// Tell whether the source has the adapter's extension; the file is not looked at.
  bool supportsReading(const std::u16string& source) override;
  bool supportsWriting(const std::u16string& source) override;

  /// Bind to the source. False if its file can't be opened for reading now; the next `getData` then says
  /// why, unless it can be by then.
  bool open(const std::u16string& source) override;
  bool close() override;

  /// List the paths of the files that the source includes now, directly or through others.
  std::vector<std::u16string> getExternalSources() override;

  /// Give the checksum of the content as it is now, that of included files too; empty if the file of the
  /// source can't be read.
  std::u16string getCurrentChecksum() override;

  /// Tell whether the file can be read and holds at least one variable. That takes as long as reading it.
  bool hasData() override;

  /// Read the file, and those that it includes, into the workspace, and what it says about variables into
  /// the metadata: an entry under the variable's name, with a `DataContainer` whose `DataCache` holds unit,
  /// description and what else there is.
  ///
  /// If `prevChecksum` is that of the content now, and the last read of this opening has put the same content
  /// into the same two caches, they are left as they are. Failures: `Inaccessible` for a file that isn't
  /// there, is no regular file or can't be read, `NoPermission`, `UnrecognizedFormat` with line and column
  /// for a content that can't be read, and `GenericFailure` for a file that is too large and when nothing is
  /// open.
  bool getData(const Workspace& dataCache, MetaDataCache& metaDataCache, const std::u16string& prevChecksum,
               nd::data::adapter::AdapterError& error) override;

  /// State `Unsupported`; nothing is written.
  bool writeData(const Workspace& dataCache, const Workspace& conditionalCache, MetaDataCache& metaDataCache,
                 const nd::data::adapter::ChangeReport& diff,
                 nd::data::adapter::AdapterError& error) override;

 private:
  /// The element that holds the metadata, and under which of its properties.
  using MetaDataIdentity = std::pair<boost::uuids::uuid, unsigned>;

  void read(const Workspace& dataCache, MetaDataCache& metaDataCache, const std::u16string& prevChecksum);
  std::function<void(const std::string& path)> rights() const;
  void forgetRead() noexcept;
  bool wasReadInto(const Workspace& dataCache, const MetaDataIdentity& metaData,
                   const std::u16string& checksum) const;

  bool isOpen_ = false;
  std::u16string source_;
  /// The source without its tag, and the same for the system.
  std::u16string location_;
  std::string path_;
  /// What the last read that succeeded has read, and into what.
  std::u16string lastChecksum_;
  boost::weak_ptr<inWorkSpace_tag> lastWorkspace_;
  MetaDataIdentity lastMetaData_{};
};

}  // namespace nd::adapters::json
