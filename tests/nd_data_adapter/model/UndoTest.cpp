#include "tests/nd_data_adapter/model/ModelTest.h"

using namespace model_test;

namespace {

TEST(Undo, GivesBackTheValuesThatPropertiesHadBeforeTheTransaction) {
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model);
  tuple.setId(u"gain");
  {
    const Transaction transaction = begin(model);
    tuple.setId(u"offset");
    tuple.setX(ChangeType::Delete);
    tuple.setId(u"again");
  }
  EXPECT_EQ(tuple.id(), u"gain");
  EXPECT_EQ(tuple.x(), ChangeType::Create);
}

TEST(Undo, KeepsTheChangesOfACommittedTransaction) {
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model);
  Transaction transaction = begin(model);
  tuple.setId(u"offset");
  transaction.commit();
  EXPECT_EQ(tuple.id(), u"offset");
}

TEST(Undo, TakesBackWhatAnExceptionInterrupts) {
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model);
  const auto work = [&] {
    Transaction transaction = begin(model);
    tuple.setId(u"half");
    throw std::runtime_error("interrupted");
  };
  EXPECT_THROW(work(), std::runtime_error);
  EXPECT_EQ(tuple.id(), u"");
  EXPECT_FALSE(model.impl()->hasOpenTransaction());
}

TEST(Undo, CanBeDoneAgainAndAgain) {
  const Model model = Model::create();
  const ChangeReport report = reportOf(model, {u"a"});
  const std::string before = stateOf(model);
  for (int round = 0; round < 3; ++round) {
    {
      const Transaction transaction = begin(model);
      report.changes().at(0).setId(u"b");
      report.createIntoChanges(ChangeTuple::Builder());
    }
    EXPECT_EQ(stateOf(model), before);
  }
}

TEST(Undo, OfNothingChangesNothing) {
  const Model model = Model::create();
  reportOf(model, {u"a"});
  const std::string before = stateOf(model);
  { const Transaction empty = begin(model); }
  EXPECT_EQ(stateOf(model), before);
}

TEST(Undo, TakesBackAnInnerTransactionAndLeavesTheOuterAsItWas) {
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model);
  Transaction outer = begin(model);
  tuple.setId(u"outer");
  {
    const Transaction inner = begin(model);
    tuple.setId(u"inner");
    tuple.setX(ChangeType::Modify);
  }
  EXPECT_EQ(tuple.id(), u"outer");
  EXPECT_EQ(tuple.x(), ChangeType::Create);
  outer.commit();
  EXPECT_EQ(tuple.id(), u"outer");
}

TEST(Undo, TakesBackWhatAnInnerTransactionCommittedWhenTheOuterIsAbandoned) {
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model);
  tuple.setId(u"before");
  {
    const Transaction outer = begin(model);
    Transaction inner = begin(model);
    tuple.setId(u"inner");
    inner.commit();
    EXPECT_EQ(tuple.id(), u"inner");
  }
  EXPECT_EQ(tuple.id(), u"before");
}

TEST(Undo, GoesBackToTheValueFromBeforeTheOuterWhenBothChangedAProperty) {
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model);
  tuple.setId(u"before");
  {
    const Transaction outer = begin(model);
    tuple.setId(u"outer");
    Transaction inner = begin(model);
    tuple.setId(u"inner");
    tuple.setX(ChangeType::Delete);
    inner.commit();
    tuple.setX(ChangeType::Modify);
  }
  EXPECT_EQ(tuple.id(), u"before");
  EXPECT_EQ(tuple.x(), ChangeType::Create);
}

TEST(Undo, PassesAChangeOutwardOverSeveralLevels) {
  const Model model = Model::create();
  const ChangeReport report = reportOf(model, {u"a"});
  const std::string before = stateOf(model);
  {
    const Transaction first = begin(model);
    Transaction second = begin(model);
    Transaction third = begin(model);
    Transaction fourth = begin(model);
    report.changes().at(0).setId(u"deep");
    report.createIntoChanges(ChangeTuple::Builder().setId(u"new"));
    fourth.commit();
    third.commit();
    report.createIntoChanges(ChangeTuple::Builder().setId(u"newer"));
    second.commit();
    EXPECT_EQ(idsOf(report), (Texts{u"deep", u"new", u"newer"}));
  }
  EXPECT_EQ(stateOf(model), before);
}

TEST(Undo, DestroysTheElementsThatAnAbandonedTransactionCreated) {
  const Model model = Model::create();
  ChangeTuple tuple;
  {
    const Transaction transaction = begin(model);
    tuple = ChangeTuple::create(model);
    tuple.setId(u"made and changed");
    EXPECT_TRUE(tuple.isAlive());
  }
  EXPECT_FALSE(tuple.isAlive());
  EXPECT_EQ(tuple.id(), u"");
  EXPECT_EQ(model.impl()->numberOfElements(), 0U);
}

TEST(Undo, OfAnInnerTransactionKeepsWhatTheOuterCreatedAndItsValues) {
  const Model model = Model::create();
  Transaction outer = begin(model);
  const ChangeReport report = reportOf(model, {u"a", u"b"});
  const std::string before = stateOf(model);
  {
    const Transaction inner = begin(model);
    report.changes().at(0).setId(u"x");
    report.changes().at(1).destroy();
    reportOf(model, {u"c"});
  }
  EXPECT_EQ(stateOf(model), before);
  outer.commit();
  EXPECT_EQ(stateOf(model), before);
}

TEST(Undo, BringsBackWhatWasDestroyedWithAllItsContentsAndValues) {
  const Model model = Model::create();
  const DataContainer container = containerOf(model, {u"a", u"b"});
  const ChangeReport report = reportOf(model, {u"t"});
  container.metaDataCache().first().setValue(report);
  container.getConditionControlsMutable().assign({u"c"});
  container.setDataModel(model);
  const std::string before = stateOf(model);
  {
    const Transaction transaction = begin(model);
    container.destroy();
    EXPECT_EQ(model.impl()->numberOfElements(), 0U);
  }
  EXPECT_EQ(stateOf(model), before);
  container.setDataModel(Model());
}

TEST(Undo, BringsBackWhatWasChangedAndThenDestroyed) {
  const Model model = Model::create();
  const ChangeReport report = reportOf(model, {u"a", u"b"});
  const std::string before = stateOf(model);
  {
    const Transaction transaction = begin(model);
    report.changes().at(0).setId(u"x");
    report.createIntoChanges(ChangeTuple::Builder());
    report.changes().at(1).destroy();
    report.destroy();
  }
  EXPECT_EQ(stateOf(model), before);
}

TEST(Undo, BringsBackAnElementThatAnInnerTransactionDestroyedAndCommitted) {
  const Model model = Model::create();
  const ChangeReport report = reportOf(model, {u"a", u"b"});
  const std::string before = stateOf(model);
  {
    const Transaction outer = begin(model);
    Transaction inner = begin(model);
    report.destroy();
    inner.commit();
    EXPECT_FALSE(report.isAlive());
  }
  EXPECT_EQ(stateOf(model), before);
}

TEST(Undo, KeepsTheIdentityOfWhatItBringsBack) {
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model);
  const boost::uuids::uuid uuid = tuple.identifier();
  {
    const Transaction transaction = begin(model);
    tuple.destroy();
  }
  EXPECT_EQ(tuple.identifier(), uuid);
  EXPECT_EQ(model.impl()->findElement(uuid), tuple);
}

TEST(Undo, LeavesElementsWritableThatItTouched) {
  const Model model = Model::create();
  const ChangeReport report = reportOf(model, {u"a"});
  {
    const Transaction transaction = begin(model);
    report.changes().at(0).destroy();
    report.createIntoChanges(ChangeTuple::Builder());
  }
  report.changes().at(0).setId(u"b");
  report.createIntoChanges(ChangeTuple::Builder().setId(u"c"));
  EXPECT_EQ(idsOf(report), (Texts{u"b", u"c"}));
  report.destroy();
  EXPECT_EQ(model.impl()->numberOfElements(), 0U);
}

TEST(Undo, OfOneModelLeavesAnotherAlone) {
  const Model one = Model::create(), two = Model::create();
  const ChangeTuple here = ChangeTuple::create(one), there = ChangeTuple::create(two);
  {
    const Transaction transaction = begin(one);
    here.setId(u"a");
    there.setId(u"b");
  }
  EXPECT_EQ(here.id(), u"");
  EXPECT_EQ(there.id(), u"b");
}

TEST(Undo, GivesBackPointersAndModels) {
  const Model model = Model::create(), data = Model::create();
  const DataContainer container = DataContainer::create(model);
  container.setDataModel(data);
  const std::string before = stateOf(model);
  {
    const Transaction transaction = begin(model);
    container.setDataModel(Model::create());
    container.setDataModel(Model());
  }
  EXPECT_EQ(container.dataModel(), data);
  EXPECT_EQ(stateOf(model), before);
}

TEST(Undo, TakesInnerTransactionsAlongWhenTheOuterEndsFirst) {
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model);
  auto outer = std::make_unique<Transaction>(begin(model));
  tuple.setId(u"outer");
  const Transaction inner = begin(model);
  tuple.setId(u"inner");
  outer.reset();
  EXPECT_EQ(tuple.id(), u"");
  EXPECT_FALSE(inner.isOpen());
  tuple.setId(u"free");
  EXPECT_EQ(tuple.id(), u"free");
}

TEST(Undo, IsDoneBeforeTheModelEndsWithItsTransaction) {
  ChangeTuple tuple;
  {
    Model model = Model::create();
    tuple = ChangeTuple::create(model);
    const Transaction transaction = begin(model);
    tuple.setId(u"a");
    model = Model();
    EXPECT_TRUE(tuple.isAlive());
  }
  EXPECT_FALSE(tuple.isAlive());
}

}  // namespace
