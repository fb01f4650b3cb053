#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "nd_data_adapter/broker/CPPAdapterV2.h"
#include "nd_data_adapter/conformance/Contents.h"
#include "nd_data_adapter/conformance/NamedCalls.h"
#include "nd_data_adapter/conformance/Subject.h"
#include "nd_data_adapter/model/AdapterDiagnostic.h"
#include "nd_data_adapter/model/AdapterError.h"
#include "nd_data_adapter/model/ChangeReport.h"
#include "nd_data_adapter/model/ConditionControlChangeReport.h"
#include "nd_data_adapter/model/DataContainer.h"
#include "nd_data_adapter/model/MetaDataEntry.h"
#include "platform/foundation/ElementMap.h"
#include "platform/foundation/Model.h"
#include "platform/host/Workspace.h"
#include "platform/host/hv.h"

namespace nd::conformance {

/// What an operation stated in its error.
struct Statement {
  data::adapter::AdapterDiagnostic diagnostic = data::adapter::AdapterDiagnostic::NoDiagnostic;
  std::u16string message;
  std::u16string adapter;
  std::u16string source;

  bool isFailure() const noexcept { return diagnostic != data::adapter::AdapterDiagnostic::NoDiagnostic; }
};

/// A client with a workspace and metadata, who calls an adapter as the broker does.
class Client {
 public:
  Client() {
    container_.setDataCache(inCreateWorkspace(16));
    container_.setConditionalCache(inCreateWorkspace(16));
  }
  Client(const Client&) = delete;
  Client& operator=(const Client&) = delete;
  ~Client() = default;

  /// Hold a variable and an entry of metadata that no source has.
  void holdSomething() {
    const hvArrayPtr value(hvCreateDoubleScalar(-271828.0));
    inAssignInDesiredWS(value.get(), "held_by_the_client", container_.dataCache());
    container_.createIntoMetaDataCache(
        data::adapter::MetaDataEntry::Builder().setName(u"held by the client"));
  }

  Statement read(CPPAdapterV2& adapter, const std::u16string& prevChecksum = {}) {
    return read(adapter, container_.dataCache(), prevChecksum);
  }

  /// Read with an empty pointer for the workspace.
  Statement readNowhere(CPPAdapterV2& adapter) { return read(adapter, nullptr, {}); }

  /// Ask for a write of all that the client holds.
  Statement write(CPPAdapterV2& adapter) {
    return write(adapter, container_.dataCache(), container_.conditionalCache());
  }

  /// Ask for a write with empty pointers for the workspaces.
  Statement writeNothing(CPPAdapterV2& adapter) { return write(adapter, nullptr, nullptr); }

  /// Ask for conditional data with nothing changed, and with an empty pointer.
  Statement getConditionalDataNowhere(CPPAdapterV2& adapter) {
    data::adapter::AdapterError error = clearError();
    adapter.getConditionalData(nullptr, data::adapter::ConditionControlChangeReport::create(model_), {},
                               error);
    return statementOf(error);
  }

  Contents contents() const { return Contents(container_); }
  const data::adapter::DataContainer& container() const noexcept { return container_; }
  const lx::base::Model& model() const noexcept { return model_; }

 private:
  data::adapter::AdapterError clearError() const {
    data::adapter::AdapterError error = data::adapter::AdapterError::create(model_);
    error.setError(data::adapter::AdapterDiagnostic::NoDiagnostic, u"", u"", u"");
    return error;
  }

  static Statement statementOf(const data::adapter::AdapterError& error) {
    return {error.getId(), error.errorMessage(), error.getAdapterName(), error.getSource()};
  }

  Statement read(CPPAdapterV2& adapter, const CPPAdapterV2::Workspace& workspace,
                 const std::u16string& prevChecksum) {
    data::adapter::AdapterError error = clearError();
    adapter.getData(workspace, container_.getMetaDataCacheMutable(), prevChecksum, error);
    return statementOf(error);
  }

  Statement write(CPPAdapterV2& adapter, const CPPAdapterV2::Workspace& workspace,
                  const CPPAdapterV2::Workspace& conditional) {
    data::adapter::AdapterError error = clearError();
    adapter.writeData(workspace, conditional, container_.getMetaDataCacheMutable(),
                      data::adapter::ChangeReport::create(model_), error);
    return statementOf(error);
  }

  lx::base::Model model_ = lx::base::Model::create();
  data::adapter::DataContainer container_ = data::adapter::DataContainer::create(model_);
};

/// Make a clone; the result is never null.
inline std::unique_ptr<CPPAdapterV2> cloneOf(CPPAdapterV2& prototype) {
  std::unique_ptr<CPPAdapterV2> clone(prototype.clone());
  if (!clone) throw std::runtime_error("clone gave null, so that no source can be opened");
  return clone;
}

/// Make an adapter as it would be registered. It names the calls that throw.
inline std::shared_ptr<CPPAdapterV2> newPrototype(Subject& subject) {
  return std::make_shared<NamedCalls>(subject.makeAdapter());
}

/// Make an adapter as the broker does for an opening. Its prototype is gone, as after an unregistration.
inline std::unique_ptr<CPPAdapterV2> newAdapter(Subject& subject) {
  return cloneOf(*newPrototype(subject));
}

/// List what can be read: one source, or two.
inline std::vector<std::u16string> goodSources(Subject& subject) {
  std::vector<std::u16string> sources = {subject.goodSource()};
  if (subject.hasOtherGoodSource()) sources.push_back(subject.otherGoodSource());
  return sources;
}

/// List what can't be read: the bad sources, then the absent ones.
inline std::vector<std::u16string> failingSources(Subject& subject) {
  std::vector<std::u16string> sources;
  if (subject.meetsBadSources()) sources = subject.badSources();
  if (subject.meetsAbsentSources()) {
    for (std::u16string& source : subject.absentSources()) sources.push_back(std::move(source));
  }
  return sources;
}

/// List what can't be read, and then what can.
inline std::vector<std::u16string> allSources(Subject& subject) {
  std::vector<std::u16string> sources = failingSources(subject);
  for (std::u16string& source : goodSources(subject)) sources.push_back(std::move(source));
  return sources;
}

}  // namespace nd::conformance
