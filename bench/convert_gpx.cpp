// Converts a long GPX ride (1,000,000 track points with elevation, heart rate, cadence and
// temperature, about 150 MB) through the library and the bundled GPX plug-in and, in the
// same run, writes a document of the same shape (the nine number streams the conversion
// makes, point by point at the same UTC times) straight through the object model: the
// writer's raw rate for that output. Prints the conversion's rate in MB/s of input (both
// passes), its ratio to the raw write, and its peak heap growth against a budget: 1 MiB per
// dynamic node (its sample store), 1 MiB for the writer's pending text, and 1 MiB for
// expat's buffers and the plug-in's state:
//   convert_gpx [POINTS]   (default 1000000)
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "heap_meter.hpp"
#include "stream_conversion.hpp"
#include "palvex/host.hpp"
#include "plugin_model/mgjson_writer.hpp"
#include "plugin_model/root_impl.hpp"
#include "utc_time.hpp"

namespace {

using namespace PX_PLUGIN;

constexpr std::size_t kStreams = 9;  // latitude ... distance, heart rate, cadence, temperature
constexpr std::size_t kBufferBytes = 0x100000;
constexpr std::size_t kAllowance = 0x100000;
constexpr std::int64_t kStart = 1718436600;  // 2024-06-15T07:30:00Z

double MiB(std::size_t bytes) { return static_cast<double>(bytes) / (1024.0 * 1024.0); }

struct Fix {
  double lat, lon, ele;
  int hr, cad;
  double temp;
};

// Point i of a ride at 1 Hz: a slow spiral with smooth sensor values.
Fix FixAt(std::uint64_t i) {
  const double t = static_cast<double>(i);
  return {46.8 + 0.02 * std::sin(t * 1e-4), 9.4 + 0.03 * std::cos(t * 1.3e-4), 600 + 80 * std::sin(t * 7e-4),
          120 + static_cast<int>(30 * std::sin(t * 3e-3)), 80 + static_cast<int>(8 * std::sin(t * 9e-3)),
          18 + 4 * std::sin(t * 2e-5)};
}

void WriteGpx(const std::string &path, std::uint64_t points) {
  std::FILE *file = std::fopen(path.c_str(), "wb");
  std::fprintf(file, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<gpx version=\"1.1\" creator=\"bench\" "
                     "xmlns:sx=\"urn:bench\">\n<trk><name>Long ride</name><trkseg>\n");
  for (std::uint64_t i = 0; i < points; ++i) {
    const Fix fix = FixAt(i);
    const std::string time = palvex_plugins::FormatTime({kStart + static_cast<std::int64_t>(i), 0}, 0, true);
    std::fprintf(file,
                 "<trkpt lat=\"%.7f\" lon=\"%.7f\"><ele>%.1f</ele><time>%s</time><extensions><sx:e>"
                 "<sx:hr>%d</sx:hr><sx:cad>%d</sx:cad><sx:atemp>%.1f</sx:atemp></sx:e></extensions></trkpt>\n",
                 fix.lat, fix.lon, fix.ele, time.c_str(), fix.hr, fix.cad, fix.temp);
  }
  std::fprintf(file, "</trkseg></trk>\n</gpx>\n");
  std::fclose(file);
}

// The writer's raw rate: nine number streams, point by point at the same times, no parsing.
bool WriteRaw(const std::string &path, std::uint64_t points) {
  RootSettings settings;
  settings.outputPath = path;
  settings.makeWriter = MakeMgjsonWriter;
  const auto owner = MgjsonRootImpl::Create(std::move(settings));
  IMgjsonRoot_v1 *root = owner->HandOut();
  bool ok = root->SetUtcInfo(0, 1, nullptr) == 0;
  std::vector<PX_DynamicDataNode> nodes(kStreams);
  for (std::size_t n = 0; n < nodes.size() && ok; ++n) {
    const std::string name = "node" + std::to_string(n);
    const auto length = static_cast<std::uint32_t>(name.size());
    ok = root->CreateDynamicData(PX_DYNAMIC_NUMBER, name.data(), length, name.data(), length, &nodes[n], nullptr) ==
             0 &&
         root->AddDynamicChild(nodes[n].node, nullptr) == 0;
  }
  double distance = 0;
  for (std::uint64_t i = 0; i < points && ok; ++i) {
    const Fix fix = FixAt(i);
    const std::string time = palvex_plugins::FormatTime({kStart + static_cast<std::int64_t>(i), 0}, 0, true);
    distance += 3.25;
    const double values[kStreams] = {fix.lat, fix.lon, fix.ele, 3.251, 123.45, std::round(distance * 100) / 100,
                                     double(fix.hr), double(fix.cad), fix.temp};
    for (std::size_t n = 0; n < kStreams && ok; ++n) {
      ok = nodes[n].number->AddSampleAtUtc(time.data(), static_cast<std::uint32_t>(time.size()), 0, 1, values[n],
                                           nullptr) == 0;
    }
  }
  ok = ok && root->Commit(nullptr, nullptr) == 0;
  for (const auto &node : nodes) {
    if (node.shared != nullptr) node.shared->Release();
  }
  root->Release();
  owner->Dispose();
  return ok;
}

}  // namespace

int main(int argc, char **argv) {
  const std::uint64_t points = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 1000000;
  const auto folder = std::filesystem::temp_directory_path() / "palvex_convert_gpx";
  std::filesystem::create_directories(folder);
  const std::string input = (folder / "ride.gpx").string();
  const std::string raw = (folder / "raw.mgjson").string();
  WriteGpx(input, points);
  const double inputMB = static_cast<double>(std::filesystem::file_size(input)) / 1e6;

  palvex::host::Library library(nullptr, PALVEX_PLUGIN_FOLDER);
  const palvex::bench::StreamConversion run = palvex::bench::ConvertThroughStream(library, input);
  if (!run.ok) return 1;
  const double convertSeconds = run.seconds;
  const double outputMB = run.outputMB;
  const std::size_t peakGrowth = run.peakGrowth;

  const palvex::bench::RawWrite rawRun =
      palvex::bench::TimeRawWrite(raw, [&](const std::string &path) { return WriteRaw(path, points); });
  if (!rawRun.ok) return 1;
  std::filesystem::remove_all(folder);

  const std::size_t budget = (kStreams + 1) * kBufferBytes + kAllowance;
  std::printf("input: %llu track points, %.1f MB of GPX\n", static_cast<unsigned long long>(points), inputMB);
  std::printf("conversion (two passes): %.2f s, %.1f MB/s of input, %.1f MB/s of output (%.1f MB)\n",
              convertSeconds, inputMB / convertSeconds, outputMB / convertSeconds, outputMB);
  palvex::bench::PrintAgainstRaw(run, rawRun);
  std::printf("conversion peak heap growth: %.1f MiB, budget %.1f MiB ((%zu streams + writer) x 1 MiB + 1 MiB)\n",
              MiB(peakGrowth), MiB(budget), kStreams);
  return peakGrowth <= budget ? 0 : 1;
}
