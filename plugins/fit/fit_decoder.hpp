// Decodes a FIT byte stream message by message in one pass: headers and CRCs of every
// chained file, definitions in either byte order, compressed-timestamp headers and
// developer fields. The messages go to a sink as they are read; nothing of the file is
// kept beyond the definitions in force. Damage throws PX_PLUGIN::PX_PluginException with
// a code of fit_errors.hpp, after the messages before it were delivered.
#pragma once

#include <cstdint>
#include <istream>
#include <optional>
#include <string>
#include <vector>

#include "fit_base_types.hpp"

namespace palvex_fit {

constexpr std::uint8_t kTimestampField = 253;
constexpr std::uint32_t kInvalidTimestamp = 0xFFFFFFFF;

// What a field_description message declared for a developer field.
struct DeveloperField {
  std::uint8_t developerIndex = 0;
  std::uint8_t number = 0;
  std::uint8_t baseTypeByte = 0;
  std::string name;
  std::string units;
};

struct DeveloperFieldView {
  FieldView value;
  const DeveloperField *description = nullptr;
};

// One data message. Its views point into the decoder's buffer: valid during OnMessage only.
struct FitMessage {
  std::uint16_t global = 0;
  std::uint64_t offset = 0;  // of its record header
  unsigned part = 0;         // which file of a chain: 1 for the first
  // FIT seconds: its own timestamp field, or rebuilt from a compressed header.
  std::optional<std::uint32_t> timestamp;
  std::vector<FieldView> fields;
  std::vector<DeveloperFieldView> developerFields;  // only those with a description

  const FieldView *Find(std::uint8_t number) const;
};

class FitMessageSink {
 public:
  virtual ~FitMessageSink() = default;
  // Messages of other numbers are read (for their CRC and timestamps) but not delivered.
  virtual bool Wants(std::uint16_t global) const = 0;
  virtual void OnMessage(const FitMessage &message) = 0;
};

struct DecodeSummary {
  unsigned parts = 0;            // files in the chain
  std::uint64_t bytesRead = 0;   // from the stream
  std::uint64_t skippedFields = 0;  // declared with an unknown base type or a size that does not fit it
};

DecodeSummary DecodeFit(std::istream &in, FitMessageSink &sink);

}  // namespace palvex_fit
