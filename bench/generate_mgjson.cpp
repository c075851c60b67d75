// Writes a large, valid version-2 MGJSON file for the benchmarks:
//   generate_mgjson OUT STREAMS SAMPLES_PER_STREAM [--pretty] [--samples-first]
// Streams are UTC number strings (one in four a three-element number string array), all in
// one group; times advance by 10 ms from 2026-01-01T00:00:00.000Z.
#include <cinttypes>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

struct Options {
  const char *path = nullptr;
  long streams = 0;
  long samples = 0;
  bool pretty = false;
  bool samplesFirst = false;
};

class Writer {
 public:
  Writer(std::FILE *out, bool pretty) : out_(out), pretty_(pretty) {}
  void Raw(const char *text) { std::fputs(text, out_); }
  // A line break and indentation in pretty mode, nothing in compact mode.
  void Break(int depth) {
    if (!pretty_) return;
    std::fputc('\n', out_);
    for (int i = 0; i < depth; ++i) std::fputs("  ", out_);
  }
  void Printf(const char *format, auto... values) { std::fprintf(out_, format, values...); }

 private:
  std::FILE *out_;
  bool pretty_;
};

bool IsArrayStream(long stream) { return stream % 4 == 3; }

void WriteTime(char *buffer, std::size_t size, long sample) {
  const long millis = sample * 10;
  const long seconds = millis / 1000;
  std::snprintf(buffer, size, "2026-01-%02ldT%02ld:%02ld:%02ld.%03ldZ", 1 + seconds / 86400, seconds / 3600 % 24,
                seconds / 60 % 60, seconds % 60, millis % 1000);
}

void WriteNumber(char *buffer, std::size_t size, double value) {
  std::snprintf(buffer, size, "%+09.3f", value);
}

void WriteOutline(Writer &w, const Options &o) {
  w.Raw("\"dataOutline\":[");
  w.Break(2);
  w.Raw("{\"objectType\":\"dataGroup\",\"displayName\":\"Sensors\",\"matchName\":\"sensors\",\"children\":[");
  for (long s = 0; s < o.streams; ++s) {
    if (s) w.Raw(",");
    w.Break(3);
    const bool array = IsArrayStream(s);
    w.Printf("{\"objectType\":\"dataDynamic\",\"displayName\":\"Stream %ld\",\"matchName\":\"stream%ld\",", s, s);
    const char *pattern = "\"pattern\":{\"isSigned\":true,\"digitsInteger\":4,\"digitsDecimal\":3}";
    const char *range = "{\"occurring\":{\"min\":-1000,\"max\":1000},\"legal\":{\"min\":-9999,\"max\":9999}}";
    if (array) {
      w.Printf("\"dataType\":{\"type\":\"numberStringArray\",\"numberArrayProperties\":{%s,\"arraySize\":3,"
               "\"arrayDisplayNames\":[\"x\",\"y\",\"z\"],\"arrayRanges\":{\"ranges\":[%s,%s,%s]}}},",
               pattern, range, range, range);
    } else {
      w.Printf("\"dataType\":{\"type\":\"numberString\",\"numberStringProperties\":{%s,\"range\":%s}},", pattern, range);
    }
    w.Printf("\"sampleSetID\":\"s%ld\",\"interpolation\":\"linear\",\"hasExpectedFrequencyB\":true,"
             "\"sampleCount\":%ld,\"expectedMaxInterSampleDuration\":\"0.010\"}",
             s, o.samples);
  }
  w.Raw("]}");
  w.Break(1);
  w.Raw("]");
}

void WriteSamples(Writer &w, const Options &o) {
  char time[64];
  char number[32];
  w.Raw("\"dataDynamicSamples\":[");
  for (long s = 0; s < o.streams; ++s) {
    if (s) w.Raw(",");
    w.Break(2);
    w.Printf("{\"sampleSetID\":\"s%ld\",\"samples\":[", s);
    for (long i = 0; i < o.samples; ++i) {
      if (i) w.Raw(",");
      w.Break(3);
      WriteTime(time, sizeof time, i);
      const double value = 500.0 * std::sin(0.001 * static_cast<double>(i) + static_cast<double>(s));
      if (IsArrayStream(s)) {
        char second[32];
        char third[32];
        WriteNumber(number, sizeof number, value);
        WriteNumber(second, sizeof second, -value);
        WriteNumber(third, sizeof third, value / 2);
        w.Printf("{\"time\":\"%s\",\"value\":[\"%s\",\"%s\",\"%s\"]}", time, number, second, third);
      } else {
        WriteNumber(number, sizeof number, value);
        w.Printf("{\"time\":\"%s\",\"value\":\"%s\"}", time, number);
      }
    }
    w.Raw("]}");
  }
  w.Break(1);
  w.Raw("]");
}

}  // namespace

int main(int argc, char **argv) {
  Options o;
  int positional = 0;
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--pretty") == 0) {
      o.pretty = true;
    } else if (std::strcmp(argv[i], "--samples-first") == 0) {
      o.samplesFirst = true;
    } else if (positional == 0) {
      o.path = argv[i], ++positional;
    } else if (positional == 1) {
      o.streams = std::strtol(argv[i], nullptr, 10), ++positional;
    } else {
      o.samples = std::strtol(argv[i], nullptr, 10), ++positional;
    }
  }
  if (positional != 3 || o.streams <= 0 || o.samples <= 0) {
    std::fprintf(stderr, "usage: generate_mgjson OUT STREAMS SAMPLES_PER_STREAM [--pretty] [--samples-first]\n");
    return 2;
  }
  std::FILE *out = std::fopen(o.path, "wb");
  if (!out) {
    std::perror(o.path);
    return 1;
  }
  Writer w(out, o.pretty);
  w.Raw("{");
  w.Break(1);
  w.Raw("\"version\":\"MGJSON2.0.0\",");
  w.Break(1);
  w.Raw("\"creator\":\"palvex benchmark generator\",");
  w.Break(1);
  w.Raw("\"dynamicSamplesPresentB\":true,");
  w.Break(1);
  w.Raw("\"dynamicDataInfo\":{\"useTimecodeB\":false,\"utcInfo\":{\"precisionLength\":3,\"isGMT\":true}},");
  w.Break(1);
  if (o.samplesFirst) {
    WriteSamples(w, o);
    w.Raw(",");
    w.Break(1);
    WriteOutline(w, o);
  } else {
    WriteOutline(w, o);
    w.Raw(",");
    w.Break(1);
    WriteSamples(w, o);
  }
  w.Break(0);
  w.Raw("}\n");
  return std::fclose(out) == 0 ? 0 : 1;
}
