// A document for the object-model tests: a root handed out as a converter receives it,
// with a writer that records what it is asked to write instead of writing a file.
#pragma once

#include <cmath>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "api/px_exception.hpp"
#include "plugin_model/root_impl.hpp"

namespace PX_PLUGIN::testing {

struct WrittenSampleSet {
  std::string id;
  std::vector<std::pair<std::string, std::string>> samples;  // time text, value text
};

// What the recording writer was asked to do; a test may make a stage fail.
struct WriterLog {
  std::vector<WrittenSampleSet> sampleSets;
  int finishes = 0;
  int discards = 0;
  std::function<void()> sampleSetFault;
  std::function<void()> finishFault;
};

class RecordingWriter final : public IDocumentWriter {
 public:
  RecordingWriter(IMgjsonRoot_I &root, WriterLog &log) : root_(root), log_(log) {}

  void WriteSampleSet(IMgjsonDynamicData_I &node) override {
    root_.MarkWritten();
    WrittenSampleSet set{node.SampleSetId(), {}};
    std::string_view time, value;
    while (node.Samples().Next(time, value)) set.samples.emplace_back(time, value);
    if (log_.sampleSetFault) log_.sampleSetFault();
    log_.sampleSets.push_back(std::move(set));
  }
  void Finish(IMgjsonRoot_I &) override {
    if (log_.finishFault) log_.finishFault();
    ++log_.finishes;
  }
  void DiscardOutput() noexcept override { ++log_.discards; }

 private:
  IMgjsonRoot_I &root_;
  WriterLog &log_;
};

// A root as the converter framework makes it, released and disposed at the end.
class TestDocument {
 public:
  explicit TestDocument(bool withWriter = true) {
    RootSettings settings;
    settings.outputPath = "out.mgjson";
    if (withWriter) {
      settings.makeWriter = [this](IMgjsonRoot_I &root) { return std::make_unique<RecordingWriter>(root, log); };
    }
    owner = MgjsonRootImpl::Create(std::move(settings));
    root = owner->HandOut();
  }
  ~TestDocument() {
    root->Release();
    owner->Dispose();
  }
  TestDocument(const TestDocument &) = delete;
  TestDocument &operator=(const TestDocument &) = delete;

  WriterLog log;
  std::shared_ptr<MgjsonRootImpl> owner;
  IMgjsonRoot_v1 *root = nullptr;
};

// A status and the code its error record received; they must agree.
inline std::uint32_t StatusOf(const std::function<std::uint32_t(PX_PluginError *)> &operation) {
  PX_PluginError error{12345, 0, 0};
  const std::uint32_t status = operation(&error);
  return status == error.code ? status : 0xFFFFFFFF;
}

}  // namespace PX_PLUGIN::testing
