#include "converters/delimited_converter.hpp"

#include "converters/csv_document.hpp"
#include "converters/csv_table.hpp"
#include "converters/native_converter_session.hpp"

namespace ns_sensor {

DelimitedConverter::DelimitedConverter(ConversionRequest request, DelimitedFormat format)
    : PX_ConverterHandlerBase(request), work_(std::move(request)), format_(format) {}

bool DelimitedConverter::Convert() {
  CsvTable table;
  {
    FileText text(work_.inputPath);
    table = CsvTable::Read(text, format_.delimiter, text.Size());
  }
  if (table.RowCount() == 0) return false;
  NativeConverterSession session(this, work_.outputPath);
  session.SetConverterIdentifier(format_.identifier);
  session.Fill([&table](PX_PLUGIN::IMgjsonRoot_v1 *root) { BuildTableDocument(table, root); });
  return session.Finish();
}

}  // namespace ns_sensor
