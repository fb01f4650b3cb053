#include "nd_data_adapter/model/ChangeReport.h"
#include "nd_data_adapter/model/ChangeTuple.h"

using lx::base::Model;
using lx::base::Transaction;
using nd::data::adapter::ChangeReport;
using nd::data::adapter::ChangeTuple;
using nd::data::adapter::ChangeType;

namespace {

Transaction begin(const Model& model) {
  return model.impl()->beginTransaction(false);
}

TEST(Undo, GivesBackTheValuesThatPropertiesHadBeforeTheTransaction) {
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model);
  tuple.setId(u"gain");
  {
    const Transaction transaction = begin(model);
    tuple.setId(u"offset");
    tuple.setX(ChangeType::Delete);
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

TEST(Undo, DestroysTheElementsThatAnAbandonedTransactionCreated) {
  const Model model = Model::create();
  ChangeTuple tuple;
  {
    const Transaction transaction = begin(model);
    tuple = ChangeTuple::create(model);
    EXPECT_TRUE(tuple.isAlive());
  }
  EXPECT_FALSE(tuple.isAlive());
  EXPECT_EQ(model.impl()->numberOfElements(), 0U);
}

TEST(Undo, BringsBackDestroyedElementsInTheirPlaces) {
  const Model model = Model::create();
  const ChangeReport report = ChangeReport::create(model);
  for (const char16_t* id : {u"a", u"b", u"c"}) report.createIntoChanges(ChangeTuple::Builder().setId(id));
  const ChangeTuple second = report.changes().at(1);
  {
    const Transaction transaction = begin(model);
    second.destroy();
    EXPECT_FALSE(second.isAlive());
    EXPECT_EQ(report.changes().size(), 2U);
    report.createIntoChanges(ChangeTuple::Builder().setId(u"d"));
    report.changes().at(0).destroy();
  }
  ASSERT_EQ(report.changes().size(), 3U);
  EXPECT_TRUE(second.isAlive());
  EXPECT_EQ(report.changes().at(0).id(), u"a");
  EXPECT_EQ(report.changes().at(1), second);
  EXPECT_EQ(second.id(), u"b");
  EXPECT_EQ(second.container(), report);
}

}  // namespace
