#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "adapters/json/Block.h"

namespace nd::adapters::json {

/// Puts the elements of one array of JSON together: to one block for as long as they are alike, to cells from
/// the first one on that is not.
///
///     Gatherer gatherer(stacks, "[1, 2]");
///     for (each element) gatherer.add(readValue(element), offset of the element);
///     Block block = gatherer.finish();
///
/// Elements are alike if they are
/// - numbers that one class holds without loss (the same for the numbers within arrays of one shape),
/// - truth values, or arrays of them of one shape,
/// - strings and nulls, or arrays of them of one shape,
/// - objects with the same names, in whatever order,
/// - arrays without any element, of one shape.
class Gatherer {
 public:
  /// Begin an array. The text begins with the array and goes on as far as it likes.
  Gatherer(BlockStacks& stacks, std::string_view text) noexcept : stacks_(stacks), text_(text) {}

  /// Tell whether a double may be added by `addDouble`.
  bool takesDoubles() const noexcept {
    return count_ == 0 || (element_.kind == BlockKind::Double && element_.shape.empty());
  }

  /// Add a double of no more than `firstInexactInteger`.
  void addDouble(double value) {
    if (count_ == 0) element_ = {BlockKind::Double, {}, stacks_.numbers.size(), {}, nullptr};
    stacks_.numbers.push_back(std::bit_cast<std::uint64_t>(value));
    ++count_;
  }

  /// The names that the next object has if it is like the ones before; null if there are none.
  const std::shared_ptr<const MemberNameList>& expectedNames() const noexcept { return element_.names; }

  /// Add the block on top of the stacks, which begins at an offset of the text.
  void add(Block&& block, std::size_t offset);

  /// Tell whether all elements so far are numbers, or arrays of numbers of one shape, which no class holds
  /// together; `clashingNumber` finds the first one at fault.
  bool clash() const noexcept { return clash_; }

  /// Give the block of the whole array.
  Block finish();

 private:
  bool unite(Block& block, std::size_t offset);
  bool uniteNumbers(Block& block, std::size_t offset);
  bool uniteObjects(const Block& block);
  void noteClash(const Block& block);
  void turnToCells();
  Block finishCells();

  BlockStacks& stacks_;
  std::string_view text_;
  /// What each element is like; its beginning is that of the first one. Elements that differ are arrays.
  Block element_;
  std::size_t count_ = 0;
  bool clash_ = false;
  /// Objects whose names had another order than those of the first one: their number, and their own order.
  struct Reordered {
    std::size_t element = 0;
    std::shared_ptr<const MemberNameList> names;
  };
  std::vector<Reordered> reordered_;
  /// What shape all elements of a clash have.
  BlockShape clashShape_;
};

}  // namespace nd::adapters::json
