// Writes FIT files from their parts: definitions (either byte order, developer fields),
// data messages with normal or compressed-timestamp headers, the header and both CRCs.
// The tests, the example, the fuzz seeds and the benchmark all make their inputs with it.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace palvex_fit::testing {

// Base type bytes.
enum : std::uint8_t {
  kEnum = 0x00, kSint8 = 0x01, kUint8 = 0x02, kSint16 = 0x83, kUint16 = 0x84, kSint32 = 0x85,
  kUint32 = 0x86, kString = 0x07, kFloat32 = 0x88, kUint8z = 0x0A, kUint32z = 0x8C, kByte = 0x0D
};

struct FieldLayout {
  std::uint8_t number, size, baseType;
};
struct DeveloperFieldLayout {
  std::uint8_t number, size, developerIndex;
};

// A field's value: a number written in the field's size and the definition's byte order
// (negative numbers as two's complement), or bytes written as given and padded with NULs.
struct Value {
  Value(std::uint64_t number) : raw(number) {}  // NOLINT: values are written inline
  Value(std::int64_t number) : raw(static_cast<std::uint64_t>(number)) {}
  Value(int number) : raw(static_cast<std::uint64_t>(static_cast<std::int64_t>(number))) {}
  Value(unsigned number) : raw(number) {}
  Value(const char *bytes) : text(bytes), isText(true) {}
  Value(std::string bytes) : text(std::move(bytes)), isText(true) {}
  std::uint64_t raw = 0;
  std::string text;
  bool isText = false;
};

class FitBuilder {
 public:
  FitBuilder &Define(std::uint8_t local, std::uint16_t global, std::vector<FieldLayout> fields,
                     bool bigEndian = false, std::vector<DeveloperFieldLayout> developerFields = {});
  // A data message with a normal header; one value per field, developer fields last.
  FitBuilder &Data(std::uint8_t local, const std::vector<Value> &values);
  // A data message with a compressed-timestamp header (local 0-3, offset 0-31).
  FitBuilder &Compressed(std::uint8_t local, std::uint8_t timeOffset, const std::vector<Value> &values);
  // Bytes appended to the records as they are.
  FitBuilder &Raw(const std::string &bytes);

  // The whole file: header (12 or 14 bytes), records, file CRC.
  std::string Finish(std::uint8_t headerSize = 14) const;
  const std::string &records() const { return records_; }

 private:
  struct Layout {
    bool bigEndian;
    std::vector<std::uint8_t> sizes;
  };
  void AppendValues(std::uint8_t local, const std::vector<Value> &values);

  std::string records_;
  std::map<std::uint8_t, Layout> layouts_;
};

// The check value over bytes (for tests that break or rebuild a CRC).
std::uint16_t Crc(const std::string &bytes);
// Bytes from a text of hexadecimal pairs, spaces ignored: "0E 20 34 08".
std::string FromHex(const std::string &hex);
// A little-endian number of `size` bytes.
std::string LittleEndian(std::uint64_t value, std::size_t size);

}  // namespace palvex_fit::testing
