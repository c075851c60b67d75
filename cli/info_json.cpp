#include "info_json.hpp"

#include <cstdio>

#include "file_report.hpp"
#include "json_output.hpp"
#include "outline_walk.hpp"

namespace palvex::cli {
namespace {

void WriteTime(JsonWriter &w, const palvex::host::Time &time) {
  w.StartObject();
  w.Key("text");
  WriteString(w, time.text);
  w.Key("seconds");
  WriteNumber(w, SecondsOf(time));
  w.Key("numerator");
  w.Uint(time.numerator);
  w.Key("denominator");
  w.Uint(time.denominator);
  w.EndObject();
}

void WritePattern(JsonWriter &w, uint32_t isSigned, uint32_t digitsInteger, uint32_t digitsDecimal) {
  w.Key("pattern");
  w.StartObject();
  w.Key("isSigned");
  w.Bool(isSigned != 0);
  w.Key("digitsInteger");
  w.Uint(digitsInteger);
  w.Key("digitsDecimal");
  w.Uint(digitsDecimal);
  w.EndObject();
}

void WriteMinMax(JsonWriter &w, const char *name, double min, double max) {
  w.Key(name);
  w.StartObject();
  w.Key("min");
  WriteNumber(w, min);
  w.Key("max");
  WriteNumber(w, max);
  w.EndObject();
}

void WriteRange(JsonWriter &w, double occurringMin, double occurringMax, double legalMin, double legalMax) {
  w.StartObject();
  WriteMinMax(w, "occurring", occurringMin, occurringMax);
  WriteMinMax(w, "legal", legalMin, legalMax);
  w.EndObject();
}

// The data type's property objects, under their MGJSON names.
void WriteProperties(JsonWriter &w, const palvex::host::DataType &type) {
  w.Key("properties");
  w.StartObject();
  if (type.hasNumberString) {
    const auto &p = type.numberString;
    w.Key("numberStringProperties");
    w.StartObject();
    WritePattern(w, p.isSigned, p.digitsInteger, p.digitsDecimal);
    w.Key("range");
    WriteRange(w, p.occurringMin, p.occurringMax, p.legalMin, p.legalMax);
    w.EndObject();
  }
  if (type.hasPaddedString) {
    const auto &p = type.paddedString;
    w.Key("paddedStringProperties");
    w.StartObject();
    w.Key("maxLen");
    w.Uint(p.maxLen);
    w.Key("maxDigitsInStrLength");
    w.Uint(p.maxDigitsInStrLength);
    w.Key("eventMarkerB");
    w.Bool(p.eventMarker != 0);
    w.EndObject();
  }
  if (type.hasNumberArray) {
    const auto &p = type.numberArray;
    w.Key("numberArrayProperties");
    w.StartObject();
    WritePattern(w, p.isSigned, p.digitsInteger, p.digitsDecimal);
    w.Key("arraySize");
    w.Uint(p.arraySize);
    w.Key("arrayDisplayNames");
    w.StartArray();
    for (const auto &name : p.displayNames) WriteString(w, name);
    w.EndArray();
    w.Key("arrayRanges");
    w.StartArray();
    for (const auto &r : p.ranges) WriteRange(w, r.occurringMin, r.occurringMax, r.legalMin, r.legalMax);
    w.EndArray();
    w.Key("isPoint");
    w.Bool(p.isPoint != 0);
    w.EndObject();
  }
  w.EndObject();
}

void WriteStaticValue(JsonWriter &w, const PX_StaticDataInfo &info) {
  switch (info.valueKind) {
    case PX_TYPE_NUMBER:
    case PX_TYPE_NUMBER_STRING:
      WriteNumber(w, info.number);
      break;
    case PX_TYPE_STRING:
    case PX_TYPE_PADDED_STRING:
      WriteString(w, info.text);
      break;
    case PX_TYPE_BOOLEAN:
      w.Bool(info.boolean);
      break;
    case PX_TYPE_NUMBER_ARRAY:
    case PX_TYPE_NUMBER_STRING_ARRAY:
      w.StartArray();
      for (const double number : info.numbers) WriteNumber(w, number);
      w.EndArray();
      break;
    default:
      w.Null();
  }
}

class JsonOutline : public OutlineVisitor {
 public:
  explicit JsonOutline(JsonWriter &writer) : w_(writer) {}

  void Node(const OutlineNode &node) override {
    w_.StartObject();
    w_.Key("path");
    WriteString(w_, node.path);
    w_.Key("type");
    w_.String(NodeTypeWord(node.type));
    w_.Key("displayName");
    WriteString(w_, node.displayName);
    w_.Key("matchName");
    WriteString(w_, node.matchName);
    if (node.staticInfo != nullptr) Static(*node.staticInfo);
    if (node.dynamicInfo != nullptr) Dynamic(*node.dynamicInfo);
    if (node.type != PX_NODE_GROUP) w_.EndObject();
  }
  void EnterChildren(const OutlineNode &) override {
    w_.Key("children");
    w_.StartArray();
  }
  void LeaveChildren(const OutlineNode &) override {
    w_.EndArray();
    w_.EndObject();
  }

  const TimeOriginFinder &origin() const { return origin_; }

 private:
  void Static(const PX_StaticDataInfo &info) {
    w_.Key("dataType");
    w_.String(DataTypeWord(info.dataType.kind));
    w_.Key("value");
    WriteStaticValue(w_, info);
    WriteProperties(w_, info.dataType);
  }

  void Dynamic(const PX_DynamicDataInfo &info) {
    origin_.See(info);
    w_.Key("dataType");
    w_.String(DataTypeWord(info.dataType.kind));
    w_.Key("sampleSetID");
    WriteString(w_, info.sampleSetId);
    w_.Key("interpolation");
    if (info.interpolation == PX_INTERPOLATION_NONE) {
      w_.Null();
    } else {
      w_.String(InterpolationWord(info.interpolation));
    }
    w_.Key("sampleCount");
    w_.Uint(info.sampleCount);
    w_.Key("hasExpectedFrequency");
    w_.Bool(info.hasExpectedFrequency);
    w_.Key("expectedMaxInterSampleDuration");
    if (info.maxInterSampleDuration.empty()) {
      w_.Null();
    } else {
      WriteString(w_, info.maxInterSampleDuration);
    }
    const bool hasSamples = !info.firstSampleTime.text.empty();  // no text: no samples
    w_.Key("firstSampleTime");
    if (hasSamples) {
      WriteTime(w_, info.firstSampleTime);
    } else {
      w_.Null();
    }
    w_.Key("lastSampleTime");
    if (hasSamples) {
      WriteTime(w_, info.lastSampleTime);
    } else {
      w_.Null();
    }
    WriteProperties(w_, info.dataType);
  }

  JsonWriter &w_;
  TimeOriginFinder origin_;
};

void WriteFile(JsonWriter &w, const PX_FileInfo &info) {
  w.Key("file");
  w.StartObject();
  w.Key("inputPath");
  WriteString(w, info.inputPath);
  w.Key("mgjsonPath");
  WriteString(w, info.mgjsonPath);
  w.Key("converted");
  w.Bool(info.converted);
  w.Key("schemaVersion");
  w.Uint(info.schemaVersion);
  w.Key("version");
  WriteString(w, info.version);
  w.Key("creator");
  WriteString(w, info.creator);
  w.EndObject();
}

void WriteTiming(JsonWriter &w, const PX_FileInfo &info, const std::optional<std::string> &origin) {
  w.Key("timing");
  w.StartObject();
  w.Key("kind");
  w.String(TimeKindWord(info.timeKind));
  if (info.timeKind == PX_TIME_TIMECODE) {
    w.Key("frameRate");
    w.StartObject();
    w.Key("value");
    w.Uint(info.frameRateValue);
    w.Key("scale");
    w.Uint(info.frameRateScale);
    w.EndObject();
    w.Key("dropFrame");
    w.Bool(info.dropFrame);
  }
  if (info.timeKind == PX_TIME_UTC) {
    w.Key("precisionLength");
    w.Uint(info.utcPrecision);
    w.Key("isGMT");
    w.Bool(info.utcIsGmt);
  }
  w.Key("timeOrigin");
  WriteText(w, origin);
  w.EndObject();
}

void WriteSyncList(JsonWriter &w, const PX_VideoSyncTimeList &list) {
  w.Key("videoSyncTimeList");
  w.StartArray();
  for (const auto &entry : list.entries) {
    w.StartObject();
    w.Key("fileName");
    WriteString(w, entry.fileName);
    if (entry.kind == PX_SYNC_TIME_STRING) {
      w.Key("timeString");
      WriteString(w, entry.timeString);
    } else if (entry.kind == PX_SYNC_FRAME_NUMBER) {
      w.Key("frameNumber");
      w.Int(entry.frameNumber);
    }
    w.EndObject();
  }
  w.EndArray();
}

}  // namespace

bool PrintInfoJson(ISensorFileHandler *file, palvex::host::ErrorLog &errors) {
  FileReport report;
  if (!ReadFileReport(file, errors, report)) return false;
  // The outline is written first, on its own: the time origin is known only after it.
  ChunkedText outlineText;
  JsonWriter outlineWriter(outlineText);
  JsonOutline outline(outlineWriter);
  outlineWriter.StartArray();
  if (!WalkOutline(file, errors, outline)) return false;
  outlineWriter.EndArray();

  // Everything before the outline, which then follows as it was written rather than
  // copied into a second text as large.
  ChunkedText head;
  JsonWriter w(head);
  w.StartObject();
  WriteFile(w, report.info);
  WriteTiming(w, report.info, outline.origin().Origin(file, report.info));
  WriteSyncList(w, report.sync);
  w.Key("outline");
  head.Put(':');  // the writer puts it before a value, which it does not write here
  head.WriteTo(stdout);
  outlineText.WriteTo(stdout);
  std::fputs("}\n", stdout);
  return true;
}

}  // namespace palvex::cli
