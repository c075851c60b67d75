#include "sample_tables.hpp"

#include <algorithm>
#include <limits>

#include "big_endian.hpp"
#include "gpmf_errors.hpp"

namespace gpmf {
namespace {

constexpr std::size_t kCountBytes = 4;

// A table's entry count, checked against the bytes its box holds.
std::uint32_t EntryCount(const TableBody &table, std::size_t entryBytes, std::size_t leadBytes = 0) {
  if (!table.present() || table.bytes.size() < leadBytes + kCountBytes) Fail(kBadSampleTable, table.offset);
  const std::uint32_t count = ReadU32(table.bytes.data() + leadBytes);
  if (count > (table.bytes.size() - leadBytes - kCountBytes) / entryBytes) Fail(kBadSampleTable, table.offset);
  return count;
}

std::vector<std::uint32_t> Sizes(const SampleTables &tables) {
  std::vector<std::uint32_t> sizes;
  if (tables.sampleSizes.present()) {
    const TableBody &stsz = tables.sampleSizes;
    if (stsz.bytes.size() < 8) Fail(kBadSampleTable, stsz.offset);
    const std::uint32_t common = ReadU32(stsz.bytes.data());
    const std::uint32_t count = ReadU32(stsz.bytes.data() + 4);
    if (count > kMaxPayloads) Fail(kTooLarge, stsz.offset);
    if (common != 0) return std::vector<std::uint32_t>(count, common);
    if (count > (stsz.bytes.size() - 8) / 4) Fail(kBadSampleTable, stsz.offset);
    sizes.reserve(count);
    for (std::uint32_t i = 0; i < count; ++i) sizes.push_back(ReadU32(stsz.bytes.data() + 8 + 4 * i));
    return sizes;
  }
  const TableBody &stz2 = tables.compactSizes;
  if (!stz2.present() || stz2.bytes.size() < 8) Fail(kBadSampleTable, stz2.offset);
  const unsigned bits = stz2.bytes[3];
  const std::uint32_t count = ReadU32(stz2.bytes.data() + 4);
  if (bits != 4 && bits != 8 && bits != 16) Fail(kBadSampleTable, stz2.offset);
  if (count > kMaxPayloads) Fail(kTooLarge, stz2.offset);
  if ((std::uint64_t{count} * bits + 7) / 8 > stz2.bytes.size() - 8) Fail(kBadSampleTable, stz2.offset);
  const unsigned char *packed = stz2.bytes.data() + 8;
  sizes.reserve(count);
  for (std::uint32_t i = 0; i < count; ++i) {
    if (bits == 16) sizes.push_back(ReadU16(packed + 2 * i));
    if (bits == 8) sizes.push_back(packed[i]);
    if (bits == 4) sizes.push_back(i % 2 == 0 ? packed[i / 2] >> 4 : packed[i / 2] & 0x0F);  // high nibble first
  }
  return sizes;
}

std::vector<std::uint64_t> ChunkOffsets(const SampleTables &tables) {
  const TableBody &table = tables.chunkOffsets;
  const std::size_t width = tables.wideOffsets ? 8 : 4;
  const std::uint32_t count = EntryCount(table, width);
  std::vector<std::uint64_t> offsets;
  offsets.reserve(count);
  for (std::uint32_t i = 0; i < count; ++i) {
    const unsigned char *entry = table.bytes.data() + kCountBytes + width * i;
    offsets.push_back(tables.wideOffsets ? ReadU64(entry) : ReadU32(entry));
  }
  return offsets;
}

// Places every sample in its chunk: each chunk's first sample at the chunk's offset, the
// following ones packed behind it. Runs of chunks share one samples-per-chunk entry.
void PlaceInChunks(const SampleTables &tables, std::vector<Payload> &payloads) {
  const std::vector<std::uint64_t> chunks = ChunkOffsets(tables);
  const TableBody &stsc = tables.sampleToChunk;
  const std::uint32_t runs = EntryCount(stsc, 12);
  std::size_t placed = 0;
  std::uint64_t previousFirst = 0;
  for (std::uint32_t i = 0; i < runs && placed < payloads.size(); ++i) {
    const unsigned char *entry = stsc.bytes.data() + kCountBytes + 12 * i;
    const std::uint32_t first = ReadU32(entry);
    const std::uint32_t perChunk = ReadU32(entry + 4);
    // Strictly increasing first chunks: a table that loops back is refused.
    if (first <= previousFirst || first > chunks.size()) Fail(kBadSampleTable, stsc.offset);
    previousFirst = first;
    std::uint64_t last = chunks.size();
    if (i + 1 < runs) last = std::min<std::uint64_t>(last, ReadU32(entry + 12) - std::uint64_t{1});
    for (std::uint64_t chunk = first; chunk <= last && placed < payloads.size(); ++chunk) {
      std::uint64_t offset = chunks[chunk - 1];
      for (std::uint32_t s = 0; s < perChunk && placed < payloads.size(); ++s) {
        payloads[placed].offset = offset;
        const std::uint32_t size = payloads[placed].size;
        // Saturates: an offset past the end of any file is caught as outside it.
        offset = offset > std::numeric_limits<std::uint64_t>::max() - size ? offset : offset + size;
        ++placed;
      }
    }
  }
  if (placed != payloads.size()) Fail(kBadSampleTable, stsc.offset);
}

void Time(const TableBody &stts, std::vector<Payload> &payloads) {
  const std::uint32_t runs = EntryCount(stts, 8);
  std::size_t timed = 0;
  std::uint64_t at = 0;
  for (std::uint32_t i = 0; i < runs && timed < payloads.size(); ++i) {
    const std::uint32_t count = ReadU32(stts.bytes.data() + kCountBytes + 8 * i);
    const std::uint32_t delta = ReadU32(stts.bytes.data() + kCountBytes + 8 * i + 4);
    for (std::uint32_t k = 0; k < count && timed < payloads.size(); ++k, ++timed) {
      payloads[timed].start = at;
      payloads[timed].duration = delta;
      at += delta;
    }
  }
  if (timed != payloads.size()) Fail(kBadSampleTable, stts.offset);
}

}  // namespace

PayloadList ListPayloads(const SampleTables &tables, std::uint64_t fileSize) {
  const std::vector<std::uint32_t> sizes = Sizes(tables);
  PayloadList list;
  list.payloads.resize(sizes.size());
  for (std::size_t k = 0; k < sizes.size(); ++k) list.payloads[k].size = sizes[k];
  Time(tables.timeToSample, list.payloads);
  PlaceInChunks(tables, list.payloads);
  // A recording cut short keeps the payloads written before the cut.
  for (std::size_t k = 0; k < list.payloads.size(); ++k) {
    const Payload &p = list.payloads[k];
    if (p.offset > fileSize || p.size > fileSize - p.offset) {
      if (k == 0) Fail(kPayloadOutside, static_cast<std::int64_t>(p.offset));
      list.cutOff = list.payloads.size() - k;
      list.payloads.resize(k);
      break;
    }
  }
  return list;
}

}  // namespace gpmf
