/**
 * @file plugin_abi.hpp
 * The plug-in ABI, version 1: the entry point a converter module exports, the function
 * table it fills, and the host interface table through which it reaches the library's
 * object model (palvex/plugin_model.hpp). Plug-in authors include palvex/plugin_kit.hpp,
 * which includes this header.
 *
 * Version 1 is frozen: the order, types and meaning of every slot below never change. A
 * later library may append slots to the host interface table; its size member tells how
 * many there are, so a plug-in built against this header keeps working.
 *
 * Rules that hold for every call in either direction:
 * - No exception crosses a call. Failures travel in error records (PX_PluginError):
 *   the library sets code 0 and both details to -1 before each call into the plug-in; the
 *   plug-in sets a non-zero code, and optionally the details, to report a failure. The
 *   library passes the code and details on to the host unchanged.
 * - Texts are UTF-8 and NUL-terminated unless a length is given with them. They belong to
 *   the caller and are valid for the duration of the call.
 * - Calls come from the thread of the host that asked for the conversion, one conversion
 *   at a time.
 */
#ifndef PALVEX_PLUGIN_ABI_HPP
#define PALVEX_PLUGIN_ABI_HPP

#include <stdint.h>

#include "palvex/plugin_model.hpp"

/** The version of the tables below, as the library writes it into their headers. */
#define PX_PLUGIN_INTERFACE_VERSION 1

namespace PX_PLUGIN {

/** The result record of a conversion. */
struct PX_PluginResult {
  uint32_t success;  ///< set by the plug-in: non-zero when the MGJSON file was written
};

/**
 * The converter a call is about. One module may carry several converters (the elements
 * of its manifest's "converter" array); the library names the one it means.
 */
struct PX_ConverterContext {
  uint32_t size;                    ///< sizeof(PX_ConverterContext) as the library knows it
  const char *moduleIdentifier;     ///< the module's "MODULE_IDENTIFIER" text
  const char *converterIdentifier;  ///< the converter's manifest "identifier"
  const char *converterName;        ///< the converter's name chosen for the library's locale
  const char *locale;               ///< the library's locale, for example "fr_FR"
};

/** A conversion session, made by the plug-in; the library only passes it back. */
typedef void *PX_PluginSession;

/** Slot 2: ends the plug-in before the library frees the module. */
typedef void (*PX_TerminatePluginFn)(PX_PluginError *error);

/**
 * Slot 3: starts a conversion session for one input. The plug-in makes whatever state the
 * conversion needs and returns it in *session (its value is the plug-in's own; null is
 * allowed). outputPath is where the MGJSON file must be written, through a root made with
 * PX_HostInterface_v1::createRoot. extension is the input's extension, lower-case,
 * without the dot.
 */
typedef void (*PX_InitializeSessionFn)(const PX_ConverterContext *converter, const char *inputPath,
                                       const char *extension, const char *outputPath,
                                       PX_PluginSession *session, PX_PluginError *error);

/** Slot 4: ends a session (after its conversion, or without one); frees its state. */
typedef void (*PX_TerminateSessionFn)(PX_PluginSession session, PX_PluginError *error);

/**
 * Slot 5: whether the converter can read the input. Called only after every "check_format"
 * signature of the converter's manifest matched. *result: non-zero for yes (the library
 * sets it to 0 before the call).
 */
typedef void (*PX_CheckFileFormatFn)(const PX_ConverterContext *converter, const char *inputPath,
                                     PX_PluginError *error, uint32_t *result);

/**
 * Slot 6: converts the session's input to MGJSON at the session's output path. Set
 * result->success when the file was written (the root committed). A failure is reported
 * with a code in the error record; no success without an error reads as "nothing
 * convertible" (code 1506 for the host).
 */
typedef void (*PX_ConvertToMgjsonFn)(PX_PluginSession session, PX_PluginError *error,
                                     PX_PluginResult *result);

/** Slot 1 of the function table. */
struct PX_PluginTableHeader {
  uint32_t size;     ///< set by the library: 48, the size of PX_PluginFunctions_v1
  uint32_t version;  ///< set by the library: 1
};

/**
 * The plug-in function table: six pointer-sized slots. The library zeroes it, writes the
 * header and hands it to InitializePlugin, which fills slots 2 to 6. A slot left null is
 * treated as a call that reports success and, for a check or a conversion, "no".
 */
struct PX_PluginFunctions_v1 {
  PX_PluginTableHeader header;             ///< slot 1
  PX_TerminatePluginFn terminatePlugin;    ///< slot 2
  PX_InitializeSessionFn initializeSession;  ///< slot 3
  PX_TerminateSessionFn terminateSession;  ///< slot 4
  PX_CheckFileFormatFn checkFileFormat;    ///< slot 5
  PX_ConvertToMgjsonFn convertToMgjson;    ///< slot 6
};

/**
 * The host interface table, version 1: what a plug-in needs beyond the object model's own
 * operations. The root's factories (IMgjsonRoot_v1 slots 7 to 9) make groups and every
 * static and dynamic node; IMgjsonRoot_v1::Commit writes the file.
 */
struct PX_HostInterface_v1 {
  uint32_t size;     ///< bytes of this table as the library fills it (later versions may append slots)
  uint32_t version;  ///< 1

  /**
   * Slot 1: makes the document root that writes the MGJSON file at outputPath (the path
   * given to initializeSession) with creator as the file's creator (the converter's
   * identifier is the usual choice). *root receives the root with one reference for the
   * plug-in. Status 0, or PX_PLUGIN_NO_OUTPUT_PATH for an empty path,
   * PX_PLUGIN_INVALID_ARGUMENT for a null root pointer, PX_PLUGIN_OUT_OF_MEMORY.
   */
  uint32_t (*createRoot)(const char *outputPath, uint32_t outputPathLength, const char *creator,
                         uint32_t creatorLength, IMgjsonRoot_v1 **root, PX_PluginError *error);

  /**
   * Slot 2: lets go of a root made by slot 1, committed or not, and of the plug-in's
   * reference to it; nodes the plug-in still holds stay valid until it releases them.
   * Call it once per root instead of root->Release(). A root that a session leaves behind
   * is let go of when the session ends. Status 0, or PX_PLUGIN_CHILD_MISSING for a root
   * the library did not make or already let go of.
   */
  uint32_t (*releaseRoot)(IMgjsonRoot_v1 *root, PX_PluginError *error);

  /** Slot 3: the library's locale, for example "en_US" (the locale of its messages). */
  const char *(*locale)(void);
};

/**
 * The entry point every plug-in module exports under the C name "InitializePlugin".
 * Called once when the module is loaded (at the first conversion that needs it), with the
 * module's "MODULE_IDENTIFIER" text, the host interface table (valid until the module is
 * terminated), the function table to fill and an error record: a non-zero code refuses
 * the load (code 1500 for the host) and the module is not loaded again.
 */
typedef void (*PX_InitializePluginFn)(const char *moduleIdentifier, const PX_HostInterface_v1 *host,
                                      PX_PluginFunctions_v1 *functions, PX_PluginError *error);

#if UINTPTR_MAX == 0xFFFFFFFFFFFFFFFFu
static_assert(sizeof(PX_PluginFunctions_v1) == 48, "the function table has six pointer-sized slots");
#endif

}  // namespace PX_PLUGIN

#endif  // PALVEX_PLUGIN_ABI_HPP
