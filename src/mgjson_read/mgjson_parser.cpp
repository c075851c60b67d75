// The parser base: the outermost object, the dispatch of its properties, and the
// properties both schema versions read the same way.
#include "mgjson_read/mgjson_parser.hpp"

namespace ns_sensor {

const PX_MgjsonParser::TopLevelProperty *PX_MgjsonParser::FindTopLevelProperty(
    std::string_view key) {
  static const TopLevelProperty kProperties[] = {
      {"version", kSeenVersion, &PX_MgjsonParser::ParseVersion},
      {"creator", kSeenCreator, &PX_MgjsonParser::ParseCreator},
      {"dataOutline", kSeenDataOutline, &PX_MgjsonParser::ParseDataOutline},
      {"dataDynamicSamples", kSeenDataDynamicSamples, &PX_MgjsonParser::ParseDataDynamicSamples},
      {"dynamicSamplesPresentB", kSeenDynamicSamplesPresent,
       &PX_MgjsonParser::ParseDynamicSamplesPresent},
      {"dynamicDataInfo", kSeenDynamicDataInfo, &PX_MgjsonParser::ParseDynamicDataInfo},
      {"useTimecodeB", kSeenUseTimecode, &PX_MgjsonParser::ParseUseTimecode},
      {"timecodeInfo", kSeenTimecodeInfo, &PX_MgjsonParser::ParseTimecodeInfo},
      {"utcInfo", kSeenUtcInfo, &PX_MgjsonParser::ParseUtcInfo},
      {"videoSyncTimeList", kSeenVideoSyncTimeList, &PX_MgjsonParser::ParseVideoSyncTimeList},
  };
  for (const TopLevelProperty &property : kProperties) {
    if (property.name == key) return &property;
  }
  return nullptr;
}

void PX_MgjsonParser::ParseBytes(const char *data, std::size_t size) {
  inputBase_ = data;
  inputSize_ = size;
  scanner_ = MgjsonScanner(data, data + size);
  // The bytes belong to the caller: forget them however reading ends.
  struct Forget {
    PX_MgjsonParser &parser;
    ~Forget() {
      parser.inputBase_ = nullptr;
      parser.scanner_ = MgjsonScanner(nullptr, nullptr);
    }
  } forget{*this};
  try {
    ReadTopLevelObject(data);
  } catch (...) {
    samples_.Drop();  // no temporary file outlives a failed parse
    throw;
  }
}

void PX_MgjsonParser::ReadTopLevelObject(const char *at) {
  const char *const end = scanner_.end();
  at = scanner_.SkipWhitespace(at);
  if (at == end || *at != '{') RaiseAtOffset(Msg::OpeningBracketNotFound, OffsetOf(at));
  at = scanner_.SkipWhitespace(at + 1);
  for (;;) {
    if (at == end) RaiseAtOffset(Msg::InvalidJson, OffsetOf(at), "");
    std::string_view key;
    std::string keyScratch;
    at = scanner_.ExpectColon(scanner_.ReadKey(at, key, keyScratch), key);
    const TopLevelProperty *property = FindTopLevelProperty(key);
    if (property == nullptr) RaiseAtOffset(Msg::FoundUnrecognisedKey, OffsetOf(at), key);
    at = scanner_.SkipWhitespace((this->*property->read)(at, end));
    seen_ |= property->bit;
    if (at == end) RaiseAtOffset(Msg::InvalidJson, OffsetOf(at), Quoted(key));
    if (*at == '}') break;
    if (*at != ',') {
      RaiseAtOffset(Msg::InvalidPropertyMissingCommaOrClosingBracket, OffsetOf(at), Quoted(key));
    }
    at = scanner_.SkipWhitespace(at + 1);
  }
  const std::string missing = GetMissingRequiredProperties();
  if (!missing.empty()) RaiseAtOffset(Msg::MissingRequiredProperties, -1, missing);
  at = scanner_.SkipWhitespace(at + 1);
  if (at != end) RaiseAtOffset(Msg::InvalidJson, OffsetOf(at), "");
  if (Seen(kSeenDataDynamicSamples)) FinishDynamicSamples();
}

const char *PX_MgjsonParser::ParseVersion(const char *at, const char * /*end*/) {
  std::string_view text;
  std::string scratch;
  at = scanner_.ReadString(at, PropertyPath("version"), text, scratch);
  version_.assign(text);
  return at;
}

const char *PX_MgjsonParser::ParseCreator(const char *at, const char * /*end*/) {
  std::string_view text;
  std::string scratch;
  at = scanner_.ReadString(at, PropertyPath("creator"), text, scratch);
  creator_.assign(text);
  return at;
}

const char *PX_MgjsonParser::ParseDataOutline(const char *at, const char * /*end*/) {
  samples_.ForgetOutline();
  JsonDocument fresh;  // a second dataOutline replaces the first
  outline_.Swap(fresh);
  at = ReadArray(at, "dataOutline", outline_);
  GetValidator().ValidateDataOutline(outline_);
  samples_.IndexOutline(outline_);
  return at;
}

const char *PX_MgjsonParser::ParseDataDynamicSamples(const char *at, const char *end) {
  if (at == end || *at != '[') {
    RaiseAtOffset(Msg::SamplesNotArray, OffsetOf(at), Quoted("dataDynamicSamples"), "JSON Array");
  }
  // The samples are checked with the scanner's grammar but never built: they can be far
  // larger than the outline, and the sample reader streams them from the file later.
  const char *const begin = at;
  std::size_t sampleSetCount = 0;
  at = scanner_.ParseArray(at, PropertyPath("dataDynamicSamples"), nullptr, 0,
                           &sampleSetCount);
  dynamicSamples_.begin = static_cast<std::uint64_t>(begin - inputBase_);
  dynamicSamples_.end = static_cast<std::uint64_t>(at - inputBase_);
  dynamicSamples_.sampleSetCount = sampleSetCount;
  samples_.Compact(std::string_view(begin, static_cast<std::size_t>(at - begin)), dynamicSamples_.begin);
  return at;
}

void PX_MgjsonParser::FinishDynamicSamples() { samples_.Complete(Timing()); }

SampleTiming PX_MgjsonParser::Timing() const {
  SampleTiming timing;
  timing.known = timeKind_ == PX_TIME_TIMECODE || timeKind_ == PX_TIME_UTC;
  timing.timecode = timeKind_ == PX_TIME_TIMECODE;
  timing.rate = FrameRate{timecode_.frameRateValue, timecode_.frameRateScale, timecode_.dropFrame};
  timing.precision = utc_.precisionLength;
  timing.utcIsGmt = utc_.isGmt;
  timing.textLength = timeStringLength_;
  return timing;
}

void PX_MgjsonParser::RefuseProperty(const char *at, std::string_view name) const {
  // Both versions name "2.0.0" here; the wording is kept as files' users know it.
  RaiseAtOffset(Msg::InvalidTopLevelProperty, OffsetOf(at), Quoted(name), "2.0.0");
}

const char *PX_MgjsonParser::ReadObject(const char *at, std::string_view name,
                                        JsonDocument &document) const {
  return scanner_.ParseObject(at, PropertyPath(name), &document, 0);
}

const char *PX_MgjsonParser::ReadArray(const char *at, std::string_view name,
                                       JsonDocument &document) const {
  return scanner_.ParseArray(at, PropertyPath(name), &document, 0);
}

void PX_MgjsonParser::KeepTimecode(const JsonValue &timecodeInfo) {
  timecode_ = ExtractTimecode(timecodeInfo);
  timeKind_ = PX_TIME_TIMECODE;
  timeStringLength_ = timecode_.timeStringLength;
}

void PX_MgjsonParser::KeepUtc(const JsonValue &utcInfo) {
  utc_ = ExtractUtc(utcInfo);
  timeKind_ = PX_TIME_UTC;
  timeStringLength_ = utc_.timeStringLength;
}

void PX_MgjsonParser::KeepVideoSyncList(const JsonValue &list) {
  videoSyncList_ = ExtractVideoSyncList(list);
}

}  // namespace ns_sensor
