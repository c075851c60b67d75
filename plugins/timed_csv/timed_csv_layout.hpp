// What a first pass over a timed CSV learns before any sample is written: the columns and
// their kinds, the time column and its form, and the time line the document needs
// (fraction digits of the finest time, GMT or not). The check reads the same way from the
// first bytes of a file.
#pragma once

#include <cstdint>
#include <istream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "csv_values.hpp"

namespace timed_csv {

// More columns than this would each hold a sample store in memory at once.
constexpr std::size_t kMaxColumns = 256;

enum class ColumnKind { kEmpty, kNumber, kText };  // kEmpty: no value in any row

struct Column {
  std::string name;
  ColumnKind kind = ColumnKind::kEmpty;
};

struct TimedCsvLayout {
  char delimiter = ',';
  std::vector<Column> columns;
  std::size_t timeColumn = 0;
  TimeForm form = TimeForm::kIso;
  std::uint32_t precision = 0;
  bool gmt = true;
};

// The delimiter of a file whose first line is firstLine: tab for tab-separated files;
// otherwise a comma, or a semicolon when the line has semicolons and no comma.
char ChooseDelimiter(std::string_view firstLine, bool tabSeparated);

// Whether the first bytes of a file are a timed CSV: a header with a time column whose
// value in the first row is a time. head is the whole file when complete, else cut
// anywhere. Never throws.
bool LooksLikeTimedCsv(std::string_view head, bool tabSeparated, bool complete);

// Reads the whole input once (in is left at its end). Throws PX_PluginException with the
// codes of timed_csv_errors.hpp.
TimedCsvLayout ScanTimedCsv(std::istream &in, bool tabSeparated);

}  // namespace timed_csv
