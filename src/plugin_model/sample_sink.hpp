// Where a dynamic node keeps its samples until its sample set is written: each sample as
// its time text and value text, read back in the order of adding. The sample store
// (sample_store.hpp: bounded memory, spill to a temporary file) implements it.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>

namespace PX_PLUGIN {

// The longest value text a record can hold (its length is stored in 16 bits).
inline constexpr std::size_t kLargestSampleValueText = 0xFFFF;

class ISampleSink {
 public:
  virtual ~ISampleSink() = default;
  // Appends one sample. All time texts of one sink have the same length; the value text
  // is at most kLargestSampleValueText bytes.
  virtual void Add(std::string_view time, std::string_view value) = 0;
  // The next sample in the order of adding; false once all were read. The views stay
  // valid until the next call.
  virtual bool Next(std::string_view &time, std::string_view &value) = 0;
  // Drops every sample and every resource held for them. Never fails.
  virtual void Clear() noexcept = 0;
};

using SampleSinkMaker = std::function<std::unique_ptr<ISampleSink>()>;

}  // namespace PX_PLUGIN
