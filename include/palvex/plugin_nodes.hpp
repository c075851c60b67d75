/**
 * @file plugin_nodes.hpp
 * The converter-side object model, first half: statuses, the shared-object base and the data
 * nodes (static and dynamic). palvex/plugin_model.hpp adds groups and the root; include
 * that one.
 *
 * Version 1 of these interfaces is frozen: the order of the virtual operations of each
 * interface, their argument types and the records below never change (docs/plugin-abi.md
 * lists every slot). A later version adds new interfaces.
 *
 * Rules for every operation of this model:
 * - No exception ever crosses an operation. An operation that can fail returns a status:
 *   0 on success, otherwise a code (PX_PluginStatus lists the codes of the model itself;
 *   a failure of the library's file layer or memory arrives as its library code + 1000).
 *   When the error pointer is not null the record receives the code and two detail values
 *   (-1 when not set); on success it receives {0, -1, -1}.
 * - Texts are UTF-8, given as a pointer and a byte count; they need no terminating NUL and
 *   are copied before the operation returns. A null pointer stands for the empty text when
 *   its length is 0 and is refused (PX_PLUGIN_INVALID_ARGUMENT) otherwise.
 * - Flags are uint32_t: 0 is false, anything else true.
 * - Numbers must be finite; NaN and infinities are refused (PX_PLUGIN_INVALID_ARGUMENT).
 * - Free texts (names other than match names, values, sample set IDs, the creator, ...)
 *   are stored ready for the file: quotation mark, backslash, backspace, tab, line feed,
 *   form feed and carriage return are escaped; every other byte below 0x20 becomes a space.
 */
#ifndef PALVEX_PLUGIN_NODES_HPP
#define PALVEX_PLUGIN_NODES_HPP

#include <stdint.h>

namespace PX_PLUGIN {

/** Error record filled by every operation that returns a status. */
struct PX_PluginError {
  uint32_t code;    ///< 0 on success, else the status returned
  int64_t detail1;  ///< first detail value, -1 when not set
  int64_t detail2;  ///< second detail value, -1 when not set
};

/** Statuses of the object model. Library failures arrive as their library code + 1000. */
enum PX_PluginStatus : uint32_t {
  PX_PLUGIN_OK = 0,                     ///< success
  PX_PLUGIN_UNKNOWN_FAILURE = 1023,     ///< a failure the library does not know
  PX_PLUGIN_OUT_OF_MEMORY = 1034,       ///< memory exhausted, or the disk full while writing
  PX_PLUGIN_NO_OUTPUT_PATH = 1505,      ///< a root was created without an output path
  PX_PLUGIN_CHILD_MISSING = 2001,       ///< a child to add is null or no longer known
  PX_PLUGIN_NODE_MISSING = 2002,        ///< a node of the tree is missing (commit)
  PX_PLUGIN_GROUP_MISSING = 2003,       ///< no child group has the match name looked up
  PX_PLUGIN_TRUNCATE_FAILED = 2004,     ///< the output could not be cut back after a failed sample set
  PX_PLUGIN_SAMPLES_UNREADABLE = 2014,  ///< a sample set cannot be read back from its storage
  PX_PLUGIN_KIND_MISMATCH = 2016,       ///< a node is not the library's object of its kind
  PX_PLUGIN_NO_CHILDREN = 2021,         ///< the root has nothing to write (commit)
  PX_PLUGIN_TIME_INFO_MISSING = 2024,   ///< dynamic samples without time information (commit)
  PX_PLUGIN_UNKNOWN_KIND = 2026,        ///< unknown node kind or interpolation
  PX_PLUGIN_INVALID_MATCH_NAME = 2027,  ///< a match name is not ASCII letters and digits starting with a letter
  PX_PLUGIN_DUPLICATE_MATCH_NAME = 2028,  ///< two nodes of the tree share a match name (commit)
  PX_PLUGIN_INVALID_ARGUMENT = 2029,    ///< an argument is out of its range (see the operation)
  PX_PLUGIN_TIME_MISMATCH = 2030,       ///< a sample time does not fit the root's time information
  PX_PLUGIN_WRONG_STATE = 2031          ///< the operation is not allowed any more (see the operation)
};

/** Kinds of static data node: the first operation of IMgjsonStaticData_v1 returns one. */
enum PX_StaticKind : uint32_t {
  PX_STATIC_NUMBER = 0,        ///< IMgjsonStaticDataNum_v1, written as "number"
  PX_STATIC_STRING = 1,        ///< IMgjsonStaticDataString_v1, written as "string"
  PX_STATIC_NUMBER_ARRAY = 2,  ///< IMgjsonStaticDataNumArr_v1, written as "numberArray"
  PX_STATIC_BOOLEAN = 3        ///< IMgjsonStaticDataBool_v1, written as "boolean"
};

/** Kinds of dynamic data node: the first operation of IMgjsonDynamicData_v1 returns one. */
enum PX_DynamicKind : uint32_t {
  PX_DYNAMIC_NUMBER = 0,       ///< IMgjsonDynamicDataNum_v1, written as "numberString"
  PX_DYNAMIC_STRING = 1,       ///< IMgjsonDynamicDataString_v1, written as "paddedString"
  PX_DYNAMIC_NUMBER_ARRAY = 2  ///< IMgjsonDynamicDataNumArr_v1, written as "numberStringArray"
};

/** Interpolation of a dynamic node between samples. */
enum PX_Interpolation : uint32_t {
  PX_INTERPOLATION_LINEAR = 1,  ///< "linear" (the default)
  PX_INTERPOLATION_HOLD = 2     ///< "hold"
};

class ISharedObject_I;  // the library's own view of an object; opaque to converters

/**
 * Base of every reference-counted object. The library hands out objects with one
 * reference counted for the receiver; release it when done. That reference is counted in
 * advance: the receiver's first Acquire is absorbed by it (pending acquire) and adds
 * nothing, so both "acquire on receipt, release when done" and "just release when done"
 * are balanced. Counts are atomic; Acquire and Release may be called from any thread.
 */
class ISharedObject {
 public:
  /** Slot 0: takes a reference (or consumes the pending one). Never fails. */
  virtual void Acquire() = 0;
  /** Slot 1: gives a reference back; giving back the last one destroys the object. */
  virtual void Release() = 0;
  /** Slot 2: the library's internal view of the object. Converters have no use for it. */
  virtual ISharedObject_I *GetInternalObject() = 0;

 protected:
  /** Slot 3 (two table entries under the Itanium layout). Only Release destroys. */
  virtual ~ISharedObject() = default;
};

/* ---- Static data nodes ------------------------------------------------------------------ */

/** Common view of a static data node; what IMgjsonGroup_v1::AddStaticChild takes. */
class IMgjsonStaticData_v1 {
 public:
  /** Slot 0: the node's kind (PX_StaticKind). Never fails. */
  virtual uint32_t GetKind() = 0;
  /**
   * Slot 1: replaces the node's names. The match name must be ASCII letters and digits
   * and not start with a digit (else PX_PLUGIN_INVALID_MATCH_NAME, nothing changed).
   */
  virtual uint32_t SetNames(const char *displayName, uint32_t displayNameLength,
                            const char *matchName, uint32_t matchNameLength,
                            PX_PluginError *error) = 0;

 protected:
  /** Slot 2 (two table entries). */
  virtual ~IMgjsonStaticData_v1() = default;
};

/**
 * A static number. Its value is given when it is created. Pattern and ranges default to
 * what the value needs (digits of its text; both ranges value to value).
 */
class IMgjsonStaticDataNum_v1 : public virtual IMgjsonStaticData_v1, public virtual ISharedObject {
 public:
  /** Slot 0: the number pattern, written as given. */
  virtual uint32_t SetPattern(uint32_t isSigned, int32_t digitsInteger, int32_t digitsDecimal,
                              PX_PluginError *error) = 0;
  /** Slot 1: the occurring and legal ranges, written as given (min above max is allowed). */
  virtual uint32_t SetRanges(double occurringMin, double occurringMax, double legalMin,
                             double legalMax, PX_PluginError *error) = 0;
};

/**
 * A static string. Its value is given when it is created; its padded-string properties
 * default to the value's length, the digit count of that length, and no event marker.
 */
class IMgjsonStaticDataString_v1 : public virtual IMgjsonStaticData_v1, public virtual ISharedObject {
 public:
  /** Slot 0: the padded-string properties, written as given. */
  virtual uint32_t SetPaddedStringProperties(uint32_t maxLength, uint32_t maxDigitsInLength,
                                             uint32_t eventMarker, PX_PluginError *error) = 0;
};

/** A static Boolean: its value is fixed when it is created, so it has no operation. */
class IMgjsonStaticDataBool_v1 : public virtual IMgjsonStaticData_v1, public virtual ISharedObject {};

/**
 * A static number array: elements are appended one by one, each with its value and its
 * display name; each element's ranges default to its value. The file needs at least one
 * element. The pattern defaults to what the values need.
 */
class IMgjsonStaticDataNumArr_v1 : public virtual IMgjsonStaticData_v1, public virtual ISharedObject {
 public:
  /** Slot 0: the number pattern, written as given. */
  virtual uint32_t SetPattern(uint32_t isSigned, int32_t digitsInteger, int32_t digitsDecimal,
                              PX_PluginError *error) = 0;
  /** Slot 1: appends an element: its value and its display name (free text). */
  virtual uint32_t AddElement(double value, const char *displayName, uint32_t displayNameLength,
                              PX_PluginError *error) = 0;
  /** Slot 2: the occurring range of element index (PX_PLUGIN_INVALID_ARGUMENT past the end). */
  virtual uint32_t SetElementOccurringRange(uint32_t index, double min, double max,
                                            PX_PluginError *error) = 0;
  /** Slot 3: the legal range of element index (PX_PLUGIN_INVALID_ARGUMENT past the end). */
  virtual uint32_t SetElementLegalRange(uint32_t index, double min, double max,
                                        PX_PluginError *error) = 0;
  /** Slot 4: marks the array as a point ("isPoint", written only when true). */
  virtual uint32_t SetPoint(uint32_t isPoint, PX_PluginError *error) = 0;
  /** Slot 5: the number of elements. Never fails. */
  virtual uint32_t GetElementCount() = 0;
};

/* ---- Dynamic data nodes ----------------------------------------------------------------- */

/**
 * Common view of a dynamic data node; what IMgjsonGroup_v1::AddDynamicChild takes.
 *
 * Sample times. Each kind adds samples in two forms, matching the root's time information
 * (set it first; PX_PLUGIN_TIME_MISMATCH otherwise):
 * - at a frame: a frame number counted from 00:00:00:00 at the root's frame rate; the
 *   library writes its timecode (drop-frame labels when the root says so). Frames beyond
 *   24 hours are refused (PX_PLUGIN_INVALID_ARGUMENT).
 * - at a UTC instant: a base UTC text "YYYY-MM-DDTHH:MM:SS[.fraction]" followed by "Z" or
 *   "+HH:MM" / "-HH:MM", plus offsetNumerator / offsetDenominator seconds. The library
 *   writes base + offset with the root's precision; offset digits below that precision
 *   are dropped, and the base's zone is kept. The base may have fewer fraction digits than
 *   the root's precision but not more, and must end in "Z" exactly when the root says GMT
 *   (PX_PLUGIN_TIME_MISMATCH otherwise). An unreadable base or a zero denominator is
 *   PX_PLUGIN_INVALID_ARGUMENT.
 * Samples keep the order in which they are added; add them in time order.
 *
 * Adding a sample after the node's samples are complete, or changing what the file's
 * outline says of the node (sample set ID, pattern, components, properties) after its
 * sample set was written, is PX_PLUGIN_WRONG_STATE.
 */
class IMgjsonDynamicData_v1 {
 public:
  /** Slot 0: the node's kind (PX_DynamicKind). Never fails. */
  virtual uint32_t GetKind() = 0;
  /** Slot 1: replaces the node's names (match name rule as for static nodes). */
  virtual uint32_t SetNames(const char *displayName, uint32_t displayNameLength,
                            const char *matchName, uint32_t matchNameLength,
                            PX_PluginError *error) = 0;
  /**
   * Slot 2: the sample set ID (free text). Until it is set, the match name at the time
   * the sample set is written serves as ID.
   */
  virtual uint32_t SetSampleSetId(const char *id, uint32_t idLength, PX_PluginError *error) = 0;
  /** Slot 3: PX_Interpolation; any other value is PX_PLUGIN_UNKNOWN_KIND. */
  virtual uint32_t SetInterpolation(uint32_t interpolation, PX_PluginError *error) = 0;
  /** Slot 4: whether samples come at an expected frequency (default false). */
  virtual uint32_t SetHasExpectedFrequency(uint32_t hasExpectedFrequency, PX_PluginError *error) = 0;
  /**
   * Slot 5: the expected maximum time between samples, a free text written as given. A
   * null pointer removes it (the default: the file then has no such entry).
   */
  virtual uint32_t SetExpectedMaxInterSampleDuration(const char *duration, uint32_t durationLength,
                                                     PX_PluginError *error) = 0;
  /**
   * Slot 6: declares the samples complete; the library writes the node's sample set to the
   * output file now and frees the memory it held. A node with no sample writes nothing; a
   * second call does nothing. Only a node in the root's tree can be completed, and only
   * before the root is committed (PX_PLUGIN_WRONG_STATE otherwise). A node that is never
   * completed is completed by the root's commit. After a failed write the node is left out
   * of the file and the error is returned.
   */
  virtual uint32_t CompleteSamples(PX_PluginError *error) = 0;

 protected:
  /** Slot 7 (two table entries). */
  virtual ~IMgjsonDynamicData_v1() = default;
};

/**
 * A dynamic number. Each sample value is written in plain decimal (no exponent), padded to
 * the node's pattern: the pattern given is a minimum that the samples widen (sign, digits
 * before and after the point). The ranges default to the smallest and largest sample.
 */
class IMgjsonDynamicDataNum_v1 : public virtual IMgjsonDynamicData_v1, public virtual ISharedObject {
 public:
  /** Slot 0: the least pattern (sign forced when isSigned; negative digit counts are 0). */
  virtual uint32_t SetPattern(uint32_t isSigned, int32_t digitsInteger, int32_t digitsDecimal,
                              PX_PluginError *error) = 0;
  /** Slot 1: the occurring and legal ranges, written as given. */
  virtual uint32_t SetRanges(double occurringMin, double occurringMax, double legalMin,
                             double legalMax, PX_PluginError *error) = 0;
  /** Slot 2: appends a sample at a frame (see IMgjsonDynamicData_v1). */
  virtual uint32_t AddSampleAtFrame(uint64_t frame, double value, PX_PluginError *error) = 0;
  /** Slot 3: appends a sample at base + offset seconds (see IMgjsonDynamicData_v1). */
  virtual uint32_t AddSampleAtUtc(const char *utcBase, uint32_t utcBaseLength,
                                  uint32_t offsetNumerator, uint32_t offsetDenominator,
                                  double value, PX_PluginError *error) = 0;
  /** Slot 4: the number of samples added. Never fails. */
  virtual uint64_t GetSampleCount() = 0;
};

/**
 * A dynamic string. Each sample value is a free text. The padded-string properties given
 * are minimums that the samples widen (longest value, digits of its length).
 */
class IMgjsonDynamicDataString_v1 : public virtual IMgjsonDynamicData_v1, public virtual ISharedObject {
 public:
  /** Slot 0: least maximum length and digit count, and the event-marker flag. */
  virtual uint32_t SetPaddedStringProperties(uint32_t maxLength, uint32_t maxDigitsInLength,
                                             uint32_t eventMarker, PX_PluginError *error) = 0;
  /** Slot 1: appends a sample at a frame. */
  virtual uint32_t AddSampleAtFrame(uint64_t frame, const char *text, uint32_t textLength,
                                    PX_PluginError *error) = 0;
  /** Slot 2: appends a sample at base + offset seconds. */
  virtual uint32_t AddSampleAtUtc(const char *utcBase, uint32_t utcBaseLength,
                                  uint32_t offsetNumerator, uint32_t offsetDenominator,
                                  const char *text, uint32_t textLength, PX_PluginError *error) = 0;
  /** Slot 3: the number of samples added. Never fails. */
  virtual uint64_t GetSampleCount() = 0;
};

/**
 * A dynamic number array. Components (display name and ranges) are declared before the
 * first sample; every sample then carries exactly one value per component. Values are
 * written as for IMgjsonDynamicDataNum_v1; a component's ranges default to its smallest
 * and largest value.
 */
class IMgjsonDynamicDataNumArr_v1 : public virtual IMgjsonDynamicData_v1, public virtual ISharedObject {
 public:
  /** Slot 0: the least pattern, as IMgjsonDynamicDataNum_v1::SetPattern. */
  virtual uint32_t SetPattern(uint32_t isSigned, int32_t digitsInteger, int32_t digitsDecimal,
                              PX_PluginError *error) = 0;
  /** Slot 1: appends a component with its display name (free text). */
  virtual uint32_t AddComponent(const char *displayName, uint32_t displayNameLength,
                                PX_PluginError *error) = 0;
  /** Slot 2: the occurring range of component index (PX_PLUGIN_INVALID_ARGUMENT past the end). */
  virtual uint32_t SetComponentOccurringRange(uint32_t index, double min, double max,
                                              PX_PluginError *error) = 0;
  /** Slot 3: the legal range of component index. */
  virtual uint32_t SetComponentLegalRange(uint32_t index, double min, double max,
                                          PX_PluginError *error) = 0;
  /** Slot 4: marks the array as a point ("isPoint", written only when true). */
  virtual uint32_t SetPoint(uint32_t isPoint, PX_PluginError *error) = 0;
  /** Slot 5: the number of components. Never fails. */
  virtual uint32_t GetComponentCount() = 0;
  /** Slot 6: appends a sample of valueCount values (the component count) at a frame. */
  virtual uint32_t AddSampleAtFrame(uint64_t frame, const double *values, uint32_t valueCount,
                                    PX_PluginError *error) = 0;
  /** Slot 7: appends a sample of valueCount values at base + offset seconds. */
  virtual uint32_t AddSampleAtUtc(const char *utcBase, uint32_t utcBaseLength,
                                  uint32_t offsetNumerator, uint32_t offsetDenominator,
                                  const double *values, uint32_t valueCount,
                                  PX_PluginError *error) = 0;
  /** Slot 8: the number of samples added. Never fails. */
  virtual uint64_t GetSampleCount() = 0;
};

}  // namespace PX_PLUGIN

#endif  // PALVEX_PLUGIN_NODES_HPP
