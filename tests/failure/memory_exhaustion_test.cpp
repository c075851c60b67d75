// Memory exhaustion: each scenario runs with its 1st, 2nd, 3rd ... counted allocation
// failing, until a run no longer reaches the armed one.
#include "failure/driver_support.hpp"
#include "failure/scenario_runner.hpp"

namespace palvex::failure {
namespace {

// Memory exhaustion reaches the host as 34, or where it crossed converter code as 1034
// or as a converter or writer failure whose detail is 1034.
bool IsMemoryError(const palvex::host::Error &error) {
  constexpr std::uint32_t kNoMemory = 34;
  constexpr std::int64_t kConverterNoMemory = 1034;
  return error.code == kNoMemory || error.code == kConverterNoMemory || error.detail1 == kConverterNoMemory;
}

class MemoryExhaustion : public ::testing::TestWithParam<std::size_t> {};

TEST_P(MemoryExhaustion, EveryFailedAllocationIsReportedAndLeavesNothingBehind) {
  const Scenario &scenario = Scenarios()[GetParam()];
  ScenarioRunner runner(scenario);
  ASSERT_EQ(runner.baselineProblem(), "");
  const auto start = std::chrono::steady_clock::now();
  std::uint64_t n = 1;
  bool hit = true;
  for (; hit && WithinLimit(n); ++n) {
    const std::string problem = runner.RunOnce([n] { FailAllocation(n); }, [] { return StopFailing(); },
                                               IsMemoryError, &hit);
    ASSERT_EQ(problem, "") << "with allocation " << n << " failing";
  }
  PrintFigures("memory", scenario.name, hit ? n - 1 : n - 2, !hit, start);
}

INSTANTIATE_TEST_SUITE_P(Scenarios, MemoryExhaustion, ScenarioIndices(), ScenarioName);

}  // namespace
}  // namespace palvex::failure
