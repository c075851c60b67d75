// Writes dynamic number samples through the object model (as a converter does: samples
// added one by one, each node completed, the root committed) and, in the same run,
// text of the same size and shape with RapidJSON's Writer into a file; prints both
// throughputs in MB/s of output, their ratio and our peak heap growth:
//   write_vs_rapidjson [SAMPLES_PER_NODE] [NODES]   (defaults 100000 and 10)
// The full measurement uses 1000000 samples per node. Times are processor time (user and
// system) where the C library measures it so (POSIX), since wall time on a shared machine
// measures the neighbours; the ratio is taken from them.
#include <rapidjson/filewritestream.h>
#include <rapidjson/internal/dtoa.h>
#include <rapidjson/writer.h>

#include <chrono>
#include <ctime>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "heap_meter.hpp"
#include "plugin_model/mgjson_writer.hpp"
#include "plugin_model/root_impl.hpp"

namespace {

using namespace PX_PLUGIN;
using Clock = std::chrono::steady_clock;

constexpr std::uint32_t kFramesPerSecond = 30;

double Seconds(Clock::duration d) { return std::chrono::duration<double>(d).count(); }
double ProcessorSeconds(std::clock_t from) { return static_cast<double>(std::clock() - from) / CLOCKS_PER_SEC; }

// The value of sample i: quarters between -1000 and 1500, so texts vary in length.
double ValueAt(std::uint64_t i) { return static_cast<double>(i % 10000) * 0.25 - 1000.0; }

std::uint64_t FileSize(const std::string &path) { return std::filesystem::file_size(path); }

// Ours: the whole conversion side, from the first sample to the committed file.
bool WriteOurs(const std::string &path, std::uint64_t samples, int nodes) {
  RootSettings settings;
  settings.outputPath = path;
  settings.makeWriter = MakeMgjsonWriter;
  const auto owner = MgjsonRootImpl::Create(std::move(settings));
  IMgjsonRoot_v1 *root = owner->HandOut();
  bool ok = root->SetTimecodeInfo(0, kFramesPerSecond, 1, nullptr) == 0;
  for (int n = 0; n < nodes && ok; ++n) {
    const std::string name = "node" + std::to_string(n);
    const auto length = static_cast<std::uint32_t>(name.size());
    PX_DynamicDataNode node{};
    ok = root->CreateDynamicData(PX_DYNAMIC_NUMBER, name.data(), length, name.data(), length, &node, nullptr) == 0 &&
         root->AddDynamicChild(node.node, nullptr) == 0;
    for (std::uint64_t i = 0; i < samples && ok; ++i) ok = node.number->AddSampleAtFrame(i, ValueAt(i), nullptr) == 0;
    ok = ok && node.node->CompleteSamples(nullptr) == 0;
    if (node.shared != nullptr) node.shared->Release();
  }
  ok = ok && root->Commit(nullptr, nullptr) == 0;
  root->Release();
  owner->Dispose();
  return ok;
}

// A timecode text at 30 frames per second, written into out (11 bytes), digit by digit.
void TimecodeText(std::uint64_t frame, char *out) {
  const std::uint64_t seconds = frame / kFramesPerSecond;
  const unsigned fields[] = {static_cast<unsigned>(seconds / 3600 % 24), static_cast<unsigned>(seconds / 60 % 60),
                             static_cast<unsigned>(seconds % 60), static_cast<unsigned>(frame % kFramesPerSecond)};
  for (int i = 0; i < 4; ++i) {
    out[3 * i] = static_cast<char>('0' + fields[i] / 10);
    out[3 * i + 1] = static_cast<char>('0' + fields[i] % 10);
    if (i < 3) out[3 * i + 2] = ':';
  }
}

// The same value text as ours: shortest digits, "+" or "-", zeros to 4 digits before and
// 2 after the point.
std::size_t ValueText(double value, char *out) {
  char digits[32];
  const char *end = rapidjson::internal::dtoa(std::fabs(value), digits);
  std::string_view text(digits, static_cast<std::size_t>(end - digits));
  if (text.size() >= 2 && text.substr(text.size() - 2) == ".0") text.remove_suffix(2);
  const std::size_t point = text.find('.');
  const std::size_t integer = point == std::string_view::npos ? text.size() : point;
  const std::size_t decimal = point == std::string_view::npos ? 0 : text.size() - point - 1;
  char *at = out;
  *at++ = value < 0 ? '-' : '+';
  for (std::size_t i = integer; i < 4; ++i) *at++ = '0';
  for (const char c : text) *at++ = c;
  if (point == std::string_view::npos) *at++ = '.';
  for (std::size_t i = decimal; i < 2; ++i) *at++ = '0';
  return static_cast<std::size_t>(at - out);
}

// RapidJSON: the same document shape, written with its Writer into a file.
bool WriteTheirs(const std::string &path, std::uint64_t samples, int nodes) {
  std::FILE *file = std::fopen(path.c_str(), "wb");
  if (file == nullptr) return false;
  // Writes of the size ours makes (its pending text's bound), so that neither side pays
  // for more system calls than the other.
  std::vector<char> buffer(std::size_t{1} << 20);
  rapidjson::FileWriteStream stream(file, buffer.data(), buffer.size());
  rapidjson::Writer<rapidjson::FileWriteStream> writer(stream);
  writer.StartObject();
  writer.Key("version");
  writer.String("mgjson2.0.0");
  writer.Key("dynamicSamplesPresentB");
  writer.Bool(true);
  writer.Key("dataDynamicSamples");
  writer.StartArray();
  char time[16];
  char value[64];
  for (int n = 0; n < nodes; ++n) {
    writer.StartObject();
    writer.Key("sampleSetID");
    writer.String(("node" + std::to_string(n)).c_str());
    writer.Key("samples");
    writer.StartArray();
    for (std::uint64_t i = 0; i < samples; ++i) {
      TimecodeText(i, time);
      const std::size_t length = ValueText(ValueAt(i), value);
      writer.StartObject();
      writer.Key("time");
      writer.String(time, 11);
      writer.Key("value");
      writer.String(value, static_cast<rapidjson::SizeType>(length));
      writer.EndObject();
    }
    writer.EndArray();
    writer.EndObject();
  }
  writer.EndArray();
  writer.EndObject();
  stream.Flush();
  return std::fclose(file) == 0;
}

}  // namespace

int main(int argc, char **argv) {
  const std::uint64_t samples = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 100000;
  const int nodes = argc > 2 ? std::atoi(argv[2]) : 10;
  const std::filesystem::path folder = std::filesystem::temp_directory_path();
  const std::string ourPath = (folder / "palvex-bench-ours.mgjson").string();
  const std::string theirPath = (folder / "palvex-bench-rapidjson.json").string();

  const std::size_t before = palvex::bench::HeapInUse();
  palvex::bench::ResetHeapPeak();
  auto start = Clock::now();
  std::clock_t processorStart = std::clock();
  if (!WriteOurs(ourPath, samples, nodes)) {
    std::fprintf(stderr, "writing through the object model failed\n");
    return 1;
  }
  const double ours = ProcessorSeconds(processorStart);
  const double oursWall = Seconds(Clock::now() - start);
  const std::size_t peakGrowth = palvex::bench::HeapPeak() - before;

  start = Clock::now();
  processorStart = std::clock();
  if (!WriteTheirs(theirPath, samples, nodes)) {
    std::fprintf(stderr, "writing with RapidJSON failed\n");
    return 1;
  }
  const double theirs = ProcessorSeconds(processorStart);
  const double theirsWall = Seconds(Clock::now() - start);

  const double ourMb = static_cast<double>(FileSize(ourPath)) / 1e6;
  const double theirMb = static_cast<double>(FileSize(theirPath)) / 1e6;
  std::printf("samples per node %llu, nodes %d\n", static_cast<unsigned long long>(samples), nodes);
  std::printf("ours      %8.1f MB in %6.3f s (wall %6.3f s): %7.1f MB/s\n", ourMb, ours, oursWall, ourMb / ours);
  std::printf("rapidjson %8.1f MB in %6.3f s (wall %6.3f s): %7.1f MB/s\n", theirMb, theirs, theirsWall,
              theirMb / theirs);
  std::printf("ratio (ours / rapidjson) %.2f\n", (ourMb / ours) / (theirMb / theirs));
  const std::size_t bound = static_cast<std::size_t>(nodes + 2) << 20;
  std::printf("peak heap growth %.2f MiB, bound (nodes + 2) %d MiB: %s\n",
              static_cast<double>(peakGrowth) / (1024.0 * 1024.0), nodes + 2, peakGrowth <= bound ? "within" : "EXCEEDED");
  std::filesystem::remove(ourPath);
  std::filesystem::remove(theirPath);
  return peakGrowth <= bound ? 0 : 3;
}
