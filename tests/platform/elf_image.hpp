// Small ELF images made in memory, for the section finder and the module texts: a file
// header, the sections' bytes, a section-name table and the section header table, in
// that order. The positions of the fields tests corrupt are exposed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace palvex::testing {

inline constexpr std::uint32_t kElfProgBits = 1;
inline constexpr std::uint32_t kElfStringTable = 3;
inline constexpr std::uint32_t kElfNoBits = 8;

class ElfImageBuilder {
 public:
  explicit ElfImageBuilder(bool is64 = true, bool bigEndian = false) : is64_(is64), bigEndian_(bigEndian) {}

  ElfImageBuilder &Add(std::string name, std::string bytes, std::uint32_t type = kElfProgBits) {
    sections_.push_back({std::move(name), std::move(bytes), type});
    return *this;
  }

  // Header fields of the file and of a section entry.
  std::size_t HeaderSize() const { return is64_ ? 64 : 52; }
  std::size_t WordSize() const { return is64_ ? 8 : 4; }
  std::size_t TableOffsetAt() const { return is64_ ? 40 : 32; }
  std::size_t EntrySizeAt() const { return is64_ ? 58 : 46; }
  std::size_t EntryCountAt() const { return is64_ ? 60 : 48; }
  std::size_t NamesIndexAt() const { return is64_ ? 62 : 50; }
  std::size_t EntrySize() const { return is64_ ? 64 : 40; }
  std::size_t NameField() const { return 0; }
  std::size_t TypeField() const { return 4; }
  std::size_t OffsetField() const { return is64_ ? 24 : 16; }
  std::size_t SizeField() const { return is64_ ? 32 : 20; }
  std::size_t LinkField() const { return is64_ ? 40 : 24; }

  // Section 0 is the null entry, the added ones follow from 1, the name table is last.
  std::size_t EntryCount() const { return sections_.size() + 2; }
  std::size_t NamesIndex() const { return sections_.size() + 1; }
  std::size_t TableOffset() const { return Align(NamesOffset() + NameTable().size()); }
  std::size_t EntryAt(std::size_t index) const { return TableOffset() + index * EntrySize(); }
  // Where the added section number `added` (0-based) keeps its bytes.
  std::size_t DataOffset(std::size_t added) const {
    std::size_t offset = HeaderSize();
    for (std::size_t i = 0; i < added; ++i) offset += FileBytes(sections_[i]).size();
    return offset;
  }

  std::vector<std::byte> Build() const {
    std::vector<std::byte> image(TableOffset() + EntryCount() * EntrySize());
    const unsigned char ident[] = {0x7F, 'E', 'L', 'F', static_cast<unsigned char>(is64_ ? 2 : 1),
                                   static_cast<unsigned char>(bigEndian_ ? 2 : 1), 1};
    for (std::size_t i = 0; i < sizeof ident; ++i) image[i] = std::byte{ident[i]};
    Put(image, 16, 3, 2);   // a shared object
    Put(image, 18, 62, 2);  // any machine will do
    Put(image, 20, 1, 4);
    Put(image, TableOffsetAt(), TableOffset(), WordSize());
    Put(image, is64_ ? 52 : 40, HeaderSize(), 2);
    Put(image, EntrySizeAt(), EntrySize(), 2);
    Put(image, EntryCountAt(), EntryCount(), 2);
    Put(image, NamesIndexAt(), NamesIndex(), 2);

    const std::string names = NameTable();
    std::size_t nameOffset = 1;
    for (std::size_t i = 0; i < sections_.size(); ++i) {
      const std::string bytes = FileBytes(sections_[i]);
      Copy(image, DataOffset(i), bytes);
      WriteEntry(image, i + 1, nameOffset, sections_[i].type, DataOffset(i), sections_[i].bytes.size());
      nameOffset += sections_[i].name.size() + 1;
    }
    Copy(image, NamesOffset(), names);
    WriteEntry(image, NamesIndex(), nameOffset, kElfStringTable, NamesOffset(), names.size());
    return image;
  }

  // Writes value into the image at `at`, width bytes in the image's byte order.
  void Put(std::vector<std::byte> &image, std::size_t at, std::uint64_t value, std::size_t width) const {
    for (std::size_t i = 0; i < width; ++i) {
      const std::size_t shift = 8 * (bigEndian_ ? width - 1 - i : i);
      image.at(at + i) = static_cast<std::byte>((value >> shift) & 0xFF);
    }
  }

 private:
  struct Section {
    std::string name;
    std::string bytes;
    std::uint32_t type;
  };

  static std::size_t Align(std::size_t offset) { return (offset + 7) & ~std::size_t{7}; }
  static std::string FileBytes(const Section &section) { return section.type == kElfNoBits ? "" : section.bytes; }

  std::size_t NamesOffset() const { return DataOffset(sections_.size()); }

  std::string NameTable() const {
    std::string names(1, '\0');
    for (const Section &section : sections_) names.append(section.name).push_back('\0');
    names.append(".shstrtab").push_back('\0');
    return names;
  }

  static void Copy(std::vector<std::byte> &image, std::size_t at, std::string_view bytes) {
    for (std::size_t i = 0; i < bytes.size(); ++i) image.at(at + i) = static_cast<std::byte>(bytes[i]);
  }

  void WriteEntry(std::vector<std::byte> &image, std::size_t index, std::uint64_t name, std::uint32_t type,
                  std::uint64_t offset, std::uint64_t size) const {
    const std::size_t at = EntryAt(index);
    Put(image, at + NameField(), name, 4);
    Put(image, at + TypeField(), type, 4);
    Put(image, at + OffsetField(), offset, WordSize());
    Put(image, at + SizeField(), size, WordSize());
  }

  bool is64_;
  bool bigEndian_;
  std::vector<Section> sections_;
};

inline std::string AsText(const std::vector<std::byte> &bytes) {
  return std::string(reinterpret_cast<const char *>(bytes.data()), bytes.size());
}

}  // namespace palvex::testing
