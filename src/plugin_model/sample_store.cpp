#include "plugin_model/sample_store.hpp"

#include <algorithm>
#include <cstring>
#include <new>

#include "platform/file_io.hpp"
#include "plugin_model/plugin_status.hpp"
#include "plugin_model/scoped_file.hpp"

namespace PX_PLUGIN {

using ns_sensor::Msg;
namespace File_IO = ns_sensor::File_IO;

namespace {

// A record keeps its value length in 16 bits; the store keeps the time length so too.
constexpr std::size_t kLargestRecordText = kLargestSampleValueText;

// The first memory a buffer takes: room for a few hundred samples, yet little for the
// many nodes that have only a few.
constexpr std::size_t kFirstBufferCapacity = 0x1000;

}  // namespace

SampleStore::SampleStore(std::string spillDirectory) : spillDirectory_(std::move(spillDirectory)) {}

SampleStore::~SampleStore() { Clear(); }

// ---- Adding ------------------------------------------------------------------------------------

void SampleStore::Add(std::string_view time, std::string_view value) {
  CheckAcceptsSample(time, value);
  try {
    AppendWithinBound(time, value);
  } catch (...) {
    RethrowAsPluginException();
  }
  timeLength_ = time.size();
  ++count_;
}

void SampleStore::CheckAcceptsSample(std::string_view time, std::string_view value) const {
  if (broken_) RaisePluginError(Msg::SampleSetUnreadable);
  if (reading_) RaisePluginError(Msg::ObjectModelWrongState);
  if (time.size() > kLargestRecordText || value.size() > kLargestRecordText) {
    RaisePluginError(Msg::InvalidObjectModelArgument);
  }
  if (timeLength_ && *timeLength_ != time.size()) RaisePluginError(Msg::SampleTimeMismatch);
}

void SampleStore::AppendWithinBound(std::string_view time, std::string_view value) {
  const std::size_t recordSize = RecordSize(time, value);
  bool mayRetry = true;
  if (bufferSize_ + recordSize > kSampleBufferBound) {
    Spill();
    mayRetry = false;
  }
  try {
    MakeRoomFor(recordSize);
  } catch (const std::bad_alloc &) {
    if (!mayRetry) throw;
    // Memory is short: the buffered records go to the file and their space is reused.
    Spill();
    MakeRoomFor(recordSize);
  }
  bufferSize_ = static_cast<std::size_t>(WriteRecord(buffer_.get() + bufferSize_, time, value) - buffer_.get());
}

void SampleStore::MakeRoomFor(std::size_t recordSize) {
  const std::size_t needed = bufferSize_ + recordSize;
  if (needed <= bufferCapacity_) return;
  const std::size_t grown = std::min(std::max({needed, 2 * bufferCapacity_, kFirstBufferCapacity}), kSampleBufferBound);
  std::unique_ptr<char[]> larger(new char[grown]);
  if (bufferSize_ != 0) std::memcpy(larger.get(), buffer_.get(), bufferSize_);
  buffer_ = std::move(larger);
  bufferCapacity_ = grown;
}

// ---- Spilling ----------------------------------------------------------------------------------

// The file is open only while a spill runs, so a document with many spilled nodes holds
// no handles between samples.
void SampleStore::Spill() {
  if (bufferSize_ == 0) return;
  try {
    if (spillPath_.empty()) CreateSpillFile();
    ScopedFile file(File_IO::Open(spillPath_, false, true));
    File_IO::Write(file.get(), buffer_.get(), bufferSize_);
    file.Close();
  } catch (...) {
    WithdrawFailedSpill();
    throw;
  }
  spilledBytes_ += bufferSize_;
  bufferSize_ = 0;  // the memory stays for the records to come
}

void SampleStore::CreateSpillFile() {
  std::string path;
  File_IO::GetTempFile(spillDirectory_, path);
  spillPath_ = std::move(path);
  // The file layer has made the file already; creating it once more without replacing
  // keeps a file that is there and makes one that has gone.
  File_IO::Create(spillPath_, false, false);
}

// Puts the spill file back to what it held before the failed spill, or lets it go when it
// held nothing yet.
void SampleStore::WithdrawFailedSpill() noexcept {
  if (spilledBytes_ == 0) {
    DropSpillFile();
    return;
  }
  try {
    // A write that failed midway may have left part of the buffer at the end.
    ScopedFile file(File_IO::Open(spillPath_, false, false));
    File_IO::SetEOF(file.get(), spilledBytes_);
    file.Close();
  } catch (...) {
    // The file no longer tells where its records end: nothing in it can be trusted.
    DropEverything();
    broken_ = true;
  }
}

void SampleStore::DropSpillFile() noexcept {
  if (spillPath_.empty()) return;
  try {
    File_IO::Delete(spillPath_);
  } catch (...) {
    // A temporary file that cannot be deleted now is the system's to clear.
  }
  spillPath_.clear();
  spilledBytes_ = 0;
}

// ---- Reading back ------------------------------------------------------------------------------

bool SampleStore::Next(std::string_view &time, std::string_view &value) {
  if (broken_) RaisePluginError(Msg::SampleSetUnreadable);
  try {
    if (!reading_) StartReading();
    if (spilledRecords_.Next(time, value) || bufferedRecords_.Next(time, value)) return true;
  } catch (...) {
    RethrowAsPluginException();
  }
  time = {};
  value = {};
  return false;
}

void SampleStore::StartReading() {
  const std::size_t timeLength = timeLength_.value_or(0);
  if (spilledBytes_ != 0) {
    mapping_.emplace(spillPath_);
    if (mapping_->size() != spilledBytes_) {
      mapping_.reset();
      RaisePluginError(Msg::SampleSetUnreadable);
    }
    spilledRecords_ = RecordReader(mapping_->view(), timeLength);
  }
  bufferedRecords_ = RecordReader(std::string_view(buffer_.get(), bufferSize_), timeLength);
  reading_ = true;
}

// ---- Cleaning up -------------------------------------------------------------------------------

void SampleStore::Clear() noexcept {
  DropEverything();
  broken_ = false;
}

void SampleStore::DropEverything() noexcept {
  spilledRecords_ = {};
  bufferedRecords_ = {};
  mapping_.reset();
  DropSpillFile();
  buffer_.reset();
  bufferSize_ = 0;
  bufferCapacity_ = 0;
  timeLength_.reset();
  count_ = 0;
  reading_ = false;
}

std::unique_ptr<ISampleSink> MakeSampleStore(std::string spillDirectory) {
  return std::make_unique<SampleStore>(std::move(spillDirectory));
}

}  // namespace PX_PLUGIN
