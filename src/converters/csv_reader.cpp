#include "converters/csv_reader.hpp"

namespace ns_sensor {
namespace {

constexpr char kQuote = '"';
constexpr char kLineFeed = '\n';
constexpr char kCarriageReturn = '\r';

}  // namespace

bool LineReader::Peek(char &byte) {
  while (at_ == piece_.size()) {
    if (ended_) return false;
    piece_ = text_.Next();
    at_ = 0;
    if (piece_.empty()) {
      ended_ = true;
      return false;
    }
  }
  byte = piece_[at_];
  return true;
}

bool LineReader::Next(std::string &line) {
  line.clear();
  char byte = 0;
  if (!Peek(byte)) return false;
  bool quoted = false;
  while (Peek(byte)) {
    if (quoted) {
      // Copy up to the next quote at once.
      const std::size_t quote = piece_.find(kQuote, at_);
      const std::size_t stop = quote == std::string_view::npos ? piece_.size() : quote;
      line.append(piece_.substr(at_, stop - at_));
      at_ = stop;
      if (quote == std::string_view::npos) continue;
      line.push_back(kQuote);
      ++at_;
      char next = 0;
      if (Peek(next) && next == kQuote) {
        line.push_back(kQuote);  // a doubled quote stays as it is and keeps the section open
        ++at_;
      } else {
        quoted = false;
      }
      continue;
    }
    const std::size_t stop = piece_.find_first_of("\"\n\r", at_);
    const std::size_t end = stop == std::string_view::npos ? piece_.size() : stop;
    line.append(piece_.substr(at_, end - at_));
    at_ = end;
    if (stop == std::string_view::npos) continue;
    ++at_;
    if (byte = piece_[stop]; byte == kQuote) {
      line.push_back(kQuote);
      quoted = true;
      continue;
    }
    if (byte == kLineFeed) {
      char next = 0;
      if (Peek(next) && next == kCarriageReturn) ++at_;
    }
    return true;
  }
  return true;
}

void SplitFields(std::string_view line, char delimiter, const FieldSink &sink) {
  std::string quotedField;
  std::size_t at = 0;
  while (at < line.size()) {
    std::size_t delimiterAt;
    if (line[at] == kQuote) {
      quotedField.clear();
      std::size_t p = at + 1;
      while (p < line.size()) {
        if (line[p] == kQuote) {
          if (p + 1 < line.size() && line[p + 1] == kQuote) {
            quotedField.push_back(kQuote);
            p += 2;
            continue;
          }
          ++p;  // the closing quote
          break;
        }
        quotedField.push_back(line[p++]);
      }
      delimiterAt = line.find(delimiter, p);
      const std::size_t tailEnd = delimiterAt == std::string_view::npos ? line.size() : delimiterAt;
      quotedField.append(line.substr(p, tailEnd - p));
      sink(quotedField);
    } else {
      delimiterAt = line.find(delimiter, at);
      sink(line.substr(at, delimiterAt == std::string_view::npos ? std::string_view::npos : delimiterAt - at));
    }
    if (delimiterAt == std::string_view::npos) return;
    at = delimiterAt + 1;
  }
}

std::vector<std::string> SplitFields(std::string_view line, char delimiter) {
  std::vector<std::string> fields;
  SplitFields(line, delimiter, [&fields](std::string_view field) { fields.emplace_back(field); });
  return fields;
}

}  // namespace ns_sensor
