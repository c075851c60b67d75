#include "timed_csv_layout.hpp"

#include <algorithm>
#include <sstream>

#include "csv_records.hpp"
#include "palvex/plugin_kit.hpp"
#include "timed_csv_errors.hpp"

namespace timed_csv {
namespace {

using PX_PLUGIN::PX_PluginException;

std::int64_t Detail(std::uint64_t value) { return static_cast<std::int64_t>(value); }

// The first time-named column whose cell in the first row is a time, with that form.
std::optional<std::pair<std::size_t, TimeForm>> FindTimeColumn(const std::vector<Column> &columns,
                                                               const CsvRecords &firstRow) {
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (!IsTimeColumnName(columns[i].name)) continue;
    if (const std::optional<TimeForm> form = RecogniseTimeForm(firstRow.field(i))) return std::make_pair(i, *form);
  }
  return std::nullopt;
}

std::vector<Column> ReadHeader(const CsvRecords &header) {
  if (header.size() > kMaxColumns) {
    throw PX_PluginException(kTooManyColumns, Detail(header.line()), Detail(header.size()));
  }
  std::vector<Column> columns(header.size());
  for (std::size_t i = 0; i < header.size(); ++i) {
    columns[i].name = header.field(i);
    if (columns[i].name.empty()) columns[i].name = "Column " + std::to_string(i + 1);
  }
  return columns;
}

// The start of the first line, for the delimiter; bounded, whatever the file holds.
std::string FirstLine(std::istream &in) {
  std::string line(kMaxRecordBytes, '\0');
  in.read(line.data(), static_cast<std::streamsize>(line.size()));
  line.resize(static_cast<std::size_t>(in.gcount()));
  line.resize(std::min(line.find('\n'), line.size()));
  in.clear();
  in.seekg(0);
  return line;
}

}  // namespace

char ChooseDelimiter(std::string_view firstLine, bool tabSeparated) {
  if (tabSeparated) return '\t';
  const bool comma = firstLine.find(',') != std::string_view::npos;
  return !comma && firstLine.find(';') != std::string_view::npos ? ';' : ',';
}

bool LooksLikeTimedCsv(std::string_view head, bool tabSeparated, bool complete) {
  // A row cut short could fake or hide a time: only whole lines count.
  if (!complete) head = head.substr(0, head.rfind('\n') + 1);
  try {
    std::istringstream in{std::string(head)};
    CsvRecords records(in, ChooseDelimiter(head.substr(0, head.find('\n')), tabSeparated));
    if (!records.Next() || records.size() > kMaxColumns) return false;
    const std::vector<Column> columns = ReadHeader(records);
    return records.Next() && FindTimeColumn(columns, records).has_value();
  } catch (const PX_PluginException &) {
    return false;
  }
}

TimedCsvLayout ScanTimedCsv(std::istream &in, bool tabSeparated) {
  TimedCsvLayout layout;
  layout.delimiter = ChooseDelimiter(FirstLine(in), tabSeparated);
  CsvRecords records(in, layout.delimiter);
  if (!records.Next()) throw PX_PluginException(kNoTimeColumn, 1, -1);
  layout.columns = ReadHeader(records);
  bool first = true;
  while (records.Next()) {
    if (first) {
      const auto found = FindTimeColumn(layout.columns, records);
      if (!found) throw PX_PluginException(kNoTimeColumn, Detail(records.line()), -1);
      layout.timeColumn = found->first;
      layout.form = found->second;
    }
    const std::string_view cell = records.field(layout.timeColumn);
    if (cell.empty()) continue;  // a row without a time has no place on the time line
    const std::optional<CellTime> time = ReadTime(layout.form, cell);
    const auto column = Detail(layout.timeColumn + 1);
    if (!time) throw PX_PluginException(kBadTime, Detail(records.line()), column);
    if (first) layout.gmt = time->utc;
    if (time->utc != layout.gmt) throw PX_PluginException(kZoneMismatch, Detail(records.line()), column);
    layout.precision = std::max(layout.precision, std::min(time->fractionDigits, palvex_plugins::kMaxFractionDigits));
    first = false;
    for (std::size_t i = 0; i < layout.columns.size(); ++i) {
      Column &target = layout.columns[i];
      if (target.kind != ColumnKind::kEmpty || i == layout.timeColumn || records.field(i).empty()) continue;
      target.kind = ReadNumber(records.field(i)) ? ColumnKind::kNumber : ColumnKind::kText;
    }
  }
  return layout;
}

}  // namespace timed_csv
