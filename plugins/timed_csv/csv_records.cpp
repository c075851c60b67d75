#include "csv_records.hpp"

#include "palvex/plugin_kit.hpp"
#include "timed_csv_errors.hpp"

namespace timed_csv {
namespace {

constexpr int kEnd = palvex_plugins::ByteReader::kEnd;
constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

}  // namespace

CsvRecords::CsvRecords(std::istream &in, char delimiter) : bytes_(in), delimiter_(delimiter) {}

void CsvRecords::Fail(std::uint32_t code) const {
  throw PX_PLUGIN::PX_PluginException(code, static_cast<std::int64_t>(line_), static_cast<std::int64_t>(bytes_.taken()));
}

int CsvRecords::Peek() {
  const int c = bytes_.Peek();
  if (c == palvex_plugins::ByteReader::kReadFailed) Fail(kCannotRead);
  return c;
}

int CsvRecords::Get() {
  const int c = bytes_.Get();
  if (c == palvex_plugins::ByteReader::kReadFailed) Fail(kCannotRead);
  if (c == 0) Fail(kBinaryData);
  return c;
}

void CsvRecords::Append(char c) {
  // Delimiters count too: each costs a span, and a line of them must stay bounded as well.
  if (text_.size() + spans_.size() >= kMaxRecordBytes) Fail(kRecordTooLong);
  text_.push_back(c);
}

void CsvRecords::EndField(bool quoted) {
  std::size_t end = text_.size();
  // Spaces after the closing quote are trimmed, never those inside the quotes.
  while (end > keep_ && IsBlank(text_[end - 1])) --end;
  std::size_t begin = fieldStart_;
  if (!quoted) {
    while (begin < end && IsBlank(text_[begin])) ++begin;
  }
  text_.resize(end);
  spans_.emplace_back(begin, end - begin);
  fieldStart_ = end;
  keep_ = end;
}

std::string_view CsvRecords::field(std::size_t index) const {
  if (index >= spans_.size()) return {};
  return std::string_view(text_).substr(spans_[index].first, spans_[index].second);
}

bool CsvRecords::Next() {
  if (!started_) {
    started_ = true;
    for (std::size_t i = 0; i < kUtf8Mark.size() && Peek() == static_cast<unsigned char>(kUtf8Mark[i]); ++i) Get();
  }
  for (;;) {
    text_.clear();
    spans_.clear();
    fieldStart_ = 0;
    keep_ = 0;
    recordLine_ = line_;
    int c = Get();
    if (c == kEnd) return false;
    bool quoted = false;
    bool inQuotes = false;
    for (;; c = Get()) {
      if (inQuotes) {
        if (c == kEnd) {  // an unclosed quote takes the rest of the file
          EndField(true);
          break;
        }
        if (c == '"') {
          if (Peek() == '"') {
            Get();
            Append('"');
          } else {
            inQuotes = false;
            keep_ = text_.size();
          }
          continue;
        }
        if (c == '\n') ++line_;
        Append(static_cast<char>(c));
        continue;
      }
      if (c == kEnd || c == '\n' || c == '\r') {
        EndField(quoted);
        if (c == '\r' && Peek() == '\n') Get();
        if (c != kEnd) ++line_;
        break;
      }
      if (c == delimiter_) {
        EndField(quoted);
        quoted = false;
        if (text_.size() + spans_.size() >= kMaxRecordBytes) Fail(kRecordTooLong);
        continue;
      }
      if (c == '"' && !quoted) {
        bool onlyBlanks = true;
        for (std::size_t i = fieldStart_; i < text_.size(); ++i) onlyBlanks = onlyBlanks && IsBlank(text_[i]);
        if (onlyBlanks) {
          text_.resize(fieldStart_);
          quoted = inQuotes = true;
          continue;
        }
      }
      Append(static_cast<char>(c));
    }
    if (spans_.size() == 1 && spans_[0].second == 0 && !quoted) continue;  // a blank line
    return true;
  }
}

}  // namespace timed_csv
