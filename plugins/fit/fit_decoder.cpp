#include "fit_decoder.hpp"

#include <array>
#include <map>

#include "fit_byte_source.hpp"
#include "fit_crc.hpp"
#include "fit_errors.hpp"
#include "fit_header.hpp"
#include "palvex/plugin_helpers.hpp"

namespace palvex_fit {
namespace {

using PX_PLUGIN::PX_PluginException;

constexpr std::size_t kLocalTypes = 16;
constexpr std::uint8_t kCompressedHeaderBit = 0x80;
constexpr std::uint8_t kDefinitionBit = 0x40;
constexpr std::uint8_t kDeveloperDataBit = 0x20;
constexpr std::uint8_t kLocalTypeMask = 0x0F;
constexpr std::uint8_t kCompressedLocalTypeMask = 0x03;
constexpr unsigned kCompressedLocalTypeShift = 5;
constexpr std::uint32_t kTimeOffsetMask = 0x1F;
constexpr std::uint32_t kTimeOffsetRollover = 0x20;
constexpr std::uint16_t kFieldDescriptionMessage = 206;
// Descriptions beyond this many in one file are ignored (their fields are skipped):
// the table stays small whatever the file declares.
constexpr std::size_t kMaxDeveloperFields = 1024;
constexpr std::int64_t kDefinitionRecord = -1;

struct FieldDefinition {
  std::uint8_t number, size, baseTypeByte;
};

struct DeveloperFieldDefinition {
  std::uint8_t number, size, developerIndex;
};

struct Definition {
  std::uint16_t global = 0;
  bool bigEndian = false;
  std::vector<FieldDefinition> fields;
  std::vector<DeveloperFieldDefinition> developerFields;
  std::size_t messageSize = 0;
  std::optional<std::size_t> timestampAt;  // byte offset of field 253 in the message
};

class Decoder {
 public:
  Decoder(std::istream &in, FitMessageSink &sink) : source_(in), sink_(sink) {}

  DecodeSummary Run() {
    while (ReadPart()) {
    }
    summary_.bytesRead = source_.bytesRead();
    return summary_;
  }

 private:
  // One file of the chain; false at the clean end of the input.
  bool ReadPart() {
    const std::uint64_t start = source_.offset();
    std::array<std::uint8_t, kHeaderSize> head{};
    std::size_t got = source_.Read(head.data(), kShortHeaderSize);
    if (got == 0 && summary_.parts > 0) return false;
    if (got == kShortHeaderSize && head[0] >= kHeaderSize) got += source_.Read(head.data() + got, kCrcSize);
    const std::optional<FitHeader> header = ReadFitHeader(head.data(), got);
    const unsigned part = ++summary_.parts;
    if (!header) throw PX_PluginException(kNotFitHeader, static_cast<std::int64_t>(start), got > 0 ? head[0] : -1);
    if (!header->headerCrcMatches) throw PX_PluginException(kHeaderCrcMismatch, static_cast<std::int64_t>(start), part);
    crc_ = UpdateCrc(0, head.data(), got);
    dataEnd_ = start + header->size + header->dataSize;
    // Header bytes past the 14 we know are covered by the CRC and otherwise skipped.
    for (std::size_t extra = header->size > got ? header->size - got : 0; extra > 0; --extra) {
      std::uint8_t byte;
      ReadData(&byte, 1, kDefinitionRecord, start);
    }
    definitions_ = {};
    developerFields_.clear();
    lastTimestamp_.reset();
    message_.part = part;
    // A part longer than the input was cut short: whatever goes wrong in its last bytes
    // (often the CRC read as a record) is the cut, and is reported as such.
    const bool cut = source_.size() && dataEnd_ + kCrcSize > *source_.size();
    try {
      while (source_.offset() < dataEnd_) ReadRecord();
    } catch (const PX_PluginException &e) {
      const bool damage = e.code() >= kNotFitHeader && e.code() <= kBadArchitecture;
      if (cut && damage) Truncated();
      throw;
    }
    std::array<std::uint8_t, kCrcSize> stored{};
    if (cut || source_.Read(stored.data(), kCrcSize) < kCrcSize) Truncated();
    if (ReadUnsigned(stored.data(), kCrcSize, false) != crc_) {
      throw PX_PluginException(kFileCrcMismatch, static_cast<std::int64_t>(dataEnd_), part);
    }
    return true;
  }

  [[noreturn]] void Truncated() {
    throw PX_PluginException(kTruncated, static_cast<std::int64_t>(source_.size().value_or(source_.offset())),
                             static_cast<std::int64_t>(dataEnd_));
  }

  // Bytes of the record at recordOffset, inside the part's data.
  void ReadData(std::uint8_t *out, std::size_t count, std::int64_t global, std::uint64_t recordOffset) {
    if (source_.offset() + count > dataEnd_) {
      throw PX_PluginException(kMessagePastData, static_cast<std::int64_t>(recordOffset), global);
    }
    const std::size_t got = source_.Read(out, count);
    crc_ = UpdateCrc(crc_, out, got);
    if (got < count) Truncated();
  }

  void ReadRecord() {
    const std::uint64_t at = source_.offset();
    std::uint8_t header;
    ReadData(&header, 1, kDefinitionRecord, at);
    // Bit 7 first: a compressed header of local type 2 or 3 has bit 6 set as well.
    if (header & kCompressedHeaderBit) {
      ReadDataMessage(at, (header >> kCompressedLocalTypeShift) & kCompressedLocalTypeMask,
                      header & kTimeOffsetMask);
    } else if (header & kDefinitionBit) {
      ReadDefinition(at, header & kLocalTypeMask, (header & kDeveloperDataBit) != 0);
    } else {
      ReadDataMessage(at, header & kLocalTypeMask, std::nullopt);
    }
  }

  void ReadDefinition(std::uint64_t at, std::size_t local, bool withDeveloperFields) {
    std::array<std::uint8_t, 5> fixed{};  // reserved, architecture, global number, field count
    ReadData(fixed.data(), fixed.size(), kDefinitionRecord, at);
    if (fixed[1] > 1) throw PX_PluginException(kBadArchitecture, static_cast<std::int64_t>(at), fixed[1]);
    Definition definition;
    definition.bigEndian = fixed[1] == 1;
    definition.global = static_cast<std::uint16_t>(ReadUnsigned(fixed.data() + 2, 2, definition.bigEndian));
    std::array<std::uint8_t, 3 * 255> triples{};
    ReadData(triples.data(), 3u * fixed[4], kDefinitionRecord, at);
    for (std::size_t i = 0; i < fixed[4]; ++i) {
      const FieldDefinition field{triples[3 * i], triples[3 * i + 1], triples[3 * i + 2]};
      const BaseType *type = FindBaseType(field.baseTypeByte);
      if (type == nullptr || field.size % type->size != 0) ++summary_.skippedFields;
      if (field.number == kTimestampField && field.size == 4) definition.timestampAt = definition.messageSize;
      definition.messageSize += field.size;
      definition.fields.push_back(field);
    }
    if (withDeveloperFields) {
      std::uint8_t count = 0;
      ReadData(&count, 1, kDefinitionRecord, at);
      ReadData(triples.data(), 3u * count, kDefinitionRecord, at);
      for (std::size_t i = 0; i < count; ++i) {
        definition.developerFields.push_back({triples[3 * i], triples[3 * i + 1], triples[3 * i + 2]});
        definition.messageSize += triples[3 * i + 1];
      }
    }
    definitions_[local] = std::move(definition);
  }

  void ReadDataMessage(std::uint64_t at, std::size_t local, std::optional<std::uint32_t> timeOffset) {
    const std::optional<Definition> &definition = definitions_[local];
    if (!definition) throw PX_PluginException(kUndefinedLocalType, static_cast<std::int64_t>(at), static_cast<std::int64_t>(local));
    buffer_.resize(definition->messageSize);
    ReadData(buffer_.data(), buffer_.size(), definition->global, at);
    std::optional<std::uint32_t> time;
    if (definition->timestampAt) {
      const auto raw = static_cast<std::uint32_t>(
          ReadUnsigned(buffer_.data() + *definition->timestampAt, 4, definition->bigEndian));
      if (raw != kInvalidTimestamp) time = raw;
    }
    if (!time && timeOffset && lastTimestamp_) {
      // A compressed header moves 0 to 31 s past the last full time, rolling over its low bits.
      std::uint32_t rebuilt = (*lastTimestamp_ & ~kTimeOffsetMask) + *timeOffset;
      if (*timeOffset < (*lastTimestamp_ & kTimeOffsetMask)) rebuilt += kTimeOffsetRollover;
      time = rebuilt;
    }
    if (time) lastTimestamp_ = time;
    const bool wanted = sink_.Wants(definition->global);
    if (!wanted && definition->global != kFieldDescriptionMessage) return;
    FillMessage(*definition, at, time);
    if (definition->global == kFieldDescriptionMessage) RecordDeveloperField();
    if (wanted) sink_.OnMessage(message_);
  }

  void FillMessage(const Definition &definition, std::uint64_t at, std::optional<std::uint32_t> time) {
    message_.global = definition.global;
    message_.offset = at;
    message_.timestamp = time;
    message_.fields.clear();
    message_.developerFields.clear();
    const std::uint8_t *bytes = buffer_.data();
    for (const FieldDefinition &field : definition.fields) {
      message_.fields.push_back({field.number, field.size, field.baseTypeByte, definition.bigEndian, bytes});
      bytes += field.size;
    }
    for (const DeveloperFieldDefinition &field : definition.developerFields) {
      const auto found = developerFields_.find(Key(field.developerIndex, field.number));
      if (found != developerFields_.end()) {
        const FieldView value{field.number, field.size, found->second.baseTypeByte, definition.bigEndian, bytes};
        message_.developerFields.push_back({value, &found->second});
      }
      bytes += field.size;
    }
  }

  static std::uint16_t Key(std::uint8_t developerIndex, std::uint8_t number) {
    return static_cast<std::uint16_t>(developerIndex << 8 | number);
  }

  void RecordDeveloperField() {
    const FieldView *index = message_.Find(0);
    const FieldView *number = message_.Find(1);
    const FieldView *type = message_.Find(2);
    if (index == nullptr || number == nullptr || type == nullptr) return;
    const auto indexValue = index->Raw(), numberValue = number->Raw(), typeValue = type->Raw();
    if (!indexValue || !numberValue || !typeValue || *indexValue > 0xFF || *numberValue > 0xFF) return;
    const std::uint16_t key = Key(static_cast<std::uint8_t>(*indexValue), static_cast<std::uint8_t>(*numberValue));
    if (developerFields_.size() >= kMaxDeveloperFields && developerFields_.count(key) == 0) return;
    DeveloperField &field = developerFields_[key];
    field.developerIndex = static_cast<std::uint8_t>(*indexValue);
    field.number = static_cast<std::uint8_t>(*numberValue);
    field.baseTypeByte = static_cast<std::uint8_t>(*typeValue);
    const FieldView *name = message_.Find(3);
    const FieldView *units = message_.Find(8);
    field.name = name ? std::string(name->Text()) : std::string();
    field.units = units ? std::string(units->Text()) : std::string();
  }

  ByteSource source_;
  FitMessageSink &sink_;
  DecodeSummary summary_;
  std::uint16_t crc_ = 0;
  std::uint64_t dataEnd_ = 0;
  std::array<std::optional<Definition>, kLocalTypes> definitions_;
  // std::map: its nodes stay put, so messages may point at descriptions.
  std::map<std::uint16_t, DeveloperField> developerFields_;
  std::optional<std::uint32_t> lastTimestamp_;
  std::vector<std::uint8_t> buffer_;
  FitMessage message_;
};

}  // namespace

const FieldView *FitMessage::Find(std::uint8_t number) const {
  for (const FieldView &field : fields) {
    if (field.number == number) return &field;
  }
  return nullptr;
}

DecodeSummary DecodeFit(std::istream &in, FitMessageSink &sink) { return Decoder(in, sink).Run(); }

}  // namespace palvex_fit
