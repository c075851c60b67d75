// Generated test inputs: every byte here follows the format notes' recipe.
#include "bundled_plugins/gpmf/mp4_builder.hpp"

#include <fstream>
#include <limits>

namespace gpmf::testing {
namespace {

constexpr std::uint64_t kMaxU32 = std::numeric_limits<std::uint32_t>::max();

std::string Box(std::string_view type, std::string_view body) {
  return U32(static_cast<std::uint32_t>(8 + body.size())) + std::string(type) + std::string(body);
}
std::string FullBox(std::string_view type, std::uint8_t version, std::uint32_t flags, std::string_view body) {
  return Box(type, U32((std::uint32_t{version} << 24) | flags) + std::string(body));
}
std::string Zeros(std::size_t count) { return std::string(count, '\0'); }
std::string Matrix() { return U32(0x00010000) + Zeros(12) + U32(0x00010000) + Zeros(12) + U32(0x40000000); }

struct Tables {
  std::vector<std::uint32_t> sizes;
  std::vector<std::pair<std::uint32_t, std::uint32_t>> durations;  // stts runs
  std::vector<std::pair<std::uint32_t, std::uint32_t>> chunkRuns;
  std::vector<std::uint64_t> chunkOffsets;
  bool wide = false;
  bool compact = false;
};

std::string Track(std::uint32_t id, std::string_view format, const Tables &t, std::uint32_t timescale,
                  std::uint64_t duration, std::uint32_t emptyEdit = 0) {
  const std::string tkhd = FullBox("tkhd", 0, 7, U32(0) + U32(0) + U32(id) + U32(0) + U32(static_cast<std::uint32_t>(duration)) +
                                                     Zeros(8) + Zeros(8) + Matrix() + U32(0) + U32(0));
  const std::string mdhd = FullBox("mdhd", 0, 0, U32(0) + U32(0) + U32(timescale) +
                                                     U32(static_cast<std::uint32_t>(duration)) + U16(0x55C4) + U16(0));
  const std::string hdlr = FullBox("hdlr", 0, 0, U32(0) + "meta" + Zeros(12) + std::string("Telemetry\0", 10));
  const std::string dinf = Box("dinf", FullBox("dref", 0, 0, U32(1) + FullBox("url ", 0, 1, "")));
  const std::string stsd = FullBox("stsd", 0, 0, U32(1) + U32(20) + std::string(format) + Zeros(6) + U16(1) + U32(0));
  std::string stts = U32(static_cast<std::uint32_t>(t.durations.size()));
  for (const auto &[count, delta] : t.durations) stts += U32(count) + U32(delta);
  std::string stsc = U32(static_cast<std::uint32_t>(t.chunkRuns.size()));
  for (const auto &[first, perChunk] : t.chunkRuns) stsc += U32(first) + U32(perChunk) + U32(1);
  std::string stsz = t.compact ? Zeros(3) + "\x10" : U32(0);
  stsz += U32(static_cast<std::uint32_t>(t.sizes.size()));
  for (const std::uint32_t size : t.sizes) stsz += t.compact ? U16(static_cast<std::uint16_t>(size)) : U32(size);
  std::string stco = U32(static_cast<std::uint32_t>(t.chunkOffsets.size()));
  for (const std::uint64_t offset : t.chunkOffsets) stco += t.wide ? U64(offset) : U32(static_cast<std::uint32_t>(offset));
  const std::string stbl = Box("stbl", stsd + FullBox("stts", 0, 0, stts) + FullBox("stsc", 0, 0, stsc) +
                                           FullBox(t.compact ? "stz2" : "stsz", 0, 0, stsz) + FullBox(t.wide ? "co64" : "stco", 0, 0, stco));
  const std::string minf = Box("minf", FullBox("nmhd", 0, 0, "") + dinf + stbl);
  std::string edts;
  if (emptyEdit != 0) {
    edts = Box("edts", FullBox("elst", 0, 0, U32(2) + U32(emptyEdit) + U32(0xFFFFFFFF) + U32(0x00010000) +
                                                 U32(static_cast<std::uint32_t>(duration)) + U32(0) + U32(0x00010000)));
  }
  return Box("trak", tkhd + edts + Box("mdia", mdhd + hdlr + minf));
}

std::string Moov(const Mp4Recipe &recipe, const Tables &tables, std::uint64_t duration) {
  const std::uint32_t tracks = recipe.repairTrackFirst ? 2 : 1;
  const std::uint32_t creation = recipe.creationTime;
  std::string moov = FullBox("mvhd", 0, 0, U32(creation) + U32(creation) + U32(recipe.timescale) +
                                               U32(static_cast<std::uint32_t>(duration + recipe.movieTicksExtra)) +
                                               U32(0x00010000) + U16(0x0100) + Zeros(10) + Matrix() + Zeros(24) +
                                               U32(tracks + 1));
  // The file-repair track: same handler, another sample entry, no samples.
  if (recipe.repairTrackFirst) moov += Track(1, "fdsc", Tables{}, recipe.timescale, duration);
  moov += Track(tracks, "gpmd", tables, recipe.timescale, duration, recipe.emptyEditTicks);
  if (!recipe.settings.empty()) moov += Box("udta", Box("GPMF", recipe.settings));
  return Box("moov", moov);
}

// Which payloads each chunk holds, as the stsc runs say.
std::vector<std::vector<std::size_t>> Chunks(const Mp4Recipe &recipe) {
  std::vector<std::vector<std::size_t>> chunks;
  std::size_t next = 0;
  const auto &runs = recipe.chunkRuns;
  for (std::size_t r = 0; r < runs.size() && next < recipe.payloads.size(); ++r) {
    const bool last = r + 1 == runs.size();
    for (std::uint32_t c = runs[r].first; (last || c < runs[r + 1].first) && next < recipe.payloads.size(); ++c) {
      chunks.emplace_back();
      for (std::uint32_t s = 0; s < runs[r].second && next < recipe.payloads.size(); ++s) chunks.back().push_back(next++);
      if (last && runs[r].second == 0) return chunks;
    }
  }
  return chunks;
}

}  // namespace

std::string U16(std::uint16_t v) { return {static_cast<char>(v >> 8), static_cast<char>(v)}; }
std::string U32(std::uint32_t v) { return U16(static_cast<std::uint16_t>(v >> 16)) + U16(static_cast<std::uint16_t>(v)); }
std::string U64(std::uint64_t v) { return U32(static_cast<std::uint32_t>(v >> 32)) + U32(static_cast<std::uint32_t>(v)); }

std::string Klv(std::string_view key, char type, std::uint8_t sampleBytes, std::uint16_t repeat, std::string_view value) {
  std::string klv = std::string(key) + type + static_cast<char>(sampleBytes) + U16(repeat) + std::string(value);
  klv.resize((klv.size() + 3) / 4 * 4, '\0');
  return klv;
}
std::string Nest(std::string_view key, std::string_view children) {
  return Klv(key, '\0', 1, static_cast<std::uint16_t>(children.size()), children);
}
std::string Int16s(std::initializer_list<int> values) {
  std::string bytes;
  for (const int v : values) bytes += U16(static_cast<std::uint16_t>(v));
  return bytes;
}
std::string Int32s(std::initializer_list<std::int64_t> values) {
  std::string bytes;
  for (const std::int64_t v : values) bytes += U32(static_cast<std::uint32_t>(v));
  return bytes;
}

namespace {
std::string AccelStream(int k) {
  std::string samples;
  for (int j = 0; j < 4; ++j) samples += Int16s({100 * (4 * k + j), -50 * (4 * k + j), 981});
  return Nest("STRM", Klv("TSMP", 'L', 4, 1, U32(4 * (k + 1))) + Klv("STNM", 'c', 1, 13, "Accelerometer") +
                          Klv("SIUN", 'c', 4, 1, "m/s\xB2") + Klv("SCAL", 's', 2, 1, Int16s({100})) +
                          Klv("ACCL", 's', 6, 4, samples));
}
std::string GpsStream(int k, std::uint32_t fix, std::string gpsTime) {
  if (gpsTime.empty()) gpsTime = "24011510300" + std::to_string(k) + ".000";
  std::string samples;
  for (int j = 0; j < 2; ++j) {
    const int m = 2 * k + j;
    samples += Int32s({473769000 + 1000 * m, 85417000 + 1000 * m, 408000 + 1000 * m, 5000, 500});
  }
  return Nest("STRM", Klv("GPSF", 'L', 4, 1, U32(fix)) + Klv("GPSU", 'U', 16, 1, gpsTime) +
                          Klv("GPSP", 'S', 2, 1, U16(150)) + Klv("UNIT", 'c', 3, 5, std::string("degdegm\0\0m/sm/s", 15)) +
                          Klv("SCAL", 'l', 4, 5, Int32s({10000000, 10000000, 1000, 1000, 100})) +
                          Klv("GPS5", 'l', 20, 2, samples));
}
std::string CameraDevice(const std::string &streams) {
  return Nest("DEVC", Klv("DVID", 'L', 4, 1, U32(1)) + Klv("DVNM", 'c', 1, 6, "Camera") + streams);
}
}  // namespace

std::string RecipePayload(int k, std::uint32_t gpsFix, std::string gpsTime) {
  return CameraDevice(AccelStream(k) + GpsStream(k, gpsFix, std::move(gpsTime)));
}

std::string ExamplePayload(int k) {
  std::string samples;
  for (int j = 0; j < 4; ++j) samples += Int16s({10 * j - 15, 3 * k, -j});
  const std::string gyro = Nest("STRM", Klv("STNM", 'c', 1, 9, "Gyroscope") + Klv("SIUN", 'c', 5, 1, "rad/s") +
                                            Klv("ORIN", 'c', 1, 3, "ZXY") + Klv("TMPC", 'f', 4, 1, U32(0x42140000)) +
                                            Klv("SCAL", 's', 2, 1, Int16s({100})) + Klv("GYRO", 's', 6, 4, samples));
  return CameraDevice(AccelStream(k) + gyro + GpsStream(k, 3, ""));
}

std::string Mp4Image::Bytes() const {
  std::string bytes(size, '\0');
  for (const auto &[offset, piece] : pieces) bytes.replace(offset, piece.size(), piece);
  return bytes;
}

bool Mp4Image::Write(const std::string &path) const {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  for (const auto &[offset, piece] : pieces) {
    out.seekp(static_cast<std::streamoff>(offset));
    out.write(piece.data(), static_cast<std::streamsize>(piece.size()));
  }
  return static_cast<bool>(out);
}

std::uint64_t Mp4Image::PieceBytes() const {
  std::uint64_t bytes = 0;
  for (const auto &piece : pieces) bytes += piece.second.size();
  return bytes;
}

Mp4Image BuildMp4(const Mp4Recipe &recipe) {
  Tables tables;
  for (const std::string &payload : recipe.payloads) tables.sizes.push_back(static_cast<std::uint32_t>(payload.size()));
  const std::uint32_t n = static_cast<std::uint32_t>(recipe.payloads.size());
  std::uint64_t duration = std::uint64_t{recipe.payloadTicks} * n;
  if (recipe.lastPayloadTicks != 0 && n > 0) {
    tables.durations = {{n - 1, recipe.payloadTicks}, {1, recipe.lastPayloadTicks}};
    if (n == 1) tables.durations.erase(tables.durations.begin());
    duration = duration - recipe.payloadTicks + recipe.lastPayloadTicks;
  } else {
    tables.durations = {{n, recipe.payloadTicks}};
  }
  tables.chunkRuns = recipe.chunkRuns;
  tables.wide = recipe.wideOffsets;
  tables.compact = recipe.compactSizes;
  const std::vector<std::vector<std::size_t>> chunks = Chunks(recipe);
  std::uint64_t mdatBody = 0;
  for (const auto &chunk : chunks) {
    mdatBody += recipe.videoBytesPerChunk;
    for (const std::size_t p : chunk) mdatBody += recipe.payloads[p].size();
  }
  const bool largeMdat = recipe.largeMdat || mdatBody + 8 > kMaxU32;
  const std::uint64_t mdatHeader = largeMdat ? 16 : 8;
  const std::string ftyp = Box("ftyp", "mp41" + U32(0) + "mp41");
  Mp4Image image;
  std::string moov;
  for (int attempt = 0; attempt < 2; ++attempt) {  // again with co64 when an offset needs it
    tables.chunkOffsets.assign(chunks.size(), 0);
    moov = Moov(recipe, tables, duration);
    std::uint64_t at = ftyp.size() + (recipe.moovFirst ? moov.size() : 0) + mdatHeader;
    image.pieces.clear();
    for (std::size_t c = 0; c < chunks.size(); ++c) {
      at += recipe.videoBytesPerChunk;
      tables.chunkOffsets[c] = at;
      for (const std::size_t p : chunks[c]) {
        image.pieces.emplace_back(at, recipe.payloads[p]);
        at += recipe.payloads[p].size();
      }
    }
    if (tables.wide || at <= kMaxU32) break;
    tables.wide = true;
  }
  moov = Moov(recipe, tables, duration);
  const std::uint64_t mdatAt = ftyp.size() + (recipe.moovFirst ? moov.size() : 0);
  const std::string mdat = largeMdat ? U32(1) + "mdat" + U64(mdatBody + 16) : U32(static_cast<std::uint32_t>(mdatBody + 8)) + "mdat";
  image.pieces.emplace_back(0, ftyp);
  image.pieces.emplace_back(mdatAt, mdat);
  image.pieces.emplace_back(recipe.moovFirst ? ftyp.size() : mdatAt + mdatHeader + mdatBody, moov);
  image.size = ftyp.size() + moov.size() + mdatHeader + mdatBody;
  return image;
}

Mp4Recipe NotesRecipe() {
  Mp4Recipe recipe;
  for (int k = 0; k < 3; ++k) recipe.payloads.push_back(RecipePayload(k));
  return recipe;
}

Mp4Image ExampleMp4() {
  Mp4Recipe recipe;
  for (int k = 0; k < 3; ++k) recipe.payloads.push_back(ExamplePayload(k));
  recipe.settings = Nest("DEVC", Klv("DVID", 'L', 4, 1, U32(1)) + Klv("FMWR", 'c', 1, 9, "PX1.01.00") +
                                     Klv("MINF", 'c', 1, 12, "ACTION CAM 1"));
  recipe.creationTime = 3788163000;  // 2024-01-15 11:30:00 on the camera's clock
  return BuildMp4(recipe);
}

}  // namespace gpmf::testing
