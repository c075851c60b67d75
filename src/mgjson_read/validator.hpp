// Shape checks of what the scanner built: the data outline, the time information and, in
// schema version 2, dynamicDataInfo. A check changes nothing; the first property that is
// missing, of the wrong JSON type or outside its allowed values raises PX_Exception naming
// the property and the path where it lies (no offset).
//
// Paths: an outline item is dataOutline[i]; once its displayName is known the node's path
// gets ":" and the name; a child is <node>/children[i]; an object inside a node is
// <path>/<name>; an array item inside a node is <path>/<array name>[i]. Time information
// uses its top-level name, the frame rate object "timecodeInfo::frameRate".
#pragma once

#include <span>
#include <string_view>

#include "mgjson_read/check_path.hpp"
#include "mgjson_read/rapidjson_config.hpp"
#include "mgjson_read/text_table.hpp"

namespace ns_sensor {

// Match names seen so far in one outline, at any depth; they view the outline's document.
using MatchNameSet = TextTable;

class PX_MgjsonValidator {
 public:
  // Which property object a dataType type calls for.
  enum class PropertyCheck { NumberString, PaddedString, NumberArray, None };
  struct TypeRule {
    std::string_view type;
    PropertyCheck check;
  };

  virtual ~PX_MgjsonValidator() = default;

  virtual void ValidateUtcInfo(const JsonValue &utcInfo) const;
  virtual void ValidateTimecodeInfo(const JsonValue &timecodeInfo) const;
  virtual void ValidateDataOutline(const JsonValue &outline) const;
  virtual void ValidateVideoSyncTimeList(const JsonValue &list) const;

  // Primitive checks. `name` is the property's name; `path` where it lies, empty when
  // there is no path (the fault then uses the message without one).
  virtual const JsonValue &GetRequiredMember(const JsonValue &object, std::string_view name,
                                             const CheckPath &path) const;
  // The member under `first`, else under `second`; a fault names `second`.
  virtual const JsonMember &GetRequiredMemberEither(const JsonValue &object,
                                                    std::string_view first,
                                                    std::string_view second,
                                                    const CheckPath &path) const;
  virtual void ExpectObject(const JsonValue &value, std::string_view name,
                            const CheckPath &path = CheckPath()) const;
  virtual void ExpectArray(const JsonValue &value, std::string_view name,
                           const CheckPath &path = CheckPath()) const;
  virtual void ExpectString(const JsonValue &value, std::string_view name,
                            const CheckPath &path = CheckPath()) const;
  virtual void ExpectNumber(const JsonValue &value, std::string_view name,
                            const CheckPath &path = CheckPath()) const;
  virtual void ExpectBoolean(const JsonValue &value, std::string_view name,
                             const CheckPath &path = CheckPath()) const;
  virtual void ExpectNonEmptyArray(const JsonValue &value, std::string_view name,
                                   const CheckPath &path = CheckPath()) const;

  // Outline nodes; `path` is the node's path before its display name is appended.
  virtual void ValidateGroupNode(const JsonValue &node, const CheckPath &path,
                                 MatchNameSet &matchNames) const;
  virtual void ValidateStaticNode(const JsonValue &node, const CheckPath &path,
                                  MatchNameSet &matchNames) const = 0;
  virtual void ValidateDynamicNode(const JsonValue &node, const CheckPath &path,
                                   MatchNameSet &matchNames) const = 0;
  // The node's path with ":" and the display name appended; it points at `path`.
  virtual CheckPath ValidateDisplayName(const JsonValue &node, const CheckPath &path) const;
  virtual void ValidateMatchName(const JsonValue &node, const CheckPath &path,
                                 MatchNameSet &matchNames) const;

  // Property objects; each receives the object that holds the checked member and its path.
  virtual void ValidateNumberStringProperties(const JsonValue &dataType,
                                              const CheckPath &path) const;
  virtual void ValidatePaddedStringProperties(const JsonValue &dataType,
                                              const CheckPath &path) const;
  virtual void ValidateNumberArrayProperties(const JsonValue &dataType,
                                             const CheckPath &path) const;
  virtual void ValidatePattern(const JsonValue &holder, const CheckPath &path) const;
  virtual void ValidateArraySize(const JsonValue &holder, const CheckPath &path) const;
  virtual void ValidateArrayDisplayNames(const JsonValue &holder, const CheckPath &path) const;
  virtual void ValidateArrayRanges(const JsonValue &holder, const CheckPath &path) const;
  // One range object: occurring (or occuring) and legal.
  virtual void ValidateRange(const JsonValue &range, const CheckPath &path) const;
  virtual void ValidateNumberMinMax(const JsonValue &minMax, const CheckPath &path) const;

  // Members of a dynamic node.
  virtual void ValidateSampleSetId(const JsonValue &node, const CheckPath &path) const;
  virtual void ValidateInterpolation(const JsonValue &node, const CheckPath &path) const;
  virtual void ValidateHasExpectedFrequency(const JsonValue &node, const CheckPath &path) const;
  virtual void ValidateSampleCount(const JsonValue &node, const CheckPath &path) const;

 protected:
  // An outline item or a group's child: an object whose objectType picks the node check.
  void ValidateNode(const JsonValue &node, std::string_view name, const CheckPath &path,
                    MatchNameSet &matchNames) const;
  // dataType with one of `rules` and its property object; returns the type.
  std::string_view ValidateDataType(const JsonValue &node, const CheckPath &path,
                                    std::span<const TypeRule> rules,
                                    std::string_view allowedText) const;
  // Everything of a dynamic node; the versions differ only in `rules`.
  void ValidateDynamicNodeWith(const JsonValue &node, const CheckPath &path, MatchNameSet &matchNames,
                               std::span<const TypeRule> rules,
                               std::string_view allowedText) const;
  // A non-empty array whose items pass `expectItem`; item paths are <path>/<name>[i].
  void ValidateItems(const JsonValue &array, std::string_view name, const CheckPath &path,
                     void (PX_MgjsonValidator::*expectItem)(const JsonValue &, std::string_view,
                                                            const CheckPath &) const) const;
};

class PX_MgjsonValidator_v1 : public PX_MgjsonValidator {
 public:
  void ValidateStaticNode(const JsonValue &node, const CheckPath &path,
                          MatchNameSet &matchNames) const override;
  void ValidateDynamicNode(const JsonValue &node, const CheckPath &path,
                           MatchNameSet &matchNames) const override;
};

class PX_MgjsonValidator_v2 : public PX_MgjsonValidator {
 public:
  void ValidateStaticNode(const JsonValue &node, const CheckPath &path,
                          MatchNameSet &matchNames) const override;
  void ValidateDynamicNode(const JsonValue &node, const CheckPath &path,
                           MatchNameSet &matchNames) const override;
  // useTimecodeB first, then timecodeInfo or utcInfo, and an optional sync list.
  void ValidateDynamicDataInfo(const JsonValue &dynamicDataInfo) const;
};

}  // namespace ns_sensor
