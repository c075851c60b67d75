// The scenarios both failure drivers run: each is one piece of work a host does through the
// public interfaces (open and query, convert, read a stream, save a copy, place), written
// so that it stops at the first reported error and still closes what it opened.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "failure/allocation_failure.hpp"
#include "palvex/host.hpp"

namespace palvex::failure {

namespace fs = std::filesystem;

// What a scenario works with during one run.
struct Session {
  IPalvex *manager = nullptr;  // null for scenarios that make their own
  std::string pluginFolder;    // where the bundled plug-in modules are
  fs::path inputs;             // folder of the input files
  fs::path output;             // folder the scenario may write into (placement, copies)
  palvex::host::ErrorLog log;
  std::string transcript;      // what the host saw; equal runs see equal transcripts

  bool Ok() const { return log.empty(); }
  // Makes one call into the library, its allocations counted; true when it reported nothing.
  template <class Body>
  bool Call(Body &&body) {
    {
      CountedScope counted;
      body();
    }
    return Ok();
  }
  void Note(const std::string &text) { transcript += text + "\n"; }
};

// What a failed run may leave in the output folder, by name: the content it had before,
// empty, or the result of a good run.
enum class OutputRule { NothingWritten, UntouchedOrResult, UntouchedEmptyOrResult };

struct Scenario {
  const char *name;
  void (*run)(Session &);
  bool ownsManager = false;  // makes and destroys its own manager
  bool plugins = false;      // the manager loads the bundled plug-ins
  std::vector<std::pair<std::string, std::string>> inputs = {};   // name, content
  std::vector<std::pair<std::string, std::string>> outputs = {};  // name, content before the run
  OutputRule outputRule = OutputRule::NothingWritten;
  const char *module = nullptr;  // plug-in module the scenario needs, or null
};

// Every scenario, built-in ones first; plug-in ones whose module is absent are left out
// with a line on standard output saying so.
const std::vector<Scenario> &Scenarios();

// Runs the scenario's host work in the session.
void RunScenario(const Scenario &scenario, Session &s);

// Where the program finds the bundled plug-in modules.
std::string PluginFolder();

}  // namespace palvex::failure
