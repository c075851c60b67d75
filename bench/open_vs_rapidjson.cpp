// Opens an MGJSON file through the public interface (scan, validate, index, compaction)
// and parses the same bytes with RapidJSON's DOM parser, in one run, and prints both
// throughputs, their ratio and our peak heap growth:
//   open_vs_rapidjson FILE [ROUNDS]
#include <rapidjson/document.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

#include "heap_meter.hpp"
#include "palvex/host.hpp"

namespace {

using Clock = std::chrono::steady_clock;

double Seconds(Clock::duration d) { return std::chrono::duration<double>(d).count(); }

std::string ReadAll(const char *path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

}  // namespace

int main(int argc, char **argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: open_vs_rapidjson FILE [ROUNDS]\n");
    return 2;
  }
  const int rounds = argc > 2 ? std::atoi(argv[2]) : 3;
  const std::string bytes = ReadAll(argv[1]);
  const double megabytes = static_cast<double>(bytes.size()) / 1e6;

  palvex::host::Library library;
  palvex::host::ErrorLog errors;
  double ours = 1e30;
  double theirs = 1e30;
  std::size_t peakGrowth = 0;
  for (int round = 0; round < rounds; ++round) {
    // Ours: the whole open, as a host sees it.
    const std::size_t before = palvex::bench::HeapInUse();
    palvex::bench::ResetHeapPeak();
    const auto start = Clock::now();
    ISensorFileHandler *handler = nullptr;
    library.manager()->OpenFile(&handler, argv[1], nullptr, &errors);
    ours = std::min(ours, Seconds(Clock::now() - start));
    peakGrowth = std::max(peakGrowth, palvex::bench::HeapPeak() - before);
    if (!handler) {
      for (const auto &error : errors.errors) std::fprintf(stderr, "error %u: %s\n", error.code, error.message.c_str());
      return 1;
    }
    library.manager()->CloseFile(&handler, &errors);

    // Theirs: a DOM parse of the same bytes, already in memory.
    const auto domStart = Clock::now();
    rapidjson::Document document;
    document.Parse(bytes.data(), bytes.size());
    theirs = std::min(theirs, Seconds(Clock::now() - domStart));
    if (document.HasParseError()) {
      std::fprintf(stderr, "RapidJSON refuses the file\n");
      return 1;
    }
  }
  std::printf("file            %.1f MB\n", megabytes);
  std::printf("palvex open     %.1f MB/s\n", megabytes / ours);
  std::printf("RapidJSON DOM   %.1f MB/s\n", megabytes / theirs);
  std::printf("ratio           %.2f (target >= 1.0)\n", theirs / ours);
  std::printf("peak heap       %.1f MiB over the open\n", static_cast<double>(peakGrowth) / (1024.0 * 1024.0));
  return 0;
}
