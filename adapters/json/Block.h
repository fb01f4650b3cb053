#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <boost/container/small_vector.hpp>
#include <boost/optional.hpp>

#include "adapters/json/ExactNumber.h"
#include "platform/host/Array.h"

namespace nd::adapters::json {

/// What a block is made of.
enum class BlockKind {
  Empty,    ///< arrays without any element
  Double,   ///< numbers, each exact as a double
  Int64,    ///< integers, not all of them exact as doubles
  UInt64,   ///< the same beyond the range of int64
  Logical,  ///< true and false
  Text,     ///< strings and nulls
  Struct,   ///< objects with the same names, one behind the other
  Array     ///< one finished array
};

constexpr bool isNumeric(BlockKind kind) noexcept {
  return kind == BlockKind::Double || kind == BlockKind::Int64 || kind == BlockKind::UInt64;
}

/// Sizes by level of nesting, the outermost first; none for a single value.
using BlockShape = boost::container::small_vector<std::size_t, 4>;

using MemberNameList = std::vector<std::string>;

/// A value that has been read but is not yet an array of the host: what kind it is, how it nests, and where
/// its elements begin on the stack of its kind. Elements lie there in the order of the text.
///
/// As long as the elements of an array of JSON go on alike, their blocks lie one behind the other and grow
/// together to one block with one level more; so nothing is read twice, and nothing is made that is thrown
/// away again.
// A shape that is moved hands over what it holds; it allocates nothing, although that isn't to be seen.
// NOLINTNEXTLINE(bugprone-exception-escape)
struct Block {
  BlockKind kind = BlockKind::Empty;
  BlockShape shape;
  std::size_t begin = 0;
  /// The excerpt of the text, for numbers only. It may reach up to the next token.
  std::string_view excerpt;
  /// The names of the objects' members.
  std::shared_ptr<const MemberNameList> names;
};

/// Tell what a number is part of.
BlockKind kindOf(NumberClass numberClass) noexcept;

/// Tell the number of elements.
std::size_t countElements(const BlockShape& shape) noexcept;

/// The elements of all blocks that are in work, a stack for each kind.
struct BlockStacks {
  /// Doubles and integers bit by bit.
  std::vector<std::uint64_t> numbers;
  std::vector<bool> truths;
  /// Strings, none for null.
  std::vector<boost::optional<std::u16string>> texts;
  /// Finished arrays, and the values of objects' members: object by object, in the order of the names.
  std::vector<hvArrayPtr> arrays;

  /// Drop a block's elements and all above them.
  void drop(const Block& block) noexcept;
};

/// Make an array of a block; its elements stay where they are, but texts and arrays are moved from.
///
/// A single value becomes a scalar, a character row, a 0-by-0 double or a structure; one level gives a row,
/// more levels give as many dimensions, stored column by column. Nulls without a string give cells.
hvArrayPtr makeArray(BlockStacks& stacks, const Block& block);

/// Make an array of the block on top of the stacks, and drop its elements.
hvArrayPtr takeArray(BlockStacks& stacks, const Block& block);

}  // namespace nd::adapters::json
