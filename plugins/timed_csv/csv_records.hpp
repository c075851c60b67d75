// Records of comma-, semicolon- or tab-separated text, read as a stream: quoted fields per
// RFC 4180 (a doubled quote inside stands for one; line breaks and delimiters inside are
// ordinary), LF or CRLF line ends, a UTF-8 mark at the start skipped.
#pragma once

#include <cstdint>
#include <istream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "byte_reader.hpp"

namespace timed_csv {

// One record holds at most this many bytes: a file of one endless line must not take all
// memory.
constexpr std::size_t kMaxRecordBytes = std::size_t{1} << 20;

class CsvRecords {
 public:
  CsvRecords(std::istream &in, char delimiter);

  // Reads the next record that is not a blank line; false at the end of the input. Fields
  // are trimmed of spaces and tabs outside quotes. Throws PX_PluginException for a NUL
  // byte (kBinaryData) or an over-long record (kRecordTooLong).
  bool Next();

  std::size_t size() const { return spans_.size(); }
  // Field `index` of the current record, empty past its end; valid until the next call.
  std::string_view field(std::size_t index) const;
  // The line on which the current record starts (from 1).
  std::uint64_t line() const { return recordLine_; }

 private:
  int Get();
  int Peek();
  void Append(char c);
  void EndField(bool quoted);
  [[noreturn]] void Fail(std::uint32_t code) const;

  palvex_plugins::ByteReader bytes_;
  char delimiter_;
  std::uint64_t line_ = 1;
  std::uint64_t recordLine_ = 1;
  bool started_ = false;
  std::string text_;
  std::size_t fieldStart_ = 0;
  std::size_t keep_ = 0;  // text before this is quoted content, never trimmed
  std::vector<std::pair<std::size_t, std::size_t>> spans_;
};

}  // namespace timed_csv
