#include <memory>
#include <stdexcept>

#include <gtest/gtest.h>

#include "tests/platform/foundation/Probing.h"
#include "tests/platform/foundation/Throwing.h"
#include "tests/support/model/Values.h"

using namespace probing;
using probe::Values;

namespace {

std::shared_ptr<int> throwingTicket() {
  return {new int(1), [](const int* number) {
            delete number;
            if (Throwing::throws) throw std::length_error("thrown by a deleter");
          }};
}

void abandonAChange() {
  const Model model = Model::create();
  const Values values = Values::create(model);
  endWellBehind([&] {
    const Transaction abandoned = begin(model);
    values.setTicket(throwingTicket());
    Throwing::throws = true;
  });
}

void abandonACreation() {
  const Model model = Model::create();
  endWellBehind([&] {
    const Transaction abandoned = begin(model);
    Values::create(model).setTicket(throwingTicket());
    Throwing::throws = true;
  });
}

void abandonALabel() {
  const Model model = Model::create();
  endWellBehind([&] {
    const Transaction abandoned = begin(model);
    begin(model).commit(Value(Throwing()));
    Throwing::throws = true;
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
