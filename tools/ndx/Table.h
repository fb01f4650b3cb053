#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "tools/ndx/Output.h"

namespace nd::tools {

/// Rows of texts in aligned columns, two blanks apart.
///
///     Table table({{"NAME"}, {"BYTES", Table::Alignment::Right}, {"PREVIEW", Table::Alignment::Cut}});
///     table.addRow({"Gain", "8", "2.5"});
///     table.print(out);
class Table {
 public:
  enum class Alignment {
    Left,
    Right,
    /// To the left, and cut so that the table fits the width of the stream; for what can be seen elsewhere.
    Cut,
  };

  struct Column {
    std::string heading;
    Alignment alignment = Alignment::Left;
  };

  explicit Table(std::vector<Column> columns);

  /// Add a row with a text for each column. What could drive a terminal is made visible.
  void addRow(const std::vector<std::string>& cells);

  /// Write the headings, unless all are empty, and the rows, each line behind an indentation. No line ends in
  /// blanks.
  void print(Output& out, std::size_t indentation = 0) const;

 private:
  std::vector<std::size_t> widths(std::size_t available) const;
  std::string line(const std::vector<std::string>& cells, const std::vector<std::size_t>& widths) const;

  std::vector<Column> columns_;
  std::vector<std::vector<std::string>> rows_;
};

}  // namespace nd::tools
