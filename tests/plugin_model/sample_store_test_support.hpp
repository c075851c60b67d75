// Helpers of the sample store tests: sample texts of fixed-length times, reading a store
// back whole, and the code of the plug-in exception an operation throws.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "palvex/plugin_helpers.hpp"
#include "plugin_model/sample_store.hpp"

namespace PX_PLUGIN::testing {

using Sample = std::pair<std::string, std::string>;  // time text, value text

// Bytes of every time text below ("HH:MM:SS:FF").
inline constexpr std::size_t kTimeLength = 11;

// The time text of sample n (distinct up to 100 hours of frames).
inline std::string TimeOf(std::uint32_t n) {
  char text[16];
  std::snprintf(text, sizeof text, "%02u:%02u:%02u:%02u", (n / 360000) % 100, (n / 6000) % 60,
                (n / 100) % 60, n % 100);
  return text;
}

// Value text of sample n, padded with 'x' to length bytes at least.
inline std::string ValueOf(std::uint32_t n, std::size_t length = 0) {
  std::string text = std::to_string(n);
  if (text.size() < length) text.append(length - text.size(), 'x');
  return text;
}

// Adds the samples in order.
inline void AddAll(ISampleSink &store, const std::vector<Sample> &samples) {
  for (const auto &[time, value] : samples) store.Add(time, value);
}

// Every sample the store gives back, in its order.
inline std::vector<Sample> ReadAll(ISampleSink &store) {
  std::vector<Sample> samples;
  std::string_view time, value;
  while (store.Next(time, value)) samples.emplace_back(time, value);
  return samples;
}

// The code of the plug-in exception the operation throws; 0 when it throws nothing.
// Any other exception fails the test.
template <class Operation>
std::uint32_t PluginCodeOf(Operation &&operation) {
  try {
    operation();
  } catch (const PX_PluginException &e) {
    EXPECT_EQ(e.detail1(), -1);
    EXPECT_EQ(e.detail2(), -1);
    return e.code();
  } catch (...) {
    ADD_FAILURE() << "an exception other than PX_PluginException";
    return 0xFFFFFFFF;
  }
  return 0;
}

}  // namespace PX_PLUGIN::testing
