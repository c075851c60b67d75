// The manager: IPalvex_I implements the client forms around the raising forms that
// PalvexImpl implements.
#pragma once

#include "api/open_file_table.hpp"
#include "api/stream_set.hpp"
#include "converters/format_registry.hpp"
#include "palvex/interfaces.hpp"

namespace ns_sensor {

class IPalvex_I : public virtual IPalvex {
 public:
  using IPalvex::CloseFile;
  using IPalvex::CreateMgjsonStream;
  using IPalvex::OpenFile;
  using IPalvex::ReleaseMgjsonStream;

  void OpenFile(ISensorFileHandler **handler, const char *path, const char *outputLocation,
                PX_ErrorContext errorContext) override;
  void CloseFile(ISensorFileHandler **handler, PX_ErrorContext errorContext) override;
  void CreateMgjsonStream(IMgjsonStream **stream, const char *path, uint32_t validate,
                          PX_ErrorContext errorContext) override;
  void ReleaseMgjsonStream(IMgjsonStream **stream, PX_ErrorContext errorContext) override;
};

class PalvexImpl : public virtual IPalvex_I {
 public:
  explicit PalvexImpl(ConverterSettings settings);
  ~PalvexImpl() override;

  using IPalvex_I::CloseFile;
  using IPalvex_I::CreateMgjsonStream;
  using IPalvex_I::OpenFile;
  using IPalvex_I::ReleaseMgjsonStream;

  void OpenFile(ISensorFileHandler **handler, const char *path, const char *outputLocation) override;
  void CloseFile(ISensorFileHandler **handler) override;
  void CreateMgjsonStream(IMgjsonStream **stream, const char *path, bool validate) override;
  void ReleaseMgjsonStream(IMgjsonStream **stream) override;

  const ConverterSettings &converterSettings() const { return settings_; }
  const OpenFileTable &openFiles() const { return openFiles_; }
  std::size_t streamCount() const { return streams_.size(); }

 private:
  // A new handler for inputPath, its MGJSON file placed in outputDirectory when given.
  static std::unique_ptr<SensorFileHandlerImpl> OpenNewHandler(const std::string &inputPath,
                                                               const std::string &outputDirectory);

  ConverterSettings settings_;
  OpenFileTable openFiles_;
  StreamSet streams_;
};

}  // namespace ns_sensor
