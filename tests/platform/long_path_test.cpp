#include <gtest/gtest.h>

#include "platform/long_path.hpp"

namespace palvex::platform {
namespace {

TEST(LongPath, ConvertsEachFormOfPath) {
  struct Case {
    const char *path;
    const char *expected;
  };
  const Case cases[] = {
      // drive paths get the long-path prefix, slashes become backslashes
      {"C:/data/x.csv", R"(\\?\C:\data\x.csv)"},
      {R"(c:\data\x.csv)", R"(\\?\c:\data\x.csv)"},
      {"z:/", R"(\\?\z:\)"},
      {"C:/mixed\\slashes/x", R"(\\?\C:\mixed\slashes\x)"},
      {"C:/donn\xC3\xA9" "es/\xE6\x97\xA5\xE6\x9C\xAC.csv", "\\\\?\\C:\\donn\xC3\xA9" "es\\\xE6\x97\xA5\xE6\x9C\xAC.csv"},
      // network paths get the network form instead of their two backslashes
      {R"(\\server\share\f)", R"(\\?\UNC\server\share\f)"},
      {"//server/share/f", R"(\\?\UNC\server\share\f)"},
      // a path already in long form stays, whichever slashes it was written with
      {R"(\\?\C:\a\b)", R"(\\?\C:\a\b)"},
      {"//?/C:/a/b", R"(\\?\C:\a\b)"},
      {R"(\\?\UNC\server\share)", R"(\\?\UNC\server\share)"},
      // a dot before a backslash anywhere keeps the path as it is
      {R"(C:\a\.\b)", R"(C:\a\.\b)"},
      {"C:/a/../b", R"(C:\a\..\b)"},
      {R"(C:\dir.\x)", R"(C:\dir.\x)"},
      // relative paths and paths that are not "letter, colon, backslash"
      {"relative/x.csv", R"(relative\x.csv)"},
      {"x.csv", "x.csv"},
      {"C:", "C:"},
      {"C:x", "C:x"},
      {R"(1:\a)", R"(1:\a)"},
      {R"(\rooted\x)", R"(\rooted\x)"},
      {"", ""},
  };
  for (const Case &c : cases) EXPECT_EQ(ToLongPath(c.path), c.expected) << c.path;
}

}  // namespace
}  // namespace palvex::platform
