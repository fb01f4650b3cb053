#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "platform/host/ArrayData.h"
#include "platform/host/ArrayText.h"
#include "platform/host/CellArray.h"
#include "platform/host/StructArray.h"
#include "platform/host/TextArray.h"
#include "platform/host/internal/ArrayHandle.h"
#include "platform/host/internal/DisplayText.h"
#include "platform/host/internal/ElementText.h"
#include "platform/host/internal/PreviewLine.h"

namespace hvdetail {
namespace {

// Marks that take no column could go on for ever; so many of them to a column are more than any writing uses.
constexpr std::size_t bytesPerColumn = 64;

}  // namespace

std::string PreviewLine::finish() const {
  return isFull() ? cutWithEllipsis(text_, width_) : text_;
}

void PreviewLine::add(std::string_view ascii) {
  text_ += ascii;
  columns_ += ascii.size();
}

void PreviewLine::addCodePoint(char32_t codePoint, bool withinQuotes) {
  columns_ += appendSafely(text_, codePoint, withinQuotes);
  if (width_ != unlimited && text_.size() / bytesPerColumn > width_) isCut_ = true;
}

void PreviewLine::addQuoted(std::u16string_view text) {
  add("\"");
  for (std::size_t position = 0; position < text.size() && !isFull();) {
    addCodePoint(nextCodePoint(text, position), true);
  }
  add("\"");
}

void PreviewLine::addName(std::string_view name) {
  if (name.empty()) add("\"\"");
  for (std::size_t position = 0; position < name.size() && !isFull();) {
    addCodePoint(nextCodePoint(name, position), false);
  }
}

void PreviewLine::addElement(const hvArray& array, std::size_t index) {
  if (hvIsString(&array)) {
    const auto& text = hvGetString(&array, index);
    if (text) return addQuoted(*text);
  }
  const TextExtent extent = ElementText(array).append(text_, index);
  columns_ += extent.left + extent.right;
}

void PreviewLine::addEmpty(const hvArray* array) {
  const bool isFlat = hvGetM(array) <= 1 && hvGetN(array) == 0 && hvGetDimensions(array).size() == 2;
  if (!isFlat) return add(hvDescribe(array));
  if (hvIsChar(array)) return add("\"\"");
  add(hvIsCell(array) ? "{}" : "[]");
}

void PreviewLine::addFields(const hvArray& structure) {
  add("(");
  for (std::size_t field = 0; field < hvGetNumberOfFields(&structure) && !isFull(); ++field) {
    if (field > 0) add(", ");
    addName(hvGetFieldName(&structure, field));
    add(": ");
    addValue(hvGetFieldByNumber(&structure, 0, field));
  }
  add(")");
}

void PreviewLine::addCharacterRow(const hvArray& array, std::size_t row) {
  const char16_t* const units = hvGetData<char16_t>(&array);
  const std::size_t rows = hvGetM(&array);
  if (rows == 1) return addQuoted({units, hvGetN(&array)});
  std::u16string text;
  // One unit a column at least: more than the width can't be shown, whatever follows.
  for (std::size_t column = 0; column < hvGetN(&array); ++column) {
    text += units[row + column * rows];
    if (width_ != unlimited && text.size() / bytesPerColumn > width_) break;
  }
  addQuoted(text);
}

void PreviewLine::addMatrixItem(const hvArray& array, std::size_t row, std::size_t column) {
  const std::size_t index = row + column * hvGetM(&array);
  if (hvIsCell(&array)) return addValue(hvGetCell(&array, index));
  addElement(array, index);
}

void PreviewLine::addMatrix(const hvArray& array) {
  const bool isCharacter = hvIsChar(&array);
  const bool isCell = hvIsCell(&array);
  const bool isBare = !isCell && (isCharacter ? hvGetM(&array) == 1 : hvIsScalar(&array));
  if (!isBare) add(isCell ? "{" : "[");
  for (std::size_t row = 0; row < hvGetM(&array) && !isFull(); ++row) {
    if (row > 0) add("; ");
    if (isCharacter) {
      addCharacterRow(array, row);
      continue;
    }
    for (std::size_t column = 0; column < hvGetN(&array) && !isFull(); ++column) {
      if (column > 0) add(isCell ? ", " : " ");
      addMatrixItem(array, row, column);
    }
  }
  if (!isBare) add(isCell ? "}" : "]");
}

void PreviewLine::addValue(const hvArray* array) {
  if (hvIsEmpty(array)) return addEmpty(array);
  const bool isMatrix = array->body().shape().isMatrix();
  if (hvIsStruct(array) && hvIsScalar(array)) return addFields(*array);
  const bool hasItems = hvIsChar(array) || hvIsCell(array) || hasElementText(array);
  if (isMatrix && hasItems) return addMatrix(*array);
  add(hvDescribe(array));
}

}  // namespace hvdetail

std::string hvDescribe(const hvArray* array) {
  std::string text;
  for (const std::size_t dimension : hvGetDimensions(array)) {
    if (!text.empty()) text += 'x';
    text += std::to_string(dimension);
  }
  text += hvIsComplex(array) ? " complex " : " ";
  text += array == nullptr ? "double" : hvEscape(hvGetClassName(array));
  return text;
}

std::string hvPreview(const hvArray* array, std::size_t width) {
  hvdetail::PreviewLine line(width);
  line.addValue(array);
  return line.finish();
}
