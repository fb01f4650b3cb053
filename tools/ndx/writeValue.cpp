#include "tools/ndx/writeValue.h"

#include <complex>
#include <string>
#include <type_traits>

#include "platform/host/ArrayData.h"
#include "platform/host/CellArray.h"
#include "platform/host/StructArray.h"
#include "platform/host/TextArray.h"

namespace nd::tools {
namespace {

template <typename T>
void writeNumber(JsonWriter& json, T value) {
  if constexpr (std::is_floating_point_v<T>) {
    json.number(value);
  } else if constexpr (std::is_signed_v<T>) {
    json.number(std::int64_t{value});
  } else {
    json.number(std::uint64_t{value});
  }
}

template <typename Element, typename Write>
void writeElements(JsonWriter& json, const char* key, const Element* elements, std::size_t count,
                   Write write) {
  json.key(key).beginArray();
  for (std::size_t i = 0; i < count; ++i) write(elements[i]);
  json.endArray();
}

template <typename T>
void writeNumbers(JsonWriter& json, const hvArray* array) {
  const std::size_t count = hvGetNumberOfElements(array);
  if (!hvIsComplex(array)) {
    writeElements(json, "data", hvGetData<T>(array), count, [&](T value) { writeNumber(json, value); });
    return;
  }
  const std::complex<T>* const elements = hvGetData<std::complex<T>>(array);
  writeElements(json, "data", elements, count,
                [&](const std::complex<T>& value) { writeNumber(json, value.real()); });
  writeElements(json, "imaginary", elements, count,
                [&](const std::complex<T>& value) { writeNumber(json, value.imag()); });
}

// A character array reads best as texts: one for each row, page by page.
void writeRows(JsonWriter& json, const hvArray* array) {
  const std::size_t rows = hvGetM(array);
  const std::size_t columns = hvGetN(array);
  const std::size_t count = hvGetNumberOfElements(array);
  // Of an array without elements only its size tells anything; but a row of none is still a text.
  const std::size_t pages = count > 0 ? count / (rows * columns) : rows == 1 ? 1 : 0;
  const char16_t* const units = hvGetData<char16_t>(array);
  json.key("data").beginArray();
  for (std::size_t page = 0; page < pages; ++page) {
    for (std::size_t row = 0; row < rows; ++row) {
      std::u16string text;
      text.reserve(columns);
      for (std::size_t column = 0; column < columns && count > 0; ++column) {
        text += units[page * rows * columns + column * rows + row];
      }
      json.text(text);
    }
  }
  json.endArray();
}

void writeStrings(JsonWriter& json, const hvArray* array) {
  json.key("data").beginArray();
  for (std::size_t i = 0; i < hvGetNumberOfElements(array); ++i) {
    const auto& text = hvGetString(array, i);
    if (text) {
      json.text(*text);
    } else {
      json.null();
    }
  }
  json.endArray();
}

void writeCells(JsonWriter& json, const hvArray* array) {
  json.key("data").beginArray();
  for (std::size_t i = 0; i < hvGetNumberOfElements(array); ++i) writeValue(json, hvGetCell(array, i));
  json.endArray();
}

void writeStructures(JsonWriter& json, const hvArray* array) {
  const std::size_t fields = hvGetNumberOfFields(array);
  json.key("fields").beginArray();
  for (std::size_t field = 0; field < fields; ++field) json.text(hvGetFieldName(array, field));
  json.endArray();
  json.key("data").beginArray();
  for (std::size_t i = 0; i < hvGetNumberOfElements(array); ++i) {
    json.beginObject();
    for (std::size_t field = 0; field < fields; ++field) {
      json.key(hvGetFieldName(array, field));
      writeValue(json, hvGetFieldByNumber(array, i, field));
    }
    json.endObject();
  }
  json.endArray();
}

void writeData(JsonWriter& json, const hvArray* array) {
  switch (hvGetClassCode(array)) {
    case hvClassCode::Logical:
      return writeElements(json, "data", hvGetLogicals(array), hvGetNumberOfElements(array),
                           [&](bool value) { json.truth(value); });
    case hvClassCode::Character:
      return writeRows(json, array);
    case hvClassCode::String:
      return writeStrings(json, array);
    case hvClassCode::Cell:
      return writeCells(json, array);
    case hvClassCode::Structure:
      return writeStructures(json, array);
    case hvClassCode::Single:
      return writeNumbers<float>(json, array);
    case hvClassCode::Double:
      return writeNumbers<double>(json, array);
    case hvClassCode::Int8:
      return writeNumbers<std::int8_t>(json, array);
    case hvClassCode::UInt8:
      return writeNumbers<std::uint8_t>(json, array);
    case hvClassCode::Int16:
      return writeNumbers<std::int16_t>(json, array);
    case hvClassCode::UInt16:
      return writeNumbers<std::uint16_t>(json, array);
    case hvClassCode::Int32:
      return writeNumbers<std::int32_t>(json, array);
    case hvClassCode::UInt32:
      return writeNumbers<std::uint32_t>(json, array);
    case hvClassCode::Int64:
      return writeNumbers<std::int64_t>(json, array);
    case hvClassCode::UInt64:
      return writeNumbers<std::uint64_t>(json, array);
    case hvClassCode::Unknown:
    case hvClassCode::Object:
      break;
  }
  json.key("data").null();
}

}  // namespace

void writeSize(JsonWriter& json, const hvArray* array) {
  json.beginArray();
  for (const std::size_t dimension : hvGetDimensions(array)) json.number(std::uint64_t{dimension});
  json.endArray();
}

void writeValue(JsonWriter& json, const hvArray* array) {
  if (array == nullptr) return json.null();
  json.beginObject();
  json.key("class").text(hvGetClassName(array));
  json.key("size");
  writeSize(json, array);
  writeData(json, array);
  json.endObject();
}

}  // namespace nd::tools
