// A produced MGJSON file as the host receives it: IMgjsonStream_I implements the client
// forms around the raising forms that MgjsonStreamImpl implements over an open handle on
// the file.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "palvex/interfaces.hpp"
#include "plugin_model/scoped_file.hpp"

namespace ns_sensor {

class IMgjsonStream_I : public virtual IMgjsonStream {
 public:
  using IMgjsonStream::GetPath;
  using IMgjsonStream::Read;
  using IMgjsonStream::Rewind;
  using IMgjsonStream::SaveCopy;

  uint32_t Read(uint8_t *buffer, uint32_t *size, PX_ErrorContext errorContext) override;
  void SaveCopy(const char *path, PX_ErrorContext errorContext) override;
  void GetPath(PX_HostString *path, PX_ErrorContext errorContext) override;
  int64_t Rewind(PX_ErrorContext errorContext) override;

 protected:
  ~IMgjsonStream_I() override = default;
};

class MgjsonStreamImpl : public virtual IMgjsonStream_I {
 public:
  // Opens the produced file at path for reading; its size now is the total size (sizes
  // beyond 32 bits count as 0xFFFFFFFF). Raises the file layer's errors.
  explicit MgjsonStreamImpl(std::string path);
  // Closes the handle. Public for the manager, which owns its streams.
  ~MgjsonStreamImpl() override;
  MgjsonStreamImpl(const MgjsonStreamImpl &) = delete;
  MgjsonStreamImpl &operator=(const MgjsonStreamImpl &) = delete;

  using IMgjsonStream_I::GetPath;
  using IMgjsonStream_I::Read;
  using IMgjsonStream_I::Rewind;
  using IMgjsonStream_I::SaveCopy;

  uint32_t Read(uint8_t *buffer, uint32_t *size) override;
  void SaveCopy(const char *path) override;
  void GetPath(PX_Text *path) override;
  uint32_t GetTotalSize() override { return totalSize_; }
  uint32_t GetRemainingSize() override { return remaining_; }
  int64_t Rewind() override;

 private:
  void CopyTo(std::string_view destination) const;

  std::string path_;
  PX_PLUGIN::ScopedFile file_;
  uint32_t totalSize_ = 0;
  uint32_t remaining_ = 0;
};

}  // namespace ns_sensor
