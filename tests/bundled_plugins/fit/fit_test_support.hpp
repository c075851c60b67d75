// Decodes bytes as the plug-in does and keeps what the tests compare: each record's time
// and its quantities by match name, and the error the decoding ended with.
#pragma once

#include <map>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "fit_decoder.hpp"
#include "fit_profile.hpp"
#include "palvex/plugin_helpers.hpp"

namespace palvex_fit::testing {

struct DecodedRecord {
  std::optional<std::uint32_t> time;
  std::map<std::string, double> values;  // present quantities and developer fields only
};

struct Decoded {
  std::vector<DecodedRecord> records;
  std::vector<std::uint16_t> messages;  // global numbers in file order
  DecodeSummary summary;
  std::uint32_t code = 0;  // 0 when the file decoded whole
  std::int64_t detail1 = -1, detail2 = -1;
};

inline Decoded Decode(const std::string &bytes) {
  struct Sink : FitMessageSink {
    Decoded &out;
    explicit Sink(Decoded &decoded) : out(decoded) {}
    bool Wants(std::uint16_t) const override { return true; }
    void OnMessage(const FitMessage &message) override {
      out.messages.push_back(message.global);
      if (message.global != kRecordMessage) return;
      FieldIndex index{};
      for (const FieldView &field : message.fields) index[field.number] = &field;
      DecodedRecord record{message.timestamp, {}};
      for (const RecordQuantity &quantity : kRecordQuantities) {
        if (auto value = RecordValue(quantity, index)) record.values[quantity.matchName] = *value;
      }
      for (const DeveloperFieldView &field : message.developerFields) {
        if (auto value = field.value.Number()) record.values[field.description->name] = *value;
      }
      out.records.push_back(record);
    }
  };
  Decoded decoded;
  Sink sink(decoded);
  std::istringstream in(bytes);
  try {
    decoded.summary = DecodeFit(in, sink);
  } catch (const PX_PLUGIN::PX_PluginException &e) {
    decoded.code = e.code();
    decoded.detail1 = e.detail1();
    decoded.detail2 = e.detail2();
  }
  return decoded;
}

}  // namespace palvex_fit::testing
