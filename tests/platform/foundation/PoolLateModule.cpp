// A library that uses the platform, for a program that doesn't.

#include <vector>

#include "platform/foundation/ModelImpl.h"
#include "tests/support/model/Thing.h"

using lx::base::Model;
using probe::Thing;

/// Make so many elements, destroy them, and give the number of those that were as they should be.
extern "C" __attribute__((visibility("default"))) int useElements(int count) {
  const Model model = Model::create();
  std::vector<Thing> things;
  for (int number = 0; number < count; ++number) {
    things.push_back(Thing::create(model));
    things.back().setNumber(number);
  }
  int good = 0;
  for (int number = 0; number < count; ++number) {
    const Thing& thing = things[static_cast<std::size_t>(number)];
    const bool wasGood = thing.number() == number;
    thing.destroy();
    if (wasGood && !thing.isAlive()) ++good;
  }
  return good;
}
