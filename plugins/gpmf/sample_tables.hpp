// The telemetry track's sample tables, and the offset, size and time of every payload
// they describe (one sample = one payload).
#pragma once

#include <cstdint>
#include <vector>

namespace gpmf {

// A table box's body (after version and flags) and the file offset of its box, for errors.
struct TableBody {
  std::vector<unsigned char> bytes;
  std::int64_t offset = -1;
  bool present() const { return offset >= 0; }
};

struct SampleTables {
  TableBody timeToSample;    // stts
  TableBody sampleToChunk;   // stsc
  TableBody sampleSizes;     // stsz
  TableBody compactSizes;    // stz2 (instead of stsz)
  TableBody chunkOffsets;    // stco, or co64 when wideOffsets
  bool wideOffsets = false;
};

struct Payload {
  std::uint64_t offset = 0;
  std::uint32_t size = 0;
  std::uint64_t start = 0;     // track ticks
  std::uint32_t duration = 0;  // track ticks
};

struct PayloadList {
  std::vector<Payload> payloads;
  std::uint64_t cutOff = 0;  // payloads past the end of the file (a recording cut short)
};

// More payloads than this is refused (kTooLarge): at one per second, twelve days.
constexpr std::uint32_t kMaxPayloads = 1u << 20;

// Throws kBadSampleTable for tables that contradict each other or their boxes,
// kPayloadOutside when not even the first payload lies inside a file of fileSize bytes.
PayloadList ListPayloads(const SampleTables &tables, std::uint64_t fileSize);

}  // namespace gpmf
