#include "fit_byte_source.hpp"

#include <algorithm>
#include <cstring>

namespace palvex_fit {
namespace {

constexpr std::size_t kBlockSize = 64 * 1024;

}  // namespace

ByteSource::ByteSource(std::istream &in) : in_(in), block_(kBlockSize) {
  const std::istream::pos_type start = in_.tellg();
  if (start < 0 || !in_.seekg(0, std::ios::end)) {
    in_.clear();
    return;
  }
  const std::istream::pos_type end = in_.tellg();
  in_.seekg(start);
  if (end >= start) size_ = static_cast<std::uint64_t>(end - start);
}

bool ByteSource::Refill() {
  if (!in_) return false;
  in_.read(reinterpret_cast<char *>(block_.data()), static_cast<std::streamsize>(block_.size()));
  next_ = 0;
  end_ = static_cast<std::size_t>(in_.gcount());
  fetched_ += end_;
  return end_ > 0;
}

std::size_t ByteSource::Read(std::uint8_t *out, std::size_t count) {
  std::size_t copied = 0;
  while (copied < count) {
    if (next_ == end_ && !Refill()) break;
    const std::size_t piece = std::min(count - copied, end_ - next_);
    std::memcpy(out + copied, block_.data() + next_, piece);
    next_ += piece;
    copied += piece;
  }
  consumed_ += copied;
  return copied;
}

}  // namespace palvex_fit
