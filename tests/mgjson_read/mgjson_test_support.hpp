// Helpers of the MGJSON reading tests: run a step, capture its fault, build small files.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>

#include "api/px_exception.hpp"
#include "mgjson_read/mgjson_parser.hpp"

namespace ns_sensor::testing {

// What a step ended with: code 0 and an empty message when it succeeded.
struct Fault {
  std::uint32_t code = 0;
  std::string message;
  std::int64_t offset = -1;  // detail1
  bool operator==(const Fault &) const = default;
};

inline std::ostream &operator<<(std::ostream &out, const Fault &fault) {
  return out << "{" << fault.code << ", \"" << fault.message << "\", " << fault.offset << "}";
}

inline Fault Capture(const std::function<void()> &step) {
  try {
    step();
  } catch (const PX_Exception &e) {
    EXPECT_EQ(e.detail2(), -1);
    return Fault{e.code(), e.what(), e.detail1()};
  }
  return Fault{};
}

// A parser over a text, and what parsing it ended with.
struct Opened {
  std::shared_ptr<PX_MgjsonParser> parser;
  Fault fault;
};

inline Opened Open(const std::string &text) {
  Opened opened{CreateMgjsonParser(text.data(), text.size()), {}};
  opened.fault = Capture([&] { opened.parser->ParseBytes(text.data(), text.size()); });
  return opened;
}

// A version 1 numberString data type with every property object it needs.
inline const std::string kNumberStringType =
    R"({"type":"numberString","numberStringProperties":{"pattern":{"isSigned":true,)"
    R"("digitsInteger":3,"digitsDecimal":2},"range":{"occurring":{"min":-1,"max":1},)"
    R"("legal":{"min":-100,"max":100}}}})";

// A dynamic node of schema version 1 or 2 with a numberString data type.
inline std::string DynamicNode(std::string_view matchName, std::string_view sampleSetId,
                               std::string_view displayName = "Speed") {
  return R"({"objectType":"dataDynamic","displayName":")" + std::string(displayName) +
         R"(","matchName":")" + std::string(matchName) + R"(","dataType":)" + kNumberStringType +
         R"(,"sampleSetID":")" + std::string(sampleSetId) +
         R"(","interpolation":"linear","hasExpectedFrequencyB":false,"sampleCount":2})";
}

// The outline most parser tests need: one dynamic node.
inline const std::string kOneNodeOutline = "[" + DynamicNode("speed", "s1") + "]";

// A version 1 static node of type numberString.
inline std::string StaticNodeV1(std::string_view matchName, std::string_view displayName = "Gain") {
  return R"({"objectType":"dataStatic","displayName":")" + std::string(displayName) +
         R"(","matchName":")" + std::string(matchName) + R"(","dataType":)" + kNumberStringType +
         R"(,"value":"1.5"})";
}

inline std::string GroupNode(std::string_view matchName, const std::string &children,
                             std::string_view displayName = "Group") {
  return R"({"objectType":"dataGroup","displayName":")" + std::string(displayName) +
         R"(","matchName":")" + std::string(matchName) + R"(","children":[)" + children + "]}";
}

}  // namespace ns_sensor::testing
