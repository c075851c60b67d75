// The file handler: one opened MGJSON file that the host queries. ISensorFileHandler_I
// implements the client forms (guarded, delivering through the callback table) around the
// raising forms that SensorFileHandlerImpl implements on library records.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "file_access/handler_records.hpp"
#include "file_access/sample_records.hpp"
#include "mgjson_read/mgjson_parser.hpp"
#include "palvex/interfaces.hpp"

namespace ns_sensor {

// How the manager came by the MGJSON file it opened.
enum class InputKind : std::uint32_t {
  MgjsonByExtension = 0,  // the input was MGJSON by its ".mgjson" name
  MgjsonByContent = 1,    // the input was MGJSON by its schema version 2 start
  Converted = 2,          // the input was converted into the MGJSON file read
};

class ISensorFileHandler_I : public virtual ISensorFileHandler {
 public:
  using ISensorFileHandler::GetDynamicDataInfo;
  using ISensorFileHandler::GetDynamicSampleInfo;
  using ISensorFileHandler::GetFileInfo;
  using ISensorFileHandler::GetGroupChildInfo;
  using ISensorFileHandler::GetGroupChildren;
  using ISensorFileHandler::GetRootChildren;
  using ISensorFileHandler::GetSampleSet;
  using ISensorFileHandler::GetSampleSetWithNeighbours;
  using ISensorFileHandler::GetStaticDataInfo;
  using ISensorFileHandler::GetVideoSyncTimeList;

  // The two operations the implementation side adds: the path the manager opened the
  // handler with (its key in the open-file table), and the parser with all it read.
  virtual const std::string &InputPath() const = 0;
  virtual const PX_MgjsonParser &Parser() const = 0;

  // Client forms, slots 11 to 20.
  void GetRootChildren(::PX_GroupChildren *children, PX_ErrorContext errorContext) override;
  void GetGroupChildren(const char *dataPath, ::PX_GroupChildren *children,
                        PX_ErrorContext errorContext) override;
  void GetGroupChildInfo(const char *dataPath, ::PX_GroupChildInfo *info,
                         PX_ErrorContext errorContext) override;
  void GetStaticDataInfo(const char *dataPath, ::PX_StaticDataInfo *info,
                         PX_ErrorContext errorContext) override;
  void GetDynamicDataInfo(const char *dataPath, ::PX_DynamicDataInfo *info,
                          PX_ErrorContext errorContext) override;
  void GetSampleSet(const char *sampleSetId, std::uint32_t startValue, std::uint32_t startScale,
                    std::uint32_t endValue, std::uint32_t endScale, ::DynamicDataSampleSet *samples,
                    PX_ErrorContext errorContext) override;
  void GetSampleSetWithNeighbours(const char *sampleSetId, std::uint32_t startValue,
                                  std::uint32_t startScale, std::uint32_t endValue,
                                  std::uint32_t endScale, ::DynamicDataSampleSet *samples,
                                  PX_ErrorContext errorContext) override;
  void GetFileInfo(::PX_FileInfo *info, PX_ErrorContext errorContext) override;
  void GetVideoSyncTimeList(::PX_VideoSyncTimeList *list, PX_ErrorContext errorContext) override;
  void GetDynamicSampleInfo(const char *sampleSetId, std::uint32_t first, std::uint32_t second,
                            std::uint32_t byIndex, ::PX_DynamicSampleInfo *info,
                            PX_ErrorContext errorContext) override;

  ~ISensorFileHandler_I() override = default;
};

class SensorFileHandlerImpl : public virtual ISensorFileHandler_I {
 public:
  // Parses and validates the MGJSON file at mgjsonPath; raises on any fault, and then no
  // handler exists.
  SensorFileHandlerImpl(std::string inputPath, std::string mgjsonPath, InputKind kind);
  ~SensorFileHandlerImpl() override;

  using ISensorFileHandler_I::GetDynamicDataInfo;
  using ISensorFileHandler_I::GetDynamicSampleInfo;
  using ISensorFileHandler_I::GetFileInfo;
  using ISensorFileHandler_I::GetGroupChildInfo;
  using ISensorFileHandler_I::GetGroupChildren;
  using ISensorFileHandler_I::GetRootChildren;
  using ISensorFileHandler_I::GetSampleSet;
  using ISensorFileHandler_I::GetSampleSetWithNeighbours;
  using ISensorFileHandler_I::GetStaticDataInfo;
  using ISensorFileHandler_I::GetVideoSyncTimeList;

  const std::string &InputPath() const override { return inputPath_; }
  const PX_MgjsonParser &Parser() const override { return *parser_; }
  const std::string &MgjsonPath() const { return mgjsonPath_; }
  // The axis that turns the file's time texts into seconds and back.
  const TimeAxis &Axis() const { return parser_->samples().timeAxis(); }

  // Raising forms, slots 0 to 9 (outline_queries.cpp, sample_queries.cpp, this file).
  void GetRootChildren(PX_GroupChildren *children) override;
  void GetGroupChildren(const char *dataPath, PX_GroupChildren *children) override;
  void GetGroupChildInfo(const char *dataPath, PX_GroupChildInfo *info) override;
  void GetStaticDataInfo(const char *dataPath, PX_StaticDataInfo *info) override;
  void GetDynamicDataInfo(const char *dataPath, PX_DynamicDataInfo *info) override;
  void GetSampleSet(const char *sampleSetId, std::uint32_t startValue, std::uint32_t startScale,
                    std::uint32_t endValue, std::uint32_t endScale,
                    DynamicDataSampleSet *samples) override;
  void GetSampleSetWithNeighbours(const char *sampleSetId, std::uint32_t startValue,
                                  std::uint32_t startScale, std::uint32_t endValue,
                                  std::uint32_t endScale, DynamicDataSampleSet *samples) override;
  void GetFileInfo(PX_FileInfo *info) override;
  void GetVideoSyncTimeList(PX_VideoSyncTimeList *list) override;
  void GetDynamicSampleInfo(const char *sampleSetId, std::uint32_t first, std::uint32_t second,
                            std::uint32_t byIndex, PX_DynamicSampleInfo *info) override;

 private:
  const JsonValue &Outline() const { return parser_->dataOutline(); }
  // The first and last sample time of a sample set; without seconds when it has none.
  void SampleSetTimes(std::string_view sampleSetId, PX_TimeValue &first, PX_TimeValue &last) const;
  // The selection of slots 5 and 6.
  void SelectBetween(const char *sampleSetId, std::uint32_t startValue, std::uint32_t startScale,
                     std::uint32_t endValue, std::uint32_t endScale, bool withNeighbours,
                     DynamicDataSampleSet *samples) const;

  std::string inputPath_;
  std::string mgjsonPath_;
  InputKind kind_;
  std::shared_ptr<PX_MgjsonParser> parser_;
};

}  // namespace ns_sensor
