// The broker when memory runs out: each operation is run with its first allocation failing, then with its
// second, and so on until it succeeds. What it may leave is what it may leave when anything else throws.

#include <functional>
#include <set>

#include "nd_data_adapter/broker/internal/FirstGenerationRoad.h"
#include "nd_data_adapter/builtin_adapters/TestV2Adapter.h"
#include "nd_data_adapter/model/AdapterCacheV2.h"
#include "nd_data_adapter/model/AdapterError.h"
#include "nd_data_adapter/model/AdapterManagerV2.h"
#include "nd_data_adapter/model/AdapterRegistryV2.h"
#include "nd_data_adapter/model/DataContainer.h"
#include "platform/foundation/ChangeObserver.h"
#include "platform/host/Workspace.h"
#include "platform/host/hv.h"
#include "platform/services/Diagnostic.h"
#include "tests/support/AllocationFault.h"
#include "tests/support/describe.h"

using namespace nd::data::adapter;
using lx::base::Model;
using support::contentsOf;
using support::Lines;
using support::missingIn;

namespace {

constexpr const char16_t* Section = u"TestV2Section";
constexpr const char16_t* Source = u"a source with a name that fits into no short string.test";

std::string error(const std::string& diagnostic, const std::string& message, const std::string& adapter,
                  const std::string& source) {
  return "AdapterError Diagnostic=" + diagnostic + " ErrorMessage='" + message + "' Adapter='" + adapter +
         "' SourceFile='" + source + "'";
}

std::size_t liveAdapters = 0;
std::size_t closings = 0;

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
    lines.push_back(std::to_string(ndsvGetLiveDiagnosticCount()) + " diagnostics");
    return lines;
  }

  /// Prepares, and runs an operation with one allocation after the other failing. After each failure the
  /// state must be as before, but for what the check allows. Gives the number of failures.
  std::size_t failEach(const std::function<void()>& prepare, const std::function<void()>& operation,
                       const std::function<void(const Lines&)>& check) {
    for (std::size_t number = 1; number < 1000; ++number) {
      SCOPED_TRACE("allocation " + std::to_string(number));
      reset();
      prepare();
      const Lines before = state();
      const AllocationAttempt attempt = attemptWithout(number, operation);
      if (!attempt.hasOccurred) return number - 1;
      EXPECT_TRUE(attempt.isRefused) << "failed unnoticed";
      EXPECT_FALSE(AdapterRegistryV2::getInstance().getModel().impl()->hasOpenTransaction());
      EXPECT_FALSE(AdapterCacheV2::getInstance().getModel().impl()->hasOpenTransaction());
      EXPECT_FALSE(model.impl()->hasOpenTransaction());
      check(before);
      if (HasFailure()) return number;
    }
    ADD_FAILURE() << "the operation never succeeds";
    return 0;
  }

  std::size_t failEachWithoutATrace(const std::function<void()>& prepare,
                                    const std::function<void()>& operation) {
    return failEach(prepare, operation, [this](const Lines& before) { EXPECT_EQ(state(), before); });
  }

  static void registerOne() { EXPECT_TRUE(AdapterManagerV2::registerCPPAdapter(std::make_shared<Silent>())); }
  static void openOne() {
    registerOne();
    EXPECT_TRUE(AdapterManagerV2::openSource(Source, Section, {}));
  }
  static void nothing() {}

  Model model;
  DataContainer container;
};

TEST_F(BrokerAllocationFailure, LeavesNothingOfARegistration) {
  const auto adapter = std::make_shared<Silent>();
  EXPECT_GE(failEach(
                nothing, [&] { AdapterManagerV2::registerCPPAdapter(adapter); },
                [&](const Lines& before) {
                  EXPECT_EQ(state(), before);
                  EXPECT_EQ(adapter.use_count(), 1);
                }),
            4U);
  AdapterRegistryV2::getInstance().destroy();
}

TEST_F(BrokerAllocationFailure, KeepsWhatCouldNotBeUnregistered) {
  const std::u16string name = Silent().getAdapterName();
  EXPECT_GE(failEachWithoutATrace(registerOne, [&] { AdapterManagerV2::unregisterAdapterByName(name); }), 1U);
}

TEST_F(BrokerAllocationFailure, DeletesANewAdapterWhoseControlBlockCanNotBeMade) {
  const std::u16string name = Silent().getAdapterName();
  const AdapterRegistryV2 registry = AdapterRegistryV2::getInstance();
  EXPECT_EQ(
      failEachWithoutATrace(registerOne, [&] { AdapterRegistryV2::getInstance().getNewCPPAdapter(name); }),
      2U)
      << "the adapter and its control block";
}

TEST_F(BrokerAllocationFailure, OpensNothingOrCountsAsOpen) {
  EXPECT_GE(failEach(
                registerOne, [] { AdapterManagerV2::openSource(Source, Section, {}); },
                [this](const Lines& before) {
                  // Once the adapter is filed it stays, as it does when `open` throws.
                  if (AdapterManagerV2::getAllOpenedAdapterNamesWithSection().empty())
                    EXPECT_EQ(state(), before);
                  else
                    EXPECT_EQ(liveAdapters, 2U);
                }),
            6U);
}

TEST_F(BrokerAllocationFailure, KeepsWhatCouldNotBeClosed) {
  EXPECT_GE(failEachWithoutATrace(openOne, [] { AdapterManagerV2::closeSource(Source, Section, {}); }), 2U);
}

TEST_F(BrokerAllocationFailure, LeavesNoConfig) {
  EXPECT_GE(failEachWithoutATrace(registerOne, [this] { AdapterManagerV2::getAdapterConfig(Source, model); }),
            5U);
}

TEST_F(BrokerAllocationFailure, LeavesTheErrorOfAReadWholeAndOfTheControlsTheFormerOnesOrAPrefixOfTheNew) {
  const std::string clear = error("0", "", "", "");
  const auto containerWith = [](const std::string& variables, const std::string& controls) {
    return "DataContainer DataCache=[" + variables + "] ConditionalCache=none ConditionControls=[" +
           controls + "] DataModel=none MetaDataCache=[]";
  };
  const std::string variable = "gain: 0x0 double = []";
  const std::vector<Lines> allowed{
      {containerWith("", "former")},
      {containerWith("", "former"), clear},
      {containerWith(variable, "former"), clear},
      {containerWith(variable, ""), clear},
      {containerWith(variable, "the name of a control that fits into no short string"), clear}};
  Lines broker;
  const auto prepare = [&] {
    openOne();
    broker = support::stateOfBroker();
  };
  EXPECT_GE(failEach(
                prepare, [this] { AdapterManagerV2::getData(Source, Section, container, u"", model); },
                [&](const Lines&) {
                  EXPECT_THAT(allowed, testing::Contains(contentsOf(model)));
                  EXPECT_EQ(support::stateOfBroker(), broker);
                  EXPECT_EQ(liveAdapters, 2U);
                }),
            5U);
}

/// An observer for whom a setter's transaction is kept and told.
class Deaf final : public lx::base::ChangeObserver {
  void changed(const lx::base::ChangeSet&) noexcept override {}
};

TEST_F(BrokerAllocationFailure, LeavesOfAnErrorThatIsSetAPrefixOfTheNewValuesAndTheRestOfTheOld) {
  const std::u16string old = u"an old text that fits into no short string";
  const std::u16string fresh = u"a new text that fits into no short string";
  const auto described = [](int numberOfNew) {
    const auto text = [&](int index) {
      return numberOfNew > index ? "a new text that fits into no short string"
                                 : "an old text that fits into no short string";
    };
    return error(numberOfNew > 0 ? "6" : "2", text(1), text(2), text(3));
  };
  Lines allowed;
  for (int numberOfNew = 0; numberOfNew < 4; ++numberOfNew) allowed.push_back(described(numberOfNew));
  for (const bool isObserved : {false, true}) {
    SCOPED_TRACE(isObserved ? "observed" : "not observed");
    Deaf observer;
    AdapterError stated;
    std::set<std::string> seen;
    const auto prepare = [&] {
      stated = AdapterError::create(model);
      stated.setError(AdapterDiagnostic::Unsupported, old, old, old);
      if (isObserved) model.impl()->addObserver(observer);
    };
    const auto setError = [&] { stated.setError(AdapterDiagnostic::HardError, fresh, fresh, fresh); };
    EXPECT_GE(failEach(prepare, setError,
                       [&](const Lines&) {
                         EXPECT_THAT(allowed, testing::Contains(contentsOf(model).back()));
                         seen.insert(contentsOf(model).back());
                       }),
              3U);
    EXPECT_EQ(contentsOf(model).back(), described(4));
    EXPECT_GE(seen.size(), 3U) << "each text needs memory, and fails for itself";
    model.impl()->removeObserver(observer);
  }
}

TEST_F(BrokerAllocationFailure, ClosesEveryAdapterOnceAlsoWhenTheEndOfTheCacheHasToBeRepeated) {
  const auto prepare = [] {
    openOne();
    EXPECT_TRUE(
        AdapterManagerV2::openSource(u"another source with a name that is as long.test", Section, {}));
    closings = 0;
  };
  EXPECT_GE(failEach(
                prepare, [] { AdapterCacheV2::getInstance().destroy(); },
                [](const Lines&) {
                  EXPECT_LE(closings, 2U);
                  AdapterCacheV2::getInstance().destroy();
                  EXPECT_EQ(closings, 2U);
                  EXPECT_EQ(liveAdapters, 1U) << "the prototype is left";
                }),
            4U);
}

TEST_F(BrokerAllocationFailure, FreesADiagnosticThatCouldNotBeFinished) {
  std::vector<AdapterError> errors;
  const auto prepare = [&] {
    errors.clear();
    for (int number = 0; number < 3; ++number) {
      errors.push_back(AdapterError::create(model));
      errors.back().setError(AdapterDiagnostic::HardError, u"a message that fits into no short string", u"",
                             Source);
    }
  };
  const auto convert = [&] { ndsvDestroyDiagnostic(AdapterError::convertAdapterErrorsToDiagnostic(errors)); };
  EXPECT_GE(failEach(prepare, convert,
                     [&](const Lines& before) {
                       EXPECT_EQ(missingIn(before, state()), Lines{}) << "a diagnostic stays";
                       bool wasAlive = false;
                       for (const AdapterError& error : errors) {
                         EXPECT_TRUE(error.isAlive() || !wasAlive) << "one behind the one in work is gone";
                         wasAlive = error.isAlive();
                       }
                       EXPECT_TRUE(wasAlive) << "the one in work stays alive";
                     }),
            6U);
}

TEST_F(BrokerAllocationFailure, MakesASingletonAtTheNextCall) {
  const auto makeAnother = [] {
    AdapterRegistryV2::getInstance().getModel().destroy();
    AdapterRegistryV2::getInstance();
  };
  EXPECT_GE(failEach(nothing, makeAnother,
                     [](const Lines&) {
                       EXPECT_TRUE(AdapterRegistryV2::getInstance().isAlive());
                       EXPECT_EQ(AdapterRegistryV2::getInstance().getModel().impl()->numberOfElements(), 1U);
                     }),
            2U);  // the model and the element
}

TEST_F(BrokerAllocationFailure, FreesTheArrayOfATestAdapterThatCouldNotGiveItsData) {
  const std::size_t arraysBefore = hvGetLiveArrayCount();
  const std::shared_ptr<CPPAdapterV2> adapter = TestV2Adapter::make();
  AdapterError error;
  boost::shared_ptr<inWorkSpace_tag> workspace;
  const auto prepare = [&] {
    error = AdapterError::create(model);
    workspace = inCreateWorkspace(0);
  };
  EXPECT_GE(
      failEach(
          prepare, [&] { adapter->getData(workspace, container.getMetaDataCacheMutable(), u"", error); },
          [&](const Lines&) {
            inClearArraysInDesiredWS(workspace);
            EXPECT_EQ(hvGetLiveArrayCount(), arraysBefore);
          }),
      12U);
}

}  // namespace
