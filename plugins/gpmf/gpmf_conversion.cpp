#include "gpmf_conversion.hpp"

#include <vector>

#include "big_endian.hpp"
#include "gpmf_errors.hpp"
#include "payload_walker.hpp"
#include "telemetry_clock.hpp"
#include "telemetry_document.hpp"
#include "track_index.hpp"

namespace gpmf {
namespace {

using PX_PLUGIN::PX_PluginException;

constexpr double kFixed2d = 2;
constexpr std::int64_t kSecondsFrom1904To1970 = 2082844800;

struct Chapter {
  TelemetryIndex index;
  std::int64_t start = 0;  // media nanoseconds where the chapter begins
};

// Runs body for one chapter; a failure carries the chapter's number.
template <typename Body>
void ForChapter(std::size_t chapter, Body &&body) {
  try {
    body();
  } catch (const PX_PluginException &e) {
    throw PX_PluginException(e.code(), e.detail1(), static_cast<std::int64_t>(chapter + 1));
  }
}

// Every payload of a chapter in order, with its media time span.
template <typename Visit>
void ForEachPayload(ByteSource &source, const Chapter &chapter, std::vector<unsigned char> &buffer, Visit &&visit) {
  const TelemetryIndex &index = chapter.index;
  for (const Payload &payload : index.payloads.payloads) {
    if (payload.size > kMaxPayloadBytes) Fail(kTooLarge, static_cast<std::int64_t>(payload.offset));
    buffer.resize(payload.size);
    if (!source.Read(payload.offset, payload.size, buffer.data())) Fail(kCannotRead, static_cast<std::int64_t>(payload.offset));
    const std::int64_t base = chapter.start + index.editShiftNanoseconds;
    const std::int64_t start = base + TicksToNanoseconds(payload.start, index.timescale);
    const std::int64_t end = base + TicksToNanoseconds(payload.start + payload.duration, index.timescale);
    visit(payload, start, end - start);
  }
}

std::string LocalTime(std::uint64_t secondsSince1904) {
  if (secondsSince1904 <= static_cast<std::uint64_t>(kSecondsFrom1904To1970)) return {};
  const palvex_plugins::Instant at{static_cast<std::int64_t>(secondsSince1904) - kSecondsFrom1904To1970, 0};
  // The camera's wall clock stored as if it were UTC: shown without a zone.
  return palvex_plugins::FormatTime(at, 0, true).substr(0, 19);
}

RecordingFacts Facts(const std::vector<Chapter> &chapters, bool gpsTime) {
  const TelemetryIndex &first = chapters.front().index;
  RecordingFacts facts;
  const unsigned char *settings = first.settings.data();
  facts.cameraModel = FindText(settings, first.settings.size(), FourCc("MINF"));
  facts.firmware = FindText(settings, first.settings.size(), FourCc("FMWR"));
  if (facts.firmware.empty()) facts.firmware = first.firmware;
  if (first.creationTime) facts.localStartTime = LocalTime(*first.creationTime);
  facts.gpsTime = gpsTime;
  facts.chapters = static_cast<std::uint32_t>(chapters.size());
  for (const Chapter &chapter : chapters) {
    facts.payloadsCutOff += chapter.index.payloads.cutOff;
    facts.extraTelemetryTracks += chapter.index.telemetryTracks - 1;
  }
  return facts;
}

}  // namespace

ConversionSummary ConvertRecording(std::size_t chapterCount, const ChapterOpener &open,
                                   PX_PLUGIN::IMgjsonRoot_v1 *root) {
  ConversionSummary summary;
  std::vector<Chapter> chapters(chapterCount);
  std::vector<unsigned char> buffer;
  std::vector<std::int64_t> offsets;
  std::int64_t start = 0;
  // First pass: the index of every chapter, and the GPS times of fixed payloads.
  for (std::size_t c = 0; c < chapterCount; ++c) {
    ForChapter(c, [&] {
      const std::unique_ptr<ByteSource> source = open(c);
      chapters[c].index = ReadTelemetryIndex(*source);
      chapters[c].start = start;
      start += chapters[c].index.movieNanoseconds;
      ForEachPayload(*source, chapters[c], buffer, [&](const Payload &payload, std::int64_t at, std::int64_t) {
        bool found = false;
        WalkPayload(buffer.data(), buffer.size(), payload.offset, [&](const StreamBlock &block) {
          const StreamProperties &p = block.properties;
          if (found || !p.gpsTime || !p.gpsFix || *p.gpsFix < kFixed2d) return;
          if (const std::optional<std::int64_t> utc = ParseGpsTime(*p.gpsTime)) {
            offsets.push_back(*utc - at);
            found = true;
          }
        });
      });
      summary.bytesRead += source->bytesRead();
    });
  }
  const std::optional<std::int64_t> offset = MedianOffset(std::move(offsets));
  summary.gpsTime = offset.has_value();
  // Second pass: the samples, on the one time line.
  TelemetryDocument document(root, offset.value_or(0));
  for (std::size_t c = 0; c < chapterCount; ++c) {
    ForChapter(c, [&] {
      const std::unique_ptr<ByteSource> source = open(c);
      ForEachPayload(*source, chapters[c], buffer, [&](const Payload &payload, std::int64_t at, std::int64_t span) {
        ++summary.payloads;
        WalkPayload(buffer.data(), buffer.size(), payload.offset,
                    [&](const StreamBlock &block) { document.Add(block, buffer.data(), at, span); });
      });
      summary.bytesRead += source->bytesRead();
    });
  }
  summary.samples = document.SampleCount();
  if (summary.samples > 0) document.Finish(Facts(chapters, summary.gpsTime));
  return summary;
}

}  // namespace gpmf
