#include "timed_csv_document.hpp"

#include <memory>
#include <vector>

#include "csv_records.hpp"
#include "match_names.hpp"
#include "timed_csv_errors.hpp"
#include "timed_stream.hpp"

namespace timed_csv {
namespace {

using namespace PX_PLUGIN;
using palvex_plugins::Instant;
using palvex_plugins::TimedStream;

constexpr std::string_view kOutOfOrderName = "Samples out of time order";

std::unique_ptr<TimedStream> MakeStream(IMgjsonRoot_v1 *root, const Column &column,
                                        palvex_plugins::MatchNames &names) {
  const std::string match = names.Make(column.name, "column");
  if (column.kind == ColumnKind::kNumber) {
    return std::make_unique<TimedStream>(root, PX_DYNAMIC_NUMBER, column.name, match);
  }
  auto stream = std::make_unique<TimedStream>(root, PX_DYNAMIC_STRING, column.name, match);
  // A text is a state (a gear, a phase) until the next one: blending texts means nothing.
  stream->SetInterpolation(PX_INTERPOLATION_HOLD);
  return stream;
}

}  // namespace

bool BuildTimedCsvDocument(std::istream &in, const TimedCsvLayout &layout, IMgjsonRoot_v1 *root) {
  palvex_plugins::TimeLine times(root, layout.precision, layout.gmt);
  palvex_plugins::MatchNames names;
  std::vector<std::unique_ptr<TimedStream>> streams(layout.columns.size());
  for (std::size_t i = 0; i < layout.columns.size(); ++i) {
    if (i != layout.timeColumn && layout.columns[i].kind != ColumnKind::kEmpty) {
      streams[i] = MakeStream(root, layout.columns[i], names);
    }
  }
  CsvRecords records(in, layout.delimiter);
  records.Next();  // the header
  Instant previous;
  std::uint64_t rows = 0;
  std::uint64_t backwards = 0;
  while (records.Next()) {
    const std::string_view cell = records.field(layout.timeColumn);
    if (cell.empty()) continue;
    const std::optional<CellTime> time = ReadTime(layout.form, cell);
    const auto line = static_cast<std::int64_t>(records.line());
    if (!time) throw PX_PluginException(kBadTime, line, static_cast<std::int64_t>(layout.timeColumn + 1));
    if (rows++ > 0 && time->instant < previous) ++backwards;
    previous = time->instant;
    for (std::size_t i = 0; i < streams.size(); ++i) {
      const std::string_view value = records.field(i);
      if (!streams[i] || value.empty()) continue;
      if (layout.columns[i].kind == ColumnKind::kText) {
        streams[i]->AddText(times, time->instant, value);
      } else if (const std::optional<double> number = ReadNumber(value)) {
        streams[i]->Add(times, time->instant, *number);
      } else {
        throw PX_PluginException(kNotANumber, line, static_cast<std::int64_t>(i + 1));
      }
    }
  }
  bool anySamples = false;
  for (const auto &stream : streams) {
    if (!stream) continue;
    anySamples = anySamples || stream->sampleCount() > 0;
    stream->AttachTo(root);
  }
  if (anySamples && backwards > 0) {
    StaticNode count = CreateStaticNumber(root, kOutOfOrderName, names.Make(kOutOfOrderName),
                                          static_cast<double>(backwards));
    Call(root, &IMgjsonGroup_v1::AddStaticChild, count.views().node);
  }
  return anySamples;
}

}  // namespace timed_csv
