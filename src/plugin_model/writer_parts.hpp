// The texts the MGJSON writer assembles a file from, one maker per part of the file. Each
// raises the plug-in exception of its code for what it cannot write.
#pragma once

#include <cstddef>
#include <string>

#include "plugin_model/group_interfaces.hpp"
#include "plugin_model/writer_output.hpp"

namespace PX_PLUGIN {

// The header: the opening brace, the version pair, and either the promise of dynamic
// samples with the dynamic data information (2024 without time information) or the
// pair saying there are none. promiseOffset receives the length of the text before the
// dynamic-samples pair: cutting the file there withdraws the promise.
std::string HeaderText(const IMgjsonRoot_I &root, bool promiseSamples, std::size_t &promiseOffset);

// ,"dynamicSamplesPresentB":false
void AppendNoSamplesPair(std::string &out);

// "dataOutline":[...] with every child of the root that has something to write: static
// nodes, dynamic nodes whose sample set is in the file, and groups holding any of these.
// 2021 when that leaves nothing; 2016 for a dynamic node without the interface of its
// kind, 2026 for an unknown dynamic kind or interpolation. The text is written into an
// output block that goes to the file whenever it grows past the output's bound, so a
// large outline is never held whole; its last text joins the output's pending text. A
// failure part way leaves the file to be discarded.
void AppendDataOutline(WriterOutput &output, const IMgjsonRoot_I &root);

// Whether the outline names the node: only when its sample set is in the file (a node
// without samples has nothing to show, a failed one has no sample set to point to).
inline bool OutlineShowsDynamicNode(const IMgjsonDynamicData_I &node) {
  return node.IsWritten() && !node.IsLeftOut() && node.SampleCount() != 0;
}

// {"sampleSetID":...,"samples":[...]} of a node with samples, appended to the file after
// the output's pending text in pieces of about its bound. 2014 when the
// samples cannot be read back; 2016 / 2026 for a node of no known kind.
void AppendSampleSet(WriterOutput &output, IMgjsonDynamicData_I &node);

}  // namespace PX_PLUGIN
