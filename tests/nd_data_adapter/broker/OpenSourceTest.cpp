#include <boost/uuid/uuid.hpp>

#include "nd_data_adapter/model/AdapterCacheV2.h"
#include "nd_data_adapter/model/AdapterManagerV2.h"
#include "nd_data_adapter/model/AdapterRegistryV2.h"
#include "tests/support/BrokerTest.h"
#include "tests/support/FakeFileSystem.h"
#include "tests/support/FakeFirstGeneration.h"
#include "tests/support/ModelWatch.h"
#include "tests/support/describe.h"

using namespace nd::data::adapter;
using support::FakeFileSystem;
using support::FakeFirstGeneration;
using support::Lines;
using support::ModelWatch;
using support::ProbeAdapter;
using support::stateOfBroker;

namespace {

using Names = std::vector<std::u16string>;

constexpr boost::uuids::uuid Observer{{1, 2, 3}};
constexpr boost::uuids::uuid OtherObserver{{9}};

bool open(const std::u16string& source, const std::u16string& section) {
  return AdapterManagerV2::openSource(source, section, Observer);
}

Names opened() {
  return AdapterManagerV2::getAllOpenedAdapterNamesWithSection();
}

using OpenSource = support::BrokerTest;

TEST_F(OpenSource, AsksTheExtensionsThenTheSectionsThenTheNameThenMakesAndOpensANewAdapter) {
  FakeFirstGeneration::install(log);
  const auto fileSystem = std::make_shared<FakeFileSystem>(log);
  const lx::services::FileSystem::Replacement replaced(fileSystem);
  registerProbe(u"c", u"wanted");
  registerProbe(u"b", u"wanted");
  registerProbe(u"a", u"another");
  EXPECT_TRUE(open(u"x.test", u"wanted"));
  EXPECT_EQ(calls(), (Lines{"fs.make_native_form(x.test, true)", "fs.extract_extension(x.test)",
                            "a.getSupportedExtensions", "b.getSupportedExtensions",
                            "c.getSupportedExtensions", "a.getSectionName", "b.getSectionName",
                            "b.getAdapterName", "b.clone", "b'1.open(x.test)"}));
}

TEST_F(OpenSource, TakesTheNameForTheSectionOfAnAdapterWithoutASectionOfItsOwn) {
  support::ProbeScript script;
  script.name = u"a";
  EXPECT_TRUE(AdapterManagerV2::registerCPPAdapter(std::make_shared<ProbeAdapter>(log, script)));
  calls();
  EXPECT_TRUE(open(u"x.test", u"a"));
  EXPECT_EQ(calls(), (Lines{"a.getSupportedExtensions", "a.getSectionName", "a.getAdapterName",
                            "a.getAdapterName", "a.clone", "a'1.open(x.test)"}))
      << "the name is asked for as the section, and once more as the name";
  EXPECT_EQ(stateOfBroker(), (Lines{"registered a: a", "open x.test::a: a'1"}));
}

TEST_F(OpenSource, FilesTheNewAdapterUnderSourceAndSection) {
  registerProbe(u"a");
  EXPECT_TRUE(open(u"x.test", u"s"));
  EXPECT_EQ(stateOfBroker(), (Lines{"registered a: a", "open x.test::s: a'1"}));
  EXPECT_EQ(opened(), Names{u"x.test::s"});
}

TEST_F(OpenSource, HasTheAdapterInTheCacheWhenItIsAskedToOpen) {
  registerProbe(u"a");
  Lines seen;
  log->at("a'1.open", [&] { seen = stateOfBroker(); });
  open(u"x.test", u"s");
  EXPECT_EQ(seen, (Lines{"registered a: a", "open x.test::s: a'1"}));
}

TEST_F(OpenSource, FilesInOneTransactionAndAsksOutsideOfIt) {
  registerProbe(u"a");
  const ModelWatch cache(AdapterCacheV2::getInstance().getModel());
  const ModelWatch registry(AdapterRegistryV2::getInstance().getModel());
  bool wasInTransaction = true;
  log->at("a'1.open", [&] { wasInTransaction = cache.hasOpenTransaction(); });
  open(u"x.test", u"s");
  EXPECT_FALSE(wasInTransaction);
  EXPECT_EQ(cache.notices().size(), 1U);
  EXPECT_EQ(registry.transactions(), 0U);
}

TEST_F(OpenSource, AnswersFalseForASourceThatNobodyClaims) {
  registerProbe(u"a");
  FakeFirstGeneration& first = FakeFirstGeneration::install(log);
  first.reads = true;
  EXPECT_FALSE(open(u"x.none", u"s"));
  EXPECT_FALSE(open(u"", u""));
  EXPECT_EQ(calls(), (Lines{"a.getSupportedExtensions", "a.getSupportedExtensions"}));
  EXPECT_TRUE(opened().empty());
}

TEST_F(OpenSource, AnswersFalseForASectionThatNoClaimingAdapterHas) {
  registerProbe(u"a");
  registerProbe(u"b", u"wanted", {u".other"});
  EXPECT_FALSE(open(u"x.test", u"wanted"));
  EXPECT_EQ(calls(), (Lines{"a.getSupportedExtensions", "b.getSupportedExtensions", "a.getSectionName"}));
  EXPECT_TRUE(opened().empty());
}

TEST_F(OpenSource, ComparesSectionsExactly) {
  registerProbe(u"a", u"\u00E9");
  for (const std::u16string section : {u"\u00C9", u"e\u0301", u"\u00E9 ", u""}) {
    EXPECT_FALSE(open(u"x.test", section));
  }
  EXPECT_TRUE(open(u"x.test", u"\u00E9"));
}

TEST_F(OpenSource, OpensTheLaterAdapterOfTwoForItsOwnSection) {
  registerProbe(u"a", u"first");
  registerProbe(u"b", u"second");
  EXPECT_TRUE(open(u"x.test", u"second"));
  EXPECT_EQ(stateOfBroker().back(), "open x.test::second: b'1");
}

TEST_F(OpenSource, OpensTheAdapterOfTheLowerNameWhereTwoFit) {
  registerProbe(u"b");
  registerProbe(u"a");
  EXPECT_TRUE(open(u"x.test", u"s"));
  EXPECT_EQ(opened().size(), 1U);
  EXPECT_EQ(stateOfBroker().back(), "open x.test::s: a'1");
}

TEST_F(OpenSource, OpensAnEmptySection) {
  registerProbe(u"a", u"");
  EXPECT_TRUE(open(u"x.test", u""));
  EXPECT_EQ(opened(), Names{u"x.test::"});
}

TEST_F(OpenSource, OpensASourceOfAnExtensionInCapitalsUnderTheSourceAsGiven) {
  registerProbe(u"a");
  EXPECT_TRUE(open(u"Folder/X.TEST", u"s"));
  EXPECT_EQ(opened(), Names{u"Folder/X.TEST::s"});
}

TEST_F(OpenSource, NormalisesNothingInTheQualifier) {
  registerProbe(u"a");
  for (const std::u16string source :
       {u"x.test", u"./x.test", u"x.test#KIND", u"x.test#KIND&VALUESRC", u" x.test"}) {
    EXPECT_TRUE(open(source, u"s"));
  }
  EXPECT_EQ(opened(), (Names{u" x.test::s", u"./x.test::s", u"x.test#KIND&VALUESRC::s", u"x.test#KIND::s",
                             u"x.test::s"}));
}

TEST_F(OpenSource, HandsTheNewAdapterTheWholeSource) {
  registerProbe(u"a");
  EXPECT_TRUE(open(u"x.test#KIND&VALUESRC", u"s"));
  EXPECT_EQ(calls().back(), "a'1.open(x.test#KIND&VALUESRC)");
}

TEST_F(OpenSource, SharesAnOpeningBetweenPairsThatJoinToOneQualifier) {
  registerProbe(u"a", u"c", {u"."});
  registerProbe(u"b", u"b::c", {u"."});
  EXPECT_TRUE(open(u"a::b", u"c"));
  EXPECT_TRUE(open(u"a", u"b::c"));
  EXPECT_EQ(opened(), Names{u"a::b::c"});
  EXPECT_EQ(stateOfBroker().back(), "open a::b::c: a'1");
}

// The answer

TEST_F(OpenSource, AnswersWhatTheNewAdapterAnswersAndCountsAsOpenAllTheSame) {
  registerProbe(u"a")->script().opens = false;
  EXPECT_FALSE(open(u"x.test", u"s"));
  EXPECT_EQ(opened(), Names{u"x.test::s"});
  EXPECT_TRUE(AdapterManagerV2::closeSource(u"x.test", u"s", Observer));
}

TEST_F(OpenSource, SecondOpeningRunsOpenButKeepsTheFirstAdapter) {
  const std::shared_ptr<ProbeAdapter> probe = registerProbe(u"a");
  EXPECT_TRUE(open(u"x.test", u"s"));
  calls();
  probe->script().opens = false;
  EXPECT_FALSE(open(u"x.test", u"s")) << "the answer is that of the second open";
  EXPECT_EQ(calls(), (Lines{"a.getSupportedExtensions", "a.getSectionName", "a.getAdapterName", "a.clone",
                            "a'2.open(x.test)", "a'2.~"}));
  EXPECT_EQ(stateOfBroker().back(), "open x.test::s: a'1");
}

TEST_F(OpenSource, SecondOpeningMakesNoTransaction) {
  registerProbe(u"a");
  open(u"x.test", u"s");
  const ModelWatch watch(AdapterCacheV2::getInstance().getModel());
  open(u"x.test", u"s");
  EXPECT_EQ(watch.transactions(), 0U);
}

TEST_F(OpenSource, DoesNotLookAtTheObserver) {
  registerProbe(u"a");
  EXPECT_TRUE(AdapterManagerV2::openSource(u"x.test", u"s", Observer));
  EXPECT_TRUE(AdapterManagerV2::openSource(u"x.test", u"s", OtherObserver));
  EXPECT_TRUE(AdapterManagerV2::openSource(u"y.test", u"s", boost::uuids::uuid{}));
  EXPECT_EQ(opened(), (Names{u"x.test::s", u"y.test::s"}));
}

TEST_F(OpenSource, OpensTwoSectionsOfOneSourceApart) {
  registerProbe(u"a", u"one");
  registerProbe(u"b", u"two");
  EXPECT_TRUE(open(u"x.test", u"one"));
  EXPECT_TRUE(open(u"x.test", u"two"));
  EXPECT_TRUE(AdapterManagerV2::closeSource(u"x.test", u"one", Observer));
  EXPECT_EQ(opened(), Names{u"x.test::two"});
}

// No new adapter

TEST_F(OpenSource, AnswersFalseWhereThePrototypeClonesNothing) {
  registerProbe(u"a")->script().clones = false;
  const ModelWatch watch(AdapterCacheV2::getInstance().getModel());
  EXPECT_FALSE(open(u"x.test", u"s"));
  EXPECT_EQ(watch.transactions(), 0U);
  EXPECT_TRUE(opened().empty());
}

TEST_F(OpenSource, AnswersFalseWhereThePrototypesNameNoLongerNamesItsEntry) {
  registerProbe(u"a")->script().name = u"z";
  EXPECT_FALSE(open(u"x.test", u"s"));
  EXPECT_EQ(calls(), (Lines{"a.getSupportedExtensions", "a.getSectionName", "a.getAdapterName"}));
  EXPECT_TRUE(opened().empty());
}

TEST_F(OpenSource, MakesTheNewAdapterFromWhoeverBearsTheNameThatThePrototypeGives) {
  registerProbe(u"a")->script().name = u"b";
  registerProbe(u"b", u"another");
  EXPECT_TRUE(open(u"x.test", u"s"));
  EXPECT_EQ(stateOfBroker().back(), "open x.test::s: b'1");
}

TEST_F(OpenSource, AnswersFalseWhenThePrototypeUnregistersItselfOnTheWay) {
  registerProbe(u"a");
  log->at("a.getAdapterName", [] { AdapterManagerV2::unregisterAdapterByName(u"a"); });
  EXPECT_FALSE(open(u"x.test", u"s"));
  EXPECT_TRUE(stateOfBroker().empty());
}

// Adapters that call back

TEST_F(OpenSource, KeepsTheNewAdapterToTheEndOfTheCallWhenItClosesItsSource) {
  registerProbe(u"a");
  log->at("a'1.open", [&] {
    EXPECT_TRUE(AdapterManagerV2::closeSource(u"x.test", u"s", Observer));
    log->note("closed");
  });
  EXPECT_TRUE(open(u"x.test", u"s"));
  const Lines all = calls();
  EXPECT_EQ(Lines(all.end() - 3, all.end()), (Lines{"a'1.open(x.test)", "closed", "a'1.~"}));
  EXPECT_TRUE(opened().empty()) << "it is not stored again";
}

TEST_F(OpenSource, BearsAnAdapterThatOpensAnotherSourceWhileItOpens) {
  registerProbe(u"a");
  log->at("a'1.open", [] { EXPECT_TRUE(open(u"y.test", u"s")); });
  EXPECT_TRUE(open(u"x.test", u"s"));
  EXPECT_EQ(opened(), (Names{u"x.test::s", u"y.test::s"}));
}

}  // namespace
