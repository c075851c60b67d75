// Texts as the object model stores them: escaped for the file, match names as the reader
// accepts them, and the pointer-and-length rule.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <functional>
#include <string>

#include "plugin_model/plugin_status.hpp"
#include "plugin_model/text_arguments.hpp"

namespace PX_PLUGIN {
namespace {

std::uint32_t CodeOf(const std::function<void()> &body) { return RunWithStatus(nullptr, body); }

TEST(TextArguments, EscapingTableAndNothingElse) {
  const std::pair<std::string, std::string> cases[] = {
      {"plain text", "plain text"},
      {"say \"hi\"", "say \\\"hi\\\""},
      {"a\\b", "a\\\\b"},
      {"\b\t\n\f\r", "\\b\\t\\n\\f\\r"},
      {"/ and \x7f and \xc3\xa9", "/ and \x7f and \xc3\xa9"},  // solidus, DEL and UTF-8 stay
      {std::string("nul\0here", 8), "nul here"},
      {"\x01\x0b\x1f", "   "},
  };
  for (const auto &[text, escaped] : cases) EXPECT_EQ(EscapeFreeText(text), escaped) << text;
}

TEST(TextArguments, NullPointerIsTheEmptyTextOnlyWithLengthZero) {
  EXPECT_EQ(TextArgument(nullptr, 0), "");
  EXPECT_EQ(CodeOf([] { TextArgument(nullptr, 3); }), PX_PLUGIN_INVALID_ARGUMENT);
  EXPECT_EQ(TextArgument("abcdef", 3), "abc");  // no terminator needed
}

TEST(TextArguments, MatchNamesTheReaderAccepts) {
  for (const char *accepted : {"speed", "Speed2", "a1b2", "X", ""}) {
    EXPECT_EQ(CodeOf([&] { MatchNameArgument(accepted, static_cast<std::uint32_t>(std::strlen(accepted))); }), 0u)
        << accepted;
  }
  for (const char *refused : {"2speed", "speed limit", "speed-1", "sp_eed", "caf\xc3\xa9", "a.b"}) {
    EXPECT_EQ(CodeOf([&] { MatchNameArgument(refused, static_cast<std::uint32_t>(std::strlen(refused))); }),
              PX_PLUGIN_INVALID_MATCH_NAME)
        << refused;
  }
}

TEST(TextArguments, NumbersMustBeFinite) {
  EXPECT_EQ(CodeOf([] { FiniteArgument(std::nan("")); }), PX_PLUGIN_INVALID_ARGUMENT);
  EXPECT_EQ(CodeOf([] { FiniteArgument(-HUGE_VAL); }), PX_PLUGIN_INVALID_ARGUMENT);
  EXPECT_EQ(FiniteArgument(-0.0), 0.0);
}

}  // namespace
}  // namespace PX_PLUGIN
