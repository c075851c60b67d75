// What the plug-in tests share: the folders of the test plug-ins (tests/plugins), a
// discovery into registries of the test's own, inputs for the test converters, and a
// check of the exact failure an operation raises.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "api/px_exception.hpp"
#include "converters/converter_registry.hpp"
#include "converters/plugin_discovery.hpp"
#include "converters/plugin_registry.hpp"

namespace ns_sensor::testing {

// A folder of test plug-ins: "conversions", "manifests" or "replacement".
inline std::string PluginFolder(std::string_view name) {
  return std::string(PALVEX_TEST_PLUGINS_DIR) + "/" + std::string(name);
}

// A module file of the test plug-ins.
inline std::string PluginModulePath(std::string_view folder, std::string_view name) {
  return PluginFolder(folder) + "/" + std::string(name) + ".mgx";
}

// The inputs of the test converters: a signature line, then "<frame> <value>" lines.
inline std::string TextInput(std::string_view signature = "PXTEXT") {
  return std::string(signature) + "\n0 1.5\n25 -2\n50 4.25\n";
}

// A discovery into registries of the test's own (the process's stay untouched).
struct Discovered {
  explicit Discovered(std::string_view folder, std::string_view moduleExtensions = {})
      : failures(DiscoverPlugins(folder, moduleExtensions, plugins, converters)) {}

  PluginRegistry plugins;
  ConverterRegistry converters;
  std::vector<PX_Exception> failures;
};

// A failure as the host receives it.
struct Failure {
  std::uint32_t code;
  std::string message;
  std::int64_t detail1 = -1;
  std::int64_t detail2 = -1;

  bool operator==(const Failure &) const = default;
};

inline Failure FailureOf(const PX_Exception &raised) {
  return Failure{raised.code(), raised.what(), raised.detail1(), raised.detail2()};
}

inline std::ostream &operator<<(std::ostream &out, const Failure &failure) {
  return out << "code " << failure.code << " \"" << failure.message << "\" details " << failure.detail1 << ", "
             << failure.detail2;
}

// Runs the operation and checks that it raises exactly the expected failure.
template <typename Operation>
::testing::AssertionResult RaisesFailure(Operation &&operation, const Failure &expected) {
  try {
    operation();
  } catch (const PX_Exception &raised) {
    if (FailureOf(raised) == expected) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "raised " << FailureOf(raised) << "; expected " << expected;
  }
  return ::testing::AssertionFailure() << "nothing raised; expected " << expected;
}

}  // namespace ns_sensor::testing
