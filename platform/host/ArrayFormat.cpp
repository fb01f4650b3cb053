#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <boost/optional.hpp>

#include "platform/host/ArrayData.h"
#include "platform/host/ArrayText.h"
#include "platform/host/CellArray.h"
#include "platform/host/StructArray.h"
#include "platform/host/internal/ArrayHandle.h"
#include "platform/host/internal/DisplayText.h"
#include "platform/host/internal/ElementText.h"
#include "platform/host/internal/PreviewLine.h"

namespace hvdetail {
namespace {

constexpr std::size_t indentStep = 2;
constexpr std::size_t columnGap = 2;
constexpr std::size_t narrowestTable = 20;

/// Writes a value line by line.
class ArrayFormatter {
 public:
  explicit ArrayFormatter(std::size_t width) : width_(width) {}

  void addValue(const hvArray* array, const std::string& label, std::size_t indent);
  std::string take() { return std::move(text_); }

 private:
  void addIndent(std::size_t indent) { text_.append(indent, ' '); }
  void addLine(std::size_t indent, std::string_view line);
  boost::optional<std::string> onTheLine(const hvArray* array, std::size_t column) const;

  void addStructures(const hvArray& array, std::size_t indent);
  void addFields(const hvArray& array, std::size_t index, std::size_t indent);
  void addCells(const hvArray& array, std::size_t indent);
  void addPages(const hvArray& array, std::size_t indent);
  void addCharacterPage(const hvArray& array, std::size_t first, std::size_t indent);
  void addTablePage(const hvArray& array, std::size_t first, std::size_t indent);
  void addBlock(const hvArray& array, std::size_t first, std::size_t indent, std::size_t from, std::size_t to,
                const std::vector<TextExtent>& extents);

  std::size_t room(std::size_t taken) const noexcept;

  std::string text_;
  std::size_t width_;
};

std::string label(std::string_view name) {
  return name.empty() ? "\"\"" : hvEscape(name);
}

std::string emptyValue(const hvArray* array) {
  if (hvIsChar(array) && array->body().shape().isRow()) return "\"\"";
  if (hvIsCell(array)) return "{}";
  std::string text = "[]";
  const std::size_t fields = hvIsStruct(array) ? hvGetNumberOfFields(array) : 0;
  for (std::size_t field = 0; field < fields; ++field) {
    text += field == 0 ? " with the fields " : ", ";
    text += label(hvGetFieldName(array, field));
  }
  return text;
}

// "3" for an element of a row or column, else "2,3" and so on.
std::string subscripts(const Shape& shape, std::size_t index) {
  if (shape.isMatrix() && (shape.rows() == 1 || shape.columns() == 1)) return std::to_string(index + 1);
  std::string text;
  for (const std::size_t dimension : shape.dimensions()) {
    if (!text.empty()) text += ',';
    text += std::to_string(index % dimension + 1);
    index /= dimension;
  }
  return text;
}

std::string pageLabel(const Shape& shape, std::size_t page) {
  std::string text = "(:,:";
  for (const std::size_t dimension : shape.higher()) {
    text += ',';
    text += std::to_string(page % dimension + 1);
    page /= dimension;
  }
  return text + "):";
}

// Gives the column behind the last that fits into a line with the one given; that one always does.
std::size_t columnsThatFit(const std::vector<TextExtent>& extents, std::size_t from, std::size_t room) {
  std::size_t to = from;
  std::size_t left = room;
  while (to < extents.size()) {
    const std::size_t needed = (to == from ? 0 : columnGap) + extents[to].left + extents[to].right;
    if (to > from && needed > left) break;
    left -= std::min(left, needed);
    ++to;
  }
  return to;
}

std::size_t ArrayFormatter::room(std::size_t taken) const noexcept {
  if (width_ == 0) return PreviewLine::unlimited;
  return std::max(narrowestTable, width_ > taken ? width_ - taken : 0);
}

void ArrayFormatter::addLine(std::size_t indent, std::string_view line) {
  addIndent(indent);
  text_ += line;
  text_ += '\n';
}

void ArrayFormatter::addValue(const hvArray* array, const std::string& label, std::size_t indent) {
  const std::string head = label + ": " + hvDescribe(array);
  addIndent(indent);
  text_ += head;
  const boost::optional<std::string> line = onTheLine(array, indent + hvDisplayWidth(head));
  if (line) {
    text_ += *line;
    text_ += '\n';
  } else if (hvIsStruct(array)) {
    text_ += '\n';
    addStructures(*array, indent + indentStep);
  } else if (hvIsCell(array)) {
    text_ += '\n';
    addCells(*array, indent + indentStep);
  } else {
    text_ += " =\n";
    addPages(*array, indent + indentStep);
  }
}

// Gives what stands behind the description, or none if the value takes lines of its own.
boost::optional<std::string> ArrayFormatter::onTheLine(const hvArray* array, std::size_t column) const {
  const std::string equals = " = ";
  if (hvIsEmpty(array)) return equals + emptyValue(array);
  if (hvIsCell(array)) return boost::none;
  if (hvIsStruct(array)) return boost::make_optional(hvGetNumberOfFields(array) == 0, equals + "()");
  const bool isText = hvIsChar(array);
  if (!isText && !hasElementText(array)) return std::string();
  if (!array->body().shape().isRow()) return boost::none;
  PreviewLine line(isText || hvIsScalar(array) ? PreviewLine::unlimited : room(column + equals.size()));
  line.addValue(array);
  if (line.isFull()) return boost::none;
  return equals + line.finish();
}

void ArrayFormatter::addStructures(const hvArray& array, std::size_t indent) {
  if (hvIsScalar(&array)) return addFields(array, 0, indent);
  for (std::size_t i = 0; i < hvGetNumberOfElements(&array); ++i) {
    addLine(indent, "(" + subscripts(array.body().shape(), i) + ")");
    addFields(array, i, indent + indentStep);
  }
}

void ArrayFormatter::addFields(const hvArray& array, std::size_t index, std::size_t indent) {
  for (std::size_t field = 0; field < hvGetNumberOfFields(&array); ++field) {
    addValue(hvGetFieldByNumber(&array, index, field), label(hvGetFieldName(&array, field)), indent);
  }
}

void ArrayFormatter::addCells(const hvArray& array, std::size_t indent) {
  for (std::size_t i = 0; i < hvGetNumberOfElements(&array); ++i) {
    addValue(hvGetCell(&array, i), "{" + subscripts(array.body().shape(), i) + "}", indent);
  }
}

void ArrayFormatter::addPages(const hvArray& array, std::size_t indent) {
  const Shape& shape = array.body().shape();
  const std::size_t pageSize = shape.rows() * shape.columns();
  for (std::size_t first = 0; first < shape.count(); first += pageSize) {
    std::size_t pageIndent = indent;
    if (!shape.isMatrix()) {
      addLine(indent, pageLabel(shape, first / pageSize));
      pageIndent += indentStep;
    }
    if (hvIsChar(&array)) {
      addCharacterPage(array, first, pageIndent);
    } else {
      addTablePage(array, first, pageIndent);
    }
  }
}

void ArrayFormatter::addCharacterPage(const hvArray& array, std::size_t first, std::size_t indent) {
  const char16_t* const units = hvGetData<char16_t>(&array) + first;
  const std::size_t rows = hvGetM(&array);
  std::u16string row(hvGetN(&array), u' ');
  for (std::size_t r = 0; r < rows; ++r) {
    for (std::size_t c = 0; c < row.size(); ++c) row[c] = units[r + c * rows];
    addIndent(indent);
    appendQuoted(text_, row);
    text_ += '\n';
  }
}

void ArrayFormatter::addTablePage(const hvArray& array, std::size_t first, std::size_t indent) {
  const std::size_t rows = hvGetM(&array);
  const std::size_t columns = hvGetN(&array);
  const ElementText elements(array);
  std::vector<TextExtent> extents(columns);
  std::string scratch;
  for (std::size_t c = 0; c < columns; ++c) {
    for (std::size_t r = 0; r < rows; ++r) {
      scratch.clear();
      const TextExtent extent = elements.append(scratch, first + r + c * rows);
      extents[c].left = std::max(extents[c].left, extent.left);
      extents[c].right = std::max(extents[c].right, extent.right);
    }
  }
  if (columnsThatFit(extents, 0, room(indent)) == columns)
    return addBlock(array, first, indent, 0, columns, extents);
  for (std::size_t from = 0, to = 0; from < columns; from = to) {
    to = columnsThatFit(extents, from, room(indent + indentStep));
    const std::string last = std::to_string(to);
    addLine(indent, to - from == 1 ? "column " + last + ":"
                                   : "columns " + std::to_string(from + 1) + " to " + last + ":");
    addBlock(array, first, indent + indentStep, from, to, extents);
  }
}

void ArrayFormatter::addBlock(const hvArray& array, std::size_t first, std::size_t indent, std::size_t from,
                              std::size_t to, const std::vector<TextExtent>& extents) {
  const ElementText elements(array);
  const std::size_t rows = hvGetM(&array);
  std::string scratch;
  for (std::size_t r = 0; r < rows; ++r) {
    std::size_t pending = indent;
    for (std::size_t c = from; c < to; ++c) {
      scratch.clear();
      const TextExtent extent = elements.append(scratch, first + r + c * rows);
      addIndent(pending + extents[c].left - extent.left);
      text_ += scratch;
      pending = extents[c].right - extent.right + columnGap;
    }
    text_ += '\n';
  }
}

}  // namespace
}  // namespace hvdetail

std::string hvFormat(const hvArray* array, std::string_view name, std::size_t width) {
  hvdetail::ArrayFormatter formatter(width);
  formatter.addValue(array, hvdetail::label(name), 0);
  return formatter.take();
}
