#include "mgjson_read/text_table.hpp"

#include <functional>

namespace ns_sensor {
namespace {

constexpr std::size_t kFewestBuckets = 16;
constexpr unsigned kNumberBits = 32;
constexpr std::uint64_t kNumberMask = (std::uint64_t{1} << kNumberBits) - 1;

// The smallest power of two that keeps `texts` at most half of the buckets.
std::size_t BucketsFor(std::size_t texts) {
  std::size_t buckets = kFewestBuckets;
  while (buckets / 2 < texts) buckets *= 2;
  return buckets;
}

std::size_t HashOf(std::string_view text) { return std::hash<std::string_view>{}(text); }

std::uint64_t HashBits(std::size_t hash) { return static_cast<std::uint64_t>(hash) >> kNumberBits; }

}  // namespace

TextTable::Bucket TextTable::MakeBucket(std::size_t hash, std::size_t number) {
  return HashBits(hash) << kNumberBits | (static_cast<std::uint64_t>(number) + 1);
}

void TextTable::Reserve(std::size_t expected) {
  texts_.reserve(expected);
  hashes_.reserve(expected);
  const std::size_t buckets = BucketsFor(expected);
  if (buckets > buckets_.size()) Rehash(buckets);
}

void TextTable::Clear() noexcept {
  texts_.clear();
  hashes_.clear();
  buckets_.clear();
}

std::size_t TextTable::Probe(std::string_view text, std::size_t hash) const {
  const std::size_t mask = buckets_.size() - 1;
  // Only a bucket whose hash bits agree is compared by text.
  for (std::size_t at = hash & mask;; at = (at + 1) & mask) {
    const Bucket bucket = buckets_[at];
    if (bucket == 0) return at;
    if ((bucket >> kNumberBits) == HashBits(hash) && texts_[(bucket & kNumberMask) - 1] == text) return at;
  }
}

bool TextTable::Insert(std::string_view text) {
  if (texts_.size() >= kNumberMask) return false;  // numbers are 32-bit
  if (BucketsFor(texts_.size() + 1) > buckets_.size()) Rehash(BucketsFor(texts_.size() + 1));
  const std::size_t hash = HashOf(text);
  Bucket &bucket = buckets_[Probe(text, hash)];
  if (bucket != 0) return false;
  bucket = MakeBucket(hash, texts_.size());
  texts_.push_back(text);
  hashes_.push_back(hash);
  return true;
}

std::optional<std::uint32_t> TextTable::Find(std::string_view text) const {
  if (buckets_.empty()) return std::nullopt;
  const Bucket bucket = buckets_[Probe(text, HashOf(text))];
  if (bucket == 0) return std::nullopt;
  return static_cast<std::uint32_t>((bucket & kNumberMask) - 1);
}

void TextTable::Rehash(std::size_t bucketCount) {
  buckets_.assign(bucketCount, 0);
  const std::size_t mask = bucketCount - 1;
  for (std::size_t number = 0; number < texts_.size(); ++number) {
    // The texts differ, so the first free bucket is the place.
    std::size_t at = hashes_[number] & mask;
    while (buckets_[at] != 0) at = (at + 1) & mask;
    buckets_[at] = MakeBucket(hashes_[number], number);
  }
}

}  // namespace ns_sensor
