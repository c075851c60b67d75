// The MGJSON scanner: reads JSON values straight from the mapped bytes of a file, with the
// grammar and the messages of MGJSON rather than those of a general JSON reader.
//
// Every operation takes the position to read from and returns the position after what it
// read; it never reads at or past the end. A fault raises PX_Exception (code 32) whose
// detail1 is the byte offset of the fault from the start of the file, or -1 when the
// scanner was given no file start (sample sets read from elsewhere) and for the nesting
// fault.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "mgjson_read/rapidjson_config.hpp"
#include "mgjson_read/property_path.hpp"

namespace ns_sensor {

// Values nested deeper than this below the value handed to the scanner are refused.
inline constexpr std::uint16_t kMaxNestingDepth = 100;

// Raises the row `id` with `offset` as detail1 (-1: no offset).
[[noreturn]] void RaiseAtOffset(Msg id, std::int64_t offset, const PX_MessageParam &param1 = {},
                                const PX_MessageParam &param2 = {},
                                const PX_MessageParam &param3 = {});

class MgjsonScanner {
 public:
  // fileStart: the first byte of the file, or null when offsets are not to be reported.
  // end: one past the last byte that may be read.
  MgjsonScanner(const char *fileStart, const char *end) : fileStart_(fileStart), end_(end) {}

  const char *end() const { return end_; }
  // Offset of a position from the start of the file; -1 without a file start.
  std::int64_t OffsetOf(const char *at) const {
    return fileStart_ == nullptr ? -1 : static_cast<std::int64_t>(at - fileStart_);
  }

  // Space, tab, line feed and carriage return; returns the first other byte or the end.
  const char *SkipWhitespace(const char *at) const;
  // White space, ":", white space; `key` names the property in the fault.
  const char *ExpectColon(const char *at, std::string_view key) const;

  // A quoted string with the narrow escape set (\" \\ \b \f \n \r \t; any other escaped
  // byte stands for itself). `text` views the input when the string holds no escape,
  // otherwise `scratch`, which receives the unescaped bytes.
  const char *ReadKey(const char *at, std::string_view &text, std::string &scratch) const;
  const char *ReadString(const char *at, const PropertyPath &path, std::string_view &text,
                         std::string &scratch) const;
  // "true" or "false", refused when it runs up to the very end of the input.
  const char *ReadBoolean(const char *at, const PropertyPath &path, bool &value) const;
  // A number, always stored as a double (number_reader.cpp).
  const char *ReadNumber(const char *at, const PropertyPath &path, double &value) const;

  // "{" members "}" and "[" items "]". With `out` set, the value is built there (members
  // and items in file order, strings copied into its allocator); with `out` null the same
  // grammar is checked and nothing is built. `depth` is 0 for the value handed in.
  const char *ParseObject(const char *at, const PropertyPath &path, JsonDocument *out,
                          std::uint16_t depth) const;
  const char *ParseArray(const char *at, const PropertyPath &path, JsonDocument *out,
                         std::uint16_t depth, std::size_t *itemCount = nullptr) const;

 private:
  const char *ReadQuoted(const char *at, const PropertyPath *valuePath, std::string_view &text,
                         std::string &scratch) const;
  [[noreturn]] void FailQuotes(const char *at, const PropertyPath *valuePath) const;
  // After a member: "," or "}", else the fault names the member.
  void ExpectMemberEnd(const char *at, const PropertyPath &memberPath) const;
  // The readings behind ParseObject/ParseArray. A value being built goes to `events` as
  // the document's reader events: the document then sizes every container exactly, where
  // growing them member by member in its memory pool would leave each outgrown block
  // behind (several times the outline's own size). Null `events`: check only.
  const char *ReadObject(const char *at, const PropertyPath &path, JsonDocument *events,
                         std::uint16_t depth) const;
  const char *ReadArray(const char *at, const PropertyPath &path, JsonDocument *events,
                        std::uint16_t depth, std::size_t *itemCount) const;
  // One value, chosen by its first byte; nested containers are read at `depth`.
  const char *ReadValue(const char *at, const PropertyPath &path, JsonDocument *events,
                        std::uint16_t depth) const;

  const char *fileStart_;
  const char *end_;
};

}  // namespace ns_sensor
