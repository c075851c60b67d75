// Reads samples of one long sample set through the public interface and prints ratios
// measured in one run:
//   - 1,000 samples from the middle of the set against the first 1,000 (the locate is a
//     binary search, so both should cost about the same);
//   - every sample of the set, page by page, against a bare SAX pass of RapidJSON over the
//     same compact sample text.
// Input: a version-2 UTC file whose first sample set "s0" has samples every 10 ms, as
//   generate_mgjson FILE 1 1000000
// writes it.  Usage: sample_fetch FILE [ROUNDS]
#include <rapidjson/reader.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <sstream>
#include <string>

#include "palvex/host.hpp"

namespace {

using Clock = std::chrono::steady_clock;

constexpr const char kSampleSet[] = "s0";
constexpr uint32_t kSamplesPerSecond = 100;  // the generator's 10 ms spacing
constexpr uint32_t kWindow = 1000;
constexpr uint32_t kPageSize = 4096;

double Seconds(Clock::duration d) { return std::chrono::duration<double>(d).count(); }

std::string ReadAll(const char *path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

// The text of "dataDynamicSamples" (the generator writes it compact).
std::string SampleText(const std::string &file) {
  const std::string key = "\"dataDynamicSamples\":";
  const std::size_t at = file.find(key);
  if (at == std::string::npos) return {};
  const std::size_t end = file.rfind(']');
  return file.substr(at + key.size(), end + 1 - at - key.size());
}

struct Fetch {
  double seconds = 0;
  std::size_t samples = 0;
};

// One request for the samples between first/100 and last/100 seconds, skip and limit as given.
Fetch FetchWindow(ISensorFileHandler *file, uint32_t first, uint32_t last, uint32_t skip, uint32_t limit,
                  palvex::host::ErrorLog &errors) {
  DynamicDataSampleSet page;
  page.skip = skip;
  page.limit = limit;
  const auto start = Clock::now();
  file->GetSampleSet(kSampleSet, first, kSamplesPerSecond, last, kSamplesPerSecond, &page, &errors);
  return {Seconds(Clock::now() - start), page.samples.size()};
}

Fetch FetchAll(ISensorFileHandler *file, palvex::host::ErrorLog &errors) {
  Fetch all;
  const auto start = Clock::now();
  for (uint32_t skip = 0;; skip += kPageSize) {
    DynamicDataSampleSet page;
    page.skip = skip;
    page.limit = kPageSize;
    file->GetSampleSet(kSampleSet, 0, 1, std::numeric_limits<uint32_t>::max(), 1, &page, &errors);
    all.samples += page.samples.size();
    if (page.samples.size() < kPageSize || !errors.empty()) break;
  }
  all.seconds = Seconds(Clock::now() - start);
  return all;
}

double BareSaxPass(const std::string &text) {
  rapidjson::BaseReaderHandler<> handler;
  rapidjson::Reader reader;
  rapidjson::StringStream stream(text.c_str());
  const auto start = Clock::now();
  reader.Parse(stream, handler);
  return Seconds(Clock::now() - start);
}

bool Report(const palvex::host::ErrorLog &errors) {
  for (const auto &error : errors.errors) std::fprintf(stderr, "error %u: %s\n", error.code, error.message.c_str());
  return errors.empty();
}

}  // namespace

int main(int argc, char **argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: sample_fetch FILE [ROUNDS]\n");
    return 2;
  }
  const int rounds = argc > 2 ? std::atoi(argv[2]) : 5;
  const std::string samples = SampleText(ReadAll(argv[1]));

  palvex::host::Library library;
  palvex::host::ErrorLog errors;
  ISensorFileHandler *file = nullptr;
  library.manager()->OpenFile(&file, argv[1], nullptr, &errors);
  if (!file || !Report(errors)) return 1;

  // The set's length from a first full read; the window sits in its middle.
  const Fetch all0 = FetchAll(file, errors);
  if (!Report(errors) || all0.samples < 2 * kWindow) return 1;
  const uint32_t middle = static_cast<uint32_t>(all0.samples / 2);

  double first = 1e30, mid = 1e30, all = all0.seconds, sax = 1e30;
  for (int round = 0; round < rounds; ++round) {
    const Fetch head = FetchWindow(file, 0, kWindow - 1, 0, kWindow, errors);
    const Fetch centre = FetchWindow(file, middle, middle + kWindow - 1, 0, kWindow, errors);
    if (!Report(errors) || head.samples != kWindow || centre.samples != kWindow) {
      std::fprintf(stderr, "expected %u samples, got %zu and %zu\n", kWindow, head.samples, centre.samples);
      return 1;
    }
    first = std::min(first, head.seconds);
    mid = std::min(mid, centre.seconds);
    all = std::min(all, FetchAll(file, errors).seconds);
    sax = std::min(sax, BareSaxPass(samples));
  }
  library.manager()->CloseFile(&file, &errors);

  std::printf("samples in the set        %zu\n", all0.samples);
  std::printf("first %u                %.1f us\n", kWindow, first * 1e6);
  std::printf("middle %u               %.1f us\n", kWindow, mid * 1e6);
  std::printf("middle / first            %.2f (target <= 2)\n", mid / first);
  std::printf("all samples, paged        %.1f ms\n", all * 1e3);
  std::printf("bare SAX pass             %.1f ms over %.1f MB\n", sax * 1e3, static_cast<double>(samples.size()) / 1e6);
  std::printf("all / bare pass           %.2f (target <= 3)\n", all / sax);
  return Report(errors) ? 0 : 1;
}
