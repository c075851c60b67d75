/* A minimal host written in C: it lists the supported formats, opens the manager with a
 * locale, and prints a localised message. Build: see examples/CMakeLists.txt. */
#include <stdio.h>
#include <string.h>

#include "palvex/palvex.h"

/* The host completes the records it uses. */
struct PX_SupportedFormatList {
  int count;
};
struct PX_HostString {
  char text[512];
};

static void add_format(PX_SupportedFormatList *list, const char *extension, const char *name) {
  printf("%s\t%s\n", extension, name);
  list->count++;
}

static void set_string(PX_HostString *string, const char *text, uint32_t length) {
  if (length >= sizeof string->text) length = sizeof string->text - 1;
  memcpy(string->text, text, length);
  string->text[length] = '\0';
}

static void report_error(PX_ErrorContext context, uint32_t code, const char *message, int64_t detail1,
                         int64_t detail2) {
  (void)detail1;
  (void)detail2;
  fprintf(stderr, "%s: error %u: %s\n", (const char *)context, (unsigned)code, message);
}

int main(int argc, char **argv) {
  const char *locale = argc > 1 ? argv[1] : "en_US";
  /* Entries this host does not serve stay null; the library never calls them then. */
  static const PX_ClientCallbacks callbacks = {
      .addSupportedFormat = add_format,
      .setString = set_string,
      .reportError = report_error,
  };
  PX_SupportedFormatList formats = {0};
  GetSupportedFormats_1(&formats, "formats", &callbacks);

  IPalvex *manager = NULL;
  const PX_ServiceTable *service = NULL;
  CreatePalvex_1(&manager, NULL, NULL, locale, "create", &callbacks, &service);

  PX_HostString text;
  text.text[0] = '\0';
  GetLocalizedErrorMsg_1("$$$/PXError/FileNotExist=File not exist at input path:^1.", "/data/run.csv", NULL,
                         NULL, NULL, &text);
  printf("%s\n", text.text);

  DestroyPalvex_1(&manager, "destroy");
  return formats.count == 6 && manager == NULL ? 0 : 1;
}
