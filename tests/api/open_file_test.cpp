// OpenFile and CloseFile of the manager, with its table of open files.
#include <gtest/gtest.h>

#include <mutex>
#include <string>

#include "api/client_table.hpp"
#include "api/input_resolution.hpp"
#include "api/manager_lifetime.hpp"
#include "api/palvex_impl.hpp"
#include "converters/converter_selection.hpp"
#include "mgjson_read/sample_test_support.hpp"
#include "palvex/host.hpp"
#include "platform/file_test_support.hpp"
#include "support/test_host.hpp"

namespace {

using palvex::host::ErrorLog;

class OpenFiles : public ::testing::Test {
 protected:
  void SetUp() override {
    CreatePalvex_1(&manager_, nullptr, nullptr, nullptr, &log_, palvex::testing::TestCallbacks(), nullptr);
    ASSERT_NE(manager_, nullptr);
    ASSERT_EQ(ns_sensor::ClientTable(), palvex::testing::TestCallbacks());
    impl_ = dynamic_cast<ns_sensor::PalvexImpl *>(manager_);
    ASSERT_NE(impl_, nullptr);
    flight_ = std::string(PALVEX_SOURCE_DIR) + "/examples/flight_v1_timecode.mgjson";
  }
  void TearDown() override { DestroyPalvex_1(&manager_, &log_); }

  // A version 2 file with one sample.
  static std::string SmallFile() {
    using namespace ns_sensor::testing;
    return V2Utc({Node("a", 1)}, {SampleSet("a", {{Utc(0), Number(1)}})});
  }

  std::map<std::string, std::uint16_t> Table() const { return impl_->openFiles().OpenCounts(); }

  // The raising form's fault as "code message", or "ok".
  template <class Body>
  static std::string Outcome(Body &&body) {
    try {
      body();
      return "ok";
    } catch (const ns_sensor::PX_Exception &e) {
      return std::to_string(e.code()) + " " + e.what();
    }
  }

  IPalvex *manager_ = nullptr;
  ns_sensor::PalvexImpl *impl_ = nullptr;
  ErrorLog log_;
  std::string flight_;
  palvex::testing::ScratchFolder folder_;
};

TEST_F(OpenFiles, OnePathOneHandlerUntilTheLastClose) {
  ISensorFileHandler *first = nullptr;
  ISensorFileHandler *second = nullptr;
  manager_->OpenFile(&first, flight_.c_str(), nullptr, &log_);
  manager_->OpenFile(&second, flight_.c_str(), "", &log_);
  ASSERT_TRUE(log_.empty()) << log_.errors[0].message;
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(first, second);
  EXPECT_EQ(Table(), (std::map<std::string, std::uint16_t>{{flight_, 2}}));

  manager_->CloseFile(&first, &log_);
  EXPECT_EQ(first, second) << "only the last close clears the caller's pointer";
  PX_FileInfo info;
  second->GetFileInfo(&info, &log_);  // still alive
  EXPECT_EQ(info.schemaVersion, 1u);

  manager_->CloseFile(&second, &log_);
  EXPECT_EQ(second, nullptr);
  EXPECT_TRUE(Table().empty());
  EXPECT_TRUE(log_.empty());

  // The first copy of the pointer now names nothing: refused without being used.
  manager_->CloseFile(&first, &log_);
  ASSERT_EQ(log_.errors.size(), 1u);
  EXPECT_EQ(log_.errors[0].code, 26u);
  EXPECT_EQ(log_.errors[0].message, "No file is opened by Palvex.");
}

TEST_F(OpenFiles, CloseRefusesWhatTheTableDidNotHandOut) {
  ISensorFileHandler *open = nullptr;
  manager_->OpenFile(&open, flight_.c_str(), nullptr, &log_);
  ASSERT_NE(open, nullptr);
  const auto path = folder_.WriteFile("other.mgjson", SmallFile());
  ns_sensor::SensorFileHandlerImpl foreign(path, path, ns_sensor::InputKind::MgjsonByExtension);
  ISensorFileHandler *foreignPointer = &foreign;
  ISensorFileHandler *null = nullptr;
  EXPECT_EQ(Outcome([&] { impl_->CloseFile(&foreignPointer); }),
            "27 File handler is not created by this Palvex instance.");
  EXPECT_EQ(Outcome([&] { impl_->CloseFile(&null); }), "1 Invalid pointer to \"ISensorFileHandler\".");
  EXPECT_EQ(Outcome([&] { impl_->CloseFile(nullptr); }), "1 Invalid pointer to \"ISensorFileHandler\".");
  EXPECT_EQ(foreignPointer, &foreign);
  EXPECT_EQ(Table().size(), 1u);
  manager_->CloseFile(&open, &log_);
  EXPECT_TRUE(log_.empty());
}

TEST_F(OpenFiles, RefusedOpensAddNothingAndReleaseTheLock) {
  const std::string csv = folder_.WriteFile("data.csv", "a,b\n");
  const std::string json = folder_.WriteFile("data.json", R"({"a": null})");
  const std::string broken = folder_.WriteFile("broken.mgjson", R"({"version": "MGJSON1.0.0", )");
  const std::string missing = folder_.Path("missing.mgjson");
  struct Case {
    const char *label;
    const char *path;
    const char *outputLocation;
    std::string expected;
  };
  const std::string longLocation(65535, 'x');
  const std::string longestLocation(65534, 'x');
  const Case cases[] = {
      {"no such file", missing.c_str(), nullptr, "4 File not exist at input path:" + missing + "."},
      {"null path", nullptr, nullptr, "4 File not exist at input path:."},
      {"a table without rows", csv.c_str(), nullptr, "1506 File Cannot be converted."},
      {"JSON with nothing to convert", json.c_str(), nullptr, "1506 File Cannot be converted."},
      {"broken MGJSON", broken.c_str(), nullptr, "32 Parsing error:, Invalid JSON."},
      {"output location of 65535 bytes", flight_.c_str(), longLocation.c_str(),
       "3 Input file path length is greater than the supported file path length."},
      // One byte shorter passes the length check and meets the next: a directory.
      {"output location of 65534 bytes", flight_.c_str(), longestLocation.c_str(),
       "58 MGJSON output directory does not exists."},
  };
  for (const Case &c : cases) {
    ISensorFileHandler *handler = reinterpret_cast<ISensorFileHandler *>(&log_);  // not yet null
    EXPECT_EQ(Outcome([&] { impl_->OpenFile(&handler, c.path, c.outputLocation); }), c.expected) << c.label;
    EXPECT_EQ(handler, nullptr) << c.label;
    EXPECT_TRUE(Table().empty()) << c.label;
    std::unique_lock lock(ns_sensor::GlobalMutex(), std::try_to_lock);
    EXPECT_TRUE(lock.owns_lock()) << c.label << ": the mutex must be released";
  }
  EXPECT_EQ(Outcome([&] { impl_->OpenFile(nullptr, flight_.c_str(), nullptr); }),
            "1 Invalid pointer to \"ISensorFileHandler\".");
  // Nothing was left behind by the refused opens.
  EXPECT_EQ(folder_.Entries(), (std::set<std::string>{"broken.mgjson", "data.csv", "data.json"}));
}

TEST_F(OpenFiles, Version2ContentIsMgjsonWhateverTheName) {
  // The content test takes the marker exactly as the library writes it.
  std::string content = SmallFile();
  content.replace(content.find("MGJSON2.0.0"), 11, "mgjson2.0.0");
  const std::string path = folder_.WriteFile("recording.json", content);
  EXPECT_EQ(ns_sensor::ResolveInput(path, "").kind, ns_sensor::InputKind::MgjsonByContent);
  ISensorFileHandler *handler = nullptr;
  manager_->OpenFile(&handler, path.c_str(), nullptr, &log_);
  ASSERT_TRUE(log_.empty()) << log_.errors[0].message;
  PX_FileInfo info;
  handler->GetFileInfo(&info, &log_);
  EXPECT_EQ(info.schemaVersion, 2u);
  EXPECT_FALSE(info.converted);
  manager_->CloseFile(&handler, &log_);
  EXPECT_EQ(handler, nullptr);
}

TEST(InputExtension, TakesTheTextAfterTheLastDotOfTheName) {
  const std::pair<const char *, const char *> cases[] = {
      {"/a/b/run.MGJSON", "mgjson"}, {"C:\\x.y\\data", ""}, {"archive.tar.Gz", "gz"}, {"noext", ""}, {"dir/.hidden", "hidden"},
  };
  for (const auto &[path, extension] : cases) EXPECT_EQ(ns_sensor::InputExtension(path), extension) << path;
}

TEST_F(OpenFiles, ClosingTheManagerDestroysHandlersStillOpen) {
  IPalvex *extra = nullptr;
  CreatePalvex_1(&extra, nullptr, nullptr, nullptr, &log_, palvex::testing::TestCallbacks(), nullptr);
  ISensorFileHandler *handler = nullptr;
  manager_->OpenFile(&handler, flight_.c_str(), nullptr, &log_);
  ASSERT_NE(handler, nullptr);
  DestroyPalvex_1(&extra, &log_);
  EXPECT_EQ(Table().size(), 1u) << "the manager is still in use";
  // TearDown releases the last use; AddressSanitizer sees any handler left behind.
}

}  // namespace
