/**
 * @file export.h
 * Export macro, calling convention and version numbers of the Palvex ABI.
 */
#ifndef PALVEX_EXPORT_H
#define PALVEX_EXPORT_H

/** Version of the exported interface; the exported functions carry it as their suffix. */
#define PALVEX_ABI_VERSION 1

/** Marks the five exported functions. One macro for every compiler, mingw included. */
#if defined(_WIN32)
#  if defined(PALVEX_BUILDING_LIBRARY)
#    define PALVEX_API __declspec(dllexport)
#  else
#    define PALVEX_API __declspec(dllimport)
#  endif
#else
#  if defined(PALVEX_BUILDING_LIBRARY)
#    define PALVEX_API __attribute__((visibility("default")))
#  else
#    define PALVEX_API
#  endif
#endif

#ifdef __cplusplus
#  define PALVEX_EXTERN_C_BEGIN extern "C" {
#  define PALVEX_EXTERN_C_END }
#else
#  define PALVEX_EXTERN_C_BEGIN
#  define PALVEX_EXTERN_C_END
#endif

#endif /* PALVEX_EXPORT_H */
