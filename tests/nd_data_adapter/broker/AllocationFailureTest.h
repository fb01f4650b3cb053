#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "nd_data_adapter/broker/CPPAdapterV2.h"
#include "nd_data_adapter/model/AdapterCacheV2.h"
#include "nd_data_adapter/model/AdapterError.h"
#include "nd_data_adapter/model/AdapterManagerV2.h"
#include "nd_data_adapter/model/AdapterRegistryV2.h"
#include "nd_data_adapter/model/DataContainer.h"
#include "platform/foundation/ChangeObserver.h"
#include "platform/foundation/ModelImpl.h"
#include "platform/host/Workspace.h"
#include "platform/host/hv.h"
#include "platform/services/Diagnostic.h"
#include "tests/support/AllocationFault.h"
#include "tests/support/describe.h"

/// What the tests of the broker when memory runs out have in common.
namespace allocation_failure_test {

using lx::base::Model;
using nd::data::adapter::AdapterCacheV2;
using nd::data::adapter::AdapterError;
using nd::data::adapter::AdapterManagerV2;
using nd::data::adapter::AdapterRegistryV2;
using nd::data::adapter::ChangeReport;
using nd::data::adapter::DataContainer;
using support::contentsOf;
using support::Lines;

inline constexpr const char16_t* Section = u"TestV2Section";
inline constexpr const char16_t* Source = u"a source with a name that fits into no short string.test";

inline std::size_t liveAdapters = 0;
inline std::size_t closings = 0;

/// An adapter with a name that takes memory, which makes nothing but what the contract asks of it.
class Silent final : public CPPAdapterV2 {
 public:
  Silent() noexcept { ++liveAdapters; }
  ~Silent() override { --liveAdapters; }
  CPPAdapterV2* clone() override { return new Silent; }
  std::u16string getAdapterName() override {
    return u"an adapter with a name that fits into no short string";
  }
  std::vector<std::u16string> getSupportedExtensions() override { return {u".test"}; }
  std::u16string getSectionName() override { return Section; }
  bool isSourceValid(const std::u16string&) override { return true; }
  bool supportsReading(const std::u16string&) override { return true; }
  bool supportsWriting(const std::u16string&) override { return true; }
  bool open(const std::u16string&) override { return true; }
  bool close() override {
    ++closings;
    return true;
  }
  std::u16string getCurrentChecksum() override { return u"1"; }
  bool hasData() override { return true; }
  bool hasVariants() override { return true; }
  std::vector<std::u16string> getVariantControls() override {
    return {u"the name of a control that fits into no short string", u"b"};
  }
  bool getData(const Workspace& data, MetaDataCache&, const std::u16string&, AdapterError&) override {
    inAssignInDesiredWS(nullptr, "gain", data);
    return true;
  }
  bool writeData(const Workspace&, const Workspace&, MetaDataCache&, const ChangeReport&,
                 AdapterError&) override {
    return true;
  }
};

/// An observer for whom a setter's transaction is kept and told; it counts the notices and takes no memory.
class Listener final : public lx::base::ChangeObserver {
 public:
  std::size_t notices = 0;

 private:
  void changed(const lx::base::ChangeSet&) noexcept override { ++notices; }
};

class BrokerAllocationFailure : public testing::Test {
 protected:
  BrokerAllocationFailure() { reset(); }
  ~BrokerAllocationFailure() override {
    AdapterCacheV2::getInstance().destroy();
    AdapterRegistryV2::getInstance().destroy();
    EXPECT_EQ(liveAdapters, 0U);
  }

  void reset() {
    AdapterCacheV2::getInstance().destroy();
    AdapterRegistryV2::getInstance().destroy();
    AdapterCacheV2::getInstance();
    AdapterRegistryV2::getInstance();
    model = Model::create();
    container = DataContainer::create(model);
    container.setDataCache(inCreateWorkspace(4));
    container.getConditionControlsMutable().add(u"former");
  }

  Lines state() const {
    Lines lines = support::stateOfBroker();
    const Lines more = contentsOf(model);
    lines.insert(lines.end(), more.begin(), more.end());
    lines.push_back(std::to_string(liveAdapters) + " adapters");
    lines.push_back(std::to_string(hvGetLiveArrayCount()) + " arrays");
    lines.push_back(std::to_string(ndsvGetLiveDiagnosticCount()) + " diagnostics");
    return lines;
  }

  /// Prepares, and runs an operation with one allocation after the other failing, alone and with all that
  /// follow, with and without observers. After each failure the state must be as the check says, which is
  /// given the one before. Gives the least number of failures that a run had.
  std::size_t failEach(const std::function<void()>& prepare, const std::function<void()>& operation,
                       const std::function<void(const Lines&)>& check) {
    using Extent = AllocationFault::Extent;
    std::size_t least = std::numeric_limits<std::size_t>::max();
    for (const bool observed : {false, true}) {
      for (const Extent extent : {Extent::Alone, Extent::WithAllThatFollow}) {
        SCOPED_TRACE(std::string(extent == Extent::Alone ? "alone" : "with all that follow") +
                     (observed ? ", observed" : ", not observed"));
        isObserved_ = observed;
        least = std::min(least, failEach(extent, prepare, operation, check));
        if (HasFailure()) return least;
      }
    }
    return least;
  }

  /// Does so for an operation that leaves nothing behind, tells nobody of it, and can be repeated.
  std::size_t failEachWithoutATrace(const std::function<void()>& prepare,
                                    const std::function<void()>& operation) {
    return failEach(prepare, operation, [&](const Lines& before) {
      EXPECT_EQ(state(), before);
      EXPECT_EQ(listener.notices, 0U);
      EXPECT_NO_THROW(operation());
    });
  }

  static void registerOne() { EXPECT_TRUE(AdapterManagerV2::registerCPPAdapter(std::make_shared<Silent>())); }
  static void openOne() {
    registerOne();
    EXPECT_TRUE(AdapterManagerV2::openSource(Source, Section, {}));
  }
  static void nothing() {}

  Model model;
  DataContainer container;
  Listener listener;
  bool bears = false;  // the operation may answer all the same when memory runs out

 private:
  std::size_t failEach(AllocationFault::Extent extent, const std::function<void()>& prepare,
                       const std::function<void()>& operation,
                       const std::function<void(const Lines&)>& check) {
    for (std::size_t number = 1; number < 1000; ++number) {
      SCOPED_TRACE("allocation " + std::to_string(number));
      reset();
      prepare();
      const Lines before = state();
      listen(isObserved_);
      const AllocationAttempt attempt = attemptWithout(number, operation, extent);
      listen(false);
      if (!attempt.hasOccurred) return number - 1;
      EXPECT_TRUE(attempt.isRefused || bears) << "failed unnoticed";
      for (const Model& each : models()) EXPECT_FALSE(each.impl()->hasOpenTransaction());
      check(before);
      if (HasFailure()) return number;
    }
    ADD_FAILURE() << "the operation never succeeds";
    return 0;
  }

  std::vector<Model> models() const {
    return {model, AdapterRegistryV2::getInstance().getModel(), AdapterCacheV2::getInstance().getModel()};
  }

  void listen(bool isOn) {
    if (isOn) listener.notices = 0;
    for (const Model& each : models()) {
      if (isOn)
        each.impl()->addObserver(listener);
      else
        each.impl()->removeObserver(listener);
    }
  }

  bool isObserved_ = false;
};

}  // namespace allocation_failure_test
