// The facade's operations on registered adapters.

#include "nd_data_adapter/model/AdapterCacheV2.h"
#include "nd_data_adapter/model/AdapterManagerV2.h"
#include "nd_data_adapter/model/AdapterRegistryV2.h"
#include "platform/foundation/meta/Meta.h"
#include "tests/support/BrokerTest.h"
#include "tests/support/FakeFirstGeneration.h"
#include "tests/support/ModelWatch.h"
#include "tests/support/describe.h"

using namespace nd::data::adapter;
using support::FakeFirstGeneration;
using support::Lines;
using support::ModelWatch;
using support::ProbeAdapter;
using support::stateOfBroker;

namespace {

using Names = std::vector<std::u16string>;
using AdapterManagerV2Class = support::BrokerTest;
using RegisterCPPAdapter = support::BrokerTest;
using UnregisterAdapterByName = support::BrokerTest;
using IsExtensionRegistered = support::BrokerTest;
using GetAllRegisteredAdapterNames = support::BrokerTest;

// The class

/// What the facade offers, in its order, with the names of the arguments.
const std::vector<Names>& wantedOperations() {
  static const std::vector<Names> operations{
      {u"registerCPPAdapter", u"adapter"},
      {u"unregisterAdapterByName", u"adapterName"},
      {u"registerValueSrcAdapter", u"adapterClassName"},
      {u"isExtensionRegistered", u"extension"},
      {u"getAllRegisteredAdapterNames"},
      {u"getAllOpenedAdapterNamesWithSection"},
      {u"closeAdapterbyNamesWithSection", u"adapterNameAndSection"},
      {u"doesSourceExist", u"source"},
      {u"hasReadingAdapters", u"source"},
      {u"hasWritingAdapters", u"source"},
      {u"getAdapterConfig", u"source", u"tmpModel"},
      {u"openSource", u"source", u"section", u"observer"},
      {u"getChecksum", u"source", u"section"},
      {u"getExternalSources", u"source", u"section"},
      {u"getData", u"source", u"section", u"cache", u"prevChecksum", u"tmpModel"},
      {u"getConditionalData", u"source", u"section", u"cache", u"cccr", u"prevChecksum", u"tmpModel"},
      {u"writeData", u"source", u"section", u"cache", u"diff", u"tmpModel"},
      {u"closeSource", u"source", u"section", u"observer"}};
  return operations;
}

bool comesLater(const Names& operation) {
  return operation[0] == u"registerValueSrcAdapter" || operation[0] == u"getConditionalData" ||
         operation[0] == u"writeData";
}

TEST_F(AdapterManagerV2Class, HasNoPropertiesAndOnlyStaticOperationsInTheirOrder) {
  EXPECT_TRUE(AdapterManagerV2::metaClass().getProperties().empty());
  std::vector<Names> found;
  for (const lx::base::meta::Operation& operation : AdapterManagerV2::metaClass().getOwnOperations()) {
    EXPECT_TRUE(operation.isStatic());
    EXPECT_TRUE(operation.isPublic());
    Names names{operation.getName()};
    for (const lx::base::meta::Argument& argument : operation.getArguments())
      names.push_back(argument.getName());
    found.push_back(names);
  }
  std::vector<Names> wanted;
  for (const Names& operation : wantedOperations()) {
    const bool isThere = std::find(found.begin(), found.end(), operation) != found.end();
    if (isThere || !comesLater(operation)) wanted.push_back(operation);
  }
  EXPECT_EQ(found, wanted);
}

// registerCPPAdapter

TEST_F(RegisterCPPAdapter, AsksTheNameThenBothGenerationsAndLeavesTheRestToTheRegistry) {
  FakeFirstGeneration::install(log);
  EXPECT_TRUE(AdapterManagerV2::registerCPPAdapter(makeProbe(u"a")));
  EXPECT_EQ(calls(), (Lines{"a.getAdapterName", "first.isAdapterRegisteredByName(a)", "a.getAdapterName"}));
  EXPECT_EQ(stateOfBroker(), Lines{"registered a: a"});
}

TEST_F(RegisterCPPAdapter, RefusesANameOfTheSecondGenerationWithoutAskingTheFirst) {
  registerProbe(u"a");
  FakeFirstGeneration::install(log);
  const ModelWatch watch(AdapterRegistryV2::getInstance().getModel());
  EXPECT_FALSE(AdapterManagerV2::registerCPPAdapter(makeProbe(u"a")));
  EXPECT_EQ(calls(), (Lines{"a.getAdapterName", "a.~"}));
  EXPECT_EQ(watch.transactions(), 0U);
}

TEST_F(RegisterCPPAdapter, RefusesANameThatOnlyTheFirstGenerationKnows) {
  FakeFirstGeneration::install(log).knowsName = true;
  EXPECT_FALSE(AdapterManagerV2::registerCPPAdapter(makeProbe(u"a")));
  EXPECT_EQ(calls(), (Lines{"a.getAdapterName", "first.isAdapterRegisteredByName(a)", "a.~"}));
  EXPECT_TRUE(stateOfBroker().empty());
}

TEST_F(RegisterCPPAdapter, RefusesANullPointerAndAsksNothing) {
  FakeFirstGeneration::install(log);
  EXPECT_FALSE(AdapterManagerV2::registerCPPAdapter(nullptr));
  EXPECT_TRUE(calls().empty());
  EXPECT_TRUE(stateOfBroker().empty());
}

TEST_F(RegisterCPPAdapter, RegistersAnAdapterWhoseLastPointerIsResetWhileItIsAskedForItsName) {
  std::shared_ptr<CPPAdapterV2> pointer = makeProbe(u"a");
  log->at("a.getAdapterName", [&] { pointer.reset(); });
  EXPECT_TRUE(AdapterManagerV2::registerCPPAdapter(pointer));
  EXPECT_EQ(calls(), (Lines{"a.getAdapterName", "a.getAdapterName"})) << "it does not end";
  EXPECT_EQ(support::stateOfBroker(), Lines{"registered a: a"});
}

TEST_F(RegisterCPPAdapter, RegistersUnderTheNameThatTheAdapterGivesTheRegistry) {
  const std::shared_ptr<ProbeAdapter> probe = makeProbe(u"a");
  log->at(
      "a.getAdapterName", [&] { probe->script().name = u"b"; }, 2);
  EXPECT_TRUE(AdapterManagerV2::registerCPPAdapter(probe));
  EXPECT_EQ(stateOfBroker(), Lines{"registered b: a"});
}

// unregisterAdapterByName

TEST_F(UnregisterAdapterByName, TakesAPrototypeAwayOnce) {
  registerProbe(u"a");
  FakeFirstGeneration::install(log);
  EXPECT_TRUE(AdapterManagerV2::unregisterAdapterByName(u"a"));
  EXPECT_FALSE(AdapterManagerV2::unregisterAdapterByName(u"a"));
  EXPECT_EQ(calls(), Lines{"a.~"}) << "the first generation is not touched";
}

TEST_F(UnregisterAdapterByName, LeavesSourcesOpenThatWereOpenedFromTheAdapter) {
  registerProbe(u"a")->script().checksum = u"17";
  EXPECT_TRUE(AdapterManagerV2::openSource(u"x.test", u"s", {}));
  calls();
  EXPECT_TRUE(AdapterManagerV2::unregisterAdapterByName(u"a"));
  EXPECT_EQ(calls(), Lines{"a.~"});
  EXPECT_EQ(stateOfBroker(), Lines{"open x.test::s: a'1"});
  EXPECT_EQ(AdapterManagerV2::getChecksum(u"x.test", u"s"), u"17");
}

TEST_F(UnregisterAdapterByName, DoesNotKnowTheNamesOfTheFirstGeneration) {
  FakeFirstGeneration& first = FakeFirstGeneration::install(log);
  first.knowsName = true;
  first.names = {u"a"};
  EXPECT_FALSE(AdapterManagerV2::unregisterAdapterByName(u"a"));
}

// isExtensionRegistered

TEST_F(IsExtensionRegistered, AsksTheFirstGenerationFirstAndStopsAtItsYes) {
  registerProbe(u"a");
  FakeFirstGeneration::install(log).knowsExtension = true;
  EXPECT_TRUE(AdapterManagerV2::isExtensionRegistered(u".test"));
  EXPECT_EQ(calls(), Lines{"first.isAdapterRegisteredByExtension(.test)"});
}

TEST_F(IsExtensionRegistered, AsksTheSecondGenerationAfterTheNoOfTheFirst) {
  registerProbe(u"a");
  FakeFirstGeneration::install(log);
  EXPECT_TRUE(AdapterManagerV2::isExtensionRegistered(u".TEST"));
  EXPECT_EQ(calls(), (Lines{"first.isAdapterRegisteredByExtension(.TEST)", "a.getSupportedExtensions"}));
  EXPECT_FALSE(AdapterManagerV2::isExtensionRegistered(u".none"));
}

TEST_F(IsExtensionRegistered, PassesTheExtensionOnAsItIs) {
  registerProbe(u"a");
  FakeFirstGeneration::install(log);
  EXPECT_FALSE(AdapterManagerV2::isExtensionRegistered(u"test"));
  EXPECT_FALSE(AdapterManagerV2::isExtensionRegistered(u""));
  EXPECT_EQ(calls(), (Lines{"first.isAdapterRegisteredByExtension(test)", "a.getSupportedExtensions",
                            "first.isAdapterRegisteredByExtension()", "a.getSupportedExtensions"}));
}

// getAllRegisteredAdapterNames

TEST_F(GetAllRegisteredAdapterNames, SortsTheNamesOfBothGenerationsByCodeUnitAndKeepsDuplicates) {
  const std::u16string grin = u"\U0001F600";
  registerProbe(u"b");
  registerProbe(u"a");
  registerProbe(grin);
  FakeFirstGeneration::install(log).names = {u"b", u"\uFFFD", u"B", u"b"};
  EXPECT_EQ(AdapterManagerV2::getAllRegisteredAdapterNames(),
            (Names{u"B", u"a", u"b", u"b", u"b", grin, u"\uFFFD"}));
}

TEST_F(GetAllRegisteredAdapterNames, AsksTheFirstGenerationThenEachPrototype) {
  registerProbe(u"b");
  registerProbe(u"a");
  FakeFirstGeneration::install(log);
  AdapterManagerV2::getAllRegisteredAdapterNames();
  EXPECT_EQ(calls(), (Lines{"first.getAllAdapterNames", "a.getAdapterName", "b.getAdapterName"}));
}

TEST_F(GetAllRegisteredAdapterNames, SortsTheNamesOfTodayWhereTheRegistryDoesNot) {
  registerProbe(u"a")->script().name = u"z";
  registerProbe(u"b");
  EXPECT_EQ(AdapterManagerV2::getAllRegisteredAdapterNames(), (Names{u"b", u"z"}));
}

TEST_F(GetAllRegisteredAdapterNames, AreNoneWithoutAdapters) {
  EXPECT_TRUE(AdapterManagerV2::getAllRegisteredAdapterNames().empty());
}

}  // namespace
