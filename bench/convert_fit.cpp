// Converts a long FIT ride (1,000,000 one-second records by default, made by the tests'
// generator) through the public interface and the bundled plug-in, and in the same run
// writes a document of the same shape (nine number streams, one sample per record each)
// straight through the object model, which is the writer's raw rate for that output.
// Prints both rates, the conversion's rate in MB/s of input, the bytes the plug-in reads
// (two passes), and the conversion's peak heap growth against its budget: 1 MiB per
// stream (its sample store), 1 MiB for the writer's pending text, 1 MiB for the rest.
//   convert_fit [RECORDS]
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "fit_decoder.hpp"
#include "fit_profile.hpp"
#include "fit_samples.hpp"
#include "fit_survey.hpp"
#include "heap_meter.hpp"
#include "stream_conversion.hpp"
#include "palvex/host.hpp"
#include "plugin_model/mgjson_writer.hpp"
#include "plugin_model/root_impl.hpp"

namespace {

using namespace PX_PLUGIN;

constexpr std::size_t kStreams = 9;  // 8 record quantities and one developer field
constexpr std::size_t kBufferBytes = 0x100000;
constexpr std::size_t kAllowance = 1 << 20;
constexpr const char *kStart = "2024-01-15T10:30:00Z";

double MiB(std::size_t bytes) { return static_cast<double>(bytes) / (1024.0 * 1024.0); }

// The second pass's reading without the document: counts what the plug-in reads.
struct NoSink : palvex_fit::FitMessageSink {
  bool Wants(std::uint16_t global) const override { return global == palvex_fit::kRecordMessage; }
  void OnMessage(const palvex_fit::FitMessage &) override {}
};

std::uint64_t BytesReadByTwoPasses(const std::string &path) {
  std::ifstream first(path, std::ios::binary), second(path, std::ios::binary);
  NoSink sink;
  return palvex_fit::SurveyFit(first).decoding.bytesRead + palvex_fit::DecodeFit(second, sink).bytesRead;
}

bool WriteRaw(const std::string &path, std::uint32_t records) {
  RootSettings settings;
  settings.outputPath = path;
  settings.makeWriter = MakeMgjsonWriter;
  const auto owner = MgjsonRootImpl::Create(std::move(settings));
  IMgjsonRoot_v1 *root = owner->HandOut();
  bool ok = root->SetUtcInfo(0, 1, nullptr) == 0;
  std::vector<PX_DynamicDataNode> nodes(kStreams);
  for (std::size_t n = 0; n < nodes.size() && ok; ++n) {
    const std::string name = "stream" + std::to_string(n);
    const auto length = static_cast<std::uint32_t>(name.size());
    ok = root->CreateDynamicData(PX_DYNAMIC_NUMBER, name.data(), length, name.data(), length, &nodes[n], nullptr) == 0 &&
         root->AddDynamicChild(nodes[n].node, nullptr) == 0;
  }
  for (std::uint32_t r = 0; r < records && ok; ++r) {
    for (std::size_t n = 0; n < nodes.size() && ok; ++n) {
      const double value = 47.0 + 0.00005 * r + static_cast<double>(n);
      ok = nodes[n].number->AddSampleAtUtc(kStart, 20, r, 1, value, nullptr) == 0;
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
  const auto records = static_cast<std::uint32_t>(argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 1000000);
  const auto folder = std::filesystem::temp_directory_path() / "palvex_convert_fit";
  std::filesystem::create_directories(folder);
  const std::string input = (folder / "ride.fit").string();
  const std::string raw = (folder / "raw.mgjson").string();
  {
    const std::string bytes = palvex_fit::testing::RideFile(records);
    std::ofstream(input, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  }
  const double inputMB = static_cast<double>(std::filesystem::file_size(input)) / 1e6;
  const std::uint64_t bytesRead = BytesReadByTwoPasses(input);

  palvex::host::Library library(nullptr, PALVEX_PLUGIN_FOLDER);
  const palvex::bench::StreamConversion run = palvex::bench::ConvertThroughStream(library, input);
  if (!run.ok) return 1;
  const double convertSeconds = run.seconds;
  const double outputMB = run.outputMB;
  const std::size_t peakGrowth = run.peakGrowth;

  const palvex::bench::RawWrite rawRun =
      palvex::bench::TimeRawWrite(raw, [&](const std::string &path) { return WriteRaw(path, records); });
  if (!rawRun.ok) return 1;
  std::filesystem::remove_all(folder);

  const std::size_t budget = (kStreams + 1) * kBufferBytes + kAllowance;
  std::printf("input: %u records, %.1f MB of FIT; read %.1f MB (two passes)\n", records, inputMB,
              static_cast<double>(bytesRead) / 1e6);
  std::printf("conversion: %.2f s, %.1f MB/s of input, %.1f MB/s of output (%.1f MB)\n", convertSeconds,
              inputMB / convertSeconds, outputMB / convertSeconds, outputMB);
  palvex::bench::PrintAgainstRaw(run, rawRun);
  std::printf("conversion peak heap growth: %.1f MiB, budget %.1f MiB ((%zu streams + writer) x 1 MiB + 1 MiB)\n",
              MiB(peakGrowth), MiB(budget), kStreams);
  return peakGrowth <= budget ? 0 : 1;
}
