// The top-level MGJSON parser: reads the outermost object property by property with the
// scanner, applies its schema version's rules on which properties may come and in which
// order, has the validator check the outline and the time information, and keeps what the
// file handler asks for. Version 1 keeps the time information at the top level; version 2
// gathers it in dynamicDataInfo and adds dynamicSamplesPresentB.
//
// A parser reads one file once. The file is mapped only while Parse runs; every fault
// raises PX_Exception, drops what was built and releases the mapping.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "mgjson_read/dynamic_samples.hpp"
#include "mgjson_read/rapidjson_config.hpp"
#include "mgjson_read/scanner.hpp"
#include "mgjson_read/time_info_extraction.hpp"
#include "mgjson_read/validator.hpp"

namespace ns_sensor {

// One bit per top-level property that has been read.
enum SeenProperty : std::uint16_t {
  kSeenVersion = 0x001,
  kSeenCreator = 0x002,
  kSeenUseTimecode = 0x004,
  kSeenUtcInfo = 0x008,
  kSeenTimecodeInfo = 0x010,
  kSeenDataOutline = 0x020,
  kSeenDataDynamicSamples = 0x040,
  kSeenVideoSyncTimeList = 0x080,
  kSeenDynamicSamplesPresent = 0x100,
  kSeenDynamicDataInfo = 0x200,
};

// Where the "dataDynamicSamples" array lies in the file, for the sample reader.
struct DynamicSamplesLocation {
  std::uint64_t begin = 0;  // offset of its "["
  std::uint64_t end = 0;    // offset one past its "]"
  std::size_t sampleSetCount = 0;
};

class PX_MgjsonParser {
 public:
  // Maps the file, reads it, and releases the mapping whatever happens.
  virtual void Parse(std::string_view filePath);
  // 0 for schema version 1, 1 for schema version 2.
  virtual std::uint32_t GetSchemaVersion() const = 0;
  virtual ~PX_MgjsonParser() = default;

  // The core of Parse, on bytes held elsewhere; offsets in faults count from `data`.
  void ParseBytes(const char *data, std::size_t size);

  // What the file handler reads after a successful parse.
  std::uint16_t seenProperties() const { return seen_; }
  const std::string &filePath() const { return filePath_; }
  std::uint64_t inputSize() const { return inputSize_; }
  const JsonDocument &dataOutline() const { return outline_; }
  const std::string &version() const { return version_; }
  const std::string &creator() const { return creator_; }
  std::uint32_t timeKind() const { return timeKind_; }  // PX_TimeKind
  std::uint32_t frameRateValue() const { return timecode_.frameRateValue; }
  std::uint32_t frameRateScale() const { return timecode_.frameRateScale; }
  bool dropFrame() const { return timecode_.dropFrame; }
  std::uint16_t utcPrecisionLength() const { return utc_.precisionLength; }
  bool utcIsGmt() const { return utc_.isGmt; }
  std::uint16_t timeStringLength() const { return timeStringLength_; }
  bool useTimecode() const { return useTimecode_; }
  bool dynamicSamplesPresent() const { return dynamicSamplesPresent_; }
  const std::vector<VideoSyncEntry> &videoSyncList() const { return videoSyncList_; }
  // Meaningful when kSeenDataDynamicSamples is set.
  const DynamicSamplesLocation &dynamicSamples() const { return dynamicSamples_; }
  // The sample-set index, the compacted samples and the time origin; samples are read
  // through samples().Reader().
  const DynamicSamples &samples() const { return samples_; }

 protected:
  // Each reads the value of its property from `at` (just after the colon and white space)
  // and returns the position after it.
  virtual const char *ParseVersion(const char *at, const char *end);
  virtual const char *ParseCreator(const char *at, const char *end);
  virtual const char *ParseDataOutline(const char *at, const char *end);
  virtual const char *ParseDataDynamicSamples(const char *at, const char *end);
  // Completes the sample-set index once the whole file has been read.
  virtual void FinishDynamicSamples();
  virtual const char *ParseDynamicSamplesPresent(const char *at, const char *end) = 0;
  virtual const char *ParseDynamicDataInfo(const char *at, const char *end) = 0;
  virtual const char *ParseUseTimecode(const char *at, const char *end) = 0;
  virtual const char *ParseTimecodeInfo(const char *at, const char *end) = 0;
  virtual const char *ParseUtcInfo(const char *at, const char *end) = 0;
  virtual const char *ParseVideoSyncTimeList(const char *at, const char *end) = 0;
  virtual const PX_MgjsonValidator &GetValidator() const = 0;
  // The required properties that were not read, joined by ","; empty when none.
  virtual std::string GetMissingRequiredProperties() const = 0;

  // A property that this schema version does not define at the top level (code 30).
  [[noreturn]] void RefuseProperty(const char *at, std::string_view name) const;
  // Reads an object or array value into `document` with `name` as its path.
  const char *ReadObject(const char *at, std::string_view name, JsonDocument &document) const;
  const char *ReadArray(const char *at, std::string_view name, JsonDocument &document) const;
  // Keep what validated time information says.
  void KeepTimecode(const JsonValue &timecodeInfo);
  void KeepUtc(const JsonValue &utcInfo);
  void KeepVideoSyncList(const JsonValue &list);

  bool Seen(SeenProperty property) const { return (seen_ & property) != 0; }
  std::int64_t OffsetOf(const char *at) const { return scanner_.OffsetOf(at); }

  MgjsonScanner scanner_{nullptr, nullptr};  // over the bytes being read

  std::uint16_t seen_ = 0;
  const char *inputBase_ = nullptr;  // set while the bytes are read
  std::uint64_t inputSize_ = 0;
  std::string filePath_;
  JsonDocument outline_;
  std::string version_;
  std::string creator_;
  TimecodeSettings timecode_;
  UtcSettings utc_;
  std::uint32_t timeKind_ = PX_TIME_NONE;
  std::uint16_t timeStringLength_ = 0;
  bool useTimecode_ = false;
  bool dynamicSamplesPresent_ = false;
  std::vector<VideoSyncEntry> videoSyncList_;
  DynamicSamplesLocation dynamicSamples_;
  DynamicSamples samples_;  // owns the temporary sample file: deleted with the parser

 private:
  using PropertyReader = const char *(PX_MgjsonParser::*)(const char *, const char *);
  struct TopLevelProperty {
    std::string_view name;
    SeenProperty bit;
    PropertyReader read;
  };
  static const TopLevelProperty *FindTopLevelProperty(std::string_view key);
  void ReadTopLevelObject(const char *at);
  // The time information read so far, as the sample reader needs it.
  SampleTiming Timing() const;
};

class PX_MgjsonParser_v1 : public PX_MgjsonParser {
 public:
  std::uint32_t GetSchemaVersion() const override { return 0; }

 protected:
  const char *ParseDynamicSamplesPresent(const char *at, const char *end) override;
  const char *ParseDynamicDataInfo(const char *at, const char *end) override;
  const char *ParseUseTimecode(const char *at, const char *end) override;
  const char *ParseTimecodeInfo(const char *at, const char *end) override;
  const char *ParseUtcInfo(const char *at, const char *end) override;
  const char *ParseVideoSyncTimeList(const char *at, const char *end) override;
  const PX_MgjsonValidator &GetValidator() const override { return validator_; }
  std::string GetMissingRequiredProperties() const override;

 private:
  PX_MgjsonValidator_v1 validator_;
};

class PX_MgjsonParser_v2 : public PX_MgjsonParser {
 public:
  std::uint32_t GetSchemaVersion() const override { return 1; }

 protected:
  const char *ParseDataDynamicSamples(const char *at, const char *end) override;
  const char *ParseDynamicSamplesPresent(const char *at, const char *end) override;
  const char *ParseDynamicDataInfo(const char *at, const char *end) override;
  const char *ParseUseTimecode(const char *at, const char *end) override;
  const char *ParseTimecodeInfo(const char *at, const char *end) override;
  const char *ParseUtcInfo(const char *at, const char *end) override;
  const char *ParseVideoSyncTimeList(const char *at, const char *end) override;
  const PX_MgjsonValidator &GetValidator() const override { return validator_; }
  std::string GetMissingRequiredProperties() const override;

 private:
  PX_MgjsonValidator_v2 validator_;
};

// Whether the bytes are a schema version 2 file: the first property is "version" with a
// value that reads "mgjson2.0.0" in any letter case. Never raises.
bool IsSchemaVersion2(const char *data, std::size_t size);
// The same for a file, which is mapped for the question and released.
bool IsSchemaVersion2(std::string_view filePath);

// A parser of the file's schema version, not yet run.
std::shared_ptr<PX_MgjsonParser> CreateMgjsonParser(std::string_view filePath);
std::shared_ptr<PX_MgjsonParser> CreateMgjsonParser(const char *data, std::size_t size);

}  // namespace ns_sensor
