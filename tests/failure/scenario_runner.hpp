// One scenario run under an injected failure, and every check that follows it: the error
// reported, what is left in the output, temporary and input folders, the manager's table of
// open files and set of streams, open descriptors, and a normal run right after.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>

#include "failure/scenario.hpp"
#include "platform/file_test_support.hpp"

namespace palvex::failure {

// Decides whether one error report is what the injected failure may end in.
using ErrorAccepted = std::function<bool(const palvex::host::Error &)>;

// Checks a kind of injected failure makes meaningless: a failing close closes nothing
// where the system would; a file whose deletion fails (or whose path check fails on the way
// to the deletion) stays, and one the system says is not there (while it is) is not deleted.
struct Leniency {
  bool descriptorsMayStay = false;
  bool filesMayStay = false;
};

class ScenarioRunner {
 public:
  // Runs the scenario once without failures to learn what a good run sees and writes.
  explicit ScenarioRunner(const Scenario &scenario);
  ~ScenarioRunner();

  // Runs the scenario with arm() called just before and disarm() right after (it returns
  // whether the failure was injected). *hit receives that answer; the result is empty when
  // every check held, else what went wrong.
  std::string RunOnce(const std::function<void()> &arm, const std::function<bool()> &disarm,
                      const ErrorAccepted &accepted, bool *hit, Leniency leniency = {});

  // The first problem of the unarmed run made by the constructor; empty when it was clean.
  const std::string &baselineProblem() const { return baselineProblem_; }

 private:
  using Files = std::map<std::string, std::string>;
  void PrepareFolders();
  std::string CheckOutputs(bool failed) const;
  std::string CheckFolders() const;

  const Scenario &scenario_;
  palvex::testing::ScratchFolder root_;
  fs::path temp_, inputs_, output_;
  std::optional<palvex::testing::ScopedEnvironment> tempVariable_;
  std::string baselineTranscript_;
  Files baselineOutputs_;
  std::string baselineProblem_;
  bool learning_ = false;  // the constructor's run, which sets the baseline
};

}  // namespace palvex::failure
