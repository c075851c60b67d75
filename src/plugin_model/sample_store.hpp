// The sample store of a dynamic node: sample records in memory up to a fixed bound, the
// earlier ones spilled to a temporary file, read back in the order of adding through a
// mapping of that file. However many samples a node gets, the store holds at most
// kSampleBufferBound bytes of them in memory.
//
// Every failure leaves as a plug-in exception (plugin_status.hpp): a library error with
// code c as c + 1000, lack of memory as 1034, anything else as 1023. A failed spill leaves
// the store as it was before the sample that caused it, so later samples and the read-back
// stay consistent; only when even that cannot be restored does the store drop its samples
// and refuse every further use with SampleSetUnreadable (2014) until it is cleared.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "file_access/file_mapper.hpp"
#include "plugin_model/sample_record.hpp"
#include "plugin_model/sample_sink.hpp"

namespace PX_PLUGIN {

// Sample text a store keeps in memory at most; a record that would take the buffer past
// it sends the buffer to the spill file first.
inline constexpr std::size_t kSampleBufferBound = 0x100000;

class SampleStore final : public ISampleSink {
 public:
  // Spill files go into spillDirectory, or into the system's temporary folder when it is
  // empty.
  explicit SampleStore(std::string spillDirectory = {});
  ~SampleStore() override;
  SampleStore(const SampleStore &) = delete;
  SampleStore &operator=(const SampleStore &) = delete;

  // Appends a record. Refused: a time text of another length than the first sample's
  // (SampleTimeMismatch, 2030); a text that a record cannot hold (InvalidObjectModelArgument,
  // 2029); any sample once reading has begun (ObjectModelWrongState, 2031).
  void Add(std::string_view time, std::string_view value) override;
  // The spilled records first, then those in memory. A spill file that cannot be mapped
  // raises the converted error of the mapping; one that does not hold what was written to
  // it raises SampleSetUnreadable (2014).
  bool Next(std::string_view &time, std::string_view &value) override;
  // Frees the buffer, unmaps and deletes the spill file; the store is then empty and
  // usable again.
  void Clear() noexcept override;

  std::uint64_t Count() const noexcept { return count_; }
  // Bytes of every record added so far (in memory and spilled).
  std::uint64_t ByteSize() const noexcept { return spilledBytes_ + bufferSize_; }
  // Bytes in memory now, and the memory reserved for them.
  std::size_t BufferedBytes() const noexcept { return bufferSize_; }
  std::size_t BufferCapacity() const noexcept { return bufferCapacity_; }
  // The spill file's path; empty while everything is in memory.
  const std::string &SpillPath() const noexcept { return spillPath_; }

 private:
  void CheckAcceptsSample(std::string_view time, std::string_view value) const;
  void AppendWithinBound(std::string_view time, std::string_view value);
  void MakeRoomFor(std::size_t recordSize);
  void Spill();
  void CreateSpillFile();
  void WithdrawFailedSpill() noexcept;
  void DropSpillFile() noexcept;
  void StartReading();
  void DropEverything() noexcept;

  std::string spillDirectory_;
  // Grown by hand (MakeRoomFor): a standard container's own growth could reserve up to
  // twice the bound, and its appends cost more than the copy itself for records this small.
  std::unique_ptr<char[]> buffer_;
  std::size_t bufferSize_ = 0;
  std::size_t bufferCapacity_ = 0;
  std::optional<std::size_t> timeLength_;  // fixed by the first sample
  std::uint64_t count_ = 0;
  std::string spillPath_;
  std::uint64_t spilledBytes_ = 0;
  std::optional<ns_sensor::FileMapper> mapping_;
  RecordReader spilledRecords_;
  RecordReader bufferedRecords_;
  bool reading_ = false;
  bool broken_ = false;
};

// A sample store as the dynamic nodes' sample sink.
std::unique_ptr<ISampleSink> MakeSampleStore(std::string spillDirectory = {});

}  // namespace PX_PLUGIN
