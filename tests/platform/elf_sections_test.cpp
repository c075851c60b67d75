// The ELF section finder: sections found by exact name in every class and byte order, and
// every truncated or corrupted header field giving "not found" rather than a stray read.
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <span>
#include <string>

#include "platform/elf_image.hpp"
#include "platform/elf_sections.hpp"

namespace palvex::platform {
namespace {

using palvex::testing::ElfImageBuilder;
using palvex::testing::kElfNoBits;

constexpr std::string_view kManifest = "PXPLUGINUIDS";
constexpr std::string_view kIdentifier = "MODULE_IDENTIFIER";

std::optional<std::string> Find(const std::vector<std::byte> &image, std::string_view name) {
  const auto found = FindElfSection(image, name);
  if (!found) return std::nullopt;
  // Whatever is found lies inside the image.
  const std::byte *end = image.data() + image.size();
  EXPECT_TRUE(found->empty() || (found->data() >= image.data() && found->data() + found->size() <= end));
  return std::string(reinterpret_cast<const char *>(found->data()), found->size());
}

ElfImageBuilder TwoTexts(bool is64, bool bigEndian) {
  ElfImageBuilder builder(is64, bigEndian);
  builder.Add(".text", "\x90\x90\xC3")
      .Add(std::string(kManifest), "{\"converter\":[]}")
      .Add(std::string(kIdentifier), "com.example.x");
  return builder;
}

TEST(ElfSections, FindsSectionsByExactNameInEveryClassAndByteOrder) {
  for (const bool is64 : {false, true}) {
    for (const bool bigEndian : {false, true}) {
      SCOPED_TRACE(std::string(is64 ? "ELF64 " : "ELF32 ") + (bigEndian ? "big-endian" : "little-endian"));
      const auto image = TwoTexts(is64, bigEndian).Build();
      EXPECT_EQ(Find(image, kManifest), "{\"converter\":[]}");
      EXPECT_EQ(Find(image, kIdentifier), "com.example.x");
      EXPECT_EQ(Find(image, ".text"), "\x90\x90\xC3");
      for (const std::string_view other : {"PXPLUGIN", "PXPLUGINUIDSX", "pxpluginuids", "MODULE", ".data"}) {
        EXPECT_EQ(Find(image, other), std::nullopt) << other;
      }
    }
  }
}

TEST(ElfSections, SectionWithoutFileBytesIsFoundEmpty) {
  ElfImageBuilder builder;
  // Its size points far beyond the image; a section that occupies no file space has no bytes to check.
  builder.Add(std::string(kManifest), std::string(4096, 'x'), kElfNoBits);
  EXPECT_EQ(Find(builder.Build(), kManifest), "");
}

TEST(ElfSections, FirstOfTwoSectionsWithTheSameNameCounts) {
  ElfImageBuilder builder;
  builder.Add(std::string(kManifest), "first").Add(std::string(kManifest), "second");
  EXPECT_EQ(Find(builder.Build(), kManifest), "first");
}

TEST(ElfSections, ExtendedSectionCountAndNameIndexAreFollowed) {
  for (const bool is64 : {false, true}) {
    const ElfImageBuilder builder = TwoTexts(is64, false);
    auto image = builder.Build();
    builder.Put(image, builder.EntryCountAt(), 0, 2);
    builder.Put(image, builder.EntryAt(0) + builder.SizeField(), builder.EntryCount(), builder.WordSize());
    builder.Put(image, builder.NamesIndexAt(), 0xFFFF, 2);
    builder.Put(image, builder.EntryAt(0) + builder.LinkField(), builder.NamesIndex(), 4);
    EXPECT_EQ(Find(image, kIdentifier), "com.example.x") << (is64 ? "ELF64" : "ELF32");
  }
}

TEST(ElfSections, EveryTruncationIsNotFound) {
  for (const bool is64 : {false, true}) {
    const auto image = TwoTexts(is64, !is64).Build();
    for (std::size_t length = 0; length < image.size(); ++length) {
      const std::vector<std::byte> prefix(image.begin(), image.begin() + static_cast<std::ptrdiff_t>(length));
      ASSERT_EQ(Find(prefix, kManifest), std::nullopt) << "length " << length;
    }
  }
}

TEST(ElfSections, CorruptHeaderFieldsAreNotFound) {
  using Image = std::vector<std::byte>;
  struct Case {
    const char *what;
    std::function<void(const ElfImageBuilder &, Image &)> corrupt;
  };
  constexpr std::uint64_t kMax = ~std::uint64_t{0};
  // The manifest is the second added section: entry 2.
  constexpr std::size_t kTarget = 2;
  const auto entry = [](const ElfImageBuilder &b, std::size_t index, std::size_t field) { return b.EntryAt(index) + field; };
  const auto names = [](const ElfImageBuilder &b) { return b.NamesIndex(); };
  const Case cases[] = {
      {"magic", [](auto &, Image &i) { i[1] = std::byte{'e'}; }},
      {"class 3", [](auto &, Image &i) { i[4] = std::byte{3}; }},
      {"byte order 3", [](auto &, Image &i) { i[5] = std::byte{3}; }},
      {"no section table", [](auto &b, Image &i) { b.Put(i, b.TableOffsetAt(), 0, b.WordSize()); }},
      {"table at the end", [](auto &b, Image &i) { b.Put(i, b.TableOffsetAt(), i.size(), b.WordSize()); }},
      {"table offset wraps", [](auto &b, Image &i) { b.Put(i, b.TableOffsetAt(), kMax - 7, b.WordSize()); }},
      {"entry size too small", [](auto &b, Image &i) { b.Put(i, b.EntrySizeAt(), b.EntrySize() - 1, 2); }},
      {"entry size too large", [](auto &b, Image &i) { b.Put(i, b.EntrySizeAt(), b.EntrySize() * 2, 2); }},
      {"entry size 0", [](auto &b, Image &i) { b.Put(i, b.EntrySizeAt(), 0, 2); }},
      {"table runs past the end", [](auto &b, Image &i) { b.Put(i, b.EntryCountAt(), 0xFFFE, 2); }},
      {"extended count 0", [](auto &b, Image &i) { b.Put(i, b.EntryCountAt(), 0, 2); }},
      {"extended count huge",
       [&](auto &b, Image &i) {
         b.Put(i, b.EntryCountAt(), 0, 2);
         b.Put(i, entry(b, 0, b.SizeField()), kMax >> (64 - 8 * b.WordSize()), b.WordSize());
       }},
      {"name table undefined", [](auto &b, Image &i) { b.Put(i, b.NamesIndexAt(), 0, 2); }},
      {"name table index out of range", [](auto &b, Image &i) { b.Put(i, b.NamesIndexAt(), b.EntryCount(), 2); }},
      {"extended name index 0", [](auto &b, Image &i) { b.Put(i, b.NamesIndexAt(), 0xFFFF, 2); }},
      {"extended name index huge",
       [&](auto &b, Image &i) {
         b.Put(i, b.NamesIndexAt(), 0xFFFF, 2);
         b.Put(i, entry(b, 0, b.LinkField()), 0xFFFFFFFF, 4);
       }},
      {"name table beyond the end",
       [&](auto &b, Image &i) { b.Put(i, entry(b, names(b), b.OffsetField()), i.size() + 1, b.WordSize()); }},
      {"name table size wraps",
       [&](auto &b, Image &i) { b.Put(i, entry(b, names(b), b.SizeField()), kMax, b.WordSize()); }},
      {"name table without file bytes", [&](auto &b, Image &i) { b.Put(i, entry(b, names(b), b.TypeField()), kElfNoBits, 4); }},
      {"name cut off by the table's size",
       [&](auto &b, Image &i) { b.Put(i, entry(b, names(b), b.SizeField()), 1 + 6 + 5, b.WordSize()); }},
      {"name offset beyond the table", [&](auto &b, Image &i) { b.Put(i, entry(b, kTarget, b.NameField()), 0xFFFFFFFF, 4); }},
      {"section beyond the end",
       [&](auto &b, Image &i) { b.Put(i, entry(b, kTarget, b.OffsetField()), i.size(), b.WordSize()); }},
      {"section size runs past the end",
       [&](auto &b, Image &i) { b.Put(i, entry(b, kTarget, b.SizeField()), i.size(), b.WordSize()); }},
      {"section offset plus size wraps",
       [&](auto &b, Image &i) {
         b.Put(i, entry(b, kTarget, b.OffsetField()), 16, b.WordSize());
         b.Put(i, entry(b, kTarget, b.SizeField()), kMax >> (64 - 8 * b.WordSize()), b.WordSize());
       }},
  };
  for (const bool is64 : {false, true}) {
    for (const bool bigEndian : {false, true}) {
      const ElfImageBuilder builder = TwoTexts(is64, bigEndian);
      for (const Case &c : cases) {
        auto image = builder.Build();
        c.corrupt(builder, image);
        EXPECT_EQ(Find(image, kManifest), std::nullopt)
            << c.what << (is64 ? ", ELF64" : ", ELF32") << (bigEndian ? " big-endian" : " little-endian");
      }
    }
  }
}

}  // namespace
}  // namespace palvex::platform
