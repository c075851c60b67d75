/**
 * @file plugin_kit.hpp
 * The one header a converter plug-in includes. It brings the plug-in ABI
 * (palvex/plugin_abi.hpp), the object model and its C++ helpers
 * (palvex/plugin_helpers.hpp), and adds a little that every plug-in needs:
 *
 * - PX_PLUGIN_ENTRY, which defines the exported entry point with its exact signature;
 * - HostSupportsV1, which checks the tables the library hands to the entry point;
 * - RunGuarded and StoreCurrentException, which keep exceptions inside the module and
 *   turn them into the error record;
 * - OwnedRoot, which makes the document root through the host table and lets go of it
 *   through the host table too, however the conversion ends.
 *
 * Nothing here hides the ABI: each helper is a few lines over the tables and records of
 * palvex/plugin_abi.hpp, and a plug-in may call those directly instead. C++17 is enough.
 *
 * @code
 *   #include "palvex/plugin_kit.hpp"
 *   using namespace PX_PLUGIN;
 *
 *   static const PX_HostInterface_v1 *g_host = nullptr;
 *
 *   static void Convert(PX_PluginSession session, PX_PluginError *error, PX_PluginResult *result) {
 *     RunGuarded(error, [&] {
 *       const WidgetSession &state = *static_cast<const WidgetSession *>(session);
 *       OwnedRoot root(g_host, state.outputPath, "org.example.widget");
 *       ...  // build the document through root.get()
 *       result->success = root.Commit() ? 1 : 0;
 *     });
 *   }
 *
 *   PX_PLUGIN_ENTRY(moduleIdentifier, host, functions, error) {
 *     if (!HostSupportsV1(host, functions)) { error->code = 3000; return; }  // a code of its own
 *     g_host = host;
 *     functions->convertToMgjson = &Convert;
 *     ...  // the other slots
 *   }
 * @endcode
 */
#ifndef PALVEX_PLUGIN_KIT_HPP
#define PALVEX_PLUGIN_KIT_HPP

#include <stdint.h>

#include <exception>
#include <new>
#include <string_view>
#include <utility>

#include "palvex/plugin_abi.hpp"
#include "palvex/plugin_helpers.hpp"

/**
 * Makes a function visible outside the module: the library finds the entry point by its
 * name. One macro for both platforms, mingw included.
 */
#if defined(_WIN32)
#  define PX_PLUGIN_EXPORT __declspec(dllexport)
#else
#  define PX_PLUGIN_EXPORT __attribute__((visibility("default")))
#endif

/**
 * Defines the entry point "InitializePlugin" with the signature of PX_InitializePluginFn;
 * the four arguments get the names given. Write the body after it:
 * PX_PLUGIN_ENTRY(moduleIdentifier, host, functions, error) { ... }
 * The library calls it once, when the module is first needed. The body fills the slots of
 * functions; a non-zero error->code refuses the load. No exception may leave it.
 */
#define PX_PLUGIN_ENTRY(moduleIdentifier, host, functions, error)                         \
  extern "C" PX_PLUGIN_EXPORT void InitializePlugin(                                    \
      const char *moduleIdentifier, const ::PX_PLUGIN::PX_HostInterface_v1 *host,      \
      ::PX_PLUGIN::PX_PluginFunctions_v1 *functions, ::PX_PLUGIN::PX_PluginError *error)

namespace PX_PLUGIN {

/**
 * Whether the tables handed to the entry point are version 1 or a later version that keeps
 * every slot of version 1: both present, the host table at least as large as this
 * header's, the function table exactly the six slots this header fills.
 */
inline bool HostSupportsV1(const PX_HostInterface_v1 *host, const PX_PluginFunctions_v1 *functions) noexcept {
  return host != nullptr && functions != nullptr && host->version >= PX_PLUGIN_INTERFACE_VERSION &&
         host->size >= sizeof(PX_HostInterface_v1) && host->createRoot != nullptr &&
         host->releaseRoot != nullptr && host->locale != nullptr &&
         functions->header.version == PX_PLUGIN_INTERFACE_VERSION &&
         functions->header.size == sizeof(PX_PluginFunctions_v1);
}

/**
 * Fills the error record from the exception being handled; call it inside a catch block.
 * A PX_PluginException keeps its code and details (code 0 would read as success, so it
 * becomes PX_PLUGIN_UNKNOWN_FAILURE); lack of memory is PX_PLUGIN_OUT_OF_MEMORY; anything
 * else PX_PLUGIN_UNKNOWN_FAILURE. A null record is left alone.
 */
inline void StoreCurrentException(PX_PluginError *error) noexcept {
  if (error == nullptr) return;
  *error = PX_PluginError{PX_PLUGIN_UNKNOWN_FAILURE, -1, -1};
  try {
    throw;
  } catch (const PX_PluginException &e) {
    if (e.code() != PX_PLUGIN_OK) *error = PX_PluginError{e.code(), e.detail1(), e.detail2()};
  } catch (const std::bad_alloc &) {
    error->code = PX_PLUGIN_OUT_OF_MEMORY;
  } catch (...) {
  }
}

/**
 * Runs body, and turns whatever it throws into the error record: the usual frame of a
 * function-table slot, whose callers must never see an exception.
 */
template <typename Body>
void RunGuarded(PX_PluginError *error, Body &&body) noexcept {
  try {
    std::forward<Body>(body)();
  } catch (...) {
    StoreCurrentException(error);
  }
}

/**
 * The document root of one conversion, made by PX_HostInterface_v1::createRoot and let go
 * of by releaseRoot when the holder goes (committed or not). Throws PX_PluginException
 * when the root cannot be made. Move-only.
 */
class OwnedRoot {
 public:
  /** Makes the root that writes outputPath, with creator as the file's creator. */
  OwnedRoot(const PX_HostInterface_v1 *host, std::string_view outputPath, std::string_view creator)
      : host_(host) {
    if (host_ == nullptr || host_->createRoot == nullptr) throw PX_PluginException(PX_PLUGIN_INVALID_ARGUMENT);
    PX_PluginError error = NoPluginError();
    ThrowOnFailure(host_->createRoot(outputPath.data(), TextLength(outputPath), creator.data(),
                                     TextLength(creator), &root_, &error),
                   error);
    if (root_ == nullptr) throw PX_PluginException(PX_PLUGIN_UNKNOWN_FAILURE);
  }
  OwnedRoot(OwnedRoot &&other) noexcept
      : host_(other.host_), root_(std::exchange(other.root_, nullptr)) {}
  OwnedRoot &operator=(OwnedRoot &&other) noexcept {
    if (this != &other) {
      reset();
      host_ = other.host_;
      root_ = std::exchange(other.root_, nullptr);
    }
    return *this;
  }
  OwnedRoot(const OwnedRoot &) = delete;
  OwnedRoot &operator=(const OwnedRoot &) = delete;
  ~OwnedRoot() { reset(); }

  /** The root, for the operations of IMgjsonRoot_v1 and IMgjsonGroup_v1. */
  IMgjsonRoot_v1 *get() const noexcept { return root_; }
  IMgjsonRoot_v1 *operator->() const noexcept { return root_; }

  /**
   * IMgjsonRoot_v1::Commit: writes the file. True when this call wrote it, false when the
   * root was committed before; throws PX_PluginException when writing fails.
   */
  bool Commit() {
    uint32_t committed = 0;
    Call(root_, &IMgjsonRoot_v1::Commit, &committed);
    return committed != 0;
  }

  /** Lets go of the root now (releaseRoot); its status is not reported, there is nothing left to undo. */
  void reset() noexcept {
    if (root_ == nullptr) return;
    PX_PluginError ignored = NoPluginError();
    host_->releaseRoot(std::exchange(root_, nullptr), &ignored);
  }

 private:
  const PX_HostInterface_v1 *host_;
  IMgjsonRoot_v1 *root_ = nullptr;
};

}  // namespace PX_PLUGIN

#endif  // PALVEX_PLUGIN_KIT_HPP
