// The text of a delimited input file, in pieces of UTF-8: files with a UTF-16 byte-order
// mark are decoded (either byte order), a UTF-8 mark is skipped, and any other file is
// passed on as its bytes.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "plugin_model/scoped_file.hpp"

namespace ns_sensor {

// How a file's first bytes say it is encoded.
enum class TextEncoding : std::uint8_t {
  Bytes = 0,         // no mark: the bytes as they stand
  Utf8Marked = 1,    // EF BB BF
  Utf16Big = 2,      // FE FF
  Utf16Little = 3,   // FF FE
};

TextEncoding DetectEncoding(std::string_view firstBytes);

// Text handed over piece by piece; an empty piece means the end.
class TextChunks {
 public:
  virtual ~TextChunks() = default;
  virtual std::string_view Next() = 0;
};

// Decodes UTF-16 units of one byte order into UTF-8, across pieces: a unit split between
// two pieces and a surrogate pair split between them are joined. A surrogate without its
// partner becomes U+FFFD, as does an odd byte at the very end.
class Utf16Decoder {
 public:
  explicit Utf16Decoder(bool bigEndian) : bigEndian_(bigEndian) {}
  // Appends the UTF-8 of the complete units in bytes (after what was held back) to out.
  void Decode(std::string_view bytes, std::string &out);
  // Appends what is still held back, at the end of the input.
  void Finish(std::string &out);

 private:
  void Unit(std::uint16_t unit, std::string &out);

  bool bigEndian_;
  bool hasOddByte_ = false;
  std::uint8_t oddByte_ = 0;
  std::uint16_t highSurrogate_ = 0;  // 0: none pending
};

// A whole text in memory, given out in pieces (tests and fuzzing): decoded by its mark as
// a file would be.
class MemoryText : public TextChunks {
 public:
  explicit MemoryText(std::string_view bytes, std::size_t pieceSize = 65536);
  std::string_view Next() override;
  TextEncoding Encoding() const { return encoding_; }

 private:
  std::string text_;
  std::size_t pieceSize_;
  std::size_t at_ = 0;
  TextEncoding encoding_;
};

// A file read in blocks through the file layer. Opening raises the file layer's errors
// (a missing or unreadable file: code 6, or 13 when permission is denied).
class FileText : public TextChunks {
 public:
  explicit FileText(std::string_view path);
  std::string_view Next() override;
  TextEncoding Encoding() const { return encoding_; }
  std::uint64_t Size() const { return size_; }

 private:
  // The next block of the file's bytes; empty at the end.
  std::string_view ReadBlock();

  PX_PLUGIN::ScopedFile file_;
  std::uint64_t size_ = 0;
  TextEncoding encoding_ = TextEncoding::Bytes;
  std::string block_;
  std::string decoded_;
  std::string_view pending_;  // bytes read while detecting the encoding, not yet handed out
  bool finished_ = false;
  std::unique_ptr<Utf16Decoder> decoder_;
};

}  // namespace ns_sensor
