// The MGJSON document of a FIT file, from the survey (first pass) and a second read of
// the file that sends each record to the streams of its session:
//   Device (group): file_id and recording-device values (static)
//   Session N (group, one per session message; "Activity" when the file has none):
//     sport, start time and totals (static), "Samples out of time order" when non-zero,
//     one stream per record quantity and numeric developer field found.
// A record belongs to the last session that starts at or before its time (the first
// session when it comes earlier). Times are UTC, whole seconds, GMT.
#pragma once

#include <istream>

#include "fit_survey.hpp"
#include "palvex/plugin_kit.hpp"

namespace palvex_fit {

struct BuildResult {
  std::size_t groups = 0;   // session groups written (the device group not counted)
  DecodeSummary decoding;   // of the second pass
};

// Fills root (not committed). Throws PX_PLUGIN::PX_PluginException on damage or when
// the library refuses a call.
BuildResult BuildFitDocument(const FitSurvey &survey, std::istream &in, PX_PLUGIN::IMgjsonRoot_v1 *root);

}  // namespace palvex_fit
