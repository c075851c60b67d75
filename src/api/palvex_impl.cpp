#include "api/palvex_impl.hpp"

#include "api/guard.hpp"
#include "api/px_exception.hpp"

namespace ns_sensor {

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

// Opening, converting and streaming arrive with the reading and conversion layers; until
// then every request is answered with the error a host would see for an unreadable format.
void PalvexImpl::OpenFile(ISensorFileHandler **handler, const char *, const char *) {
  if (handler == nullptr) Raise(Msg::InvalidPointer, Quoted("ISensorFileHandler"));
  *handler = nullptr;
  Raise(Msg::FileFormatNotSupported);
}

void PalvexImpl::CloseFile(ISensorFileHandler **handler) {
  if (handler == nullptr || *handler == nullptr) {
    Raise(Msg::InvalidPointer, Quoted("ISensorFileHandler"));
  }
  Raise(Msg::NoFileOpened);
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
