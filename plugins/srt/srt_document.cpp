#include "srt_document.hpp"

#include <algorithm>
#include <limits>
#include <memory>
#include <sstream>
#include <unordered_map>
#include <vector>

#include "match_names.hpp"
#include "srt_blocks.hpp"
#include "srt_errors.hpp"
#include "srt_fields.hpp"
#include "srt_telemetry.hpp"
#include "timed_stream.hpp"

namespace srt {
namespace {

using namespace PX_PLUGIN;
using palvex_plugins::Instant;
using palvex_plugins::TimedStream;
using palvex_plugins::TimeLine;

// Subtitle times are milliseconds; date lines finer than that are cut to them.
constexpr std::uint32_t kPrecision = 3;
// Distinct fields a file may have; later new ones are skipped (a file of prose would
// otherwise make a stream, and a sample store, of every word before a colon).
constexpr std::size_t kMaxFields = 64;
constexpr std::int64_t kMillisecondsPerSecond = 1000;
constexpr std::int64_t kNanosecondsPerMillisecond = 1'000'000;
constexpr std::string_view kOutOfOrderName = "Samples out of time order";

struct Field {
  std::unique_ptr<TimedStream> stream;
  const KnownField *known = nullptr;
  bool number = true;
  double min = std::numeric_limits<double>::max();
  double max = std::numeric_limits<double>::lowest();
};

Instant AddMilliseconds(Instant at, std::int64_t milliseconds) {
  const std::int64_t nanos = static_cast<std::int64_t>(at.nanoseconds) +
                             (milliseconds % kMillisecondsPerSecond) * kNanosecondsPerMillisecond;
  at.seconds += milliseconds / kMillisecondsPerSecond + (nanos < 0 ? -1 : nanos / palvex_plugins::kNanosecondsPerSecond);
  at.nanoseconds = static_cast<std::uint32_t>((nanos % palvex_plugins::kNanosecondsPerSecond +
                                               palvex_plugins::kNanosecondsPerSecond) %
                                              palvex_plugins::kNanosecondsPerSecond);
  return at;
}

class SrtDocument {
 public:
  explicit SrtDocument(IMgjsonRoot_v1 *root) : root_(root) {}

  void AddBlock(const SrtBlock &block, const BlockTelemetry &telemetry) {
    if (!times_) {
      dated_ = telemetry.date.has_value();
      times_.emplace(root_, kPrecision, dated_ ? telemetry.date->zoned : true);
    }
    const Instant at = BlockTime(block, telemetry);
    if (blocks_++ > 0 && at < previous_) ++backwards_;
    previous_ = at;
    for (const TelemetryValue &value : telemetry.values) Add(value, at);
  }

  bool Finish() {
    bool anySamples = false;
    for (Field &field : fields_) {
      if (field.stream->sampleCount() == 0) continue;
      anySamples = true;
      if (field.number && field.known != nullptr && field.known->hasLegalRange) {
        Call(field.stream->views().number, &IMgjsonDynamicDataNum_v1::SetRanges, field.min, field.max,
             field.known->legalMin, field.known->legalMax);
      }
      field.stream->AttachTo(root_);
    }
    if (anySamples && backwards_ > 0) {
      StaticNode count = CreateStaticNumber(root_, kOutOfOrderName, names_.Make(kOutOfOrderName),
                                            static_cast<double>(backwards_));
      Call(root_, &IMgjsonGroup_v1::AddStaticChild, count.views().node);
    }
    return anySamples;
  }

 private:
  Instant BlockTime(const SrtBlock &block, const BlockTelemetry &telemetry) {
    if (dated_ && telemetry.date) {
      lastDate_ = telemetry.date->instant;
      lastDateStart_ = block.startMilliseconds;
      return lastDate_;
    }
    if (dated_) return AddMilliseconds(lastDate_, block.startMilliseconds - lastDateStart_);
    const auto at = palvex_plugins::InstantFromMilliseconds(block.startMilliseconds);
    if (!at) throw PX_PluginException(kBadTimeLine, static_cast<std::int64_t>(block.line), -1);
    return *at;
  }

  Field *FieldFor(const TelemetryValue &value) {
    std::string id = value.key;
    for (char &c : id) c = (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
    const KnownField *known = FindKnownField(id);
    if (known != nullptr) id = known->matchName;  // "lat" and "latitude" are one field
    if (const auto found = index_.find(id); found != index_.end()) return &fields_[found->second];
    if (fields_.size() >= kMaxFields) return nullptr;
    Field field;
    field.known = known;
    field.number = value.number.has_value() || (known != nullptr && ApplyRule(known->rule, {}, value.text));
    std::string display = known != nullptr ? std::string(known->displayName) : value.key;
    if (known == nullptr && field.number && !value.unit.empty()) display += " [" + value.unit + "]";
    const std::string match = names_.Make(known != nullptr ? known->matchName : std::string_view(value.key), "field");
    field.stream = std::make_unique<TimedStream>(root_, field.number ? PX_DYNAMIC_NUMBER : PX_DYNAMIC_STRING,
                                                 display, match);
    // A text is a setting (a colour mode) until the next one: blending texts means nothing.
    if (!field.number) field.stream->SetInterpolation(PX_INTERPOLATION_HOLD);
    index_.emplace(std::move(id), fields_.size());
    fields_.push_back(std::move(field));
    return &fields_.back();
  }

  void Add(const TelemetryValue &value, const Instant &at) {
    Field *field = FieldFor(value);
    if (field == nullptr) return;
    if (!field->number) {
      field->stream->AddText(*times_, at, value.text);
      return;
    }
    std::optional<double> number = value.number;
    if (field->known != nullptr) {
      if (const auto ruled = ApplyRule(field->known->rule, value.number, value.text)) number = ruled;
    }
    if (!number) return;  // a text in a numeric field: skipped
    field->min = std::min(field->min, *number);
    field->max = std::max(field->max, *number);
    field->stream->Add(*times_, at, *number);
  }

  IMgjsonRoot_v1 *root_;
  std::optional<TimeLine> times_;
  bool dated_ = false;
  Instant lastDate_;
  std::int64_t lastDateStart_ = 0;
  Instant previous_;
  std::uint64_t blocks_ = 0;
  std::uint64_t backwards_ = 0;
  palvex_plugins::MatchNames names_;
  std::unordered_map<std::string, std::size_t> index_;
  std::vector<Field> fields_;
};

// The telemetry of a block's text; throws kBadDate for a date that does not exist.
BlockTelemetry ReadBlock(const SrtBlock &block) {
  BlockTelemetry telemetry;
  for (std::size_t i = 0; i < block.text.size(); ++i) {
    if (!ReadTelemetryLine(block.text[i], telemetry)) {
      throw PX_PluginException(kBadDate, static_cast<std::int64_t>(block.firstTextLine + i), -1);
    }
  }
  return telemetry;
}

}  // namespace

bool BuildSrtDocument(std::istream &in, IMgjsonRoot_v1 *root) {
  SrtDocument document(root);
  SrtBlocks blocks(in);
  SrtBlock block;
  while (blocks.Next(block)) {
    const BlockTelemetry telemetry = ReadBlock(block);
    if (!telemetry.values.empty()) document.AddBlock(block, telemetry);
  }
  return document.Finish();
}

bool LooksLikeDroneSrt(std::string_view head, bool complete) {
  // Only whole lines count: a cut line could fake a field.
  if (!complete) head = head.substr(0, head.rfind('\n') + 1);
  try {
    std::istringstream in{std::string(head)};
    SrtBlocks blocks(in);
    SrtBlock block;
    while (blocks.Next(block)) {
      const BlockTelemetry telemetry = ReadBlock(block);
      for (const TelemetryValue &value : telemetry.values) {
        if (FindKnownField(value.key) != nullptr) return true;
      }
    }
  } catch (const PX_PluginException &) {
  }
  return false;
}

}  // namespace srt
