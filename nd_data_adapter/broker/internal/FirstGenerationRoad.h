#pragma once

#include <memory>
#include <string>
#include <vector>

#include <boost/smart_ptr/shared_ptr.hpp>

#include "nd_data_adapter/export.h"
#include "nd_data_adapter/model/AdapterConfig.h"
#include "nd_data_adapter/model/AdapterError.h"
#include "nd_data_adapter/model/DataContainer.h"

namespace nd::data::adapter::detail {

/// What the facade asks of the first generation of adapters. The road itself has none: it knows no name and
/// serves no source.
class ND_DATA_ADAPTER_EXPORT FirstGenerationRoad {
 public:
  virtual ~FirstGenerationRoad();

  /// Give the road that the facade takes.
  static FirstGenerationRoad& current();

  /// Put another road in the place of the current one, and give this one back; null stands for the empty
  /// road.
  static std::unique_ptr<FirstGenerationRoad> replace(std::unique_ptr<FirstGenerationRoad> road);

  virtual bool isAdapterRegisteredByName(const std::u16string& adapterName);
  virtual bool isAdapterRegisteredByExtension(const std::u16string& extension);
  virtual std::vector<std::u16string> getAllAdapterNames();
  virtual bool hasReadingAdapters(const std::u16string& source);
  virtual bool hasWritingAdapters(const std::u16string& source);

  /// List what the adapters of the source can do with it, as elements of tmpModel, within the open
  /// transaction.
  virtual std::vector<AdapterConfig> getAdapterConfig(const std::u16string& source,
                                                      const lx::base::Model& tmpModel);

  virtual std::u16string getChecksum(const std::u16string& source, const std::u16string& section);
  virtual std::vector<std::u16string> getExternalSources(const std::u16string& source,
                                                         const std::u16string& section);

  /// Read the source into the container, whose `DataCache` is dataCache. States `Unsupported` with the
  /// source if no adapter serves the section.
  virtual void getData(const std::u16string& source, const std::u16string& section,
                       const DataContainer& cache, const boost::shared_ptr<inWorkSpace_tag>& dataCache,
                       const AdapterError& error);
};

}  // namespace nd::data::adapter::detail
