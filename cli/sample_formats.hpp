// The forms in which `samples` writes a node's samples: the tool's own lines, tab- or
// comma-separated tables with a header, or a JSON array. Each writer streams to standard
// output as the pages arrive, so memory stays bounded however long the set is.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "palvex/host.hpp"

namespace palvex::cli {

enum class SampleFormat { kText, kTsv, kCsv, kJson };

// The format named on the command line ("text", "tsv", "csv", "json"), or empty.
std::optional<SampleFormat> SampleFormatNamed(std::string_view name);

class SampleWriter {
 public:
  virtual ~SampleWriter() = default;
  // Called once, before the first sample, with the node the samples belong to.
  virtual void Begin(const PX_DynamicDataInfo &node) = 0;
  virtual void Write(const palvex::host::Sample &sample) = 0;
  // Called once after the last sample, unless the library reported an error.
  virtual void End() = 0;
};

std::unique_ptr<SampleWriter> MakeSampleWriter(SampleFormat format);

// The table columns after the time: the node's display name, or for an array one name per
// component (its array display name, else "<node display name>[<position>]").
std::vector<std::string> ValueColumnNames(const PX_DynamicDataInfo &node);

// A table field for CSV: in double quotes, with inner quotes doubled, when it holds a
// comma, a quote, a line feed or a carriage return; else as it is.
std::string CsvField(const std::string &text);

// A table field for the tool's lines and TSV: tab, line feed and backslash, which would
// break a line, written as \t, \n and \\.
std::string EscapedField(const std::string &text);

}  // namespace palvex::cli
