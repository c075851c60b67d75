// The registry of live objects: address -> shared owner. An operation that receives a raw
// interface pointer from a converter (adding a child) finds the object's shared owner
// here; the deleter of that owner gives the library's one reference back through the
// object's own Release. Entries are tagged with the document (root) that made them, so a
// document's objects can be let go together and never mixed with another's.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>

#include "plugin_model/shared_object.hpp"

namespace PX_PLUGIN {

// A new document tag; never 0.
std::uint64_t NewDocumentTag();

struct RegisteredObject {
  std::shared_ptr<SharedObjectImpl> owner;  // empty when the address is not registered
  std::uint64_t document = 0;
};

class ObjectRegistry {
 public:
  static ObjectRegistry &Instance();

  // Takes the library's reference on a new object (reference count 0, nothing pending)
  // and registers it; returns a shared owner. When registering fails the object is
  // destroyed and the failure travels on.
  std::shared_ptr<SharedObjectImpl> Register(SharedObjectImpl *object, std::uint64_t document);

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
  struct Entry {
    std::shared_ptr<SharedObjectImpl> owner;
    std::uint64_t document;
  };

  mutable std::mutex mutex_;
  std::map<const SharedObjectImpl *, Entry> objects_;
};

// Makes an object, registers it for a document and returns a typed shared owner.
template <class T, class... Arguments>
std::shared_ptr<T> MakeRegistered(std::uint64_t document, Arguments &&...arguments) {
  T *object = new T(std::forward<Arguments>(arguments)...);
  return std::shared_ptr<T>(ObjectRegistry::Instance().Register(object, document), object);
}

}  // namespace PX_PLUGIN
