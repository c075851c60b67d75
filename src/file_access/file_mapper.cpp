#include "file_access/file_mapper.hpp"

#include "api/px_exception.hpp"
#include "localisation/utf.hpp"

namespace ns_sensor {
namespace native = palvex::platform;

namespace {

bool IsHighSurrogate(char16_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool IsLowSurrogate(char16_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

// Whether every surrogate has its partner, so the path has a UTF-8 form.
bool IsWellFormed(std::u16string_view text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (IsHighSurrogate(text[i])) {
      if (i + 1 == text.size() || !IsLowSurrogate(text[i + 1])) return false;
      ++i;
    } else if (IsLowSurrogate(text[i])) {
      return false;
    }
  }
  return true;
}

}  // namespace

FileMapper::FileMapper(std::string_view utf8Path) {
  if (utf8Path.empty() || !native::CheckPath(utf8Path).ok()) Raise(Msg::MapperFailureOpeningFile);
  Map(utf8Path, EmptyFile::Refuse);
}

FileMapper::FileMapper(std::u16string_view utf16Path) {
  // The backend takes UTF-8; a path without a UTF-8 form cannot name a file.
  if (!IsWellFormed(utf16Path)) Raise(Msg::MapperFailureOpeningFile);
  Map(Utf16ToUtf8(utf16Path), EmptyFile::TryToMap);
}

FileMapper::~FileMapper() { Release(); }

void FileMapper::Map(std::string_view path, EmptyFile empty) {
  const native::OpenRequest request{native::Access::Read, native::Share::ReadWrite,
                                    native::Disposition::OpenExisting, native::AccessHint::SequentialScan};
  const auto opened = native::OpenFile(path, request);
  if (opened.ok()) fileHandle_ = opened.value;
  // The last error is examined even when a handle came back.
  if (!opened.ok() || native::LastError() != native::ErrorKind::None) {
    CloseFileAndRaise(Msg::MapperFailureOpeningFile);
  }

  const auto size = native::FileSize(fileHandle_);
  if (!size.ok()) CloseFileAndRaise(Msg::MapperCorruptFile);
  size_ = size.value;
  if (size_ == 0 && empty == EmptyFile::Refuse) CloseFileAndRaise(Msg::MapperEmptyFile);

  const auto mapped = native::MapWholeFile(fileHandle_, size_);
  if (!mapped.ok()) CloseFileAndRaise(Msg::MapperFailureFileMapping);
  mappingHandle_ = mapped.value.mapping;
  data_ = mapped.value.data;
}

void FileMapper::CloseFileAndRaise(Msg failure) {
  Release();
  Raise(failure);
}

void FileMapper::Release() noexcept {
  if (data_ != nullptr) native::UnmapWholeFile(native::MappedView{data_, size_, mappingHandle_});
  if (fileHandle_ != native::kNoHandle) native::CloseFile(fileHandle_);
  fileHandle_ = native::kNoHandle;
  mappingHandle_ = native::kNoHandle;
  data_ = nullptr;
  size_ = 0;
}

bool FileMapper::FileExists(std::string_view utf8Path) {
  return !utf8Path.empty() && native::CheckPath(utf8Path).ok() && native::QueryPathKind(utf8Path).ok();
}

}  // namespace ns_sensor
