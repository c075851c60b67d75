// The library's views of groups and the root: the raising forms of their operations, what
// the writer reads, and the `_v1` operations as statuses around the raising forms.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "plugin_model/dynamic_interfaces.hpp"
#include "plugin_model/object_registry.hpp"

namespace PX_PLUGIN {

class IMgjsonGroup_I;

// One child of a group, held by the group: a static node, a dynamic node or a group. The
// library's owner and the child's view of its kind, kept together in few bytes, since a
// large document has millions of children. A static node is kept as the view of its own
// kind, so that the writer reaches what it writes without a cast through the hierarchy.
class GroupChild {
 public:
  enum class Kind : std::uint8_t { StaticNumber, StaticString, StaticBoolean, StaticNumberArray, Dynamic, Group };

  GroupChild(ObjectOwner owner, IMgjsonStaticDataNum_I *node) : GroupChild(std::move(owner), node, Kind::StaticNumber) {}
  GroupChild(ObjectOwner owner, IMgjsonStaticDataString_I *node) : GroupChild(std::move(owner), node, Kind::StaticString) {}
  GroupChild(ObjectOwner owner, IMgjsonStaticDataBool_I *node) : GroupChild(std::move(owner), node, Kind::StaticBoolean) {}
  GroupChild(ObjectOwner owner, IMgjsonStaticDataNumArr_I *node) : GroupChild(std::move(owner), node, Kind::StaticNumberArray) {}
  GroupChild(ObjectOwner owner, IMgjsonDynamicData_I *node) : GroupChild(std::move(owner), node, Kind::Dynamic) {}
  GroupChild(ObjectOwner owner, IMgjsonGroup_I *group) : GroupChild(std::move(owner), group, Kind::Group) {}

  Kind ChildKind() const { return kind_; }

  // The child as its kind's view, or null when it is of another kind.
  IMgjsonStaticData_v1 *StaticNode() const {
    switch (kind_) {
      case Kind::StaticNumber: return StaticNumber();
      case Kind::StaticString: return StaticString();
      case Kind::StaticBoolean: return StaticBoolean();
      case Kind::StaticNumberArray: return StaticNumberArray();
      default: return nullptr;
    }
  }
  IMgjsonStaticDataNum_I *StaticNumber() const { return As<IMgjsonStaticDataNum_I>(Kind::StaticNumber); }
  IMgjsonStaticDataString_I *StaticString() const { return As<IMgjsonStaticDataString_I>(Kind::StaticString); }
  IMgjsonStaticDataBool_I *StaticBoolean() const { return As<IMgjsonStaticDataBool_I>(Kind::StaticBoolean); }
  IMgjsonStaticDataNumArr_I *StaticNumberArray() const { return As<IMgjsonStaticDataNumArr_I>(Kind::StaticNumberArray); }
  IMgjsonDynamicData_I *DynamicNode() const { return As<IMgjsonDynamicData_I>(Kind::Dynamic); }
  IMgjsonGroup_I *Group() const { return As<IMgjsonGroup_I>(Kind::Group); }

 private:
  GroupChild(ObjectOwner owner, void *view, Kind kind) : owner_(std::move(owner)), view_(view), kind_(kind) {}

  template <class View>
  View *As(Kind kind) const { return kind_ == kind ? static_cast<View *>(view_) : nullptr; }

  ObjectOwner owner_;
  void *view_;  // exactly the pointer given for the kind, so the cast back is exact
  Kind kind_;
};

class IMgjsonGroup_I : public virtual IMgjsonGroup_v1, public virtual ISharedObject_I {
 public:
  virtual void AddDynamicChildOrThrow(IMgjsonDynamicData_v1 *child) = 0;
  virtual void AddStaticChildOrThrow(IMgjsonStaticData_v1 *child) = 0;
  virtual void AddGroupChildOrThrow(IMgjsonGroup_v1 *child) = 0;
  virtual void SetNamesOrThrow(NodeNames names) = 0;
  // The child group, with one reference counted for the caller (pending acquire).
  virtual IMgjsonGroup_v1 *FindChildGroupOrThrow(std::string_view matchName) = 0;

  virtual NameView Names() const = 0;
  virtual const std::vector<GroupChild> &Children() const = 0;  // in the order of adding

  std::uint32_t AddDynamicChild(IMgjsonDynamicData_v1 *child, PX_PluginError *error) final {
    return RunWithStatus(error, [&] { AddDynamicChildOrThrow(child); });
  }
  std::uint32_t AddStaticChild(IMgjsonStaticData_v1 *child, PX_PluginError *error) final {
    return RunWithStatus(error, [&] { AddStaticChildOrThrow(child); });
  }
  std::uint32_t AddGroupChild(IMgjsonGroup_v1 *child, PX_PluginError *error) final {
    return RunWithStatus(error, [&] { AddGroupChildOrThrow(child); });
  }
  IMgjsonGroup_I *GetInternalGroup() final { return this; }
  std::uint32_t SetNames(const char *displayName, std::uint32_t displayNameLength,
                         const char *matchName, std::uint32_t matchNameLength,
                         PX_PluginError *error) final {
    return RunWithStatus(error, [&] {
      SetNamesOrThrow({FreeTextArgument(displayName, displayNameLength), MatchNameArgument(matchName, matchNameLength)});
    });
  }
  std::uint32_t GetChildCount() final { return static_cast<std::uint32_t>(Children().size()); }
  std::uint32_t FindChildGroup(const char *matchName, std::uint32_t matchNameLength,
                               IMgjsonGroup_v1 **group, PX_PluginError *error) final {
    if (group != nullptr) *group = nullptr;
    return RunWithStatus(error, [&] {
      const std::string_view name = TextArgument(matchName, matchNameLength);
      if (group == nullptr) RaisePluginError(ns_sensor::Msg::InvalidObjectModelArgument);
      *group = FindChildGroupOrThrow(name);
    });
  }
};

class IMgjsonRoot_I : public virtual IMgjsonRoot_v1,
                      public virtual IMgjsonGroup_I,
                      public virtual ISharedObject_I {
 public:
  // False when the root was committed already.
  virtual bool CommitOrThrow() = 0;
  virtual void SetTimeInformationOrThrow(const TimeInformation &time) = 0;
  virtual void AddVideoSyncEntryOrThrow(VideoSyncEntry entry) = 0;
  virtual void SetCreatorOrThrow(std::string creator) = 0;
  virtual void SetDynamicSamplesPresentOrThrow(bool present) = 0;
  // New objects, each with one reference counted for the caller (pending acquire).
  virtual IMgjsonGroup_v1 *CreateGroupOrThrow(NodeNames names) = 0;
  virtual PX_StaticDataNode CreateStaticDataOrThrow(std::uint32_t kind, NodeNames names,
                                                    const PX_StaticValue *value) = 0;
  virtual PX_DynamicDataNode CreateDynamicDataOrThrow(std::uint32_t kind, NodeNames names) = 0;

  virtual void *Context() const = 0;  // the converter instance that made the root
  virtual const std::string &OutputPath() const = 0;
  virtual const TimeInformation &TimeInfo() const = 0;
  virtual const std::vector<VideoSyncEntry> &VideoSyncList() const = 0;
  virtual const std::string &Creator() const = 0;  // escaped; empty writes no creator
  // Announced by the converter, or implied by any sample added.
  virtual bool DynamicSamplesPresent() const = 0;
  virtual bool IsCommitted() const = 0;
  // Whether the output file holds anything written: set by the writer when it creates the
  // file, cleared by Reset.
  virtual bool IsWritten() const = 0;
  virtual void MarkWritten() = 0;
  // After a failed commit emptied the output: nothing is written any more.
  virtual void Reset() = 0;

  std::uint32_t Commit(std::uint32_t *committed, PX_PluginError *error) final {
    if (committed != nullptr) *committed = 0;
    return RunWithStatus(error, [&] {
      const bool done = CommitOrThrow();
      if (committed != nullptr) *committed = done ? 1 : 0;
    });
  }
  std::uint32_t SetTimecodeInfo(std::uint32_t dropFrame, std::uint32_t frameRateValue,
                                std::uint32_t frameRateScale, PX_PluginError *error) final;
  std::uint32_t SetUtcInfo(std::uint32_t precisionLength, std::uint32_t isGmt, PX_PluginError *error) final;
  std::uint32_t AddVideoSyncFrame(const char *fileName, std::uint32_t fileNameLength,
                                  std::uint32_t frameNumber, PX_PluginError *error) final;
  std::uint32_t AddVideoSyncTime(const char *fileName, std::uint32_t fileNameLength,
                                 const char *timeString, std::uint32_t timeStringLength,
                                 PX_PluginError *error) final;
  std::uint32_t SetCreator(const char *creator, std::uint32_t creatorLength, PX_PluginError *error) final {
    return RunWithStatus(error, [&] { SetCreatorOrThrow(FreeTextArgument(creator, creatorLength)); });
  }
  std::uint32_t SetDynamicSamplesPresent(std::uint32_t present, PX_PluginError *error) final {
    return RunWithStatus(error, [&] { SetDynamicSamplesPresentOrThrow(FlagArgument(present)); });
  }
  std::uint32_t CreateGroup(const char *displayName, std::uint32_t displayNameLength,
                            const char *matchName, std::uint32_t matchNameLength,
                            IMgjsonGroup_v1 **group, PX_PluginError *error) final;
  std::uint32_t CreateStaticData(std::uint32_t kind, const char *displayName,
                                 std::uint32_t displayNameLength, const char *matchName,
                                 std::uint32_t matchNameLength, const PX_StaticValue *value,
                                 PX_StaticDataNode *node, PX_PluginError *error) final;
  std::uint32_t CreateDynamicData(std::uint32_t kind, const char *displayName,
                                  std::uint32_t displayNameLength, const char *matchName,
                                  std::uint32_t matchNameLength, PX_DynamicDataNode *node,
                                  PX_PluginError *error) final;
};

}  // namespace PX_PLUGIN
