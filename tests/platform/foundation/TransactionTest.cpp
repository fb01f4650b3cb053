#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "platform/foundation/ModelImpl.h"
#include "platform/foundation/Transaction.h"
#include "platform/foundation/messages.h"
#include "tests/platform/foundation/raised.h"

using lx::base::Model;
using lx::base::Transaction;
using lxb::messages::InvalidValue;
using testing::StartsWith;

namespace {

// Transactions end while exceptions pass: what throws while one is undone ends the program.
static_assert(std::is_nothrow_destructible_v<Transaction> &&
              std::is_nothrow_move_constructible_v<Transaction>);

Transaction begin(const Model& model) {
  return model.impl()->beginTransaction(false);
}

TEST(Transaction, IsOpenUntilItIsCommitted) {
  const Model model = Model::create();
  Transaction transaction = begin(model);
  EXPECT_TRUE(transaction.isOpen());
  EXPECT_TRUE(model.impl()->hasOpenTransaction());
  transaction.commit();
  EXPECT_FALSE(transaction.isOpen());
  EXPECT_FALSE(model.impl()->hasOpenTransaction());
}

TEST(Transaction, EndsWithItsScope) {
  const Model model = Model::create();
  { const Transaction transaction = begin(model); }
  EXPECT_FALSE(model.impl()->hasOpenTransaction());
}

TEST(Transaction, IsNotOpenWhenNoModelBeganIt) {
  Transaction none;
  EXPECT_FALSE(none.isOpen());
  EXPECT_THAT(raised<InvalidValue>([&] { none.commit(); }), StartsWith("InvalidValue(Transaction.commit; "));
}

TEST(Transaction, RefusesASecondCommit) {
  const Model model = Model::create();
  Transaction transaction = begin(model);
  transaction.commit();
  EXPECT_THAT(raised<InvalidValue>([&] { transaction.commit(); }),
              StartsWith("InvalidValue(Transaction.commit; the transaction is not open"));
}

TEST(Transaction, RefusesToCommitWhileAnInnerOneIsOpenAndStaysOpen) {
  const Model model = Model::create();
  Transaction outer = begin(model);
  Transaction inner = begin(model);
  EXPECT_THAT(raised<InvalidValue>([&] { outer.commit(); }),
              StartsWith("InvalidValue(Transaction.commit; a transaction within this one is still open"));
  EXPECT_TRUE(outer.isOpen());
  EXPECT_TRUE(inner.isOpen());
  inner.commit();
  outer.commit();
  EXPECT_FALSE(model.impl()->hasOpenTransaction());
}

TEST(Transaction, TakesInnerOnesAlongWhenItEndsFirst) {
  const Model model = Model::create();
  auto outer = std::make_unique<Transaction>(begin(model));
  Transaction middle = begin(model);
  Transaction inner = begin(model);
  outer.reset();
  EXPECT_FALSE(middle.isOpen());
  EXPECT_FALSE(inner.isOpen());
  EXPECT_FALSE(model.impl()->hasOpenTransaction());
  EXPECT_THAT(raised<InvalidValue>([&] { inner.commit(); }), StartsWith("InvalidValue(Transaction.commit; "));
}

TEST(Transaction, LeavesTheOuterOpenWhenTheInnerEnds) {
  const Model model = Model::create();
  Transaction outer = begin(model);
  { const Transaction inner = begin(model); }
  EXPECT_TRUE(outer.isOpen());
  begin(model).commit();
  EXPECT_TRUE(outer.isOpen());
  outer.commit();
}

TEST(Transaction, IsCommittedByTheObjectItWasMovedTo) {
  const Model model = Model::create();
  Transaction first = begin(model);
  Transaction second = std::move(first);
  EXPECT_FALSE(first.isOpen());  // NOLINT(bugprone-use-after-move): this is what is tested
  EXPECT_TRUE(second.isOpen());
  second.commit();
  EXPECT_FALSE(model.impl()->hasOpenTransaction());
}

TEST(Transaction, KnowsThatItWasTakenAlongAlsoWhenItWasMoved) {
  const Model model = Model::create();
  auto outer = std::make_unique<Transaction>(begin(model));
  Transaction inner = begin(model);
  Transaction moved = std::move(inner);
  outer.reset();
  EXPECT_FALSE(moved.isOpen());
}

TEST(Transaction, NestsAsDeepAsAsked) {
  const Model model = Model::create();
  std::vector<std::unique_ptr<Transaction>> open;
  open.reserve(1000);
  for (int depth = 0; depth < 1000; ++depth) open.push_back(std::make_unique<Transaction>(begin(model)));
  while (!open.empty()) {
    if (open.size() % 2 == 0) open.back()->commit();
    open.pop_back();
  }
  EXPECT_FALSE(model.impl()->hasOpenTransaction());
}

TEST(Transaction, OfOneModelIsNoneOfAnother) {
  const Model one = Model::create();
  const Model two = Model::create();
  Transaction first = begin(one);
  Transaction second = begin(two);
  first.commit();
  EXPECT_TRUE(two.impl()->hasOpenTransaction());
  second.commit();
}

}  // namespace
