#include "api/palvex_impl.hpp"

#include <cstring>
#include <mutex>

#include "api/converted_file_handler.hpp"
#include "api/guard.hpp"
#include "api/input_resolution.hpp"
#include "api/manager_lifetime.hpp"
#include "api/output_placement.hpp"
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
  const std::string outputDirectory = outputLocation != nullptr ? outputLocation : "";
  if (!outputDirectory.empty()) RequireOutputDirectory(outputDirectory);
  *handler = openFiles_.Open(
      inputPath, [&] { return OpenNewHandler(inputPath, outputDirectory); },
      [&](const SensorFileHandlerImpl &open) {
        if (!outputDirectory.empty()) CopyFileContents(open.MgjsonPath(), PlacementTarget(outputDirectory, inputPath));
      });
}

std::unique_ptr<SensorFileHandlerImpl> PalvexImpl::OpenNewHandler(const std::string &inputPath,
                                                                  const std::string &outputDirectory) {
  ResolvedInput resolved = ResolveInput(inputPath, outputDirectory);
  if (resolved.kind != InputKind::Converted) {
    auto handler = std::make_unique<SensorFileHandlerImpl>(inputPath, resolved.mgjsonPath, resolved.kind);
    if (!outputDirectory.empty()) CopyFileContents(resolved.mgjsonPath, PlacementTarget(outputDirectory, inputPath));
    return handler;
  }
  if (outputDirectory.empty()) return std::make_unique<ConvertedFileHandler>(inputPath, std::move(resolved.convertedFile));
  // The converted file was written in the output directory: it is moved into its place
  // first and opened there, so the handler names the file the host keeps. A handler that
  // cannot be made undoes the placement.
  const std::string target = PlacementTarget(outputDirectory, inputPath);
  PlacedFile placed(std::move(resolved.convertedFile), target);
  auto handler = std::make_unique<SensorFileHandlerImpl>(inputPath, target, InputKind::Converted);
  placed.Keep();
  return handler;
}

void PalvexImpl::CloseFile(ISensorFileHandler **handler) {
  if (handler == nullptr || *handler == nullptr) {
    Raise(Msg::InvalidPointer, Quoted("ISensorFileHandler"));
  }
  openFiles_.Close(handler);
}

void PalvexImpl::CreateMgjsonStream(IMgjsonStream **stream, const char *path, bool validate) {
  // The named type is the manager's, although the pointer is the stream's (deliberate).
  if (stream == nullptr) Raise(Msg::InvalidPointer, Quoted("IPalvex"));
  *stream = nullptr;
  const std::string inputPath = path != nullptr ? path : "";
  if (!FileMapper::FileExists(inputPath)) Raise(Msg::FileNotExist, inputPath);
  // Conversions and the stream set are not made for two threads at once.
  const std::lock_guard lock(GlobalMutex());
  ResolvedInput resolved = ResolveInput(inputPath, {});
  if (validate) SensorFileHandlerImpl(inputPath, resolved.mgjsonPath, resolved.kind);
  *stream = streams_.Add(resolved.mgjsonPath, std::move(resolved.convertedFile));
}

void PalvexImpl::ReleaseMgjsonStream(IMgjsonStream **stream) {
  if (stream == nullptr || *stream == nullptr) Raise(Msg::InvalidPointer, Quoted("IMgjsonStream"));
  const std::lock_guard lock(GlobalMutex());
  streams_.Release(stream);
}

}  // namespace ns_sensor
