// The map is that of the adapter cache, which is the one class with public ways to fill it beside the
// registry.
#include "nd_data_adapter/model/AdapterCacheV2.h"
#include "tests/nd_data_adapter/model/ModelTest.h"

using namespace model_test;
using lxb::messages::UniquenessConstraint;
using nd::data::adapter::AdapterCacheV2;
using nd::data::adapter::CPPAdapterV2Entry;

namespace {

class ElementMap : public testing::Test {
 protected:
  CPPAdapterV2Entry add(const char16_t* key) {
    const CPPAdapterV2Entry entry = CPPAdapterV2Entry::create(model);
    entry.setName(key);
    map().add(entry);
    return entry;
  }
  lx::base::ElementMap<std::u16string, CPPAdapterV2Entry>& map() {
    return cache.impl()->getCPPCacheMutable();
  }

  const Model model = Model::create();
  const AdapterCacheV2 cache = AdapterCacheV2::create(model);
};

std::string taken(const std::string& key) {
  return "UniquenessConstraint(nd.data.adapter.AdapterCacheV2.CPPCache; " + key + ")";
}

TEST_F(ElementMap, KeepsItsElementsInTheOrderOfTheirKeys) {
  add(u"b"), add(u""), add(u"a");
  EXPECT_EQ(map().keys(), (Texts{u"", u"a", u"b"}));
  EXPECT_TRUE(map().contains(u""));
  EXPECT_FALSE(map().contains(u"c"));
  EXPECT_EQ(map().size(), 3U);
}

TEST_F(ElementMap, RefusesASecondElementUnderAKeyBeforeAnythingHasChanged) {
  const CPPAdapterV2Entry first = add(u"a");
  const CPPAdapterV2Entry second = CPPAdapterV2Entry::create(model);
  second.setName(u"a");
  const std::string before = stateOf(model);
  const std::uint64_t begun = transactions(model);
  EXPECT_EQ(raised<UniquenessConstraint>([&] { map().add(second); }), taken("a"));
  EXPECT_EQ(stateOf(model), before);
  EXPECT_EQ(transactions(model), begun);
  EXPECT_EQ(map().find(u"a"), first);
}

TEST_F(ElementMap, RefusesAKeyThatIsTakenAlsoForAnElementOfAnotherMap) {
  const AdapterCacheV2 other = AdapterCacheV2::create(model);
  const CPPAdapterV2Entry foreign = CPPAdapterV2Entry::create(model);
  foreign.setName(u"a");
  other.impl()->getCPPCacheMutable().add(foreign);
  add(u"a");
  EXPECT_EQ(raised<UniquenessConstraint>([&] { map().add(foreign); }), taken("a"));
  EXPECT_EQ(foreign.container(), other);
  EXPECT_EQ(other.impl()->getCPPCache().find(u"a"), foreign);
}

TEST_F(ElementMap, DoesNothingForAnElementThatItHoldsAlready) {
  const CPPAdapterV2Entry entry = add(u"a");
  const std::uint64_t begun = transactions(model);
  map().add(entry);
  EXPECT_EQ(transactions(model), begun);
  EXPECT_EQ(map().size(), 1U);
}

TEST_F(ElementMap, MovesAnElementWhoseKeyChanges) {
  const CPPAdapterV2Entry entry = add(u"a");
  add(u"b");
  entry.setName(u"c");
  EXPECT_EQ(map().keys(), (Texts{u"b", u"c"}));
  EXPECT_EQ(map().find(u"c"), entry);
  EXPECT_FALSE(map().find(u"a"));
}

TEST_F(ElementMap, RefusesTheChangeOfAKeyToOneThatIsTaken) {
  const CPPAdapterV2Entry entry = add(u"a");
  add(u"b");
  const std::string before = stateOf(model);
  const std::uint64_t begun = transactions(model);
  EXPECT_EQ(raised<UniquenessConstraint>([&] { entry.setName(u"b"); }), taken("b"));
  EXPECT_EQ(stateOf(model), before);
  EXPECT_EQ(transactions(model), begun);
  entry.setName(u"a");
  EXPECT_EQ(stateOf(model), before);
}

TEST_F(ElementMap, FreesAKeyWhoseElementLeft) {
  add(u"a").destroy();
  const CPPAdapterV2Entry second = add(u"a");
  EXPECT_EQ(map().find(u"a"), second);
}

TEST_F(ElementMap, RemovesOnlyWhatItHolds) {
  const CPPAdapterV2Entry entry = add(u"a");
  EXPECT_FALSE(map().remove(CPPAdapterV2Entry::create(model)));
  EXPECT_TRUE(map().remove(entry));
  EXPECT_FALSE(entry.isAlive());
  EXPECT_TRUE(map().empty());
}

TEST_F(ElementMap, BringsBackAllThatATransactionDidToIt) {
  const CPPAdapterV2Entry a = add(u"a");
  const CPPAdapterV2Entry b = add(u"b");
  const std::string before = stateOf(model);
  {
    const Transaction open = begin(model);
    a.setName(u"z");
    b.destroy();
    add(u"a");
    add(u"b").setName(u"c");
    map().clear();
    add(u"m");
  }
  EXPECT_EQ(stateOf(model), before);
  EXPECT_EQ(map().find(u"a"), a);
  EXPECT_EQ(map().find(u"b"), b);
  EXPECT_EQ(map().keys(), (Texts{u"a", u"b"}));
}

TEST_F(ElementMap, TakesAnElementUnderAKeyThatTheTransactionFreed) {
  const CPPAdapterV2Entry a = add(u"a");
  const CPPAdapterV2Entry b = add(u"b");
  const std::string before = stateOf(model);
  {
    const Transaction open = begin(model);
    a.setName(u"c");
    b.setName(u"a");
    a.setName(u"b");
    EXPECT_EQ(map().find(u"a"), b);
    EXPECT_EQ(map().find(u"b"), a);
  }
  EXPECT_EQ(stateOf(model), before);
}

TEST_F(ElementMap, AssignsTheKeyOfAnEntryThatNothingHoldsWithoutATransaction) {
  const CPPAdapterV2Entry entry = CPPAdapterV2Entry::create(model);
  const std::uint64_t begun = transactions(model);
  {
    const Transaction open = begin(model);
    entry.setName(u"kept");
  }
  EXPECT_EQ(entry.adapterName(), u"kept");
  EXPECT_EQ(transactions(model), begun + 1);
}

TEST_F(ElementMap, AssignsTheKeyOfAnEntryThatIsAProxyAndThatNothingHolds) {
  const CPPAdapterV2Entry entry = CPPAdapterV2Entry::create(model);
  entry.impl()->convertToProxy();
  entry.setName(u"a");
  EXPECT_EQ(entry.adapterName(), u"a");
}

}  // namespace
