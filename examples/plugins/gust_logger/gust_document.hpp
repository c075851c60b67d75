// The MGJSON document of a gust log, built through the library's object model.
#pragma once

#include "gust_log.hpp"
#include "palvex/plugin_kit.hpp"

namespace gust {

// Fills root with the log's outline and samples (root not committed yet):
//   Station (group): Name (static string), Mast height (static number, when given)
//   Wind speed (dynamic number), Wind direction (dynamic number), Notes (dynamic string,
//   when a reading has a note)
// with UTC times: the header's start plus each reading's seconds. The log must have at
// least one reading. Throws PX_PLUGIN::PX_PluginException when the library refuses a call.
void BuildGustDocument(const GustLog &log, PX_PLUGIN::IMgjsonRoot_v1 *root);

}  // namespace gust
