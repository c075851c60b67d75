// The layout of one stored sample, the same in memory and in a spill file: the time
// text, the value text's length in two bytes (little-endian), the value text. Records sit
// back to back with no separator; every time text of one store has the same length, so
// the time needs no length of its own.
#pragma once

#include <cstddef>
#include <string_view>

namespace PX_PLUGIN {

// Bytes of the value length field.
inline constexpr std::size_t kRecordLengthBytes = 2;

// Bytes a record of these texts takes.
inline std::size_t RecordSize(std::string_view time, std::string_view value) {
  return time.size() + kRecordLengthBytes + value.size();
}

// Writes one record at out and returns its end. The caller has made room for RecordSize
// bytes and keeps the value text below 0x10000 bytes.
char *WriteRecord(char *out, std::string_view time, std::string_view value);

// Reads records back in order from a block of them.
class RecordReader {
 public:
  RecordReader() = default;
  RecordReader(std::string_view records, std::size_t timeLength) : rest_(records), timeLength_(timeLength) {}

  // The next record's texts (views into the block); false once the block is used up.
  // A record cut short raises the plug-in exception of SampleSetUnreadable (2014).
  bool Next(std::string_view &time, std::string_view &value);

 private:
  std::string_view rest_;
  std::size_t timeLength_ = 0;
};

}  // namespace PX_PLUGIN
