#include "tools/ndx/byteSize.h"

#include "platform/host/CellArray.h"
#include "platform/host/StructArray.h"
#include "platform/host/TextArray.h"

namespace nd::tools {
namespace {

std::size_t bytesOfStrings(const hvArray* array) {
  std::size_t units = 0;
  for (std::size_t i = 0; i < hvGetNumberOfElements(array); ++i) {
    const auto& text = hvGetString(array, i);
    if (text) units += text->size();
  }
  return units * sizeof(char16_t);
}

std::size_t bytesOfCells(const hvArray* array) {
  std::size_t bytes = 0;
  for (std::size_t i = 0; i < hvGetNumberOfElements(array); ++i) bytes += byteSize(hvGetCell(array, i));
  return bytes;
}

std::size_t bytesOfStructures(const hvArray* array) {
  std::size_t bytes = 0;
  for (std::size_t i = 0; i < hvGetNumberOfElements(array); ++i) {
    for (std::size_t field = 0; field < hvGetNumberOfFields(array); ++field) {
      bytes += byteSize(hvGetFieldByNumber(array, i, field));
    }
  }
  return bytes;
}

std::size_t bytesOfElement(hvClassCode code) {
  switch (code) {
    case hvClassCode::Double:
    case hvClassCode::Int64:
    case hvClassCode::UInt64:
      return 8;
    case hvClassCode::Single:
    case hvClassCode::Int32:
    case hvClassCode::UInt32:
      return 4;
    case hvClassCode::Character:
    case hvClassCode::Int16:
    case hvClassCode::UInt16:
      return 2;
    case hvClassCode::Logical:
    case hvClassCode::Int8:
    case hvClassCode::UInt8:
      return 1;
    default:
      return 0;
  }
}

}  // namespace

std::size_t byteSize(const hvArray* array) {
  if (hvIsString(array)) return bytesOfStrings(array);
  if (hvIsCell(array)) return bytesOfCells(array);
  if (hvIsStruct(array)) return bytesOfStructures(array);
  const std::size_t parts = hvIsComplex(array) ? 2 : 1;
  return hvGetNumberOfElements(array) * bytesOfElement(hvGetClassCode(array)) * parts;
}

}  // namespace nd::tools
