// The converter plug-in of the tests. One source, built into many modules: what each
// converter does is named by its manifest identifier ("test.<behaviour>"), what the
// module does at load and unload by its module identifier. The well-behaved converters
// read a tiny text format:
//
//   PXTEXT
//   <frame> <value>
//   ...
//
// and write one group "readings" with a static node "count" (the number of samples) and
// a dynamic number node "value" at 25 frames per second.
#include <cstdlib>
#include <fstream>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "palvex/plugin_abi.hpp"
#include "palvex/plugin_helpers.hpp"

#if defined(_WIN32)
#define TEST_PLUGIN_EXPORT extern "C" __declspec(dllexport)
#else
#define TEST_PLUGIN_EXPORT extern "C" __attribute__((visibility("default")))
#endif

namespace {

using namespace PX_PLUGIN;

// The codes and details each failing step reports; the tests expect exactly these.
constexpr PX_PluginError kInitializeFailure = {7101, 11, 12};
constexpr PX_PluginError kTerminateFailure = {7102, 21, 22};
constexpr PX_PluginError kCheckFailure = {7201, 31, 32};
constexpr PX_PluginError kSessionFailure = {7301, 41, 42};
constexpr PX_PluginError kConvertFailure = {7401, 51, 52};

enum class Behaviour {
  Text,            // converts for real and lets go of its root
  KeepsRoot,       // converts for real and leaves its root to the library
  CheckRefuses,    // the check says no
  CheckError,      // the check reports kCheckFailure
  SessionError,    // initialise-session reports kSessionFailure
  ConvertError,    // convert reports kConvertFailure
  NoSuccess,       // convert reports neither an error nor success
};

const PX_HostInterface_v1 *g_host = nullptr;
bool g_failTerminate = false;

bool EndsWith(std::string_view text, std::string_view end) {
  return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

Behaviour BehaviourOf(const PX_ConverterContext *converter) {
  const std::string_view identifier = converter->converterIdentifier;
  if (EndsWith(identifier, ".keeps-root")) return Behaviour::KeepsRoot;
  if (EndsWith(identifier, ".check-refuses")) return Behaviour::CheckRefuses;
  if (EndsWith(identifier, ".check-error")) return Behaviour::CheckError;
  if (EndsWith(identifier, ".session-error")) return Behaviour::SessionError;
  if (EndsWith(identifier, ".convert-error")) return Behaviour::ConvertError;
  if (EndsWith(identifier, ".no-success")) return Behaviour::NoSuccess;
  return Behaviour::Text;
}

struct Session {
  Behaviour behaviour;
  std::string inputPath;
  std::string outputPath;
  std::string creator;
};

// The samples of a text input: its lines after "PXTEXT", each "<frame> <value>".
std::vector<std::pair<std::uint64_t, double>> ReadSamples(const std::string &path) {
  std::ifstream input(path, std::ios::binary);
  std::string line;
  std::getline(input, line);
  std::vector<std::pair<std::uint64_t, double>> samples;
  while (std::getline(input, line)) {
    std::istringstream fields(line);
    std::uint64_t frame = 0;
    double value = 0;
    if (fields >> frame >> value) samples.emplace_back(frame, value);
  }
  return samples;
}

void FillAndCommit(IMgjsonRoot_v1 *root, const std::vector<std::pair<std::uint64_t, double>> &samples) {
  Call(root, &IMgjsonRoot_v1::SetTimecodeInfo, 0u, 25u, 1u);
  Ref<IMgjsonGroup_v1> group = CreateGroup(root, "Readings", "readings");
  const PX_StaticValue count = {static_cast<double>(samples.size()), nullptr, 0, 0};
  StaticNode countNode = CreateStaticData(root, PX_STATIC_NUMBER, "Count", "count", &count);
  Call(group.get(), &IMgjsonGroup_v1::AddStaticChild, countNode.views().node);
  DynamicNode valueNode = CreateDynamicData(root, PX_DYNAMIC_NUMBER, "Value", "value");
  for (const auto &[frame, value] : samples) {
    Call(valueNode.views().number, &IMgjsonDynamicDataNum_v1::AddSampleAtFrame, frame, value);
  }
  Call(group.get(), &IMgjsonGroup_v1::AddDynamicChild, valueNode.views().node);
  Call(static_cast<IMgjsonGroup_v1 *>(root), &IMgjsonGroup_v1::AddGroupChild, group.get());
  std::uint32_t committed = 0;
  Call(root, &IMgjsonRoot_v1::Commit, &committed);
}

// Converts the session's input; the status of the first failed operation on failure.
std::uint32_t ConvertText(const Session &session, PX_PluginError *error) {
  IMgjsonRoot_v1 *root = nullptr;
  const std::uint32_t made =
      g_host->createRoot(session.outputPath.data(), TextLength(session.outputPath), session.creator.data(),
                         TextLength(session.creator), &root, error);
  if (made != PX_PLUGIN_OK) return made;
  std::uint32_t status = PX_PLUGIN_OK;
  try {
    FillAndCommit(root, ReadSamples(session.inputPath));
  } catch (const PX_PluginException &failure) {
    *error = PX_PluginError{failure.code(), failure.detail1(), failure.detail2()};
    status = failure.code();
  } catch (...) {
    *error = PX_PluginError{PX_PLUGIN_UNKNOWN_FAILURE, -1, -1};
    status = PX_PLUGIN_UNKNOWN_FAILURE;
  }
  if (session.behaviour != Behaviour::KeepsRoot) {
    PX_PluginError ignored = NoPluginError();
    g_host->releaseRoot(root, &ignored);
  }
  return status;
}

// Sessions not terminated yet; terminating the plug-in ends them all.
std::set<Session *> &OpenSessions() {
  static std::set<Session *> sessions;
  return sessions;
}

void TerminatePlugin(PX_PluginError *error) {
  for (Session *session : OpenSessions()) delete session;
  OpenSessions().clear();
  if (g_failTerminate) *error = kTerminateFailure;
  g_host = nullptr;
}

void InitializeSession(const PX_ConverterContext *converter, const char *inputPath, const char *,
                       const char *outputPath, PX_PluginSession *session, PX_PluginError *error) {
  const Behaviour behaviour = BehaviourOf(converter);
  if (behaviour == Behaviour::SessionError) {
    *error = kSessionFailure;
    return;
  }
  try {
    auto made = std::make_unique<Session>(Session{behaviour, inputPath, outputPath, converter->converterIdentifier});
    OpenSessions().insert(made.get());
    *session = made.release();
  } catch (...) {
    *error = PX_PluginError{PX_PLUGIN_OUT_OF_MEMORY, -1, -1};
  }
}

void TerminateSession(PX_PluginSession handle, PX_PluginError *) {
  Session *session = static_cast<Session *>(handle);
  OpenSessions().erase(session);
  delete session;
}

void CheckFileFormat(const PX_ConverterContext *converter, const char *, PX_PluginError *error,
                     std::uint32_t *result) {
  switch (BehaviourOf(converter)) {
    case Behaviour::CheckError: *error = kCheckFailure; return;
    case Behaviour::CheckRefuses: *result = 0; return;
    default: *result = 1; return;
  }
}

void ConvertToMgjson(PX_PluginSession handle, PX_PluginError *error, PX_PluginResult *result) {
  const Session &session = *static_cast<Session *>(handle);
  switch (session.behaviour) {
    case Behaviour::ConvertError: *error = kConvertFailure; return;
    case Behaviour::NoSuccess: return;
    default: result->success = ConvertText(session, error) == PX_PLUGIN_OK ? 1 : 0; return;
  }
}

}  // namespace

// The module "without an entry point" exports it under a name the library does not look for.
#ifdef TEST_PLUGIN_WITHOUT_ENTRY_POINT
#define TEST_PLUGIN_ENTRY_POINT InitialisePlugin
#else
#define TEST_PLUGIN_ENTRY_POINT InitializePlugin
#endif

TEST_PLUGIN_EXPORT void TEST_PLUGIN_ENTRY_POINT(const char *moduleIdentifier, const PX_HostInterface_v1 *host,
                                         PX_PluginFunctions_v1 *functions, PX_PluginError *error) {
  const std::string_view module = moduleIdentifier;
  if (EndsWith(module, ".fail-initialize")) {
    *error = kInitializeFailure;
    return;
  }
  // A library that hands over another table than the one this plug-in was built for.
  if (host == nullptr || host->version != PX_PLUGIN_INTERFACE_VERSION || functions->header.size != sizeof(PX_PluginFunctions_v1) ||
      functions->header.version != PX_PLUGIN_INTERFACE_VERSION) {
    *error = PX_PluginError{PX_PLUGIN_UNKNOWN_FAILURE, -1, -1};
    return;
  }
  g_host = host;
  g_failTerminate = EndsWith(module, ".fail-terminate");
  functions->terminatePlugin = TerminatePlugin;
  functions->initializeSession = InitializeSession;
  functions->terminateSession = TerminateSession;
  functions->checkFileFormat = CheckFileFormat;
  functions->convertToMgjson = ConvertToMgjson;
}
