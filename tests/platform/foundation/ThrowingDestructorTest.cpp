#include <cstdlib>
#include <memory>
#include <stdexcept>

#include <gtest/gtest.h>

#include "tests/platform/foundation/Probing.h"
#include "tests/support/model/Values.h"

using namespace probing;
using probe::Values;

namespace {

/// Whether what is let go from now on throws.
bool throws = false;

/// Throws from its destructor when it is told to.
struct Throwing {
  Throwing() = default;
  Throwing(const Throwing&) = default;
  Throwing& operator=(const Throwing&) = default;
  ~Throwing() noexcept(false) {  // NOLINT(bugprone-exception-escape): this is what is tested
    if (throws) throw std::length_error("thrown by a destructor");
  }
  friend bool operator==(const Throwing&, const Throwing&) { return true; }
};

std::shared_ptr<int> throwingTicket() {
  return {new int(1), [](const int* number) {
            delete number;
            if (throws) throw std::length_error("thrown by a deleter");
          }};
}

/// Run a step, and end the program well behind it, also if it lets an exception pass.
template <class Step>
void endWellBehind(Step step) {
  try {
    step();
  } catch (...) {
    std::_Exit(0);
  }
  std::_Exit(0);
}

void abandonAChange() {
  const Model model = Model::create();
  const Values values = Values::create(model);
  endWellBehind([&] {
    const Transaction abandoned = begin(model);
    values.setTicket(throwingTicket());
    throws = true;
  });
}

void abandonACreation() {
  const Model model = Model::create();
  endWellBehind([&] {
    const Transaction abandoned = begin(model);
    Values::create(model).setTicket(throwingTicket());
    throws = true;
  });
}

void abandonALabel() {
  const Model model = Model::create();
  endWellBehind([&] {
    const Transaction abandoned = begin(model);
    begin(model).commit(Value(Throwing()));
    throws = true;
  });
}

TEST(AbandonedTransactionDeathTest, EndsTheProgramWhenTheValueThatItTakesBackThrows) {
  EXPECT_DEATH(abandonAChange(), "thrown by a deleter");
}

TEST(AbandonedTransactionDeathTest, EndsTheProgramWhenAValueOfTheElementThatItTakesBackThrows) {
  EXPECT_DEATH(abandonACreation(), "thrown by a deleter");
}

TEST(AbandonedTransactionDeathTest, EndsTheProgramWhenTheLabelThatItWasGivenThrows) {
  EXPECT_DEATH(abandonALabel(), "thrown by a destructor");
}

}  // namespace
