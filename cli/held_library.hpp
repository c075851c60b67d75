// The library as the tool holds it for a whole run: the first creation of the manager,
// with the plug-in folder, made before the command runs so that the plug-in reports of
// that creation are told once, as warnings. The command's own creations then share the
// manager; the last release, here, unloads the plug-ins.
#pragma once

#include <string>

#include "commands.hpp"
#include "palvex/host.hpp"

namespace palvex::cli {

// The plug-in folder used without --plugins: <program folder>/../lib/palvex/plugins when
// it exists (an installed tool), else <program folder>/plugins when that exists (the
// build tree); else none.
std::string DefaultPluginFolder();

class HeldLibrary {
 public:
  // Creates the manager. Reports of a successful creation (plug-ins that could not be
  // used) are printed as "palvex: warning <code>: <message>"; a failed creation's as
  // errors.
  explicit HeldLibrary(const GlobalOptions &options);
  ~HeldLibrary();
  HeldLibrary(const HeldLibrary &) = delete;
  HeldLibrary &operator=(const HeldLibrary &) = delete;

  bool ok() const { return manager_ != nullptr; }

  // Releases the manager; prints what the release reported as errors and returns the
  // exit status (kExitOk when nothing was reported).
  int Release();

 private:
  IPalvex *manager_ = nullptr;
};

}  // namespace palvex::cli
