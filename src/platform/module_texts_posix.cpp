// Module texts on ELF systems: sections of the shared object, found in a read-only
// mapping of the file, so that nothing of the module is loaded or run.
#include <string>

#include "platform/elf_sections.hpp"
#include "platform/module_texts.hpp"
#include "platform/native_file.hpp"

namespace palvex::platform {
namespace {

constexpr std::string_view kManifestSection = "PXPLUGINUIDS";
constexpr std::string_view kIdentifierSection = "MODULE_IDENTIFIER";

// A text kept in a section is often written as a C string; its terminator, and any
// padding after it, is no part of the text.
std::optional<std::string> SectionText(std::span<const std::byte> image, std::string_view name) {
  const auto bytes = FindElfSection(image, name);
  if (!bytes) return std::nullopt;
  std::size_t length = bytes->size();
  while (length > 0 && (*bytes)[length - 1] == std::byte{0}) --length;
  return std::string(reinterpret_cast<const char *>(bytes->data()), length);
}

// A mapping of the whole file, released with the object.
class MappedFile {
 public:
  explicit MappedFile(std::string_view path) {
    const OpenRequest request{Access::Read, Share::ReadWrite, Disposition::OpenExisting, AccessHint::RandomAccess};
    const auto opened = OpenFile(path, request);
    if (!opened.ok()) return;
    file_ = opened.value;
    const auto size = FileSize(file_);
    if (!size.ok() || size.value == 0) return;  // nothing to map; not a module either
    const auto mapped = MapWholeFile(file_, size.value);
    if (mapped.ok()) view_ = mapped.value;
  }
  ~MappedFile() {
    if (view_.data != nullptr) UnmapWholeFile(view_);
    if (file_ != kNoHandle) CloseFile(file_);
  }
  MappedFile(const MappedFile &) = delete;
  MappedFile &operator=(const MappedFile &) = delete;

  std::span<const std::byte> bytes() const {
    if (view_.data == nullptr) return {};
    return {view_.data, static_cast<std::size_t>(view_.size)};
  }

 private:
  NativeHandle file_ = kNoHandle;
  MappedView view_;
};

}  // namespace

ModuleTexts ReadModuleTexts(std::string_view path) {
  const MappedFile module(path);
  const auto image = module.bytes();
  if (image.empty()) return {};
  return ModuleTexts{SectionText(image, kManifestSection), SectionText(image, kIdentifierSection)};
}

}  // namespace palvex::platform
