#include "tests/nd_data_adapter/model/random/Walk.h"

#include <memory>

#include "tests/nd_data_adapter/model/random/Values.h"

using lx::base::Transaction;
using model_test::begin;

namespace random_walk {

namespace {

constexpr std::size_t Deepest = 4;

Outcome outcomeOf(const std::function<void()>& change) {
  using namespace lxb::messages;
  try {
    change();
  } catch (const CannotModifyProxy&) {
    return Outcome::CannotModifyProxy;
  } catch (const CannotAddNonExistentObject&) {
    return Outcome::CannotAddNonExistentObject;
  } catch (const CannotAddSecondObject&) {
    return Outcome::CannotAddSecondObject;
  } catch (const UniquenessConstraint&) {
    return Outcome::UniquenessConstraint;
  } catch (const InvalidValue&) {
    return Outcome::InvalidValue;
  }
  return Outcome::Done;
}

}  // namespace

Walk::Walk(unsigned seed, std::ostream* trace)
    : random_(seed), trace_(trace), model_(Model::create()), left_(20 + below(30)) {
  if (!oneOf(3)) witness_.emplace(model_);
}

Walk::~Walk() = default;

std::string Walk::run() {
  try {
    steps();
    end();
  } catch (const Mismatch& mismatch) {
    return mismatch.what();
  } catch (const std::exception& other) {
    return std::string("raised: ") + other.what();
  }
  return {};
}

void Walk::steps() {
  const unsigned count = levels_.empty() ? left_ : 1 + below(9);
  for (unsigned done = 0; done < count && left_ > 0; ++done) {
    --left_;
    if (levels_.size() < Deepest && oneOf(5))
      oneOf(12) ? nestAndEndOutOfOrder() : nest();
    else
      step();
  }
}

void Walk::nest() {
  const Twin before = twin_;
  const unsigned way = below(8);
  const bool isQuiet = oneOf(8);
  bool isCommitted = false;
  int more = 0;
  note(isQuiet ? "{ quietly" : "{");
  levels_.push_back(&before);
  try {
    Transaction transaction = model_.impl()->beginTransaction(isQuiet);
    steps();
    if (way == 0) throw Abandonment{static_cast<int>(below(2))};
    if (way == 1) commitTooEarly(transaction);
    if (way < 5) {
      transaction.commit();
      isCommitted = true;
    }
  } catch (const Abandonment& abandonment) {
    more = abandonment.more;
  }
  levels_.pop_back();
  note(isCommitted ? "} committed" : "} left");
  if (!isCommitted) twin_ = before;
  if (isQuiet && levels_.empty()) told_ = twin_;  // of which nothing is heard
  checkClosely();
  if (more > 0 && !levels_.empty()) throw Abandonment{more - 1};
}

/// An outer transaction that ends takes the inner ones along, however much was done in them.
void Walk::nestAndEndOutOfOrder() {
  const Twin before = twin_;
  note("{ {");
  levels_.push_back(&before);
  auto outer = std::make_unique<Transaction>(begin(model_));
  try {
    steps();
    const Twin between = twin_;
    levels_.push_back(&between);
    Transaction inner = begin(model_);
    try {
      steps();
    } catch (const Abandonment&) {
    }
    levels_.pop_back();
    outer.reset();
    if (inner.isOpen()) throw Mismatch("the inner transaction is open behind the end of the outer");
  } catch (const Abandonment&) {
  }
  outer.reset();
  levels_.pop_back();
  twin_ = before;
  note("} out of order");
  checkClosely();
}

void Walk::commitTooEarly(Transaction& outer) {
  const Transaction inner = begin(model_);
  const Outcome outcome = outcomeOf([&] { outer.commit(); });
  if (outcome != Outcome::InvalidValue) throw Mismatch("an outer transaction was committed before an inner");
}

void Walk::perform(Outcome expected, const std::function<void()>& change) {
  const Outcome outcome = outcomeOf(change);
  if (outcome != expected) {
    throw Mismatch(std::string("the change came to ") + nameOf(outcome) + " and not to " + nameOf(expected));
  }
  check();
  if (outcome != Outcome::Done && !levels_.empty() && oneOf(6)) {
    note("is not caught");
    throw Abandonment{static_cast<int>(below(2))};
  }
}

/// Do what changes an element. One that is gone and was a proxy refuses as a proxy does.
void Walk::change(Id id, Outcome expected, const std::function<void()>& change) {
  perform(!twin_.contains(id) && pairing_[id].isProxy() ? Outcome::CannotModifyProxy : expected, change);
}

void Walk::check() {
  if (std::string text = pairing_.difference(model_, twin_); !text.empty()) throw Mismatch(text);
  if (model_.impl()->hasOpenTransaction() == levels_.empty()) throw Mismatch("a transaction is left open");
  if (!witness_) return;
  const bool isHeard = levels_.empty();
  if (std::string text = witness_->difference(pairing_, told_, isHeard ? twin_ : told_); !text.empty()) {
    throw Mismatch(text);
  }
  if (isHeard) told_ = twin_;
}

void Walk::checkClosely() {
  check();
  if (std::string text = pairing_.closeDifference(model_, twin_); !text.empty()) throw Mismatch(text);
}

/// End the model, by hand or with its last handle: all elements are gone, and all that they held is free.
void Walk::end() {
  checkClosely();
  witness_.reset();
  note("the model ends");
  if (oneOf(2)) model_.destroy();
  model_ = Model();
  const Model other = Model::create();
  if (std::string text = pairing_.closeDifference(other, Twin()); !text.empty()) throw Mismatch(text);
}

}  // namespace random_walk
