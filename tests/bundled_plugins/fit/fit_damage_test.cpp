// Damaged and foreign inputs: each gives its own code with details that say where, keeps
// the messages before the damage, and never crashes or hangs.
#include <gtest/gtest.h>

#include <sstream>

#include "fit_errors.hpp"
#include "fit_samples.hpp"
#include "fit_survey.hpp"
#include "fit_test_support.hpp"

namespace palvex_fit::testing {
namespace {

// The header CRC made right again after a test edited the header.
std::string Resealed(std::string file) {
  const std::string fixed = file.substr(0, 12);
  file.replace(12, 2, LittleEndian(Crc(fixed), 2));
  return file;
}

std::string Edited(std::size_t at, char value, bool reseal = false) {
  std::string file = ActivityFile();
  file[at] = value;
  return reseal ? Resealed(file) : file;
}

TEST(FitDamage, EachFaultHasItsCodeAndPlace) {
  const std::string fileA = ActivityFile();
  std::string brokenSecond = fileA + fileA;
  brokenSecond[388 + 200] ^= 0x01;
  const std::string undefinedLocal = FitBuilder().Raw(fileA.substr(14, 35)).Raw("\x07").Finish();
  struct Case {
    const char *name;
    std::string file;
    std::uint32_t code;
    std::int64_t detail1, detail2;
    std::size_t recordsKept;
  };
  const Case cases[] = {
      {"data byte flipped", Edited(120, static_cast<char>(fileA[120] ^ 1)), kFileCrcMismatch, 386, 1, 4},
      {"header CRC wrong", Edited(12, static_cast<char>(fileA[12] ^ 1)), kHeaderCrcMismatch, 0, 1, 0},
      {"data size 10 too large", Edited(4, static_cast<char>(fileA[4] + 10), true), kTruncated, 388, 396, 4},
      {"cut inside a record", fileA.substr(0, 200), kTruncated, 200, 386, 3},
      {"data size 5 too small", Edited(4, static_cast<char>(fileA[4] - 5), true), kMessagePastData, 368, 34, 4},
      {"signature .FTI", Edited(10, 'T'), kNotFitHeader, 0, 14, 0},
      {"header size 13", Edited(0, 13), kNotFitHeader, 0, 13, 0},
      {"shorter than a header", fileA.substr(0, 10), kNotFitHeader, 0, 14, 0},
      {"empty", "", kNotFitHeader, 0, -1, 0},
      {"text", "time,speed\n0,1\n1,2\n", kNotFitHeader, 0, 't', 0},
      {"local type 7 never defined", undefinedLocal, kUndefinedLocalType, 49, 7, 0},
      {"architecture 2", Edited(16, 2), kBadArchitecture, 14, 2, 0},
      {"second file's CRC", brokenSecond, kFileCrcMismatch, 388 + 386, 2, 8},
      {"bytes after the last file", fileA + "\r\n", kNotFitHeader, 388, '\r', 4},
  };
  for (const Case &c : cases) {
    SCOPED_TRACE(c.name);
    const Decoded decoded = Decode(c.file);
    EXPECT_EQ(decoded.code, c.code);
    EXPECT_EQ(decoded.detail1, c.detail1);
    EXPECT_EQ(decoded.detail2, c.detail2);
    EXPECT_EQ(decoded.records.size(), c.recordsKept);
  }
}

TEST(FitDamage, SessionsAreBounded) {
  FitBuilder fit;
  fit.Define(0, 18, {{253, 4, kUint32}, {2, 4, kUint32}});
  for (std::uint32_t s = 0; s <= kMaxSessions; ++s) fit.Data(0, {kT0 + s, kT0 + s});
  std::istringstream in(fit.Finish());
  try {
    SurveyFit(in);
    FAIL() << "no error";
  } catch (const PX_PLUGIN::PX_PluginException &e) {
    EXPECT_EQ(e.code(), kTooManySessions);
    EXPECT_EQ(e.detail1(), static_cast<std::int64_t>(14 + 12 + kMaxSessions * 9));
    EXPECT_EQ(e.detail2(), static_cast<std::int64_t>(kMaxSessions));
  }
}

// Every cut and every flipped byte of file B ends in success or one of our codes.
TEST(FitDamage, EveryCutAndFlipEndsCleanly) {
  const std::string fileB = ActivityFile(true);
  auto check = [](const std::string &file, std::size_t at) {
    const Decoded decoded = Decode(file);
    EXPECT_TRUE(decoded.code == 0 || (decoded.code >= kNotFitHeader && decoded.code <= kBadArchitecture))
        << "at " << at << ": " << decoded.code;
  };
  for (std::size_t at = 0; at < fileB.size(); ++at) {
    check(fileB.substr(0, at), at);
    std::string flipped = fileB;
    flipped[at] = static_cast<char>(~flipped[at]);
    check(flipped, at);
  }
}

}  // namespace
}  // namespace palvex_fit::testing
