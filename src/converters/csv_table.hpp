// The table a delimited file holds: the header's column names, whether each column is
// numeric, and the cells of every data row, each row cut or padded to the columns.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "converters/text_source.hpp"

namespace ns_sensor {

class CsvTable {
 public:
  const std::vector<std::string> &ColumnNames() const { return columnNames_; }
  std::size_t ColumnCount() const { return columnNames_.size(); }
  std::size_t RowCount() const { return columnNames_.empty() ? 0 : cellEnds_.size() / columnNames_.size(); }
  // True while every non-empty cell of the column is a number (IsNumberCell).
  bool IsNumeric(std::size_t column) const { return numeric_[column] != 0; }
  std::string_view Cell(std::size_t row, std::size_t column) const;

  // Reads the table from text (delimiter "," or tab): the first line's fields are the
  // column names, cut at the first empty one; every further non-empty line is a row.
  // inputBytes is the size of the file, which bounds the cells that short rows may add
  // by padding (TableTooLarge beyond).
  static CsvTable Read(TextChunks &text, char delimiter, std::uint64_t inputBytes);

 private:
  void AddRow(std::string_view line, char delimiter);

  std::vector<std::string> columnNames_;
  std::vector<char> numeric_;
  std::string cellText_;                 // every cell of every row, one after another
  std::vector<std::uint64_t> cellEnds_;  // where each cell ends in cellText_, row by row
  std::uint64_t cellBudget_ = 0;
};

// Whether a cell is a number: after leading white space, an optional sign and a decimal
// or "0x" hexadecimal number that takes the whole rest of the cell, finite and within the
// range of double. On success the value is stored in value.
bool IsNumberCell(std::string_view cell, double &value);

// The value of a cell of a numeric column: 0 for an empty cell.
double NumericCellValue(std::string_view cell);

}  // namespace ns_sensor
