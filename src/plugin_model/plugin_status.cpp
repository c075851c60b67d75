#include "plugin_model/plugin_status.hpp"

#include <new>

#include "api/px_exception.hpp"

namespace PX_PLUGIN {
namespace {

// Library error codes move up by this much when they cross into converter code.
constexpr std::uint32_t kLibraryCodeOffset = 1000;

PX_PluginException ExceptionInFlight() noexcept {
  try {
    throw;
  } catch (const PX_PluginException &e) {
    // A plug-in exception claiming success would read as success at the boundary.
    if (e.code() != PX_PLUGIN_OK) return e;
    return PX_PluginException(PX_PLUGIN_UNKNOWN_FAILURE, e.detail1(), e.detail2());
  } catch (const ns_sensor::PX_Exception &e) {
    return PX_PluginException(e.code() + kLibraryCodeOffset, e.detail1(), e.detail2());
  } catch (const std::bad_alloc &) {
    return PX_PluginException(PX_PLUGIN_OUT_OF_MEMORY);
  } catch (...) {
    return PX_PluginException(PX_PLUGIN_UNKNOWN_FAILURE);
  }
}

}  // namespace

void RaisePluginError(ns_sensor::Msg id, std::int64_t detail1, std::int64_t detail2) {
  throw PX_PluginException(ns_sensor::Message(id).code, detail1, detail2);
}

std::uint32_t StatusOfCurrentException(PX_PluginError *error) noexcept {
  const PX_PluginException failure = ExceptionInFlight();
  if (error != nullptr) *error = PX_PluginError{failure.code(), failure.detail1(), failure.detail2()};
  return failure.code();
}

std::uint32_t ReportSuccess(PX_PluginError *error) noexcept {
  if (error != nullptr) *error = NoPluginError();
  return PX_PLUGIN_OK;
}

void RethrowAsPluginException() { throw ExceptionInFlight(); }

}  // namespace PX_PLUGIN
