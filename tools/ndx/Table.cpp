#include "tools/ndx/Table.h"

#include <algorithm>
#include <utility>

#include "platform/host/ArrayText.h"
#include "tools/ndx/paint.h"

namespace nd::tools {
namespace {

constexpr std::size_t gap = 2;
constexpr std::size_t narrowestCut = 10;

}  // namespace

Table::Table(std::vector<Column> columns) : columns_(std::move(columns)) {}

void Table::addRow(const std::vector<std::string>& cells) {
  std::vector<std::string> row;
  row.reserve(columns_.size());
  for (const std::string& cell : cells) row.push_back(hvEscape(cell));
  row.resize(columns_.size());
  rows_.push_back(std::move(row));
}

void Table::print(Output& out, std::size_t indentation) const {
  const std::size_t width = out.look().width;
  const std::vector<std::size_t> room = widths(width > indentation ? width - indentation : 0);
  const std::string margin(indentation, ' ');
  std::vector<std::string> headings;
  for (const Column& column : columns_) headings.push_back(column.heading);
  const bool hasHeadings = std::any_of(headings.begin(), headings.end(),
                                       [](const std::string& heading) { return !heading.empty(); });
  if (hasHeadings) out.write(margin + paint(out.look(), Paint::Heading, line(headings, room)) + "\n");
  for (const std::vector<std::string>& row : rows_) out.write(margin + line(row, room) + "\n");
}

std::vector<std::size_t> Table::widths(std::size_t available) const {
  std::vector<std::size_t> result;
  std::size_t total = 0;
  for (std::size_t column = 0; column < columns_.size(); ++column) {
    std::size_t width = hvDisplayWidth(columns_[column].heading);
    for (const std::vector<std::string>& row : rows_) width = std::max(width, hvDisplayWidth(row[column]));
    result.push_back(width);
    total += width + (column == 0 ? 0 : gap);
  }
  for (std::size_t column = 0; column < columns_.size() && total > available; ++column) {
    if (columns_[column].alignment != Alignment::Cut) continue;
    const std::size_t least = std::min(narrowestCut, result[column]);
    const std::size_t removed = std::min(total - available, result[column] - least);
    result[column] -= removed;
    total -= removed;
  }
  return result;
}

std::string Table::line(const std::vector<std::string>& cells, const std::vector<std::size_t>& widths) const {
  std::string text;
  std::size_t pending = 0;
  for (std::size_t column = 0; column < columns_.size(); ++column) {
    const Alignment alignment = columns_[column].alignment;
    const std::string cell =
        alignment == Alignment::Cut ? hvCutToWidth(cells[column], widths[column]) : cells[column];
    const std::size_t blanks = widths[column] - std::min(widths[column], hvDisplayWidth(cell));
    if (!cell.empty()) {
      text.append(pending + (alignment == Alignment::Right ? blanks : 0), ' ');
      text += cell;
      pending = alignment == Alignment::Right ? gap : blanks + gap;
    } else {
      pending += widths[column] + gap;
    }
  }
  return text;
}

}  // namespace nd::tools
