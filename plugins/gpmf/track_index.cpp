#include "track_index.hpp"

#include "big_endian.hpp"
#include "gpmf_errors.hpp"
#include "mp4_boxes.hpp"
#include "telemetry_clock.hpp"

namespace gpmf {
namespace {

// Index boxes are small (a few KB per hour of telemetry); these bounds only stop a hostile
// size from sizing memory.
constexpr std::uint64_t kMaxHeaderBody = 4096;
constexpr std::uint64_t kMaxTableBody = 16u << 20;
constexpr std::uint64_t kMaxSettingsBody = 1u << 20;
constexpr std::int64_t kEmptyEdit = -1;  // media_time of an edit that shows nothing

std::optional<Box> FindChild(ByteSource &source, const Box &parent, std::uint32_t type) {
  std::optional<Box> found;
  ForEachChild(source, parent, [&](const Box &box) {
    if (!found && box.type == type) found = box;
  });
  return found;
}

// A full box's body after version and flags; the version comes back separately.
std::vector<unsigned char> FullBody(ByteSource &source, const Box &box, std::uint64_t maxBytes,
                                    std::uint8_t &version) {
  std::vector<unsigned char> body = ReadBody(source, box, maxBytes);
  if (body.size() < 4) Fail(kCorruptBox, static_cast<std::int64_t>(box.offset));
  version = body[0];
  body.erase(body.begin(), body.begin() + 4);
  return body;
}

// mvhd and mdhd share their first fields: the clock and the duration on it.
struct Clock {
  std::uint64_t creation = 0;
  std::uint32_t timescale = 0;
  std::uint64_t duration = 0;
};
Clock ReadClock(ByteSource &source, const Box &box) {
  std::uint8_t version = 0;
  const std::vector<unsigned char> body = FullBody(source, box, kMaxHeaderBody, version);
  Clock clock;
  if (version == 1 && body.size() >= 28) {
    clock = {ReadU64(body.data()), ReadU32(body.data() + 16), ReadU64(body.data() + 20)};
  } else if (version == 0 && body.size() >= 16) {
    clock = {ReadU32(body.data()), ReadU32(body.data() + 8), ReadU32(body.data() + 12)};
  } else {
    Fail(kCorruptBox, static_cast<std::int64_t>(box.offset));
  }
  if (clock.timescale == 0) Fail(kZeroTimescale, static_cast<std::int64_t>(box.offset));
  return clock;
}

// The track qualifies by its handler ('meta') and its first sample entry ('gpmd'): the
// file-repair track has the same handler and another entry.
bool IsTelemetryTrack(ByteSource &source, const Box &mdia) {
  const std::optional<Box> hdlr = FindChild(source, mdia, FourCc("hdlr"));
  // Other tracks' boxes only need to be told apart, not read: a large one is not ours.
  if (!hdlr || hdlr->bodySize() > kMaxHeaderBody) return false;
  std::uint8_t version = 0;
  const std::vector<unsigned char> handler = FullBody(source, *hdlr, kMaxHeaderBody, version);
  if (handler.size() < 8 || ReadU32(handler.data() + 4) != FourCc("meta")) return false;
  const std::optional<Box> minf = FindChild(source, mdia, FourCc("minf"));
  const std::optional<Box> stbl = minf ? FindChild(source, *minf, FourCc("stbl")) : std::nullopt;
  const std::optional<Box> stsd = stbl ? FindChild(source, *stbl, FourCc("stsd")) : std::nullopt;
  if (!stsd || stsd->bodySize() > kMaxHeaderBody) return false;
  const std::vector<unsigned char> entries = FullBody(source, *stsd, kMaxHeaderBody, version);
  return entries.size() >= 12 && ReadU32(entries.data()) >= 1 && ReadU32(entries.data() + 8) == FourCc("gpmd");
}

TableBody Table(ByteSource &source, const Box &box) {
  std::uint8_t version = 0;
  return TableBody{FullBody(source, box, kMaxTableBody, version), static_cast<std::int64_t>(box.offset)};
}

SampleTables ReadTables(ByteSource &source, const Box &stbl) {
  SampleTables tables;
  ForEachChild(source, stbl, [&](const Box &box) {
    if (box.type == FourCc("stts")) tables.timeToSample = Table(source, box);
    if (box.type == FourCc("stsc")) tables.sampleToChunk = Table(source, box);
    if (box.type == FourCc("stsz")) tables.sampleSizes = Table(source, box);
    if (box.type == FourCc("stz2")) tables.compactSizes = Table(source, box);
    if (box.type == FourCc("stco") || box.type == FourCc("co64")) {
      tables.chunkOffsets = Table(source, box);
      tables.wideOffsets = box.type == FourCc("co64");
    }
  });
  return tables;
}

// An initial empty edit delays the track; a first edit starting inside the media moves
// it earlier.
std::int64_t EditShift(ByteSource &source, const Box &trak, std::uint32_t movieScale, std::uint32_t trackScale) {
  const std::optional<Box> edts = FindChild(source, trak, FourCc("edts"));
  const std::optional<Box> elst = edts ? FindChild(source, *edts, FourCc("elst")) : std::nullopt;
  if (!elst) return 0;
  std::uint8_t version = 0;
  const std::vector<unsigned char> body = FullBody(source, *elst, kMaxTableBody, version);
  const std::size_t entryBytes = version == 1 ? 20 : 12;
  if (body.size() < 4 || ReadU32(body.data()) == 0 || body.size() < 4 + entryBytes) return 0;
  const unsigned char *entry = body.data() + 4;
  const std::uint64_t segment = version == 1 ? ReadU64(entry) : ReadU32(entry);
  const std::int64_t mediaTime = version == 1 ? static_cast<std::int64_t>(ReadU64(entry + 8))
                                              : static_cast<std::int32_t>(ReadU32(entry + 4));
  if (mediaTime == kEmptyEdit) {
    return TicksToNanoseconds(segment, movieScale);
  }
  if (mediaTime > 0) return -TicksToNanoseconds(static_cast<std::uint64_t>(mediaTime), trackScale);
  return 0;
}

void ReadUserData(ByteSource &source, const Box &udta, TelemetryIndex &index) {
  ForEachChild(source, udta, [&](const Box &box) {
    if (box.type == FourCc("GPMF") && index.settings.empty() && box.bodySize() <= kMaxSettingsBody) {
      index.settings = ReadBody(source, box, kMaxSettingsBody);
    }
    if (box.type == FourCc("FIRM") && index.firmware.empty() && box.bodySize() <= kMaxHeaderBody) {
      const std::vector<unsigned char> text = ReadBody(source, box, kMaxHeaderBody);
      for (const unsigned char c : text) {
        if (c == 0) break;
        index.firmware.push_back(static_cast<char>(c));
      }
    }
  });
}

}  // namespace

bool LooksLikeIsoMedia(ByteSource &source) {
  static constexpr std::uint32_t kTopLevel[] = {FourCc("ftyp"), FourCc("moov"), FourCc("mdat"), FourCc("free"),
                                                FourCc("skip"), FourCc("wide"), FourCc("pnot"), FourCc("uuid")};
  unsigned char header[8];
  if (!source.Read(0, sizeof header, header)) return false;
  bool known = false;
  for (const std::uint32_t type : kTopLevel) known = known || ReadU32(header + 4) == type;
  if (!known) return false;
  try {
    ReadBox(source, 0, source.size(), true);
    return true;
  } catch (const PX_PLUGIN::PX_PluginException &) {
    return false;
  }
}

TelemetryIndex ReadTelemetryIndex(ByteSource &source) {
  // Stops at the index: the media data of a recording cut short may run past the end.
  std::optional<Box> moov;
  for (std::uint64_t at = 0; at < source.size() && !moov;) {
    const Box box = ReadBox(source, at, source.size(), true);
    if (box.type == FourCc("moov")) moov = box;
    at = box.end;
  }
  if (!moov) Fail(kNoIndex);
  TelemetryIndex index;
  const std::optional<Box> mvhd = FindChild(source, *moov, FourCc("mvhd"));
  if (!mvhd) Fail(kNoIndex, static_cast<std::int64_t>(moov->offset));
  const Clock movie = ReadClock(source, *mvhd);
  index.movieNanoseconds = TicksToNanoseconds(movie.duration, movie.timescale);
  index.creationTime = movie.creation;
  ForEachChild(source, *moov, [&](const Box &box) {
    if (box.type == FourCc("udta")) ReadUserData(source, box, index);
    if (box.type != FourCc("trak")) return;
    const std::optional<Box> mdia = FindChild(source, box, FourCc("mdia"));
    if (!mdia || !IsTelemetryTrack(source, *mdia)) return;
    if (++index.telemetryTracks > 1) return;
    const std::optional<Box> mdhd = FindChild(source, *mdia, FourCc("mdhd"));
    if (!mdhd) Fail(kCorruptBox, static_cast<std::int64_t>(mdia->offset));
    index.timescale = ReadClock(source, *mdhd).timescale;
    const Box minf = *FindChild(source, *mdia, FourCc("minf"));
    index.payloads = ListPayloads(ReadTables(source, *FindChild(source, minf, FourCc("stbl"))), source.size());
    index.editShiftNanoseconds = EditShift(source, box, movie.timescale, index.timescale);
  });
  if (index.telemetryTracks == 0) Fail(kNoTelemetryTrack);
  return index;
}

}  // namespace gpmf
