// Plug-ins as a host meets them, through the exported functions only: discovery at the
// first CreatePalvex_1 of the process, conversions by plug-ins opened as files, every
// plug-in failure as the host receives it, and the unloading when the last manager goes.
// Discovery runs once per process, so this is a program of its own.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "palvex/host.hpp"
#include "platform/file_test_support.hpp"
#include "support/test_host.hpp"

// Reports compared and printed whole (found by argument-dependent lookup).
namespace palvex::host {

bool operator==(const Error &a, const Error &b) {
  return a.code == b.code && a.message == b.message && a.detail1 == b.detail1 && a.detail2 == b.detail2;
}

std::ostream &operator<<(std::ostream &out, const Error &error) {
  return out << "{" << error.code << ", \"" << error.message << "\", " << error.detail1 << ", " << error.detail2 << "}";
}

}  // namespace palvex::host

namespace {

using palvex::host::Error;
using palvex::host::ErrorLog;
using palvex::testing::ScratchFolder;

const std::string kFolder = std::string(PALVEX_TEST_PLUGINS_DIR) + "/conversions";

std::vector<std::string> Extensions(const PX_SupportedFormatList &list) {
  std::vector<std::string> extensions;
  for (const auto &format : list.formats) extensions.push_back(format.extension);
  return extensions;
}

// What the process saw before and at its first creation of the manager.
struct FirstCreation {
  std::vector<std::string> formatsBefore;
  std::vector<Error> reports;
  bool managerMade = false;
};

FirstCreation &First() {
  static FirstCreation first;
  return first;
}

class FirstCreationEnvironment : public ::testing::Environment {
 public:
  void SetUp() override {
    PX_SupportedFormatList formats;
    ErrorLog log;
    GetSupportedFormats_1(&formats, &log, palvex::testing::TestCallbacks());
    First().formatsBefore = Extensions(formats);
    IPalvex *manager = nullptr;
    CreatePalvex_1(&manager, kFolder.c_str(), nullptr, "en_US", &log, palvex::testing::TestCallbacks(), nullptr);
    First().reports = log.errors;
    First().managerMade = manager != nullptr;
    if (manager != nullptr) DestroyPalvex_1(&manager, &log);
  }
};

const auto *const kEnvironment = ::testing::AddGlobalTestEnvironment(new FirstCreationEnvironment);

class PluginProcess : public ::testing::Test {
 protected:
  void SetUp() override {
    Create();
    ASSERT_NE(manager_, nullptr);
  }
  void TearDown() override {
    if (manager_ != nullptr) DestroyPalvex_1(&manager_, &log_);
    EXPECT_TRUE(log_.empty()) << log_.errors.front();
  }

  void Create() {
    // Later creations pass no folder: the first one's plug-ins stay for the process.
    CreatePalvex_1(&manager_, nullptr, nullptr, "en_US", &log_, palvex::testing::TestCallbacks(), nullptr);
  }

  // Opens a new input file with these contents; the reports of the opening.
  std::vector<Error> Open(const std::string &name, const std::string &contents, ISensorFileHandler **handler) {
    ErrorLog log;
    manager_->OpenFile(handler, scratch_.WriteFile(name, contents).c_str(), nullptr, &log);
    return log.errors;
  }

  IPalvex *manager_ = nullptr;
  ErrorLog log_;
  ScratchFolder scratch_;
  ScratchFolder output_;  // the system's temporary directory, where converted files go
  palvex::testing::ScopedEnvironment temp_{palvex::testing::kTempFolderVariable, output_.root().string().c_str()};
};

TEST_F(PluginProcess, TheFirstCreationReportsUnusableModulesAndStillMakesTheManager) {
  EXPECT_TRUE(First().managerMade);
  const std::vector<Error> expected = {{1503, "Manifest Parsing Failed.", -1, -1}};
  EXPECT_EQ(First().reports, expected);
  const auto &before = First().formatsBefore;
  EXPECT_EQ(before, (std::vector<std::string>{"bvh", "csv", "json", "mgjson", "tsv", "txt"}))
      << "listing formats before any manager runs no discovery";
}

TEST_F(PluginProcess, SupportedFormatsListThePluginRowsInOrder) {
  PX_SupportedFormatList formats;
  GetSupportedFormats_1(&formats, &log_, palvex::testing::TestCallbacks());
  const std::vector<std::string> extensions = Extensions(formats);
  EXPECT_TRUE(std::is_sorted(extensions.begin(), extensions.end()));
  for (const char *extension : {"pxc", "pxe", "pxi", "pxk", "pxm", "pxn", "pxq", "pxr", "pxs", "pxt", "pxx"}) {
    EXPECT_NE(std::find(extensions.begin(), extensions.end(), extension), extensions.end()) << extension;
  }
}

TEST_F(PluginProcess, APluginConversionOpensAsAnyFile) {
  ISensorFileHandler *file = nullptr;
  ASSERT_EQ(Open("reading.pxt", "PXTEXT\n0 1.5\n25 -2\n50 4.25\n", &file), std::vector<Error>{});
  ASSERT_NE(file, nullptr);
  ErrorLog log;
  PX_FileInfo info;
  file->GetFileInfo(&info, &log);
  EXPECT_TRUE(info.converted);
  EXPECT_EQ(info.creator, "test.text");
  PX_StaticDataInfo count;
  file->GetStaticDataInfo("[0][0]", &count, &log);
  EXPECT_EQ(count.number, 3);
  PX_DynamicDataInfo value;
  file->GetDynamicDataInfo("[0][1]", &value, &log);
  EXPECT_EQ(value.sampleCount, 3u);
  PX_DynamicSampleInfo samples;
  file->GetDynamicSampleInfo(value.sampleSetId.c_str(), 0, 3, 1, &samples, &log);
  ASSERT_EQ(samples.samples.size(), 3u);
  const double expected[] = {1.5, -2, 4.25};
  for (std::size_t at = 0; at < 3; ++at) {
    ASSERT_EQ(samples.samples[at].numbers.size(), 1u);
    EXPECT_EQ(samples.samples[at].numbers[0], expected[at]);
  }
  EXPECT_EQ(samples.samples[1].time.text, "00:00:01:00");
  EXPECT_TRUE(log.empty()) << log.errors.front();
  manager_->CloseFile(&file, &log);
  EXPECT_EQ(file, nullptr);
}

TEST_F(PluginProcess, EveryPluginFailureReachesTheHostAndLeavesNoFile) {
  const struct {
    const char *name;
    const char *contents;
    Error expected;
  } cases[] = {
      {"a.pxc", "PXCHECK", {7201, "Error in Plugin Check File Format of converter Failing check with id test.check-error.", 31, 32}},
      {"a.pxs", "PXSESSION", {7301, "Initialize Session Failed of converter Failing session with id test.session-error.", 41, 42}},
      {"a.pxe", "PXCONVERT", {7401, "Conversion to MGJSON using converter Failing conversion with id test.convert-error failed.", 51, 52}},
      {"a.pxn", "PXNOTHING", {1506, "Conversion to MGJSON using converter Converting nothing with id test.no-success failed.", -1, -1}},
      {"a.pxi", "PXINIT", {1500, "Initialization of plugin with id test.module.fail-initialize failed.", -1, -1}},
      {"b.pxi", "PXINIT", {1021, "Can't load module.", -1, -1}},
      {"a.pxx", "PXNOENTRY", {1021, "Can't load module.", -1, -1}},
  };
  for (const auto &c : cases) {
    ISensorFileHandler *file = nullptr;
    EXPECT_EQ(Open(c.name, c.contents, &file), std::vector<Error>{c.expected}) << c.name;
    EXPECT_EQ(file, nullptr) << c.name;
    EXPECT_TRUE(output_.Entries().empty()) << c.name;
  }
  // A module that failed stays failed when the last manager goes and a new one comes.
  DestroyPalvex_1(&manager_, &log_);
  Create();
  ISensorFileHandler *file = nullptr;
  EXPECT_EQ(Open("c.pxi", "PXINIT", &file), (std::vector<Error>{{1021, "Can't load module.", -1, -1}}));
}

TEST_F(PluginProcess, ATerminateFailureIsReportedByTheLastReleaseAndTheModuleLoadsAgain) {
  for (int round = 0; round < 2; ++round) {
    ISensorFileHandler *file = nullptr;
    ASSERT_EQ(Open("quit.pxq", "PXQUIT\n0 1\n", &file), std::vector<Error>{}) << round;
    ErrorLog log;
    manager_->CloseFile(&file, &log);
    DestroyPalvex_1(&manager_, &log_);
    EXPECT_EQ(manager_, nullptr) << "the use is given back all the same";
    const std::vector<Error> expected = {{7102, "Terminate of Plugin with id test.module.fail-terminate failed", 21, 22}};
    EXPECT_EQ(log_.errors, expected) << round;
    log_.clear();
    Create();
    ASSERT_NE(manager_, nullptr);
    EXPECT_TRUE(log_.empty()) << "no discovery the second time, so nothing to report";
  }
  // The rows discovered at first are still there, and still convert.
  ISensorFileHandler *file = nullptr;
  ASSERT_EQ(Open("again.pxt", "PXTEXT\n0 1\n", &file), std::vector<Error>{});
  manager_->CloseFile(&file, &log_);
}

}  // namespace
