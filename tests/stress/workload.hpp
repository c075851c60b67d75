// What the stress threads do: the inputs, the results expected of them (computed on one
// thread first), and one worker's mix of operations, checked against those results.
#pragma once

#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

#include "digest.hpp"

namespace palvex::stress {

struct Input {
  std::string path;
  bool converts = false;  // opening or streaming it runs a conversion
};

struct Expected {
  std::vector<std::string> files;    // DigestFile per input
  std::vector<std::string> streams;  // DigestStream per input
  std::string formats;
  std::string localizedMessage;      // kMissingFileKey with "x"
  uint32_t missingFileCode = 0;
};

// Operations done, summed over the threads for the closing figures.
struct Tally {
  std::uint64_t managers = 0, opens = 0, conversions = 0, streams = 0, failures = 0;
  CallCount queries;
  void Add(const Tally &other);
};

// What every worker shares: the inputs and their results, the lock that keeps conversions
// one at a time (the rule hosts follow), and the list of results that differed.
struct Shared {
  std::vector<Input> inputs;
  std::string pluginFolder;
  std::string workspace;
  Expected expected;
  std::mutex conversionLock;
  std::mutex mismatchLock;
  std::vector<std::string> mismatches;

  void Mismatch(int thread, int iteration, const std::string &what, const std::string &expected,
                const std::string &actual);
};

// The message key of the deliberate failure: a path that does not exist.
inline constexpr const char *kMissingFileKey = "$$$/PXError/FileNotExist=File not exist at input path:^1.";

// Computes shared.expected on the calling thread alone; false (with the reason printed)
// when even that fails.
bool ComputeExpected(Shared &shared, Tally &tally);

// One worker: iterations rounds of create, open, query, fail on purpose, stream, close and
// destroy, every result compared with shared.expected.
void RunWorker(Shared &shared, int thread, int iterations, Tally &tally);

}  // namespace palvex::stress
