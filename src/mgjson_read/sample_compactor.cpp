#include "mgjson_read/sample_compactor.hpp"

#include <algorithm>
#include <cstring>
#include <memory>

namespace ns_sensor {
namespace {

// What the compactor must notice about a byte outside strings.
enum ByteClass : unsigned char { kOrdinary, kWhitespace, kQuote, kOpening, kClosing, kComma };

struct ByteClasses {
  unsigned char of[256] = {};
  constexpr ByteClasses() {
    of[static_cast<unsigned char>(' ')] = kWhitespace;
    of[static_cast<unsigned char>('\t')] = kWhitespace;
    of[static_cast<unsigned char>('\n')] = kWhitespace;
    of[static_cast<unsigned char>('\r')] = kWhitespace;
    of[static_cast<unsigned char>('"')] = kQuote;
    of[static_cast<unsigned char>('[')] = kOpening;
    of[static_cast<unsigned char>('{')] = kOpening;
    of[static_cast<unsigned char>(']')] = kClosing;
    of[static_cast<unsigned char>('}')] = kClosing;
    of[static_cast<unsigned char>(',')] = kComma;
  }
};
constexpr ByteClasses kClasses;

unsigned char ClassOf(char byte) { return kClasses.of[static_cast<unsigned char>(byte)]; }

// Collects compacted text and passes it on whenever a chunk is full.
class ChunkWriter {
 public:
  explicit ChunkWriter(const std::function<void(std::string_view)> &sink)
      : sink_(sink), chunk_(new char[kCompactionChunkBytes]) {}

  void Append(const char *bytes, std::size_t count) {
    while (count != 0) {
      const std::size_t piece = std::min(count, kCompactionChunkBytes - used_);
      std::memcpy(chunk_.get() + used_, bytes, piece);
      used_ += piece;
      bytes += piece;
      count -= piece;
      if (used_ == kCompactionChunkBytes) Flush();
    }
  }
  void Flush() {
    if (used_ == 0) return;
    sink_(std::string_view(chunk_.get(), used_));
    flushed_ += used_;
    used_ = 0;
  }
  std::uint64_t position() const { return flushed_ + used_; }

 private:
  const std::function<void(std::string_view)> &sink_;
  std::unique_ptr<char[]> chunk_;
  std::size_t used_ = 0;
  std::uint64_t flushed_ = 0;
};

// The end of the string body that starts at `at` (just after its opening quote): the
// position of the closing quote, or `end`.
const char *EndOfString(const char *at, const char *end) {
  for (; at != end; ++at) {
    if (*at == '"') return at;
    if (*at == '\\' && ++at == end) return end;  // the escaped byte is passed over
  }
  return end;
}

}  // namespace

CompactedArray CompactJsonArray(std::string_view array, std::uint64_t fileOffset,
                                const std::function<void(std::string_view)> &sink) {
  CompactedArray result;
  ChunkWriter out(sink);
  const char *const begin = array.data();
  const char *const end = begin + array.size();
  std::uint64_t depth = 0;
  bool itemMayStart = false;  // after the array's "[" or a "," between its items
  const char *at = begin;
  while (at != end) {
    // Everything up to the next white space outside a string is copied as one run.
    const char *const run = at;
    while (at != end) {
      const unsigned char byteClass = ClassOf(*at);
      if (byteClass == kWhitespace) break;
      if (itemMayStart && *at != ']') {
        result.items.push_back({out.position() + static_cast<std::uint64_t>(at - run),
                                fileOffset + static_cast<std::uint64_t>(at - begin)});
      }
      itemMayStart = false;
      switch (byteClass) {
        case kQuote: {
          const char *closing = EndOfString(at + 1, end);
          at = closing == end ? end : closing + 1;
          continue;
        }
        case kOpening:
          itemMayStart = ++depth == 1;
          break;
        case kClosing:
          if (depth != 0) --depth;
          break;
        case kComma:
          itemMayStart = depth == 1;
          break;
        default:
          break;
      }
      ++at;
    }
    out.Append(run, static_cast<std::size_t>(at - run));
    while (at != end && ClassOf(*at) == kWhitespace) ++at;
  }
  out.Flush();
  result.size = out.position();
  return result;
}

}  // namespace ns_sensor
