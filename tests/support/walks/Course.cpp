#include "tests/support/walks/Course.h"

using lx::base::Transaction;

namespace walking {

namespace {

constexpr std::size_t Deepest = 4;

}  // namespace

Course::Course(unsigned seed, std::ostream* trace, std::size_t models)
    : random_(seed), trace_(trace), left_(20 + below(30)) {
  for (std::size_t at = 0; at < models; ++at) {
    models_.push_back(Model::create());
    if (!oneOf(3)) witnesses_[at] = std::make_unique<Witness>(models_[at]);
  }
}

Course::~Course() = default;

std::string Course::run() {
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

Transaction Course::beginIn(int model, bool quiet) {
  return models_[static_cast<std::size_t>(model)].impl()->beginTransaction(quiet);
}

void Course::steps() {
  const unsigned count = depth() == 0 ? left_ : 1 + below(9);
  for (unsigned done = 0; done < count && left_ > 0; ++done) {
    --left_;
    if (depth() < Deepest && oneOf(5))
      oneOf(12) ? nestAndEndOutOfOrder() : nest();
    else
      step();
  }
}

void Course::nest() {
  const int model = drawModel();
  const auto at = static_cast<std::size_t>(model);
  std::unique_ptr<Kept> kept = keep(model);
  const unsigned way = below(8);
  const bool isQuiet = oneOf(8);
  bool isCommitted = false;
  int more = 0;
  note(isQuiet ? "{ quietly in " : "{ in ", model);
  ++open_[at];
  try {
    Transaction transaction = beginIn(model, isQuiet);
    steps();
    if (way == 0) throw Abandonment{static_cast<int>(below(2))};
    if (way == 1) commitTooEarly(transaction, model);
    if (way < 5) {
      transaction.commit();
      isCommitted = true;
    }
  } catch (const Abandonment& abandonment) {
    more = abandonment.more;
    counts_.count("leave a transaction by an exception", true);
  }
  --open_[at];
  note(isCommitted ? "} committed in " : "} left in ", model);
  if (isCommitted)
    counts_.count(isQuiet ? "commit a quiet transaction" : "commit a transaction", true);
  else
    counts_.count("roll a transaction back", true), kept->putBack();
  kept.reset();
  if (isQuiet && open_[at] == 0) {  // of which nothing is heard
    if (witnesses_[at] && witnesses_[at]->wasTold()) throw Mismatch("a quiet transaction was told");
    learn(model);
  }
  oneOf(5) ? checkClosely() : check(true);
  if (more > 0 && depth() > 0) throw Abandonment{more - 1};
}

/// An outer transaction that ends takes the inner ones along, however much was done in them.
void Course::nestAndEndOutOfOrder() {
  const int model = drawModel();
  const auto at = static_cast<std::size_t>(model);
  const std::unique_ptr<Kept> kept = keep(model);
  note("{ { in ", model);
  ++open_[at];
  auto outer = std::make_unique<Transaction>(beginIn(model));
  try {
    steps();
    const std::unique_ptr<Kept> keptBetween = keep(model);
    ++open_[at];
    Transaction inner = beginIn(model);
    try {
      steps();
    } catch (const Abandonment&) {
    }
    --open_[at];
    outer.reset();
    if (inner.isOpen()) throw Mismatch("the inner transaction is open behind the end of the outer");
    counts_.count("end transactions out of order", true);
  } catch (const Abandonment&) {
  }
  outer.reset();
  --open_[at];
  kept->putBack();
  note("} out of order in ", model);
  checkClosely();
}

void Course::commitTooEarly(Transaction& outer, int model) {
  const Transaction inner = beginIn(model);
  const Outcome outcome = outcomeOf([&] { outer.commit(); });
  if (outcome != Outcome::InvalidValue) throw Mismatch("an outer transaction was committed before an inner");
  counts_.count("try to commit a transaction too early", true);
}

void Course::perform(Outcome expected, const std::function<void()>& change) {
  const Outcome outcome = outcomeOf(change);
  counts_.count(doing_, outcome == Outcome::Done);
  if (outcome != expected) {
    throw Mismatch(std::string("the change came to ") + nameOf(outcome) + " and not to " + nameOf(expected));
  }
  check(oneOf(4) || trace_ != nullptr);
  if (outcome != Outcome::Done && depth() > 0 && oneOf(6)) {
    note("is not caught");
    throw Abandonment{static_cast<int>(below(2))};
  }
}

void Course::check(bool compares) {
  for (int model = 0; model < models(); ++model) {
    const auto at = static_cast<std::size_t>(model);
    if (compares) {
      if (std::string text = difference(model); !text.empty()) throw Mismatch(text);
    }
    if (models_[at].impl()->hasOpenTransaction() != (open_[at] > 0))
      throw Mismatch("a transaction is left open");
    if (!witnesses_[at]) continue;
    if (open_[at] > 0) {
      if (witnesses_[at]->wasTold()) throw Mismatch("told before the commit");
      continue;
    }
    if (std::string text = differenceOfTold(model, *witnesses_[at]); !text.empty()) throw Mismatch(text);
    learn(model);
  }
}

void Course::checkClosely() {
  check(false);
  for (int model = 0; model < models(); ++model) {
    if (std::string text = closeDifference(model); !text.empty()) throw Mismatch(text);
  }
}

/// End the models, by hand or with the last handle: all their elements are gone, and all that they held is
/// free; what refers to them from another model reads them as gone.
void Course::end() {
  checkClosely();
  for (auto& witness : witnesses_) witness.reset();
  std::size_t at = below(static_cast<unsigned>(models_.size()));
  for (std::size_t count = 0; count < models_.size(); ++count, at = (at + 1) % models_.size()) {
    note("model ", at, " ends");
    if (oneOf(2)) models_[at].destroy();
    models_[at] = Model::create();
    empty(static_cast<int>(at));
    checkClosely();
  }
}

}  // namespace walking
