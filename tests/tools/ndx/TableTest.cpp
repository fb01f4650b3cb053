#include "tests/tools/ndx/TextOutput.h"
#include "tools/ndx/Table.h"

namespace nd::tools {
namespace {

std::string printed(const Table& table, const Look& look = {}) {
  TextOutput out(look);
  table.print(out);
  out.finish();
  return out.text;
}

TEST(Table, AlignsItsColumnsAndEndsNoLineInBlanks) {
  Table table({{"NAME"}, {"BYTES", Table::Alignment::Right}, {"NOTE"}});
  table.addRow({"a", "1", "x"});
  table.addRow({"longer", "1000", ""});
  EXPECT_EQ(printed(table),
            "NAME    BYTES  NOTE\n"
            "a           1  x\n"
            "longer   1000\n");
}

TEST(Table, CutsAColumnThatMayBeCutToTheWidth) {
  Table table({{"NAME"}, {"PREVIEW", Table::Alignment::Cut}});
  table.addRow({"a", std::string(200, 'x')});
  const std::string text = printed(table, {.width = 40, .hasColours = false});
  const std::string line = text.substr(text.find('\n') + 1);
  EXPECT_TRUE(line.ends_with("…\n")) << line;
  EXPECT_EQ(line.size(),
            40U + std::string("…").size());  // 39 columns of one byte, the ellipsis, the line's end
}

TEST(Table, MakesVisibleWhatCouldDriveATerminal) {
  Table table({{"NAME"}});
  table.addRow({"a\033[2Jb"});
  EXPECT_EQ(printed(table).find('\033'), std::string::npos);
}

TEST(Table, HasColoursOnlyWhereTheStreamShowsThem) {
  Table table({{"NAME"}});
  table.addRow({"a"});
  EXPECT_EQ(printed(table).find('\033'), std::string::npos);
  EXPECT_NE(printed(table, {.width = 80, .hasColours = true}).find('\033'), std::string::npos);
}

}  // namespace
}  // namespace nd::tools
