// The handler's sample queries. Each selects samples through the parser's sample reader
// and leaves a cursor in the record: the cost of a query grows with the samples taken from
// it, never with the size of the sample set (the reader finds the ends of a time range by
// binary search, and an index by its checkpoints).
#include <algorithm>
#include <limits>

#include "api/px_exception.hpp"
#include "file_access/sensor_file_handler.hpp"

namespace ns_sensor {
namespace {

constexpr std::uint32_t kMillisecondsPerSecond = 1000;

std::uint32_t Clamp32(std::uint64_t value) {
  return static_cast<std::uint32_t>(std::min<std::uint64_t>(value, std::numeric_limits<std::uint32_t>::max()));
}

std::string_view IdText(const char *sampleSetId) {
  return sampleSetId != nullptr ? std::string_view(sampleSetId) : std::string_view();
}

void RequireScale(std::uint32_t scale, std::string_view parameter) {
  if (scale == 0) Raise(Msg::ZeroScaleValue, Quoted(parameter));
}

}  // namespace

void PX_SampleSelection::Serve(SampleCursor cursor) {
  setSampleCount = Clamp32(cursor.setSampleCount());
  if (readRequest) {
    PX_SampleRequest request{sizeof(PX_SampleRequest), setSampleCount, skip, limit};
    readRequest(request);
    skip = request.skip;
    limit = request.limit;
  }
  reversed = cursor.reversed();
  const std::uint64_t available = cursor.count() > skip ? cursor.count() - skip : 0;
  count = Clamp32(limit == 0 ? available : std::min<std::uint64_t>(available, limit));
  cursor.Skip(skip);
  cursor_.emplace(std::move(cursor));
  taken_ = 0;
}

void SensorFileHandlerImpl::SampleSetTimes(std::string_view sampleSetId, PX_TimeValue &first,
                                           PX_TimeValue &last) const {
  const SampleSetEntry *entry = parser_->samples().index().Find(sampleSetId);
  if (entry == nullptr || entry->state != kSampleSetIndexed || entry->count == 0) return;
  // Every time text was checked readable when the file was opened.
  first = PX_TimeValue{std::string(entry->firstTime), TextToSeconds(Axis(), entry->firstTime)};
  last = PX_TimeValue{std::string(entry->lastTime), TextToSeconds(Axis(), entry->lastTime)};
}

void SensorFileHandlerImpl::SelectBetween(const char *sampleSetId, std::uint32_t startValue,
                                          std::uint32_t startScale, std::uint32_t endValue,
                                          std::uint32_t endScale, bool withNeighbours,
                                          DynamicDataSampleSet *samples) const {
  RequireRecord(samples, "DynamicDataSampleSet");
  samples->ResetResult();
  RequireScale(startScale, "startTime");
  RequireScale(endScale, "endTime");
  const std::string_view id = IdText(sampleSetId);
  SampleCursor cursor = parser_->samples().Reader().SelectBetween(
      id, RationalTime{startValue, startScale}, RationalTime{endValue, endScale}, withNeighbours);
  if (cursor.count() == 0) Raise(Msg::FetchDynamicSampleFailure, Quoted(id));
  samples->Serve(std::move(cursor));
}

void SensorFileHandlerImpl::GetSampleSet(const char *sampleSetId, std::uint32_t startValue,
                                         std::uint32_t startScale, std::uint32_t endValue,
                                         std::uint32_t endScale, DynamicDataSampleSet *samples) {
  SelectBetween(sampleSetId, startValue, startScale, endValue, endScale, false, samples);
}

void SensorFileHandlerImpl::GetSampleSetWithNeighbours(const char *sampleSetId, std::uint32_t startValue,
                                                       std::uint32_t startScale, std::uint32_t endValue,
                                                       std::uint32_t endScale,
                                                       DynamicDataSampleSet *samples) {
  SelectBetween(sampleSetId, startValue, startScale, endValue, endScale, true, samples);
}

void SensorFileHandlerImpl::GetDynamicSampleInfo(const char *sampleSetId, std::uint32_t first,
                                                 std::uint32_t second, std::uint32_t byIndex,
                                                 PX_DynamicSampleInfo *info) {
  RequireRecord(info, "PX_DynamicSampleInfo");
  info->ResetResult();
  const SampleReader reader = parser_->samples().Reader();
  const std::string_view id = IdText(sampleSetId);
  // A block may be empty (an index past the end, a time span without samples): it is
  // delivered as no samples rather than refused, so a host can page until nothing comes.
  if (byIndex != 0) {
    info->Serve(reader.SelectByIndex(id, first, second));
  } else {
    info->Serve(reader.SelectBetween(id, RationalTime{first, kMillisecondsPerSecond},
                                     RationalTime{second, kMillisecondsPerSecond}, false));
  }
}

}  // namespace ns_sensor
