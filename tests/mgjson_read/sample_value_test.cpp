// Sample values read as their node's data type says: the forms each type accepts, the
// numbers and text they give, and the faults of the others.
#include "mgjson_read/sample_value.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace ns_sensor {
namespace {

const SampleValueType kNumber{PX_TYPE_NUMBER_STRING, 0, 0};
const SampleValueType kPair{PX_TYPE_NUMBER_STRING_ARRAY, 2, 0};
const SampleValueType kPadded{PX_TYPE_PADDED_STRING, 0, 5};

TEST(SampleValue, ReadsEachFormAndRefusesTheRest) {
  const struct {
    SampleValueType type;
    const char *json;
    ValueFault fault;
    std::vector<double> numbers;
    std::string text;
  } cases[] = {
      {kNumber, R"("+012.50")", ValueFault::None, {12.5}, "+012.50"},
      {kNumber, "-1.5e2", ValueFault::None, {-150}, "-1.5e2"},
      {kNumber, R"("1\.5")", ValueFault::None, {1.5}, "1.5"},
      {kNumber, R"("+-1")", ValueFault::Unreadable, {}, ""},
      {kNumber, R"("1.5 ")", ValueFault::Unreadable, {}, ""},
      {kNumber, R"("inf")", ValueFault::Unreadable, {}, ""},
      {kNumber, R"("1e999")", ValueFault::Unreadable, {}, ""},
      {kNumber, R"(["1"])", ValueFault::Unreadable, {}, ""},
      {kPair, R"(["+1.5",-2])", ValueFault::None, {1.5, -2}, "+1.5,-2"},
      {kPair, R"(["1",{"a":1}])", ValueFault::ArrayItemType, {}, ""},
      {kPair, R"(["1","x"])", ValueFault::Unreadable, {}, ""},
      {kPair, R"(["1"])", ValueFault::ArrayTooShort, {}, ""},
      // \u is no escape of MGJSON text: "hu00e9" is six characters.
      {kPadded, R"({"length":"05","str":"h\u00e9"})", ValueFault::PaddedTooLong, {}, ""},
      {kPadded, "{\"str\":\"h\xC3\xA9llo\",\"length\":5}", ValueFault::None, {}, "h\xC3\xA9llo"},
      {kPadded, R"({"length":5.5,"str":"hello"})", ValueFault::Unreadable, {}, ""},
      {kPadded, R"({"length":"-1","str":"a"})", ValueFault::Unreadable, {}, ""},
      {kPadded, R"({"length":6,"str":"a"})", ValueFault::PaddedTooLong, {}, ""},
      {kPadded, R"({"length":1,"str":7})", ValueFault::Unreadable, {}, ""},
      {kPadded, R"("hello")", ValueFault::Unreadable, {}, ""},
      {SampleValueType{}, R"("1")", ValueFault::Unreadable, {}, ""},
  };
  DecodedValue value;
  for (const auto &c : cases) {
    ASSERT_EQ(ReadSampleValue(c.type, c.json, value), c.fault) << c.json;
    if (c.fault != ValueFault::None) continue;
    EXPECT_EQ(std::vector<double>(value.numbers.begin(), value.numbers.end()), c.numbers) << c.json;
    EXPECT_EQ(value.text, c.text) << c.json;
  }
  ASSERT_EQ(ReadSampleValue(kPair, R"([1,true])", value), ValueFault::ArrayItemType);
  EXPECT_EQ(value.failedItem, 1u);
}

}  // namespace
}  // namespace ns_sensor
