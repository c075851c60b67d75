// What the objects of one document share: its tag in the registry, the time information
// that sample times are made with, where the document stands, the writer and how sample
// sinks are made. The root owns it together with the nodes it created.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "plugin_model/model_records.hpp"
#include "plugin_model/object_registry.hpp"
#include "plugin_model/plugin_status.hpp"
#include "plugin_model/sample_sink.hpp"
#include "plugin_model/sample_time_text.hpp"

namespace PX_PLUGIN {

class IMgjsonDynamicData_I;
class IMgjsonRoot_I;

// The writer of a document's file, as the object model drives it.
class IDocumentWriter {
 public:
  virtual ~IDocumentWriter() = default;
  // Appends the sample set of a completed node (called once per node with samples). On
  // failure the file is cut back to its last complete sample set and the error travels
  // on; the node then marks itself failed and drops its samples.
  virtual void WriteSampleSet(IMgjsonDynamicData_I &node) = 0;
  // Writes the rest of the file at commit. On failure the output is left empty and the
  // error travels on.
  virtual void Finish(IMgjsonRoot_I &root) = 0;
  // Leaves an empty file at the output path (a commit failed before Finish). Never fails.
  virtual void DiscardOutput() noexcept = 0;
};

using DocumentWriterMaker = std::function<std::unique_ptr<IDocumentWriter>(IMgjsonRoot_I &)>;

enum class DocumentPhase {
  Open,       // being built
  Committed,  // the file is complete
  Failed,     // a commit failed; the output is empty and stays so
};

struct DocumentState {
  explicit DocumentState(SampleSinkMaker sinkMaker) : makeSink(std::move(sinkMaker)) {}

  // The maker of sample time texts for the current time information.
  const SampleTimeText &TimeText() {
    if (!timeText) timeText.emplace(time);
    return *timeText;
  }
  // Replaces the time information; refused (2031) once a sample was added, since the
  // texts of the samples already kept were made with the old one.
  void SetTime(const TimeInformation &information) {
    if (samplesAdded) RaisePluginError(ns_sensor::Msg::ObjectModelWrongState);
    time = information;
    timeText.reset();
  }
  bool IsOpen() const { return phase == DocumentPhase::Open; }

  const std::uint64_t tag = NewDocumentTag();
  TimeInformation time;
  std::optional<SampleTimeText> timeText;
  bool samplesAdded = false;  // fixes the time information
  DocumentPhase phase = DocumentPhase::Open;
  IDocumentWriter *writer = nullptr;  // the root's; null without one or once the root is gone
  SampleSinkMaker makeSink;
};

}  // namespace PX_PLUGIN
