#pragma once

#include <string>

#include <boost/shared_ptr.hpp>

#include "nd_data_adapter/model/AdapterCacheV2.h"
#include "nd_data_adapter/model/AdapterConfig.h"
#include "nd_data_adapter/model/AdapterError.h"
#include "nd_data_adapter/model/CPPAdapterV2Entry.h"
#include "platform/foundation/ModelImpl.h"
#include "tests/nd_data_adapter/model/ModelTest.h"
#include "tests/support/AllocationWalk.h"

namespace allocation_test {

using namespace model_test;
using nd::data::adapter::AdapterCacheV2;
using nd::data::adapter::AdapterConfig;
using nd::data::adapter::AdapterError;
using nd::data::adapter::AdapterType;
using nd::data::adapter::CPPAdapterV2Entry;

/// A text that doesn't fit into its object.
constexpr const char16_t* Long = u"a text that is long enough to have memory of its own";

/// A model with something of each kind in it, always the same.
struct World {
  static constexpr bool isReproducible = true;

  explicit World(bool isObserved);
  World(const World&) = delete;
  World& operator=(const World&) = delete;
  ~World();

  /// Change something of all elements, in the open transaction.
  void touch() const;

  /// Write down the model with elements as numbers, so that two worlds compare, and what their handles tell.
  std::string state() const;

  Model model = Model::create(), second = Model::create();
  ChangeReport report, other;             // with three tuples, with one
  ConditionControlChangeReport variants;  // with three entries, two of one name
  DataContainer container;                // with texts, and metadata that hold a report with tuples
  AdapterCacheV2 cache;                   // with two entries
  ChangeTuple tuple, gone, proxy;         // in no container; destroyed; a proxy
  ConditionControlChangeEntry entry;      // in no container
  MetaDataEntry metadata;                 // in no container, empty
  CPPAdapterV2Entry held;                 // in no container
  AdapterConfig config;
  AdapterError error;
  boost::shared_ptr<inWorkSpace_tag> workspace;
  std::shared_ptr<CPPAdapterV2> adapter;
  Reader reader;
  bool isObserved;
};

}  // namespace allocation_test
