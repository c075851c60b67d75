// One conversion as a host asks for it (a stream of the converted file), timed and with the
// peak heap growth it caused: the measurement every conversion benchmark makes.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdio>
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

}  // namespace palvex::bench
