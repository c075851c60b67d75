// One conversion as a host asks for it (a stream of the converted file), timed and with the
// peak heap growth it caused: the measurement every conversion benchmark makes.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <string>

#include "heap_meter.hpp"
#include "palvex/host.hpp"

namespace palvex::bench {

struct StreamConversion {
  bool ok = false;
  double seconds = 0;         // wall time of the conversion
  double outputMB = 0;        // size of the converted MGJSON
  std::size_t peakGrowth = 0;  // peak heap growth over the conversion, bytes
};

// Converts input through the manager of library; failures are printed and leave ok false.
inline StreamConversion ConvertThroughStream(palvex::host::Library &library, const std::string &input) {
  palvex::host::ErrorLog errors;
  StreamConversion run;
  const std::size_t before = HeapInUse();
  ResetHeapPeak();
  const auto start = std::chrono::steady_clock::now();
  IMgjsonStream *stream = nullptr;
  library.manager()->CreateMgjsonStream(&stream, input.c_str(), 0u, &errors);
  run.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  run.peakGrowth = HeapPeak() - before;
  if (stream == nullptr) {
    for (const auto &error : errors.errors) std::fprintf(stderr, "error %u: %s\n", error.code, error.message.c_str());
    return run;
  }
  run.outputMB = static_cast<double>(stream->GetTotalSize()) / 1e6;
  library.manager()->ReleaseMgjsonStream(&stream, &errors);
  run.ok = true;
  return run;
}

struct RawWrite {
  bool ok = false;
  double seconds = 0;   // wall time of the write
  double outputMB = 0;  // size of the file written
};

// Times write(path), the same document fed straight to the writer: the reference every
// conversion is compared with.
template <class Write>
RawWrite TimeRawWrite(const std::string &path, Write &&write) {
  RawWrite raw;
  const auto start = std::chrono::steady_clock::now();
  if (!write(path)) {
    std::fprintf(stderr, "the raw write failed\n");
    return raw;
  }
  raw.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  raw.outputMB = static_cast<double>(std::filesystem::file_size(path)) / 1e6;
  raw.ok = true;
  return raw;
}

// The raw write's rate and the conversion's share of it, in percent.
inline void PrintAgainstRaw(const StreamConversion &run, const RawWrite &raw, const char *target = "") {
  std::printf("writer raw: %.2f s, %.1f MB/s of output (%.1f MB)\n", raw.seconds, raw.outputMB / raw.seconds,
              raw.outputMB);
  std::printf("conversion / writer raw: %.0f %%%s\n",
              100.0 * (run.outputMB / run.seconds) / (raw.outputMB / raw.seconds), target);
}

}  // namespace palvex::bench
