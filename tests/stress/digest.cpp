#include "digest.hpp"

#include <cstdio>
#include <vector>

namespace palvex::stress {
namespace {

constexpr uint32_t kPageSize = 4;

// Exact text of a double, so a value that differs in its last bit still shows.
std::string Number(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.17g", value);
  return text;
}

std::string Time(const host::Time &time) {
  return time.text + "=" + std::to_string(time.numerator) + "/" + std::to_string(time.denominator);
}

std::string DataType(const host::DataType &type) {
  std::string text = "type " + std::to_string(type.kind);
  if (type.hasNumberString) {
    const auto &p = type.numberString;
    text += " ns " + std::to_string(p.isSigned) + "," + std::to_string(p.digitsInteger) + "," +
            std::to_string(p.digitsDecimal) + " " + Number(p.occurringMin) + ".." + Number(p.occurringMax) + " " +
            Number(p.legalMin) + ".." + Number(p.legalMax);
  }
  if (type.hasNumberArray) {
    const auto &p = type.numberArray;
    text += " na " + std::to_string(p.isSigned) + "," + std::to_string(p.digitsInteger) + "," +
            std::to_string(p.digitsDecimal) + " size " + std::to_string(p.arraySize) + " point " +
            std::to_string(p.isPoint);
    for (const auto &name : p.displayNames) text += " '" + name + "'";
    for (const auto &r : p.ranges) {
      text += " " + Number(r.occurringMin) + ".." + Number(r.occurringMax) + "/" + Number(r.legalMin) + ".." +
              Number(r.legalMax);
    }
  }
  if (type.hasPaddedString) {
    const auto &p = type.paddedString;
    text += " ps " + std::to_string(p.maxLen) + "," + std::to_string(p.maxDigitsInStrLength) + "," +
            std::to_string(p.eventMarker);
  }
  return text;
}

std::string Samples(const char *label, const host::SampleRecord &record) {
  std::string text = std::string("  ") + label + " of " + std::to_string(record.setSampleCount) +
                     (record.reversed ? " reversed" : "") + ":";
  for (const auto &sample : record.samples) {
    text += " " + Time(sample.time) + " k" + std::to_string(sample.kind) + " '" + sample.text + "'";
    for (double number : sample.numbers) text += " " + Number(number);
  }
  return text + "\n";
}

class Walker {
 public:
  Walker(ISensorFileHandler &file, host::ErrorLog &errors, CallCount &count)
      : file_(file), errors_(errors), count_(count) {}

  std::string Run() {
    PX_FileInfo info;
    Call([&] { file_.GetFileInfo(&info, &errors_); });
    out_ = "file " + info.inputPath + " v" + std::to_string(info.schemaVersion) + " time " +
           std::to_string(info.timeKind) + " rate " + std::to_string(info.frameRateValue) + "/" +
           std::to_string(info.frameRateScale) + " drop " + std::to_string(info.dropFrame) + " utc " +
           std::to_string(info.utcPrecision) + (info.utcIsGmt ? "Z" : "") + " converted " +
           std::to_string(info.converted) + " '" + info.version + "' '" + info.creator + "'\n";
    PX_VideoSyncTimeList sync;
    Call([&] { file_.GetVideoSyncTimeList(&sync, &errors_); });
    for (const auto &entry : sync.entries) {
      out_ += "sync '" + entry.fileName + "' " + std::to_string(entry.kind) + " '" + entry.timeString + "' " +
              std::to_string(entry.frameNumber) + "\n";
    }
    Children("");
    return out_ + DescribeErrors(errors_);
  }

 private:
  template <class Query>
  void Call(Query &&query) {
    ++count_.calls;
    query();
  }

  // A child's path is its parent's and its own position: node queries take the last item
  // by position.
  void Children(const std::string &parent) {
    PX_GroupChildren children;
    if (parent.empty()) {
      Call([&] { file_.GetRootChildren(&children, &errors_); });
    } else {
      Call([&] { file_.GetGroupChildren(parent.c_str(), &children, &errors_); });
    }
    for (const auto &path : children.paths) {
      if (!path.empty()) Node(parent + "[" + std::to_string(path.back().index) + "]");
    }
  }

  void Node(const std::string &path) {
    PX_GroupChildInfo info;
    Call([&] { file_.GetGroupChildInfo(path.c_str(), &info, &errors_); });
    out_ += path + " " + std::to_string(info.nodeType) + " '" + info.displayName + "' (" + info.matchName + ")\n";
    if (info.nodeType == PX_NODE_GROUP) Children(path);
    if (info.nodeType == PX_NODE_STATIC) Static(path);
    if (info.nodeType == PX_NODE_DYNAMIC) Dynamic(path);
  }

  void Static(const std::string &path) {
    PX_StaticDataInfo info;
    Call([&] { file_.GetStaticDataInfo(path.c_str(), &info, &errors_); });
    out_ += "  " + DataType(info.dataType) + " value k" + std::to_string(info.valueKind) + " " +
            std::to_string(info.boolean) + " " + Number(info.number) + " '" + info.text + "'";
    for (double number : info.numbers) out_ += " " + Number(number);
    out_ += "\n";
  }

  void Dynamic(const std::string &path) {
    PX_DynamicDataInfo info;
    Call([&] { file_.GetDynamicDataInfo(path.c_str(), &info, &errors_); });
    out_ += "  " + DataType(info.dataType) + " id " + info.sampleSetId + " interp " +
            std::to_string(info.interpolation) + " freq " + std::to_string(info.hasExpectedFrequency) + " count " +
            std::to_string(info.sampleCount) + " max '" + info.maxInterSampleDuration + "' " +
            Time(info.firstSampleTime) + " .. " + Time(info.lastSampleTime) + "\n";
    const host::Time &first = info.firstSampleTime, &last = info.lastSampleTime;
    if (first.denominator == 0 || last.denominator == 0) return;
    const char *id = info.sampleSetId.c_str();
    DynamicDataSampleSet all;
    Call([&] { file_.GetSampleSet(id, first.numerator, first.denominator, last.numerator, last.denominator, &all, &errors_); });
    out_ += Samples("between", all);
    // The middle sample alone, with the neighbours on both sides of it.
    if (!all.samples.empty()) {
      const host::Time &middle = all.samples[all.samples.size() / 2].time;
      DynamicDataSampleSet around;
      Call([&] {
        file_.GetSampleSetWithNeighbours(id, middle.numerator, middle.denominator, middle.numerator,
                                         middle.denominator, &around, &errors_);
      });
      out_ += Samples("around", around);
    }
    // Paged by index until a page comes back short; the small examples then take two or
    // more pages, and the long ones do not drown the run in queries.
    for (uint32_t from = 0;; from += kPageSize) {
      PX_DynamicSampleInfo page;
      Call([&] { file_.GetDynamicSampleInfo(id, from, kPageSize, 1, &page, &errors_); });
      out_ += Samples("page", page);
      if (page.samples.size() < kPageSize) break;
    }
  }

  ISensorFileHandler &file_;
  host::ErrorLog &errors_;
  CallCount &count_;
  std::string out_;
};

}  // namespace

std::string DigestFile(ISensorFileHandler &file, host::ErrorLog &errors, CallCount &count) {
  return Walker(file, errors, count).Run();
}

std::string DigestStream(IMgjsonStream &stream, host::ErrorLog &errors, CallCount &count) {
  // Small blocks make many reads; FNV-1a keeps the text short.
  std::uint64_t hash = 14695981039346656037ull, size = 0;
  std::vector<uint8_t> block(4096);
  for (;;) {
    uint32_t asked = static_cast<uint32_t>(block.size());
    ++count.calls;
    const uint32_t got = stream.Read(block.data(), &asked, &errors);
    for (uint32_t i = 0; i < got; ++i) hash = (hash ^ block[i]) * 1099511628211ull;
    size += got;
    if (got == 0) break;
  }
  return "stream " + std::to_string(size) + " bytes, hash " + std::to_string(hash) + "\n" + DescribeErrors(errors);
}

std::string DigestFormats(host::ErrorLog &errors, CallCount &count) {
  PX_SupportedFormatList formats;
  ++count.calls;
  GetSupportedFormats_1(&formats, &errors, host::Callbacks());
  std::string text;
  for (const auto &format : formats.formats) text += format.extension + "=" + format.name + "\n";
  return text + DescribeErrors(errors);
}

std::string DescribeErrors(const host::ErrorLog &errors) {
  std::string text;
  for (const auto &error : errors.errors) text += "error " + std::to_string(error.code) + ": " + error.message + "\n";
  return text;
}

}  // namespace palvex::stress
