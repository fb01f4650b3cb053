// Operations of the broker within transactions that its client has open: on the client's models, on that of
// the registry and on that of the cache, which are then all committed or all abandoned.

#include <array>
#include <exception>
#include <functional>
#include <optional>
#include <stdexcept>

#include "nd_data_adapter/model/AdapterCacheV2.h"
#include "nd_data_adapter/model/AdapterConfig.h"
#include "nd_data_adapter/model/AdapterRegistryV2.h"
#include "platform/foundation/ModelImpl.h"
#include "tests/nd_data_adapter/broker/GetDataTest.h"
#include "tests/support/Thrown.h"
#include "tests/support/describe.h"

using namespace nd::data::adapter;
using get_data_test::noError;
using lx::base::Model;
using lx::base::Transaction;
using support::contentsOf;
using support::isLeftBy;
using support::Lines;
using support::ProbeAdapter;
using support::stateOfBroker;

namespace {

using Names = std::vector<std::u16string>;

enum class End { Commit, Abandon };

class OuterTransactions : public get_data_test::GetDataTest {
 protected:
  /// Makes an element in the model of the answers and acts, all in transactions that are then ended.
  void within(End end, const std::function<void()>& act) const {
    const std::array<Model, 4> models{AdapterRegistryV2::getInstance().getModel(),
                                      AdapterCacheV2::getInstance().getModel(), model, tmpModel};
    {
      std::array<std::optional<Transaction>, 4> transactions;
      for (std::size_t at = 0; at < models.size(); ++at)
        transactions[at].emplace(models[at].impl()->beginTransaction(false));
      AdapterConfig::create(tmpModel);
      act();
      for (std::optional<Transaction>& each : transactions) {
        EXPECT_TRUE(each->isOpen()) << "a transaction of the client was ended";
        if (end == End::Commit) each->commit();
        each.reset();
      }
    }
    for (const Model& each : models) EXPECT_FALSE(each.impl()->hasOpenTransaction());
  }

  /// Acts likewise, and something that it calls throws.
  void throwWithin(End end, const std::string& call, const std::function<void()>& act) const {
    within(end, [&] {
      log->throwAt(call, thrown);
      EXPECT_TRUE(isLeftBy(thrown, act));
      EXPECT_EQ(log->actionsLeft(), 0U);
    });
  }

  const std::exception_ptr thrown = std::make_exception_ptr(std::runtime_error("the source is offline"));
};

/// Names the class of each element of a model.
Lines classesIn(const Model& model) {
  Lines lines = contentsOf(model);
  for (std::string& line : lines) line = line.substr(0, line.find(' '));
  return lines;
}

// Operations that an adapter leaves by an exception

TEST_F(OuterTransactions, KeepTheOpeningWhoseOpenThrowsWhenTheyAreCommitted) {
  throwWithin(End::Commit, "a'1.open", [] { AdapterManagerV2::openSource(u"x.test", u"s", {}); });
  EXPECT_EQ(stateOfBroker(), (Lines{"registered a: a", "open x.test::s: a'1"}));
  EXPECT_EQ(classesIn(tmpModel), Lines{"AdapterConfig"});
}

TEST_F(OuterTransactions, TakeTheOpeningWhoseOpenThrowsBackWhenTheyAreAbandoned) {
  throwWithin(End::Abandon, "a'1.open", [] { AdapterManagerV2::openSource(u"x.test", u"s", {}); });
  EXPECT_EQ(calls().back(), "a'1.~");
  EXPECT_EQ(stateOfBroker(), Lines{"registered a: a"});
  EXPECT_TRUE(contentsOf(tmpModel).empty());
}

TEST_F(OuterTransactions, RegisterNobodyWhoseNameThrows) {
  const std::shared_ptr<ProbeAdapter> probe = makeProbe(u"b");
  for (const End end : {End::Commit, End::Abandon}) {
    throwWithin(end, "b.getAdapterName", [&] { AdapterManagerV2::registerCPPAdapter(probe); });
    EXPECT_EQ(stateOfBroker(), Lines{"registered a: a"});
  }
  EXPECT_EQ(probe.use_count(), 1);
  EXPECT_EQ(classesIn(tmpModel), Lines{"AdapterConfig"}) << "that of the commit";
}

TEST_F(OuterTransactions, KeepNothingOfConfigurationsThatAnAdapterBreaksOff) {
  registerProbe(u"b");
  throwWithin(End::Commit, "b.getType", [&] { AdapterManagerV2::getAdapterConfig(u"x.test", tmpModel); });
  EXPECT_EQ(classesIn(tmpModel), Lines{"AdapterConfig"}) << "what the client made itself";
  throwWithin(End::Abandon, "b.getType", [&] { AdapterManagerV2::getAdapterConfig(u"x.test", tmpModel); });
  EXPECT_EQ(classesIn(tmpModel), Lines{"AdapterConfig"});
}

TEST_F(OuterTransactions, KeepTheErrorAndTheEmptyControlsOfAReadThatThrowsWhenTheyAreCommitted) {
  open();
  script.hasVariants = true;
  throwWithin(End::Commit, "a'1.getVariantControls", [&] { get(); });
  EXPECT_EQ(classesIn(tmpModel), (Lines{"AdapterConfig", "AdapterError"}));
  EXPECT_EQ(contentsOf(tmpModel).back(), noError);
  EXPECT_TRUE(controls().empty());
}

TEST_F(OuterTransactions, TakeTheErrorAndTheEmptyControlsOfAReadThatThrowsBackWhenTheyAreAbandoned) {
  open();
  script.hasVariants = true;
  throwWithin(End::Abandon, "a'1.getVariantControls", [&] { get(); });
  EXPECT_TRUE(contentsOf(tmpModel).empty());
  EXPECT_EQ(controls(), (Names{u"old", u"older"}));
  EXPECT_EQ(stateOfBroker(), (Lines{"registered a: a", "open x.test::s: a'1"}));
}

// Removals that are committed later: the adapter ends with the outermost commit, and nothing is open then

TEST_F(OuterTransactions, EndAnUnregisteredAdapterWhenTheyAreCommittedAndLetItRegisterAnother) {
  const Model registryModel = AdapterRegistryV2::getInstance().getModel();
  bool wasOpen = true;
  log->at("a.~", [&] {
    wasOpen = registryModel.impl()->hasOpenTransaction();
    EXPECT_TRUE(AdapterManagerV2::registerCPPAdapter(makeProbe(u"a")));
  });
  Transaction outer = registryModel.impl()->beginTransaction(false);
  EXPECT_TRUE(AdapterManagerV2::unregisterAdapterByName(u"a"));
  EXPECT_TRUE(calls().empty()) << "it may be wanted back";
  outer.commit();
  EXPECT_EQ(log->actionsLeft(), 0U);
  EXPECT_FALSE(wasOpen);
  EXPECT_EQ(calls(), (Lines{"a.~", "a.getAdapterName", "a.getAdapterName"}));
  EXPECT_EQ(stateOfBroker(), Lines{"registered a: a"});
}

TEST_F(OuterTransactions, EndAClosedAdapterWhenTheyAreCommittedAndLetItOpenASource) {
  open();
  const Model cacheModel = AdapterCacheV2::getInstance().getModel();
  bool wasOpen = true;
  log->at("a'1.~", [&] {
    wasOpen = cacheModel.impl()->hasOpenTransaction();
    EXPECT_TRUE(AdapterManagerV2::openSource(u"x.test", u"s", {}));
    EXPECT_TRUE(AdapterManagerV2::registerCPPAdapter(makeProbe(u"b")));
  });
  Transaction outer = cacheModel.impl()->beginTransaction(false);
  EXPECT_TRUE(AdapterManagerV2::closeSource(u"x.test", u"s", {}));
  EXPECT_TRUE(calls().empty());
  outer.commit();
  EXPECT_EQ(log->actionsLeft(), 0U);
  EXPECT_FALSE(wasOpen);
  EXPECT_EQ(stateOfBroker(), (Lines{"registered a: a", "registered b: b", "open x.test::s: a'2"}));
}

}  // namespace
