#include "plugin_model/object_registry.hpp"

#include <atomic>
#include <utility>
#include <vector>

namespace PX_PLUGIN {
namespace {

// The deleter of a registered owner. A dying object disarms it (Forget), since its
// reference must not be given back a second time.
class ReleaseWhenUnowned {
 public:
  ReleaseWhenUnowned() = default;
  ReleaseWhenUnowned(ReleaseWhenUnowned &&other) noexcept : armed_(other.armed_.load()) {}

  void operator()(SharedObjectImpl *object) const {
    if (armed_.load()) object->Release();
  }
  void Disarm() noexcept { armed_.store(false); }

 private:
  std::atomic<bool> armed_{true};
};

}  // namespace

std::uint64_t NewDocumentTag() {
  static std::atomic<std::uint64_t> last{0};
  return ++last;
}

ObjectRegistry &ObjectRegistry::Instance() {
  static ObjectRegistry registry;
  return registry;
}

std::shared_ptr<SharedObjectImpl> ObjectRegistry::Register(SharedObjectImpl *object,
                                                           std::uint64_t document) {
  object->Acquire();  // the library's reference; nothing is pending on a new object
  // From here on the owner gives that reference back, also when what follows throws.
  std::shared_ptr<SharedObjectImpl> owner(object, ReleaseWhenUnowned());
  const std::lock_guard lock(mutex_);
  objects_.insert_or_assign(object, Entry{owner, document});
  return owner;
}

RegisteredObject ObjectRegistry::Find(const SharedObjectImpl *object) const {
  const std::lock_guard lock(mutex_);
  const auto found = objects_.find(object);
  if (found == objects_.end()) return {};
  return {found->second.owner, found->second.document};
}

void ObjectRegistry::Remove(const SharedObjectImpl *object) {
  std::shared_ptr<SharedObjectImpl> dropped;  // let go outside the lock: it may destroy
  const std::lock_guard lock(mutex_);
  const auto found = objects_.find(object);
  if (found == objects_.end()) return;
  dropped = std::move(found->second.owner);
  objects_.erase(found);
}

void ObjectRegistry::RemoveDocument(std::uint64_t document) {
  // Entries move over as whole nodes, which allocates nothing: this runs in destructors,
  // also when memory has run out.
  std::map<const SharedObjectImpl *, Entry> dropped;
  {
    const std::lock_guard lock(mutex_);
    for (auto it = objects_.begin(); it != objects_.end();) {
      if (it->second.document == document) {
        dropped.insert(dropped.end(), objects_.extract(it++));
      } else {
        ++it;
      }
    }
  }
}

void ObjectRegistry::Forget(const SharedObjectImpl *object) noexcept {
  const std::lock_guard lock(mutex_);
  const auto found = objects_.find(object);
  if (found == objects_.end()) return;
  if (auto *deleter = std::get_deleter<ReleaseWhenUnowned>(found->second.owner)) deleter->Disarm();
  objects_.erase(found);
}

std::size_t ObjectRegistry::Size() const {
  const std::lock_guard lock(mutex_);
  return objects_.size();
}

}  // namespace PX_PLUGIN
