// What is made of a tagged value once all of it has been read: the members of TaggedValue that make arrays.
#include <algorithm>
#include <bit>
#include <complex>
#include <type_traits>
#include <utility>

#include "adapters/json/TaggedValue.h"
#include "platform/host/ArrayData.h"
#include "platform/host/CellArray.h"
#include "platform/host/StructArray.h"
#include "platform/host/TextArray.h"

namespace nd::adapters::json {
namespace {

template <typename T>
T fromBits(std::uint64_t bits) {
  if constexpr (std::is_same_v<T, double>) {
    return std::bit_cast<double>(bits);
  } else if constexpr (std::is_same_v<T, float>) {
    return std::bit_cast<float>(static_cast<std::uint32_t>(bits));
  } else if constexpr (std::is_same_v<T, std::uint64_t>) {
    return bits;
  } else {
    return static_cast<T>(bits);
  }
}

}  // namespace

hvArrayPtr TaggedValue::make() {
  switch (classCode_) {
    case hvClassCode::Logical:
      return makeLogical();
    case hvClassCode::Character:
      return makeCharacters();
    case hvClassCode::String:
      return makeTexts();
    case hvClassCode::Cell:
      return makeCells();
    case hvClassCode::Structure:
      return makeStructures();
    default:
      return makeNumeric();
  }
}

hvArrayPtr TaggedValue::makeNumeric() const {
  switch (classCode_) {
    case hvClassCode::Single:
      return makeNumbers<float>();
    case hvClassCode::Int8:
      return makeNumbers<std::int8_t>();
    case hvClassCode::UInt8:
      return makeNumbers<std::uint8_t>();
    case hvClassCode::Int16:
      return makeNumbers<std::int16_t>();
    case hvClassCode::UInt16:
      return makeNumbers<std::uint16_t>();
    case hvClassCode::Int32:
      return makeNumbers<std::int32_t>();
    case hvClassCode::UInt32:
      return makeNumbers<std::uint32_t>();
    case hvClassCode::Int64:
      return makeNumbers<std::int64_t>();
    case hvClassCode::UInt64:
      return makeNumbers<std::uint64_t>();
    default:
      return makeNumbers<double>();
  }
}

template <typename T>
hvArrayPtr TaggedValue::makeNumbers() const {
  const bool isComplex = imaginaryOffset_.has_value();
  hvArrayPtr array(
      hvCreateNumericArray(*size_, classCode_, isComplex ? hvComplexity::Complex : hvComplexity::Real));
  if (numbers_.empty()) return array;
  if (isComplex) {
    std::complex<T>* const to = hvGetWritableData<std::complex<T>>(array.get()).data();
    for (std::size_t index = 0; index < numbers_.size(); ++index)
      to[index] = {fromBits<T>(numbers_[index]), fromBits<T>(imaginary_[index])};
  } else {
    std::transform(numbers_.begin(), numbers_.end(), hvGetWritableData<T>(array.get()).data(), fromBits<T>);
  }
  return array;
}

hvArrayPtr TaggedValue::makeLogical() const {
  hvArrayPtr array(hvCreateLogicalArray(*size_));
  if (numbers_.empty()) return array;
  std::transform(numbers_.begin(), numbers_.end(), hvGetWritableData<bool>(array.get()).data(),
                 [](std::uint64_t truth) { return truth != 0; });
  return array;
}

hvArrayPtr TaggedValue::makeCharacters() const {
  hvArrayPtr array(hvCreateCharArray(*size_));
  if (characters_.empty()) return array;
  std::copy(characters_.begin(), characters_.end(), hvGetWritableData<char16_t>(array.get()).data());
  return array;
}

hvArrayPtr TaggedValue::makeTexts() {
  hvArrayPtr array(hvCreateStringArray(*size_));
  for (std::size_t index = 0; index < texts_.size(); ++index)
    hvSetString(array.get(), index, std::move(texts_[index]));
  return array;
}

hvArrayPtr TaggedValue::makeCells() {
  hvArrayPtr array(hvCreateCellArray(*size_));
  for (std::size_t index = 0; index < values_.size(); ++index)
    hvSetCell(array.get(), index, std::move(values_[index]));
  return array;
}

hvArrayPtr TaggedValue::makeStructures() {
  hvArrayPtr array(hvCreateStructArray(*size_, *fields_));
  auto value = values_.begin();
  for (std::size_t index = 0; index < count_; ++index) {
    for (const std::string& field : *fields_) hvSetField(array.get(), index, field, std::move(*value++));
  }
  return array;
}

}  // namespace nd::adapters::json
