// The host interface table the library hands to every plug-in (version 1), and the record
// of the roots plug-ins made through it. A root belongs to whoever was marked as its owner
// when it was made (a conversion session, or a single call into the plug-in); what an
// owner leaves unreleased is let go of when the owner ends, so a careless plug-in leaks
// nothing.
#pragma once

#include <cstddef>

#include "palvex/plugin_abi.hpp"

namespace ns_sensor {

// The table: slots createRoot, releaseRoot and locale. Lives as long as the library.
const PX_PLUGIN::PX_HostInterface_v1 &PluginHostInterface();

// While it lives, roots made through the table belong to owner. Scopes nest; the previous
// owner returns when the scope ends.
class RootOwnerScope {
 public:
  explicit RootOwnerScope(const void *owner) noexcept;
  ~RootOwnerScope();
  RootOwnerScope(const RootOwnerScope &) = delete;
  RootOwnerScope &operator=(const RootOwnerScope &) = delete;

 private:
  const void *previous_;
};

// A call into a plug-in outside any session: the roots it makes and keeps are let go of
// when the call is over.
class CallRootScope {
 public:
  CallRootScope() noexcept;
  ~CallRootScope();
  CallRootScope(const CallRootScope &) = delete;
  CallRootScope &operator=(const CallRootScope &) = delete;

 private:
  const void *previous_;
};

// Lets go of every root of owner that the plug-in did not release (its reference and the
// document's objects), as releaseRoot would. Never raises.
void ReleaseRootsOf(const void *owner) noexcept;

// Roots made and not yet let go of, over all owners.
std::size_t LivePluginRootCount();

}  // namespace ns_sensor
