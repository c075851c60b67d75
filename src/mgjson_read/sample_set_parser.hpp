// The sample sets of a file, parsed from the compacted text of its "dataDynamicSamples":
// each set is matched with its dynamic node by sampleSetID, every sample is checked
// against the file's timing and the node's data type, and the node's index entry learns
// where the samples lie, how many there are and in which order their times run.
//
// Messages name a sample by its position: "sampleSetID:" and the ID, then "/sample[" with
// the sample's index and "]" (the first sample is "/sample[0]"), in double quotes.
//
// | fault | code | message |
// |---|---|---|
// | a set is not an object | 32 | InvalidJSONObject, the set's path; detail1 its file offset |
// | "sampleSetID" or "samples" missing | 32 | MissingRequiredProperties; detail1 the set's file offset |
// | "sampleSetID" not a string, "samples" not an array | 43 | DynamicSample/InvalidPropertyType |
// | the ID names no dynamic node | 49 | DynamicNodeNotPresent |
// | a second set with the same ID; malformed sample text; a node of unknown type | 39 | InvalidSampleSetData |
// | a sample is not an object | 32 | InvalidJSONObject, the sample's position |
// | a sample lacks "time" or "value" | 39 | MissingRequiredPropertyAtPath |
// | a time that is no time text of the file's timing (IsReadableTime) | 39 | "Invalid time value for :" |
// | a value that is not of its node's type | 39 | InvalidSampleValue |
// | an array item neither string nor number | 43 | DynamicSample/InvalidArrayItem |
// | fewer array items than arraySize | 39 | InvalidNumberArrayInvalidArrayCount |
// | a padded string longer than maxLen | 39 | InvalidPaddedStringLength |
#pragma once

#include <string_view>

#include "mgjson_read/sample_compactor.hpp"
#include "mgjson_read/sample_index.hpp"
#include "mgjson_read/sample_timing.hpp"

namespace ns_sensor {

// `compacted` is the compacted array text, `layout` where its items begin. Entries whose
// sets hold samples move to kSampleSetIndexed; the others stay as they are.
void ParseSampleSets(std::string_view compacted, const CompactedArray &layout,
                     const SampleTiming &timing, SampleSetIndex &index);

}  // namespace ns_sensor
