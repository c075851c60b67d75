// The converter registry: built-in converters and plug-in converters by extension, and the
// format map that the supported-format list is read from. Keys are ordered byte-wise.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "converters/converter_base.hpp"
#include "converters/format_registry.hpp"

namespace ns_sensor {

struct ConverterEntry;

// Whether the entry's converter can read the request's input.
using ConverterCheck = std::function<bool(const ConverterEntry &, const ConversionRequest &)>;
// A new converter for the request.
using ConverterCreate =
    std::function<std::shared_ptr<PX_ConverterHandlerBase>(const ConverterEntry &, const ConversionRequest &)>;

struct ConverterEntry {
  std::string extension;  // lower-case, without the dot
  ConverterCheck check;
  ConverterCreate create;
};

// How a built-in converter is checked for and made; one per converter source file.
struct ConverterKind {
  bool (*check)(const ConversionRequest &request);
  std::shared_ptr<PX_ConverterHandlerBase> (*create)(const ConversionRequest &request);
};

using ConverterMap = std::map<std::string, ConverterEntry, std::less<>>;

class ConverterRegistry {
 public:
  // An empty registry (tests make their own; the process has one, below).
  ConverterRegistry() = default;

  // The process's registry, filled with the built-in converters on first use and kept for
  // the life of the process.
  static ConverterRegistry &Process();

  // First registration of an extension wins: false, and nothing changes, when the
  // extension is already in the map. A new entry also puts (extension, description) into
  // the format map unless that extension is listed there already.
  bool RegisterNative(std::string_view extension, std::string_view description, ConverterCheck check,
                      ConverterCreate create);
  bool RegisterPlugin(std::string_view extension, std::string_view description, ConverterCheck check,
                      ConverterCreate create);
  // A format row without a converter (readable formats; converters still to come).
  void AddFormat(std::string_view extension, std::string_view description);

  const ConverterMap &Native() const { return native_; }
  const ConverterMap &Plugins() const { return plugins_; }
  const FormatMap &Formats() const { return formats_; }

 private:
  static bool Register(ConverterMap &map, FormatMap &formats, std::string_view extension,
                       std::string_view description, ConverterCheck check, ConverterCreate create);

  ConverterMap native_;
  ConverterMap plugins_;
  FormatMap formats_;
};

// Fills a registry with the built-in rows, in their registration order, then "mgjson".
void RegisterBuiltInConverters(ConverterRegistry &registry);

}  // namespace ns_sensor
