#include "plugin_model/text_arguments.hpp"

#include <cmath>

#include "plugin_model/plugin_status.hpp"

namespace PX_PLUGIN {
namespace {

constexpr unsigned char kFirstPrintable = 0x20;

// The escape letter of a byte, or 0 when the byte stands for itself.
char EscapeLetter(char byte) {
  switch (byte) {
    case '\b': return 'b';
    case '\t': return 't';
    case '\n': return 'n';
    case '\f': return 'f';
    case '\r': return 'r';
    case '"': return '"';
    case '\\': return '\\';
    default: return 0;
  }
}

bool NeedsRewriting(char byte) {
  return static_cast<unsigned char>(byte) < kFirstPrintable || byte == '"' || byte == '\\';
}

bool IsAsciiLetter(char byte) { return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z'); }
bool IsAsciiDigit(char byte) { return byte >= '0' && byte <= '9'; }

}  // namespace

std::string_view TextArgument(const char *data, std::uint32_t length) {
  if (data == nullptr) {
    if (length != 0) RaisePluginError(ns_sensor::Msg::InvalidObjectModelArgument);
    return {};
  }
  return {data, length};
}

std::string EscapeFreeText(std::string_view text) {
  std::string escaped;
  escaped.reserve(text.size());
  for (const char byte : text) {
    if (!NeedsRewriting(byte)) {
      escaped += byte;
    } else if (const char letter = EscapeLetter(byte); letter != 0) {
      escaped += '\\';
      escaped += letter;
    } else {
      escaped += ' ';
    }
  }
  return escaped;
}

std::string FreeTextArgument(const char *data, std::uint32_t length) {
  return EscapeFreeText(TextArgument(data, length));
}

std::string MatchNameArgument(const char *data, std::uint32_t length) {
  const std::string_view name = TextArgument(data, length);
  bool valid = name.empty() || !IsAsciiDigit(name.front());
  for (const char byte : name) valid = valid && (IsAsciiLetter(byte) || IsAsciiDigit(byte));
  if (!valid) RaisePluginError(ns_sensor::Msg::InvalidMatchNameSet);
  return std::string(name);
}

double FiniteArgument(double value) {
  if (!std::isfinite(value)) RaisePluginError(ns_sensor::Msg::InvalidObjectModelArgument);
  return value;
}

}  // namespace PX_PLUGIN
