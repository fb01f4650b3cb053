#pragma once

#include <array>
#include <memory>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "tests/nd_data_adapter/model/random/Pairing.h"

class CPPAdapterV2;
struct inWorkSpace_tag;

namespace random_walk {

/// The pointers that properties are set to; null is one of each.
class Values {
 public:
  using Adapter = std::shared_ptr<CPPAdapterV2>;
  using Workspace = boost::shared_ptr<inWorkSpace_tag>;

  static const Values& get();

  const std::array<Adapter, 3>& adapters() const noexcept { return adapters_; }
  const std::array<Workspace, 3>& workspaces() const noexcept { return workspaces_; }
  const std::array<Model, 3>& models() const noexcept { return models_; }

  Adapter adapterAt(const Content& address) const;
  Workspace workspaceAt(const Content& address) const;
  Model modelAt(const Content& address) const;

  /// List how often each pointer is held.
  std::vector<long> uses() const;

 private:
  Values();

  std::array<Adapter, 3> adapters_;
  std::array<Workspace, 3> workspaces_;
  std::array<Model, 3> models_;
};

/// Set a property by its setter.
void assign(const ModelElement& element, Kind kind, unsigned index, const Content& content);

/// Set a property by its name, or by the operation that is there instead of a setter.
void assignByName(const ModelElement& element, Kind kind, unsigned index, const Content& content);

}  // namespace random_walk
