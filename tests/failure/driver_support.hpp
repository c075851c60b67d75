// What both drivers share: the scenario parameter, the CI limit and the figures line.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "failure/scenario.hpp"

namespace palvex::failure {

// PALVEX_FAILURE_LIMIT caps the failures injected per scenario (per point and kind in the
// I/O matrix), so CI runs a bounded slice; unset or 0, each runs to completion.
inline std::uint64_t FailureLimit() {
  const char *text = std::getenv("PALVEX_FAILURE_LIMIT");
  return text == nullptr ? 0 : std::strtoull(text, nullptr, 10);
}

inline bool WithinLimit(std::uint64_t n) { return FailureLimit() == 0 || n <= FailureLimit(); }

// Scenarios as test parameters, named after themselves.
inline auto ScenarioIndices() { return ::testing::Range<std::size_t>(0, Scenarios().size()); }
inline std::string ScenarioName(const ::testing::TestParamInfo<std::size_t> &info) {
  return Scenarios()[info.param].name;
}

// One line per scenario for scripts/failure-matrix.sh to collect.
inline void PrintFigures(const char *driver, const char *scenario, std::uint64_t survived, bool complete,
                         std::chrono::steady_clock::time_point start, const std::string &extra = "") {
  const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  std::printf("[ figures  ] %s %s survived=%llu complete=%s seconds=%.1f %s\n", driver, scenario,
              static_cast<unsigned long long>(survived), complete ? "yes" : "no", seconds, extra.c_str());
}

}  // namespace palvex::failure
