#include "converters/csv_document.hpp"

#include <charconv>
#include <limits>
#include <string>

#include "palvex/plugin_helpers.hpp"

namespace ns_sensor {
namespace {

using namespace PX_PLUGIN;

constexpr std::string_view kMatchNameStem = "data";
// Display names of cells are made in a buffer of this size, terminator included.
constexpr std::size_t kNameBufferBytes = 1024;
// A number cell says nothing of its pattern or ranges: digit counts of -1 and a range
// from the largest double down to its negative, which the writer handles as it sees fit.
constexpr std::int32_t kUnknownDigits = -1;
constexpr double kRangeMin = std::numeric_limits<double>::max();
constexpr double kRangeMax = -std::numeric_limits<double>::max();

// Appends n in decimal.
void AppendNumber(std::string &text, std::uint64_t n) {
  char digits[24];
  const auto result = std::to_chars(digits, digits + sizeof digits, n);
  text.append(digits, result.ptr);
}

// The next match name of the document's counter.
class MatchNames {
 public:
  const std::string &Next() {
    name_.assign(kMatchNameStem);
    AppendNumber(name_, next_++);
    return name_;
  }

 private:
  std::string name_;
  std::uint64_t next_ = 0;
};

// "<column> <row>", cut to fit the name buffer; the cut never splits a UTF-8 sequence.
// A column name is taken up to its first NUL byte, as a C string would be.
void MakeCellName(std::string &name, std::string_view column, std::size_t row) {
  name.assign(column.substr(0, column.find('\0')));
  name.push_back(' ');
  AppendNumber(name, row);
  if (name.size() < kNameBufferBytes) return;
  std::size_t length = kNameBufferBytes - 1;
  while (length > 0 && (static_cast<unsigned char>(name[length]) & 0xC0) == 0x80) --length;
  name.resize(length);
}

void AddColumn(const CsvTable &table, std::size_t column, IMgjsonRoot_v1 *root, MatchNames &matchNames) {
  const std::string &columnName = table.ColumnNames()[column];
  Ref<IMgjsonGroup_v1> group = CreateGroup(root, columnName, matchNames.Next());
  const bool numeric = table.IsNumeric(column);
  std::string cellName;
  for (std::size_t row = 0; row < table.RowCount(); ++row) {
    MakeCellName(cellName, columnName, row);
    const std::string_view cell = table.Cell(row, column);
    if (numeric) {
      const StaticNode node = CreateStaticNumber(root, cellName, matchNames.Next(), NumericCellValue(cell));
      Call(node.views().number, &IMgjsonStaticDataNum_v1::SetPattern, 0u, kUnknownDigits, kUnknownDigits);
      Call(node.views().number, &IMgjsonStaticDataNum_v1::SetRanges, kRangeMin, kRangeMax, kRangeMin, kRangeMax);
      Call(group.get(), &IMgjsonGroup_v1::AddStaticChild, node.views().node);
    } else {
      const StaticNode node = CreateStaticString(root, cellName, matchNames.Next(), cell);
      Call(group.get(), &IMgjsonGroup_v1::AddStaticChild, node.views().node);
    }
  }
  Call(root, &IMgjsonGroup_v1::AddGroupChild, group.get());
}

}  // namespace

void BuildTableDocument(const CsvTable &table, IMgjsonRoot_v1 *root) {
  MatchNames matchNames;
  for (std::size_t column = 0; column < table.ColumnCount(); ++column) AddColumn(table, column, root, matchNames);
}

}  // namespace ns_sensor
