// One conversion: the chapters of a recording read twice, payload by payload: first for
// the GPS times (the offset from media time to UTC), then for the samples.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "byte_source.hpp"
#include "palvex/plugin_kit.hpp"

namespace gpmf {

// Payloads larger than this are refused (kTooLarge): cameras write a few KB per second.
constexpr std::uint32_t kMaxPayloadBytes = 16u << 20;

struct ConversionSummary {
  std::uint64_t payloads = 0;
  std::uint64_t samples = 0;
  std::uint64_t bytesRead = 0;  // over both passes and every chapter
  bool gpsTime = false;
};

// Opens chapter `index` (0 = the file given); called once per chapter and pass.
using ChapterOpener = std::function<std::unique_ptr<ByteSource>(std::size_t index)>;

// Builds the document into root (not committed). Throws PX_PluginException with the
// plug-in's codes, detail1 the byte offset and detail2 the chapter (1 = the file given).
ConversionSummary ConvertRecording(std::size_t chapters, const ChapterOpener &open, PX_PLUGIN::IMgjsonRoot_v1 *root);

}  // namespace gpmf
