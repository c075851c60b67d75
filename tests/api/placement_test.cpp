// The MGJSON file of an opened input placed in the host's output directory.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

#include "api/conversion_test_support.hpp"

namespace palvex::testing {
namespace {

std::string Contents(const std::string &path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

class Placement : public ConversionTest {
 protected:
  void SetUp() override {
    ConversionTest::SetUp();
    output_ = folder_.Path("out");
    std::filesystem::create_directory(output_);
  }
  std::string output_;
};

TEST_F(Placement, ConvertedFileIsMovedToTheInputNameWithMgjsonAppended) {
  const std::string input = folder_.WriteFile("ride.csv", "a\n1\n");
  ISensorFileHandler *handler = nullptr;
  manager_->OpenFile(&handler, input.c_str(), output_.c_str(), &log_);
  ASSERT_NE(handler, nullptr) << TakeError();
  const std::string placed = output_ + "/ride.csv.mgjson";
  PX_FileInfo info;
  handler->GetFileInfo(&info, &log_);
  EXPECT_EQ(info.mgjsonPath, placed) << "the handler reads the file the host keeps";
  EXPECT_EQ(folder_.Entries(), (std::set<std::string>{"out", "ride.csv"}));
  EXPECT_TRUE(TempFiles().empty()) << "the file was converted in the output directory";

  // Opened again while open, with another location: the open file is copied there.
  const std::string second = folder_.Path("second");
  std::filesystem::create_directory(second);
  ISensorFileHandler *again = nullptr;
  manager_->OpenFile(&again, input.c_str(), second.c_str(), &log_);
  EXPECT_EQ(again, handler);
  manager_->CloseFile(&again, &log_);
  manager_->CloseFile(&handler, &log_);
  EXPECT_EQ(TakeError(), "ok");
  EXPECT_EQ(Contents(placed).rfind("{\"version\":\"mgjson2.0.0\"", 0), 0u);
  EXPECT_EQ(Contents(second + "/ride.csv.mgjson"), Contents(placed));
  EXPECT_TRUE(TempFiles().empty());

  // A target that exists gets the new data; the old data does not stay behind.
  std::ofstream(placed, std::ios::binary | std::ios::trunc) << "old";
  manager_->OpenFile(&handler, input.c_str(), output_.c_str(), &log_);
  manager_->CloseFile(&handler, &log_);
  EXPECT_EQ(TakeError(), "ok");
  EXPECT_NE(Contents(placed), "old");
  std::set<std::string> names;
  for (const auto &entry : std::filesystem::directory_iterator(output_)) names.insert(entry.path().filename().string());
  EXPECT_EQ(names, std::set<std::string>{"ride.csv.mgjson"});
}

TEST_F(Placement, MgjsonInputIsCopied) {
  const std::string flight = std::string(PALVEX_SOURCE_DIR) + "/examples/flight_v1_timecode.mgjson";
  std::ofstream(output_ + "/flight_v1_timecode.mgjson.mgjson", std::ios::binary) << std::string(1 << 20, 'x');
  ISensorFileHandler *handler = nullptr;
  manager_->OpenFile(&handler, flight.c_str(), (output_ + "/").c_str(), &log_);
  ASSERT_NE(handler, nullptr) << TakeError();
  manager_->CloseFile(&handler, &log_);
  EXPECT_EQ(Contents(output_ + "/flight_v1_timecode.mgjson.mgjson"), Contents(flight)) << "copied and cut to length";
}

TEST_F(Placement, OutputLocationMustBeADirectory) {
  const std::string input = folder_.WriteFile("ride.csv", "a\n1\n");
  for (const std::string &location : {folder_.Path("nothing"), input}) {
    ISensorFileHandler *handler = nullptr;
    manager_->OpenFile(&handler, input.c_str(), location.c_str(), &log_);
    EXPECT_EQ(TakeError(), "58 MGJSON output directory does not exists.") << location;
    EXPECT_EQ(handler, nullptr);
  }
  // A folder where the placed file would go is refused and leaves nothing behind.
  std::filesystem::create_directory(output_ + "/ride.csv.mgjson");
  ISensorFileHandler *handler = nullptr;
  manager_->OpenFile(&handler, input.c_str(), output_.c_str(), &log_);
  EXPECT_EQ(TakeError().substr(0, 2), "4 ");
  EXPECT_EQ(handler, nullptr);
  std::set<std::string> names;
  for (const auto &entry : std::filesystem::directory_iterator(output_)) names.insert(entry.path().filename().string());
  EXPECT_EQ(names, std::set<std::string>{"ride.csv.mgjson"});
  EXPECT_TRUE(TempFiles().empty());
}

}  // namespace
}  // namespace palvex::testing
