#include "stream_block.hpp"

#include <cmath>
#include <cstdio>
#include <limits>

namespace gpmf {
namespace {

std::string HexText(const unsigned char *at, std::size_t bytes) {
  std::string text;
  char pair[3];
  for (std::size_t i = 0; i < bytes; ++i) {
    std::snprintf(pair, sizeof pair, "%02x", at[i]);
    text += pair;
  }
  return text;
}

bool IsTextField(char type) { return IsTextType(type) || type == 'F' || type == 'U' || type == 'G'; }

std::vector<Field> Fields(const std::vector<char> &types) {
  std::vector<Field> fields;
  std::size_t offset = 0;
  for (const char type : types) {
    const std::size_t bytes = ElementBytes(type);
    fields.push_back(Field{type, offset, bytes, IsTextField(type)});
    offset += bytes;
  }
  return fields;
}

}  // namespace

void LayOut(StreamBlock &block, const Klv &data) {
  block.fields.clear();
  if (data.sampleBytes == 0) return;
  std::vector<Field> fields;
  if (data.type == kComplexType) {
    fields = Fields(ExpandTypeText(block.properties.typeText));
    const std::size_t total = fields.empty() ? 0 : fields.back().offset + fields.back().bytes;
    if (total != data.sampleBytes) return;
  } else if (IsTextType(data.type)) {
    fields.push_back(Field{data.type, 0, data.sampleBytes, true});
  } else {
    const std::size_t element = ElementBytes(data.type);
    if (element == 0 || data.sampleBytes % element != 0) return;
    fields = Fields(std::vector<char>(data.sampleBytes / element, data.type));
  }
  const std::size_t scales = block.properties.scales.size();
  if (scales > 1 && scales != fields.size()) return;
  for (const double scale : block.properties.scales) {
    if (scale == 0 || !std::isfinite(scale)) return;
  }
  std::vector<std::string> &units = block.properties.units;
  if (units.size() > 1 && units.size() != fields.size()) units.resize(1);
  block.fields = std::move(fields);
}

std::size_t StreamBlock::Steps() const {
  if (data.size() != 1) return data.size();
  // One text of `repeat` characters is one sample.
  if (IsTextType(data.front().type) && data.front().sampleBytes == 1) return 1;
  return data.front().repeat;
}

void StreamBlock::ForEachSample(
    const unsigned char *payload,
    const std::function<void(std::size_t, const std::vector<double> &, const std::vector<std::string> &)> &visit)
    const {
  if (fields.empty()) return;
  std::vector<double> numbers(fields.size());
  std::vector<std::string> texts(fields.size());
  const bool perKlvSteps = data.size() != 1;
  for (std::size_t k = 0; k < data.size(); ++k) {
    const Klv &klv = data[k];
    if (klv.sampleBytes != data.front().sampleBytes || klv.type != data.front().type) continue;
    if (IsTextType(klv.type) && klv.sampleBytes == 1) {
      texts[0] = ReadText(klv.type, payload + klv.value, klv.repeat);
      numbers[0] = std::numeric_limits<double>::quiet_NaN();
      visit(k, numbers, texts);
      continue;
    }
    for (std::uint32_t s = 0; s < klv.repeat; ++s) {
      const unsigned char *sample = payload + klv.value + std::size_t{s} * klv.sampleBytes;
      for (std::size_t f = 0; f < fields.size(); ++f) {
        const Field &field = fields[f];
        texts[f].clear();
        numbers[f] = std::numeric_limits<double>::quiet_NaN();
        if (field.type == 'G') {
          texts[f] = HexText(sample + field.offset, field.bytes);
        } else if (field.text) {
          texts[f] = ReadText(field.type == 'u' ? 'u' : 'c', sample + field.offset, field.bytes);
        } else {
          const std::vector<double> &scales = properties.scales;
          const double scale = scales.empty() ? 1.0 : scales.size() == 1 ? scales[0] : scales[f];
          numbers[f] = ReadNumber(field.type, sample + field.offset) / scale;
        }
      }
      visit(perKlvSteps ? k : s, numbers, texts);
    }
  }
}

}  // namespace gpmf
