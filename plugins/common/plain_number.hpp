// Numbers as telemetry files write them: plain C notation, whatever the process's locale.
#ifndef PALVEX_PLUGINS_PLAIN_NUMBER_HPP
#define PALVEX_PLUGINS_PLAIN_NUMBER_HPP

#include <optional>
#include <string_view>

namespace palvex_plugins {

// The whole text as a finite number ("12", "-0.5", "+3", "1e-3"); nullopt for anything
// else, including infinities, NaN and surrounding spaces.
std::optional<double> ReadFiniteNumber(std::string_view text);

}  // namespace palvex_plugins

#endif  // PALVEX_PLUGINS_PLAIN_NUMBER_HPP
