// Converts a telemetry-like JSON file (an array of objects with a dozen members each)
// through the public interface, and parses the same bytes with RapidJSON's DOM parser, in
// one run; prints both throughputs, their ratio and both peak heaps, against the budget
// of the DOM's peak plus 256 bytes per node the conversion creates:
//   convert_json [OBJECTS] [ROUNDS]   (defaults 200000, about 50 MB, and 3)
#include <rapidjson/document.h>

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "heap_meter.hpp"
#include "palvex/host.hpp"

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kBudgetPerNode = 256;
constexpr std::size_t kMembersPerObject = 12;  // every one a string, number or boolean

double Seconds(Clock::duration d) { return std::chrono::duration<double>(d).count(); }
double MiB(std::size_t bytes) { return static_cast<double>(bytes) / (1024.0 * 1024.0); }

// A small deterministic generator, so every run converts the same text.
class Lcg {
 public:
  std::uint32_t Next() {
    state_ = state_ * 6364136223846793005ULL + 1442695040888963407ULL;
    return static_cast<std::uint32_t>(state_ >> 33);
  }
  double Between(double low, double high) { return low + (high - low) * (Next() / 2147483648.0); }

 private:
  std::uint64_t state_ = 42;
};

std::string Telemetry(std::size_t objects) {
  static const char *const kModes[] = {"2d", "3d", "dgps", "none"};
  Lcg random;
  std::string json = "[\n";
  char record[512];
  for (std::size_t i = 0; i < objects; ++i) {
    const int length = std::snprintf(
        record, sizeof record,
        "  {\"time\": %llu, \"latitude\": %.7f, \"longitude\": %.7f, \"altitude\": %.2f, \"speed\": %.3f, "
        "\"heading\": %.1f, \"climb\": %.2f, \"satellites\": %u, \"hdop\": %.1f, \"fix\": %s, "
        "\"mode\": \"%s\", \"device\": \"unit-%03u\"}%s\n",
        1700000000000ULL + i * 100, random.Between(47.0, 48.0), random.Between(8.0, 9.0),
        random.Between(300.0, 900.0), random.Between(0.0, 40.0), random.Between(0.0, 360.0),
        random.Between(-3.0, 3.0), random.Next() % 24, random.Between(0.5, 5.0),
        random.Next() % 8 != 0 ? "true" : "false", kModes[random.Next() % 4], random.Next() % 1000,
        i + 1 < objects ? "," : "");
    json.append(record, static_cast<std::size_t>(length));
  }
  json += "]\n";
  return json;
}

}  // namespace

int main(int argc, char **argv) {
  const std::size_t objects = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 200000;
  const int rounds = argc > 2 ? std::atoi(argv[2]) : 3;
  const std::string bytes = Telemetry(objects);
  const std::filesystem::path input = std::filesystem::temp_directory_path() / "palvex-bench-telemetry.json";
  std::ofstream(input, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  const double megabytes = static_cast<double>(bytes.size()) / 1e6;
  const std::size_t nodes = objects * (kMembersPerObject + 1);  // a group per object

  palvex::host::Library library;
  palvex::host::ErrorLog errors;
  double ours = 1e30;
  double theirs = 1e30;
  std::size_t ourPeak = 0;
  std::size_t domPeak = 0;
  std::uint64_t written = 0;
  for (int round = 0; round < rounds; ++round) {
    // Ours: the whole conversion, as a host asks for it, up to the written file.
    std::size_t before = palvex::bench::HeapInUse();
    palvex::bench::ResetHeapPeak();
    auto start = Clock::now();
    IMgjsonStream *stream = nullptr;
    library.manager()->CreateMgjsonStream(&stream, input.string().c_str(), 0, &errors);
    ours = std::min(ours, Seconds(Clock::now() - start));
    ourPeak = std::max(ourPeak, palvex::bench::HeapPeak() - before);
    if (stream == nullptr) {
      for (const auto &error : errors.errors) std::fprintf(stderr, "error %u: %s\n", error.code, error.message.c_str());
      return 1;
    }
    written = stream->GetTotalSize();
    library.manager()->ReleaseMgjsonStream(&stream, &errors);

    // Theirs: a DOM parse of the same bytes, already in memory.
    before = palvex::bench::HeapInUse();
    palvex::bench::ResetHeapPeak();
    start = Clock::now();
    {
      rapidjson::Document document;
      document.Parse(bytes.data(), bytes.size());
      theirs = std::min(theirs, Seconds(Clock::now() - start));
      domPeak = std::max(domPeak, palvex::bench::HeapPeak() - before);
      if (document.HasParseError()) {
        std::fprintf(stderr, "RapidJSON refuses the file\n");
        return 1;
      }
    }
  }
  std::filesystem::remove(input);
  const std::size_t budget = domPeak + kBudgetPerNode * nodes;
  std::printf("file              %.1f MB, %zu objects, %zu nodes\n", megabytes, objects, nodes);
  std::printf("written           %.1f MB of MGJSON\n", static_cast<double>(written) / 1e6);
  std::printf("palvex convert    %.1f MB/s of input, %.1f MB/s of output\n", megabytes / ours,
              static_cast<double>(written) / 1e6 / ours);
  std::printf("RapidJSON DOM     %.1f MB/s\n", megabytes / theirs);
  std::printf("ratio             %.2f (target >= 0.5)\n", theirs / ours);
  std::printf("peak heap         %.1f MiB converting, %.1f MiB parsing\n", MiB(ourPeak), MiB(domPeak));
  std::printf("budget            %.1f MiB (DOM peak + %zu B per node): %s\n", MiB(budget), kBudgetPerNode,
              ourPeak <= budget ? "met" : "exceeded");
  std::printf("per node          %.0f B over the DOM's peak\n",
              (static_cast<double>(ourPeak) - static_cast<double>(domPeak)) / static_cast<double>(nodes));
  return 0;
}
