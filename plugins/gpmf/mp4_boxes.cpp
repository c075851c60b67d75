#include "mp4_boxes.hpp"

#include "big_endian.hpp"
#include "gpmf_errors.hpp"

namespace gpmf {

namespace {
constexpr std::uint64_t kHeaderBytes = 8;
constexpr std::uint64_t kLargeSizeBytes = 8;
constexpr std::uint64_t kExtendedTypeBytes = 16;
}  // namespace

Box ReadBox(ByteSource &source, std::uint64_t offset, std::uint64_t limit, bool openEndAllowed) {
  unsigned char header[kHeaderBytes + kLargeSizeBytes];
  if (limit < offset || limit - offset < kHeaderBytes) Fail(kCorruptBox, static_cast<std::int64_t>(offset));
  if (!source.Read(offset, kHeaderBytes, header)) Fail(kCannotRead, static_cast<std::int64_t>(offset));
  Box box;
  box.offset = offset;
  box.type = ReadU32(header + 4);
  std::uint64_t size = ReadU32(header);
  std::uint64_t headerBytes = kHeaderBytes;
  if (size == 1) {
    if (limit - offset < kHeaderBytes + kLargeSizeBytes ||
        !source.Read(offset + kHeaderBytes, kLargeSizeBytes, header + kHeaderBytes)) {
      Fail(kCorruptBox, static_cast<std::int64_t>(offset));
    }
    size = ReadU64(header + kHeaderBytes);
    headerBytes += kLargeSizeBytes;
  } else if (size == 0) {
    // An open box (a recording cut before its index was closed) runs to the end.
    if (!openEndAllowed) Fail(kCorruptBox, static_cast<std::int64_t>(offset));
    size = limit - offset;
  }
  if (box.type == FourCc("uuid")) headerBytes += kExtendedTypeBytes;
  if (size < headerBytes || size > limit - offset) Fail(kCorruptBox, static_cast<std::int64_t>(offset));
  box.bodyOffset = offset + headerBytes;
  box.end = offset + size;
  return box;
}

void ForEachBox(ByteSource &source, std::uint64_t begin, std::uint64_t end, bool topLevel,
                const std::function<void(const Box &)> &visit) {
  for (std::uint64_t at = begin; at < end;) {
    const Box box = ReadBox(source, at, end, topLevel);
    visit(box);
    at = box.end;
  }
}

std::vector<unsigned char> ReadBody(ByteSource &source, const Box &box, std::uint64_t maxBytes) {
  if (box.bodySize() > maxBytes) Fail(kTooLarge, static_cast<std::int64_t>(box.offset));
  std::vector<unsigned char> body(static_cast<std::size_t>(box.bodySize()));
  if (!source.Read(box.bodyOffset, body.size(), body.data())) Fail(kCannotRead, static_cast<std::int64_t>(box.offset));
  return body;
}

}  // namespace gpmf
