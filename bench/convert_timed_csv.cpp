// Converts a long logger export (1,000,000 rows: an ISO time column with milliseconds and
// nine value columns, eight numbers and one text that changes now and then, about 90 MB)
// through the bundled timed CSV plug-in as a host asks for it. Prints the rate in MB/s of
// input and the conversion's peak heap growth against its budget: 1 MiB per stream (its
// sample store), 1 MiB for the writer's pending text, 1 MiB for the reader's buffers.
//   convert_timed_csv [ROWS]   (default 1000000)
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "heap_meter.hpp"
#include "stream_conversion.hpp"
#include "palvex/host.hpp"

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kNumberColumns = 8;
constexpr std::size_t kStreams = kNumberColumns + 1;  // and the text column
constexpr std::size_t kBufferBytes = 0x100000;       // a sample store's, and the writer's
constexpr std::uint64_t kRowsPerStatus = 5000;

double MiB(std::size_t bytes) { return static_cast<double>(bytes) / (1024.0 * 1024.0); }

void WriteCsv(const std::string &path, std::uint64_t rows) {
  std::FILE *file = std::fopen(path.c_str(), "wb");
  std::fprintf(file, "timestamp");
  for (std::size_t c = 0; c < kNumberColumns; ++c) std::fprintf(file, ",Channel %zu [V]", c);
  std::fprintf(file, ",Status\n");
  const long long start = 1714550400;  // 2024-05-01T08:00:00Z
  for (std::uint64_t r = 0; r < rows; ++r) {
    const long long milliseconds = static_cast<long long>(r) * 20;  // 50 rows a second
    const long long second = start + milliseconds / 1000;
    std::fprintf(file, "2024-05-%02lld %02lld:%02lld:%02lld.%03lldZ", 1 + (second - 1714521600) / 86400,
                 (second / 3600) % 24, (second / 60) % 60, second % 60, milliseconds % 1000);
    for (std::size_t c = 0; c < kNumberColumns; ++c) {
      std::fprintf(file, ",%.3f", 5.0 * std::sin(0.001 * static_cast<double>(r) + static_cast<double>(c)));
    }
    if (r % kRowsPerStatus == 0) std::fprintf(file, ",phase %llu", static_cast<unsigned long long>(r / kRowsPerStatus));
    std::fputc('\n', file);
  }
  std::fclose(file);
}

}  // namespace

int main(int argc, char **argv) {
  const std::uint64_t rows = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 1000000;
  const auto folder = std::filesystem::temp_directory_path() / "palvex_convert_timed_csv";
  std::filesystem::create_directories(folder);
  const std::string input = (folder / "logger.csv").string();
  WriteCsv(input, rows);
  const double inputMB = static_cast<double>(std::filesystem::file_size(input)) / 1e6;

  palvex::host::Library library(nullptr, PALVEX_PLUGIN_FOLDER);
  const palvex::bench::StreamConversion run = palvex::bench::ConvertThroughStream(library, input);
  std::filesystem::remove_all(folder);
  if (!run.ok) return 1;
  const double seconds = run.seconds;
  const double outputMB = run.outputMB;
  const std::size_t peakGrowth = run.peakGrowth;

  const std::size_t budget = (kStreams + 2) * kBufferBytes;
  std::printf("input: %llu rows x %zu columns, %.1f MB of CSV\n", static_cast<unsigned long long>(rows),
              kStreams + 1, inputMB);
  std::printf("conversion: %.2f s, %.1f MB/s of input, %.1f MB of output\n", seconds, inputMB / seconds, outputMB);
  std::printf("conversion peak heap growth: %.1f MiB, budget %.1f MiB ((%zu streams + writer + reader) x 1 MiB)\n",
              MiB(peakGrowth), MiB(budget), kStreams);
  return peakGrowth <= budget ? 0 : 1;
}
