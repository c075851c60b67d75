// The two members of one sample in compacted text, {"time":...,"value":...}, found in one
// pass. Samples written time first with a time of the file's length (as every writer of
// ours writes them) are read by position; any other member order or extra member is read
// member by member, the last of a repeated member counting.
#pragma once

#include <cstddef>
#include <string_view>

namespace ns_sensor {

struct SampleMembers {
  std::string_view time;   // the JSON text of "time" (a string keeps its quotes); empty when absent
  std::string_view value;  // the JSON text of "value"; empty when absent
  const char *after = nullptr;  // after the sample's "}"; null when the text at `at` is no object
};

// The sample whose "{" is at `at`; timeLength is the length of the file's time texts.
SampleMembers ReadSampleMembers(const char *at, const char *end, std::size_t timeLength);

}  // namespace ns_sensor
