// Reference counting of the converter-side objects.
#pragma once

#include <atomic>
#include <cstdint>

#include "palvex/plugin_model.hpp"

namespace PX_PLUGIN {

// The library's view of a shared object.
class ISharedObject_I : public virtual ISharedObject {
 public:
  // Counts one reference for a converter that is about to receive the object: the
  // reference count and the pending-acquire count rise together, so the converter's own
  // first Acquire is absorbed and the reference stays until the converter releases it.
  virtual void InternalAcquire() = 0;
};

// Two atomic 64-bit counts: references, and pending acquires (references counted in
// advance for a converter, consumed by its first acquisitions).
class SharedObjectImpl : public virtual ISharedObject_I {
 public:
  SharedObjectImpl(const SharedObjectImpl &) = delete;
  SharedObjectImpl &operator=(const SharedObjectImpl &) = delete;

  // Consumes a pending acquire if there is one, else adds a reference.
  void Acquire() override;
  // Removes a reference if there is one; destroys the object when the count was 1, or
  // was 0 already.
  void Release() override;
  ISharedObject_I *GetInternalObject() override;
  void InternalAcquire() override;

  std::uint64_t ReferenceCount() const noexcept { return references_.load(); }
  std::uint64_t PendingAcquireCount() const noexcept { return pendingAcquires_.load(); }

 protected:
  SharedObjectImpl() = default;
  // Drops the object's entry in the registry of live objects, if it is still there.
  ~SharedObjectImpl() override;

 private:
  std::atomic<std::uint64_t> references_{0};
  std::atomic<std::uint64_t> pendingAcquires_{0};
};

}  // namespace PX_PLUGIN
