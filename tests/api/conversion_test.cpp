// Converting delimited files through the manager and reading them back through the handler.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "api/conversion_test_support.hpp"
#include "platform/fault_injection.hpp"

namespace palvex::testing {
namespace {

using Lines = std::vector<std::string>;

class Conversion : public ConversionTest {};

TEST_F(Conversion, ColumnsBecomeGroupsAndCellsStaticNodes) {
  const std::string path = folder_.WriteFile("ride.csv", "Speed,Name\n12.5,ann\n,\"b,c\"\n-3,\"say \"\"hi\"\"\"\n");
  EXPECT_EQ(ConvertedOutline(path), (Lines{
                                        "Speed (data0)",
                                        "  Speed 0 (data1): 12.5",
                                        "  Speed 1 (data2): 0",
                                        "  Speed 2 (data3): -3",
                                        "Name (data4)",
                                        "  Name 0 (data5): 'ann'",
                                        "  Name 1 (data6): 'b,c'",
                                        "  Name 2 (data7): 'say \"hi\"'",
                                    }));
  EXPECT_EQ(TakeError(), "ok");
}

TEST_F(Conversion, FormatsByNameAndByContent) {
  const struct {
    const char *name;
    std::string content;
    Lines outline;
  } cases[] = {
      {"data.CSV", "a,,b\n1,2,3\n", {"a (data0)", "  a 0 (data1): 1"}},
      {"no_extension", "v\n1\n\nx\n", {"v (data0)", "  v 0 (data1): '1'", "  v 1 (data2): 'x'"}},
      {"x.dat", "{\"a\": 1}\n2\n", {"{\"a\": 1} (data0)", "  {\"a\": 1} 0 (data1): 2"}},
      {"table.txt", "a\tb\n1,5\t2\n", {"a (data0)", "  a 0 (data1): '1,5'", "b (data2)", "  b 0 (data3): 2"}},
      {"marked.csv", "\xEF\xBB\xBFname\n1\n", {"name (data0)", "  name 0 (data1): 1"}},
      {"wide.tsv", std::string("\xFF\xFE" "k\0\t\0n\0\n\0" "7\0\t\0\xE4\0", 16),
       {"k (data0)", "  k 0 (data1): 7", "n (data2)", "  n 0 (data3): '\xC3\xA4'"}},
  };
  for (const auto &c : cases) {
    EXPECT_EQ(ConvertedOutline(folder_.WriteFile(c.name, c.content)), c.outline) << c.name;
    EXPECT_EQ(TakeError(), "ok") << c.name;
  }
}

TEST_F(Conversion, FileInformationNamesTheConverter) {
  const struct {
    const char *name;
    const char *content;
    const char *creator;
  } cases[] = {
      {"t.tsv", "a\n1\n", "com.corvane.sensor.tsv"},
      {"t.csv", "a\n1\n", "com.corvane.sensor.csv"},
      {"t.json", "{\"v\": 1}", "com.corvane.sensor.json"},
  };
  for (const auto &c : cases) {
    const std::string path = folder_.WriteFile(c.name, c.content);
    ISensorFileHandler *handler = nullptr;
    manager_->OpenFile(&handler, path.c_str(), nullptr, &log_);
    ASSERT_NE(handler, nullptr) << TakeError();
    PX_FileInfo info;
    handler->GetFileInfo(&info, &log_);
    EXPECT_TRUE(info.converted) << c.name;
    EXPECT_EQ(info.creator, c.creator);
    EXPECT_EQ(info.inputPath, path);
    EXPECT_EQ(TempFiles().size(), 1u) << "the converted file lives as long as its handler";
    manager_->CloseFile(&handler, &log_);
    EXPECT_TRUE(TempFiles().empty()) << c.name;
    EXPECT_EQ(TakeError(), "ok") << c.name;
  }
}

TEST_F(Conversion, InputsWithNothingToConvertFailCleanly) {
  std::string wideHeader;
  for (int i = 0; i < 1000; ++i) wideHeader += "c,";
  const struct {
    const char *name;
    std::string content;
    std::string error;
  } cases[] = {
      {"empty.csv", "", "1506 File Cannot be converted."},
      {"mark.csv", "\xEF\xBB\xBF", "1506 File Cannot be converted."},
      {"header.csv", "a,b\n", "1506 File Cannot be converted."},
      {"delimiters.csv", ",,,,\n1,2\n", "1506 File Cannot be converted."},
      {"unclosed.csv", "a\n\"1\n2\n", "ok"},
      {"binary.csv", std::string("\x01\x02\0\xFF\xFE\n\0\x80,\x7F\n", 12), "ok"},
      {"short rows.csv", wideHeader + "c\n" + std::string(20000, '\n') + "1\n1\n1\n1\n1\n1\n1\n1\n1\n1\n1\n",
       "ok"},
  };
  for (const auto &c : cases) {
    ISensorFileHandler *handler = nullptr;
    manager_->OpenFile(&handler, folder_.WriteFile(c.name, c.content).c_str(), nullptr, &log_);
    const std::string error = TakeError();
    EXPECT_EQ(error.substr(0, c.error.size()), c.error) << c.name;
    if (handler != nullptr) manager_->CloseFile(&handler, &log_);
    EXPECT_TRUE(TempFiles().empty()) << c.name;
  }
  const std::string missing = folder_.Path("missing.csv");
  ISensorFileHandler *handler = nullptr;
  manager_->OpenFile(&handler, missing.c_str(), nullptr, &log_);
  EXPECT_EQ(TakeError(), "4 File not exist at input path:" + missing + ".");
}

TEST_F(Conversion, UnreadableInputsFailWithTheFileLayersErrorAndLeaveNothing) {
  PALVEX_SKIP_WITHOUT_FAULT_SEAM();
  using palvex::platform::ErrorKind;
  using palvex::platform::FaultPoint;
  const std::string path = folder_.WriteFile("locked.csv", "a\n1\n");
  // The input's opens and reads in turn are refused, as for a file without read
  // permission. The look at the content that comes first treats an unreadable file as
  // not MGJSON; the converter, next, fails with the file layer's error, never as
  // "nothing convertible", and no temporary file stays.
  const struct {
    FaultPoint point;
    std::string error;
  } cases[] = {
      {FaultPoint::OpenFile, "13 Open, file permission error"},
      {FaultPoint::ReadFile, "11 File_IO::Read, ReadFile failure."},
  };
  for (const auto &[point, expected] : cases) {
    bool refused = false;
    for (std::uint32_t skip = 0; !refused; ++skip) {
      ASSERT_LT(skip, 4u) << "the converter reads its input among the first files";
      palvex::platform::ScopedFault fault(point, ErrorKind::AccessDenied, 1, skip);
      ISensorFileHandler *handler = nullptr;
      manager_->OpenFile(&handler, path.c_str(), nullptr, &log_);
      const std::string error = TakeError();
      if (error == "ok") {
        ASSERT_NE(handler, nullptr);
        manager_->CloseFile(&handler, &log_);
        continue;
      }
      refused = true;
      EXPECT_EQ(handler, nullptr);
      EXPECT_EQ(error.substr(0, expected.size()), expected) << "skip " << skip;
      EXPECT_TRUE(TempFiles().empty()) << "skip " << skip;
    }
  }
}

TEST_F(Conversion, AMillionColumnHeaderIsReadInOneLine) {
  // A header of 1,000,000 names and no row: the line is read whole and the file holds
  // nothing to convert.
  std::string text;
  for (std::size_t c = 0; c < 1000000; ++c) text += (c ? ",c" : "c") + std::to_string(c);
  ISensorFileHandler *handler = nullptr;
  manager_->OpenFile(&handler, folder_.WriteFile("wide.csv", text + "\n").c_str(), nullptr, &log_);
  EXPECT_EQ(TakeError(), "1506 File Cannot be converted.");
  EXPECT_EQ(handler, nullptr);
  EXPECT_TRUE(TempFiles().empty());
}

TEST_F(Conversion, StreamsOwnTheirConvertedFile) {
  const std::string path = folder_.WriteFile("s.csv", "a\n1\n");
  IMgjsonStream *stream = nullptr;
  manager_->CreateMgjsonStream(&stream, path.c_str(), 1, &log_);
  ASSERT_NE(stream, nullptr) << TakeError();
  EXPECT_EQ(TempFiles().size(), 1u);
  std::string bytes(stream->GetTotalSize(), '\0');
  uint32_t size = static_cast<uint32_t>(bytes.size());
  EXPECT_EQ(stream->Read(reinterpret_cast<uint8_t *>(bytes.data()), &size), bytes.size());
  EXPECT_EQ(bytes.rfind("{\"version\":\"mgjson2.0.0\"", 0), 0u) << bytes.substr(0, 40);
  IMgjsonStream *copy = stream;
  manager_->ReleaseMgjsonStream(&stream, &log_);
  EXPECT_EQ(stream, nullptr);
  EXPECT_TRUE(TempFiles().empty());
  EXPECT_EQ(TakeError(), "ok");

  manager_->ReleaseMgjsonStream(&stream, &log_);
  EXPECT_EQ(TakeError(), "1 Invalid pointer to \"IMgjsonStream\".");
  manager_->ReleaseMgjsonStream(&copy, &log_);
  EXPECT_EQ(TakeError(), "56 No stream created by Palvex.");
  IMgjsonStream *other = nullptr;
  manager_->CreateMgjsonStream(&other, path.c_str(), 0, &log_);
  // An address no stream can have: a released one may be handed to the next stream.
  auto *stranger = reinterpret_cast<IMgjsonStream *>(&size);
  manager_->ReleaseMgjsonStream(&stranger, &log_);
  EXPECT_EQ(TakeError(), "57 MGJSON Stream is not created by this Palvex instance.");
  manager_->CreateMgjsonStream(nullptr, path.c_str(), 0, &log_);
  EXPECT_EQ(TakeError(), "1 Invalid pointer to \"IPalvex\".");
  manager_->CreateMgjsonStream(&stream, folder_.WriteFile("h.csv", "a\n").c_str(), 1, &log_);
  EXPECT_EQ(TakeError(), "1506 File Cannot be converted.");
  // A stream still out when the manager goes is destroyed with it, and so is its file.
  EXPECT_EQ(TempFiles().size(), 1u);
}

TEST_F(Conversion, StreamOfAnMgjsonFileIsTheFileItself) {
  const std::string flight = std::string(PALVEX_SOURCE_DIR) + "/examples/flight_v1_timecode.mgjson";
  IMgjsonStream *stream = nullptr;
  manager_->CreateMgjsonStream(&stream, flight.c_str(), 1, &log_);
  ASSERT_NE(stream, nullptr) << TakeError();
  PX_HostString path;
  stream->GetPath(&path, &log_);
  EXPECT_EQ(path.text, flight);
  manager_->ReleaseMgjsonStream(&stream, &log_);
  EXPECT_EQ(TakeError(), "ok");
}

}  // namespace
}  // namespace palvex::testing
