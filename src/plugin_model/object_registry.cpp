#include "plugin_model/object_registry.hpp"

#include <bit>
#include <limits>
#include <utility>

namespace PX_PLUGIN {
namespace {

constexpr std::size_t kNoSlot = std::numeric_limits<std::size_t>::max();
constexpr std::size_t kFewestSlots = 64;

// Objects are at least 16-byte aligned: the low bits say nothing, the multiplication
// spreads the rest over the bits the mask keeps.
std::size_t HashOf(const SharedObjectImpl *object) {
  return static_cast<std::size_t>((reinterpret_cast<std::uintptr_t>(object) >> 4) * 0x9E3779B97F4A7C15ULL >> 20);
}

}  // namespace

void ObjectOwner::reset() noexcept {
  OwnerRecord *record = std::exchange(record_, nullptr);
  if (record == nullptr || record->owners.fetch_sub(1) != 1) return;
  if (record->armed.load()) record->object->Release();
  delete record;
}

std::uint64_t NewDocumentTag() {
  static std::atomic<std::uint64_t> last{0};
  return ++last;
}

ObjectRegistry &ObjectRegistry::Instance() {
  static ObjectRegistry registry;
  return registry;
}

std::size_t ObjectRegistry::SlotOf(const SharedObjectImpl *object) const {
  if (slots_.empty()) return kNoSlot;
  const std::size_t mask = slots_.size() - 1;
  for (std::size_t slot = HashOf(object) & mask;; slot = (slot + 1) & mask) {
    const OwnerRecord *entry = slots_[slot];
    if (entry == nullptr) return kNoSlot;
    if (entry->object == object) return slot;
  }
}

void ObjectRegistry::Insert(OwnerRecord *record) {
  const std::size_t mask = slots_.size() - 1;
  std::size_t slot = HashOf(record->object) & mask;
  while (slots_[slot] != nullptr) slot = (slot + 1) & mask;
  slots_[slot] = record;
  ++live_;
}

void ObjectRegistry::Rebuild(std::size_t slots) {
  std::vector<OwnerRecord *> previous(slots, nullptr);
  previous.swap(slots_);
  live_ = 0;
  ++rebuilds_;
  for (OwnerRecord *entry : previous) {
    if (entry != nullptr) Insert(entry);
  }
}

void ObjectRegistry::Vacate(std::size_t slot) {
  // Backward-shift deletion: later entries of the probe run move up into the hole, so no
  // tombstones pile up and a lookup of an absent address (every dying object asks) stays short.
  const std::size_t mask = slots_.size() - 1;
  slots_[slot] = nullptr;
  --live_;
  for (std::size_t next = (slot + 1) & mask; slots_[next] != nullptr; next = (next + 1) & mask) {
    const std::size_t home = HashOf(slots_[next]->object) & mask;
    // An entry whose home lies cyclically in (slot, next] is still reachable where it is.
    const bool reachable = slot <= next ? (slot < home && home <= next) : (slot < home || home <= next);
    if (reachable) continue;
    slots_[slot] = std::exchange(slots_[next], nullptr);
    slot = next;
  }
}

ObjectOwner ObjectRegistry::Register(SharedObjectImpl *object, std::uint64_t document) {
  object->Acquire();  // the library's reference; nothing is pending on a new object
  OwnerRecord *record = nullptr;
  try {
    record = new OwnerRecord{object, document, {1}, {true}};
  } catch (...) {
    object->Release();
    throw;
  }
  // From here on the owner gives that reference back, also when what follows throws.
  ObjectOwner owner(record);
  ObjectOwner replaced;  // let go outside the lock: it may destroy
  const std::lock_guard lock(mutex_);
  if (const std::size_t slot = SlotOf(object); slot != kNoSlot) {
    replaced = ObjectOwner(slots_[slot]);
    Vacate(slot);
  }
  // At most three quarters of the slots in use keeps probes short.
  if ((live_ + 1) * 4 > slots_.size() * 3) {
    Rebuild(std::max(kFewestSlots, std::bit_ceil((live_ + 1) * 2)));
  }
  record->owners.fetch_add(1);  // the registry's hold
  Insert(record);
  return owner;
}

RegisteredObject ObjectRegistry::Find(const SharedObjectImpl *object) const {
  const std::lock_guard lock(mutex_);
  const std::size_t slot = SlotOf(object);
  if (slot == kNoSlot) return {};
  OwnerRecord *record = slots_[slot];
  record->owners.fetch_add(1);
  return {ObjectOwner(record), record->document};
}

void ObjectRegistry::Remove(const SharedObjectImpl *object) {
  ObjectOwner dropped;  // let go outside the lock: it may destroy
  const std::lock_guard lock(mutex_);
  const std::size_t slot = SlotOf(object);
  if (slot == kNoSlot) return;
  dropped = ObjectOwner(slots_[slot]);
  Vacate(slot);
}

void ObjectRegistry::RemoveDocument(std::uint64_t document) {
  // One entry at a time, let go outside the lock (it may destroy objects, whose
  // destructors come back here). This runs in destructors, also when memory has run
  // out, so it allocates nothing; the sweep starts over if the slots were rebuilt.
  std::size_t slot = 0;
  std::uint64_t rebuilds = std::numeric_limits<std::uint64_t>::max();
  while (true) {
    ObjectOwner dropped;
    const std::lock_guard lock(mutex_);
    if (rebuilds != rebuilds_) {
      rebuilds = rebuilds_;
      slot = 0;
    }
    // A removal moves later entries up into the slot, so the sweep looks at it again.
    while (slot < slots_.size() && !(slots_[slot] != nullptr && slots_[slot]->document == document)) ++slot;
    if (slot == slots_.size()) break;
    dropped = ObjectOwner(slots_[slot]);
    Vacate(slot);
  }
  // A large document leaves a large table behind: give it back when it is all but empty.
  const std::lock_guard lock(mutex_);
  if (live_ == 0) {
    std::vector<OwnerRecord *>().swap(slots_);
    ++rebuilds_;
  } else if (slots_.size() > kFewestSlots && live_ * 8 < slots_.size()) {
    try {
      Rebuild(std::max(kFewestSlots, std::bit_ceil((live_ + 1) * 2)));
    } catch (...) {
      // The larger table stays; nothing is lost.
    }
  }
}

void ObjectRegistry::Forget(const SharedObjectImpl *object) noexcept {
  const std::lock_guard lock(mutex_);
  const std::size_t slot = SlotOf(object);
  if (slot == kNoSlot) return;
  OwnerRecord *record = slots_[slot];
  record->armed.store(false);
  Vacate(slot);
  if (record->owners.fetch_sub(1) == 1) delete record;
}

std::size_t ObjectRegistry::Size() const {
  const std::lock_guard lock(mutex_);
  return live_;
}

}  // namespace PX_PLUGIN
