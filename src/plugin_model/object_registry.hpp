// The registry of live objects: address -> shared owner. An operation that receives a raw
// interface pointer from a converter (adding a child) finds the object's shared owner
// here; when the last owner goes, the library's one reference is given back through the
// object's own Release. Entries are tagged with the document (root) that made them, so a
// document's objects can be let go together and never mixed with another's.
//
// A document may hold millions of nodes, so an owner is one small record per object (the
// object, its document, the count of owners) instead of a separately allocated control
// block per object plus a map node per entry; the table of addresses holds only pointers
// to the records.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

#include "plugin_model/shared_object.hpp"

namespace PX_PLUGIN {

// A new document tag; never 0.
std::uint64_t NewDocumentTag();

// What the owners of one registered object share. A record outlives its object when a
// converter's surplus Release destroyed the object while owners remained: the object
// disarms the record first, so those owners never release it again.
struct OwnerRecord {
  SharedObjectImpl *object;
  std::uint64_t document;
  std::atomic<std::uint32_t> owners;
  std::atomic<bool> armed;
};

// A shared owner of a registered object; copies count as owners, and the last one gone
// gives the library's reference back.
class ObjectOwner {
 public:
  ObjectOwner() = default;
  ObjectOwner(const ObjectOwner &other) noexcept : record_(other.record_) {
    if (record_ != nullptr) record_->owners.fetch_add(1);
  }
  ObjectOwner(ObjectOwner &&other) noexcept : record_(other.record_) { other.record_ = nullptr; }
  ObjectOwner &operator=(ObjectOwner other) noexcept {
    std::swap(record_, other.record_);
    return *this;
  }
  ~ObjectOwner() { reset(); }

  void reset() noexcept;
  SharedObjectImpl *get() const noexcept { return record_ != nullptr ? record_->object : nullptr; }
  explicit operator bool() const noexcept { return record_ != nullptr; }
  long use_count() const noexcept { return record_ != nullptr ? static_cast<long>(record_->owners.load()) : 0; }

 private:
  friend class ObjectRegistry;
  // Takes over one owner already counted in record.
  explicit ObjectOwner(OwnerRecord *record) noexcept : record_(record) {}

  OwnerRecord *record_ = nullptr;
};

// An owner together with the object's view it was made for.
template <class T>
struct TypedOwner {
  ObjectOwner owner;
  T *object = nullptr;

  T *get() const noexcept { return object; }
  T *operator->() const noexcept { return object; }
};

struct RegisteredObject {
  ObjectOwner owner;  // empty when the address is not registered
  std::uint64_t document = 0;
};

class ObjectRegistry {
 public:
  static ObjectRegistry &Instance();

  // Takes the library's reference on a new object (reference count 0, nothing pending)
  // and registers it; returns a shared owner. When registering fails the object is
  // destroyed and the failure travels on.
  ObjectOwner Register(SharedObjectImpl *object, std::uint64_t document);

  // A new shared owner of a registered object and its document, or an empty owner.
  RegisteredObject Find(const SharedObjectImpl *object) const;

  // Drops the registry's hold on one object, or on every object of a document.
  void Remove(const SharedObjectImpl *object);
  void RemoveDocument(std::uint64_t document);

  // For a dying object: removes its entry without giving its reference back again, so
  // that an object destroyed by a converter's surplus Release is not released twice.
  void Forget(const SharedObjectImpl *object) noexcept;

  std::size_t Size() const;

 private:
  // Open addressing with linear probing over the objects' addresses; removing never
  // allocates.
  std::size_t SlotOf(const SharedObjectImpl *object) const;  // the slot holding it, or npos
  void Insert(OwnerRecord *record);
  void Rebuild(std::size_t slots);
  void Vacate(std::size_t slot);

  mutable std::mutex mutex_;
  std::vector<OwnerRecord *> slots_;
  std::size_t live_ = 0;
  std::uint64_t rebuilds_ = 0;  // lets a long sweep notice that the slots moved
};

// Makes an object, registers it for a document and returns a typed shared owner.
template <class T, class... Arguments>
TypedOwner<T> MakeRegistered(std::uint64_t document, Arguments &&...arguments) {
  T *object = new T(std::forward<Arguments>(arguments)...);
  return {ObjectRegistry::Instance().Register(object, document), object};
}

}  // namespace PX_PLUGIN
