// The root of a document: the group named "root" whose children form the data outline,
// the file-level values, the factories of every other object, and the writer.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "plugin_model/group_impl.hpp"

namespace PX_PLUGIN {

struct RootSettings {
  void *context = nullptr;          // the converter instance that makes the root
  std::string outputPath;           // where the file goes; must not be empty
  DocumentWriterMaker makeWriter;   // the writer of the file; none: commit is refused
  SampleSinkMaker makeSink;         // where dynamic nodes keep samples; none: a sample store
};

class MgjsonRootImpl : public virtual IMgjsonRoot_I,
                       public virtual MgjsonGroupImpl,
                       public virtual SharedObjectImpl {
 public:
  // Makes and registers a root; code 1505 for an empty output path. Keep the returned
  // owner until Dispose.
  static std::shared_ptr<MgjsonRootImpl> Create(RootSettings settings);

  // Use Create.
  MgjsonRootImpl(std::shared_ptr<DocumentState> document, void *context, std::string outputPath);

  // The root with one reference counted for the converter that receives it.
  IMgjsonRoot_v1 *HandOut();
  // Lets go of the document: the registry's hold on the root and on every object it made.
  // Objects live on while a converter or a tree still holds them.
  void Dispose();

  bool CommitOrThrow() override;
  void SetTimeInformationOrThrow(const TimeInformation &time) override { Document()->SetTime(time); }
  // The list is written with the file's header, so it is closed once the header is (2031).
  void AddVideoSyncEntryOrThrow(VideoSyncEntry entry) override {
    if (written_ || !Document()->IsOpen()) RaisePluginError(ns_sensor::Msg::ObjectModelWrongState);
    syncList_.push_back(std::move(entry));
  }
  void SetCreatorOrThrow(std::string creator) override { creator_ = std::move(creator); }
  void SetDynamicSamplesPresentOrThrow(bool present) override { samplesAnnounced_ = present; }
  IMgjsonGroup_v1 *CreateGroupOrThrow(NodeNames names) override;
  PX_StaticDataNode CreateStaticDataOrThrow(std::uint32_t kind, NodeNames names,
                                            const PX_StaticValue *value) override;
  PX_DynamicDataNode CreateDynamicDataOrThrow(std::uint32_t kind, NodeNames names) override;
  // The root's names are "root" for good.
  void SetNamesOrThrow(NodeNames names) override;

  void *Context() const override { return context_; }
  const std::string &OutputPath() const override { return outputPath_; }
  const TimeInformation &TimeInfo() const override { return Document()->time; }
  const std::vector<VideoSyncEntry> &VideoSyncList() const override { return syncList_; }
  const std::string &Creator() const override { return creator_; }
  bool DynamicSamplesPresent() const override { return samplesAnnounced_ || Document()->samplesAdded; }
  bool IsCommitted() const override { return Document()->phase == DocumentPhase::Committed; }
  bool IsWritten() const override { return written_; }
  void MarkWritten() override { written_ = true; }
  void Reset() override { written_ = false; }

 protected:
  ~MgjsonRootImpl() override;
  bool IsRoot() const override { return true; }

 private:
  // Two nodes with one match name, or two dynamic nodes with one sample set ID, make a
  // file the reader refuses: 2028.
  void CheckUniqueNames() const;
  // Completes, in outline order, the dynamic nodes of the tree that were not completed.
  void CompletePendingSampleSets();
  void Fail() noexcept;

  void *context_;
  std::string outputPath_;
  std::vector<VideoSyncEntry> syncList_;
  std::string creator_;
  bool samplesAnnounced_ = false;
  bool written_ = false;
  std::unique_ptr<IDocumentWriter> writer_;
};

}  // namespace PX_PLUGIN
