// Writes MP4 files with a telemetry track for the tests, the benchmark, the fuzz seeds and
// the bundled example: the boxes, sample tables (stsc runs, several payloads per chunk,
// co64, a large mdat header), and the KLV payloads, byte by byte from the format notes.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace gpmf::testing {

// Big-endian numbers, as bytes.
std::string U16(std::uint16_t value);
std::string U32(std::uint32_t value);
std::string U64(std::uint64_t value);

// One KLV: key, type, structure size, repeat and the value (structure size x repeat
// bytes), padded to four bytes.
std::string Klv(std::string_view key, char type, std::uint8_t sampleBytes, std::uint16_t repeat, std::string_view value);
// A nest of KLVs, written as cameras do (structure size 1, repeat = byte count).
std::string Nest(std::string_view key, std::string_view children);
std::string Int16s(std::initializer_list<int> values);
std::string Int32s(std::initializer_list<std::int64_t> values);

// The payload of the format notes' recipe, k = 0, 1, 2: a "Camera" device with 4 ACCL
// samples and 2 GPS5 samples. gpsFix and gpsTime replace the GPSF value and GPSU text.
std::string RecipePayload(int k, std::uint32_t gpsFix = 3, std::string gpsTime = "");

// The recipe's payloads plus a gyroscope stream with its stored axis order.
std::string ExamplePayload(int k);

struct Mp4Recipe {
  std::vector<std::string> payloads;
  std::uint32_t payloadTicks = 1001;     // every payload's duration, telemetry ticks
  std::uint32_t lastPayloadTicks = 0;    // 0: as the others
  std::uint32_t timescale = 1000;        // telemetry and movie clocks
  // stsc (first chunk, payloads per chunk); the chunks follow from it.
  std::vector<std::pair<std::uint32_t, std::uint32_t>> chunkRuns{{1, 1}};
  bool wideOffsets = false;              // co64 (forced when an offset needs it)
  bool compactSizes = false;             // stz2 with 16-bit sizes instead of stsz
  bool largeMdat = false;                // 16-byte mdat header (forced when needed)
  bool moovFirst = false;
  bool repairTrackFirst = false;         // a 'meta' track with an 'fdsc' entry before ours
  std::uint64_t videoBytesPerChunk = 0;  // media bytes before each chunk, written as a hole
  std::string settings;                  // udta GPMF payload; empty: no udta
  std::uint32_t creationTime = 0;        // mvhd, seconds since 1904
  std::uint64_t movieTicksExtra = 0;     // movie duration beyond the telemetry's
  std::uint32_t emptyEditTicks = 0;      // an edit list delaying the telemetry by this much
};

// A file as pieces at offsets; the bytes between pieces are a hole (zeros).
struct Mp4Image {
  std::vector<std::pair<std::uint64_t, std::string>> pieces;
  std::uint64_t size = 0;
  std::string Bytes() const;                  // the whole file (small files only)
  bool Write(const std::string &path) const;  // seeks over holes: sparse where the file system allows
  std::uint64_t PieceBytes() const;           // bytes that are not hole
};

Mp4Image BuildMp4(const Mp4Recipe &recipe);

// The notes' 1414-byte file and its variants.
Mp4Recipe NotesRecipe();
// The bundled example (examples/action_cam.mp4).
Mp4Image ExampleMp4();

}  // namespace gpmf::testing
