// The MGJSON document of a timed CSV, built through the library's object model: one
// dynamic stream per column that has a value (numbers, or text held between samples), all
// timed by the time column, plus "Samples out of time order" when rows go back in time.
#pragma once

#include <istream>

#include "palvex/plugin_kit.hpp"
#include "timed_csv_layout.hpp"

namespace timed_csv {

// Reads `in` from its start with the layout of the first pass and fills root (not
// committed). False when no column has a value: nothing to write. Throws
// PX_PluginException (kNotANumber for a non-number in a numeric column, and the object
// model's statuses).
bool BuildTimedCsvDocument(std::istream &in, const TimedCsvLayout &layout, PX_PLUGIN::IMgjsonRoot_v1 *root);

}  // namespace timed_csv
