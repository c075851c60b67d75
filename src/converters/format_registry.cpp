// The built-in converters and their registration table.
#include "converters/format_registry.hpp"

#include <string_view>

#include "converters/converter_registry.hpp"

namespace ns_sensor {

// Each built-in converter's source file defines its kind.
extern const ConverterKind kCsvConverter;
extern const ConverterKind kTsvConverter;
extern const ConverterKind kBvhConverter;
extern const ConverterKind kJsonConverter;

namespace {

struct BuiltInRow {
  std::string_view extension;
  std::string_view description;
  const ConverterKind *kind;  // null: a listed format whose converter is not built in yet
};

// Registration order; the first registration of an extension wins. Selection falls back
// to walking the map in byte order, where "csv" comes before "json", "tsv" and "txt" and
// its check accepts every file: a file that nothing else claims is read as CSV.
constexpr BuiltInRow kBuiltInRows[] = {
    {"json", "JSON", &kJsonConverter},
    {"csv", "Comma-separated values", &kCsvConverter},
    {"tsv", "Tab-separated values", &kTsvConverter},
    {"txt", "Tab-separated values", &kTsvConverter},
    {"bvh", "Biovision Hierarchy", &kBvhConverter},
};

// MGJSON is readable but not convertible: a format row without a converter.
constexpr BuiltInRow kMgjsonRow = {"mgjson", "Motion Graphics JSON", nullptr};

}  // namespace

void RegisterBuiltInConverters(ConverterRegistry &registry) {
  for (const BuiltInRow &row : kBuiltInRows) {
    if (row.kind == nullptr) {
      registry.AddFormat(row.extension, row.description);
      continue;
    }
    const ConverterKind kind = *row.kind;
    registry.RegisterNative(
        row.extension, row.description,
        [kind](const ConverterEntry &, const ConversionRequest &request) { return kind.check(request); },
        [kind](const ConverterEntry &, const ConversionRequest &request) { return kind.create(request); });
  }
  registry.AddFormat(kMgjsonRow.extension, kMgjsonRow.description);
}

const FormatMap &SupportedFormats() { return ConverterRegistry::Process().Formats(); }

}  // namespace ns_sensor
