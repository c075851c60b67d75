// Converts a large motion capture file (a 60-joint skeleton, 100,000 frames, about 150 MB)
// through the public interface and, in the same run, writes a document of the same shape
// (the same nodes, three values per node and frame, frame by frame) straight through the
// object model, which is the writer's raw rate for that output. Prints both rates in MB/s
// of output, the conversion's rate in MB/s of input, their ratio, and the conversion's peak
// heap growth against its budget: 1 MiB per dynamic node (its sample store), 1 MiB for the
// writer's pending text, and an allowance for the skeleton and the document's nodes:
//   convert_bvh [FRAMES] [JOINTS]   (defaults 100000 and 60)
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

namespace {

using namespace PX_PLUGIN;

constexpr double kFrameSeconds = 0.0333333;  // 30 frames per second
constexpr std::size_t kLimbs = 5;            // chains below the root, so no chain is deep
constexpr std::size_t kBufferBytes = 0x100000;  // a sample store's, and the writer's
constexpr std::size_t kSkeletonAllowance = 1 << 20;
const char *const kRotationOrders[] = {"Zrotation Xrotation Yrotation", "Xrotation Yrotation Zrotation",
                                       "Yrotation Zrotation Xrotation", "Zrotation Yrotation Xrotation"};

double MiB(std::size_t bytes) { return static_cast<double>(bytes) / (1024.0 * 1024.0); }

// Channel value c of frame f: smooth motion written with four decimals, as capture tools do.
double ValueAt(std::uint64_t frame, std::size_t channel) {
  return 40.0 * std::sin(0.05 * static_cast<double>(frame) + 0.37 * static_cast<double>(channel));
}

// Writes the file; returns its channel count.
std::size_t WriteBvh(const std::string &path, std::uint64_t frames, std::size_t joints) {
  std::FILE *file = std::fopen(path.c_str(), "wb");
  std::fprintf(file, "HIERARCHY\nROOT Hips\n{\n  OFFSET 0 90 0\n"
                     "  CHANNELS 6 Xposition Yposition Zposition Zrotation Xrotation Yrotation\n");
  std::size_t channels = 6;
  for (std::size_t limb = 0, made = 1; limb < kLimbs; ++limb) {
    const std::size_t length = (joints - 1) / kLimbs + (limb < (joints - 1) % kLimbs ? 1 : 0);
    for (std::size_t j = 0; j < length; ++j, ++made) {
      std::fprintf(file, "JOINT Limb%zu_Joint%zu\n{\n  OFFSET %zu.5 -4.25 1\n  CHANNELS 3 %s\n", limb, j, j,
                   kRotationOrders[made % 4]);
      channels += 3;
    }
    std::fprintf(file, "End Site\n{\n  OFFSET 0 -5 0\n}\n");
    for (std::size_t j = 0; j < length; ++j) std::fprintf(file, "}\n");
  }
  std::fprintf(file, "}\nMOTION\nFrames: %llu\nFrame Time: %.7f\n", static_cast<unsigned long long>(frames),
               kFrameSeconds);
  std::string line;
  char number[32];
  for (std::uint64_t f = 0; f < frames; ++f) {
    line.clear();
    for (std::size_t c = 0; c < channels; ++c) {
      line.append(number, static_cast<std::size_t>(std::snprintf(number, sizeof number, c ? " %.4f" : "%.4f",
                                                                  ValueAt(f, c))));
    }
    line.push_back('\n');
    std::fwrite(line.data(), 1, line.size(), file);
  }
  std::fclose(file);
  return channels;
}

// The writer's raw rate: the same nodes, added frame by frame, no parsing. The values keep
// all their digits, as the converted rotations do, so both write about the same bytes (a
// short decimal takes the number text's quicker route, which would flatter the reference).
bool WriteRaw(const std::string &path, std::uint64_t frames, std::size_t channels) {
  RootSettings settings;
  settings.outputPath = path;
  settings.makeWriter = MakeMgjsonWriter;
  const auto owner = MgjsonRootImpl::Create(std::move(settings));
  IMgjsonRoot_v1 *root = owner->HandOut();
  bool ok = root->SetTimecodeInfo(0, 30, 1, nullptr) == 0;
  std::vector<PX_DynamicDataNode> nodes(channels / 3);
  for (std::size_t n = 0; n < nodes.size() && ok; ++n) {
    const std::string name = "node" + std::to_string(n);
    const auto length = static_cast<std::uint32_t>(name.size());
    ok = root->CreateDynamicData(PX_DYNAMIC_NUMBER_ARRAY, name.data(), length, name.data(), length, &nodes[n],
                                 nullptr) == 0 &&
         root->AddDynamicChild(nodes[n].node, nullptr) == 0;
    for (const char *component : {"X", "Y", "Z"}) {
      ok = ok && nodes[n].numberArray->AddComponent(component, 1, nullptr) == 0;
    }
  }
  for (std::uint64_t f = 0; f < frames && ok; ++f) {
    for (std::size_t n = 0; n < nodes.size() && ok; ++n) {
      const double values[3] = {ValueAt(f, 3 * n), ValueAt(f, 3 * n + 1), ValueAt(f, 3 * n + 2)};
      ok = nodes[n].numberArray->AddSampleAtFrame(f, values, 3, nullptr) == 0;
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
  const std::uint64_t frames = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 100000;
  const std::size_t joints = argc > 2 ? std::strtoull(argv[2], nullptr, 10) : 60;
  if (joints < 1 + kLimbs) {
    std::fprintf(stderr, "usage: convert_bvh [FRAMES] [JOINTS >= %zu]\n", 1 + kLimbs);
    return 2;
  }
  const auto folder = std::filesystem::temp_directory_path() / "palvex_convert_bvh";
  std::filesystem::create_directories(folder);
  const std::string input = (folder / "capture.bvh").string();
  const std::string raw = (folder / "raw.mgjson").string();
  const std::size_t channels = WriteBvh(input, frames, joints);
  const double inputMB = static_cast<double>(std::filesystem::file_size(input)) / 1e6;
  const std::size_t dynamicNodes = channels / 3;

  // The conversion, as a host asks for it.
  palvex::host::Library library;
  const palvex::bench::StreamConversion run = palvex::bench::ConvertThroughStream(library, input);
  if (!run.ok) return 1;
  const double convertSeconds = run.seconds;
  const double outputMB = run.outputMB;
  const std::size_t peakGrowth = run.peakGrowth;

  const palvex::bench::RawWrite rawRun =
      palvex::bench::TimeRawWrite(raw, [&](const std::string &path) { return WriteRaw(path, frames, channels); });
  if (!rawRun.ok) return 1;
  std::filesystem::remove_all(folder);

  const std::size_t budget = (dynamicNodes + 1) * kBufferBytes + kSkeletonAllowance;
  std::printf("input: %zu joints, %llu frames, %.1f MB of BVH\n", joints, static_cast<unsigned long long>(frames),
              inputMB);
  std::printf("conversion: %.2f s, %.1f MB/s of input, %.1f MB/s of output (%.1f MB)\n", convertSeconds,
              inputMB / convertSeconds, outputMB / convertSeconds, outputMB);
  palvex::bench::PrintAgainstRaw(run, rawRun, " (target >= 50 %)");
  std::printf("conversion peak heap growth: %.1f MiB, budget %.1f MiB ((%zu dynamic nodes + writer) x 1 MiB + 1 MiB)\n",
              MiB(peakGrowth), MiB(budget), dynamicNodes);
  return peakGrowth <= budget ? 0 : 1;
}
