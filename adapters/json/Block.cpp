#include "adapters/json/Block.h"

#include <algorithm>
#include <bit>
#include <span>
#include <utility>

#include "adapters/json/ColumnOrder.h"
#include "platform/host/ArrayData.h"
#include "platform/host/CellArray.h"
#include "platform/host/StructArray.h"
#include "platform/host/TextArray.h"

namespace nd::adapters::json {
namespace {

hvDims dimensionsOf(const BlockShape& shape) {
  if (shape.empty()) return {1, 1};
  if (shape.size() == 1) return {1, shape.front()};
  return {shape.begin(), shape.end()};
}

/// A block of integers may be a part of a larger one: it is held as it would be alone.
BlockKind integerKind(std::span<const std::uint64_t> integers, BlockKind kind) {
  const auto isDouble = [kind](std::uint64_t bits) {
    return kind == BlockKind::Int64 ? isExactAsDouble(std::bit_cast<std::int64_t>(bits))
                                    : isExactAsDouble(bits);
  };
  if (std::all_of(integers.begin(), integers.end(), isDouble)) return BlockKind::Double;
  const auto isInt64 = [](std::uint64_t bits) { return std::bit_cast<std::int64_t>(bits) >= 0; };
  if (kind == BlockKind::UInt64 && std::all_of(integers.begin(), integers.end(), isInt64))
    return BlockKind::Int64;
  return kind;
}

double toDouble(std::uint64_t bits, BlockKind kind) {
  return kind == BlockKind::Int64 ? static_cast<double>(std::bit_cast<std::int64_t>(bits))
                                  : static_cast<double>(bits);
}

hvArrayPtr makeZeros(const BlockShape& shape, hvClassCode classCode) {
  // Scalars and rows are what a file has most of.
  if (shape.size() < 2) return hvArrayPtr(hvCreateNumericMatrix(1, countElements(shape), classCode));
  return hvArrayPtr(hvCreateNumericArray(dimensionsOf(shape), classCode));
}

template <typename Element, typename Convert>
hvArrayPtr makeNumbers(const BlockShape& shape, hvClassCode classCode, std::span<const std::uint64_t> numbers,
                       const Convert& convert) {
  hvArrayPtr array = makeZeros(shape, classCode);
  if (numbers.empty()) return array;
  Element* const to = hvGetWritableData<Element>(array.get()).data();
  forEachInColumnOrder(shape, [&](std::size_t into, std::size_t from) { to[into] = convert(numbers[from]); });
  return array;
}

hvArrayPtr makeNumericArray(const BlockStacks& stacks, const Block& block) {
  const std::span numbers(stacks.numbers.data() + block.begin, countElements(block.shape));
  if (block.kind == BlockKind::Double) {
    return makeNumbers<double>(block.shape, hvClassCode::Double, numbers,
                               [](std::uint64_t bits) { return std::bit_cast<double>(bits); });
  }
  switch (integerKind(numbers, block.kind)) {
    case BlockKind::Int64:
      return makeNumbers<std::int64_t>(block.shape, hvClassCode::Int64, numbers,
                                       [](std::uint64_t bits) { return std::bit_cast<std::int64_t>(bits); });
    case BlockKind::UInt64:
      return makeNumbers<std::uint64_t>(block.shape, hvClassCode::UInt64, numbers,
                                        [](std::uint64_t bits) { return bits; });
    default:
      return makeNumbers<double>(block.shape, hvClassCode::Double, numbers,
                                 [&](std::uint64_t bits) { return toDouble(bits, block.kind); });
  }
}

hvArrayPtr makeLogicalArray(const BlockStacks& stacks, const Block& block) {
  hvArrayPtr array(hvCreateLogicalArray(dimensionsOf(block.shape)));
  bool* const to = hvGetWritableData<bool>(array.get()).data();
  forEachInColumnOrder(
      block.shape, [&](std::size_t into, std::size_t from) { to[into] = stacks.truths[block.begin + from]; });
  return array;
}

hvArrayPtr makeNulls(const BlockShape& shape) {
  if (shape.empty()) return hvArrayPtr(hvCreateNumericMatrix(0, 0, hvClassCode::Double));
  const BlockShape elementShape(shape.begin() + 1, shape.end());
  hvArrayPtr array(hvCreateCellArray({1, shape.front()}));
  for (std::size_t index = 0; index < shape.front(); ++index)
    hvSetCell(array.get(), index, makeNulls(elementShape));
  return array;
}

hvArrayPtr makeTextArray(BlockStacks& stacks, const Block& block) {
  const std::span texts(stacks.texts.data() + block.begin, countElements(block.shape));
  if (std::none_of(texts.begin(), texts.end(), [](const auto& text) { return text.has_value(); })) {
    return makeNulls(block.shape);
  }
  if (block.shape.empty()) return hvArrayPtr(hvCreateString(*texts.front()));
  hvArrayPtr array(hvCreateStringArray(dimensionsOf(block.shape)));
  forEachInColumnOrder(block.shape, [&](std::size_t into, std::size_t from) {
    hvSetString(array.get(), into, std::move(texts[from]));
  });
  return array;
}

hvArrayPtr makeStructure(BlockStacks& stacks, const Block& block) {
  hvArrayPtr array(hvCreateStructArray(dimensionsOf(block.shape), *block.names));
  auto value = stacks.arrays.begin() + static_cast<std::ptrdiff_t>(block.begin);
  for (std::size_t index = 0; index < countElements(block.shape); ++index) {
    for (const std::string& name : *block.names) hvSetField(array.get(), index, name, std::move(*value++));
  }
  return array;
}

}  // namespace

BlockKind kindOf(NumberClass numberClass) noexcept {
  if (numberClass == NumberClass::Int64) return BlockKind::Int64;
  return numberClass == NumberClass::UInt64 ? BlockKind::UInt64 : BlockKind::Double;
}

std::size_t countElements(const BlockShape& shape) noexcept {
  std::size_t count = 1;
  for (const std::size_t size : shape) count *= size;
  return count;
}

void BlockStacks::drop(const Block& block) noexcept {
  switch (block.kind) {
    case BlockKind::Empty:
      break;
    case BlockKind::Double:
    case BlockKind::Int64:
    case BlockKind::UInt64:
      numbers.resize(block.begin);
      break;
    case BlockKind::Logical:
      truths.resize(block.begin);
      break;
    case BlockKind::Text:
      texts.resize(block.begin);
      break;
    case BlockKind::Struct:
    case BlockKind::Array:
      arrays.resize(block.begin);
      break;
  }
}

hvArrayPtr makeArray(BlockStacks& stacks, const Block& block) {
  switch (block.kind) {
    case BlockKind::Empty:
      return makeZeros(block.shape, hvClassCode::Double);
    case BlockKind::Logical:
      return makeLogicalArray(stacks, block);
    case BlockKind::Text:
      return makeTextArray(stacks, block);
    case BlockKind::Struct:
      return makeStructure(stacks, block);
    case BlockKind::Array:
      return std::move(stacks.arrays[block.begin]);
    case BlockKind::Double:
    case BlockKind::Int64:
    case BlockKind::UInt64:
      break;
  }
  return makeNumericArray(stacks, block);
}

hvArrayPtr takeArray(BlockStacks& stacks, const Block& block) {
  hvArrayPtr array = makeArray(stacks, block);
  stacks.drop(block);
  return array;
}

}  // namespace nd::adapters::json
