/**
 * @file plugin_model.hpp
 * The converter-side object model through which a converter builds an MGJSON document:
 * a root, groups, static and dynamic data nodes (palvex/plugin_nodes.hpp). The library
 * owns the objects and writes the file; a converter only calls these interfaces. This
 * header and palvex/plugin_nodes.hpp stand alone: a converter module needs nothing else.
 *
 * @code
 *   using namespace PX_PLUGIN;
 *   PX_PluginError error;
 *   IMgjsonGroup_v1 *group = nullptr;
 *   root->CreateGroup("Speed", 5, "speed", 5, &group, &error);
 *   PX_StaticValue value = {42.0, nullptr, 0, 0};
 *   PX_StaticDataNode node;
 *   root->CreateStaticData(PX_STATIC_NUMBER, "Top", 3, "top", 3, &value, &node, &error);
 *   group->AddStaticChild(node.node, &error);
 *   root->AddGroupChild(group, &error);
 *   node.shared->Release();
 *   group->Release();
 *   uint32_t committed = 0;
 *   root->Commit(&committed, &error);
 * @endcode
 * (Check every status; palvex/plugin_helpers.hpp wraps them into C++ exceptions.)
 *
 * Ownership. Every object a converter receives (from a Create operation or
 * FindChildGroup) comes with one reference for the converter, to be released when done.
 * Adding a child to a group gives the group a reference of its own: the converter still
 * releases its reference, and the child lives as long as the tree holds it. A node has at
 * most one parent. Objects are tied to the root that created them and cannot be added to
 * another root's tree.
 */
#ifndef PALVEX_PLUGIN_MODEL_HPP
#define PALVEX_PLUGIN_MODEL_HPP

#include <stdint.h>

#include "palvex/plugin_nodes.hpp"

namespace PX_PLUGIN {

class IMgjsonGroup_I;  // the library's own view of a group; opaque to converters
class IMgjsonGroup_v1;

/** The value of a new static node; which member counts depends on the kind. */
struct PX_StaticValue {
  double number;        ///< PX_STATIC_NUMBER: the value (finite)
  const char *text;     ///< PX_STATIC_STRING: the value, free text
  uint32_t textLength;  ///< PX_STATIC_STRING: bytes of text
  uint32_t boolean;     ///< PX_STATIC_BOOLEAN: the value (0 false)
};

/**
 * Views of one new static node: node and shared always, the view of its kind, null for
 * the other kinds. They are one object with one reference: release it once, through shared.
 */
struct PX_StaticDataNode {
  IMgjsonStaticData_v1 *node;                ///< for IMgjsonGroup_v1::AddStaticChild
  ISharedObject *shared;                     ///< Acquire / Release
  IMgjsonStaticDataNum_v1 *number;           ///< PX_STATIC_NUMBER
  IMgjsonStaticDataString_v1 *string;        ///< PX_STATIC_STRING
  IMgjsonStaticDataNumArr_v1 *numberArray;   ///< PX_STATIC_NUMBER_ARRAY
  IMgjsonStaticDataBool_v1 *boolean;         ///< PX_STATIC_BOOLEAN
};

/** Views of one new dynamic node, as PX_StaticDataNode. */
struct PX_DynamicDataNode {
  IMgjsonDynamicData_v1 *node;               ///< for IMgjsonGroup_v1::AddDynamicChild
  ISharedObject *shared;                     ///< Acquire / Release
  IMgjsonDynamicDataNum_v1 *number;          ///< PX_DYNAMIC_NUMBER
  IMgjsonDynamicDataString_v1 *string;       ///< PX_DYNAMIC_STRING
  IMgjsonDynamicDataNumArr_v1 *numberArray;  ///< PX_DYNAMIC_NUMBER_ARRAY
};

/**
 * A data group: an ordered list of children. Children are written in the order in which
 * they were added. Groups nest at most 40 deep (PX_PLUGIN_INVALID_ARGUMENT beyond, and for
 * a group added inside itself or the root added anywhere). Adding a child that already
 * has a parent, or adding after the root was committed, is PX_PLUGIN_WRONG_STATE.
 */
class IMgjsonGroup_v1 : public virtual ISharedObject {
 public:
  /**
   * Slot 0: appends a dynamic node. Null: PX_PLUGIN_CHILD_MISSING. A kind number other
   * than those of PX_DynamicKind: PX_PLUGIN_UNKNOWN_KIND. An object that is not the
   * library's node of the kind it reports: PX_PLUGIN_KIND_MISMATCH.
   */
  virtual uint32_t AddDynamicChild(IMgjsonDynamicData_v1 *child, PX_PluginError *error) = 0;
  /** Slot 1: appends a static node, with the checks of slot 0 (PX_StaticKind). */
  virtual uint32_t AddStaticChild(IMgjsonStaticData_v1 *child, PX_PluginError *error) = 0;
  /** Slot 2: appends a group (null: PX_PLUGIN_CHILD_MISSING; not the library's: PX_PLUGIN_KIND_MISMATCH). */
  virtual uint32_t AddGroupChild(IMgjsonGroup_v1 *child, PX_PluginError *error) = 0;
  /** Slot 3: the library's internal view of the group. Converters have no use for it. */
  virtual IMgjsonGroup_I *GetInternalGroup() = 0;
  /**
   * Slot 4: replaces the group's names (match name rule as for nodes). The root's names
   * are always "root": PX_PLUGIN_INVALID_ARGUMENT.
   */
  virtual uint32_t SetNames(const char *displayName, uint32_t displayNameLength,
                            const char *matchName, uint32_t matchNameLength,
                            PX_PluginError *error) = 0;
  /** Slot 5: the number of children added. Never fails. */
  virtual uint32_t GetChildCount() = 0;
  /**
   * Slot 6: the first direct child group with this match name, with one reference for the
   * caller. None: PX_PLUGIN_GROUP_MISSING and *group null.
   */
  virtual uint32_t FindChildGroup(const char *matchName, uint32_t matchNameLength,
                                  IMgjsonGroup_v1 **group, PX_PluginError *error) = 0;
};

/**
 * The root of a document: a group named "root" whose children form the file's data
 * outline, the file's time information and video sync list, its creator, and the
 * factories of every other object. The library creates it for the output file and hands
 * it to the converter.
 */
class IMgjsonRoot_v1 : public virtual IMgjsonGroup_v1 {
 public:
  /**
   * Slot 0: finishes the file. Writes the sample sets of the dynamic nodes in the tree
   * that were not completed yet, then the outline. *committed (may be null) is 1 when this
   * call wrote the file and 0 when the root was committed already (nothing is done then).
   * On failure the root stays uncommitted, the output file is left empty and the status is
   * returned: PX_PLUGIN_DUPLICATE_MATCH_NAME, PX_PLUGIN_NO_CHILDREN,
   * PX_PLUGIN_TIME_INFO_MISSING, or a file error + 1000.
   */
  virtual uint32_t Commit(uint32_t *committed, PX_PluginError *error) = 0;
  /**
   * Slot 1: makes the time information timecode at value / scale frames per second. The
   * nominal rate (rounded) must be 1 to 999; drop frame only at 29.97 and 59.94
   * (PX_PLUGIN_INVALID_ARGUMENT). Changing the time information after a sample was added
   * is PX_PLUGIN_WRONG_STATE.
   */
  virtual uint32_t SetTimecodeInfo(uint32_t dropFrame, uint32_t frameRateValue,
                                   uint32_t frameRateScale, PX_PluginError *error) = 0;
  /**
   * Slot 2: makes the time information UTC with precisionLength fraction digits (0 to 9,
   * else PX_PLUGIN_INVALID_ARGUMENT). With isGmt, times end in "Z"; otherwise in an
   * offset "+HH:MM" / "-HH:MM". Same state rule as slot 1.
   */
  virtual uint32_t SetUtcInfo(uint32_t precisionLength, uint32_t isGmt, PX_PluginError *error) = 0;
  /**
   * Slot 3: appends a video sync entry: a file name (free text) and a frame number (at most
   * 2^31 - 1). The list is written before the first sample set: adding to it once a sample
   * set was written, or after commit, is PX_PLUGIN_WRONG_STATE.
   */
  virtual uint32_t AddVideoSyncFrame(const char *fileName, uint32_t fileNameLength,
                                     uint32_t frameNumber, PX_PluginError *error) = 0;
  /** Slot 4: appends a video sync entry: a file name and a time text (both free texts); as slot 3. */
  virtual uint32_t AddVideoSyncTime(const char *fileName, uint32_t fileNameLength,
                                    const char *timeString, uint32_t timeStringLength,
                                    PX_PluginError *error) = 0;
  /** Slot 5: the creator text (free text; empty, the default, writes no creator). */
  virtual uint32_t SetCreator(const char *creator, uint32_t creatorLength, PX_PluginError *error) = 0;
  /**
   * Slot 6: announces whether the file will carry dynamic samples (default false). Adding
   * any sample announces them as well; a promise that no sample set keeps is withdrawn
   * from the file at commit.
   */
  virtual uint32_t SetDynamicSamplesPresent(uint32_t present, PX_PluginError *error) = 0;
  /** Slot 7: a new, empty group with these names (match name rule as for nodes). */
  virtual uint32_t CreateGroup(const char *displayName, uint32_t displayNameLength,
                               const char *matchName, uint32_t matchNameLength,
                               IMgjsonGroup_v1 **group, PX_PluginError *error) = 0;
  /**
   * Slot 8: a new static node of a kind (PX_StaticKind, else PX_PLUGIN_UNKNOWN_KIND) with
   * these names and value (value may be null for PX_STATIC_NUMBER_ARRAY only). *node
   * receives its views; on failure every view is null.
   */
  virtual uint32_t CreateStaticData(uint32_t kind, const char *displayName,
                                    uint32_t displayNameLength, const char *matchName,
                                    uint32_t matchNameLength, const PX_StaticValue *value,
                                    PX_StaticDataNode *node, PX_PluginError *error) = 0;
  /** Slot 9: a new dynamic node of a kind (PX_DynamicKind) with these names, as slot 8. */
  virtual uint32_t CreateDynamicData(uint32_t kind, const char *displayName,
                                     uint32_t displayNameLength, const char *matchName,
                                     uint32_t matchNameLength, PX_DynamicDataNode *node,
                                     PX_PluginError *error) = 0;
};

}  // namespace PX_PLUGIN

#endif  // PALVEX_PLUGIN_MODEL_HPP
