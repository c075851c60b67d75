#include "match_names.hpp"

#include <gtest/gtest.h>

namespace palvex_plugins {
namespace {

TEST(PluginMatchNames, FreeTextsBecomeUniqueCamelCaseNames) {
  MatchNames names;
  const struct {
    const char *text;
    const char *expected;
  } cases[] = {
      {"heart rate [bpm]", "heartRateBpm"},
      {"Heart_Rate", "heartRate"},
      {"heart-rate", "heartRate2"},  // the same words: counted
      {"3D speed", "n3dSpeed"},
      {"Température", "tempRature"},
      {"", "value"},
      {"[]", "value2"},
      {"GPS5 raw", "gps5Raw"},
  };
  for (const auto &c : cases) EXPECT_EQ(names.Make(c.text), c.expected) << c.text;
  EXPECT_EQ(names.Make("!", "fallback name"), "fallbackName");
}

}  // namespace
}  // namespace palvex_plugins
