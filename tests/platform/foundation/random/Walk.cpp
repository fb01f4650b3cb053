#include "tests/platform/foundation/random/Walk.h"

#include "platform/foundation/messages.h"

using lx::base::Transaction;

namespace model_walk {

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
  } catch (const CannotCreateCrossModelAssociation&) {
    return Outcome::CannotCreateCrossModelAssociation;
  } catch (const CannotAddIncompatibleTypes&) {
    return Outcome::CannotAddIncompatibleTypes;
  } catch (const CannotSetReadOnlyProperty&) {
    return Outcome::CannotSetReadOnlyProperty;
  } catch (const UniquenessConstraint&) {
    return Outcome::UniquenessConstraint;
  } catch (const InvalidValue&) {
    return Outcome::InvalidValue;
  }
  return Outcome::Done;
}

template <class... K>
constexpr std::uint32_t bitsOf(K... kinds) {
  return ((1U << static_cast<int>(kinds)) | ...);
}

/// What a walk is about: few kinds, so that its elements meet, or all.
constexpr std::uint32_t themes[]{
    bitsOf(Kind::Thing, Kind::Machine, Kind::Robot, Kind::Containers),
    bitsOf(Kind::Thing, Kind::Machine, Kind::References, Kind::MoreReferences),
    bitsOf(Kind::Thing, Kind::Robot, Kind::Containers, Kind::References, Kind::MoreReferences),
    bitsOf(Kind::Containers, Kind::Thing, Kind::References),
    bitsOf(Kind::Branch, Kind::Leaf, Kind::Twig, Kind::References),
    bitsOf(Kind::Values, Kind::Optionals, Kind::Defaults, Kind::Traits, Kind::Lists, Kind::Sets, Kind::Square,
           Kind::Cube),
    (1U << Kinds) - 1};

}  // namespace

Walk::Walk(unsigned seed, std::ostream* trace)
    : random_(seed), trace_(trace), kinds_(oneIn(themes)), left_(20 + below(30)) {
  for (std::size_t model = 0; model < 2; ++model) {
    if (!oneOf(3)) witnesses_[model].emplace(models_[model]);
  }
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

Transaction Walk::begin(int model, bool quiet) {
  return models_[static_cast<std::size_t>(model)].impl()->beginTransaction(quiet);
}

void Walk::steps() {
  const unsigned count = depth() == 0 ? left_ : 1 + below(9);
  for (unsigned done = 0; done < count && left_ > 0; ++done) {
    --left_;
    if (depth() < Deepest && oneOf(5))
      oneOf(12) ? nestAndEndOutOfOrder() : nest();
    else
      step();
  }
}

void Walk::nest() {
  const int model = drawModel();
  const auto at = static_cast<std::size_t>(model);
  const Twin::Elements before = twin_.elements(model);
  const std::vector<Content> order = pairing_.orderOfBags(model, twin_);
  const unsigned way = below(8);
  const bool isQuiet = oneOf(8);
  bool isCommitted = false;
  int more = 0;
  note(isQuiet ? "{ quietly in " : "{ in ", model);
  ++open_[at];
  try {
    Transaction transaction = begin(model, isQuiet);
    steps();
    if (way == 0) throw Abandonment{static_cast<int>(below(2))};
    if (way == 1) commitTooEarly(transaction, model);
    if (way < 5) {
      transaction.commit();
      isCommitted = true;
    }
  } catch (const Abandonment& abandonment) {
    more = abandonment.more;
  }
  --open_[at];
  note(isCommitted ? "} committed in " : "} left in ", model);
  if (!isCommitted) {
    twin_.putBack(model, before);
    if (pairing_.orderOfBags(model, twin_) != order) throw Mismatch("an order was not brought back");
  }
  if (isQuiet && open_[at] == 0) {  // of which nothing is heard
    if (witnesses_[at] && witnesses_[at]->wasTold()) throw Mismatch("a quiet transaction was told");
    told_[at] = twin_.elements(model);
  }
  oneOf(2) ? checkClosely() : check(true);
  if (more > 0 && depth() > 0) throw Abandonment{more - 1};
}

/// An outer transaction that ends takes the inner ones along, however much was done in them.
void Walk::nestAndEndOutOfOrder() {
  const int model = drawModel();
  const auto at = static_cast<std::size_t>(model);
  const Twin::Elements before = twin_.elements(model);
  note("{ { in ", model);
  ++open_[at];
  auto outer = std::make_unique<Transaction>(begin(model));
  try {
    steps();
    ++open_[at];
    Transaction inner = begin(model);
    try {
      steps();
    } catch (const Abandonment&) {
    }
    --open_[at];
    outer.reset();
    if (inner.isOpen()) throw Mismatch("the inner transaction is open behind the end of the outer");
  } catch (const Abandonment&) {
  }
  outer.reset();
  --open_[at];
  twin_.putBack(model, before);
  note("} out of order in ", model);
  checkClosely();
}

void Walk::commitTooEarly(Transaction& outer, int model) {
  const Transaction inner = begin(model);
  const Outcome outcome = outcomeOf([&] { outer.commit(); });
  if (outcome != Outcome::InvalidValue) throw Mismatch("an outer transaction was committed before an inner");
}

void Walk::perform(Outcome expected, const std::function<void()>& change) {
  const Outcome outcome = outcomeOf(change);
  if (outcome != expected) {
    throw Mismatch(std::string("the change came to ") + model_walk::nameOf(outcome) + " and not to " +
                   model_walk::nameOf(expected));
  }
  check(false);
  if (outcome != Outcome::Done && depth() > 0 && oneOf(6)) {
    note("is not caught");
    throw Abandonment{static_cast<int>(below(2))};
  }
}

/// Do what changes an element. One that is gone and was a proxy refuses as a proxy does.
void Walk::change(Id id, Outcome expected, const std::function<void()>& change) {
  const bool wasProxy = !twin_.contains(id) && pairing_[id].isProxy();
  perform(wasProxy && expected == Outcome::InvalidValue ? Outcome::CannotModifyProxy : expected, change);
}

/// Do what changes an element and tells whether it did.
void Walk::changeAndTell(Id id, Outcome expected, bool isChange, const std::function<bool()>& doIt) {
  change(id, expected, [&] {
    if (doIt() != isChange) throw Mismatch(isChange ? "it changed nothing" : "it changed something");
  });
}

void Walk::check(bool always) {
  const bool compares = oneOf(3) || always;
  for (std::size_t at = 0; at < 2; ++at) {
    const int model = static_cast<int>(at);
    if (compares || trace_ != nullptr) {
      if (std::string text = pairing_.difference(models_[at], model, twin_); !text.empty())
        throw Mismatch(text);
    }
    if (models_[at].impl()->hasOpenTransaction() != (open_[at] > 0))
      throw Mismatch("a transaction is left open");
    if (!witnesses_[at]) continue;
    if (open_[at] > 0) {
      if (witnesses_[at]->wasTold()) throw Mismatch("told before the commit");
      continue;
    }
    if (std::string text = witnesses_[at]->difference(pairing_, told_[at], twin_.elements(model));
        !text.empty()) {
      throw Mismatch(text);
    }
    told_[at] = twin_.elements(model);
  }
}

void Walk::checkClosely() {
  check(true);
  for (std::size_t at = 0; at < 2; ++at) {
    const std::string text = pairing_.closeDifference(models_[at], static_cast<int>(at), twin_);
    if (!text.empty()) throw Mismatch(text);
  }
}

/// End the models, by hand or with the last handle: all their elements are gone, and all that they held is
/// free; what refers to them from the other model reads them as gone.
void Walk::end() {
  checkClosely();
  for (auto& witness : witnesses_) witness.reset();
  std::size_t at = below(2);
  for (int count = 0; count < 2; ++count, at = 1 - at) {
    note("model ", at, " ends");
    if (oneOf(2)) models_[at].destroy();
    models_[at] = Model::create();
    twin_.putBack(static_cast<int>(at), {});
    checkClosely();
  }
}

}  // namespace model_walk
