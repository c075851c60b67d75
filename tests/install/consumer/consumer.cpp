// Opens an MGJSON file through an installed library and prints how many top-level nodes
// its outline has: enough to show that headers, library and package fit together.
#include <cstdio>

#include "palvex/host.hpp"

int main(int argc, char **argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: consumer FILE\n");
    return 2;
  }
  palvex::host::Library library;
  palvex::host::ErrorLog errors;
  ISensorFileHandler *file = nullptr;
  library.manager()->OpenFile(&file, argv[1], nullptr, &errors);
  if (file != nullptr) {
    PX_GroupChildren children;
    file->GetRootChildren(&children, &errors);
    std::printf("top-level nodes: %zu\n", children.paths.size());
    library.manager()->CloseFile(&file, &errors);
  }
  for (const auto &error : errors.errors) std::fprintf(stderr, "error %u: %s\n", error.code, error.message.c_str());
  return errors.empty() ? 0 : 1;
}
