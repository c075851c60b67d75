// A whole input file as one read-only block of memory, so the MGJSON scanner and
// parsers work on the file's bytes in place, never on a copy.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "api/messages.hpp"
#include "platform/native_file.hpp"

namespace ns_sensor {

class FileMapper {
 public:
  // Maps the file at a UTF-8 path. Raises FailureOpeningFile (6) when the path cannot be
  // used or the file cannot be opened (a folder included), CorruptFile (5) when its size
  // cannot be read, EmptyFile (54) for an empty file, FailureFileMapping (21) when it
  // cannot be mapped.
  explicit FileMapper(std::string_view utf8Path);

  // The same for a UTF-16 path, without the empty-file check: an empty file fails to map
  // and raises FailureFileMapping (21).
  explicit FileMapper(std::u16string_view utf16Path);

  ~FileMapper();
  FileMapper(const FileMapper &) = delete;
  FileMapper &operator=(const FileMapper &) = delete;

  // Unmaps the view and closes the mapping and the file; data() is null and size() 0
  // afterwards. Further calls do nothing.
  void Release() noexcept;

  // Start of the mapped bytes; null after Release.
  const char *data() const noexcept { return reinterpret_cast<const char *>(data_); }
  std::uint64_t size() const noexcept { return size_; }
  std::string_view view() const noexcept { return {data(), static_cast<std::size_t>(size_)}; }

  // True when something (file or folder) exists at the UTF-8 path.
  static bool FileExists(std::string_view utf8Path);

 private:
  enum class EmptyFile { Refuse, TryToMap };
  void Map(std::string_view path, EmptyFile empty);
  void CloseFileAndRaise(Msg failure);

  palvex::platform::NativeHandle fileHandle_ = palvex::platform::kNoHandle;
  palvex::platform::NativeHandle mappingHandle_ = palvex::platform::kNoHandle;
  const std::byte *data_ = nullptr;
  std::uint64_t size_ = 0;
};

}  // namespace ns_sensor
