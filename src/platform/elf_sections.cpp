#include "platform/elf_sections.hpp"

#include <cstdint>

namespace palvex::platform {
namespace {

constexpr std::uint8_t kMagic[] = {0x7F, 'E', 'L', 'F'};
constexpr std::uint64_t kClassAt = 4;  // EI_CLASS
constexpr std::uint64_t kDataAt = 5;   // EI_DATA
constexpr std::uint64_t kClass32 = 1;
constexpr std::uint64_t kClass64 = 2;
constexpr std::uint64_t kLittleEndian = 1;
constexpr std::uint64_t kBigEndian = 2;

constexpr std::uint64_t kUndefinedSection = 0;    // SHN_UNDEF
constexpr std::uint64_t kExtendedIndex = 0xFFFF;  // SHN_XINDEX: the real index is in section 0
constexpr std::uint64_t kNoBits = 8;              // SHT_NOBITS

// Where the fields this reader needs sit, for each class. File offsets and sizes are words:
// 4 bytes in ELF32, 8 in ELF64.
struct Layout {
  std::uint64_t headerSize;
  std::uint64_t wordSize;
  std::uint64_t tableOffsetAt;  // e_shoff
  std::uint64_t entrySizeAt;    // e_shentsize
  std::uint64_t entryCountAt;   // e_shnum
  std::uint64_t namesIndexAt;   // e_shstrndx
  std::uint64_t entrySize;      // the size of one section header
  std::uint64_t nameAt;         // sh_name
  std::uint64_t typeAt;         // sh_type
  std::uint64_t offsetAt;       // sh_offset
  std::uint64_t sizeAt;         // sh_size
  std::uint64_t linkAt;         // sh_link
};

constexpr Layout kElf32{52, 4, 32, 46, 48, 50, 40, 0, 4, 16, 20, 24};
constexpr Layout kElf64{64, 8, 40, 58, 60, 62, 64, 0, 4, 24, 32, 40};

struct SectionHeader {
  std::uint64_t name = 0;
  std::uint64_t type = 0;
  std::uint64_t offset = 0;
  std::uint64_t size = 0;
  std::uint64_t link = 0;
};

// Bounds-checked reads of the image's integers in its byte order. Every offset and size
// comes from the file, so every range is checked in a form whose arithmetic cannot wrap.
class ImageReader {
 public:
  ImageReader(std::span<const std::byte> image, bool bigEndian) : image_(image), bigEndian_(bigEndian) {}

  bool Holds(std::uint64_t offset, std::uint64_t length) const {
    return offset <= image_.size() && length <= image_.size() - offset;
  }

  std::uint64_t size() const { return image_.size(); }

  // The caller has checked Holds(offset, width).
  std::uint64_t Unsigned(std::uint64_t offset, std::uint64_t width) const {
    std::uint64_t value = 0;
    for (std::uint64_t i = 0; i < width; ++i) {
      const std::uint64_t at = offset + (bigEndian_ ? i : width - 1 - i);
      value = (value << 8) | std::to_integer<std::uint64_t>(image_[static_cast<std::size_t>(at)]);
    }
    return value;
  }

  // The caller has checked Holds(offset, length).
  std::span<const std::byte> Bytes(std::uint64_t offset, std::uint64_t length) const {
    return image_.subspan(static_cast<std::size_t>(offset), static_cast<std::size_t>(length));
  }

  // Whether the NUL-terminated text at offset, within the part [0, limit) of the image
  // starting at base, is exactly name. Looks at no more than name.size() + 1 bytes.
  bool TextEquals(std::uint64_t base, std::uint64_t limit, std::uint64_t offset, std::string_view name) const {
    if (offset >= limit || name.size() >= limit - offset) return false;
    const std::uint64_t start = base + offset;
    for (std::size_t i = 0; i < name.size(); ++i) {
      if (std::to_integer<char>(image_[static_cast<std::size_t>(start + i)]) != name[i]) return false;
    }
    return image_[static_cast<std::size_t>(start + name.size())] == std::byte{0};
  }

 private:
  std::span<const std::byte> image_;
  bool bigEndian_;
};

// The section header table, once checked to lie wholly in the image.
class SectionTable {
 public:
  SectionTable(const ImageReader &reader, const Layout &layout) : reader_(reader), layout_(layout) {}

  // Reads the table's place and size from the file header; false when they do not
  // describe a table inside the image.
  bool Locate() {
    const std::uint64_t tableOffset = reader_.Unsigned(layout_.tableOffsetAt, layout_.wordSize);
    const std::uint64_t entrySize = reader_.Unsigned(layout_.entrySizeAt, 2);
    // A stride other than the header's own size is a file this reader cannot trust.
    if (tableOffset == 0 || entrySize != layout_.entrySize) return false;
    if (!reader_.Holds(tableOffset, layout_.entrySize)) return false;
    offset_ = tableOffset;
    count_ = 1;  // lets Header(0) be read for the extended count below
    std::uint64_t count = reader_.Unsigned(layout_.entryCountAt, 2);
    // Files with 0xFF00 sections or more keep the real count in section 0's size.
    if (count == 0) count = Header(0).size;
    if (count == 0 || count > (reader_.size() - offset_) / layout_.entrySize) return false;
    count_ = count;
    return true;
  }

  std::uint64_t count() const { return count_; }

  // The index of the section that holds the section names, or none.
  std::optional<std::uint64_t> NamesIndex() const {
    std::uint64_t index = reader_.Unsigned(layout_.namesIndexAt, 2);
    if (index == kExtendedIndex) index = Header(0).link;
    if (index == kUndefinedSection || index >= count_) return std::nullopt;
    return index;
  }

  // index < count(): the whole entry lies in the image.
  SectionHeader Header(std::uint64_t index) const {
    const std::uint64_t at = offset_ + index * layout_.entrySize;
    SectionHeader header;
    header.name = reader_.Unsigned(at + layout_.nameAt, 4);
    header.type = reader_.Unsigned(at + layout_.typeAt, 4);
    header.offset = reader_.Unsigned(at + layout_.offsetAt, layout_.wordSize);
    header.size = reader_.Unsigned(at + layout_.sizeAt, layout_.wordSize);
    header.link = reader_.Unsigned(at + layout_.linkAt, 4);
    return header;
  }

 private:
  const ImageReader &reader_;
  const Layout &layout_;
  std::uint64_t offset_ = 0;
  std::uint64_t count_ = 0;
};

bool HasMagic(std::span<const std::byte> image) {
  if (image.size() <= kDataAt) return false;
  for (std::size_t i = 0; i < sizeof kMagic; ++i) {
    if (std::to_integer<std::uint8_t>(image[i]) != kMagic[i]) return false;
  }
  return true;
}

}  // namespace

std::optional<std::span<const std::byte>> FindElfSection(std::span<const std::byte> image, std::string_view name) {
  if (!HasMagic(image)) return std::nullopt;
  const auto elfClass = std::to_integer<std::uint64_t>(image[kClassAt]);
  const auto byteOrder = std::to_integer<std::uint64_t>(image[kDataAt]);
  if ((elfClass != kClass32 && elfClass != kClass64) || (byteOrder != kLittleEndian && byteOrder != kBigEndian)) {
    return std::nullopt;
  }
  const Layout &layout = elfClass == kClass64 ? kElf64 : kElf32;
  const ImageReader reader(image, byteOrder == kBigEndian);
  if (!reader.Holds(0, layout.headerSize)) return std::nullopt;

  SectionTable table(reader, layout);
  if (!table.Locate()) return std::nullopt;
  const auto namesIndex = table.NamesIndex();
  if (!namesIndex) return std::nullopt;
  const SectionHeader names = table.Header(*namesIndex);
  if (names.type == kNoBits || !reader.Holds(names.offset, names.size)) return std::nullopt;

  for (std::uint64_t index = 0; index < table.count(); ++index) {
    const SectionHeader section = table.Header(index);
    if (!reader.TextEquals(names.offset, names.size, section.name, name)) continue;
    if (section.type == kNoBits) return std::span<const std::byte>();
    if (!reader.Holds(section.offset, section.size)) return std::nullopt;
    return reader.Bytes(section.offset, section.size);
  }
  return std::nullopt;
}

}  // namespace palvex::platform
