#include "csv_records.hpp"

#include <gtest/gtest.h>

#include <sstream>

#include "palvex/plugin_kit.hpp"
#include "timed_csv_errors.hpp"

namespace timed_csv {
namespace {

using Records = std::vector<std::vector<std::string>>;

Records ReadAll(const std::string &text, char delimiter = ',') {
  std::istringstream in(text);
  CsvRecords records(in, delimiter);
  Records all;
  while (records.Next()) {
    all.emplace_back();
    for (std::size_t i = 0; i < records.size(); ++i) all.back().emplace_back(records.field(i));
  }
  return all;
}

TEST(TimedCsvRecords, QuotesLineEndsAndBlanks) {
  const std::pair<std::string, Records> cases[] = {
      {"a,b\n1,2\n", {{"a", "b"}, {"1", "2"}}},
      {"a,b\r\n1,2", {{"a", "b"}, {"1", "2"}}},
      {"\xEF\xBB\xBFtime,x\n", {{"time", "x"}}},
      {"\n\na\n\r\n\nb\n", {{"a"}, {"b"}}},
      {" a , b \n", {{"a", "b"}}},
      {"\"a,b\",\"say \"\"hi\"\"\"\n", {{"a,b", "say \"hi\""}}},
      {"\"two\nlines\",x\n", {{"two\nlines", "x"}}},
      {"\" kept \" ,x\n", {{" kept ", "x"}}},
      {"a,,\n", {{"a", "", ""}}},
      {"\"\"\n", {{""}}},  // a quoted empty field is a record, not a blank line
      {"\"open,to the end\nstill", {{"open,to the end\nstill"}}},
      {"x\"y\",z\n", {{"x\"y\"", "z"}}},
  };
  for (const auto &[text, expected] : cases) EXPECT_EQ(ReadAll(text), expected) << text;
  EXPECT_EQ(ReadAll("a\tb;c\n", '\t'), (Records{{"a", "b;c"}}));
}

TEST(TimedCsvRecords, LineNumbersCountQuotedBreaks) {
  std::istringstream in("h\n\"a\nb\"\n\nc\n");
  CsvRecords records(in, ',');
  std::vector<std::uint64_t> lines;
  while (records.Next()) lines.push_back(records.line());
  EXPECT_EQ(lines, (std::vector<std::uint64_t>{1, 2, 5}));
}

TEST(TimedCsvRecords, BinaryAndEndlessInputFail) {
  const std::string endless(kMaxRecordBytes + 1, 'x');
  const std::string commas(kMaxRecordBytes + 1, ',');
  const std::tuple<std::string, std::uint32_t, std::int64_t> cases[] = {
      {std::string("time,x\n1,\0\n", 11), kBinaryData, 2},
      {"time\n" + endless, kRecordTooLong, 2},
      {"time\n" + commas, kRecordTooLong, 2},
  };
  for (const auto &[text, code, line] : cases) {
    try {
      ReadAll(text);
      ADD_FAILURE() << "no failure, code " << code;
    } catch (const PX_PLUGIN::PX_PluginException &e) {
      EXPECT_EQ(e.code(), code);
      EXPECT_EQ(e.detail1(), line);
    }
  }
}

}  // namespace
}  // namespace timed_csv
