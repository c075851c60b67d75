/* A host written in C11 against the public headers only: it opens a file, walks its data
 * outline, and prints the samples of the first dynamic node between two times.
 *
 *   walk_host FILE [START END]
 *
 * START and END are seconds from the file's time origin, as N or N/D (2/3 is two thirds);
 * without them the whole sample set is printed, from its first sample time to its last.
 * Errors arrive through this host's own callback as "error <code>: <message>"; the program
 * then ends with status 1 (2 for a bad command line). Build: see examples/CMakeLists.txt. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "palvex/c_vtables.h"
#include "palvex/palvex.h"

/* Small on purpose: the bundled example files then take several pages, so the paging of
 * print_samples runs whenever the example does. A real host would use thousands. */
enum { SAMPLES_PER_PAGE = 2 };

/* ---- The host's records: the library only passes pointers to them back ------------------ */

/* The error context: how many reports arrived. */
typedef struct ErrorLog {
  unsigned count;
} ErrorLog;

/* Only the final item of each child's path is kept: this host already knows the parent. */
struct PX_GroupChildren {
  uint32_t *indices;
  size_t count;
  size_t capacity;
  int outOfMemory;
};

struct PX_GroupChildInfo {
  uint32_t nodeType;
  char *displayName;
  char *matchName;
};

typedef struct Seconds {
  uint32_t value, scale; /* value / scale seconds; scale 0: unknown */
} Seconds;

struct PX_DynamicDataInfo {
  char *sampleSetId;
  uint32_t sampleCount;
  Seconds first, last;
};

/* One page of a sample query: what to ask for, and what came. */
struct DynamicDataSampleSet {
  uint32_t skip;
  uint32_t delivered;
  uint32_t setSampleCount;
};

/* ---- Callbacks ------------------------------------------------------------------------------ */

static char *copy_text(const char *text, uint32_t length) {
  char *copy = malloc((size_t)length + 1);
  if (copy) {
    if (length) memcpy(copy, text, length);
    copy[length] = '\0';
  }
  return copy;
}

static void add_path_item(PX_GroupChildren *children, const char *name, uint32_t index,
                          uint32_t pathCount, uint32_t lastItem) {
  (void)name;
  if (!lastItem || children->outOfMemory) return;
  if (children->count == children->capacity) {
    size_t capacity = children->capacity ? children->capacity * 2 : (pathCount ? pathCount : 4);
    uint32_t *grown = realloc(children->indices, capacity * sizeof *grown);
    if (!grown) {
      children->outOfMemory = 1;
      return;
    }
    children->indices = grown;
    children->capacity = capacity;
  }
  children->indices[children->count++] = index;
}

static void set_group_child_info(PX_GroupChildInfo *info, uint32_t nodeType, const char *displayName,
                                 uint32_t displayNameLength, const char *matchName,
                                 uint32_t matchNameLength) {
  info->nodeType = nodeType;
  info->displayName = copy_text(displayName, displayNameLength);
  info->matchName = copy_text(matchName, matchNameLength);
}

static void set_dynamic_data_info(PX_DynamicDataInfo *info, const char *displayName,
                                  uint32_t displayNameLength, const char *matchName,
                                  uint32_t matchNameLength, const char *sampleSetId,
                                  uint32_t sampleSetIdLength, const PX_DataType *dataType,
                                  uint32_t interpolation, uint32_t hasExpectedFrequency,
                                  uint32_t sampleCount, const char *maxInterSampleDuration,
                                  uint32_t maxInterSampleDurationLength, const PX_TimeRange *times) {
  (void)displayName, (void)displayNameLength, (void)matchName, (void)matchNameLength;
  (void)dataType, (void)interpolation, (void)hasExpectedFrequency;
  (void)maxInterSampleDuration, (void)maxInterSampleDurationLength;
  info->sampleSetId = copy_text(sampleSetId, sampleSetIdLength);
  info->sampleCount = sampleCount;
  if (times) {
    info->first = (Seconds){times->first.numerator, times->first.denominator};
    info->last = (Seconds){times->last.numerator, times->last.denominator};
  }
}

static void read_sample_request(void *record, PX_SampleRequest *request) {
  DynamicDataSampleSet *page = record;
  page->setSampleCount = request->setSampleCount;
  request->skip = page->skip;
  request->limit = SAMPLES_PER_PAGE;
}

/* Printed as it arrives: the pointers are valid only during this call. */
static void add_sample(void *record, uint32_t position, uint32_t count, const PX_Time *time,
                       const PX_SampleValue *value, uint8_t flags) {
  DynamicDataSampleSet *page = record;
  (void)count;
  printf("  #%u %.*s (%u/%u s) %.*s%s\n", (unsigned)(page->skip + position), (int)time->textLength,
         time->text, (unsigned)time->numerator, (unsigned)time->denominator, (int)value->textLength,
         value->text, (flags & PX_SAMPLE_REVERSED) ? " [descending]" : "");
  page->delivered++;
}

static void report_error(PX_ErrorContext context, uint32_t code, const char *message,
                         int64_t detail1, int64_t detail2) {
  (void)detail1, (void)detail2;
  fprintf(stderr, "error %u: %s\n", (unsigned)code, message);
  if (context) ((ErrorLog *)context)->count++;
}

/* Entries this host does not serve stay null: it never runs the queries that need them. */
static const PX_GroupChildrenFunctions group_children_functions = {add_path_item};
static const PX_ClientCallbacks callbacks = {
    .groupChildren = &group_children_functions,
    .setDynamicDataInfo = set_dynamic_data_info,
    .setGroupChildInfo = set_group_child_info,
    .addSample = add_sample,
    .readSampleRequest = read_sample_request,
    .reportError = report_error,
};

/* ---- The walk ------------------------------------------------------------------------------- */

static const char *kind_name(uint32_t nodeType) {
  switch (nodeType) {
    case PX_NODE_GROUP: return "group";
    case PX_NODE_DYNAMIC: return "dynamic";
    case PX_NODE_STATIC: return "static";
    default: return "other";
  }
}

typedef struct Walk {
  ISensorFileHandler *file;
  ErrorLog *errors;
  char *firstDynamicPath; /* the first dynamic node met, in outline order */
} Walk;

static int walk_children(Walk *walk, const char *parentPath, int depth);

/* Prints one node and, for a group, everything below it. Returns 0 after an error. */
static int walk_node(Walk *walk, const char *path, int depth) {
  const PX_FileHandlerVtable *file = PX_FileHandlerTable(walk->file);
  const unsigned reports = walk->errors->count;
  PX_GroupChildInfo info = {PX_NODE_OTHER, NULL, NULL};
  file->GetGroupChildInfo(walk->file, path, &info, walk->errors);
  int ok = walk->errors->count == reports;
  if (ok && (!info.displayName || !info.matchName)) {
    fprintf(stderr, "out of memory\n");
    ok = 0;
  }
  if (ok) {
    printf("%*s%s %s \"%s\" (%s)\n", depth * 2, "", path, kind_name(info.nodeType), info.displayName,
           info.matchName);
    if (info.nodeType == PX_NODE_DYNAMIC && !walk->firstDynamicPath)
      walk->firstDynamicPath = copy_text(path, (uint32_t)strlen(path));
    if (info.nodeType == PX_NODE_GROUP) ok = walk_children(walk, path, depth + 1);
  }
  free(info.displayName);
  free(info.matchName);
  return ok;
}

/* A child's path is its parent's path and the child's position, e.g. "[1][0]". */
static int walk_children(Walk *walk, const char *parentPath, int depth) {
  const PX_FileHandlerVtable *file = PX_FileHandlerTable(walk->file);
  const unsigned reports = walk->errors->count;
  PX_GroupChildren children = {NULL, 0, 0, 0};
  if (*parentPath)
    file->GetGroupChildren(walk->file, parentPath, &children, walk->errors);
  else
    file->GetRootChildren(walk->file, &children, walk->errors);
  int ok = walk->errors->count == reports;
  if (ok && children.outOfMemory) {
    fprintf(stderr, "out of memory\n");
    ok = 0;
  }
  const size_t pathSize = strlen(parentPath) + sizeof "[4294967295]";
  char *path = ok ? malloc(pathSize) : NULL;
  if (ok && !path) {
    fprintf(stderr, "out of memory\n");
    ok = 0;
  }
  for (size_t at = 0; ok && at < children.count; ++at) {
    snprintf(path, pathSize, "%s[%u]", parentPath, (unsigned)children.indices[at]);
    ok = walk_node(walk, path, depth);
  }
  free(path);
  free(children.indices);
  return ok;
}

/* Every sample of the set between start and end, one page at a time until a page comes
 * back short. */
static int print_samples(ISensorFileHandler *handler, const char *sampleSetId, Seconds start,
                         Seconds end, ErrorLog *errors) {
  const PX_FileHandlerVtable *file = PX_FileHandlerTable(handler);
  printf("samples of \"%s\" from %u/%u s to %u/%u s:\n", sampleSetId, (unsigned)start.value,
         (unsigned)start.scale, (unsigned)end.value, (unsigned)end.scale);
  DynamicDataSampleSet page = {0, 0, 0};
  do {
    const unsigned reports = errors->count;
    page.delivered = 0;
    file->GetSampleSet(handler, sampleSetId, start.value, start.scale, end.value, end.scale, &page,
                       errors);
    if (errors->count != reports) return 0;
    page.skip += page.delivered;
  } while (page.delivered == SAMPLES_PER_PAGE);
  printf("%u of %u samples\n", (unsigned)page.skip, (unsigned)page.setSampleCount);
  return 1;
}

/* The dynamic node at path: its sample set, printed between the given times or, without
 * them, between its first and last sample time. */
static int print_dynamic_node(ISensorFileHandler *handler, const char *path, const Seconds *times,
                              ErrorLog *errors) {
  const unsigned reports = errors->count;
  PX_DynamicDataInfo info = {NULL, 0, {0, 0}, {0, 0}};
  PX_FileHandlerTable(handler)->GetDynamicDataInfo(handler, path, &info, errors);
  int ok = errors->count == reports;
  if (ok && !info.sampleSetId) {
    fprintf(stderr, "out of memory\n");
    ok = 0;
  }
  if (ok && !times && info.first.scale == 0) {
    printf("sample set \"%s\" has no samples\n", info.sampleSetId);
  } else if (ok) {
    const Seconds start = times ? times[0] : info.first;
    const Seconds end = times ? times[1] : info.last;
    ok = print_samples(handler, info.sampleSetId, start, end, errors);
  }
  free(info.sampleSetId);
  return ok;
}

/* ---- Command line --------------------------------------------------------------------------- */

/* "N" or "N/D" with 32-bit unsigned parts; the library refuses a scale of 0 itself. */
static int parse_seconds(const char *text, Seconds *out) {
  char *end = NULL;
  unsigned long value = strtoul(text, &end, 10);
  unsigned long scale = 1;
  if (end == text || *text == '-' || value > UINT32_MAX) return 0;
  if (*end == '/') {
    const char *denominator = end + 1;
    scale = strtoul(denominator, &end, 10);
    if (end == denominator || *denominator == '-' || scale > UINT32_MAX) return 0;
  }
  if (*end != '\0') return 0;
  *out = (Seconds){(uint32_t)value, (uint32_t)scale};
  return 1;
}

int main(int argc, char **argv) {
  Seconds times[2];
  if (!(argc == 2 || (argc == 4 && parse_seconds(argv[2], &times[0]) &&
                      parse_seconds(argv[3], &times[1])))) {
    fprintf(stderr, "usage: walk_host FILE [START END]   (seconds as N or N/D)\n");
    return 2;
  }
  ErrorLog errors = {0};
  IPalvex *manager = NULL;
  CreatePalvex_1(&manager, NULL, NULL, NULL, &errors, &callbacks, NULL);
  if (!manager) return 1;
  const PX_PalvexVtable *palvex = PX_PalvexTable(manager);

  ISensorFileHandler *file = NULL;
  palvex->OpenFile(manager, &file, argv[1], NULL, &errors);
  int ok = file != NULL && errors.count == 0;
  if (ok) {
    Walk walk = {file, &errors, NULL};
    ok = walk_children(&walk, "", 0);
    if (ok && walk.firstDynamicPath)
      ok = print_dynamic_node(file, walk.firstDynamicPath, argc == 4 ? times : NULL, &errors);
    else if (ok)
      printf("no dynamic node\n");
    free(walk.firstDynamicPath);
  }
  if (file) palvex->CloseFile(manager, &file, &errors);
  DestroyPalvex_1(&manager, &errors);
  return ok && errors.count == 0 ? 0 : 1;
}
