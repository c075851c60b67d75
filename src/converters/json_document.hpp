// The outline of a parsed JSON document: every object and array that holds something
// becomes a group, every string, number and boolean a static node, and nulls are dropped.
// Nodes are named after their element (json_iterators.hpp); match names count up through
// the document as "matchName0", "matchName1", ... in the order the objects are made.
#pragma once

#include <cstdint>

#include "converters/json_start_check.hpp"
#include "mgjson_read/rapidjson_config.hpp"
#include "palvex/plugin_model.hpp"

namespace ns_sensor {

// Adds the outline of top, an array or object as `kind` says, to root; matchNames is the
// counter of match names used so far and is advanced by every group and node made,
// including a group that is dropped again because nothing convertible was inside it (an
// empty container makes no group and takes no name). The walk keeps its own stack.
//
// True when something was added; false when the document holds nothing but nulls and
// empty containers. Raises ConversionFailure (1506) when top is not of kind `kind` or when
// something convertible lies deeper than groups can nest; failed object model operations
// throw PX_PLUGIN::PX_PluginException.
bool BuildJsonOutline(const JsonValue &top, JsonTopValue kind, PX_PLUGIN::IMgjsonRoot_v1 *root,
                      std::uint32_t &matchNames);

}  // namespace ns_sensor
