// A document written to a real file: a root with the MGJSON writer, its output and its
// spill files inside a scratch folder, released and disposed at the end.
#pragma once

#include <string>

#include "platform/file_test_support.hpp"
#include "plugin_model/mgjson_writer.hpp"
#include "plugin_model/root_impl.hpp"
#include "plugin_model/sample_store.hpp"

namespace PX_PLUGIN::testing {

class WritingDocument {
 public:
  // spillFolder: where sample stores spill (the scratch folder when empty).
  explicit WritingDocument(const palvex::testing::ScratchFolder &folder, const std::string &name = "out.mgjson",
                           std::string spillFolder = {})
      : path(folder.Path(name)) {
    if (spillFolder.empty()) spillFolder = folder.Path("");
    RootSettings settings;
    settings.outputPath = path;
    settings.makeWriter = MakeMgjsonWriter;
    settings.makeSink = [spillFolder] { return MakeSampleStore(spillFolder); };
    owner = MgjsonRootImpl::Create(std::move(settings));
    root = owner->HandOut();
  }
  ~WritingDocument() {
    root->Release();
    owner->Dispose();
  }
  WritingDocument(const WritingDocument &) = delete;
  WritingDocument &operator=(const WritingDocument &) = delete;

  std::uint32_t Commit() { return root->Commit(nullptr, nullptr); }
  std::string Text() const { return palvex::testing::ReadWholeFile(path); }

  std::string path;
  std::shared_ptr<MgjsonRootImpl> owner;
  IMgjsonRoot_v1 *root = nullptr;
};

}  // namespace PX_PLUGIN::testing
