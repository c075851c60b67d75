// The table of a delimited text: header, rows, numeric columns and the number test.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "api/px_exception.hpp"
#include "converters/csv_table.hpp"

namespace ns_sensor {
namespace {

CsvTable Table(std::string_view bytes, char delimiter = ',') {
  MemoryText text(bytes);
  return CsvTable::Read(text, delimiter, bytes.size());
}

std::vector<std::string> Column(const CsvTable &table, std::size_t column) {
  std::vector<std::string> cells;
  for (std::size_t row = 0; row < table.RowCount(); ++row) cells.emplace_back(table.Cell(row, column));
  return cells;
}

TEST(CsvTable, HeaderIsCutAtTheFirstEmptyName) {
  const CsvTable table = Table("a,,b\n1,2,3\n");
  EXPECT_EQ(table.ColumnNames(), std::vector<std::string>{"a"});
  EXPECT_EQ(Column(table, 0), std::vector<std::string>{"1"});
  EXPECT_TRUE(Table(",a\n1\n").ColumnNames().empty());
  EXPECT_TRUE(Table(",,,\n1\n").ColumnNames().empty());
  EXPECT_TRUE(Table("").ColumnNames().empty());
}

TEST(CsvTable, ShortRowsArePaddedAndLongRowsCut) {
  const CsvTable table = Table("x,y,z\n1\n2,3,4,5\n");
  ASSERT_EQ(table.RowCount(), 2u);
  EXPECT_EQ(Column(table, 1), (std::vector<std::string>{"", "3"}));
  EXPECT_EQ(Column(table, 2), (std::vector<std::string>{"", "4"}));
  EXPECT_TRUE(table.IsNumeric(0) && table.IsNumeric(1) && table.IsNumeric(2));
}

TEST(CsvTable, EmptyLinesAreSkippedAndOneTextCellMakesAStringColumn) {
  const CsvTable table = Table("v,w\n1,2\n\nx,3\r\n");
  EXPECT_EQ(Column(table, 0), (std::vector<std::string>{"1", "x"}));
  EXPECT_FALSE(table.IsNumeric(0));
  EXPECT_TRUE(table.IsNumeric(1));
}

TEST(CsvTable, TabSeparatedCellsKeepTheirCommas) {
  const CsvTable table = Table("a\tb\n1,5\t2\n", '\t');
  EXPECT_EQ(Column(table, 0), std::vector<std::string>{"1,5"});
  EXPECT_FALSE(table.IsNumeric(0));
  EXPECT_TRUE(table.IsNumeric(1));
}

TEST(CsvTable, ShortRowsCannotAskForMoreCellsThanTheFileHolds) {
  std::string wide;
  for (int i = 0; i < 20000; ++i) wide += "c,";
  wide += "c\n";
  std::string text = wide;
  for (int i = 0; i < 200; ++i) text += "1\n";
  try {
    Table(text);
    FAIL() << "a table far larger than its file was accepted";
  } catch (const PX_Exception &e) {
    EXPECT_EQ(e.code(), 1506u);
  }
}

TEST(NumberCell, WholeCellFiniteAndInRange) {
  const struct {
    const char *cell;
    bool number;
    double value;
  } cases[] = {
      {"12", true, 12},         {" 12", true, 12},        {"12 ", false, 0},       {"-1.5e3", true, -1500},
      {"+.5", true, 0.5},       {"1.", true, 1},          {"0x1p4", true, 16},     {"-0X10", true, -16},
      {"1e999", false, 0},      {"inf", false, 0},        {"NaN", false, 0},       {"infinity", false, 0},
      {"+-1", false, 0},        {"0x", false, 0},         {"1,5", false, 0},       {"", false, 0},
      {"  ", false, 0},         {"1e", false, 0},         {"abc", false, 0},       {"\t\n7", true, 7},
  };
  for (const auto &c : cases) {
    double value = 0;
    EXPECT_EQ(IsNumberCell(c.cell, value), c.number) << '"' << c.cell << '"';
    if (c.number) {
      EXPECT_EQ(value, c.value) << c.cell;
    }
  }
  EXPECT_EQ(NumericCellValue(""), 0.0);
}

}  // namespace
}  // namespace ns_sensor
