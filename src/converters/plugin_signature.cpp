#include "converters/plugin_signature.hpp"

#include <algorithm>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "api/px_exception.hpp"
#include "platform/file_io.hpp"

namespace ns_sensor {
namespace {

constexpr std::string_view kHexPrefix = "0x";
// The most read at once: a signature's length comes from a manifest and is not trusted.
constexpr std::uint64_t kChunkSize = 0x10000;

// The input, open for reading until the object goes.
class InputFile {
 public:
  // No handle when the file cannot be opened.
  explicit InputFile(std::string_view path) {
    try {
      handle_ = File_IO::Open(path, true, false);
    } catch (const PX_Exception &) {
      handle_ = File_IO::kNoHandle;
    }
  }
  ~InputFile() {
    try {
      File_IO::Close(handle_);
    } catch (const PX_Exception &) {
      // nothing was written; a refused close loses nothing
    }
  }
  InputFile(const InputFile &) = delete;
  InputFile &operator=(const InputFile &) = delete;

  bool open() const { return handle_ != File_IO::kNoHandle; }
  File_IO::Handle handle() const { return handle_; }

 private:
  File_IO::Handle handle_ = File_IO::kNoHandle;
};

std::optional<std::uint8_t> HexDigit(char c) {
  if (c >= '0' && c <= '9') return static_cast<std::uint8_t>(c - '0');
  if (c >= 'a' && c <= 'f') return static_cast<std::uint8_t>(c - 'a' + 10);
  if (c >= 'A' && c <= 'F') return static_cast<std::uint8_t>(c - 'A' + 10);
  return std::nullopt;
}

// "0x" and exactly two digits per byte of the length: hexadecimal byte pairs.
bool IsHexForm(const FormatSignature &signature) {
  const std::string_view text = signature.byteSeq;
  if (!text.starts_with(kHexPrefix)) return false;
  const std::uint64_t digits = text.size() - kHexPrefix.size();
  return digits % 2 == 0 && digits / 2 == signature.length;
}

// The bytes the signature expects, or none when no file can carry them: a text whose
// size is not the length (the bytes read are exactly length long), or a hexadecimal
// form with a character that is no hexadecimal digit.
std::optional<std::string> ExpectedBytes(const FormatSignature &signature) {
  if (!IsHexForm(signature)) {
    if (signature.byteSeq.size() != signature.length) return std::nullopt;
    return signature.byteSeq;
  }
  const std::string_view digits = std::string_view(signature.byteSeq).substr(kHexPrefix.size());
  std::string bytes;
  bytes.reserve(digits.size() / 2);
  for (std::size_t i = 0; i < digits.size(); i += 2) {
    const auto high = HexDigit(digits[i]);
    const auto low = HexDigit(digits[i + 1]);
    if (!high || !low) return std::nullopt;
    bytes.push_back(static_cast<char>((*high << 4) | *low));
  }
  return bytes;
}

bool Matches(const InputFile &input, std::uint64_t fileSize, const FormatSignature &signature) {
  const auto expected = ExpectedBytes(signature);
  if (!expected) return false;
  if (expected->empty()) return true;  // nothing to read, nothing to differ
  // Fewer bytes than the length at the offset: checked before seeking, so an offset far
  // beyond the end never reaches the system.
  if (signature.offset > fileSize || expected->size() > fileSize - signature.offset) return false;
  File_IO::Seek(input.handle(), static_cast<std::int64_t>(signature.offset), File_IO::kFromStart);
  std::vector<char> buffer(static_cast<std::size_t>(std::min<std::uint64_t>(expected->size(), kChunkSize)));
  for (std::size_t done = 0; done < expected->size();) {
    const std::size_t wanted = std::min(buffer.size(), expected->size() - done);
    const std::uint32_t got = File_IO::Read(input.handle(), buffer.data(), wanted);
    if (got == 0) return false;  // the file has shrunk since its size was taken
    if (!std::equal(buffer.begin(), buffer.begin() + got, expected->begin() + static_cast<std::ptrdiff_t>(done))) {
      return false;
    }
    done += got;
  }
  return true;
}

}  // namespace

bool MatchesSignatures(std::string_view inputPath, std::span<const FormatSignature> signatures) {
  const InputFile input(inputPath);
  if (!input.open()) return false;
  const std::uint64_t fileSize = File_IO::Length(input.handle());
  return std::all_of(signatures.begin(), signatures.end(),
                     [&](const FormatSignature &signature) { return Matches(input, fileSize, signature); });
}

}  // namespace ns_sensor
