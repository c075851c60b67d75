// The temporary sample file: it lives exactly as long as its parser, no failed open
// leaves it behind, and every failure to make, open or write it carries its own message.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "mgjson_read/sample_test_support.hpp"
#include "platform/file_test_support.hpp"

namespace ns_sensor {
namespace {

using namespace testing;
using palvex::platform::ErrorKind;
using palvex::platform::FaultPoint;
using palvex::platform::ScopedFault;
using palvex::testing::OpenDescriptorCount;
using palvex::testing::ScopedEnvironment;
using palvex::testing::ScratchFolder;

const std::string kSet = SampleSet("s1", {{Utc(0), "\"+1.0\""}, {Utc(1), "\"+2.0\""}});
const std::string kFile = V2Utc({Node("s1", 2)}, {kSet});

// A private temporary folder for one test: every temporary file the library makes lands
// there, so they can be counted.
class SampleFileTest : public ::testing::Test {
 protected:
  std::size_t TemporaryFiles() const {
    std::size_t count = 0;
    for (const std::string &name : folder_.Entries()) count += name.starts_with("PXT");
    return count;
  }

  ScratchFolder folder_;
  ScopedEnvironment temporaryFolder_{palvex::testing::kTempFolderVariable, folder_.Path("").c_str()};
};

TEST_F(SampleFileTest, LivesAsLongAsItsParser) {
  const std::string path = folder_.WriteFile("run.mgjson", kFile);
  {
    const auto parser = CreateMgjsonParser(path);
    ASSERT_EQ(Capture([&] { parser->Parse(path); }), Fault{});
    ASSERT_EQ(TemporaryFiles(), 1u);
    const std::string temporary = parser->samples().temporaryPath();
    EXPECT_EQ(palvex::testing::ReadWholeFile(temporary), std::string(parser->samples().compactedText()));
    EXPECT_EQ(parser->samples().compactedText(), "[" + kSet + "]");
  }
  EXPECT_EQ(TemporaryFiles(), 0u);
  // A repeated "dataDynamicSamples" replaces the first file.
  const std::string twice = kFile.substr(0, kFile.size() - 1) + R"(,"dataDynamicSamples":[)" + kSet + "]}";
  const Opened opened = Open(twice);
  ASSERT_EQ(opened.fault, Fault{});
  EXPECT_EQ(TemporaryFiles(), 1u);
}

TEST_F(SampleFileTest, NoFailedOpenLeavesItBehind) {
  const std::size_t descriptors = OpenDescriptorCount();
  const std::string outline = R"("dataOutline":[)" + Node("s1", 2) + "]";
  const std::string head = R"({"version":"MGJSON2.0.0","dynamicSamplesPresentB":true,)"
                           R"("dynamicDataInfo":{"useTimecodeB":false,"utcInfo":{"precisionLength":3,"isGMT":true}},)";
  const std::string samples = R"("dataDynamicSamples":[)" + kSet + "]";
  const struct {
    std::string text;
    std::uint32_t code;
  } cases[] = {
      {V2Utc({Node("s1", 2)}, {SampleSet("s1", {{Utc(0), "\"x\""}})}), 39},  // a bad sample
      {V2Utc({Node("s2", 2)}, {kSet}), 49},                                  // a set without a node
      {head + samples + "," + outline + ",\"creator\":7}", 32},               // a fault after the samples
      {head + samples + "}", 32},                                            // no outline
      {head + samples + "," + outline + "} x", 32},                          // text after the end
      {head + samples + ",\"dataOutline\":[" + Node("s1", 2) + "," + Node("s1", 2, NumberType(), "b") + "]}", 37},
  };
  for (const auto &c : cases) {
    const Opened opened = Open(c.text);  // the parser is still alive: the failure itself cleaned up
    EXPECT_EQ(opened.fault.code, c.code) << c.text;
    EXPECT_EQ(TemporaryFiles(), 0u) << c.text;
    EXPECT_EQ(opened.parser->samples().temporaryPath(), "");
    EXPECT_EQ(OpenDescriptorCount(), descriptors) << c.text;
  }
}

TEST_F(SampleFileTest, ReportsATemporaryFolderThatIsGone) {
  ScopedEnvironment gone(palvex::testing::kTempFolderVariable, folder_.Path("gone").c_str());
  EXPECT_EQ(Open(kFile).fault, (Fault{14, "Unable to find directory for temporary file.", -1}));
}

TEST_F(SampleFileTest, ReportsEveryInjectedFailureAndRecovers) {
  PALVEX_SKIP_WITHOUT_FAULT_SEAM();
  // Over two chunks, so that a later write can fail too.
  std::vector<Sample> many;
  for (unsigned i = 0; i < 30000; ++i) many.push_back({Utc(i), "\"+" + std::string(40, '1') + "\""});
  const std::string large = V2Utc({Node("s1", many.size())}, {SampleSet("s1", many)});
  const struct {
    FaultPoint point;
    ErrorKind error;
    std::uint32_t skip;
    Fault expected;
  } cases[] = {
      {FaultPoint::TempDirectory, ErrorKind::Other, 0, {14, "Unable to find directory for temporary file.", -1}},
      {FaultPoint::CreateUniqueTempFile, ErrorKind::NotFound, 0, {14, "Unable to find directory for temporary file.", -1}},
      {FaultPoint::CreateUniqueTempFile, ErrorKind::Other, 0, {15, "Cannot find temp file name.", -1}},
      {FaultPoint::OpenFile, ErrorKind::AccessDenied, 0, {15, "Unable to open temporary file.", -1}},
      {FaultPoint::WriteFile, ErrorKind::DiskFull, 0, {21, "Unable to write in temporary file.", -1}},
      {FaultPoint::WriteFile, ErrorKind::Other, 1, {21, "Unable to write in temporary file.", -1}},
      {FaultPoint::MapWholeFile, ErrorKind::Other, 0, {15, "Unable to open temporary file.", -1}},
  };
  const std::size_t descriptors = OpenDescriptorCount();
  for (const auto &c : cases) {
    {
      ScopedFault fault(c.point, c.error, 1, c.skip);
      EXPECT_EQ(Open(large).fault, c.expected) << static_cast<int>(c.point);
    }
    EXPECT_EQ(TemporaryFiles(), 0u) << static_cast<int>(c.point);
    EXPECT_EQ(OpenDescriptorCount(), descriptors) << static_cast<int>(c.point);
    EXPECT_EQ(Open(kFile).fault, Fault{}) << static_cast<int>(c.point);
  }
}

}  // namespace
}  // namespace ns_sensor
