#include "converters/csv_table.hpp"

#include <charconv>
#include <cmath>

#include "api/px_exception.hpp"
#include "converters/csv_reader.hpp"

namespace ns_sensor {
namespace {

// Short rows are padded with empty cells, which cost no byte of the file. So that a small
// file cannot ask for an unbounded table (a wide header over many one-field rows), the
// cells of a table are bounded by its file's size.
constexpr std::uint64_t kCellsPerInputByte = 8;
constexpr std::uint64_t kCellsWithoutInput = 65536;

bool IsCSpace(char byte) { return byte == ' ' || (byte >= '\t' && byte <= '\r'); }

bool StartsWithNoCase(std::string_view text, std::string_view prefix) {
  if (text.size() < prefix.size()) return false;
  for (std::size_t i = 0; i < prefix.size(); ++i) {
    if ((text[i] | 0x20) != prefix[i]) return false;
  }
  return true;
}

}  // namespace

bool IsNumberCell(std::string_view cell, double &value) {
  // The grammar of the C library's string-to-double conversion, read without the process's
  // locale: from_chars takes neither leading space, a plus sign nor the "0x" prefix.
  std::size_t at = 0;
  while (at < cell.size() && IsCSpace(cell[at])) ++at;
  bool negative = false;
  if (at < cell.size() && (cell[at] == '+' || cell[at] == '-')) negative = cell[at++] == '-';
  std::string_view rest = cell.substr(at);
  auto format = std::chars_format::general;
  if (StartsWithNoCase(rest, "0x")) {
    rest.remove_prefix(2);
    format = std::chars_format::hex;
  }
  // A second sign is no number, and a hexadecimal "0x" needs digits or a point after it.
  if (rest.empty() || rest[0] == '+' || rest[0] == '-') return false;
  const char *const end = rest.data() + rest.size();
  double parsed = 0;
  const std::from_chars_result result = std::from_chars(rest.data(), end, parsed, format);
  // Overflow and underflow are range errors: no number. Infinity and not-a-number words
  // cannot be written to the file and would make it unreadable: no number either.
  if (result.ec != std::errc() || result.ptr != end || !std::isfinite(parsed)) return false;
  value = negative ? -parsed : parsed;
  return true;
}

double NumericCellValue(std::string_view cell) {
  double value = 0;
  if (!cell.empty()) IsNumberCell(cell, value);
  return value;
}

std::string_view CsvTable::Cell(std::size_t row, std::size_t column) const {
  const std::size_t index = row * columnNames_.size() + column;
  const std::uint64_t begin = index == 0 ? 0 : cellEnds_[index - 1];
  return std::string_view(cellText_).substr(begin, cellEnds_[index] - begin);
}

void CsvTable::AddRow(std::string_view line, char delimiter) {
  const std::size_t columns = columnNames_.size();
  if (cellEnds_.size() + columns > cellBudget_) Raise(Msg::TableTooLarge, columns, cellBudget_);
  std::size_t column = 0;
  SplitFields(line, delimiter, [&](std::string_view field) {
    if (column == columns) return;  // fields beyond the header's columns are ignored
    cellText_.append(field);
    cellEnds_.push_back(cellText_.size());
    double ignored = 0;
    if (numeric_[column] != 0 && !field.empty() && !IsNumberCell(field, ignored)) numeric_[column] = 0;
    ++column;
  });
  for (; column < columns; ++column) cellEnds_.push_back(cellText_.size());
}

CsvTable CsvTable::Read(TextChunks &text, char delimiter, std::uint64_t inputBytes) {
  CsvTable table;
  table.cellBudget_ = kCellsWithoutInput + inputBytes * kCellsPerInputByte;
  LineReader lines(text);
  std::string line;
  if (!lines.Next(line)) return table;
  SplitFields(line, delimiter, [&table, cut = false](std::string_view name) mutable {
    // The columns end at the first empty name: it and every name after it are dropped.
    cut = cut || name.empty();
    if (!cut) table.columnNames_.emplace_back(name);
  });
  table.numeric_.assign(table.columnNames_.size(), 1);
  if (table.columnNames_.empty()) return table;
  while (lines.Next(line)) {
    if (!line.empty()) table.AddRow(line, delimiter);
  }
  return table;
}

}  // namespace ns_sensor
