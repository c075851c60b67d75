// The structure of one telemetry payload: devices (DEVC) holding streams (STRM), each
// stream's properties followed by its data. Hands every stream to a visitor.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "stream_block.hpp"

namespace gpmf {

// Walks `size` bytes read from fileOffset. Throws kCorruptPayload when a KLV runs past
// its payload or its nest; unknown keys and types are stepped over.
void WalkPayload(const unsigned char *payload, std::size_t size, std::uint64_t fileOffset,
                 const std::function<void(const StreamBlock &)> &visit);

// The first text value of `key` anywhere in a payload (the recording-wide settings
// payload keeps model and firmware there); empty when none. Never throws.
std::string FindText(const unsigned char *payload, std::size_t size, std::uint32_t key);

}  // namespace gpmf
