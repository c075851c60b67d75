// The document of a table: one group per column, named after it, holding one static node
// per cell, a number node in a numeric column and a string node otherwise. Match names
// count through the whole document: data0 for the first group, data1 for its first cell,
// and so on; a cell's display name is its column's name, a space and its row number.
#pragma once

#include "converters/csv_table.hpp"
#include "palvex/plugin_model.hpp"

namespace ns_sensor {

// Adds the groups of table to root. Failed object model operations throw
// PX_PLUGIN::PX_PluginException.
void BuildTableDocument(const CsvTable &table, PX_PLUGIN::IMgjsonRoot_v1 *root);

}  // namespace ns_sensor
