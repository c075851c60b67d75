#include "payload_walker.hpp"

#include <algorithm>
#include <optional>
#include <vector>

#include "big_endian.hpp"
#include "gpmf_errors.hpp"

namespace gpmf {
namespace {

constexpr std::size_t kMaxNestDepth = 8;  // payloads nest two or three deep

std::vector<double> Numbers(const unsigned char *payload, const Klv &klv) {
  std::vector<double> numbers;
  const std::size_t element = ElementBytes(klv.type);
  if (element == 0 || IsTextType(klv.type) || klv.sampleBytes % element != 0) return numbers;
  const std::size_t count = klv.valueBytes() / element;
  for (std::size_t i = 0; i < count; ++i) {
    const double value = ReadNumber(klv.type, payload + klv.value + i * element);
    if (value == value) numbers.push_back(value);  // NaN: a type with no numbers
  }
  return numbers;
}

std::optional<double> FirstNumber(const unsigned char *payload, const Klv &klv) {
  const std::vector<double> numbers = Numbers(payload, klv);
  if (numbers.empty()) return std::nullopt;
  return numbers.front();
}

std::string FirstText(const unsigned char *payload, const Klv &klv) {
  if (klv.type == 'F' && klv.valueBytes() >= 4) return KeyText(ReadU32(payload + klv.value));
  if (klv.type == 'U' || IsTextType(klv.type)) {
    const std::vector<std::string> strings = ReadStrings(payload, klv);
    return strings.empty() ? std::string() : strings.front();
  }
  const std::optional<double> number = FirstNumber(payload, klv);
  return number ? std::to_string(static_cast<long long>(*number)) : std::string();
}

// A property KLV: updates what the stream's later KLVs are read with. A property of an
// unexpected type is stepped over like an unknown key.
void TakeProperty(const unsigned char *payload, const Klv &klv, StreamProperties &p) {
  const bool text = IsTextType(klv.type);
  switch (klv.key) {
    case FourCc("STNM"): if (text) p.name = FirstText(payload, klv); break;
    case FourCc("SIUN"): if (text) p.units = ReadStrings(payload, klv); break;
    case FourCc("UNIT"): if (text && p.units.empty()) p.units = ReadStrings(payload, klv); break;
    case FourCc("SCAL"): p.scales = Numbers(payload, klv); break;
    case FourCc("TYPE"): if (text) p.typeText = FirstText(payload, klv); break;
    case FourCc("ORIN"): if (text) p.axisOrder = FirstText(payload, klv); break;
    case FourCc("GPSF"): p.gpsFix = FirstNumber(payload, klv); break;
    case FourCc("GPSU"): if (text || klv.type == 'U') p.gpsTime = FirstText(payload, klv); break;
    case FourCc("GPSP"): p.gpsPrecision = FirstNumber(payload, klv); break;
    case FourCc("TMPC"): p.temperature = FirstNumber(payload, klv); break;
    default: break;
  }
}

// A STRM: properties first, the data key last (possibly written several times, one KLV
// per time step).
void WalkStream(const unsigned char *payload, const Klv &strm, std::uint64_t fileOffset, StreamBlock block,
                const std::function<void(const StreamBlock &)> &visit) {
  std::vector<Klv> children;
  const std::size_t end = strm.value + strm.valueBytes();
  for (std::size_t at = strm.value; at < end;) {
    const Klv klv = ReadKlv(payload, at, end, fileOffset);
    children.push_back(klv);
    at = klv.next;
  }
  if (children.empty()) return;
  block.key = children.back().key;
  for (const Klv &klv : children) {
    if (klv.key == block.key) {
      block.data.push_back(klv);
    } else if (klv.type != kNestType) {
      TakeProperty(payload, klv, block.properties);
    }
  }
  if (block.data.front().type == kNestType) return;
  LayOut(block, block.data.front());
  visit(block);
}

void WalkDevice(const unsigned char *payload, const Klv &devc, std::uint64_t fileOffset,
                const std::function<void(const StreamBlock &)> &visit) {
  StreamBlock device;
  const std::size_t end = devc.value + devc.valueBytes();
  for (std::size_t at = devc.value; at < end;) {
    const Klv klv = ReadKlv(payload, at, end, fileOffset);
    at = klv.next;
    if (klv.key == FourCc("DVID")) device.deviceId = FirstText(payload, klv);
    if (klv.key == FourCc("DVNM")) device.deviceName = FirstText(payload, klv);
    if (klv.key == FourCc("STRM") && klv.type == kNestType) WalkStream(payload, klv, fileOffset, device, visit);
  }
}

std::string Find(const unsigned char *payload, std::size_t begin, std::size_t end, std::uint32_t key,
                 std::size_t depth) {
  for (std::size_t at = begin; at < end && end - at >= 8;) {
    const std::size_t valueBytes = std::size_t{payload[at + 5]} * ReadU16(payload + at + 6);
    if (valueBytes > end - at - 8) return {};
    const Klv klv{ReadU32(payload + at), static_cast<char>(payload[at + 4]), payload[at + 5],
                  ReadU16(payload + at + 6), at + 8, std::min(end, at + 8 + (valueBytes + 3) / 4 * 4)};
    if (klv.key == key && klv.type != kNestType) return FirstText(payload, klv);
    if (klv.type == kNestType && depth < kMaxNestDepth) {
      std::string found = Find(payload, klv.value, klv.value + valueBytes, key, depth + 1);
      if (!found.empty()) return found;
    }
    at = klv.next;
  }
  return {};
}

}  // namespace

void WalkPayload(const unsigned char *payload, std::size_t size, std::uint64_t fileOffset,
                 const std::function<void(const StreamBlock &)> &visit) {
  // Fewer than a header's bytes at the end are padding, not a KLV.
  for (std::size_t at = 0; at < size && size - at >= 8;) {
    const Klv klv = ReadKlv(payload, at, size, fileOffset);
    at = klv.next;
    if (klv.key == FourCc("DEVC") && klv.type == kNestType) WalkDevice(payload, klv, fileOffset, visit);
  }
}

std::string FindText(const unsigned char *payload, std::size_t size, std::uint32_t key) {
  return Find(payload, 0, size, key, 0);
}

}  // namespace gpmf
