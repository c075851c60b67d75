// The writer of a document's MGJSON file. The file is written in three stages, so that
// samples never have to be held in memory all at once:
// - the header (version, whether dynamic samples follow, the dynamic data information),
//   written when the first sample set is or at commit;
// - one sample set per completed dynamic node, appended as each node completes;
// - at commit the rest: the creator and the data outline.
//
// Failures leave the file in a state the reader can still make sense of: a failed
// sample set cuts the file back to where it ended before the set (the last complete
// set), and a failed commit leaves an empty file at the output path. Every failure
// leaves as a plug-in exception (plugin_status.hpp: a library error with code c as
// c + 1000, a full disk as 1034).
#pragma once

#include <cstddef>
#include <memory>
#include <optional>

#include "plugin_model/document_state.hpp"
#include "plugin_model/writer_output.hpp"

namespace PX_PLUGIN {

class MgjsonWriter final : public IDocumentWriter {
 public:
  explicit MgjsonWriter(IMgjsonRoot_I &root);

  void WriteSampleSet(IMgjsonDynamicData_I &node) override;
  void Finish(IMgjsonRoot_I &root) override;
  void DiscardOutput() noexcept override;

 private:
  // Writes the header if it has not been written; a failure leaves the output empty.
  void EnsureHeader();
  void WriteSampleSetOrThrow(IMgjsonDynamicData_I &node, bool &openedSection);
  // After a failed sample set: the file ends where it ended before the set, or, when
  // that cannot be done, is emptied for good and 2004 is raised.
  void CutBackFailedSet(bool openedSection);
  void FinishOrThrow();

  IMgjsonRoot_I &root_;
  WriterOutput output_;
  bool headerWritten_ = false;
  bool promisedSamples_ = false;  // the header promises dynamic samples
  bool samplesWritten_ = false;   // the "dataDynamicSamples" array is open in the file
  // Length of the header before the dynamic-samples pair, while the promise stands.
  std::optional<std::size_t> rollbackPosition_;
  // The output was emptied after a failed set could not be cut back; every later stage
  // is refused with 2004.
  bool broken_ = false;
};

// The maker of the MGJSON file writer, for RootSettings::makeWriter.
std::unique_ptr<IDocumentWriter> MakeMgjsonWriter(IMgjsonRoot_I &root);

}  // namespace PX_PLUGIN
