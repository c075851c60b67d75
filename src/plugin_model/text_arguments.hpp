// Arguments of the object model's operations as the library keeps them: texts checked and
// escaped for the file, match names checked against the reader's rule, numbers checked
// finite. Each refusal raises the plug-in exception of its code.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace PX_PLUGIN {

// A (pointer, length) text; null stands for the empty text only when the length is 0.
std::string_view TextArgument(const char *data, std::uint32_t length);

// A free text ready to stand between quotation marks in the file: quotation mark,
// backslash, backspace, tab, line feed, form feed and carriage return are escaped; every
// other byte below 0x20 becomes a space, because the reader refuses raw control bytes and
// knows no other escape.
std::string EscapeFreeText(std::string_view text);

// TextArgument, escaped.
std::string FreeTextArgument(const char *data, std::uint32_t length);

// A match name as the reader accepts it: ASCII letters and digits, not starting with a
// digit (empty is accepted, as the reader does). Anything else raises 2027.
std::string MatchNameArgument(const char *data, std::uint32_t length);

// A number that can be written as JSON: NaN and infinities raise 2029.
double FiniteArgument(double value);

inline bool FlagArgument(std::uint32_t flag) { return flag != 0; }

}  // namespace PX_PLUGIN
