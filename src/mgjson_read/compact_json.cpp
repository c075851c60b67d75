#include "mgjson_read/compact_json.hpp"


namespace ns_sensor::compact_json {
namespace {

// The closing quote of the string body starting at `at`, or null. Sample strings are
// short, so a plain loop beats a library search that must first set itself up.
const char *ClosingQuote(const char *at, const char *end) {
  for (; at != end; ++at) {
    if (*at == '"') return at;
    if (*at == '\\' && ++at == end) return nullptr;  // the escaped byte is passed over
  }
  return nullptr;
}

bool EndsScalar(char byte) { return byte == ',' || byte == '}' || byte == ']' || byte == ':'; }

char Unescaped(char byte) {
  switch (byte) {
    case 'b': return '\b';
    case 'f': return '\f';
    case 'n': return '\n';
    case 'r': return '\r';
    case 't': return '\t';
    default: return byte;
  }
}

}  // namespace

const char *SkipValue(const char *at, const char *end) {
  if (at == nullptr || at == end) return nullptr;
  if (*at == '"') {
    const char *closing = ClosingQuote(at + 1, end);
    return closing == nullptr ? nullptr : closing + 1;
  }
  if (*at != '{' && *at != '[') {
    const char *scalarEnd = at;
    while (scalarEnd != end && !EndsScalar(*scalarEnd) && *scalarEnd != '"' && *scalarEnd != '{' &&
           *scalarEnd != '[') {
      ++scalarEnd;
    }
    return scalarEnd == at ? nullptr : scalarEnd;
  }
  std::size_t depth = 0;
  while (at != end) {
    switch (*at) {
      case '"': {
        const char *closing = ClosingQuote(at + 1, end);
        if (closing == nullptr) return nullptr;
        at = closing + 1;
        continue;
      }
      case '{':
      case '[':
        ++depth;
        break;
      case '}':
      case ']':
        if (--depth == 0) return at + 1;
        break;
      default:
        break;
    }
    ++at;
  }
  return nullptr;
}

const char *ReadString(const char *at, const char *end, std::string_view &body, bool &escaped) {
  if (at == nullptr || at == end || *at != '"') return nullptr;
  const char *closing = ClosingQuote(at + 1, end);
  if (closing == nullptr) return nullptr;
  body = std::string_view(at + 1, static_cast<std::size_t>(closing - at - 1));
  escaped = body.find('\\') != std::string_view::npos;
  return closing + 1;
}

void Unescape(std::string_view body, std::string &out) {
  out.clear();
  out.reserve(body.size());
  for (std::size_t i = 0; i < body.size(); ++i) {
    if (body[i] == '\\' && i + 1 < body.size()) {
      out += Unescaped(body[++i]);
    } else {
      out += body[i];
    }
  }
}

std::string_view StringText(std::string_view body, bool escaped, std::string &scratch) {
  if (!escaped) return body;
  Unescape(body, scratch);
  return scratch;
}

ContainerReader::ContainerReader(const char *at, const char *end, char open, char close)
    : at_(at), end_(end), close_(close) {
  if (at == nullptr || at == end || *at != open) {
    failed_ = true;
  } else {
    ++at_;
  }
}

bool ContainerReader::StepToElement() {
  if (failed_ || at_ == end_) return Fail();
  if (*at_ == close_) {
    ++at_;
    return false;
  }
  if (!first_) {
    if (*at_ != ',') return Fail();
    ++at_;
  }
  first_ = false;
  return true;
}

bool MemberReader::Next(std::string_view &key, std::string_view &value) {
  if (!StepToElement()) return false;
  bool escaped = false;
  const char *colon = ReadString(at_, end_, key, escaped);
  if (colon == nullptr || colon == end_ || *colon != ':') return Fail();
  const char *valueEnd = SkipValue(colon + 1, end_);
  if (valueEnd == nullptr) return Fail();
  value = std::string_view(colon + 1, static_cast<std::size_t>(valueEnd - colon - 1));
  at_ = valueEnd;
  return true;
}

bool ItemReader::Next(std::string_view &item) {
  if (!StepToElement()) return false;
  const char *itemEnd = SkipValue(at_, end_);
  if (itemEnd == nullptr) return Fail();
  item = std::string_view(at_, static_cast<std::size_t>(itemEnd - at_));
  at_ = itemEnd;
  return true;
}

}  // namespace ns_sensor::compact_json
