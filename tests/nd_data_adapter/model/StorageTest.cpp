// What the storage of an open transaction holds. A property's bit in the mask is that of its index.
#include "tests/nd_data_adapter/model/ModelTest.h"

using namespace model_test;

namespace {

/// A tuple whose latest storage can be looked at.
class WatchedTuple final : public ChangeTuple::Impl {
 public:
  explicit WatchedTuple(const Model& model) : ChangeTuple::Impl(model, {}) {}

  std::unique_ptr<ModelElement::Impl::Storage> createStorage() const override {
    std::unique_ptr<ModelElement::Impl::Storage> storage = ChangeTuple::Impl::createStorage();
    latest = storage.get();
    return storage;
  }

  mutable ModelElement::Impl::Storage* latest = nullptr;
};

class Storage : public testing::Test {
 protected:
  Storage() {
    Transaction transaction = begin(model);
    watched = new WatchedTuple(model);
    tuple = ChangeTuple(watched);
    watched->notifyCreated();
    transaction.commit();
  }
  ModelElement::Impl::Storage& storage() { return *watched->latest; }

  const Model model = Model::create();
  WatchedTuple* watched = nullptr;
  ChangeTuple tuple;
};

TEST_F(Storage, MarksThePropertyOfIndexOneByTheValueTwo) {
  const Transaction open = begin(model);
  tuple.setX(ChangeType::Delete);
  EXPECT_EQ(storage().mask(), 2U);
  EXPECT_TRUE(storage().isChanged(1));
  EXPECT_FALSE(storage().isChanged(2));
}

TEST_F(Storage, MarksThePropertyOfIndexTwoByTheValueFour) {
  const Transaction open = begin(model);
  tuple.setId(u"gain");
  EXPECT_EQ(storage().mask(), 4U);
  EXPECT_FALSE(storage().isChanged(1));
  EXPECT_TRUE(storage().isChanged(2));
}

TEST_F(Storage, MarksEachChangedPropertyOnce) {
  const Transaction open = begin(model);
  tuple.setId(u"gain");
  tuple.setX(ChangeType::Delete);
  tuple.setId(u"offset");
  EXPECT_EQ(storage().mask(), 6U);
}

TEST_F(Storage, OfAnInnerTransactionMarksWhatThatOneChanged) {
  const Transaction outer = begin(model);
  tuple.setX(ChangeType::Modify);
  const ModelElement::Impl::Storage& ofOuter = storage();
  const Transaction inner = begin(model);
  tuple.setId(u"gain");
  EXPECT_EQ(storage().mask(), 4U);
  EXPECT_EQ(ofOuter.mask(), 2U);
}

TEST_F(Storage, ForgetsWhatWasChangedBack) {
  const Transaction open = begin(model);
  tuple.setX(ChangeType::Delete);
  tuple.setId(u"gain");
  tuple.setX(ChangeType::Create);
  storage().revertUnchanged(*watched);
  EXPECT_EQ(storage().mask(), 4U);
  tuple.setId(u"");
  storage().revertUnchanged(*watched);
  EXPECT_EQ(storage().mask(), 0U);
}

TEST_F(Storage, GivesTheOldValueOfAChangedProperty) {
  tuple.setId(u"before");
  const Transaction open = begin(model);
  tuple.setId(u"first");
  tuple.setId(u"second");
  EXPECT_EQ(storage().getOldValue(2), Value(u"before"));
  tuple.setX(ChangeType::Delete);
  EXPECT_EQ(storage().getOldValue(1), Value(ChangeType::Create));
}

TEST_F(Storage, GivesAnEmptyValueForWhatHasNotChanged) {
  const Transaction open = begin(model);
  tuple.setId(u"gain");
  EXPECT_TRUE(storage().getOldValue(1).isEmpty());
  EXPECT_TRUE(storage().getOldValue(3).isEmpty()) << "there is no such property";
  storage().clearChanged(2);
  EXPECT_TRUE(storage().getOldValue(2).isEmpty());
}

TEST_F(Storage, IsMadeOncePerTransactionAndOnlyForAChange) {
  const Transaction open = begin(model);
  tuple.setX(tuple.x());
  EXPECT_EQ(watched->latest, nullptr);
  tuple.setX(ChangeType::Delete);
  const ModelElement::Impl::Storage* const first = watched->latest;
  tuple.setId(u"gain");
  EXPECT_EQ(watched->latest, first);
}

TEST_F(Storage, IsNotMadeInTheTransactionThatMadeTheElement) {
  const Transaction open = begin(model);
  auto* const fresh = new WatchedTuple(model);
  const ChangeTuple made(fresh);
  fresh->notifyCreated();
  made.setId(u"gain");
  EXPECT_EQ(fresh->latest, nullptr);
}

}  // namespace
