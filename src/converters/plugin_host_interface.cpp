#include "converters/plugin_host_interface.hpp"

#include <algorithm>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "converters/native_converter_session.hpp"
#include "localisation/dictionary.hpp"
#include "plugin_model/plugin_status.hpp"
#include "plugin_model/root_impl.hpp"

namespace ns_sensor {
namespace {

using PX_PLUGIN::IMgjsonRoot_v1;
using PX_PLUGIN::MgjsonRootImpl;
using PX_PLUGIN::PX_PluginError;

struct LiveRoot {
  std::shared_ptr<MgjsonRootImpl> owner;  // the document's owner, until Dispose
  IMgjsonRoot_v1 *handedOut = nullptr;    // what the plug-in holds and releases
  const void *belongsTo = nullptr;
};

// Conversions come one at a time, but nothing stops a plug-in from calling in from a
// thread of its own; the record is small, so a lock costs nothing.
std::mutex &RootsMutex() {
  static std::mutex mutex;
  return mutex;
}

std::vector<LiveRoot> &LiveRoots() {
  static std::vector<LiveRoot> roots;
  return roots;
}

thread_local const void *t_currentOwner = nullptr;

void LetGo(LiveRoot &root) noexcept {
  root.handedOut->Release();
  root.owner->Dispose();
}

// A text argument: a pointer and a byte count; null only for the empty text.
std::string TextArgument(const char *text, std::uint32_t length) {
  if (text == nullptr && length != 0) PX_PLUGIN::RaisePluginError(Msg::InvalidObjectModelArgument);
  return text == nullptr ? std::string() : std::string(text, length);
}

std::uint32_t CreateRoot(const char *outputPath, std::uint32_t outputPathLength, const char *creator,
                         std::uint32_t creatorLength, IMgjsonRoot_v1 **root, PX_PluginError *error) {
  if (root != nullptr) *root = nullptr;
  return PX_PLUGIN::RunWithStatus(error, [&] {
    if (root == nullptr) PX_PLUGIN::RaisePluginError(Msg::InvalidObjectModelArgument);
    PX_PLUGIN::RootSettings settings;
    settings.context = const_cast<void *>(t_currentOwner);
    settings.outputPath = TextArgument(outputPath, outputPathLength);
    settings.makeWriter = LibraryDocumentWriter();
    const std::string creatorText = TextArgument(creator, creatorLength);
    const std::shared_ptr<MgjsonRootImpl> owner = MgjsonRootImpl::Create(std::move(settings));
    IMgjsonRoot_v1 *handedOut = owner->HandOut();
    LiveRoot live{owner, handedOut, t_currentOwner};
    try {
      // The object model's own operation, so the creator is stored as every free text is.
      PX_PLUGIN::Call(handedOut, &IMgjsonRoot_v1::SetCreator, creatorText.data(),
                      PX_PLUGIN::TextLength(creatorText));
      std::lock_guard lock(RootsMutex());
      LiveRoots().push_back(live);
    } catch (...) {
      LetGo(live);
      throw;
    }
    *root = handedOut;
  });
}

std::uint32_t ReleaseRoot(IMgjsonRoot_v1 *root, PX_PluginError *error) {
  return PX_PLUGIN::RunWithStatus(error, [&] {
    LiveRoot found;
    {
      std::lock_guard lock(RootsMutex());
      auto &roots = LiveRoots();
      const auto at = std::find_if(roots.begin(), roots.end(),
                                   [root](const LiveRoot &live) { return live.handedOut == root; });
      if (root == nullptr || at == roots.end()) PX_PLUGIN::RaisePluginError(Msg::RequiredChildMissing);
      found = std::move(*at);
      roots.erase(at);
    }
    LetGo(found);
  });
}

// Longer than any locale name the dictionaries know ("en_US" and the like).
constexpr std::size_t kLocaleTextBytes = 32;

const char *Locale() {
  // The text must outlive the call; it stays until this thread asks again. A plain array:
  // a thread-local object with a destructor is not safe at thread exit with every runtime.
  thread_local char text[kLocaleTextBytes];
  std::string locale;
  try {
    locale = ActiveLocale();
  } catch (...) {
    locale = kDefaultLocale;
  }
  if (locale.size() >= kLocaleTextBytes) locale = kDefaultLocale;
  locale.copy(text, locale.size());
  text[locale.size()] = '\0';
  return text;
}

}  // namespace

const PX_PLUGIN::PX_HostInterface_v1 &PluginHostInterface() {
  static const PX_PLUGIN::PX_HostInterface_v1 table = {
      sizeof(PX_PLUGIN::PX_HostInterface_v1), PX_PLUGIN_INTERFACE_VERSION, CreateRoot, ReleaseRoot, Locale};
  return table;
}

RootOwnerScope::RootOwnerScope(const void *owner) noexcept : previous_(t_currentOwner) { t_currentOwner = owner; }

RootOwnerScope::~RootOwnerScope() { t_currentOwner = previous_; }

CallRootScope::CallRootScope() noexcept : previous_(t_currentOwner) { t_currentOwner = this; }

CallRootScope::~CallRootScope() {
  t_currentOwner = previous_;
  ReleaseRootsOf(this);
}

void ReleaseRootsOf(const void *owner) noexcept {
  // Letting go touches only the object model, never this record, so it can run under the
  // lock; that way nothing here needs memory.
  std::lock_guard lock(RootsMutex());
  auto &roots = LiveRoots();
  const auto leftBehind =
      std::partition(roots.begin(), roots.end(), [owner](const LiveRoot &live) { return live.belongsTo != owner; });
  for (auto at = leftBehind; at != roots.end(); ++at) LetGo(*at);
  roots.erase(leftBehind, roots.end());
}

std::size_t LivePluginRootCount() {
  std::lock_guard lock(RootsMutex());
  return LiveRoots().size();
}

}  // namespace ns_sensor
