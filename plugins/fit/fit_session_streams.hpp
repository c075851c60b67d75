// The dynamic streams of one session group: one per record quantity found and one per
// numeric developer field, made when their first value arrives.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "fit_decoder.hpp"
#include "fit_profile.hpp"
#include "match_names.hpp"
#include "timed_stream.hpp"

namespace palvex_fit {

// Developer streams beyond this many in one session are left out: each costs a sample store.
constexpr std::size_t kMaxDeveloperStreams = 32;

class SessionStreams {
 public:
  SessionStreams(PX_PLUGIN::IMgjsonRoot_v1 *root, palvex_plugins::MatchNames &names)
      : root_(root), names_(names) {}

  void Add(palvex_plugins::TimeLine &times, const palvex_plugins::Instant &at, const FieldIndex &fields,
           const std::vector<DeveloperFieldView> &developerFields);
  // Records whose time is before the previous record's.
  std::uint64_t outOfOrder() const { return outOfOrder_; }
  // Adds the streams with samples to the group: record quantities in table order, then
  // developer fields in the order they appeared. Returns how many.
  std::size_t AttachTo(PX_PLUGIN::IMgjsonGroup_v1 *group);

 private:
  struct Extent {
    double min, max;
  };
  struct DeveloperStream {
    std::string displayName;
    std::unique_ptr<palvex_plugins::TimedStream> stream;
  };

  palvex_plugins::TimedStream &Stream(std::unique_ptr<palvex_plugins::TimedStream> &slot, const std::string &displayName,
                                      const char *matchName);
  void AddDeveloperValue(palvex_plugins::TimeLine &times, const palvex_plugins::Instant &at,
                         const DeveloperFieldView &field);

  PX_PLUGIN::IMgjsonRoot_v1 *root_;
  palvex_plugins::MatchNames &names_;
  std::array<std::unique_ptr<palvex_plugins::TimedStream>, kRecordQuantityCount> quantities_;
  std::array<std::optional<Extent>, kRecordQuantityCount> extents_;  // of quantities with a legal range
  std::vector<DeveloperStream> developer_;
  std::optional<palvex_plugins::Instant> last_;
  std::uint64_t outOfOrder_ = 0;
};

}  // namespace palvex_fit
