#include "tests/nd_data_adapter/model/Recorder.h"

using namespace model_test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

TEST(ChangeSet, TellsALoneSetterWithTheOldValue) {
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model);
  tuple.setId(u"gain");
  Recorder recorder(model);
  recorder.call(tuple, "tuple");
  tuple.setId(u"offset");
  EXPECT_THAT(recorder.take(), ElementsAre("tuple.id was \"gain\""));
}

TEST(ChangeSet, TellsATransactionOnceWithTheValuesFromBeforeIt) {
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model);
  Recorder recorder(model);
  recorder.call(tuple, "tuple");
  Transaction open = begin(model);
  tuple.setX(ChangeType::Modify);
  tuple.setId(u"one");
  tuple.setId(u"two");
  EXPECT_THAT(recorder.take(), IsEmpty());
  open.commit();
  EXPECT_THAT(recorder.take(), ElementsAre("tuple.x was \"Create\" tuple.id was \"\""));
}

TEST(ChangeSet, TellsElementsInTheOrderOfTheirFirstChange) {
  const Model model = Model::create();
  const ChangeTuple a = ChangeTuple::create(model), b = ChangeTuple::create(model),
                    c = ChangeTuple::create(model);
  Recorder recorder(model);
  recorder.call(a, "a"), recorder.call(b, "b"), recorder.call(c, "c");
  Transaction open = begin(model);
  c.setId(u"1");
  a.setId(u"2");
  b.setId(u"3");
  c.setX(ChangeType::Delete);
  open.commit();
  EXPECT_THAT(recorder.take(), ElementsAre("c.x was \"Create\" c.id was \"\" a.id was \"\" b.id was \"\""));
}

TEST(ChangeSet, TellsElementsInTheOrderOfTheirFirstChangeAlsoOverNestedTransactions) {
  const Model model = Model::create();
  const ChangeTuple a = ChangeTuple::create(model), b = ChangeTuple::create(model),
                    c = ChangeTuple::create(model), d = ChangeTuple::create(model);
  Recorder recorder(model);
  recorder.call(a, "a"), recorder.call(b, "b"), recorder.call(c, "c"), recorder.call(d, "d");
  Transaction outer = begin(model);
  a.setId(u"1");
  {
    Transaction inner = begin(model);
    b.setId(u"2");
    a.setId(u"3");
    c.setId(u"4");
    inner.commit();
  }
  d.setId(u"5");
  outer.commit();
  EXPECT_THAT(recorder.take(), ElementsAre("a.id was \"\" b.id was \"\" c.id was \"\" d.id was \"\""));
}

TEST(ChangeSet, TellsWhatWasCreatedInTheOrderOfCreation) {
  const Model model = Model::create();
  Recorder recorder(model);
  Transaction open = begin(model);
  const ChangeTuple first = ChangeTuple::create(model);
  const ChangeReport second = ChangeReport::create(model);
  first.setId(u"told as a part of the creation");
  recorder.call(first, "first"), recorder.call(second, "second");
  open.commit();
  EXPECT_THAT(recorder.take(), ElementsAre("+first +second"));
}

TEST(ChangeSet, TellsWhatWasDestroyedContainersFirstAndContentsInTheirOrder) {
  const Model model = Model::create();
  const ChangeReport report = reportOf(model, {u"a", u"b"});
  Recorder recorder(model);
  recorder.call(report, "report");
  recorder.call(report.changes().at(0), "a"), recorder.call(report.changes().at(1), "b");
  Transaction open = begin(model);
  report.destroy();
  open.commit();
  EXPECT_THAT(recorder.take(), ElementsAre("-report -a -b"));
}

TEST(ChangeSet, TellsADestructionByHandAlike) {
  const Model model = Model::create();
  const ChangeReport report = reportOf(model, {u"a", u"b"});
  Recorder recorder(model);
  recorder.call(report, "report");
  recorder.call(report.changes().at(0), "a"), recorder.call(report.changes().at(1), "b");
  report.destroy();
  EXPECT_THAT(recorder.take(), ElementsAre("-report -a -b"));
}

TEST(ChangeSet, TellsACollectionWithAllThatItHeldBefore) {
  const Model model = Model::create();
  const ChangeReport report = reportOf(model, {u"a", u"b"});
  Recorder recorder(model);
  recorder.call(report, "report");
  recorder.call(report.changes().at(0), "a"), recorder.call(report.changes().at(1), "b");
  Transaction open = begin(model);
  report.createIntoChanges(ChangeTuple::Builder());
  report.changes().at(0).destroy();
  report.createIntoChanges(ChangeTuple::Builder());
  open.commit();
  EXPECT_THAT(recorder.take(), ElementsAre("+a ChangeTuple +a ChangeTuple -a report.changes was [a b]"));
}

TEST(ChangeSet, TellsAKeyedCollectionInItsFormerOrder) {
  const Model model = Model::create();
  const auto report = variantsOf(model, {u"a", u"b"});
  const auto a = report.variants().find(u"a"), b = report.variants().find(u"b");
  Recorder recorder(model);
  recorder.call(report, "report"), recorder.call(a, "a"), recorder.call(b, "b");
  a.setName(u"c");
  EXPECT_THAT(recorder.take(), ElementsAre("a.name was \"a\" report.Variants was [a b]"));
  EXPECT_EQ(report.variants().first(), b);
}

TEST(ChangeSet, TellsAChangedKeyAloneIfTheOrderStays) {
  const Model model = Model::create();
  const auto report = variantsOf(model, {u"a", u"c"});
  const auto a = report.variants().find(u"a");
  Recorder recorder(model);
  recorder.call(report, "report"), recorder.call(a, "a");
  a.setName(u"b");
  EXPECT_THAT(recorder.take(), ElementsAre("a.name was \"a\""));
}

TEST(ChangeSet, TellsAPrimitiveSequenceAndAContainedReference) {
  const Model model = Model::create();
  const DataContainer container = DataContainer::create(model);
  container.getConditionControlsMutable().assign({u"one", u"two"});
  const MetaDataEntry entry = MetaDataEntry::create(model);
  const ChangeTuple tuple = ChangeTuple::create(model);
  entry.setValue(tuple);
  Recorder recorder(model);
  recorder.call(container, "container"), recorder.call(entry, "entry"), recorder.call(tuple, "tuple");
  Transaction open = begin(model);
  container.getConditionControlsMutable().add(u"three");
  entry.setValue(ModelElement());
  open.commit();
  EXPECT_THAT(recorder.take(), ElementsAre("-tuple container.ConditionControls was [\"one\" \"two\" ] "
                                           "entry.value was tuple"));
}

TEST(ChangeSet, TellsAMoveByTheTwoCollections) {
  const Model model = Model::create();
  const ChangeReport one = reportOf(model, {u"a"}), two = reportOf(model, {u"b"});
  const ChangeTuple a = one.changes().at(0), b = two.changes().at(0);
  Recorder recorder(model);
  recorder.call(one, "one"), recorder.call(two, "two"), recorder.call(a, "a"), recorder.call(b, "b");
  two.getChangesMutable().add(a);
  EXPECT_THAT(recorder.take(), ElementsAre("one.changes was [a] two.changes was [b]"));
}

TEST(ChangeSet, CarriesTheLabelOfTheCommit) {
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model);
  Recorder recorder(model);
  recorder.call(tuple, "tuple");
  Transaction open = begin(model);
  tuple.setId(u"a");
  open.commit(Value(u"rename"));
  EXPECT_THAT(recorder.take(), ElementsAre("label \"rename\" tuple.id was \"\""));
}

TEST(ChangeSet, CarriesTheLabelOfAnInnerCommitUnlessTheOuterHasOne) {
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model);
  Recorder recorder(model);
  recorder.call(tuple, "tuple");
  for (const bool outerHasOne : {false, true}) {
    Transaction outer = begin(model);
    Transaction inner = begin(model);
    tuple.setX(outerHasOne ? ChangeType::Create : ChangeType::Delete);
    inner.commit(Value(u"inner"));
    if (outerHasOne)
      outer.commit(Value(u"outer"));
    else
      outer.commit();
  }
  EXPECT_THAT(recorder.take(), ElementsAre("label \"inner\" tuple.x was \"Create\"",
                                           "label \"outer\" tuple.x was \"Delete\""));
}

TEST(ChangeSet, HasTheModelThatChanged) {
  const Model model = Model::create();
  Recorder recorder(model);
  Model told;
  recorder.whenTold([&](const lx::base::ChangeSet& changes) { told = changes.model(); });
  ChangeTuple::create(model);
  EXPECT_EQ(told, model);
}

TEST(ChangeSet, IsNotToldForAnEqualValue) {
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model);
  const DataContainer container = DataContainer::create(model);
  container.getConditionControlsMutable().add(u"c");
  Recorder recorder(model);
  const std::uint64_t begun = transactions(model);
  tuple.setId(u"");
  tuple.setX(ChangeType::Create);
  container.getConditionControlsMutable().assign({u"c"});
  container.setDataModel(Model());
  EXPECT_EQ(transactions(model), begun);
  EXPECT_EQ(notices(model), 0U);
  EXPECT_THAT(recorder.take(), IsEmpty());
}

TEST(ChangeSet, IsNotToldForAValueThatWasSetBack) {
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model);
  const DataContainer container = DataContainer::create(model);
  Recorder recorder(model);
  Transaction open = begin(model);
  tuple.setId(u"other");
  tuple.setX(ChangeType::Delete);
  tuple.setId(u"");
  tuple.setX(ChangeType::Create);
  container.getConditionControlsMutable().add(u"c");
  container.getConditionControlsMutable().clear();
  open.commit(Value(u"nothing in the end"));
  EXPECT_THAT(recorder.take(), IsEmpty());
  EXPECT_EQ(notices(model), 0U);
}

TEST(ChangeSet, LeavesOutThePropertyThatWasSetBack) {
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model);
  Recorder recorder(model);
  recorder.call(tuple, "tuple");
  Transaction open = begin(model);
  tuple.setX(ChangeType::Delete);
  tuple.setId(u"new");
  tuple.setX(ChangeType::Create);
  open.commit();
  EXPECT_THAT(recorder.take(), ElementsAre("tuple.id was \"\""));
}

TEST(ChangeSet, IsNotToldForWhatWasCreatedAndDestroyedInOneTransaction) {
  const Model model = Model::create();
  const ChangeReport report = reportOf(model, {u"a"});
  Recorder recorder(model);
  Transaction open = begin(model);
  const ChangeTuple tuple = report.createIntoChanges(ChangeTuple::Builder());
  tuple.destroy();
  ChangeTuple::create(model).destroy();
  open.commit();
  EXPECT_THAT(recorder.take(), IsEmpty());
}

TEST(ChangeSet, IsNotToldForACollectionWhoseElementsAreBackInTheirPlaces) {
  const Model model = Model::create();
  const ChangeReport one = reportOf(model, {u"a", u"b"}), two = reportOf(model, {});
  const ChangeTuple a = one.changes().at(0);
  Recorder recorder(model);
  Transaction open = begin(model);
  two.getChangesMutable().add(a);
  one.getChangesMutable().insert(0, a);
  open.commit();
  EXPECT_THAT(recorder.take(), IsEmpty());
}

TEST(ChangeSet, IsToldForACollectionWhoseOrderChanged) {
  const Model model = Model::create();
  const ChangeReport one = reportOf(model, {u"a", u"b"}), two = reportOf(model, {});
  const ChangeTuple a = one.changes().at(0), b = one.changes().at(1);
  Recorder recorder(model);
  recorder.call(one, "one"), recorder.call(a, "a"), recorder.call(b, "b");
  Transaction open = begin(model);
  two.getChangesMutable().add(a);
  one.getChangesMutable().add(a);
  open.commit();
  EXPECT_THAT(recorder.take(), ElementsAre("one.changes was [a b]"));
}

TEST(ChangeSet, IsNotToldForAnAbandonedTransaction) {
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model);
  Recorder recorder(model);
  recorder.call(tuple, "tuple");
  {
    const Transaction open = begin(model);
    tuple.setId(u"a");
    ChangeReport::create(model);
  }
  EXPECT_THAT(recorder.take(), IsEmpty());
  Transaction outer = begin(model);
  tuple.setX(ChangeType::Modify);
  {
    const Transaction inner = begin(model);
    tuple.setId(u"b");
  }
  outer.commit();
  EXPECT_THAT(recorder.take(), ElementsAre("tuple.x was \"Create\""));
}

TEST(ChangeSet, IsNotToldForAQuietTransaction) {
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model);
  Recorder recorder(model);
  recorder.call(tuple, "tuple");
  Transaction quiet = model.impl()->beginTransaction(true);
  tuple.setId(u"a");
  {
    Transaction loud = begin(model);
    tuple.setX(ChangeType::Delete);
    loud.commit();
  }
  quiet.commit();
  EXPECT_THAT(recorder.take(), IsEmpty());
  EXPECT_EQ(tuple.id(), u"a");

  Transaction loud = begin(model);
  {
    Transaction inner = model.impl()->beginTransaction(true);
    tuple.setId(u"b");
    inner.commit();
  }
  loud.commit();
  EXPECT_THAT(recorder.take(), ElementsAre("tuple.id was \"a\""));
}

TEST(ChangeSet, IsNotToldOfTheEndOfTheModel) {
  const Model model = Model::create();
  ChangeTuple::create(model);
  Recorder recorder(model);
  model.destroy();
  EXPECT_THAT(recorder.take(), IsEmpty());
}

TEST(ChangeSet, TellsAnIdentityGivenToASecondElementAsOneGoneAndOneMade) {
  const Model model = Model::create();
  const ChangeTuple first = ChangeTuple::create(model);
  Recorder recorder(model);
  Transaction open = begin(model);
  const auto uuid = first.identifier();
  first.destroy();
  const ChangeTuple second = ChangeTuple::create(model, uuid);
  recorder.call(first, "first"), recorder.call(second, "second");
  open.commit();
  EXPECT_THAT(recorder.take(), ElementsAre("+second -first"));
}

TEST(ChangeSet, MayHoldTheLastReferenceToWhatWasDestroyedAndChanged) {
  const Model model = Model::create();
  ChangeReport report = reportOf(model, {u"a", u"b"});
  auto variants = variantsOf(model, {u"a", u"b"});
  Transaction open = begin(model);
  report.createIntoChanges(ChangeTuple::Builder());
  report.changes().at(0).destroy();
  variants.variants().find(u"a").setName(u"c");
  report.destroy();
  variants.destroy();
  report = ChangeReport();
  variants = ConditionControlChangeReport();
  open.commit();
  EXPECT_EQ(model.impl()->numberOfElements(), 0U);
}

}  // namespace
