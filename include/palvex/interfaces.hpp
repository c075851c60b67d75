/**
 * @file interfaces.hpp
 * The C++ interfaces of the library: the manager (IPalvex), an opened MGJSON file
 * (ISensorFileHandler) and a produced MGJSON file (IMgjsonStream).
 *
 * Every operation exists in two forms on the same virtual table. The raising form works
 * on library records and throws; it is for code built into the library's own runtime
 * (the library itself and its tests), and hosts cannot even construct its records. The
 * client form takes host records and an error context, delivers through the callback
 * table, reports every failure through entry 11 and never throws. Hosts call the client
 * forms.
 *
 * The slot order of each interface is part of the ABI and never changes; a later
 * version appends. Slots count operations; in the virtual table itself the destructor
 * takes two entries, so a C caller uses palvex/c_vtables.h, which numbers the entries.
 */
#ifndef PALVEX_INTERFACES_HPP
#define PALVEX_INTERFACES_HPP

#include <cstdint>

#include "palvex/palvex.h"

/** Library-side records of the raising forms; defined inside the library only. */
namespace ns_sensor {
struct PX_GroupChildren;
struct PX_GroupChildInfo;
struct PX_StaticDataInfo;
struct PX_DynamicDataInfo;
struct DynamicDataSampleSet;
struct PX_FileInfo;
struct PX_VideoSyncTimeList;
struct PX_DynamicSampleInfo;
struct PX_Text;
}  // namespace ns_sensor

/**
 * An opened MGJSON file. Obtained from IPalvex::OpenFile, given back with IPalvex::CloseFile.
 *
 * Data paths name a node of the data outline: a sequence of bracketed items, each a
 * position ("[2]") or a double-quoted match name ("[\"speed\"]"), from the outline's top.
 * Times are given as value / scale seconds from the file's time origin (see PX_Time).
 */
class ISensorFileHandler {
 public:
  /* ---- raising forms, slots 0 to 9 ---- */
  /** Slot 0: the children of the outline's root. */
  virtual void GetRootChildren(ns_sensor::PX_GroupChildren *children) = 0;
  /** Slot 1: the children of the group at dataPath. */
  virtual void GetGroupChildren(const char *dataPath, ns_sensor::PX_GroupChildren *children) = 0;
  /** Slot 2: type code, display name and match name of the node at dataPath (last item by position). */
  virtual void GetGroupChildInfo(const char *dataPath, ns_sensor::PX_GroupChildInfo *info) = 0;
  /** Slot 3: the static node at dataPath. */
  virtual void GetStaticDataInfo(const char *dataPath, ns_sensor::PX_StaticDataInfo *info) = 0;
  /** Slot 4: the dynamic node at dataPath. */
  virtual void GetDynamicDataInfo(const char *dataPath, ns_sensor::PX_DynamicDataInfo *info) = 0;
  /**
   * Slot 5: the samples of a sample set whose times lie between the two times, both
   * included. With start after end the samples come in descending time order. A selection
   * without samples is refused with code 21.
   */
  virtual void GetSampleSet(const char *sampleSetId, uint32_t startValue, uint32_t startScale,
                            uint32_t endValue, uint32_t endScale,
                            ns_sensor::DynamicDataSampleSet *samples) = 0;
  /**
   * Slot 6: as slot 5, plus the nearest sample before the range and the nearest after it
   * when they exist, so that a host can interpolate at both ends.
   */
  virtual void GetSampleSetWithNeighbours(const char *sampleSetId, uint32_t startValue,
                                          uint32_t startScale, uint32_t endValue,
                                          uint32_t endScale,
                                          ns_sensor::DynamicDataSampleSet *samples) = 0;
  /** Slot 7: file-level information. */
  virtual void GetFileInfo(ns_sensor::PX_FileInfo *info) = 0;
  /** Slot 8: the video synchronisation list. */
  virtual void GetVideoSyncTimeList(ns_sensor::PX_VideoSyncTimeList *list) = 0;
  /**
   * Slot 9: a block of samples of a sample set. With byIndex non-zero, first is the
   * index of the first sample and second the number of samples, in file order (cut at the
   * end of the set); otherwise first and second are the start and end time in milliseconds
   * from the file's time origin, both included. An empty block is no error.
   */
  virtual void GetDynamicSampleInfo(const char *sampleSetId, uint32_t first, uint32_t second,
                                    uint32_t byIndex, ns_sensor::PX_DynamicSampleInfo *info) = 0;

 protected:
  /** Slot 10. Handlers are destroyed by the manager, never by the host. */
  virtual ~ISensorFileHandler() = default;

 public:
  /* ---- client forms, slots 11 to 20, in the same order ---- */
  /** Slot 11: entry 0. */
  virtual void GetRootChildren(PX_GroupChildren *children, PX_ErrorContext errorContext) = 0;
  /** Slot 12: entry 0. */
  virtual void GetGroupChildren(const char *dataPath, PX_GroupChildren *children,
                                PX_ErrorContext errorContext) = 0;
  /** Slot 13: entry 4. */
  virtual void GetGroupChildInfo(const char *dataPath, PX_GroupChildInfo *info,
                                 PX_ErrorContext errorContext) = 0;
  /** Slot 14: entry 2. */
  virtual void GetStaticDataInfo(const char *dataPath, PX_StaticDataInfo *info,
                                 PX_ErrorContext errorContext) = 0;
  /** Slot 15: entry 3. */
  virtual void GetDynamicDataInfo(const char *dataPath, PX_DynamicDataInfo *info,
                                  PX_ErrorContext errorContext) = 0;
  /** Slot 16: entry 9 once, then entry 5 per sample. */
  virtual void GetSampleSet(const char *sampleSetId, uint32_t startValue, uint32_t startScale,
                            uint32_t endValue, uint32_t endScale, DynamicDataSampleSet *samples,
                            PX_ErrorContext errorContext) = 0;
  /** Slot 17: entry 9 once, then entry 5 per sample. */
  virtual void GetSampleSetWithNeighbours(const char *sampleSetId, uint32_t startValue,
                                          uint32_t startScale, uint32_t endValue,
                                          uint32_t endScale, DynamicDataSampleSet *samples,
                                          PX_ErrorContext errorContext) = 0;
  /** Slot 18: entry 6. */
  virtual void GetFileInfo(PX_FileInfo *info, PX_ErrorContext errorContext) = 0;
  /** Slot 19: entry 7 per list entry. */
  virtual void GetVideoSyncTimeList(PX_VideoSyncTimeList *list, PX_ErrorContext errorContext) = 0;
  /** Slot 20: entry 9 once, then entry 5 per sample. */
  virtual void GetDynamicSampleInfo(const char *sampleSetId, uint32_t first, uint32_t second,
                                    uint32_t byIndex, PX_DynamicSampleInfo *info,
                                    PX_ErrorContext errorContext) = 0;
};

/**
 * A produced MGJSON file, handed out by IPalvex::CreateMgjsonStream and given back with
 * IPalvex::ReleaseMgjsonStream.
 */
class IMgjsonStream {
 public:
  /**
   * Slot 0: zero-fills the first *size bytes of buffer, reads min(remaining, *size) bytes
   * into it and returns that count.
   */
  virtual uint32_t Read(uint8_t *buffer, uint32_t *size) = 0;
  /** Slot 1: copies the produced file to path, replacing what is there. */
  virtual void SaveCopy(const char *path) = 0;
  /** Slot 2: appends the produced file's path to path. */
  virtual void GetPath(ns_sensor::PX_Text *path) = 0;
  /** Slot 3: size of the produced file in bytes. */
  virtual uint32_t GetTotalSize() = 0;
  /** Slot 4: bytes not read yet. */
  virtual uint32_t GetRemainingSize() = 0;
  /** Slot 5: moves the read position to the start; the remaining count stays as it is. */
  virtual int64_t Rewind() = 0;

 protected:
  /** Slot 6. Streams are destroyed by the manager, never by the host. */
  virtual ~IMgjsonStream() = default;

 public:
  /** Slot 7: as slot 0; returns 0 after a reported failure. */
  virtual uint32_t Read(uint8_t *buffer, uint32_t *size, PX_ErrorContext errorContext) = 0;
  /** Slot 8: as slot 1. */
  virtual void SaveCopy(const char *path, PX_ErrorContext errorContext) = 0;
  /** Slot 9: delivers the path through entry 10. */
  virtual void GetPath(PX_HostString *path, PX_ErrorContext errorContext) = 0;
  /** Slot 10: as slot 5; returns -1 after a reported failure. */
  virtual int64_t Rewind(PX_ErrorContext errorContext) = 0;
};

/**
 * The manager, obtained from CreatePalvex_1. Paths are UTF-8.
 */
class IPalvex {
 public:
  /**
   * Slot 0: opens path as an MGJSON file, converting it first when it is another format.
   * Opening one path twice yields the same handler. With outputLocation (an existing
   * folder), the MGJSON file is also placed there.
   */
  virtual void OpenFile(ISensorFileHandler **handler, const char *path,
                        const char *outputLocation) = 0;
  /** Slot 1: closes one open; the last close destroys the handler and nulls *handler. */
  virtual void CloseFile(ISensorFileHandler **handler) = 0;
  /** Slot 2: converts path to MGJSON (when needed) and hands the result out as a stream. */
  virtual void CreateMgjsonStream(IMgjsonStream **stream, const char *path, bool validate) = 0;
  /** Slot 3: destroys a stream and nulls *stream. */
  virtual void ReleaseMgjsonStream(IMgjsonStream **stream) = 0;

 protected:
  /** Slot 4. The manager is destroyed by DestroyPalvex_1, never by the host. */
  virtual ~IPalvex() = default;

 public:
  /** Slot 5: client form of slot 0. */
  virtual void OpenFile(ISensorFileHandler **handler, const char *path, const char *outputLocation,
                        PX_ErrorContext errorContext) = 0;
  /** Slot 6: client form of slot 1. */
  virtual void CloseFile(ISensorFileHandler **handler, PX_ErrorContext errorContext) = 0;
  /** Slot 7: client form of slot 2; any non-zero validate counts as true. */
  virtual void CreateMgjsonStream(IMgjsonStream **stream, const char *path, uint32_t validate,
                                  PX_ErrorContext errorContext) = 0;
  /** Slot 8: client form of slot 3. */
  virtual void ReleaseMgjsonStream(IMgjsonStream **stream, PX_ErrorContext errorContext) = 0;
};

#endif  // PALVEX_INTERFACES_HPP
