#include "nd_data_adapter/model/AdapterRegistryV2.h"
#include "platform/foundation/Model.h"
#include "tests/support/BrokerTest.h"
#include "tests/support/FakeFileSystem.h"
#include "tests/support/ModelWatch.h"
#include "tests/support/describe.h"

using namespace nd::data::adapter;
using lx::base::Model;
using lx::base::Transaction;
using support::Lines;
using support::ModelWatch;
using support::ProbeAdapter;
using support::stateOfBroker;

namespace {

using Names = std::vector<std::u16string>;

class AdapterRegistryV2Questions : public support::BrokerTest {
 protected:
  Lines adaptersFor(const std::u16string& source) const {
    Lines labels;
    for (const auto& adapter : registry.getCPPAdapterStaticForSource(source)) {
      labels.push_back(ProbeAdapter::labelOf(adapter));
    }
    return labels;
  }

  /// Tells whether an adapter that lists one extension is found by another.
  bool isFound(const std::u16string& listed, const std::u16string& asked) {
    const std::shared_ptr<ProbeAdapter> probe = registerProbe(u"a", u"s", {listed});
    const bool result = registry.isAdapterRegisteredByExtension(asked);
    registry.unregisterCPPAdapter(u"a");
    return result;
  }

  const AdapterRegistryV2 registry = AdapterRegistryV2::getInstance();
  const Model model = registry.getModel();
};

// New adapters

TEST_F(AdapterRegistryV2Questions, MakesANewAdapterEachTimeFromThePrototype) {
  const std::shared_ptr<ProbeAdapter> prototype = registerProbe(u"a");
  const std::shared_ptr<CPPAdapterV2> first = registry.getNewCPPAdapter(u"a");
  const std::shared_ptr<CPPAdapterV2> second = registry.getNewCPPAdapter(u"a");
  EXPECT_EQ(calls(), (Lines{"a.clone", "a.clone"}));
  EXPECT_EQ(ProbeAdapter::labelOf(first), "a'1");
  EXPECT_EQ(ProbeAdapter::labelOf(second), "a'2");
  EXPECT_EQ(first.use_count(), 1) << "nobody else owns it";
}

TEST_F(AdapterRegistryV2Questions, GivesNoNewAdapterForAnUnknownName) {
  registerProbe(u"a");
  EXPECT_EQ(registry.getNewCPPAdapter(u"A"), nullptr);
  EXPECT_EQ(registry.getNewCPPAdapter(u""), nullptr);
  EXPECT_TRUE(calls().empty());
}

TEST_F(AdapterRegistryV2Questions, GivesNullWhereThePrototypeClonesNothing) {
  registerProbe(u"a")->script().clones = false;
  EXPECT_EQ(registry.getNewCPPAdapter(u"a"), nullptr);
  EXPECT_EQ(calls(), Lines{"a.clone"});
}

TEST_F(AdapterRegistryV2Questions, KeepsThePrototypeForTheTimeOfTheCloning) {
  registerProbe(u"a");
  log->at("a.clone", [&] { registry.unregisterCPPAdapter(u"a"); });
  const std::shared_ptr<CPPAdapterV2> made = registry.getNewCPPAdapter(u"a");
  EXPECT_EQ(calls(), (Lines{"a.clone", "a.~"}));
  EXPECT_EQ(ProbeAdapter::labelOf(made), "a'1");
}

TEST_F(AdapterRegistryV2Questions, MakesANewAdapterWithoutATransaction) {
  registerProbe(u"a");
  const ModelWatch watch(model);
  registry.getNewCPPAdapter(u"a");
  EXPECT_EQ(watch.transactions(), 0U);
}

// The prototype

TEST_F(AdapterRegistryV2Questions, GivesTheSamePrototypeEachTimeWithoutAskingIt) {
  const std::shared_ptr<ProbeAdapter> prototype = registerProbe(u"a");
  EXPECT_EQ(registry.getCPPAdapterForStaticUse(u"a"), prototype);
  EXPECT_EQ(registry.getCPPAdapterForStaticUse(u"a"), prototype);
  EXPECT_TRUE(calls().empty());
  EXPECT_EQ(prototype.use_count(), 2);
}

TEST_F(AdapterRegistryV2Questions, GivesNoPrototypeForAnUnknownName) {
  registerProbe(u"a");
  const ModelWatch watch(model);
  EXPECT_EQ(registry.getCPPAdapterForStaticUse(u"b"), nullptr);
  EXPECT_EQ(watch.transactions(), 0U);
}

TEST_F(AdapterRegistryV2Questions, GivesAPrototypeWithinOneTransactionThatNobodyHearsOf) {
  registerProbe(u"a");
  const ModelWatch watch(model);
  registry.getCPPAdapterForStaticUse(u"a");
  EXPECT_EQ(watch.transactions(), 1U);
  EXPECT_TRUE(watch.notices().empty());
  EXPECT_FALSE(watch.hasOpenTransaction());
}

TEST_F(AdapterRegistryV2Questions, LeavesATransactionAroundTheQuestionForAPrototypeAsItIs) {
  registerProbe(u"a");
  const ModelWatch watch(model);
  Transaction outer = model.impl()->beginTransaction(false);
  registry.registerCPPAdapter(makeProbe(u"b"));
  EXPECT_NE(registry.getCPPAdapterForStaticUse(u"a"), nullptr);
  EXPECT_TRUE(outer.isOpen());
  outer.commit();
  EXPECT_EQ(watch.notices().size(), 1U);
  EXPECT_EQ(stateOfBroker(), (Lines{"registered a: a", "registered b: b"}));
}

// Adapters of a source

TEST_F(AdapterRegistryV2Questions, FindsTheAdaptersThatClaimTheExtensionInTheOrderOfTheirNames) {
  registerProbe(u"c");
  registerProbe(u"a");
  registerProbe(u"b", u"s", {u".other"});
  EXPECT_EQ(adaptersFor(u"folder/x.test"), (Lines{"a", "c"}));
  EXPECT_EQ(calls(),
            (Lines{"a.getSupportedExtensions", "b.getSupportedExtensions", "c.getSupportedExtensions"}));
}

TEST_F(AdapterRegistryV2Questions, FindsBothAdaptersForAnExtensionInCapitals) {
  registerProbe(u"b");
  registerProbe(u"a");
  EXPECT_EQ(adaptersFor(u"x.TEST"), (Lines{"a", "b"}));
}

TEST_F(AdapterRegistryV2Questions, FindsAnAdapterOnceHoweverOftenItListsTheExtension) {
  registerProbe(u"a", u"s", {u".test", u".TEST", u".test"});
  EXPECT_EQ(adaptersFor(u"x.test"), Lines{"a"});
}

TEST_F(AdapterRegistryV2Questions, LooksAtEveryExtensionOfAnAdapter) {
  registerProbe(u"a", u"s", {u".one", u".two", u".test"});
  EXPECT_EQ(adaptersFor(u"x.test"), Lines{"a"});
  EXPECT_EQ(adaptersFor(u"x.two"), Lines{"a"});
  EXPECT_EQ(adaptersFor(u"x.three"), Lines{});
}

TEST_F(AdapterRegistryV2Questions, AsksForTheExtensionsEachTime) {
  const std::shared_ptr<ProbeAdapter> probe = registerProbe(u"a");
  EXPECT_EQ(adaptersFor(u"x.test"), Lines{"a"});
  probe->script().extensions = {u".new"};
  EXPECT_EQ(adaptersFor(u"x.test"), Lines{});
  EXPECT_EQ(adaptersFor(u"x.new"), Lines{"a"});
}

TEST_F(AdapterRegistryV2Questions, TakesASourceWithoutExtensionAsOneWithTheExtensionDot) {
  registerProbe(u"a", u"s", {u"."});
  for (const std::u16string source :
       {u"x", u"", u".test", u"folder.test/x", u"x.", u"x.test/", u"..", u"#KIND"}) {
    EXPECT_EQ(adaptersFor(source), Lines{"a"}) << source.size();
  }
  EXPECT_EQ(adaptersFor(u"x.test"), Lines{});
}

TEST_F(AdapterRegistryV2Questions, FindsNoAdapterWithTheEmptyExtensionForAnySource) {
  registerProbe(u"a", u"s", {u""});
  EXPECT_EQ(adaptersFor(u"x"), Lines{});
  EXPECT_EQ(adaptersFor(u""), Lines{});
  EXPECT_EQ(adaptersFor(u"x.test"), Lines{});
}

TEST_F(AdapterRegistryV2Questions, DoesNotFindAnAdapterThatListsTheExtensionWithoutItsDot) {
  registerProbe(u"a", u"s", {u"test"});
  EXPECT_EQ(adaptersFor(u"x.test"), Lines{});
}

TEST_F(AdapterRegistryV2Questions, LooksAtTheLastExtensionOnly) {
  registerProbe(u"a");
  EXPECT_EQ(adaptersFor(u"x.test.bak"), Lines{});
  EXPECT_EQ(adaptersFor(u"x.bak.test"), Lines{"a"});
}

TEST_F(AdapterRegistryV2Questions, LooksPastAKindTagAndTheMarkerBehindIt) {
  registerProbe(u"a");
  EXPECT_EQ(adaptersFor(u"x.test#KIND"), Lines{"a"});
  EXPECT_EQ(adaptersFor(u"x.test#KIND&VALUESRC"), Lines{"a"});
  EXPECT_EQ(adaptersFor(u"x.test#"), Lines{"a"});
}

TEST_F(AdapterRegistryV2Questions, DoesNotClaimASourceWithAMarkerAndNoKindTag) {
  registerProbe(u"a");
  registerProbe(u"b", u"s", {u".test&VALUESRC"});
  EXPECT_EQ(adaptersFor(u"x.test&VALUESRC"), Lines{"b"});
}

TEST_F(AdapterRegistryV2Questions, TakesTheExtensionFromTheFilesystem) {
  const auto fileSystem = std::make_shared<support::FakeFileSystem>(log);
  fileSystem->nativeSeparator = u'\\';
  const lx::services::FileSystem::Replacement replaced(fileSystem);
  registerProbe(u"a");
  EXPECT_EQ(adaptersFor(u"b.other/x.test#KIND"), Lines{"a"});
  EXPECT_EQ(calls(), (Lines{"fs.make_native_form(b.other/x.test, true)",
                            "fs.extract_extension(b.other\\x.test)", "a.getSupportedExtensions"}));
}

TEST_F(AdapterRegistryV2Questions, GivesAnEmptyListWithoutAdapters) {
  EXPECT_EQ(adaptersFor(u"x.test"), Lines{});
}

TEST_F(AdapterRegistryV2Questions, SharesThePrototypesThatItFinds) {
  const std::shared_ptr<ProbeAdapter> probe = registerProbe(u"a");
  const std::vector<std::shared_ptr<CPPAdapterV2>> found = registry.getCPPAdapterStaticForSource(u"x.test");
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found[0], probe);
  EXPECT_EQ(probe.use_count(), 3);
}

TEST_F(AdapterRegistryV2Questions, AsksWithoutATransaction) {
  registerProbe(u"a");
  const ModelWatch watch(model);
  registry.getCPPAdapterStaticForSource(u"x.test");
  registry.isAdapterRegisteredByExtension(u".test");
  registry.isAdapterRegisteredByName(u"a");
  registry.getAllAdapterNames();
  registry.getDisplayList();
  EXPECT_EQ(watch.transactions(), 0U);
}

TEST_F(AdapterRegistryV2Questions, GoesOnWithThePrototypesThatItHadWhenAnAdapterChangesTheRegistry) {
  registerProbe(u"a");
  registerProbe(u"b");
  log->at("a.getSupportedExtensions", [&] { registry.unregisterCPPAdapter(u"a"); });
  EXPECT_EQ(registry.getCPPAdapterStaticForSource(u"x.test").size(), 2U);
  EXPECT_EQ(stateOfBroker(), Lines{"registered b: b"});
}

// Extensions

TEST_F(AdapterRegistryV2Questions, KnowsAnExtensionWithItsDotOnly) {
  EXPECT_TRUE(isFound(u".test", u".test"));
  EXPECT_FALSE(isFound(u".test", u"test"));
  EXPECT_FALSE(isFound(u".test", u""));
  EXPECT_FALSE(isFound(u".test", u".tes"));
  EXPECT_FALSE(isFound(u".test", u".test "));
}

TEST_F(AdapterRegistryV2Questions, KnowsTheEmptyExtensionOfAnAdapterThatListsIt) {
  EXPECT_TRUE(isFound(u"", u""));
  EXPECT_FALSE(isFound(u"", u"."));
}

TEST_F(AdapterRegistryV2Questions, ComparesExtensionsWithoutRegardToCase) {
  EXPECT_TRUE(isFound(u".test", u".TeSt"));
  EXPECT_TRUE(isFound(u".\u00C4\u03A3", u".\u00E4\u03C2")) << "both small sigmas fold to one";
  EXPECT_TRUE(isFound(u".gro\u00DF", u".GROSS"));
  EXPECT_TRUE(isFound(u".I", u".i"));
  EXPECT_FALSE(isFound(u".I", u".\u0131")) << "whatever the locale";
}

TEST_F(AdapterRegistryV2Questions, ComparesExtensionsInCanonicallyEqualSpellings) {
  EXPECT_TRUE(isFound(u".\u00E9", u".e\u0301"));
  EXPECT_TRUE(isFound(u".\u00C9", u".e\u0301"));
  EXPECT_TRUE(isFound(u".\u212B", u".\u00E5"));
  EXPECT_FALSE(isFound(u".\uFB01", u".\uFB01\u0301"));
  EXPECT_FALSE(isFound(u".e", u".\u00E9"));
}

TEST_F(AdapterRegistryV2Questions, TakesALoneSurrogateInAnExtensionForItselfOnly) {
  const std::u16string high{u'.', char16_t{0xD83D}};
  EXPECT_TRUE(isFound(high, high));
  EXPECT_FALSE(isFound(high, u".\uFFFD"));
  EXPECT_FALSE(isFound(high, (std::u16string{u'.', char16_t{0xD83E}})));
  EXPECT_FALSE(isFound(high, (std::u16string{u'.', char16_t{0xD83D}, char16_t{0xDE00}})));
}

TEST_F(AdapterRegistryV2Questions, StopsAtTheFirstAdapterThatListsTheExtension) {
  registerProbe(u"a", u"s", {u".other"});
  registerProbe(u"b", u"s", {u".other", u".test"});
  registerProbe(u"c");
  EXPECT_TRUE(registry.isAdapterRegisteredByExtension(u".TEST"));
  EXPECT_EQ(calls(), (Lines{"a.getSupportedExtensions", "b.getSupportedExtensions"}));
  EXPECT_FALSE(registry.isAdapterRegisteredByExtension(u".none"));
  EXPECT_EQ(calls().size(), 3U);
}

TEST_F(AdapterRegistryV2Questions, TakesTheExtensionsAsTheyAreAtTheMomentOfTheQuestion) {
  const std::shared_ptr<ProbeAdapter> probe = registerProbe(u"a");
  EXPECT_TRUE(registry.isAdapterRegisteredByExtension(u".test"));
  EXPECT_EQ(registry.getDisplayList(), Names{u".test : a"});
  EXPECT_EQ(adaptersFor(u"x.test"), Lines{"a"});

  probe->script().extensions = {u".other", u".more"};
  EXPECT_FALSE(registry.isAdapterRegisteredByExtension(u".test"));
  EXPECT_TRUE(registry.isAdapterRegisteredByExtension(u".more"));
  EXPECT_EQ(registry.getDisplayList(), (Names{u".other : a", u".more : a"}));
  EXPECT_EQ(adaptersFor(u"x.test"), Lines{});
  EXPECT_EQ(adaptersFor(u"x.other"), Lines{"a"});
}

TEST_F(AdapterRegistryV2Questions, AsksEachTimeAlsoWhatItAskedJustBefore) {
  registerProbe(u"a");
  for (int time = 0; time < 2; ++time) registry.isAdapterRegisteredByExtension(u".test");
  EXPECT_EQ(calls(), (Lines{"a.getSupportedExtensions", "a.getSupportedExtensions"}));
  for (int time = 0; time < 2; ++time) registry.getDisplayList();
  EXPECT_EQ(calls(), (Lines{"a.getSupportedExtensions", "a.getAdapterName", "a.getSupportedExtensions",
                            "a.getAdapterName"}));
}

// Lists

TEST_F(AdapterRegistryV2Questions, ShowsALineForEachExtensionInTheAdaptersOwnOrder) {
  registerProbe(u"b", u"s", {u".z", u".A", u".z"});
  registerProbe(u"a", u"s", {});
  registerProbe(u"c", u"s", {u""});
  EXPECT_EQ(registry.getDisplayList(), (Names{u".z : b", u".A : b", u".z : b", u" : c"}));
}

TEST_F(AdapterRegistryV2Questions, AsksForTheListToShowTheExtensionsFirst) {
  registerProbe(u"a", u"s", {u".x"});
  registerProbe(u"b", u"s", {});
  registry.getDisplayList();
  EXPECT_EQ(calls(), (Lines{"a.getSupportedExtensions", "a.getAdapterName", "b.getSupportedExtensions"}));
}

TEST_F(AdapterRegistryV2Questions, ShowsTheNameOfTodayAndAsksItForEachExtension) {
  registerProbe(u"a", u"s", {u".x", u".y"})->script().name = u"z";
  EXPECT_EQ(registry.getDisplayList(), (Names{u".x : z", u".y : z"}));
  EXPECT_EQ(calls(), (Lines{"a.getSupportedExtensions", "a.getAdapterName", "a.getAdapterName"}));
}

TEST_F(AdapterRegistryV2Questions, HasEmptyListsWithoutAdapters) {
  EXPECT_TRUE(registry.getDisplayList().empty());
  EXPECT_TRUE(registry.getAllAdapterNames().empty());
  EXPECT_FALSE(registry.isAdapterRegisteredByExtension(u""));
}

}  // namespace
