#include "api/manager_lifetime.hpp"

#include <atomic>
#include <exception>
#include <limits>
#include <memory>

#include "api/palvex_impl.hpp"
#include "api/px_exception.hpp"
#include "converters/format_registry.hpp"
#include "converters/process_plugins.hpp"
#include "localisation/dictionary.hpp"

namespace ns_sensor {
namespace {

std::atomic<std::uint16_t> g_useCount{0};
PalvexImpl *g_manager = nullptr;

}  // namespace

std::mutex &GlobalMutex() {
  static std::mutex mutex;
  return mutex;
}

IPalvex *AcquireManager(const char *converterConfig1, const char *converterConfig2, const char *locale,
                        std::vector<PX_Exception> &pluginFailures) {
  std::lock_guard lock(GlobalMutex());
  if (g_useCount.load() == std::numeric_limits<std::uint16_t>::max()) {
    // A 16-bit count cannot take another use; wrapping would destroy a live manager.
    Raise(Msg::MemoryNotAvailable);
  }
  if (g_useCount.load() == 0) {
    LoadDictionary(locale ? locale : "");
    // After the dictionary: converter names are chosen for its locale.
    pluginFailures = DiscoverProcessPluginsOnce(converterConfig1, converterConfig2);
    auto manager = std::make_unique<PalvexImpl>(ConverterSettings{
        converterConfig1 ? converterConfig1 : "", converterConfig2 ? converterConfig2 : ""});
    g_manager = manager.release();
  }
  g_useCount.fetch_add(1);
  return g_manager;
}

void ReleaseManager() {
  std::lock_guard lock(GlobalMutex());
  if (g_useCount.load() == 0) return;
  if (g_useCount.fetch_sub(1) == 1) {
    delete g_manager;
    g_manager = nullptr;
    // A failure to terminate is told once everything is down; its message is made while
    // the dictionary is still loaded.
    std::exception_ptr terminateFailure;
    try {
      UnloadProcessPlugins();
    } catch (const PX_Exception &) {
      terminateFailure = std::current_exception();
    }
    UnloadDictionary();
    if (terminateFailure) std::rethrow_exception(terminateFailure);
  }
}

std::uint16_t ManagerUseCount() { return g_useCount.load(); }

}  // namespace ns_sensor
