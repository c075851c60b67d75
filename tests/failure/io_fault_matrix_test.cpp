// The I/O fault matrix: for each scenario, every backend operation of the platform layer
// fails in turn (its 1st, 2nd, 3rd ... call of the run) with each kind of failure.
#include <array>
#include <map>

#include "failure/driver_support.hpp"
#include "failure/scenario_runner.hpp"
#include "platform/fault_injection.hpp"

namespace palvex::failure {
namespace {

using palvex::platform::ErrorKind;
using palvex::platform::FaultPoint;

constexpr std::array<const char *, palvex::platform::kFaultPointCount> kPointNames = {
    "CheckPath",  "OpenFile",         "CloseFile",         "ReadFile",      "WriteFile",
    "SeekFile",   "SetEndOfFile",     "FileSize",          "QueryPathKind", "DeleteFile",
    "MovePath",   "OpenFolderSearch", "NextFolderEntry",   "CloseFolderSearch", "TempDirectory",
    "CreateUniqueTempFile", "MapWholeFile", "UnmapWholeFile"};

// Every kind the seam offers: a vanished file or folder, a refused permission, a full
// disk, a rename onto an existing name, a path the system refuses, a read or write error.
constexpr ErrorKind kKinds[] = {ErrorKind::NotFound,      ErrorKind::AccessDenied, ErrorKind::DiskFull,
                                ErrorKind::AlreadyExists, ErrorKind::NameTooLong,  ErrorKind::Other};

// Codes that only stand for a fault of the library itself: an assertion, or a failure it
// did not know how to name.
bool IsDocumentedIoError(const palvex::host::Error &error) {
  constexpr std::uint32_t kAssertion = 19, kUnknown = 23, kConverterUnknown = 1023;
  return error.code != 0 && error.code != kAssertion && error.code != kUnknown && error.code != kConverterUnknown &&
         error.detail1 != kConverterUnknown;
}

class IoFaultMatrix : public ::testing::TestWithParam<std::size_t> {};

TEST_P(IoFaultMatrix, EveryFailingCallEndsInADocumentedErrorAndLeavesNothingBehind) {
  ASSERT_TRUE(palvex::platform::FaultInjectionAvailable());
  const Scenario &scenario = Scenarios()[GetParam()];
  ScenarioRunner runner(scenario);
  ASSERT_EQ(runner.baselineProblem(), "");
  const auto start = std::chrono::steady_clock::now();
  std::uint64_t injected = 0;
  bool complete = true;
  std::map<std::uint32_t, std::uint64_t> codes;
  const auto accepted = [&codes](const palvex::host::Error &error) {
    ++codes[error.code];
    return IsDocumentedIoError(error);
  };
  for (std::size_t point = 0; point < kPointNames.size(); ++point) {
    const auto faultPoint = static_cast<FaultPoint>(point);
    const bool releases = faultPoint == FaultPoint::CloseFile || faultPoint == FaultPoint::CloseFolderSearch ||
                          faultPoint == FaultPoint::UnmapWholeFile;
    for (const ErrorKind kind : kKinds) {
      bool hit = true;
      std::uint32_t skip = 0;
      for (; hit && WithinLimit(skip + 1); ++skip) {
        const std::string problem = runner.RunOnce(
            [&] { palvex::platform::ArmFault(faultPoint, kind, 1, skip); },
            [&] {
              const bool triggered = palvex::platform::FaultsTriggered(faultPoint) > 0;
              palvex::platform::DisarmAllFaults();
              return triggered;
            },
            accepted, &hit,
            Leniency{.descriptorsMayStay = releases,
                     .filesMayStay = faultPoint == FaultPoint::DeleteFile || faultPoint == FaultPoint::CheckPath ||
                                     (faultPoint == FaultPoint::QueryPathKind &&
                                      (kind == ErrorKind::NotFound || kind == ErrorKind::NameTooLong))});
        ASSERT_EQ(problem, "") << kPointNames[point] << " call " << skip + 1 << " failing with kind "
                               << static_cast<int>(kind);
        if (hit) ++injected;
      }
      complete = complete && !hit;
    }
  }
  std::string histogram = "codes";
  for (const auto &[code, count] : codes) histogram += " " + std::to_string(code) + "x" + std::to_string(count);
  PrintFigures("io", scenario.name, injected, complete, start, histogram);
}

INSTANTIATE_TEST_SUITE_P(Scenarios, IoFaultMatrix, ScenarioIndices(), ScenarioName);

}  // namespace
}  // namespace palvex::failure
