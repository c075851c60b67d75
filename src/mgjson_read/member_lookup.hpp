// Finding an object's member by name, as the outline's readers do a few dozen times per
// node. RapidJSON's own search measures the name and calls memcmp for every member of the
// same length (displayName, sampleSetID and sampleCount all have eleven bytes); this one
// compares the first byte before anything else.
#pragma once

#include <cstring>
#include <string_view>

#include "mgjson_read/rapidjson_config.hpp"

namespace ns_sensor {

// The first member named `name`, or null; null too when `object` is not an object.
inline const JsonMember *FindNamedMember(const JsonValue &object, std::string_view name) {
  if (!object.IsObject()) return nullptr;
  for (auto member = object.MemberBegin(); member != object.MemberEnd(); ++member) {
    if (member->name.GetStringLength() != name.size()) continue;
    const char *const text = member->name.GetString();
    if (name.empty() || (text[0] == name[0] && std::memcmp(text, name.data(), name.size()) == 0)) return &*member;
  }
  return nullptr;
}

inline const JsonValue *FindMemberValue(const JsonValue &object, std::string_view name) {
  const JsonMember *member = FindNamedMember(object, name);
  return member == nullptr ? nullptr : &member->value;
}

}  // namespace ns_sensor
