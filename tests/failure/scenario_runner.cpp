#include "failure/scenario_runner.hpp"

#include <mutex>

#include "api/manager_lifetime.hpp"
#include "api/palvex_impl.hpp"
#include "support/test_host.hpp"

namespace palvex::failure {
namespace {

using palvex::testing::ReadWholeFile;

std::string PathText(const fs::path &path) {
  const std::u8string text = path.u8string();
  return std::string(text.begin(), text.end());
}

std::map<std::string, std::string> FilesIn(const fs::path &folder) {
  std::map<std::string, std::string> files;
  for (const auto &entry : fs::directory_iterator(folder)) {
    files[entry.path().filename().string()] = ReadWholeFile(PathText(entry.path()));
  }
  return files;
}

std::string Describe(const palvex::host::ErrorLog &log) {
  std::string text;
  for (const auto &error : log.errors) {
    text += "[" + std::to_string(error.code) + " " + error.message + " d1=" + std::to_string(error.detail1) + "]";
  }
  return text;
}

// The manager's own bookkeeping after the scenario closed and released everything.
std::string CheckManager(IPalvex *manager) {
  if (!std::unique_lock(ns_sensor::GlobalMutex(), std::try_to_lock).owns_lock()) return "the manager's mutex is still held";
  if (manager == nullptr) return ns_sensor::ManagerUseCount() == 0 ? "" : "a manager use is left";
  const auto *impl = dynamic_cast<const ns_sensor::PalvexImpl *>(manager);
  if (!impl->openFiles().OpenCounts().empty()) return "the table of open files is not empty";
  if (impl->streamCount() != 0) return "the set of streams is not empty";
  return ns_sensor::ManagerUseCount() == 1 ? "" : "the manager's use count is off";
}

}  // namespace

ScenarioRunner::ScenarioRunner(const Scenario &scenario) : scenario_(scenario) {
  temp_ = root_.root() / "temp";
  inputs_ = root_.root() / "inputs";
  output_ = root_.root() / "output";
  fs::create_directories(temp_);
  tempVariable_.emplace(palvex::testing::kTempFolderVariable, PathText(temp_).c_str());
  learning_ = true;
  bool hit = false;
  baselineProblem_ = RunOnce([] {}, [] { return false; }, [](const palvex::host::Error &) { return false; }, &hit);
  learning_ = false;
}

ScenarioRunner::~ScenarioRunner() = default;

void ScenarioRunner::PrepareFolders() {
  for (const fs::path &folder : {inputs_, output_}) {
    fs::remove_all(folder);
    fs::create_directories(folder);
  }
  for (const auto &[name, content] : scenario_.inputs) root_.WriteFile("inputs/" + name, content);
  for (const auto &[name, content] : scenario_.outputs) root_.WriteFile("output/" + name, content);
}

std::string ScenarioRunner::RunOnce(const std::function<void()> &arm, const std::function<bool()> &disarm,
                                    const ErrorAccepted &accepted, bool *hit, Leniency leniency) {
  PrepareFolders();
  fs::remove_all(temp_);
  fs::create_directories(temp_);
  const std::size_t descriptors = palvex::testing::OpenDescriptorCount();
  Session session;
  session.pluginFolder = PluginFolder();
  session.inputs = inputs_;
  session.output = output_;
  palvex::host::ErrorLog setup;
  if (!scenario_.ownsManager) {
    CreatePalvex_1(&session.manager, scenario_.plugins ? session.pluginFolder.c_str() : nullptr, nullptr, nullptr,
                   &setup, palvex::testing::TestCallbacks(), nullptr);
    if (!setup.empty()) return "the manager could not be made: " + Describe(setup);
  }
  arm();
  RunScenario(scenario_, session);
  *hit = disarm();
  if (learning_) {
    baselineTranscript_ = session.transcript;
    baselineOutputs_ = FilesIn(output_);
  }

  std::string problem;
  const auto fail = [&](const std::string &what) {
    if (problem.empty()) problem = what;
  };
  if (!*hit) {
    if (!session.Ok()) fail("an error without an injected failure: " + Describe(session.log));
  } else if (session.Ok()) {
    // A failure the library absorbed is fine when the host saw what a good run sees.
    if (session.transcript != baselineTranscript_) fail("no error reported, yet the host saw something else");
  } else if (session.log.errors.size() != 1 || !accepted(session.log.errors.front())) {
    fail("reported " + Describe(session.log));
  }
  if ((*hit || !session.Ok()) && !leniency.filesMayStay) fail(CheckOutputs(!session.Ok()));
  fail(CheckManager(session.manager));
  fail(CheckFolders());

  // The next normal call works and sees what a good run sees.
  if (problem.empty() && (*hit || !session.Ok())) {
    PrepareFolders();
    Session again;
    again.pluginFolder = session.pluginFolder;
    again.inputs = inputs_;
    again.output = output_;
    again.manager = session.manager;
    RunScenario(scenario_, again);
    if (!again.Ok()) fail("the next normal run failed: " + Describe(again.log));
    if (again.transcript != baselineTranscript_) fail("the next normal run saw something else");
    fail(CheckManager(again.manager));
    fail(CheckFolders());
  }
  if (session.manager != nullptr) DestroyPalvex_1(&session.manager, &setup);
  if (!setup.empty()) fail("destroying the manager reported " + Describe(setup));
  if (!leniency.filesMayStay && !fs::is_empty(temp_)) fail("a temporary file is left: " + FilesIn(temp_).begin()->first);
#ifndef _WIN32
  if (!leniency.descriptorsMayStay && palvex::testing::OpenDescriptorCount() != descriptors) fail("a descriptor is left open");
#endif
  if (!problem.empty() && !session.Ok()) problem += "; the run reported " + Describe(session.log);
  return problem;
}

// What a failed run may leave where it writes; after a good run the outputs are the result.
std::string ScenarioRunner::CheckOutputs(bool failed) const {
  const Files now = FilesIn(output_);
  Files before;
  for (const auto &[name, content] : scenario_.outputs) before[name] = content;
  if (!failed) {
    if (now == baselineOutputs_) return "";
    std::string names;
    for (const auto &[name, content] : now) names += " " + name + "(" + std::to_string(content.size()) + ")";
    return "the output differs from a good run's:" + names;
  }
  std::set<std::string> names;
  for (const auto &[name, content] : now) names.insert(name);
  for (const auto &[name, content] : before) names.insert(name);
  for (const auto &[name, content] : baselineOutputs_) names.insert(name);
  for (const std::string &name : names) {
    const auto lookup = [&](const Files &files) -> std::optional<std::string> {
      const auto found = files.find(name);
      return found == files.end() ? std::nullopt : std::optional(found->second);
    };
    const std::optional<std::string> left = lookup(now);
    const bool untouched = left == lookup(before);
    const bool result = left == lookup(baselineOutputs_);
    const bool empty = left && left->empty() && lookup(before).has_value();
    switch (scenario_.outputRule) {
      case OutputRule::NothingWritten:
        if (!untouched) return "the output " + name + " was changed";
        break;
      case OutputRule::UntouchedOrResult:
        if (!untouched && !result) return "the output " + name + " is neither untouched nor the result";
        break;
      case OutputRule::UntouchedEmptyOrResult:
        if (!untouched && !result && !empty) return "the output " + name + " is cut short";
        break;
    }
  }
  return "";
}

// The inputs stay as they were; nothing else appears beside them.
std::string ScenarioRunner::CheckFolders() const {
  Files inputs;
  for (const auto &[name, content] : scenario_.inputs) inputs[name] = content;
  return FilesIn(inputs_) == inputs ? "" : "the input folder changed";
}

}  // namespace palvex::failure
