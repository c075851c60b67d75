// The handler's life (parse on creation) and its file-level queries.
#include "file_access/sensor_file_handler.hpp"

#include "api/px_exception.hpp"

namespace ns_sensor {
namespace {

constexpr std::uint32_t kSchemaVersionOffset = 1;  // the parser counts versions from 0

}  // namespace

SensorFileHandlerImpl::SensorFileHandlerImpl(std::string inputPath, std::string mgjsonPath,
                                             InputKind kind)
    : inputPath_(std::move(inputPath)), mgjsonPath_(std::move(mgjsonPath)), kind_(kind) {
  parser_ = CreateMgjsonParser(mgjsonPath_);
  if (!parser_) Raise(Msg::CannotCreateParserObject);
  parser_->Parse(mgjsonPath_);
}

SensorFileHandlerImpl::~SensorFileHandlerImpl() = default;

void SensorFileHandlerImpl::GetFileInfo(PX_FileInfo *info) {
  RequireRecord(info, "PX_FileInfo");
  *info = PX_FileInfo{};
  const PX_MgjsonParser &parser = *parser_;
  if (parser.timeKind() == PX_TIME_TIMECODE) {
    info->frameRateValue = parser.frameRateValue();
    info->frameRateScale = parser.frameRateScale();
    info->dropFrame = parser.dropFrame();
  }
  if (parser.timeKind() == PX_TIME_UTC) {
    info->utcPrecision = parser.utcPrecisionLength();
    info->utcIsGmt = parser.utcIsGmt();
  }
  info->inputPath = inputPath_;
  info->mgjsonPath = mgjsonPath_;
  info->schemaVersion = parser.GetSchemaVersion() + kSchemaVersionOffset;
  info->timeKind = parser.timeKind();
  info->converted = kind_ == InputKind::Converted;
  info->version = parser.version();
  info->creator = parser.creator();
}

void SensorFileHandlerImpl::GetVideoSyncTimeList(PX_VideoSyncTimeList *list) {
  RequireRecord(list, "PX_VideoSyncTimeList");
  list->entries = parser_->videoSyncList();
}

}  // namespace ns_sensor
