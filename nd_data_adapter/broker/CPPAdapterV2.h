#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <boost/smart_ptr/shared_ptr.hpp>

#include "nd_data_adapter/export.h"

struct inWorkSpace_tag;

namespace lx::base {
template <class K, class E>
class ElementMultimap;
}

namespace nd::data::adapter {
class AdapterError;
class ChangeReport;
class ConditionControlChangeReport;
class MetaDataEntry;
enum class AdapterType : std::int32_t;
}  // namespace nd::data::adapter

/// An adapter: how one kind of source, told by its file extensions, is reached.
///
/// One object per kind is registered as a prototype with `AdapterRegistryV2` and answers the questions that
/// need no open source. Every opening works on an object of its own that `clone` makes, held under the
/// source's qualifier until the source is closed. Clients never call an adapter; `AdapterManagerV2` does:
///
///     class Ini final : public CPPAdapterV2 {
///      public:
///       CPPAdapterV2* clone() override { return new Ini; }
///       std::u16string getAdapterName() override { return u"Ini"; }
///       std::vector<std::u16string> getSupportedExtensions() override { return {u".ini"}; }
///       …
///     };
///     nd::data::adapter::AdapterManagerV2::registerCPPAdapter(std::make_shared<Ini>());
///
/// Failures of a source are stated by `setError` in the `AdapterError` argument of the data operations, which
/// is live and clear on entry; their boolean results are not looked at. Their workspaces may be empty
/// pointers. The other operations must not fail: what they throw, as any exception, passes through the broker
/// to its caller. An adapter is used by one thread at a time.
class ND_DATA_ADAPTER_EXPORT CPPAdapterV2 {
 public:
  using Workspace = boost::shared_ptr<inWorkSpace_tag>;
  using MetaDataCache = lx::base::ElementMultimap<std::u16string, nd::data::adapter::MetaDataEntry>;

  /// Release what an opening holds: a source is closed by dropping its adapter, as a rule without a call of
  /// `close`.
  virtual ~CPPAdapterV2();

  /// Make a fresh, unopened adapter of the same kind. It has the state that the kind needs to work, and
  /// nothing that this object has from an opening. The caller owns the result; if it is null, the source
  /// isn't opened.
  virtual CPPAdapterV2* clone() = 0;

  /// Give the unique name under which the adapter is registered. It must stay the same.
  virtual std::u16string getAdapterName() = 0;

  /// List the file extensions that the adapter claims, each with its leading dot. They are matched without
  /// regard to case and to canonically equal spellings.
  virtual std::vector<std::u16string> getSupportedExtensions() = 0;

  /// Name the part of a source that this adapter serves; the adapter's name unless overridden. Sections are
  /// compared exactly.
  virtual std::u16string getSectionName();

  /// Tell whether the source exists for this adapter. Asked of the prototype, with nothing open.
  virtual bool isSourceValid(const std::u16string& source) = 0;

  /// Tell whether the adapter can read the source. Asked of the prototype.
  virtual bool supportsReading(const std::u16string& source) = 0;

  /// Tell whether the adapter can write the source. Asked of the prototype.
  virtual bool supportsWriting(const std::u16string& source) = 0;

  /// Bind this object to the source. The answer becomes that of `AdapterManagerV2::openSource`; after false,
  /// and after an exception, the opening stands all the same, so that the next read can say what is wrong.
  virtual bool open(const std::u16string& source) = 0;

  /// End the opening. Called only when the whole cache of opened sources goes away.
  virtual bool close() = 0;

  /// List the other sources on which the open source depends; none unless overridden.
  virtual std::vector<std::u16string> getExternalSources();

  /// Give a text that changes when the content of the open source changes. The broker does not interpret it.
  virtual std::u16string getCurrentChecksum() = 0;

  /// Tell whether the open source holds data. The broker does not ask.
  virtual bool hasData() = 0;

  /// Fill `dataCache` with the variables of the open source and `metaDataCache` with its metadata.
  ///
  /// `prevChecksum` is the checksum that the client saw last, empty if none. A file adapter replaces all of
  /// both caches, and only once its read has succeeded.
  virtual bool getData(const Workspace& dataCache, MetaDataCache& metaDataCache,
                       const std::u16string& prevChecksum, nd::data::adapter::AdapterError& error) = 0;

  /// Write what `diff` names to the open source, taking the values from the caches. An empty `diff` means
  /// that it is not known what changed. A failure is stated in `error`.
  virtual bool writeData(const Workspace& dataCache, const Workspace& conditionalCache,
                         MetaDataCache& metaDataCache, const nd::data::adapter::ChangeReport& diff,
                         nd::data::adapter::AdapterError& error) = 0;

  /// Tell whether the data depends on condition controls; false unless overridden.
  virtual bool hasVariants();

  /// Name the condition controls; none unless overridden.
  virtual std::vector<std::u16string> getVariantControls();

  /// Bring `conditionalCache` up to date for the controls that `cccr` reports changed.
  ///
  /// Unless overridden: clear the workspace, state `Unsupported` with empty texts, and answer false.
  virtual bool getConditionalData(const Workspace& conditionalCache,
                                  const nd::data::adapter::ConditionControlChangeReport& cccr,
                                  const std::u16string& prevChecksum, nd::data::adapter::AdapterError& error);

  /// Tell the kind of adapter that `AdapterConfig` reports; `AdapterType::CPPAdapter` unless overridden.
  virtual nd::data::adapter::AdapterType getType();

  /// Tell whether the adapter can work now; true unless overridden. The broker does not ask.
  virtual bool isReady();
};
