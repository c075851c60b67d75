/**
 * @file plugin_helpers.hpp
 * An optional header-only C++ helper for converter authors: statuses of the object model
 * become exceptions on the converter's side, and references are held by RAII handles.
 *
 * @code
 *   using namespace PX_PLUGIN;
 *   try {
 *     Ref<IMgjsonGroup_v1> group = CreateGroup(root, "Speed", "speed");
 *     StaticNode top = CreateStaticNumber(root, "Top", "top", 42.0);
 *     Call(group.get(), &IMgjsonGroup_v1::AddStaticChild, top.views().node);
 *     Call(root, &IMgjsonGroup_v1::AddGroupChild, group.get());
 *     uint32_t committed = 0;
 *     Call(root, &IMgjsonRoot_v1::Commit, &committed);
 *   } catch (const PX_PluginException &e) {
 *     error->code = e.code();  // hand the failure back to the library as a status
 *   }
 * @endcode
 *
 * Exceptions thrown here stay in the converter's module: the object model itself never
 * throws across its operations.
 */
#ifndef PALVEX_PLUGIN_HELPERS_HPP
#define PALVEX_PLUGIN_HELPERS_HPP

#include <stdint.h>

#include <exception>
#include <string_view>
#include <utility>

#include "palvex/plugin_model.hpp"

namespace PX_PLUGIN {

/** A failed status as an exception: the code and the two detail values of the error record. */
class PX_PluginException : public std::exception {
 public:
  explicit PX_PluginException(uint32_t code, int64_t detail1 = -1, int64_t detail2 = -1) noexcept
      : code_(code), detail1_(detail1), detail2_(detail2) {}

  uint32_t code() const noexcept { return code_; }          ///< the status
  int64_t detail1() const noexcept { return detail1_; }     ///< first detail, -1 when not set
  int64_t detail2() const noexcept { return detail2_; }     ///< second detail, -1 when not set
  const char *what() const noexcept override { return "object model operation failed"; }

 private:
  uint32_t code_;
  int64_t detail1_;
  int64_t detail2_;
};

/** An error record in its "nothing reported" state. */
inline PX_PluginError NoPluginError() noexcept { return PX_PluginError{0, -1, -1}; }

/** Throws PX_PluginException for a failed status, with the details of its error record. */
inline void ThrowOnFailure(uint32_t status, const PX_PluginError &error) {
  if (status != PX_PLUGIN_OK) throw PX_PluginException(status, error.detail1, error.detail2);
}

/**
 * Calls an operation that returns a status, appending the error record as its last
 * argument, and throws PX_PluginException when it fails:
 * Call(group, &IMgjsonGroup_v1::AddGroupChild, child).
 */
template <typename Self, typename Interface, typename... Parameters, typename... Arguments>
void Call(Self *self, uint32_t (Interface::*operation)(Parameters...), Arguments &&...arguments) {
  PX_PluginError error = NoPluginError();
  Interface *target = self;
  ThrowOnFailure((target->*operation)(std::forward<Arguments>(arguments)..., &error), error);
}

/** Holds one reference to an object and releases it when it goes. */
template <typename T>
class Ref {
 public:
  Ref() noexcept = default;
  /**
   * Takes over the reference of an object as the library hands it out. That reference
   * carries a pending acquire; it is consumed here (the count does not change), so that a
   * copy's Acquire counts a reference of its own.
   */
  explicit Ref(T *handedOut) noexcept : object_(handedOut) {
    if (object_ != nullptr) object_->Acquire();
  }
  Ref(const Ref &other) noexcept : object_(other.object_) {
    if (object_ != nullptr) object_->Acquire();
  }
  Ref(Ref &&other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  Ref &operator=(Ref other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~Ref() { reset(); }

  T *get() const noexcept { return object_; }
  T *operator->() const noexcept { return object_; }
  explicit operator bool() const noexcept { return object_ != nullptr; }
  /** Releases the reference now. */
  void reset() noexcept {
    if (object_ != nullptr) std::exchange(object_, nullptr)->Release();
  }

 private:
  T *object_ = nullptr;
};

/** Holds the views of a new static node and releases its one reference when it goes. */
class StaticNode {
 public:
  explicit StaticNode(const PX_StaticDataNode &views) noexcept : views_(views), holder_(views.shared) {}
  const PX_StaticDataNode &views() const noexcept { return views_; }

 private:
  PX_StaticDataNode views_;
  Ref<ISharedObject> holder_;
};

/** Holds the views of a new dynamic node and releases its one reference when it goes. */
class DynamicNode {
 public:
  explicit DynamicNode(const PX_DynamicDataNode &views) noexcept : views_(views), holder_(views.shared) {}
  const PX_DynamicDataNode &views() const noexcept { return views_; }

 private:
  PX_DynamicDataNode views_;
  Ref<ISharedObject> holder_;
};

/** The byte count of a text as the operations take it. */
inline uint32_t TextLength(std::string_view text) { return static_cast<uint32_t>(text.size()); }

/** IMgjsonRoot_v1::CreateGroup with the reference held. */
inline Ref<IMgjsonGroup_v1> CreateGroup(IMgjsonRoot_v1 *root, std::string_view displayName,
                                        std::string_view matchName) {
  IMgjsonGroup_v1 *group = nullptr;
  Call(root, &IMgjsonRoot_v1::CreateGroup, displayName.data(), TextLength(displayName),
       matchName.data(), TextLength(matchName), &group);
  return Ref<IMgjsonGroup_v1>(group);
}

/** IMgjsonRoot_v1::CreateStaticData for any kind, with the reference held. */
inline StaticNode CreateStaticData(IMgjsonRoot_v1 *root, uint32_t kind, std::string_view displayName,
                                   std::string_view matchName, const PX_StaticValue *value) {
  PX_StaticDataNode views{};
  Call(root, &IMgjsonRoot_v1::CreateStaticData, kind, displayName.data(), TextLength(displayName),
       matchName.data(), TextLength(matchName), value, &views);
  return StaticNode(views);
}

/** A new static number node. */
inline StaticNode CreateStaticNumber(IMgjsonRoot_v1 *root, std::string_view displayName,
                                     std::string_view matchName, double value) {
  const PX_StaticValue initial{value, nullptr, 0, 0};
  return CreateStaticData(root, PX_STATIC_NUMBER, displayName, matchName, &initial);
}

/** A new static string node. */
inline StaticNode CreateStaticString(IMgjsonRoot_v1 *root, std::string_view displayName,
                                     std::string_view matchName, std::string_view value) {
  const PX_StaticValue initial{0.0, value.data(), TextLength(value), 0};
  return CreateStaticData(root, PX_STATIC_STRING, displayName, matchName, &initial);
}

/** A new static Boolean node. */
inline StaticNode CreateStaticBoolean(IMgjsonRoot_v1 *root, std::string_view displayName,
                                      std::string_view matchName, bool value) {
  const PX_StaticValue initial{0.0, nullptr, 0, value ? 1u : 0u};
  return CreateStaticData(root, PX_STATIC_BOOLEAN, displayName, matchName, &initial);
}

/** IMgjsonRoot_v1::CreateDynamicData with the reference held. */
inline DynamicNode CreateDynamicData(IMgjsonRoot_v1 *root, uint32_t kind,
                                     std::string_view displayName, std::string_view matchName) {
  PX_DynamicDataNode views{};
  Call(root, &IMgjsonRoot_v1::CreateDynamicData, kind, displayName.data(), TextLength(displayName),
       matchName.data(), TextLength(matchName), &views);
  return DynamicNode(views);
}

}  // namespace PX_PLUGIN

#endif  // PALVEX_PLUGIN_HELPERS_HPP
