#include "converters/text_source.hpp"

#include <utility>

#include "platform/file_io.hpp"

namespace ns_sensor {
namespace {

constexpr std::size_t kBlockBytes = 65536;
constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kUtf16BigMark = "\xFE\xFF";
constexpr std::string_view kUtf16LittleMark = "\xFF\xFE";
constexpr std::uint32_t kReplacement = 0xFFFD;

bool IsHighSurrogate(std::uint32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool IsLowSurrogate(std::uint32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

void AppendUtf8(std::uint32_t codePoint, std::string &out) {
  if (codePoint < 0x80) {
    out.push_back(static_cast<char>(codePoint));
  } else if (codePoint < 0x800) {
    out.push_back(static_cast<char>(0xC0 | (codePoint >> 6)));
    out.push_back(static_cast<char>(0x80 | (codePoint & 0x3F)));
  } else if (codePoint < 0x10000) {
    out.push_back(static_cast<char>(0xE0 | (codePoint >> 12)));
    out.push_back(static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | (codePoint & 0x3F)));
  } else {
    out.push_back(static_cast<char>(0xF0 | (codePoint >> 18)));
    out.push_back(static_cast<char>(0x80 | ((codePoint >> 12) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | (codePoint & 0x3F)));
  }
}

// The length of the byte-order mark an encoding starts with.
std::size_t MarkLength(TextEncoding encoding) {
  switch (encoding) {
    case TextEncoding::Utf8Marked: return kUtf8Mark.size();
    case TextEncoding::Utf16Big:
    case TextEncoding::Utf16Little: return 2;
    case TextEncoding::Bytes: break;
  }
  return 0;
}

bool IsUtf16(TextEncoding encoding) {
  return encoding == TextEncoding::Utf16Big || encoding == TextEncoding::Utf16Little;
}

}  // namespace

TextEncoding DetectEncoding(std::string_view firstBytes) {
  if (firstBytes.starts_with(kUtf8Mark)) return TextEncoding::Utf8Marked;
  if (firstBytes.starts_with(kUtf16BigMark)) return TextEncoding::Utf16Big;
  if (firstBytes.starts_with(kUtf16LittleMark)) return TextEncoding::Utf16Little;
  return TextEncoding::Bytes;
}

void Utf16Decoder::Unit(std::uint16_t unit, std::string &out) {
  if (highSurrogate_ != 0) {
    const std::uint32_t high = std::exchange(highSurrogate_, 0);
    if (IsLowSurrogate(unit)) {
      AppendUtf8(0x10000 + ((high - 0xD800) << 10) + (unit - 0xDC00u), out);
      return;
    }
    AppendUtf8(kReplacement, out);
  }
  if (IsHighSurrogate(unit)) {
    highSurrogate_ = unit;
  } else {
    AppendUtf8(IsLowSurrogate(unit) ? kReplacement : unit, out);
  }
}

void Utf16Decoder::Decode(std::string_view bytes, std::string &out) {
  std::size_t at = 0;
  auto unitOf = [this](std::uint8_t first, std::uint8_t second) {
    return static_cast<std::uint16_t>(bigEndian_ ? (first << 8) | second : (second << 8) | first);
  };
  if (hasOddByte_ && !bytes.empty()) {
    Unit(unitOf(oddByte_, static_cast<std::uint8_t>(bytes[0])), out);
    hasOddByte_ = false;
    at = 1;
  }
  for (; at + 1 < bytes.size(); at += 2) {
    Unit(unitOf(static_cast<std::uint8_t>(bytes[at]), static_cast<std::uint8_t>(bytes[at + 1])), out);
  }
  if (at < bytes.size()) {
    hasOddByte_ = true;
    oddByte_ = static_cast<std::uint8_t>(bytes[at]);
  }
}

void Utf16Decoder::Finish(std::string &out) {
  if (highSurrogate_ != 0 || hasOddByte_) AppendUtf8(kReplacement, out);
  highSurrogate_ = 0;
  hasOddByte_ = false;
}

MemoryText::MemoryText(std::string_view bytes, std::size_t pieceSize)
    : pieceSize_(pieceSize == 0 ? 1 : pieceSize), encoding_(DetectEncoding(bytes)) {
  bytes.remove_prefix(MarkLength(encoding_));
  if (IsUtf16(encoding_)) {
    Utf16Decoder decoder(encoding_ == TextEncoding::Utf16Big);
    decoder.Decode(bytes, text_);
    decoder.Finish(text_);
  } else {
    text_.assign(bytes);
  }
}

std::string_view MemoryText::Next() {
  const std::string_view rest = std::string_view(text_).substr(at_);
  const std::string_view piece = rest.substr(0, pieceSize_);
  at_ += piece.size();
  return piece;
}

FileText::FileText(std::string_view path)
    : file_(File_IO::Open(path, /*readOnly=*/true, /*append=*/false)), size_(File_IO::Length(file_.get())) {
  // A mark is at most three bytes; the first block holds it unless the file is shorter.
  pending_ = ReadBlock();
  encoding_ = DetectEncoding(pending_);
  pending_.remove_prefix(MarkLength(encoding_));
  if (IsUtf16(encoding_)) decoder_ = std::make_unique<Utf16Decoder>(encoding_ == TextEncoding::Utf16Big);
}

std::string_view FileText::ReadBlock() {
  block_.resize(kBlockBytes);
  const std::uint32_t count = File_IO::Read(file_.get(), block_.data(), block_.size());
  block_.resize(count);
  return block_;
}

std::string_view FileText::Next() {
  while (!finished_) {
    std::string_view bytes = pending_.empty() ? ReadBlock() : std::exchange(pending_, {});
    if (!decoder_) {
      if (bytes.empty()) finished_ = true;
      return bytes;
    }
    decoded_.clear();
    if (bytes.empty()) {
      decoder_->Finish(decoded_);
      finished_ = true;
    } else {
      decoder_->Decode(bytes, decoded_);
    }
    if (!decoded_.empty()) return decoded_;
  }
  return {};
}

}  // namespace ns_sensor
