#include "tests/adapters/json/arrays.h"

#include <algorithm>

#include "platform/host/ArrayData.h"
#include "platform/host/CellArray.h"
#include "platform/host/StructArray.h"
#include "platform/host/TextArray.h"

namespace arrays {
namespace {

template <typename T>
hvArrayPtr numbers(const hvDims& dimensions, hvClassCode classCode, const std::vector<T>& elements) {
  hvArrayPtr array(hvCreateNumericArray(dimensions, classCode));
  const hvData<T> data = hvGetWritableData<T>(array.get());
  for (std::size_t index = 0; index < elements.size(); ++index) data[index] = elements[index];
  return array;
}

}  // namespace

hvArrayPtr doubles(const hvDims& dimensions, const std::vector<double>& elements) {
  return numbers(dimensions, hvClassCode::Double, elements);
}

hvArrayPtr int64s(const hvDims& dimensions, const std::vector<std::int64_t>& elements) {
  return numbers(dimensions, hvClassCode::Int64, elements);
}

hvArrayPtr uint64s(const hvDims& dimensions, const std::vector<std::uint64_t>& elements) {
  return numbers(dimensions, hvClassCode::UInt64, elements);
}

hvArrayPtr logicals(const hvDims& dimensions, const std::vector<bool>& elements) {
  hvArrayPtr array(hvCreateLogicalArray(dimensions));
  const hvData<bool> data = hvGetWritableData<bool>(array.get());
  for (std::size_t index = 0; index < elements.size(); ++index) data[index] = elements[index];
  return array;
}

hvArrayPtr strings(const hvDims& dimensions, const std::vector<Text>& elements) {
  hvArrayPtr array(hvCreateStringArray(dimensions));
  for (std::size_t index = 0; index < elements.size(); ++index)
    hvSetString(array.get(), index, elements[index]);
  return array;
}

hvArrayPtr row(std::u16string_view text) {
  return hvArrayPtr(hvCreateString(text));
}
hvArrayPtr scalar(double value) {
  return hvArrayPtr(hvCreateDoubleScalar(value));
}
hvArrayPtr truth(bool value) {
  return hvArrayPtr(hvCreateLogicalScalar(value));
}
hvArrayPtr nothing() {
  return hvArrayPtr(hvCreateNumericMatrix(0, 0, hvClassCode::Double));
}

hvArrayPtr cellRow(std::vector<hvArrayPtr> cells) {
  hvArrayPtr array(hvCreateCellArray({1, cells.size()}));
  for (std::size_t index = 0; index < cells.size(); ++index)
    hvSetCell(array.get(), index, std::move(cells[index]));
  return array;
}

hvArrayPtr structures(std::size_t count, const std::vector<std::string>& names,
                      std::vector<hvArrayPtr> values) {
  hvArrayPtr array(hvCreateStructArray({1, count}, names));
  auto value = values.begin();
  for (std::size_t index = 0; index < count; ++index) {
    for (const std::string& name : names) hvSetField(array.get(), index, name, std::move(*value++));
  }
  return array;
}

}  // namespace arrays
