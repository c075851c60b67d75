// The table of delimited text from any bytes: encodings, lines, fields, the number test.
// The first byte chooses the delimiter and how the text is cut into pieces.
#include <cstdint>

#include "api/px_exception.hpp"
#include "converters/csv_table.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  if (size == 0) return 0;
  const char delimiter = (data[0] & 1) != 0 ? '\t' : ',';
  const std::size_t pieceSize = 1 + (data[0] >> 1);
  const std::string_view bytes(reinterpret_cast<const char *>(data + 1), size - 1);
  try {
    ns_sensor::MemoryText text(bytes, pieceSize);
    const ns_sensor::CsvTable table = ns_sensor::CsvTable::Read(text, delimiter, bytes.size());
    for (std::size_t row = 0; row < table.RowCount(); ++row) {
      for (std::size_t column = 0; column < table.ColumnCount(); ++column) {
        if (table.IsNumeric(column)) ns_sensor::NumericCellValue(table.Cell(row, column));
      }
    }
  } catch (const ns_sensor::PX_Exception &) {  // a table too large for its file
  }
  return 0;
}
