#pragma once

#include "tests/nd_data_adapter/model/generator/small/Article.h"
#include "tests/nd_data_adapter/model/generator/small/Book.h"
#include "tests/nd_data_adapter/model/generator/small/Nothing.h"
#include "tests/nd_data_adapter/model/generator/small/Shelf.h"

namespace shop {

class Till {};

/// What the hand-written bodies of the small model's classes do, seen from the tests.
struct Doings {
  static inline int booksCreated = 0;
  static inline bool refusesBooks = false;
  static inline int shelvesToldOfTheirEnd = 0;
  static inline Till till;
};

}  // namespace shop
