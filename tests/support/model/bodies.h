#pragma once

#include "tests/support/model/Cube.h"
#include "tests/support/model/Square.h"

namespace probe {

struct TokenTag {};

/// What the hand-written bodies of the test model do, seen from the tests.
struct Doings {
  static inline int squaresCreated = 0;
  static inline int squaresToldOfTheirEnd = 0;
  static inline int shapesScaled = 0;
};

}  // namespace probe
