// Compaction of "dataDynamicSamples": the array's text without the white space between
// its tokens, streamed in bounded chunks so that the input is never copied whole.
// White space inside strings is kept; nothing else changes, so the compacted text is
// exactly as long as the original without its white space.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

namespace ns_sensor {

// The most bytes handed to the sink at once.
inline constexpr std::size_t kCompactionChunkBytes = 0x100000;

// Where one item of the array begins.
struct CompactedItem {
  std::uint64_t offset = 0;      // in the compacted text
  std::uint64_t fileOffset = 0;  // in the input file
};

struct CompactedArray {
  std::uint64_t size = 0;            // bytes of compacted text
  std::vector<CompactedItem> items;  // the array's items, in order
};

// Compacts `array`, the text of one JSON array from its "[" to its "]" that the scanner
// has accepted, and hands the compacted text to `sink` in chunks. fileOffset is the
// offset of the "[" in its file.
CompactedArray CompactJsonArray(std::string_view array, std::uint64_t fileOffset,
                                const std::function<void(std::string_view)> &sink);

}  // namespace ns_sensor
