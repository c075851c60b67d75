#include "fit_builder.hpp"

#include <stdexcept>

namespace palvex_fit::testing {
namespace {

constexpr std::uint8_t kDefinitionHeader = 0x40;
constexpr std::uint8_t kDeveloperDataBit = 0x20;
constexpr std::uint8_t kCompressedHeader = 0x80;
constexpr std::uint16_t kProfileVersion = 2100;
constexpr std::uint8_t kProtocolVersion = 0x20;

std::string Ordered(std::uint64_t value, std::size_t size, bool bigEndian) {
  std::string bytes = LittleEndian(value, size);
  if (bigEndian) bytes.assign(bytes.rbegin(), bytes.rend());
  return bytes;
}

}  // namespace

std::string LittleEndian(std::uint64_t value, std::size_t size) {
  std::string bytes;
  for (std::size_t i = 0; i < size; ++i) bytes.push_back(static_cast<char>(i < 8 ? value >> (8 * i) : 0));
  return bytes;
}

std::uint16_t Crc(const std::string &bytes) {
  std::uint16_t crc = 0;
  for (const char c : bytes) {
    crc ^= static_cast<std::uint8_t>(c);
    for (int bit = 0; bit < 8; ++bit) crc = static_cast<std::uint16_t>((crc & 1) ? (crc >> 1) ^ 0xA001 : crc >> 1);
  }
  return crc;
}

std::string FromHex(const std::string &hex) {
  std::string bytes;
  for (std::size_t i = 0; i < hex.size();) {
    if (hex[i] == ' ' || hex[i] == '\n') {
      ++i;
      continue;
    }
    bytes.push_back(static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16)));
    i += 2;
  }
  return bytes;
}

FitBuilder &FitBuilder::Define(std::uint8_t local, std::uint16_t global, std::vector<FieldLayout> fields,
                               bool bigEndian, std::vector<DeveloperFieldLayout> developerFields) {
  const bool developer = !developerFields.empty();
  records_.push_back(static_cast<char>(kDefinitionHeader | (developer ? kDeveloperDataBit : 0) | local));
  records_.push_back('\0');
  records_.push_back(static_cast<char>(bigEndian ? 1 : 0));
  records_ += Ordered(global, 2, bigEndian);
  records_.push_back(static_cast<char>(fields.size()));
  Layout layout{bigEndian, {}};
  for (const FieldLayout &field : fields) {
    records_ += {static_cast<char>(field.number), static_cast<char>(field.size), static_cast<char>(field.baseType)};
    layout.sizes.push_back(field.size);
  }
  if (developer) {
    records_.push_back(static_cast<char>(developerFields.size()));
    for (const DeveloperFieldLayout &field : developerFields) {
      records_ += {static_cast<char>(field.number), static_cast<char>(field.size),
                   static_cast<char>(field.developerIndex)};
      layout.sizes.push_back(field.size);
    }
  }
  layouts_[local] = std::move(layout);
  return *this;
}

void FitBuilder::AppendValues(std::uint8_t local, const std::vector<Value> &values) {
  const Layout &layout = layouts_.at(local);
  if (values.size() != layout.sizes.size()) throw std::invalid_argument("one value per field");
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (values[i].isText) {
      std::string bytes = values[i].text.substr(0, layout.sizes[i]);
      bytes.resize(layout.sizes[i], '\0');
      records_ += bytes;
    } else {
      records_ += Ordered(values[i].raw, layout.sizes[i], layout.bigEndian);
    }
  }
}

FitBuilder &FitBuilder::Data(std::uint8_t local, const std::vector<Value> &values) {
  records_.push_back(static_cast<char>(local));
  AppendValues(local, values);
  return *this;
}

FitBuilder &FitBuilder::Compressed(std::uint8_t local, std::uint8_t timeOffset, const std::vector<Value> &values) {
  records_.push_back(static_cast<char>(kCompressedHeader | (local & 3) << 5 | (timeOffset & 0x1F)));
  AppendValues(local, values);
  return *this;
}

FitBuilder &FitBuilder::Raw(const std::string &bytes) {
  records_ += bytes;
  return *this;
}

std::string FitBuilder::Finish(std::uint8_t headerSize) const {
  std::string file;
  file.push_back(static_cast<char>(headerSize));
  file.push_back(static_cast<char>(kProtocolVersion));
  file += LittleEndian(kProfileVersion, 2);
  file += LittleEndian(records_.size(), 4);
  file += ".FIT";
  if (headerSize >= 14) file += LittleEndian(Crc(file), 2);
  file.resize(headerSize, '\0');
  file += records_;
  return file + LittleEndian(Crc(file), 2);
}

}  // namespace palvex_fit::testing
