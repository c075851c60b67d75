#include "plugin_model/shared_object.hpp"

#include "plugin_model/object_registry.hpp"

namespace PX_PLUGIN {

void SharedObjectImpl::Acquire() {
  std::uint64_t pending = pendingAcquires_.load();
  while (pending != 0) {
    if (pendingAcquires_.compare_exchange_weak(pending, pending - 1)) return;
  }
  references_.fetch_add(1);
}

void SharedObjectImpl::Release() {
  std::uint64_t before = references_.load();
  while (before != 0 && !references_.compare_exchange_weak(before, before - 1)) {
  }
  if (before <= 1) delete this;
}

ISharedObject_I *SharedObjectImpl::GetInternalObject() { return this; }

void SharedObjectImpl::InternalAcquire() {
  references_.fetch_add(1);
  pendingAcquires_.fetch_add(1);
}

SharedObjectImpl::~SharedObjectImpl() { ObjectRegistry::Instance().Forget(this); }

}  // namespace PX_PLUGIN
