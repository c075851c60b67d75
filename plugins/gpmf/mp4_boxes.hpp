// Walking ISO media boxes by their sizes: headers only, bodies read on demand and only
// when bounded, so that the media data is skipped, never read.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "byte_source.hpp"

namespace gpmf {

struct Box {
  std::uint32_t type = 0;
  std::uint64_t offset = 0;      // of the header
  std::uint64_t bodyOffset = 0;  // after size, type, large size and extended type
  std::uint64_t end = 0;         // one past the last byte
  std::uint64_t bodySize() const { return end - bodyOffset; }
};

// The box at offset inside [offset, limit). A size of 0 runs to limit, which only a
// top-level box may do (openEndAllowed). Throws kCorruptBox for a size below the
// header or past limit, kCannotRead when the header itself is cut.
Box ReadBox(ByteSource &source, std::uint64_t offset, std::uint64_t limit, bool openEndAllowed);

// Calls visit for every box in [begin, end), in file order.
void ForEachBox(ByteSource &source, std::uint64_t begin, std::uint64_t end, bool topLevel,
                const std::function<void(const Box &)> &visit);
inline void ForEachChild(ByteSource &source, const Box &parent, const std::function<void(const Box &)> &visit) {
  ForEachBox(source, parent.bodyOffset, parent.end, false, visit);
}

// The body of a box; kTooLarge beyond maxBytes, so no size from the file sizes memory alone.
std::vector<unsigned char> ReadBody(ByteSource &source, const Box &box, std::uint64_t maxBytes);

}  // namespace gpmf
