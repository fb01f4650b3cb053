// What the facade does with sources that are open: closing, checksums, external sources.

#include <boost/uuid/uuid.hpp>

#include "nd_data_adapter/model/AdapterCacheV2.h"
#include "nd_data_adapter/model/AdapterManagerV2.h"
#include "tests/support/BrokerTest.h"
#include "tests/support/FakeFirstGeneration.h"
#include "tests/support/ModelWatch.h"
#include "tests/support/describe.h"

using namespace nd::data::adapter;
using lx::base::Transaction;
using support::FakeFirstGeneration;
using support::Lines;
using support::ModelWatch;
using support::ProbeScript;
using support::stateOfBroker;

namespace {

using Names = std::vector<std::u16string>;

constexpr boost::uuids::uuid Observer{{1, 2, 3}};
constexpr boost::uuids::uuid OtherObserver{{9}};

class OpenedSources : public support::BrokerTest {
 protected:
  ProbeScript& script = registerProbe(u"a")->script();

  void open(const std::u16string& source) const {
    EXPECT_TRUE(AdapterManagerV2::openSource(source, u"s", Observer));
    calls();
  }

  /// Opens "x.test" and leaves its entry without an adapter: the end of the cache, undone.
  void openAndLoseTheAdapter() const {
    open(u"x.test");
    const AdapterCacheV2 cache = AdapterCacheV2::getInstance();
    {
      const Transaction abandoned = cache.getModel().impl()->beginTransaction(false);
      cache.destroy();
    }
    calls();
    EXPECT_EQ(stateOfBroker(), (Lines{"registered a: a", "open x.test::s: null"}));
  }
};

using CloseSource = OpenedSources;
using CloseAdapterByNamesWithSection = OpenedSources;
using GetAllOpenedAdapterNamesWithSection = OpenedSources;
using GetChecksum = OpenedSources;
using GetExternalSources = OpenedSources;
using EntriesWithoutAdapters = OpenedSources;

// closeSource

TEST_F(CloseSource, DropsTheAdapterWithoutClosingIt) {
  open(u"x.test");
  FakeFirstGeneration::install(log);
  EXPECT_TRUE(AdapterManagerV2::closeSource(u"x.test", u"s", Observer));
  EXPECT_EQ(calls(), Lines{"a'1.~"});
  EXPECT_EQ(stateOfBroker(), Lines{"registered a: a"});
}

TEST_F(CloseSource, AnswersFalseForAPairThatIsNotOpen) {
  open(u"x.test");
  EXPECT_FALSE(AdapterManagerV2::closeSource(u"x.test", u"S", Observer));
  EXPECT_FALSE(AdapterManagerV2::closeSource(u"x.TEST", u"s", Observer));
  EXPECT_FALSE(AdapterManagerV2::closeSource(u"", u"", Observer));
  EXPECT_EQ(AdapterManagerV2::getAllOpenedAdapterNamesWithSection(), Names{u"x.test::s"});
}

TEST_F(CloseSource, EndsTheOpeningForAllWhoOpenedIt) {
  open(u"x.test");
  EXPECT_TRUE(AdapterManagerV2::openSource(u"x.test", u"s", OtherObserver));
  EXPECT_TRUE(AdapterManagerV2::closeSource(u"x.test", u"s", OtherObserver)) << "whoever asks";
  EXPECT_FALSE(AdapterManagerV2::closeSource(u"x.test", u"s", Observer));
}

TEST_F(CloseSource, LetsASourceBeOpenedAgainWithANewAdapter) {
  open(u"x.test");
  AdapterManagerV2::closeSource(u"x.test", u"s", Observer);
  open(u"x.test");
  EXPECT_EQ(stateOfBroker().back(), "open x.test::s: a'2");
}

TEST_F(CloseSource, FormsTheQualifierAnew) {
  open(u"x.test");
  EXPECT_FALSE(AdapterManagerV2::closeSource(u"x.test::s", u"", Observer));
  EXPECT_FALSE(AdapterManagerV2::closeSource(u"x.test#", u"s", Observer));
  EXPECT_TRUE(AdapterManagerV2::closeSource(u"x.test", u"s", Observer));
}

// Qualifiers

TEST_F(CloseAdapterByNamesWithSection, TakesAWholeQualifier) {
  open(u"x.test");
  EXPECT_FALSE(AdapterManagerV2::closeAdapterbyNamesWithSection(u"a::s")) << "an adapter's name is no source";
  EXPECT_FALSE(AdapterManagerV2::closeAdapterbyNamesWithSection(u"x.test"));
  EXPECT_FALSE(AdapterManagerV2::closeAdapterbyNamesWithSection(u""));
  EXPECT_TRUE(AdapterManagerV2::closeAdapterbyNamesWithSection(u"x.test::s"));
  EXPECT_FALSE(AdapterManagerV2::closeAdapterbyNamesWithSection(u"x.test::s"));
  EXPECT_EQ(calls(), Lines{"a'1.~"});
}

TEST_F(CloseAdapterByNamesWithSection, ClosesEverythingThatIsListedAsOpen) {
  for (const char16_t* source : {u"x.test", u"y.test", u"z.test"}) open(source);
  for (const std::u16string& qualifier : AdapterManagerV2::getAllOpenedAdapterNamesWithSection()) {
    EXPECT_TRUE(AdapterManagerV2::closeAdapterbyNamesWithSection(qualifier));
  }
  EXPECT_TRUE(AdapterManagerV2::getAllOpenedAdapterNamesWithSection().empty());
}

TEST_F(GetAllOpenedAdapterNamesWithSection, ListsQualifiersAscendingAndAsksNobody) {
  for (const char16_t* source : {u"y.test", u"X.test", u"x.test"}) open(source);
  FakeFirstGeneration::install(log);
  EXPECT_EQ(AdapterManagerV2::getAllOpenedAdapterNamesWithSection(),
            (Names{u"X.test::s", u"x.test::s", u"y.test::s"}));
  EXPECT_TRUE(calls().empty());
}

TEST_F(GetAllOpenedAdapterNamesWithSection, IsEmptyWhenNothingIsOpen) {
  EXPECT_TRUE(AdapterManagerV2::getAllOpenedAdapterNamesWithSection().empty());
}

// getChecksum

TEST_F(GetChecksum, AsksTheOpenAdapterAndNobodyElse) {
  script.checksum = u"17";
  open(u"x.test");
  FakeFirstGeneration::install(log).checksum = u"first";
  EXPECT_EQ(AdapterManagerV2::getChecksum(u"x.test", u"s"), u"17");
  EXPECT_EQ(calls(), Lines{"a'1.getCurrentChecksum"});
}

TEST_F(GetChecksum, GivesWhatTheAdapterSaysAsItIs) {
  script.checksum = std::u16string{u'a', u'\0', char16_t{0xD800}};
  open(u"x.test");
  EXPECT_EQ(AdapterManagerV2::getChecksum(u"x.test", u"s"), script.checksum);
}

TEST_F(GetChecksum, OfAnOpenSourceMayBeEmptyAndIsThenNotTheFirstGenerations) {
  open(u"x.test");
  FakeFirstGeneration::install(log).checksum = u"first";
  EXPECT_EQ(AdapterManagerV2::getChecksum(u"x.test", u"s"), u"");
  EXPECT_EQ(calls(), Lines{"a'1.getCurrentChecksum"});
}

TEST_F(GetChecksum, HandsTheFirstGenerationTheWholeSource) {
  FakeFirstGeneration::install(log);
  AdapterManagerV2::getChecksum(u"x.test#KIND&VALUESRC", u"s");
  EXPECT_EQ(calls(), Lines{"first.getChecksum(x.test#KIND&VALUESRC, s)"});
}

TEST_F(GetChecksum, AsksTheFirstGenerationForWhatIsNotOpen) {
  script.checksum = u"17";
  open(u"x.test");
  FakeFirstGeneration::install(log).checksum = u"first";
  EXPECT_EQ(AdapterManagerV2::getChecksum(u"x.test", u"other"), u"first");
  EXPECT_EQ(AdapterManagerV2::getChecksum(u"y.test", u"s"), u"first");
  EXPECT_EQ(calls(), (Lines{"first.getChecksum(x.test, other)", "first.getChecksum(y.test, s)"}));
}

TEST_F(GetChecksum, IsEmptyForWhatIsNotOpenWithoutAFirstGeneration) {
  script.checksum = u"17";
  EXPECT_EQ(AdapterManagerV2::getChecksum(u"x.test", u"s"), u"");
  EXPECT_TRUE(calls().empty()) << "prototypes are not asked";
}

TEST_F(GetChecksum, KeepsTheAdapterToTheEndOfTheCallWhenItClosesItsSource) {
  script.checksum = u"17";
  open(u"x.test");
  log->at("a'1.getCurrentChecksum", [&] {
    AdapterManagerV2::closeSource(u"x.test", u"s", Observer);
    log->note("closed");
  });
  EXPECT_EQ(AdapterManagerV2::getChecksum(u"x.test", u"s"), u"17");
  EXPECT_EQ(calls(), (Lines{"a'1.getCurrentChecksum", "closed", "a'1.~"}));
  EXPECT_EQ(stateOfBroker(), Lines{"registered a: a"});
}

// getExternalSources

TEST_F(GetExternalSources, AsksTheOpenAdapterAndNobodyElse) {
  script.externalSources = {u"b.test", u"a.test", u"b.test"};
  open(u"x.test");
  FakeFirstGeneration::install(log).externalSources = {u"first"};
  EXPECT_EQ(AdapterManagerV2::getExternalSources(u"x.test", u"s"), (Names{u"b.test", u"a.test", u"b.test"}));
  EXPECT_EQ(calls(), Lines{"a'1.getExternalSources"});
}

TEST_F(GetExternalSources, OfAnOpenSourceMayBeNoneAndAreThenNotTheFirstGenerations) {
  open(u"x.test");
  FakeFirstGeneration::install(log).externalSources = {u"first"};
  EXPECT_EQ(AdapterManagerV2::getExternalSources(u"x.test", u"s"), Names{});
  EXPECT_EQ(calls(), Lines{"a'1.getExternalSources"});
}

TEST_F(GetExternalSources, HandsTheFirstGenerationTheWholeSource) {
  FakeFirstGeneration::install(log);
  AdapterManagerV2::getExternalSources(u"x.test#KIND&VALUESRC", u"s");
  EXPECT_EQ(calls(), Lines{"first.getExternalSources(x.test#KIND&VALUESRC, s)"});
}

TEST_F(GetExternalSources, AsksTheFirstGenerationForWhatIsNotOpen) {
  FakeFirstGeneration::install(log).externalSources = {u"first"};
  EXPECT_EQ(AdapterManagerV2::getExternalSources(u"x.test", u"s"), Names{u"first"});
  EXPECT_EQ(calls(), Lines{"first.getExternalSources(x.test, s)"});
}

TEST_F(GetExternalSources, AreNoneForWhatIsNotOpenWithoutAFirstGeneration) {
  script.externalSources = {u"b.test"};
  EXPECT_TRUE(AdapterManagerV2::getExternalSources(u"x.test", u"s").empty());
  EXPECT_TRUE(calls().empty());
}

TEST_F(GetExternalSources, KeepsTheAdapterToTheEndOfTheCallWhenItClosesItsSource) {
  script.externalSources = {u"b.test"};
  open(u"x.test");
  log->at("a'1.getExternalSources", [] { AdapterManagerV2::closeSource(u"x.test", u"s", Observer); });
  EXPECT_EQ(AdapterManagerV2::getExternalSources(u"x.test", u"s"), Names{u"b.test"});
  EXPECT_EQ(calls(), (Lines{"a'1.getExternalSources", "a'1.~"}));
}

// Entries that have lost their adapters: listed, and open for nobody

TEST_F(EntriesWithoutAdapters, LeaveTheChecksumToTheFirstGeneration) {
  script.checksum = u"17";
  openAndLoseTheAdapter();
  FakeFirstGeneration::install(log).checksum = u"first";
  EXPECT_EQ(AdapterManagerV2::getChecksum(u"x.test", u"s"), u"first");
  EXPECT_EQ(calls(), Lines{"first.getChecksum(x.test, s)"});
}

TEST_F(EntriesWithoutAdapters, LeaveTheExternalSourcesToTheFirstGeneration) {
  script.externalSources = {u"b.test"};
  openAndLoseTheAdapter();
  FakeFirstGeneration::install(log).externalSources = {u"first"};
  EXPECT_EQ(AdapterManagerV2::getExternalSources(u"x.test", u"s"), Names{u"first"});
  EXPECT_EQ(calls(), Lines{"first.getExternalSources(x.test, s)"});
}

TEST_F(EntriesWithoutAdapters, AreListed) {
  openAndLoseTheAdapter();
  EXPECT_EQ(AdapterManagerV2::getAllOpenedAdapterNamesWithSection(), Names{u"x.test::s"});
}

TEST_F(EntriesWithoutAdapters, KeepTheirQualifierFromANewOpening) {
  openAndLoseTheAdapter();
  script.opens = false;
  EXPECT_FALSE(AdapterManagerV2::openSource(u"x.test", u"s", Observer)) << "the answer of the new adapter";
  EXPECT_EQ(calls(), (Lines{"a.getSupportedExtensions", "a.getSectionName", "a.getAdapterName", "a.clone",
                            "a'2.open(x.test)", "a'2.~"}));
  EXPECT_EQ(stateOfBroker().back(), "open x.test::s: null");
}

TEST_F(EntriesWithoutAdapters, AreClosedLikeOthersAndThenOpenedAnew) {
  openAndLoseTheAdapter();
  EXPECT_TRUE(AdapterManagerV2::closeSource(u"x.test", u"s", Observer));
  EXPECT_TRUE(calls().empty());
  EXPECT_EQ(stateOfBroker(), Lines{"registered a: a"});
  open(u"x.test");
  EXPECT_EQ(stateOfBroker().back(), "open x.test::s: a'2");
}

TEST_F(OpenedSources, AreNotChangedByQuestions) {
  open(u"x.test");
  const ModelWatch watch(AdapterCacheV2::getInstance().getModel());
  AdapterManagerV2::getChecksum(u"x.test", u"s");
  AdapterManagerV2::getExternalSources(u"x.test", u"s");
  AdapterManagerV2::getChecksum(u"y.test", u"s");
  AdapterManagerV2::getAllOpenedAdapterNamesWithSection();
  EXPECT_EQ(watch.transactions(), 0U);
  EXPECT_EQ(stateOfBroker(), (Lines{"registered a: a", "open x.test::s: a'1"}));
}

}  // namespace
