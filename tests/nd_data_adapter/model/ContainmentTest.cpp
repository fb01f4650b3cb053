#include "nd_data_adapter/model/AdapterConfig.h"
#include "tests/nd_data_adapter/model/ModelTest.h"

using namespace model_test;
using lxb::messages::CannotAddIncompatibleTypes;
using lxb::messages::CannotAddNonExistentObject;
using lxb::messages::CannotAddSecondObject;
using lxb::messages::CannotCreateCrossModelAssociation;
using lxb::messages::InvalidValue;
using testing::StartsWith;

namespace {

const std::string Changes = "nd.data.adapter.ChangeReport.changes";
const std::string EntryValue = "nd.data.adapter.MetaDataEntry.value";

TEST(ElementSequence, KeepsItsElementsInTheOrderOfTheirAdding) {
  const Model model = Model::create();
  const ChangeReport report = ChangeReport::create(model);
  const ChangeTuple second = ChangeTuple::create(model);
  const ChangeTuple first = ChangeTuple::create(model);
  report.getChangesMutable().add(first);
  report.getChangesMutable().add(second);
  ASSERT_EQ(report.changes().size(), 2U);
  EXPECT_TRUE(report.hasChanges());
  EXPECT_EQ(report.changes().at(0), first);
  EXPECT_EQ(report.changes().at(1), second);
  EXPECT_TRUE(report.changes().contains(first));
  EXPECT_EQ(first.container(), report);
  EXPECT_EQ(model.impl()->roots(), std::vector<ModelElement>{report});
}

TEST(ElementSequence, InsertsBeforeAnElement) {
  const Model model = Model::create();
  const ChangeReport report = reportOf(model, {u"b", u"d"});
  const auto insert = [&](std::size_t position, const char16_t* id) {
    const ChangeTuple tuple = ChangeTuple::create(model);
    tuple.setId(id);
    report.getChangesMutable().insert(position, tuple);
  };
  insert(0, u"a");
  insert(2, u"c");
  insert(4, u"e");
  EXPECT_EQ(idsOf(report), (Texts{u"a", u"b", u"c", u"d", u"e"}));
}

TEST(ElementSequence, RefusesAPlaceBehindItsEnd) {
  const Model model = Model::create();
  const ChangeReport report = reportOf(model, {u"a"});
  const ChangeTuple tuple = ChangeTuple::create(model);
  EXPECT_THAT(raised<InvalidValue>([&] { report.getChangesMutable().insert(2, tuple); }),
              StartsWith("InvalidValue(" + Changes + "; "));
  EXPECT_THAT(raised<InvalidValue>([&] { report.changes().at(1); }),
              StartsWith("InvalidValue(" + Changes + "; "));
  EXPECT_FALSE(tuple.container());
  EXPECT_TRUE(tuple.isAlive());
}

TEST(ElementSequence, DoesNothingForAnElementThatItHoldsAlready) {
  const Model model = Model::create();
  const ChangeReport report = reportOf(model, {u"a", u"b"});
  const std::uint64_t before = transactions(model);
  report.getChangesMutable().add(report.changes().at(0));
  report.getChangesMutable().insert(2, report.changes().at(0));
  EXPECT_EQ(idsOf(report), (Texts{u"a", u"b"}));
  EXPECT_EQ(transactions(model), before);
}

TEST(ElementSequence, DestroysWhatIsRemoved) {
  const Model model = Model::create();
  const ChangeReport report = reportOf(model, {u"a", u"b", u"c"});
  const ChangeTuple middle = report.changes().at(1);
  EXPECT_TRUE(report.getChangesMutable().remove(middle));
  EXPECT_FALSE(middle.isAlive());
  EXPECT_FALSE(report.getChangesMutable().remove(middle));
  EXPECT_EQ(idsOf(report), (Texts{u"a", u"c"}));
}

TEST(ElementSequence, RemovesNothingThatAnotherHolds) {
  const Model model = Model::create();
  const ChangeReport one = reportOf(model, {u"a"});
  const ChangeReport two = reportOf(model, {u"b"});
  EXPECT_FALSE(one.getChangesMutable().remove(two.changes().at(0)));
  EXPECT_FALSE(one.getChangesMutable().remove(ChangeTuple()));
  EXPECT_EQ(idsOf(two), (Texts{u"b"}));
}

TEST(ElementSequence, RefusesAnyRemovalOnceItsOwnerIsGoneOrFrozen) {
  const Model model = Model::create();
  const ChangeReport dead = ChangeReport::create(model), frozen = ChangeReport::create(model);
  const ChangeTuple tuple = ChangeTuple::create(model);
  auto& changesOfDead = dead.getChangesMutable();
  auto& changesOfFrozen = frozen.getChangesMutable();
  dead.destroy();
  EXPECT_EQ(raised<InvalidValue>([&] { changesOfDead.remove(tuple); }),
            "InvalidValue(" + Changes + "; the element was destroyed; create another one.)");
  Model::Freezer::freeze(model);
  EXPECT_EQ(raised<InvalidValue>([&] { changesOfFrozen.remove(tuple); }),
            "InvalidValue(" + Changes + "; the element's model is frozen; thaw it first.)");
  EXPECT_TRUE(tuple.isAlive());
}

TEST(ElementMultimap, RefusesAnyRemovalOnceItsOwnerIsGone) {
  const Model model = Model::create();
  const DataContainer container = DataContainer::create(model);
  const MetaDataEntry entry = MetaDataEntry::create(model);
  auto& metadata = container.getMetaDataCacheMutable();
  EXPECT_FALSE(metadata.remove(entry));
  container.destroy();
  EXPECT_EQ(
      raised<InvalidValue>([&] { metadata.remove(entry); }),
      "InvalidValue(nd.data.adapter.DataContainer.MetaDataCache; the element was destroyed; create another "
      "one.)");
}

TEST(ElementSequence, DestroysAllWhenItIsCleared) {
  const Model model = Model::create();
  const ChangeReport report = reportOf(model, {u"a", u"b"});
  report.getChangesMutable().clear();
  EXPECT_TRUE(report.changes().empty());
  EXPECT_FALSE(report.hasChanges());
  EXPECT_EQ(model.impl()->numberOfElements(), 1U);
}

TEST(ElementSequence, IsClearedWithoutATransactionWhenItIsEmpty) {
  const Model model = Model::create();
  const ChangeReport report = ChangeReport::create(model);
  report.getChangesMutable().clear();
  EXPECT_EQ(transactions(model), 1U);
}

TEST(ElementSequence, LosesAnElementThatIsDestroyedByHand) {
  const Model model = Model::create();
  const ChangeReport report = reportOf(model, {u"a", u"b"});
  report.changes().at(0).destroy();
  EXPECT_EQ(idsOf(report), (Texts{u"b"}));
}

TEST(Container, TakesAllItsContentsAlongWhenItIsDestroyed) {
  const Model model = Model::create();
  const DataContainer container = containerOf(model, {u"a"});
  const MetaDataEntry entry = container.metaDataCache().first();
  const ChangeReport report = reportOf(model, {u"t"});
  const ChangeTuple tuple = report.changes().at(0);
  entry.setValue(report);
  container.destroy();
  for (const ModelElement& each : std::vector<ModelElement>{container, entry, report, tuple}) {
    EXPECT_FALSE(each.isAlive());
  }
  EXPECT_EQ(model.impl()->numberOfElements(), 0U);
}

TEST(Container, HandsAnElementOverToAnotherContainer) {
  const Model model = Model::create();
  const ChangeReport one = reportOf(model, {u"a", u"b"});
  const ChangeReport two = reportOf(model, {u"c"});
  const ChangeTuple moved = one.changes().at(0);
  two.getChangesMutable().insert(0, moved);
  EXPECT_TRUE(moved.isAlive());
  EXPECT_EQ(moved.container(), two);
  EXPECT_EQ(idsOf(one), (Texts{u"b"}));
  EXPECT_EQ(idsOf(two), (Texts{u"a", u"c"}));
  EXPECT_FALSE(one.changes().contains(moved));
}

TEST(Container, HandsAnElementOverToAPropertyOfAnotherKind) {
  const Model model = Model::create();
  const ChangeReport report = reportOf(model, {u"a", u"b"});
  const ChangeTuple tuple = report.changes().at(1);
  const MetaDataEntry entry = MetaDataEntry::create(model);
  entry.setValue(tuple);
  EXPECT_EQ(entry.value(), tuple);
  EXPECT_EQ(tuple.container(), entry);
  EXPECT_EQ(idsOf(report), (Texts{u"a"}));
  report.getChangesMutable().add(tuple);
  EXPECT_FALSE(entry.hasValue());
  EXPECT_EQ(idsOf(report), (Texts{u"a", u"b"}));
  EXPECT_TRUE(tuple.isAlive());
}

TEST(Container, HandsAKeyedElementOver) {
  const Model model = Model::create();
  const DataContainer one = containerOf(model, {u"a", u"b"});
  const DataContainer two = containerOf(model, {u"b"});
  const MetaDataEntry moved = one.metaDataCache().find(u"b");
  two.getMetaDataCacheMutable().add(moved);
  EXPECT_EQ(one.metaDataCache().keys(), (Texts{u"a"}));
  EXPECT_EQ(two.metaDataCache().keys(), (Texts{u"b", u"b"}));
  EXPECT_EQ(two.metaDataCache().findAll(u"b").at(1), moved);
}

TEST(ContainedReference, DestroysWhatItHeldWhenItGetsAnother) {
  const Model model = Model::create();
  const MetaDataEntry entry = MetaDataEntry::create(model);
  const ChangeTuple first = ChangeTuple::create(model);
  const ChangeTuple second = ChangeTuple::create(model);
  EXPECT_FALSE(entry.hasValue());
  entry.setValue(first);
  EXPECT_TRUE(entry.hasValue());
  EXPECT_EQ(first.container(), entry);
  entry.setValue(second);
  EXPECT_FALSE(first.isAlive());
  EXPECT_EQ(entry.value(), second);
  entry.setValue(ModelElement());
  EXPECT_FALSE(second.isAlive());
  EXPECT_FALSE(entry.value());
  EXPECT_FALSE(entry.hasValue());
}

TEST(ContainedReference, DoesNothingForTheElementThatItHolds) {
  const Model model = Model::create();
  const MetaDataEntry entry = MetaDataEntry::create(model);
  entry.setValue(ChangeTuple::create(model));
  const std::uint64_t before = transactions(model);
  entry.setValue(entry.value());
  EXPECT_TRUE(entry.value().isAlive());
  EXPECT_EQ(transactions(model), before);
  entry.value().destroy();
  const std::uint64_t after = transactions(model);
  entry.setValue(ModelElement());
  EXPECT_EQ(transactions(model), after);
}

TEST(ContainedReference, TakesOverAnElementOutOfTheOneThatItReplaces) {
  const Model model = Model::create();
  const MetaDataEntry top = MetaDataEntry::create(model);
  const MetaDataEntry middle = MetaDataEntry::create(model);
  const MetaDataEntry bottom = MetaDataEntry::create(model);
  middle.setValue(bottom);
  top.setValue(middle);
  top.setValue(bottom);
  EXPECT_EQ(top.value(), bottom);
  EXPECT_TRUE(bottom.isAlive());
  EXPECT_EQ(bottom.container(), top);
  EXPECT_FALSE(middle.isAlive());
}

TEST(ContainedReference, IsEmptyOnceItsElementWasDestroyedByHand) {
  const Model model = Model::create();
  const MetaDataEntry entry = MetaDataEntry::create(model);
  entry.setValue(ChangeTuple::create(model));
  entry.value().destroy();
  EXPECT_FALSE(entry.value());
  EXPECT_FALSE(entry.hasValue());
}

/// Counts how often it is asked to make its element.
class CountingBuilder final : public ChangeTuple::Builder {
 public:
  explicit CountingBuilder(int& count) : count_(&count) {}

  ModelElement doCreate(bool defer, const boost::uuids::uuid& uuid) override {
    ++*count_;
    return ChangeTuple::Builder::doCreate(defer, uuid);
  }

 private:
  int* count_;
};

TEST(ContainedReference, RefusesToMakeASecondElement) {
  const Model model = Model::create();
  const MetaDataEntry entry = MetaDataEntry::create(model);
  int made = 0;
  const ModelElement first = entry.createIntoValue(CountingBuilder(made));
  ASSERT_EQ(made, 1);
  const std::string before = stateOf(model);
  const std::uint64_t begun = transactions(model);
  EXPECT_EQ(raised<CannotAddSecondObject>([&] { entry.createIntoValue(CountingBuilder(made)); }),
            "CannotAddSecondObject(" + EntryValue + ")");
  EXPECT_EQ(made, 1) << "the builder isn't asked";
  EXPECT_EQ(transactions(model), begun);
  EXPECT_EQ(entry.value(), first);
  EXPECT_EQ(stateOf(model), before);
}

TEST(Containment, RefusesANullHandleOrADeadElement) {
  const Model model = Model::create();
  const ChangeReport report = ChangeReport::create(model);
  const DataContainer container = DataContainer::create(model);
  const MetaDataEntry entry = MetaDataEntry::create(model);
  const ChangeTuple tuple = ChangeTuple::create(model);
  const MetaDataEntry deadEntry = MetaDataEntry::create(model);
  tuple.destroy();
  deadEntry.destroy();
  const std::string refused = "CannotAddNonExistentObject(" + Changes + ")";
  EXPECT_EQ(raised<CannotAddNonExistentObject>([&] { report.getChangesMutable().add(ChangeTuple()); }),
            refused);
  EXPECT_EQ(raised<CannotAddNonExistentObject>([&] { report.getChangesMutable().add(tuple); }), refused);
  EXPECT_EQ(
      raised<CannotAddNonExistentObject>([&] { container.getMetaDataCacheMutable().add(MetaDataEntry()); }),
      "CannotAddNonExistentObject(nd.data.adapter.DataContainer.MetaDataCache)");
  EXPECT_EQ(raised<CannotAddNonExistentObject>([&] { container.getMetaDataCacheMutable().add(deadEntry); }),
            "CannotAddNonExistentObject(nd.data.adapter.DataContainer.MetaDataCache)");
  EXPECT_EQ(raised<CannotAddNonExistentObject>([&] { entry.setValue(tuple); }),
            "CannotAddNonExistentObject(" + EntryValue + ")");
  EXPECT_TRUE(report.changes().empty());
  EXPECT_TRUE(container.metaDataCache().empty());
  EXPECT_FALSE(entry.hasValue());
}

TEST(Containment, RefusesAnElementOfAnotherModel) {
  const Model here = Model::create();
  const Model there = Model::create();
  const ChangeReport report = ChangeReport::create(here);
  const DataContainer container = DataContainer::create(here);
  const MetaDataEntry entry = MetaDataEntry::create(here);
  const ChangeTuple tuple = ChangeTuple::create(there);
  const MetaDataEntry foreign = MetaDataEntry::create(there);
  EXPECT_EQ(raised<CannotCreateCrossModelAssociation>([&] { report.getChangesMutable().add(tuple); }),
            "CannotCreateCrossModelAssociation(" + Changes + ")");
  EXPECT_EQ(
      raised<CannotCreateCrossModelAssociation>([&] { container.getMetaDataCacheMutable().add(foreign); }),
      "CannotCreateCrossModelAssociation(nd.data.adapter.DataContainer.MetaDataCache)");
  EXPECT_EQ(raised<CannotCreateCrossModelAssociation>([&] { entry.setValue(tuple); }),
            "CannotCreateCrossModelAssociation(" + EntryValue + ")");
  EXPECT_FALSE(tuple.container());
  EXPECT_TRUE(report.changes().empty());
}

TEST(Containment, RefusesAnElementInItself) {
  const Model model = Model::create();
  const MetaDataEntry entry = MetaDataEntry::create(model);
  EXPECT_THAT(raised<InvalidValue>([&] { entry.setValue(entry); }),
              StartsWith("InvalidValue(" + EntryValue + "; "));
  EXPECT_FALSE(entry.hasValue());
}

TEST(Containment, RefusesACycleOverSeveralElementsAndLeavesAllAsItWas) {
  const Model model = Model::create();
  const DataContainer container = containerOf(model, {u"a"});
  const MetaDataEntry outer = MetaDataEntry::create(model);
  outer.setValue(container);
  const MetaDataEntry inner = container.metaDataCache().first();
  const std::string before = stateOf(model);
  EXPECT_THAT(raised<InvalidValue>([&] { inner.setValue(outer); }),
              StartsWith("InvalidValue(" + EntryValue + "; "));
  EXPECT_THAT(raised<InvalidValue>([&] { container.getMetaDataCacheMutable().add(outer); }),
              StartsWith("InvalidValue(nd.data.adapter.DataContainer.MetaDataCache; "));
  EXPECT_EQ(stateOf(model), before);
}

TEST(Containment, RefusesAnElementOfAnotherClassByReflection) {
  const Model model = Model::create();
  const ChangeReport report = reportOf(model, {u"a"});
  const nd::data::adapter::AdapterConfig config = nd::data::adapter::AdapterConfig::create(model);
  const std::string before = stateOf(model);
  EXPECT_EQ(raised<CannotAddIncompatibleTypes>(
                [&] { report.setPropertyValue(u"changes", Value(std::vector<ModelElement>{config})); }),
            "CannotAddIncompatibleTypes(" + Changes +
                "; nd.data.adapter.AdapterConfig; nd.data.adapter.ChangeTuple)");
  EXPECT_EQ(stateOf(model), before);
}

TEST(ElementMultimap, KeepsEqualKeysInTheOrderOfTheirAdding) {
  const Model model = Model::create();
  const auto report = variantsOf(model, {u"b", u"a", u"b", u"a", u"b"});
  EXPECT_EQ(namesOf(report), (Texts{u"a:1", u"a:3", u"b:0", u"b:2", u"b:4"}));
  EXPECT_EQ(report.variants().findAll(u"b").size(), 3U);
  EXPECT_EQ(report.variants().find(u"b").previousValue(), u"0");
  EXPECT_TRUE(report.variants().findAll(u"c").empty());
  EXPECT_FALSE(report.variants().find(u"c"));
}

TEST(ElementMultimap, OrdersByCodeUnitAlsoBeyondTheBasicPlane) {
  const Model model = Model::create();
  // By code point the surrogate pair would come last, by code unit it comes before U+FF5E.
  const auto report =
      variantsOf(model, {u"\uFF5E", u"\U0001F600", u"b", u"B", u"", std::u16string{char16_t{0xDC00}}});
  EXPECT_EQ(report.variants().keys(),
            (Texts{u"", u"B", u"b", u"\U0001F600", std::u16string{char16_t{0xDC00}}, u"\uFF5E"}));
}

TEST(ElementMultimap, MovesAnElementBehindItsEqualsWhenItsKeyChanges) {
  const Model model = Model::create();
  const auto report = variantsOf(model, {u"a", u"b", u"b"});
  const ConditionControlChangeEntry first = report.variants().find(u"a");
  first.setName(u"b");
  EXPECT_EQ(namesOf(report), (Texts{u"b:1", u"b:2", u"b:0"}));
  first.setName(u"b");
  EXPECT_EQ(namesOf(report), (Texts{u"b:1", u"b:2", u"b:0"}));
  first.setName(u"a");
  EXPECT_EQ(namesOf(report), (Texts{u"a:0", u"b:1", u"b:2"}));
}

TEST(ElementMultimap, FindsTheNextGreaterKey) {
  const Model model = Model::create();
  const auto report = variantsOf(model, {u"a", u"c"});
  EXPECT_EQ(report.variants().first().name(), u"a");
  EXPECT_EQ(report.variants().findGreater(u"a").name(), u"c");
  EXPECT_EQ(report.variants().findGreater(u"b").name(), u"c");
  EXPECT_FALSE(report.variants().findGreater(u"c"));
}

TEST(ElementMultimap, ChangesTheKeyOfAnElementThatNothingHolds) {
  const Model model = Model::create();
  const auto entry = ConditionControlChangeEntry::create(model);
  entry.setName(u"b");
  EXPECT_EQ(entry.name(), u"b");
  const auto report = variantsOf(model, {u"a", u"c"});
  report.getVariantsMutable().add(entry);
  EXPECT_EQ(report.variants().keys(), (Texts{u"a", u"b", u"c"}));
}

}  // namespace
