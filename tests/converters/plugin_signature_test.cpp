// The "check_format" signatures of a plug-in converter against input files: hexadecimal
// and text forms, offsets and lengths at and past the end, and files that cannot be read.
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "converters/plugin_signature.hpp"
#include "platform/file_test_support.hpp"

namespace ns_sensor {
namespace {

using palvex::platform::ErrorKind;
using palvex::platform::FaultPoint;
using palvex::platform::ScopedFault;
using palvex::testing::OpenDescriptorCount;
using palvex::testing::ScratchFolder;

constexpr std::uint64_t kHuge = std::numeric_limits<std::uint64_t>::max();

TEST(PluginSignature, BytesAtTheirOffsetsDecide) {
  const std::string header = std::string("MG\x00\xFF", 4) + "JSONv2";
  const struct {
    const char *what;
    std::string contents;
    std::vector<FormatSignature> signatures;
    bool matches;
  } cases[] = {
      {"hex at the start", header, {{"0x4D47", 2, 0}}, true},
      {"hex with a zero and a high byte", header, {{"0x4D4700FF", 4, 0}}, true},
      {"hex that differs", header, {{"0x4D48", 2, 0}}, false},
      {"hex with a character that is no digit", "MG", {{"0x4G47", 2, 0}}, false},
      {"text at the start", header, {{"MG", 2, 0}}, true},
      {"text at an offset", header, {{"JSON", 4, 4}}, true},
      {"text shorter than the length", header, {{"JSON", 6, 4}}, false},
      {"text longer than the length", header, {{"JSONv2", 4, 4}}, false},
      // Not 2 + 2 * length characters: the text itself.
      {"prefix with another length", "0x4D rest", {{"0x4D", 4, 0}}, true},
      {"upper-case prefix is text", "0X4D47", {{"0X4D47", 6, 0}}, true},
      {"upper-case prefix, hex bytes", header, {{"0X4D47", 2, 0}}, false},
      {"every signature matches", header, {{"0x4D47", 2, 0}, {"v2", 2, 8}}, true},
      {"the second one differs", header, {{"0x4D47", 2, 0}, {"v3", 2, 8}}, false},
      {"no signatures", header, {}, true},
      {"nothing to compare", header, {{"", 0, 0}, {"0x", 0, 3}}, true},
      {"ends at the last byte", header, {{"v2", 2, 8}}, true},
      {"one byte past the end", header, {{"v2x", 3, 8}}, false},
      {"short file", "M", {{"0x4D47", 2, 0}}, false},
      {"offset past the end", header, {{"M", 1, 10}}, false},
      {"offset beyond any file", header, {{"M", 1, kHuge}}, false},
      {"offset beyond a signed seek", header, {{"M", 1, kHuge / 2 + 1}}, false},
      {"length beyond any file", header, {{"MG", kHuge, 0}}, false},
  };
  ScratchFolder folder;
  const std::size_t descriptors = OpenDescriptorCount();
  for (const auto &c : cases) {
    const std::string path = folder.WriteFile("input.bin", c.contents);
    EXPECT_EQ(MatchesSignatures(path, c.signatures), c.matches) << c.what;
  }
  EXPECT_EQ(OpenDescriptorCount(), descriptors);
}

TEST(PluginSignature, LongSignaturesAreComparedPieceByPiece) {
  ScratchFolder folder;
  std::string contents(300000, '\0');
  for (std::size_t i = 0; i < contents.size(); ++i) contents[i] = static_cast<char>('a' + i % 23);
  const std::string path = folder.WriteFile("long.bin", "xy" + contents);
  const FormatSignature whole{contents, contents.size(), 2};
  EXPECT_TRUE(MatchesSignatures(path, {&whole, 1}));
  std::string lastDiffers = contents;
  lastDiffers.back() = '#';
  const FormatSignature differs{lastDiffers, lastDiffers.size(), 2};
  EXPECT_FALSE(MatchesSignatures(path, {&differs, 1}));
}

TEST(PluginSignature, UnreadableInputsMatchNothing) {
  ScratchFolder folder;
  const std::vector<FormatSignature> none;
  EXPECT_FALSE(MatchesSignatures(folder.Path("missing.bin"), none));
  EXPECT_FALSE(MatchesSignatures(folder.root().string(), none));
  EXPECT_FALSE(MatchesSignatures("", none));
}

TEST(PluginSignature, SystemFailuresCloseTheInput) {
  PALVEX_SKIP_WITHOUT_FAULT_SEAM();
  ScratchFolder folder;
  const std::string path = folder.WriteFile("input.bin", "MGJSON");
  const std::vector<FormatSignature> signature{{"MG", 2, 0}};
  const std::size_t descriptors = OpenDescriptorCount();
  {
    const ScopedFault refused(FaultPoint::OpenFile, ErrorKind::AccessDenied);
    EXPECT_FALSE(MatchesSignatures(path, signature));
  }
  {
    // A read the system refuses is a failure of the input, not a mismatch.
    const ScopedFault failedRead(FaultPoint::ReadFile, ErrorKind::Other);
    try {
      MatchesSignatures(path, signature);
      ADD_FAILURE() << "a failed read raised nothing";
    } catch (const PX_Exception &raised) {
      EXPECT_EQ(raised.code(), 11u);
    }
  }
  EXPECT_EQ(OpenDescriptorCount(), descriptors);
}

}  // namespace
}  // namespace ns_sensor
