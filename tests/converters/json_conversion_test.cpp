// JSON files converted through the manager and read back through the file handler: the
// outline against the input document, the creator, and bad input of every kind.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "api/conversion_test_support.hpp"
#include "mgjson_read/rapidjson_config.hpp"

namespace palvex::testing {
namespace {

using Lines = std::vector<std::string>;

class JsonConversion : public ConversionTest {
 protected:
  // The outline of an opened file, one line per node: "display (match)" for a group and
  // "display (match) = value" for a static node, two spaces per level.
  void Describe(ISensorFileHandler *handler, const std::string &path, const std::string &indent, Lines &lines) {
    PX_GroupChildren children;
    if (path.empty()) {
      handler->GetRootChildren(&children, &log_);
    } else {
      handler->GetGroupChildren(path.c_str(), &children, &log_);
    }
    for (std::size_t i = 0; i < children.paths.size(); ++i) {
      const std::string childPath = path + "[" + std::to_string(i) + "]";
      PX_GroupChildInfo info;
      handler->GetGroupChildInfo(childPath.c_str(), &info, &log_);
      const std::string names = info.displayName + " (" + info.matchName + ")";
      if (info.nodeType == PX_NODE_GROUP) {
        lines.push_back(indent + names);
        Describe(handler, childPath, indent + "  ", lines);
        continue;
      }
      PX_StaticDataInfo node;
      handler->GetStaticDataInfo(childPath.c_str(), &node, &log_);
      lines.push_back(indent + names + " = " + ValueText(node));
    }
  }

  static std::string ValueText(const PX_StaticDataInfo &node) {
    switch (node.valueKind) {
      case PX_TYPE_NUMBER: return NumberText(node.number);
      case PX_TYPE_STRING: return "'" + node.text + "'";
      case PX_TYPE_BOOLEAN: return node.boolean ? "true" : "false";
      default: return "kind " + std::to_string(node.valueKind);
    }
  }

  static std::string NumberText(double value) {
    char text[40];
    std::snprintf(text, sizeof text, "%.17g", value);
    return text;
  }

  // Converts a file and reads its outline back; empty when it did not open.
  Lines Converted(const std::string &name, const std::string &json) {
    ISensorFileHandler *handler = nullptr;
    manager_->OpenFile(&handler, folder_.WriteFile(name, json).c_str(), nullptr, &log_);
    if (handler == nullptr) return {};
    Lines lines;
    Describe(handler, "", "", lines);
    manager_->CloseFile(&handler, &log_);
    return lines;
  }
};

// Every value of a document in document order, as the file should give it back: nulls
// have no node, raw control bytes in texts come back as spaces, and numbers keep 16
// significant digits (the two largest doubles a digit more, since 16 would overflow).
void AddValues(const ns_sensor::JsonValue &value, Lines &values) {
  if (value.IsArray()) {
    for (const auto &element : value.GetArray()) AddValues(element, values);
  } else if (value.IsObject()) {
    for (const auto &member : value.GetObject()) AddValues(member.value, values);
  } else if (value.IsString()) {
    std::string text(value.GetString(), value.GetStringLength());
    for (char &byte : text) {
      if (static_cast<unsigned char>(byte) < 0x20 && std::string_view("\b\t\n\f\r").find(byte) == std::string::npos) {
        byte = ' ';
      }
    }
    values.push_back("'" + text + "'");
  } else if (value.IsBool()) {
    values.push_back(value.GetBool() ? "true" : "false");
  } else if (value.IsNumber()) {
    char digits[40];
    std::snprintf(digits, sizeof digits, "%.16g", value.GetDouble());
    const double rounded = std::strtod(digits, nullptr);
    std::snprintf(digits, sizeof digits, "%.17g", std::isinf(rounded) ? value.GetDouble() : rounded);
    values.push_back(digits);
  }
}

Lines ExpectedValues(const std::string &json) {
  ns_sensor::JsonDocument document;
  document.Parse(json.c_str(), json.size());
  EXPECT_FALSE(document.HasParseError());
  Lines values;
  AddValues(document, values);
  return values;
}

// The values of an outline, without names or groups.
Lines ValuesOf(const Lines &outline) {
  Lines values;
  for (const std::string &line : outline) {
    const std::size_t equals = line.find(") = ");
    if (equals != std::string::npos) values.push_back(line.substr(equals + 4));
  }
  return values;
}

TEST_F(JsonConversion, TheOutlineMirrorsTheDocument) {
  EXPECT_EQ(Converted("ab.json", R"({"a": 1, "b": "x"})"), (Lines{"a (matchName0) = 1", "b (matchName1) = 'x'"}));
  EXPECT_EQ(Converted("top.json", "[1, 2]"), (Lines{"dataOutline 0 (matchName0) = 1", "dataOutline 1 (matchName1) = 2"}));
  EXPECT_EQ(Converted("nested.json", "\n[[true]]"),
            (Lines{"dataOutline 0 (matchName0)", "  dataOutline 0 0 (matchName1) = true"}));
  EXPECT_EQ(TakeError(), "ok");
  EXPECT_TRUE(TempFiles().empty());
}

TEST_F(JsonConversion, EveryStaticValueSurvivesTheRoundTrip) {
  const std::string documents[] = {
      R"({
        "device": {"id": "unit-7", "firmware": [1, 4, 2], "calibrated": true, "notes": null},
        "frames": [
          {"t": 0, "speed": 12.5, "heading": -179.99999999999997, "tags": ["start", "caf\u00e9"]},
          {"t": 1, "speed": 1e-300, "heading": 1.7976931348623157e308, "tags": [], "extra": {}},
          {"t": 2, "speed": 18446744073709551615, "heading": -9223372036854775808, "tags": [null]}
        ],
        "quote \" and \\ backslash": "tab\tnew\nline\u0007bell",
        "emoji \ud83d\ude00": "\u4e2d\u6587",
        "": "empty key",
        "same": 1, "same": 2,
        "deep": {"a": {"b": {"c": {"d": [[[0.1, 0.2], [0.30000000000000004]]]}}}},
        "empties": [[], {}, [[{}]], {"x": [null, {}]}]
      })",
      "[0.5, \"s\", \"\", false, {\"k\": [[1], [2, [3]]]}, null, [], 123456789012345678901234567890, -0, "
      "2147483648, -2147483649, 4294967296, 9223372036854775808]",
  };
  for (const std::string &json : documents) {
    EXPECT_EQ(ValuesOf(Converted("round.json", json)), ExpectedValues(json)) << json;
    EXPECT_EQ(TakeError(), "ok");
  }
  const std::string example = ReadWholeFile(std::string(PALVEX_SOURCE_DIR) + "/examples/device_report.json");
  const Lines outline = Converted("device_report.json", example);
  EXPECT_EQ(outline.size(), 50u);
  EXPECT_EQ(ValuesOf(outline), ExpectedValues(example));
  EXPECT_EQ(TakeError(), "ok");
}

TEST_F(JsonConversion, BadInputFailsWithoutLeavingFiles) {
  constexpr std::size_t kDepth = 1000000;
  const struct {
    const char *name;
    std::string json;
  } cases[] = {
      // Each way to fail once, end to end; the text's refusals are json_text_test.cpp's.
      {"truncated", R"({"a": [1, 2)"},   {"bad utf8 key", "{\"\xFF\": 1}"},
      {"lone low surrogate", R"(["\udc00"])"}, {"nan", "[NaN]"},
      {"deep value", std::string(kDepth, '[') + "1" + std::string(kDepth, ']')},
      {"deep empty", std::string(kDepth, '[') + std::string(kDepth, ']')},
      {"only nulls", R"({"g": {"h": null}})"}, {"only empties", R"({"a": [], "b": {}, "c": [[], [{}]]})"},
      {"empty object", "{}"},                {"empty array", " [ ] "},
  };
  for (const auto &c : cases) {
    ISensorFileHandler *handler = nullptr;
    manager_->OpenFile(&handler, folder_.WriteFile(std::string(c.name) + ".json", c.json).c_str(), nullptr, &log_);
    EXPECT_EQ(TakeError(), "1506 File Cannot be converted.") << c.name;
    if (handler != nullptr) manager_->CloseFile(&handler, &log_);
    EXPECT_TRUE(TempFiles().empty()) << c.name;
  }
}

TEST_F(JsonConversion, WhatTheCheckRefusesIsLeftToTheOtherConverters) {
  const struct {
    const char *name;
    std::string json;
  } cases[] = {
      {"white space", " \t\r\n  "}, {"lone brace", "{"},          {"brace last", "\n\n{"},
      {"empty", ""},                {"marked", "\xEF\xBB\xBF{}"}, {"scalar", "42"},
  };
  for (const auto &c : cases) {
    ISensorFileHandler *handler = nullptr;
    manager_->OpenFile(&handler, folder_.WriteFile(std::string(c.name) + ".json", c.json).c_str(), nullptr, &log_);
    if (handler != nullptr) {
      PX_FileInfo info;
      handler->GetFileInfo(&info, &log_);
      EXPECT_EQ(info.creator, "com.corvane.sensor.csv") << c.name;
      manager_->CloseFile(&handler, &log_);
      EXPECT_EQ(TakeError(), "ok") << c.name;
    } else {
      EXPECT_EQ(TakeError(), "1506 File Cannot be converted.") << c.name;
    }
    EXPECT_TRUE(TempFiles().empty()) << c.name;
  }
}

TEST_F(JsonConversion, OddButValidInputConverts) {
  EXPECT_EQ(Converted("keys.json", R"({"a\"b": 1, "c\\d": 2, "e\u0001f\tg": 3})"),
            (Lines{"a\"b (matchName0) = 1", "c\\d (matchName1) = 2", "e f\tg (matchName2) = 3"}));
  EXPECT_EQ(Converted("numbers.json", "[1e308, -1e308, 5e-324, 1e-400, 99999999999999999999999]"),
            (Lines{"dataOutline 0 (matchName0) = 1e+308", "dataOutline 1 (matchName1) = -1e+308",
                   "dataOutline 2 (matchName2) = 4.9406564584124654e-324", "dataOutline 3 (matchName3) = 0",
                   "dataOutline 4 (matchName4) = 9.9999999999999992e+22"}));
  EXPECT_EQ(TakeError(), "ok");
}

}  // namespace
}  // namespace palvex::testing
