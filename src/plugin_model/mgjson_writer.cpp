#include "plugin_model/mgjson_writer.hpp"

#include "plugin_model/writer_parts.hpp"
#include "plugin_model/writer_text.hpp"

namespace PX_PLUGIN {

using ns_sensor::Msg;

MgjsonWriter::MgjsonWriter(IMgjsonRoot_I &root) : root_(root), output_(root.OutputPath()) {}

std::unique_ptr<IDocumentWriter> MakeMgjsonWriter(IMgjsonRoot_I &root) {
  return std::make_unique<MgjsonWriter>(root);
}

// ---- Header ----------------------------------------------------------------------------------

void MgjsonWriter::EnsureHeader() {
  if (headerWritten_) return;
  const bool promise = root_.DynamicSamplesPresent();
  std::size_t promiseOffset = 0;
  const std::string header = HeaderText(root_, promise, promiseOffset);
  try {
    output_.Create(header);
  } catch (...) {
    // A header cut short is no file at all.
    output_.Empty();
    throw;
  }
  root_.MarkWritten();
  headerWritten_ = true;
  promisedSamples_ = promise;
  if (promise && !rollbackPosition_) rollbackPosition_ = promiseOffset;
}

// ---- Sample sets -----------------------------------------------------------------------------

void MgjsonWriter::WriteSampleSet(IMgjsonDynamicData_I &node) {
  if (node.SampleCount() == 0) return;
  bool openedSection = false;
  try {
    WriteSampleSetOrThrow(node, openedSection);
  } catch (...) {
    CutBackFailedSet(openedSection);
    RethrowAsPluginException();
  }
}

void MgjsonWriter::WriteSampleSetOrThrow(IMgjsonDynamicData_I &node, bool &openedSection) {
  // The output was emptied after a failure it could not be cut back from: sample sets
  // written before are gone, so nothing written now could be read as the tree says.
  if (broken_) RaisePluginError(Msg::TruncateAfterFailure);
  output_.BeginPiece();
  EnsureHeader();
  // Samples make the promise themselves (the root reports them present once one is
  // added), so a header without it cannot be followed by a sample set.
  if (!promisedSamples_) RaisePluginError(Msg::ObjectModelWrongState);
  std::string &out = output_.Pending();
  out += ',';
  if (!samplesWritten_) {
    writer_text::Key(out, "dataDynamicSamples");
    out += '[';
    samplesWritten_ = true;
    openedSection = true;
  }
  AppendSampleSet(output_, node);
  output_.FlushAndClose();
}

void MgjsonWriter::CutBackFailedSet(bool openedSection) {
  const std::optional<std::uint64_t> start = output_.PieceStart();
  output_.Abandon();
  if (openedSection) samplesWritten_ = false;
  if (!start || broken_) return;  // the set has not touched the file
  try {
    output_.CutBackTo(*start);
  } catch (...) {
    output_.Empty();
    headerWritten_ = false;
    samplesWritten_ = false;
    broken_ = true;
    RaisePluginError(Msg::TruncateAfterFailure);
  }
}

// ---- Commit ----------------------------------------------------------------------------------

void MgjsonWriter::Finish(IMgjsonRoot_I &) {
  try {
    FinishOrThrow();
  } catch (...) {
    DiscardOutput();
    RethrowAsPluginException();
  }
}

void MgjsonWriter::FinishOrThrow() {
  if (broken_) RaisePluginError(Msg::TruncateAfterFailure);
  output_.BeginPiece();
  EnsureHeader();
  std::string &out = output_.Pending();
  if (promisedSamples_) {
    if (samplesWritten_) {
      out += ']';
    } else {
      // Promised, but no sample set came: the file must not claim samples it lacks.
      if (rollbackPosition_) {
        output_.CutBackTo(*rollbackPosition_);
        rollbackPosition_.reset();
      }
      AppendNoSamplesPair(out);
    }
  }
  if (!root_.Creator().empty()) {
    out += ',';
    writer_text::StringPair(out, "creator", root_.Creator());
  }
  out += ',';
  AppendDataOutline(output_, root_);
  output_.Pending() += '}';
  output_.FlushAndClose();
}

void MgjsonWriter::DiscardOutput() noexcept {
  output_.Empty();
  headerWritten_ = false;
  promisedSamples_ = false;
  samplesWritten_ = false;
  rollbackPosition_.reset();
}

}  // namespace PX_PLUGIN
