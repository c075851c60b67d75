#include "sample_formats.hpp"

#include <cstdio>

#include "json_output.hpp"

namespace palvex::cli {
namespace {

bool IsArray(uint32_t kind) { return kind == PX_TYPE_NUMBER_ARRAY || kind == PX_TYPE_NUMBER_STRING_ARRAY; }

// An array value's texts, one per component (the library joins them with ",", which a
// number string never holds).
std::vector<std::string> Components(const palvex::host::Sample &sample) {
  if (!IsArray(sample.kind)) return {sample.text};
  std::vector<std::string> parts;
  std::size_t start = 0;
  for (;;) {
    const std::size_t comma = sample.text.find(',', start);
    parts.push_back(sample.text.substr(start, comma - start));
    if (comma == std::string::npos) return parts;
    start = comma + 1;
  }
}

void PutLine(const std::vector<std::string> &fields, char separator) {
  std::string line;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    if (i != 0) line += separator;
    line += fields[i];
  }
  line += '\n';
  std::fwrite(line.data(), 1, line.size(), stdout);
}

class TextWriter : public SampleWriter {
 public:
  void Begin(const PX_DynamicDataInfo &) override {}
  void Write(const palvex::host::Sample &sample) override {
    PutLine({EscapedField(sample.time.text), EscapedField(sample.text)}, '\t');
  }
  void End() override {}
};

// TSV and CSV: a header line, then the time and each component in its own column.
class TableWriter : public SampleWriter {
 public:
  TableWriter(char separator, std::string (*field)(const std::string &)) : separator_(separator), field_(field) {}
  void Begin(const PX_DynamicDataInfo &node) override {
    std::vector<std::string> header{field_("time")};
    for (const std::string &name : ValueColumnNames(node)) header.push_back(field_(name));
    PutLine(header, separator_);
  }
  void Write(const palvex::host::Sample &sample) override {
    std::vector<std::string> fields{field_(sample.time.text)};
    for (const std::string &component : Components(sample)) fields.push_back(field_(component));
    PutLine(fields, separator_);
  }
  void End() override {}

 private:
  char separator_;
  std::string (*field_)(const std::string &);
};

// [{"time": <text>, "value": <number, text or array of numbers>}, ...]; written sample by
// sample through one writer whose buffer is emptied to standard output as it goes.
class JsonSampleWriter : public SampleWriter {
 public:
  JsonSampleWriter() : writer_(buffer_) {}
  void Begin(const PX_DynamicDataInfo &) override {
    writer_.StartArray();
    Flush();
  }
  void Write(const palvex::host::Sample &sample) override {
    writer_.StartObject();
    writer_.Key("time");
    WriteString(writer_, sample.time.text);
    writer_.Key("value");
    if (IsArray(sample.kind)) {
      writer_.StartArray();
      for (const double number : sample.numbers) WriteNumber(writer_, number);
      writer_.EndArray();
    } else if (sample.kind == PX_TYPE_NUMBER_STRING && !sample.numbers.empty()) {
      WriteNumber(writer_, sample.numbers.front());
    } else {
      WriteString(writer_, sample.text);
    }
    writer_.EndObject();
    Flush();
  }
  void End() override {
    writer_.EndArray();
    Flush();
    std::fputc('\n', stdout);
  }

 private:
  void Flush() {
    buffer_.WriteTo(stdout);
    buffer_.Clear();
  }
  ChunkedText buffer_;
  JsonWriter writer_;
};

}  // namespace

std::optional<SampleFormat> SampleFormatNamed(std::string_view name) {
  struct Named {
    std::string_view name;
    SampleFormat format;
  };
  static constexpr Named kNames[] = {
      {"text", SampleFormat::kText}, {"tsv", SampleFormat::kTsv},
      {"csv", SampleFormat::kCsv},   {"json", SampleFormat::kJson},
  };
  for (const Named &named : kNames) {
    if (named.name == name) return named.format;
  }
  return std::nullopt;
}

std::unique_ptr<SampleWriter> MakeSampleWriter(SampleFormat format) {
  switch (format) {
    case SampleFormat::kTsv: return std::make_unique<TableWriter>('\t', EscapedField);
    case SampleFormat::kCsv: return std::make_unique<TableWriter>(',', CsvField);
    case SampleFormat::kJson: return std::make_unique<JsonSampleWriter>();
    case SampleFormat::kText: break;
  }
  return std::make_unique<TextWriter>();
}

std::vector<std::string> ValueColumnNames(const PX_DynamicDataInfo &node) {
  if (!IsArray(node.dataType.kind)) return {node.displayName};
  const auto &array = node.dataType.numberArray;
  const std::size_t size = array.arraySize != 0 ? array.arraySize : array.displayNames.size();
  if (size == 0) return {node.displayName};
  std::vector<std::string> names;
  for (std::size_t i = 0; i < size; ++i) {
    const bool named = i < array.displayNames.size() && !array.displayNames[i].empty();
    names.push_back(named ? array.displayNames[i] : node.displayName + "[" + std::to_string(i) + "]");
  }
  return names;
}

std::string CsvField(const std::string &text) {
  if (text.find_first_of(",\"\n\r") == std::string::npos) return text;
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"') quoted += '"';
    quoted += c;
  }
  return quoted + '"';
}

std::string EscapedField(const std::string &text) {
  std::string result;
  result.reserve(text.size());
  for (const char c : text) {
    switch (c) {
      case '\t': result += "\\t"; break;
      case '\n': result += "\\n"; break;
      case '\\': result += "\\\\"; break;
      default: result += c;
    }
  }
  return result;
}

}  // namespace palvex::cli
