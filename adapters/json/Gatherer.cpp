#include "adapters/json/Gatherer.h"

#include <algorithm>
#include <bit>
#include <iterator>
#include <span>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "adapters/json/ExactNumber.h"
#include "platform/host/CellArray.h"
#include "platform/text/Hash.h"

namespace nd::adapters::json {
namespace {

/// Numbers of a block, with the excerpt of the text that they stand in.
struct Numbers {
  std::span<std::uint64_t> bits;
  BlockKind kind;
  std::string_view excerpt;

  bool canBe(BlockKind target) const {
    if (kind == target) return true;
    if (kind == BlockKind::UInt64) return false;
    if (kind == BlockKind::Int64) {
      return std::all_of(bits.begin(), bits.end(),
                         [](auto number) { return std::bit_cast<std::int64_t>(number) >= 0; });
    }
    const auto fits = target == BlockKind::Int64 ? fitsInt64 : fitsUInt64;
    return holdsOnlyIntegers(excerpt) && std::all_of(bits.begin(), bits.end(), [fits](auto number) {
             return fits(std::bit_cast<double>(number));
           });
  }

  void become(BlockKind target) const {
    if (kind != BlockKind::Double || target == BlockKind::Double) return;
    for (std::uint64_t& number : bits) {
      const auto value = std::bit_cast<double>(number);
      number = target == BlockKind::Int64 ? static_cast<std::uint64_t>(static_cast<std::int64_t>(value))
                                          : static_cast<std::uint64_t>(value);
    }
  }
};

/// Tell for each name where it stands in other names; none if the two lists don't hold the same.
boost::optional<std::vector<std::size_t>> positionsIn(const MemberNameList& others,
                                                      const MemberNameList& names) {
  if (others.size() != names.size()) return boost::none;
  std::unordered_map<std::string_view, std::size_t, lx::text::Hash> index;
  for (std::size_t position = 0; position < others.size(); ++position)
    index.emplace(others[position], position);
  std::vector<std::size_t> positions;
  for (const std::string& name : names) {
    const auto found = index.find(name);
    if (found == index.end()) return boost::none;
    positions.push_back(found->second);
  }
  return positions;
}

/// Put the values of an object into another order of their names.
void reorder(std::vector<hvArrayPtr>::iterator values, const std::vector<std::size_t>& positions) {
  std::vector<hvArrayPtr> ordered;
  ordered.reserve(positions.size());
  for (const std::size_t position : positions)
    ordered.push_back(std::move(values[static_cast<std::ptrdiff_t>(position)]));
  std::move(ordered.begin(), ordered.end(), values);
}

}  // namespace

void Gatherer::add(Block&& block, std::size_t offset) {
  if (count_ == 0) {
    element_ = std::move(block);
  } else if (element_.kind == BlockKind::Array || !unite(block, offset)) {
    noteClash(block);
    hvArrayPtr cell = takeArray(stacks_, block);
    turnToCells();
    stacks_.arrays.push_back(std::move(cell));
  }
  ++count_;
}

bool Gatherer::unite(Block& block, std::size_t offset) {
  if (element_.shape != block.shape) return false;
  if (isNumeric(element_.kind) && isNumeric(block.kind)) return uniteNumbers(block, offset);
  if (element_.kind != block.kind) return false;
  return block.kind != BlockKind::Struct || uniteObjects(block);
}

bool Gatherer::uniteNumbers(Block& block, std::size_t offset) {
  if (element_.kind == block.kind) return true;
  const std::span all(stacks_.numbers.begin() + static_cast<std::ptrdiff_t>(element_.begin),
                      stacks_.numbers.end());
  const std::size_t before = block.begin - element_.begin;
  const Numbers mine{all.first(before), element_.kind, text_.substr(0, offset)};
  const Numbers its{all.subspan(before), block.kind, block.excerpt};
  for (const BlockKind target : {BlockKind::Int64, BlockKind::UInt64}) {
    if (!mine.canBe(target) || !its.canBe(target)) continue;
    mine.become(target);
    its.become(target);
    element_.kind = target;
    return true;
  }
  return false;
}

bool Gatherer::uniteObjects(const Block& block) {
  if (!block.shape.empty()) return false;
  if (element_.names == block.names) return true;
  const auto positions = positionsIn(*block.names, *element_.names);
  if (!positions) return false;
  if (std::is_sorted(positions->begin(), positions->end())) return true;
  const bool isKnown = !reordered_.empty() && *reordered_.back().names == *block.names;
  reordered_.push_back({count_, isKnown ? reordered_.back().names : block.names});
  reorder(stacks_.arrays.begin() + static_cast<std::ptrdiff_t>(block.begin), *positions);
  return true;
}

void Gatherer::noteClash(const Block& block) {
  const BlockShape& shape = element_.kind == BlockKind::Array ? clashShape_ : element_.shape;
  const bool isLike = isNumeric(block.kind) && block.shape == shape;
  if (element_.kind == BlockKind::Array) {
    if (!isLike) clash_ = false;
  } else if (isLike && isNumeric(element_.kind)) {
    clashShape_ = element_.shape;
    clash_ = true;
  }
}

void Gatherer::turnToCells() {
  if (element_.kind == BlockKind::Array) return;
  std::vector<hvArrayPtr> cells;
  cells.reserve(count_);
  const std::size_t valuesPerElement = element_.kind == BlockKind::Struct ? element_.names->size() : 1;
  Block element = element_;
  auto reordered = reordered_.cbegin();
  for (std::size_t index = 0; index < count_; ++index) {
    // Alone it has the order that it is written in.
    const bool isReordered = reordered != reordered_.cend() && reordered->element == index;
    element.names = isReordered ? (reordered++)->names : element_.names;
    if (isReordered) {
      reorder(stacks_.arrays.begin() + static_cast<std::ptrdiff_t>(element.begin),
              *positionsIn(*element_.names, *element.names));
    }
    cells.push_back(makeArray(stacks_, element));
    element.begin += countElements(element.shape) * valuesPerElement;
  }
  stacks_.drop(element_);
  element_ = {BlockKind::Array, {}, stacks_.arrays.size(), {}, nullptr};
  std::move(cells.begin(), cells.end(), std::back_inserter(stacks_.arrays));
}

Block Gatherer::finish() {
  if (count_ == 0) return {BlockKind::Empty, {0}, 0, {}, nullptr};
  const bool isNestedStructure = element_.kind == BlockKind::Struct && !element_.shape.empty();
  if (isNestedStructure) turnToCells();
  if (element_.kind == BlockKind::Array) return finishCells();
  element_.shape.insert(element_.shape.begin(), count_);
  return std::move(element_);
}

Block Gatherer::finishCells() {
  hvArrayPtr array(hvCreateCellArray({1, count_}));
  for (std::size_t index = 0; index < count_; ++index) {
    hvSetCell(array.get(), index, std::move(stacks_.arrays[element_.begin + index]));
  }
  stacks_.drop(element_);
  stacks_.arrays.push_back(std::move(array));
  return std::move(element_);
}

}  // namespace nd::adapters::json
