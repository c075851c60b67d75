// Converts a synthetic one-hour action-camera recording (accelerometer and gyroscope at
// 200 Hz, GPS at 18 Hz, a dozen slower streams; one payload per second) inside a 10 GB
// sparse MP4 written into a temporary folder: the index and the payloads are written, the
// video bytes are a hole. In the same run, writes a document of the same nodes and sample
// counts straight through the object model (the writer's raw rate). Prints the time, both
// rates in MB/s of output, their ratio, the bytes read from the file against the index and
// telemetry bytes, and the peak heap growth:
//   convert_gpmf [SECONDS] [GIGABYTES]   (defaults 3600 and 10)
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "bundled_plugins/gpmf/mp4_builder.hpp"
#include "byte_source.hpp"
#include "gpmf_conversion.hpp"
#include "heap_meter.hpp"
#include "plugin_model/mgjson_writer.hpp"
#include "plugin_model/root_impl.hpp"
#include "timed_stream.hpp"

namespace {

using namespace gpmf::testing;
using Clock = std::chrono::steady_clock;

struct Rate {
  const char *key;
  char type;
  int values;
  int perSecond;
};
// The streams of a 4K camera, apart from GPS.
constexpr Rate kStreams[] = {
    {"ACCL", 's', 3, 200}, {"GYRO", 's', 3, 200}, {"SHUT", 'f', 1, 30}, {"ISOE", 'S', 1, 30},
    {"WBAL", 'S', 1, 10},  {"WRGB", 'f', 3, 10},  {"YAVG", 'B', 1, 10}, {"UNIF", 'f', 1, 10},
    {"CORI", 's', 4, 30},  {"IORI", 's', 4, 30},  {"GRAV", 's', 3, 30}, {"WNDM", 'B', 2, 10},
    {"MWET", 'B', 3, 10},  {"AALP", 'b', 2, 10},
};
constexpr int kGpsPerSecond = 18;

double Seconds(Clock::duration d) { return std::chrono::duration<double>(d).count(); }
double MiB(double bytes) { return bytes / (1024.0 * 1024.0); }

std::string Element(char type, double value) {
  switch (type) {
    case 'f': {
      const float f = static_cast<float>(value);
      std::uint32_t bits;
      std::memcpy(&bits, &f, sizeof bits);
      return U32(bits);
    }
    case 's': case 'S': return U16(static_cast<std::uint16_t>(static_cast<int>(value)));
    default: return std::string(1, static_cast<char>(static_cast<int>(value)));
  }
}

std::string Payload(int second) {
  std::string streams;
  for (const Rate &rate : kStreams) {
    std::string samples;
    for (int i = 0; i < rate.perSecond; ++i) {
      for (int v = 0; v < rate.values; ++v) samples += Element(rate.type, 100 * std::sin(0.01 * (second * rate.perSecond + i) + v));
    }
    const auto bytes = static_cast<std::uint8_t>(samples.size() / rate.perSecond);
    streams += Nest("STRM", Klv("TMPC", 'f', 4, 1, U32(0x42140000)) + Klv("SCAL", 's', 2, 1, U16(100)) +
                                Klv(rate.key, rate.type, bytes, static_cast<std::uint16_t>(rate.perSecond), samples));
  }
  std::string gps;
  for (int i = 0; i < kGpsPerSecond; ++i) {
    const int m = second * kGpsPerSecond + i;
    gps += Int32s({473769000 + 10 * m, 85417000 + 10 * m, 408000 + m % 1000, 5000, 500});
  }
  char utc[32];  // 16 characters; room for what the compiler cannot rule out
  std::snprintf(utc, sizeof utc, "240115%02d%02d%02d.000", 10 + second / 3600, second / 60 % 60, second % 60);
  streams += Nest("STRM", Klv("GPSF", 'L', 4, 1, U32(3)) + Klv("GPSU", 'U', 16, 1, std::string_view(utc, 16)) +
                              Klv("GPSP", 'S', 2, 1, U16(150)) +
                              Klv("UNIT", 'c', 3, 5, std::string("degdegm\0\0m/sm/s", 15)) +
                              Klv("SCAL", 'l', 4, 5, Int32s({10000000, 10000000, 1000, 1000, 100})) +
                              Klv("GPS5", 'l', 20, kGpsPerSecond, gps));
  return Nest("DEVC", Klv("DVID", 'L', 4, 1, U32(1)) + Klv("DVNM", 'c', 1, 6, "Camera") + streams);
}

std::shared_ptr<PX_PLUGIN::MgjsonRootImpl> MakeRoot(const std::string &path) {
  PX_PLUGIN::RootSettings settings;
  settings.outputPath = path;
  settings.makeWriter = PX_PLUGIN::MakeMgjsonWriter;
  return PX_PLUGIN::MgjsonRootImpl::Create(std::move(settings));
}

// The same nodes and sample counts, values from a formula, straight through the model.
void WriteRaw(const std::string &path, int seconds) {
  struct RawNode {
    std::unique_ptr<palvex_plugins::TimedStream> stream;
    int perSecond;
    std::uint32_t values;  // 1: a number node
  };
  const auto owner = MakeRoot(path);
  PX_PLUGIN::IMgjsonRoot_v1 *root = owner->HandOut();
  {
    palvex_plugins::TimeLine times(root, 3, true);
    std::vector<RawNode> nodes;
    for (const Rate &rate : kStreams) {
      const bool array = rate.values > 1 && rate.values <= 3;
      for (int c = 0; c < (array ? 1 : rate.values); ++c) {
        const std::string name = "n" + std::to_string(nodes.size());
        auto stream = array ? std::make_unique<palvex_plugins::TimedStream>(
                                  root, PX_PLUGIN::PX_DYNAMIC_NUMBER_ARRAY, name, name,
                                  rate.values == 2 ? std::initializer_list<std::string_view>{"X", "Y"}
                                                   : std::initializer_list<std::string_view>{"X", "Y", "Z"})
                            : std::make_unique<palvex_plugins::TimedStream>(root, PX_PLUGIN::PX_DYNAMIC_NUMBER, name, name);
        nodes.push_back({std::move(stream), rate.perSecond, array ? static_cast<std::uint32_t>(rate.values) : 1u});
      }
    }
    for (int c = 0; c < 5; ++c) {  // the GPS fields
      const std::string name = "gps" + std::to_string(c);
      nodes.push_back({std::make_unique<palvex_plugins::TimedStream>(root, PX_PLUGIN::PX_DYNAMIC_NUMBER, name, name),
                       kGpsPerSecond, 1u});
    }
    const palvex_plugins::Instant start{1705314599, 999000000};
    double values[3];
    for (int s = 0; s < seconds; ++s) {
      for (RawNode &node : nodes) {
        for (int j = 0; j < node.perSecond; ++j) {
          const palvex_plugins::Instant at = *palvex_plugins::AddSeconds(start, s + static_cast<double>(j) / node.perSecond);
          for (double &v : values) v = std::round(100 * std::sin(0.01 * (s * node.perSecond + j))) / 100;
          if (node.values > 1) {
            node.stream->AddArray(times, at, values, node.values);
          } else {
            node.stream->Add(times, at, values[0]);
          }
        }
      }
    }
    for (RawNode &node : nodes) node.stream->AttachTo(root);
    std::uint32_t committed = 0;
    PX_PLUGIN::Call(root, &PX_PLUGIN::IMgjsonRoot_v1::Commit, &committed);
  }
  root->Release();
  owner->Dispose();
}

}  // namespace

int main(int argc, char **argv) {
  const int seconds = argc > 1 ? std::atoi(argv[1]) : 3600;
  const double gigabytes = argc > 2 ? std::atof(argv[2]) : 10;
  const std::filesystem::path folder = std::filesystem::temp_directory_path() / "palvex_bench_gpmf";
  std::filesystem::remove_all(folder);
  std::filesystem::create_directories(folder);
  const std::string input = (folder / "GH010001.MP4").string();
  std::uint64_t written = 0;
  {
    Mp4Recipe recipe;
    for (int s = 0; s < seconds; ++s) recipe.payloads.push_back(Payload(s));
    recipe.videoBytesPerChunk = static_cast<std::uint64_t>(gigabytes * 1e9) / static_cast<std::uint64_t>(seconds);
    const Mp4Image image = BuildMp4(recipe);
    written = image.PieceBytes();
    if (!image.Write(input)) return std::fprintf(stderr, "cannot write %s\n", input.c_str()), 1;
  }
  const std::string output = (folder / "converted.mgjson").string();
  const std::size_t heapBefore = palvex::bench::HeapInUse();
  palvex::bench::ResetHeapPeak();
  const Clock::time_point begin = Clock::now();
  gpmf::ConversionSummary summary;
  {
    const auto owner = MakeRoot(output);
    PX_PLUGIN::IMgjsonRoot_v1 *root = owner->HandOut();
    summary = gpmf::ConvertRecording(
        1, [&](std::size_t) { return std::make_unique<gpmf::FileSource>(input); }, root);
    std::uint32_t committed = 0;
    PX_PLUGIN::Call(root, &PX_PLUGIN::IMgjsonRoot_v1::Commit, &committed);
    root->Release();
    owner->Dispose();
  }
  const double convertSeconds = Seconds(Clock::now() - begin);
  const std::size_t peak = palvex::bench::HeapPeak() - heapBefore;
  const double outputBytes = static_cast<double>(std::filesystem::file_size(output));
  const std::string raw = (folder / "raw.mgjson").string();
  const Clock::time_point rawBegin = Clock::now();
  WriteRaw(raw, seconds);
  const double rawSeconds = Seconds(Clock::now() - rawBegin);
  const double rawBytes = static_cast<double>(std::filesystem::file_size(raw));
  std::printf("input %.1f GB sparse, %llu payloads, index + telemetry %.1f MiB\n",
              static_cast<double>(std::filesystem::file_size(input)) / 1e9,
              static_cast<unsigned long long>(summary.payloads), MiB(static_cast<double>(written)));
  std::printf("bytes read %.1f MiB (%.2f x index + telemetry)\n", MiB(static_cast<double>(summary.bytesRead)),
              static_cast<double>(summary.bytesRead) / static_cast<double>(written));
  std::printf("conversion %.2f s, %llu samples, output %.1f MiB, %.1f MB/s of output\n", convertSeconds,
              static_cast<unsigned long long>(summary.samples), MiB(outputBytes), outputBytes / 1e6 / convertSeconds);
  std::printf("raw write  %.2f s, output %.1f MiB, %.1f MB/s of output; conversion / raw %.2f\n", rawSeconds,
              MiB(rawBytes), rawBytes / 1e6 / rawSeconds, (outputBytes / convertSeconds) / (rawBytes / rawSeconds));
  std::printf("peak heap growth %.1f MiB\n", MiB(static_cast<double>(peak)));
  std::filesystem::remove_all(folder);
  return 0;
}
