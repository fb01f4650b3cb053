// The broker when memory runs out: each operation is run with its first allocation failing, then with its
// second, and so on until it succeeds. What it may leave is what it may leave when anything else throws.

#include "tests/nd_data_adapter/broker/AllocationFailureTest.h"

#include <set>

#include "nd_data_adapter/broker/internal/FirstGenerationRoad.h"
#include "nd_data_adapter/builtin_adapters/TestV2Adapter.h"
#include "nd_data_adapter/model/AdapterCacheV2.h"
#include "nd_data_adapter/model/AdapterError.h"
#include "nd_data_adapter/model/AdapterManagerV2.h"
#include "nd_data_adapter/model/AdapterRegistryV2.h"
#include "nd_data_adapter/model/DataContainer.h"
#include "platform/host/Workspace.h"
#include "platform/host/hv.h"
#include "platform/services/Diagnostic.h"

using namespace nd::data::adapter;
using allocation_failure_test::BrokerAllocationFailure;
using allocation_failure_test::closings;
using allocation_failure_test::liveAdapters;
using allocation_failure_test::Section;
using allocation_failure_test::Silent;
using allocation_failure_test::Source;
using support::contentsOf;
using support::Lines;
using support::missingIn;

namespace {

std::string error(const std::string& diagnostic, const std::string& message, const std::string& adapter,
                  const std::string& source) {
  return "AdapterError Diagnostic=" + diagnostic + " ErrorMessage='" + message + "' Adapter='" + adapter +
         "' SourceFile='" + source + "'";
}

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

TEST_F(BrokerAllocationFailure, NeedsNoMemoryToUnregisterWhatNobodyObserves) {
  const std::u16string name = Silent().getAdapterName();
  bool isUnregistered = false;
  const auto unregister = [&] { isUnregistered = AdapterManagerV2::unregisterAdapterByName(name); };
  EXPECT_EQ(failEachWithoutATrace(registerOne, unregister), 0U);
  EXPECT_TRUE(isUnregistered);
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
  AdapterError stated;
  std::set<std::string> seen;
  const auto prepare = [&] {
    stated = AdapterError::create(model);
    stated.setError(AdapterDiagnostic::Unsupported, old, old, old);
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

TEST_F(BrokerAllocationFailure, MakesASingletonInItsModelAtTheNextCallAndTellsOfNoneThatCouldNotBeMade) {
  bool isDestroyed = false;
  std::size_t heardOfTheEnd = 0;
  std::size_t failedMakings = 0;
  const auto makeAnother = [&] {
    isDestroyed = false;
    AdapterRegistryV2::getInstance().destroy();
    isDestroyed = true;
    heardOfTheEnd = listener.notices;
    AdapterRegistryV2::getInstance();
  };
  const auto check = [&](const Lines& before) {
    EXPECT_EQ(state(), before);
    EXPECT_TRUE(AdapterRegistryV2::getInstance().isAlive());
    EXPECT_EQ(AdapterRegistryV2::getInstance().getModel().impl()->numberOfElements(), 1U);
    if (!isDestroyed) return;
    ++failedMakings;
    // The fixture has asked for the registry since, and was the next to do so, before it stopped listening.
    EXPECT_EQ(listener.notices, 2 * heardOfTheEnd);
  };
  failEach(nothing, makeAnother, check);
  EXPECT_GE(failedMakings, 4U) << "the element's memory alone in each of the four runs";
  EXPECT_EQ(heardOfTheEnd, 1U) << "the last run is observed";
  EXPECT_TRUE(AdapterRegistryV2::getInstance().isAlive());
}

TEST_F(BrokerAllocationFailure,
       GivesTheFormerSingletonBackWhenTheTransactionIsAbandonedThatCouldMakeNoOther) {
  AdapterRegistryV2 former;
  bool isDestroyed = false;
  std::size_t failedMakings = 0;
  const auto makeAnotherInVain = [&] {
    isDestroyed = false;
    const lx::base::Transaction abandoned = former.getModel().impl()->beginTransaction(false);
    former.destroy();
    isDestroyed = true;
    AdapterRegistryV2::getInstance();
  };
  const auto expectTheFormer = [&] {
    EXPECT_TRUE(former.isAlive());
    EXPECT_EQ(AdapterRegistryV2::getInstance(), former);
    EXPECT_EQ(former.getModel().impl()->numberOfElements(), 1U);
    EXPECT_EQ(listener.notices, 0U);
  };
  failEach([&] { former = AdapterRegistryV2::getInstance(); }, makeAnotherInVain,
           [&](const Lines& before) {
             EXPECT_EQ(state(), before);
             expectTheFormer();
             if (isDestroyed) ++failedMakings;
           });
  EXPECT_GE(failedMakings, 4U) << "the element's memory alone in each of the four runs";
  expectTheFormer();  // also where the other was made
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
