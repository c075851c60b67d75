/**
 * @file c_vtables.h
 * The virtual tables of IPalvex, ISensorFileHandler and IMgjsonStream as C structures, so
 * that a host written in C can call the client forms without a C++ shim.
 *
 * The first pointer-sized word of every object the library hands out points at its table;
 * the table holds one function pointer per virtual function, in declaration order
 * (palvex/interfaces.hpp). A client form is called like a free function whose first
 * argument is the object itself:
 *
 * @code
 *   PX_PalvexTable(manager)->OpenFile(manager, &file, path, NULL, &errors);
 *   PX_FileHandlerTable(file)->GetRootChildren(file, &children, &errors);
 * @endcode
 *
 * **Numbering.** The library is built by g++ (mingw-w64 on Windows), which lays tables out
 * by the x86-64 C++ ABI shared by both: a virtual destructor takes two entries, one that
 * destroys the object and one that also frees it. The slot numbers in interfaces.hpp
 * count the destructor once, so every client form sits one entry after its slot number:
 *
 * | interface            | raising forms | destructor | client forms | slots in interfaces.hpp |
 * |----------------------|---------------|------------|--------------|-------------------------|
 * | IPalvex              | entries 0-3   | 4 and 5    | 6-9          | 5-8                     |
 * | ISensorFileHandler   | entries 0-9   | 10 and 11  | 12-21        | 11-20                   |
 * | IMgjsonStream        | entries 0-5   | 6 and 7    | 8-11         | 7-10                    |
 *
 * A host calls the client forms only: the raising forms throw C++ exceptions, and the
 * destructors belong to the manager (CloseFile, ReleaseMgjsonStream, DestroyPalvex_1).
 * Their entries are typed PX_VtableEntry so that nobody calls them by accident.
 *
 * The calling convention is that of 64-bit targets, where a member function takes its
 * object as a hidden first argument exactly like a free function's first parameter.
 */
#ifndef PALVEX_C_VTABLES_H
#define PALVEX_C_VTABLES_H

#include <stddef.h>
#include <stdint.h>
#include <string.h>

#include "palvex/palvex.h"

#if defined(_WIN32) && !defined(_WIN64)
#  error "32-bit Windows passes the object in a register of its own (thiscall); these tables need a 64-bit target"
#endif

#ifdef __cplusplus
class ISensorFileHandler;
class IMgjsonStream;
#else
/** An opened MGJSON file; call it through PX_FileHandlerTable. */
typedef struct ISensorFileHandler ISensorFileHandler;
/** A produced MGJSON file; call it through PX_MgjsonStreamTable. */
typedef struct IMgjsonStream IMgjsonStream;
#endif

PALVEX_EXTERN_C_BEGIN

/** An entry a host never calls (a raising form or a destructor). */
typedef void (*PX_VtableEntry)(void);

/** The table of IPalvex. */
typedef struct PX_PalvexVtable {
  PX_VtableEntry raisingForms[4];     /**< entries 0-3 */
  PX_VtableEntry completeDestructor;  /**< entry 4 */
  PX_VtableEntry deletingDestructor;  /**< entry 5 */
  /** Entry 6: opens path, converting it first when it is not MGJSON; outputLocation may be null. */
  void (*OpenFile)(IPalvex *self, ISensorFileHandler **handler, const char *path,
                   const char *outputLocation, PX_ErrorContext errorContext);
  /** Entry 7: closes one open; the last close destroys the handler and nulls *handler. */
  void (*CloseFile)(IPalvex *self, ISensorFileHandler **handler, PX_ErrorContext errorContext);
  /** Entry 8: converts path (when needed) and hands the MGJSON result out as a stream. */
  void (*CreateMgjsonStream)(IPalvex *self, IMgjsonStream **stream, const char *path,
                             uint32_t validate, PX_ErrorContext errorContext);
  /** Entry 9: destroys a stream and nulls *stream. */
  void (*ReleaseMgjsonStream)(IPalvex *self, IMgjsonStream **stream, PX_ErrorContext errorContext);
} PX_PalvexVtable;

/** The table of ISensorFileHandler. Data paths and times as documented in interfaces.hpp. */
typedef struct PX_FileHandlerVtable {
  PX_VtableEntry raisingForms[10];    /**< entries 0-9 */
  PX_VtableEntry completeDestructor;  /**< entry 10 */
  PX_VtableEntry deletingDestructor;  /**< entry 11 */
  /** Entry 12: the children of the outline's root, through callback entry 0. */
  void (*GetRootChildren)(ISensorFileHandler *self, PX_GroupChildren *children,
                          PX_ErrorContext errorContext);
  /** Entry 13: the children of the group at dataPath, through callback entry 0. */
  void (*GetGroupChildren)(ISensorFileHandler *self, const char *dataPath,
                           PX_GroupChildren *children, PX_ErrorContext errorContext);
  /** Entry 14: type, display name and match name of a node, through callback entry 4. */
  void (*GetGroupChildInfo)(ISensorFileHandler *self, const char *dataPath,
                            PX_GroupChildInfo *info, PX_ErrorContext errorContext);
  /** Entry 15: a static node, through callback entry 2. */
  void (*GetStaticDataInfo)(ISensorFileHandler *self, const char *dataPath,
                            PX_StaticDataInfo *info, PX_ErrorContext errorContext);
  /** Entry 16: a dynamic node, through callback entry 3. */
  void (*GetDynamicDataInfo)(ISensorFileHandler *self, const char *dataPath,
                             PX_DynamicDataInfo *info, PX_ErrorContext errorContext);
  /** Entry 17: samples between two times, through callback entries 9 and 5. */
  void (*GetSampleSet)(ISensorFileHandler *self, const char *sampleSetId, uint32_t startValue,
                       uint32_t startScale, uint32_t endValue, uint32_t endScale,
                       DynamicDataSampleSet *samples, PX_ErrorContext errorContext);
  /** Entry 18: as entry 17, plus the nearest sample on either side of the range. */
  void (*GetSampleSetWithNeighbours)(ISensorFileHandler *self, const char *sampleSetId,
                                     uint32_t startValue, uint32_t startScale, uint32_t endValue,
                                     uint32_t endScale, DynamicDataSampleSet *samples,
                                     PX_ErrorContext errorContext);
  /** Entry 19: file-level information, through callback entry 6. */
  void (*GetFileInfo)(ISensorFileHandler *self, PX_FileInfo *info, PX_ErrorContext errorContext);
  /** Entry 20: the video sync list, through callback entry 7. */
  void (*GetVideoSyncTimeList)(ISensorFileHandler *self, PX_VideoSyncTimeList *list,
                               PX_ErrorContext errorContext);
  /** Entry 21: a block of samples by index or by milliseconds, through callback entries 9 and 5. */
  void (*GetDynamicSampleInfo)(ISensorFileHandler *self, const char *sampleSetId, uint32_t first,
                               uint32_t second, uint32_t byIndex, PX_DynamicSampleInfo *info,
                               PX_ErrorContext errorContext);
} PX_FileHandlerVtable;

/** The table of IMgjsonStream. */
typedef struct PX_MgjsonStreamVtable {
  PX_VtableEntry raisingForms[6];     /**< entries 0-5 */
  PX_VtableEntry completeDestructor;  /**< entry 6 */
  PX_VtableEntry deletingDestructor;  /**< entry 7 */
  /** Entry 8: reads up to *size bytes into buffer and returns the count; 0 after a failure. */
  uint32_t (*Read)(IMgjsonStream *self, uint8_t *buffer, uint32_t *size,
                   PX_ErrorContext errorContext);
  /** Entry 9: copies the produced file to path, replacing what is there. */
  void (*SaveCopy)(IMgjsonStream *self, const char *path, PX_ErrorContext errorContext);
  /** Entry 10: the produced file's path, through callback entry 10. */
  void (*GetPath)(IMgjsonStream *self, PX_HostString *path, PX_ErrorContext errorContext);
  /** Entry 11: back to the start; -1 after a failure. */
  int64_t (*Rewind)(IMgjsonStream *self, PX_ErrorContext errorContext);
} PX_MgjsonStreamVtable;

/* The entry numbers above are the ABI: make the compiler hold the structures to them. */
#ifdef __cplusplus
#  define PX_VTABLE_ENTRY_AT(type, member, entry) \
    static_assert(offsetof(type, member) == (entry) * sizeof(PX_VtableEntry), #type " " #member)
#else
#  define PX_VTABLE_ENTRY_AT(type, member, entry) \
    _Static_assert(offsetof(type, member) == (entry) * sizeof(PX_VtableEntry), #type " " #member)
#endif
PX_VTABLE_ENTRY_AT(PX_PalvexVtable, OpenFile, 6);
PX_VTABLE_ENTRY_AT(PX_PalvexVtable, ReleaseMgjsonStream, 9);
PX_VTABLE_ENTRY_AT(PX_FileHandlerVtable, GetRootChildren, 12);
PX_VTABLE_ENTRY_AT(PX_FileHandlerVtable, GetDynamicSampleInfo, 21);
PX_VTABLE_ENTRY_AT(PX_MgjsonStreamVtable, Read, 8);
PX_VTABLE_ENTRY_AT(PX_MgjsonStreamVtable, Rewind, 11);
#undef PX_VTABLE_ENTRY_AT

/* The table pointer is read with memcpy: the object is a C++ object that C cannot name. */

/** The table of a manager from CreatePalvex_1. */
static inline const PX_PalvexVtable *PX_PalvexTable(IPalvex *manager) {
  const PX_PalvexVtable *table;
  memcpy(&table, (const void *)manager, sizeof table);
  return table;
}
/** The table of a handler from OpenFile. */
static inline const PX_FileHandlerVtable *PX_FileHandlerTable(ISensorFileHandler *handler) {
  const PX_FileHandlerVtable *table;
  memcpy(&table, (const void *)handler, sizeof table);
  return table;
}
/** The table of a stream from CreateMgjsonStream. */
static inline const PX_MgjsonStreamVtable *PX_MgjsonStreamTable(IMgjsonStream *stream) {
  const PX_MgjsonStreamVtable *table;
  memcpy(&table, (const void *)stream, sizeof table);
  return table;
}

PALVEX_EXTERN_C_END

#endif /* PALVEX_C_VTABLES_H */
