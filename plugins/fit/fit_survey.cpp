#include "fit_survey.hpp"

#include "fit_errors.hpp"
#include "fit_profile.hpp"
#include "palvex/plugin_helpers.hpp"

namespace palvex_fit {
namespace {

using palvex_plugins::Instant;

constexpr std::uint8_t kDeviceIndexField = 0;
constexpr std::uint8_t kCreatorDeviceIndex = 0;
constexpr std::uint32_t kWholeSeconds = 0;
constexpr bool kGmt = true;

enum class Shown { Number, Text, Time };

struct DeviceField {
  std::uint16_t message;
  std::uint8_t field;
  const char *displayName;
  const char *matchName;
  Shown shown;
  double scale;
};

// Identification rather than quantities: serial numbers read as texts, IDs as numbers.
constexpr DeviceField kDeviceFields[] = {
    {kFileIdMessage, 1, "Manufacturer ID", "manufacturerId", Shown::Number, 1},
    {kFileIdMessage, 2, "Product ID", "productId", Shown::Number, 1},
    {kFileIdMessage, 8, "Product name", "productName", Shown::Text, 1},
    {kFileIdMessage, 3, "Serial number", "serialNumber", Shown::Text, 1},
    {kFileIdMessage, 4, "Time created", "timeCreated", Shown::Time, 1},
    {kDeviceInfoMessage, 5, "Software version", "softwareVersion", Shown::Number, 100},
    {kDeviceInfoMessage, 6, "Hardware version", "hardwareVersion", Shown::Number, 1},
};

std::optional<StaticEntry> EntryOf(const FieldView &field, const char *displayName, const char *matchName,
                                   Shown shown, double scale) {
  StaticEntry entry{displayName, matchName, std::nullopt, {}};
  if (shown == Shown::Text && field.Text().size() > 0) {
    entry.text = std::string(field.Text());
    return entry;
  }
  const std::optional<std::uint64_t> raw = field.Raw();
  if (!raw) return std::nullopt;
  if (shown == Shown::Text) {
    entry.text = std::to_string(*raw);
  } else if (shown == Shown::Time) {
    entry.text = palvex_plugins::FormatTime(FitTimeToInstant(static_cast<std::uint32_t>(*raw)), kWholeSeconds, kGmt);
  } else {
    entry.number = ScaledValue(field, Scaling{scale, 0, 1});
    if (!entry.number) return std::nullopt;
  }
  return entry;
}

class SurveySink : public FitMessageSink {
 public:
  explicit SurveySink(FitSurvey &survey) : survey_(survey) {}

  bool Wants(std::uint16_t global) const override {
    return global == kRecordMessage || global == kSessionMessage || (global == kFileIdMessage && !fileIdSeen_) ||
           (global == kDeviceInfoMessage && !creatorSeen_);
  }

  void OnMessage(const FitMessage &message) override {
    switch (message.global) {
      case kRecordMessage:
        if (message.timestamp) ++survey_.timedRecords;
        break;
      case kSessionMessage:
        AddSession(message);
        break;
      case kFileIdMessage:
        fileIdSeen_ = true;
        AddDevice(message);
        break;
      default:
        AddCreator(message);
        break;
    }
  }

 private:
  void AddDevice(const FitMessage &message) {
    for (const DeviceField &known : kDeviceFields) {
      const FieldView *field = message.Find(known.field);
      if (known.message != message.global || field == nullptr) continue;
      if (auto entry = EntryOf(*field, known.displayName, known.matchName, known.shown, known.scale)) {
        survey_.device.push_back(std::move(*entry));
      }
    }
  }

  // Other device_info messages describe sensors; the one of index 0 is the recorder.
  void AddCreator(const FitMessage &message) {
    const FieldView *index = message.Find(kDeviceIndexField);
    if (index == nullptr || index->Raw() != std::optional<std::uint64_t>(kCreatorDeviceIndex)) return;
    creatorSeen_ = true;
    AddDevice(message);
  }

  void AddSession(const FitMessage &message) {
    if (survey_.sessions.size() == kMaxSessions) {
      throw PX_PLUGIN::PX_PluginException(kTooManySessions, static_cast<std::int64_t>(message.offset),
                                          static_cast<std::int64_t>(kMaxSessions));
    }
    SessionSummary session;
    if (const FieldView *sport = message.Find(kSessionSport); sport != nullptr && sport->Raw()) {
      session.entries.push_back({"Sport", "sport", std::nullopt, SportName(*sport->Raw())});
    }
    if (const FieldView *subSport = message.Find(kSessionSubSport); subSport != nullptr && subSport->Raw()) {
      session.entries.push_back({"Sub sport", "subSport", static_cast<double>(*subSport->Raw()), {}});
    }
    session.start = StartOf(message);
    if (session.start) {
      session.entries.push_back(
          {"Start time", "startTime", std::nullopt, palvex_plugins::FormatTime(*session.start, kWholeSeconds, kGmt)});
    }
    for (const SummaryQuantity &quantity : kSessionQuantities) {
      const FieldView *field = message.Find(quantity.field);
      std::optional<double> value = field ? ScaledValue(*field, quantity.scaling) : std::nullopt;
      if (!value && quantity.fallbackField != kNoField) {
        field = message.Find(quantity.fallbackField);
        value = field ? ScaledValue(*field, quantity.scaling) : std::nullopt;
      }
      if (value) session.entries.push_back({quantity.displayName, quantity.matchName, value, {}});
    }
    survey_.sessions.push_back(std::move(session));
  }

  // start_time, or else the end less the elapsed time.
  static std::optional<Instant> StartOf(const FitMessage &message) {
    const FieldView *start = message.Find(kSessionStartTime);
    if (start != nullptr && start->Raw()) return FitTimeToInstant(static_cast<std::uint32_t>(*start->Raw()));
    const FieldView *elapsed = message.Find(kSessionElapsedTime);
    const std::optional<double> seconds = elapsed ? ScaledValue(*elapsed, Scaling{kSessionElapsedTimeScale, 0, 1})
                                                  : std::nullopt;
    if (!message.timestamp || !seconds) return std::nullopt;
    return palvex_plugins::AddSeconds(FitTimeToInstant(*message.timestamp), -*seconds);
  }

  FitSurvey &survey_;
  bool fileIdSeen_ = false;
  bool creatorSeen_ = false;
};

}  // namespace

FitSurvey SurveyFit(std::istream &in) {
  FitSurvey survey;
  SurveySink sink(survey);
  survey.decoding = DecodeFit(in, sink);
  return survey;
}

}  // namespace palvex_fit
