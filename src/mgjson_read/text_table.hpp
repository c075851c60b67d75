// A set of texts held elsewhere, numbered in the order they were added, for outlines of a
// hundred thousand nodes: the texts in one array and their numbers in one flat table
// probed linearly, without an allocation per text, so that filling the set and looking
// texts up touch little memory. The texts must outlive the set.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace ns_sensor {

class TextTable {
 public:
  // Room for `expected` texts before the table grows.
  void Reserve(std::size_t expected);
  void Clear() noexcept;

  // Adds text as number size(); false, and nothing changed, when it is there already.
  bool Insert(std::string_view text);
  // The number of text, if it was added.
  std::optional<std::uint32_t> Find(std::string_view text) const;

  std::size_t size() const { return texts_.size(); }

 private:
  // A bucket holds the upper half of its text's hash and the text's number + 1; 0 is free.
  using Bucket = std::uint64_t;
  static Bucket MakeBucket(std::size_t hash, std::size_t number);
  // The bucket that holds text, or the free one where it would go.
  std::size_t Probe(std::string_view text, std::size_t hash) const;
  void Rehash(std::size_t bucketCount);

  std::vector<std::string_view> texts_;  // by number
  std::vector<std::size_t> hashes_;      // by number: growing never reads a text again
  std::vector<Bucket> buckets_;          // a power of two in size, at most half used
};

}  // namespace ns_sensor
