// The concurrency stress program: a host that uses the library from several threads at
// once, through the shared library as any host loads it.
//
//   palvex_stress_tests [--threads N] [--iterations M]
//
// First every thread makes its first call at the same moment (the once-only set-up), then
// one thread computes every result alone, then all threads open, query, fail, stream,
// close and churn managers at once, each result compared with the one computed alone.
// Built with ThreadSanitizer (PALVEX_SANITIZE_THREAD) it also proves the absence of data
// races; in other builds it still checks the results. Ends with status 1 on any difference.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <latch>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "workload.hpp"

namespace fs = std::filesystem;
using namespace palvex::stress;

namespace {

constexpr int kFormatPolls = 2000;

struct Options {
  int threads = 8;
  int iterations = 20;
};

bool ParseOptions(int argc, char **argv, Options &options) {
  for (int i = 1; i + 1 < argc; i += 2) {
    const std::string name = argv[i];
    const int value = std::atoi(argv[i + 1]);
    if (value <= 0) return false;
    if (name == "--threads") {
      options.threads = value;
    } else if (name == "--iterations") {
      options.iterations = value;
    } else {
      return false;
    }
  }
  return argc % 2 == 1;
}

template <class Body>
void OnThreads(int count, Body body) {
  std::vector<std::thread> threads;
  for (int thread = 0; thread < count; ++thread) threads.emplace_back(body, thread);
  for (auto &thread : threads) thread.join();
}

// Every thread makes its first library call at the same moment: half ask for the formats
// first (which stores the callback table), all then create the manager (the first creation
// finds the plug-ins) and release it again. Exactly one creation may receive the service table,
// and all must receive the same manager.
bool ColdStart(const Shared &shared, int threads, Tally &tally) {
  std::vector<IPalvex *> managers(threads, nullptr);
  std::vector<const PX_ServiceTable *> services(threads, nullptr);
  std::vector<std::string> reports(threads);
  std::latch start(threads), created(threads);
  OnThreads(threads, [&](int thread) {
    palvex::host::ErrorLog errors;
    start.arrive_and_wait();
    if (thread % 2 == 1) {
      // Asked again and again until the list grows (another thread's creation has found
      // the plug-in) or the polls run out: the reading then meets the discovery's writing.
      CallCount count;
      const std::string first = DigestFormats(errors, count);
      if (first.find("csv=") == std::string::npos) reports[thread] = "no csv format\n" + first;
      for (int poll = 0; poll < kFormatPolls && DigestFormats(errors, count) == first; ++poll) {
      }
    }
    IPalvex *manager = nullptr;
    CreatePalvex_1(&manager, shared.pluginFolder.c_str(), nullptr, nullptr, &errors, palvex::host::Callbacks(),
                   &services[thread]);
    managers[thread] = manager;
    created.arrive_and_wait();
    if (manager != nullptr) DestroyPalvex_1(&manager, &errors);
    reports[thread] += DescribeErrors(errors);
  });
  tally.managers += static_cast<std::uint64_t>(threads);
  int handedOut = 0;
  bool ok = true;
  for (int thread = 0; thread < threads; ++thread) {
    if (services[thread] != nullptr) {
      ++handedOut;
      palvex::host::ServiceTable() = services[thread];
    }
    if (managers[thread] == nullptr || managers[thread] != managers[0] || !reports[thread].empty()) {
      std::fprintf(stderr, "first calls, thread %d:\n%s", thread, reports[thread].c_str());
      ok = false;
    }
  }
  if (handedOut != 1) std::fprintf(stderr, "the service table was handed out %d times\n", handedOut);
  return ok && handedOut == 1;
}

// A fresh folder of the run: a second path to one MGJSON file (another entry of the
// table of open files) and each thread's output folder.
bool MakeWorkspace(Shared &shared, int threads) {
  std::error_code error;
  const fs::path folder = fs::temp_directory_path(error) / ("palvex-stress-" + std::to_string(std::random_device{}()));
  fs::create_directories(folder, error);
  for (int thread = 0; thread < threads && !error; ++thread) fs::create_directory(folder / ("out" + std::to_string(thread)), error);
  const std::string examples = std::string(PALVEX_SOURCE_DIR) + "/examples/";
  fs::copy_file(examples + "run_v2_utc.mgjson", folder / "run_again.mgjson", error);
  if (error) {
    std::fprintf(stderr, "cannot make %s: %s\n", folder.string().c_str(), error.message().c_str());
    return false;
  }
  shared.workspace = folder.string();
  shared.inputs = {
      {examples + "run_v2_utc.mgjson", false},      {examples + "flight_v1_timecode.mgjson", false},
      {shared.workspace + "/run_again.mgjson", false}, {examples + "bike_ride.csv", true},
      {examples + "walk.bvh", true},                {examples + "device_report.json", true},
      {examples + "pier_wind.gust", true},  // converted by the example plug-in
  };
  return true;
}

}  // namespace

int main(int argc, char **argv) {
  Options options;
  if (!ParseOptions(argc, argv, options)) {
    std::fprintf(stderr, "usage: palvex_stress_tests [--threads N] [--iterations M]\n");
    return 2;
  }
  Shared shared;
  shared.pluginFolder = PALVEX_STRESS_PLUGIN_DIR;
  if (!MakeWorkspace(shared, options.threads)) return 1;
  const auto began = std::chrono::steady_clock::now();
  Tally total;
  bool ok = ColdStart(shared, options.threads, total) && ComputeExpected(shared, total);
  if (ok) {
    std::vector<Tally> tallies(options.threads);
    OnThreads(options.threads, [&](int thread) { RunWorker(shared, thread, options.iterations, tallies[thread]); });
    for (const Tally &tally : tallies) total.Add(tally);
  }
  const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - began).count();
  for (size_t i = 0; i < shared.mismatches.size() && i < 5; ++i) std::fprintf(stderr, "%s\n", shared.mismatches[i].c_str());
  std::error_code error;
  fs::remove_all(shared.workspace, error);
  char time[32];
  std::snprintf(time, sizeof time, "%.1f s", seconds);
  using std::to_string;
  std::printf("%s\n", ("stress: " + to_string(options.threads) + " threads x " + to_string(options.iterations) +
                       " rounds: " + to_string(total.managers) + " manager uses, " + to_string(total.opens) +
                       " opens, " + to_string(total.conversions) + " conversions, " + to_string(total.streams) +
                       " streams, " + to_string(total.failures) + " failures on purpose, " +
                       to_string(total.queries.calls) + " other calls; " + to_string(shared.mismatches.size()) +
                       " differences; " + time)
                          .c_str());
  return ok && shared.mismatches.empty() ? 0 : 1;
}
