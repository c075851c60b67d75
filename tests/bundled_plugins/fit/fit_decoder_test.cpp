// The decoder against the format notes' files: the generator must write their recipes
// byte for byte, and every value decoded must be the notes' expected one.
#include <gtest/gtest.h>

#include "fit_crc.hpp"
#include "fit_samples.hpp"
#include "fit_test_support.hpp"

namespace palvex_fit::testing {
namespace {

// File A as the notes list it, record by record.
const char *const kFileAHex =
    "0E 20 34 08 74 01 00 00 2E 46 49 54 AC 78"
    "40 00 00 00 00 05 00 01 00 01 02 84 02 02 84 03 04 8C 04 04 86"
    "00 04 FF 00 01 00 4E 61 BC 00 28 BD 07 40"
    "43 00 00 15 00 03 FD 04 86 00 01 00 01 01 00"
    "03 28 BD 07 40 00 00"
    "41 00 00 14 00 0A FD 04 86 00 04 85 01 04 85 4E 04 86 03 01 02 04 01 02 05 04 86 49 04 86 07 02 84 0D 01 01"
    "01 28 BD 07 40 92 B3 B0 21 12 F8 12 06 BC 11 00 00 78 50 00 00 00 00 88 13 00 00 C8 00 15"
    "01 29 BD 07 40 3B B8 B0 21 BB FC 12 06 C1 11 00 00 79 51 F4 01 00 00 88 13 00 00 D2 00 15"
    "01 2A BD 07 40 FF FF FF 7F FF FF FF 7F FF FF FF FF FF 52 E8 03 00 00 88 13 00 00 FF FF 7F"
    "01 2B BD 07 40 8D C1 B0 21 0E 06 13 06 C6 11 00 00 7B 53 DC 05 00 00 88 13 00 00 E6 00 16"
    "03 46 BD 07 40 00 04"
    "44 00 00 13 00 06 FD 04 86 02 04 86 07 04 86 08 04 86 09 04 86 FE 02 84"
    "04 46 BD 07 40 28 BD 07 40 30 75 00 00 30 75 00 00 B8 0B 00 00 00 00"
    "45 00 00 12 00 09 FD 04 86 02 04 86 07 04 86 08 04 86 09 04 86 05 01 00 06 01 00 19 02 84 1A 02 84"
    "05 46 BD 07 40 28 BD 07 40 30 75 00 00 30 75 00 00 B8 0B 00 00 02 00 00 00 01 00"
    "46 00 00 22 00 07 FD 04 86 00 04 86 01 02 84 02 01 00 03 01 00 04 01 00 05 04 86"
    "06 46 BD 07 40 30 75 00 00 01 00 00 1A 01 56 CB 07 40"
    "0B 5F";

std::uint16_t StoredCrc(const std::string &bytes, std::size_t at) {
  return static_cast<std::uint16_t>(static_cast<std::uint8_t>(bytes[at]) | static_cast<std::uint8_t>(bytes[at + 1]) << 8);
}

// The notes' expected records of file A; a missing key is an absent value.
const std::vector<DecodedRecord> kFileARecords = {
    {kT0, {{"latitude", 47.37690003588796}, {"longitude", 8.541699964553118}, {"altitude", 408}, {"heartRate", 120},
           {"cadence", 80}, {"distance", 0}, {"speed", 5}, {"power", 200}, {"temperature", 21}}},
    {kT0 + 1, {{"latitude", 47.37700003199279}, {"longitude", 8.541799960657954}, {"altitude", 409},
               {"heartRate", 121}, {"cadence", 81}, {"distance", 5}, {"speed", 5}, {"power", 210}, {"temperature", 21}}},
    {kT0 + 2, {{"cadence", 82}, {"distance", 10}, {"speed", 5}}},
    {kT0 + 3, {{"latitude", 47.377200024202466}, {"longitude", 8.542000036686659}, {"altitude", 410},
               {"heartRate", 123}, {"cadence", 83}, {"distance", 15}, {"speed", 5}, {"power", 230}, {"temperature", 22}}},
};

void ExpectRecords(const std::vector<DecodedRecord> &actual, const std::vector<DecodedRecord> &expected) {
  ASSERT_EQ(actual.size(), expected.size());
  for (std::size_t r = 0; r < expected.size(); ++r) {
    SCOPED_TRACE("record " + std::to_string(r));
    EXPECT_EQ(actual[r].time, expected[r].time);
    ASSERT_EQ(actual[r].values.size(), expected[r].values.size()) << "absent values must stay absent";
    for (const auto &[name, value] : expected[r].values) {
      ASSERT_EQ(actual[r].values.count(name), 1u) << name;
      EXPECT_DOUBLE_EQ(actual[r].values.at(name), value) << name;
    }
  }
}

TEST(FitCrc, MatchesTheCheckValueAndTheNotesFiles) {
  const std::string digits = "123456789";
  EXPECT_EQ(UpdateCrc(0, reinterpret_cast<const std::uint8_t *>(digits.data()), digits.size()), 0xBB3D);
  const std::string fileA = ActivityFile();
  EXPECT_EQ(fileA, FromHex(kFileAHex)) << "the generator must write the notes' recipe";
  const std::string fileB = ActivityFile(true);
  ASSERT_EQ(fileB.size(), 412u);
  EXPECT_EQ(fileB.substr(14, 213), fileA.substr(14, 213));
  EXPECT_EQ(fileB.substr(227, 24), FromHex("42 00 00 14 00 02 03 01 02 05 04 86 CC 7C D0 07 00 00 C6 7D B8 0B 00 00"));
  EXPECT_EQ(StoredCrc(fileB, 12), 0x9AA2);
  EXPECT_EQ(StoredCrc(fileB, 410), 0x51F8);
}

TEST(FitDecoder, FileAGivesTheNotesValues) {
  const Decoded decoded = Decode(ActivityFile());
  ASSERT_EQ(decoded.code, 0u);
  EXPECT_EQ(decoded.summary.parts, 1u);
  EXPECT_EQ(decoded.messages, (std::vector<std::uint16_t>{0, 21, 20, 20, 20, 20, 21, 19, 18, 34}));
  ExpectRecords(decoded.records, kFileARecords);
}

TEST(FitDecoder, CompressedTimestampsRollOver) {
  const Decoded decoded = Decode(ActivityFile(true));
  ASSERT_EQ(decoded.code, 0u);
  std::vector<DecodedRecord> expected = kFileARecords;
  expected.push_back({kT0 + 4, {{"heartRate", 124}, {"distance", 20}}});
  expected.push_back({kT0 + 30, {{"heartRate", 125}, {"distance", 30}}});
  ExpectRecords(decoded.records, expected);
}

// The same messages in the other byte order, or behind an old 12-byte header, or a longer
// header with bytes we do not know, decode to the same values.
TEST(FitDecoder, HeaderFormsAndByteOrdersGiveTheSameValues) {
  auto bigEndianFile = [] {
    FitBuilder fit;
    fit.Define(1, 20, {{253, 4, kUint32}, {0, 4, kSint32}, {1, 4, kSint32}, {78, 4, kUint32}, {3, 1, kUint8},
                       {4, 1, kUint8}, {5, 4, kUint32}, {73, 4, kUint32}, {7, 2, kUint16}, {13, 1, kSint8}},
               true)
        .Data(1, {kT0, 0x21B0B392, 0x0612F812, 0x11BC, 120, 80, 0, 5000, 200, 21})
        .Data(1, {kT0 + 1, 0x21B0B83B, 0x0612FCBB, 0x11C1, 121, 81, 500, 5000, 210, 21})
        .Data(1, {kT0 + 2, 0x7FFFFFFF, 0x7FFFFFFF, 0xFFFFFFFFu, 0xFF, 82, 1000, 5000, 0xFFFF, 0x7F})
        .Data(1, {kT0 + 3, 0x21B0C18D, 0x0613060E, 0x11C6, 123, 83, 1500, 5000, 230, 22});
    return fit.Finish();
  };
  std::string longHeader = ActivityFile();
  longHeader.insert(14, "\x01\x02", 2);
  longHeader[0] = 16;
  longHeader.replace(12, 2, LittleEndian(Crc(longHeader.substr(0, 12)), 2));
  longHeader.resize(longHeader.size() - 2);
  longHeader += LittleEndian(Crc(longHeader), 2);
  std::string shortHeader = ActivityFile().substr(0, 12) + ActivityFile().substr(14, 372);
  shortHeader[0] = 12;
  shortHeader += LittleEndian(Crc(shortHeader), 2);
  std::string noHeaderCrc = ActivityFile();
  noHeaderCrc[12] = noHeaderCrc[13] = 0;  // "not computed"
  noHeaderCrc.replace(386, 2, LittleEndian(Crc(noHeaderCrc.substr(0, 386)), 2));

  for (const auto &[name, file] : std::vector<std::pair<std::string, std::string>>{
           {"big-endian", bigEndianFile()}, {"16-byte header", longHeader}, {"12-byte header", shortHeader},
           {"header CRC 0", noHeaderCrc}}) {
    SCOPED_TRACE(name);
    const Decoded decoded = Decode(file);
    ASSERT_EQ(decoded.code, 0u) << decoded.detail1;
    ExpectRecords(decoded.records, kFileARecords);
  }
}

TEST(FitDecoder, ChainedFilesResetTheirStateAtEachHeader) {
  const std::string fileA = ActivityFile();
  const Decoded twice = Decode(fileA + fileA);
  ASSERT_EQ(twice.code, 0u);
  EXPECT_EQ(twice.summary.parts, 2u);
  EXPECT_EQ(twice.records.size(), 8u);
  // A second file that uses the first one's definition without its own.
  const std::string orphan = FitBuilder().Raw(fileA.substr(107, 30)).Finish();
  const Decoded reset = Decode(fileA + orphan);
  EXPECT_EQ(reset.records.size(), 4u) << "the first file's records are kept";
  EXPECT_EQ(reset.code, 3606u);
  EXPECT_EQ(reset.detail1, 388 + 14);
  EXPECT_EQ(reset.detail2, 1);
  // Nor does the compressed-timestamp base carry over: the record comes without a time.
  const std::string compressed = FitBuilder().Define(0, 20, {{3, 1, kUint8}}).Compressed(0, 5, {99}).Finish();
  const Decoded untimed = Decode(fileA + compressed);
  ASSERT_EQ(untimed.code, 0u);
  ASSERT_EQ(untimed.records.size(), 5u);
  EXPECT_FALSE(untimed.records.back().time.has_value());
}

// Fields the decoder cannot read are skipped by their size; what follows stays in place.
TEST(FitDecoder, UnreadableFieldsAreSkippedBySize) {
  const std::string file = FitBuilder()
                               .Define(0, 20, {{253, 4, kUint32}, {3, 3, kUint16}, {7, 2, 0x1F}, {4, 1, kUint8}})
                               .Data(0, {kT0, "\x10\x20\x30", 500, 90})
                               .Finish();
  const Decoded decoded = Decode(file);
  ASSERT_EQ(decoded.code, 0u);
  EXPECT_EQ(decoded.summary.skippedFields, 2u);
  ExpectRecords(decoded.records, {{kT0, {{"cadence", 90}}}});
}

TEST(FitDecoder, DeveloperFieldsTakeTheirDescription) {
  const std::string file = FitBuilder()
                               .Define(0, 206, {{0, 1, kUint8}, {1, 1, kUint8}, {2, 1, kUint8}, {3, 8, kString}, {8, 4, kString}})
                               .Data(0, {0, 5, kSint16, "Torque", "Nm"})
                               .Define(1, 20, {{253, 4, kUint32}, {3, 1, kUint8}}, true, {{5, 2, 0}, {6, 2, 0}})
                               .Data(1, {kT0, 100, -42, 7})  // field 6 has no description: skipped
                               .Data(1, {kT0 + 1, 101, 0x7FFF, 7})
                               .Finish();
  const Decoded decoded = Decode(file);
  ASSERT_EQ(decoded.code, 0u);
  ExpectRecords(decoded.records, {{kT0, {{"heartRate", 100}, {"Torque", -42}}}, {kT0 + 1, {{"heartRate", 101}}}});
}

TEST(FitDecoder, EnhancedFieldsWinOverLegacyOnes) {
  const std::string file = FitBuilder()
                               .Define(0, 20, {{253, 4, kUint32}, {2, 2, kUint16}, {6, 2, kUint16}, {78, 4, kUint32}, {4, 1, kUint8}, {53, 1, kUint8}})
                               .Data(0, {kT0, 2600, 4000, 3000, 80, 64})
                               .Data(0, {kT0 + 1, 2600, 4000, 0xFFFFFFFFu, 80, 0xFF})
                               .Finish();
  const Decoded decoded = Decode(file);
  ASSERT_EQ(decoded.code, 0u);
  ExpectRecords(decoded.records, {{kT0, {{"altitude", 100}, {"speed", 4}, {"cadence", 80.5}}},
                                  {kT0 + 1, {{"altitude", 20}, {"speed", 4}, {"cadence", 80}}}});
}

}  // namespace
}  // namespace palvex_fit::testing
