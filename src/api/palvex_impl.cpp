#include "api/palvex_impl.hpp"

#include <cstring>

#include "api/guard.hpp"
#include "api/input_resolution.hpp"
#include "api/px_exception.hpp"
#include "file_access/file_mapper.hpp"

namespace ns_sensor {
namespace {

// Output locations of this many bytes or more are refused (the input path is not measured).
constexpr std::size_t kOutputLocationLimit = 65535;

}  // namespace

void IPalvex_I::OpenFile(ISensorFileHandler **handler, const char *path,
                         const char *outputLocation, PX_ErrorContext errorContext) {
  RunGuarded(errorContext, [&] { OpenFile(handler, path, outputLocation); });
}

void IPalvex_I::CloseFile(ISensorFileHandler **handler, PX_ErrorContext errorContext) {
  RunGuarded(errorContext, [&] { CloseFile(handler); });
}

void IPalvex_I::CreateMgjsonStream(IMgjsonStream **stream, const char *path, uint32_t validate,
                                   PX_ErrorContext errorContext) {
  RunGuarded(errorContext, [&] { CreateMgjsonStream(stream, path, validate != 0); });
}

void IPalvex_I::ReleaseMgjsonStream(IMgjsonStream **stream, PX_ErrorContext errorContext) {
  RunGuarded(errorContext, [&] { ReleaseMgjsonStream(stream); });
}

PalvexImpl::PalvexImpl(ConverterSettings settings) : settings_(std::move(settings)) {}

PalvexImpl::~PalvexImpl() = default;

void PalvexImpl::OpenFile(ISensorFileHandler **handler, const char *path, const char *outputLocation) {
  if (handler == nullptr) Raise(Msg::InvalidPointer, Quoted("ISensorFileHandler"));
  *handler = nullptr;
  const std::string inputPath = path != nullptr ? path : "";
  if (!FileMapper::FileExists(inputPath)) Raise(Msg::FileNotExist, inputPath);
  // A bounded count: the location is refused from 65535 bytes on without reading further.
  if (outputLocation != nullptr && outputLocation[0] != '\0' &&
      ::strnlen(outputLocation, kOutputLocationLimit) >= kOutputLocationLimit) {
    Raise(Msg::FilePathTooLarge);
  }
  *handler = openFiles_.Open(inputPath, [&inputPath] {
    const InputKind kind = ResolveMgjsonInput(inputPath);
    return std::make_unique<SensorFileHandlerImpl>(inputPath, inputPath, kind);
  });
}

void PalvexImpl::CloseFile(ISensorFileHandler **handler) {
  if (handler == nullptr || *handler == nullptr) {
    Raise(Msg::InvalidPointer, Quoted("ISensorFileHandler"));
  }
  openFiles_.Close(handler);
}

void PalvexImpl::CreateMgjsonStream(IMgjsonStream **stream, const char *, bool) {
  // The named type is the manager's, although the pointer is the stream's (deliberate).
  if (stream == nullptr) Raise(Msg::InvalidPointer, Quoted("IPalvex"));
  *stream = nullptr;
  Raise(Msg::FileFormatNotSupported);
}

void PalvexImpl::ReleaseMgjsonStream(IMgjsonStream **stream) {
  if (stream == nullptr || *stream == nullptr) Raise(Msg::InvalidPointer, Quoted("IMgjsonStream"));
  Raise(Msg::NoStreamCreated);
}

}  // namespace ns_sensor
