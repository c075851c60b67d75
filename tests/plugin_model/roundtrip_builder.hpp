// Random documents for the round trip: a builder that makes every choice through a
// ChoiceSource, fills a root through the `_v1` interfaces as a converter does, and records
// what the file must say when it is read back. Header-only, so the fuzz target can share it.
#pragma once

#include <cstring>

#include "roundtrip_model.hpp"

namespace PX_PLUGIN::roundtrip {

// Builds one random document into a root. Problems (a status the model did not expect)
// are collected, not raised, so a fuzz target and a test can report them alike.
class DocumentBuilder {
 public:
  DocumentBuilder(ChoiceSource &choices, IMgjsonRoot_v1 *root) : c_(choices), root_(root) {}

  ExpectedDocument Build() {
    ChooseTime();
    if (c_.Chance(40)) {
      const std::string creator = Text(24);
      Expect(root_->SetCreator(creator.data(), Size(creator), nullptr));
      doc_.creator = Written(creator);
    }
    for (std::uint32_t i = c_.Below(3); i > 0; --i) AddSyncEntry();
    if (c_.Chance(15)) {
      Expect(root_->SetDynamicSamplesPresent(1, nullptr));
      doc_.announced = true;
    }
    FillGroup(root_, doc_.root, 0, 1 + c_.Below(6));
    return std::move(doc_);
  }

  const std::vector<std::string> &problems() const { return problems_; }

 private:
  static std::uint32_t Size(std::string_view text) { return static_cast<std::uint32_t>(text.size()); }

  void Expect(std::uint32_t status, const char *what = "operation") {
    if (status != 0) problems_.push_back(std::string(what) + " failed with " + std::to_string(status));
  }

  // ---- Values --------------------------------------------------------------------------------

  std::string Text(std::uint32_t longest) {
    static constexpr std::string_view kPieces[] = {"a", "Z", "7", " ", "\"", "\\", "\t", "\n", "\r", "\b",
                                                   "\f", "\x01", "\x1f", "/", "{", "}", ",", ":", "[",
                                                   "\xC3\xA9", "\xE6\x97\xA5", "x"};
    std::string text;
    for (std::uint32_t n = c_.Below(longest + 1); n > 0; --n) text += kPieces[c_.Below(std::size(kPieces))];
    return text;
  }

  double Number() {
    static constexpr double kSpecial[] = {0.0, -0.0, 2.5, 3.0, 0.1, 1e20, 1.5e20, 0.00001, -1.4e-14, 1e-15,
                                          123456789.125, -987654.321, 1.7976931348623157e308, 5e-324};
    switch (c_.Below(6)) {
      case 0: return static_cast<double>(c_.Below(2001)) - 1000.0;
      case 1: return (static_cast<double>(c_.Below(200001)) - 100000.0) / std::pow(10.0, c_.Below(7));
      case 2: return kSpecial[c_.Below(std::size(kSpecial))];
      case 3: {  // any finite double
        double value = 0;
        const std::uint64_t bits = c_.Next() ^ (c_.Next() << 8) ^ (c_.Next() << 56);
        std::memcpy(&value, &bits, sizeof value);
        return std::isfinite(value) ? value : 1.0;
      }
      default: return (static_cast<double>(c_.Below(1000)) + 0.5) * std::pow(10.0, static_cast<int>(c_.Below(40)) - 20);
    }
  }

  // ---- Time ----------------------------------------------------------------------------------

  void ChooseTime() {
    struct Rate { std::uint32_t value, scale; bool dropFrame; };
    static constexpr Rate kRates[] = {{25, 1, false},    {24, 1, false},         {30000, 1001, true},
                                      {60000, 1001, true}, {30000, 1001, false}, {120, 1, false},
                                      {2997, 100, true},  {50, 1, false}};
    switch (c_.Below(3)) {
      case 1: {
        const Rate rate = kRates[c_.Below(std::size(kRates))];
        Expect(root_->SetTimecodeInfo(rate.dropFrame, rate.value, rate.scale, nullptr), "SetTimecodeInfo");
        doc_.time = TimeKind::Timecode;
        doc_.rate = {rate.value, rate.scale, rate.dropFrame};
        break;
      }
      case 2:
        doc_.time = TimeKind::Utc;
        doc_.precision = c_.Below(7);
        doc_.isGmt = c_.Chance(50);
        Expect(root_->SetUtcInfo(doc_.precision, doc_.isGmt, nullptr), "SetUtcInfo");
        break;
      default:
        break;
    }
  }

  // A base UTC text at the document's precision and zone form.
  std::string UtcBase() {
    char text[64];
    std::snprintf(text, sizeof text, "%04u-%02u-%02uT%02u:%02u:%02u", 1999 + c_.Below(30), 1 + c_.Below(12),
                  1 + c_.Below(28), c_.Below(24), c_.Below(60), c_.Below(60));
    std::string base = text;
    if (doc_.precision > 0) {
      base += '.';
      for (std::uint32_t i = 0; i < doc_.precision; ++i) base += static_cast<char>('0' + c_.Below(10));
    }
    if (doc_.isGmt) return base + "Z";
    std::snprintf(text, sizeof text, "%c%02u:%02u", c_.Chance(50) ? '+' : '-', c_.Below(15), 30 * c_.Below(2));
    return base + text;
  }

  void AddSyncEntry() {
    const std::string name = Text(12);
    ExpectedDocument::Sync sync{Written(name), std::nullopt, {}};
    if (c_.Chance(50)) {
      sync.frame = c_.Below(100000);
      Expect(root_->AddVideoSyncFrame(name.data(), Size(name), *sync.frame, nullptr), "AddVideoSyncFrame");
    } else {
      const std::string time = Text(12);
      sync.timeString = Written(time);
      Expect(root_->AddVideoSyncTime(name.data(), Size(name), time.data(), Size(time), nullptr), "AddVideoSyncTime");
    }
    doc_.syncList.push_back(std::move(sync));
  }

  // Where the samples of one node lie in time: increasing frames, or increasing offsets
  // from one base.
  struct Clock {
    std::uint64_t frame = 0;
    std::string base;
    ns_sensor::UtcRecord baseRecord;
    std::uint32_t numerator = 0;
    std::uint32_t denominator = 1;
  };

  Clock NewClock() {
    Clock clock;
    if (doc_.time == TimeKind::Timecode) clock.frame = c_.Below(100000);
    if (doc_.time == TimeKind::Utc) {
      clock.base = UtcBase();
      (void)ns_sensor::ParseUtcTime(clock.base, doc_.precision, clock.baseRecord);
      static constexpr std::uint32_t kDenominators[] = {1, 10, 1000, 3, 7, 1000000};
      clock.denominator = kDenominators[c_.Below(std::size(kDenominators))];
    }
    return clock;
  }

  // Moves the clock on and returns the time text the sample must have.
  std::string Tick(Clock &clock) {
    if (doc_.time == TimeKind::Timecode) {
      clock.frame += 1 + c_.Below(40);
      return ns_sensor::FrameNumberToSmpte(clock.frame, doc_.rate);
    }
    clock.numerator += 1 + c_.Below(5000);
    return ns_sensor::AddToUtcTime(clock.baseRecord, {clock.numerator, clock.denominator}, doc_.precision);
  }

  // Adds a sample through add(frame) or add(base, numerator, denominator).
  template <class AtFrame, class AtUtc>
  void AddSample(Clock &clock, ExpectedNode &node, ExpectedSample sample, AtFrame &&atFrame, AtUtc &&atUtc) {
    sample.time = Tick(clock);
    const std::uint32_t status = doc_.time == TimeKind::Timecode
                                     ? atFrame(clock.frame)
                                     : atUtc(clock.base, clock.numerator, clock.denominator);
    Expect(status, "AddSample");
    if (status == 0) node.samples.push_back(std::move(sample));
  }

  std::uint32_t SampleCount() {
    if (doc_.time == TimeKind::None) return 0;
    return c_.Chance(10) ? c_.Below(300) : c_.Below(6);
  }

  // ---- Nodes ---------------------------------------------------------------------------------

  ExpectedNode Named(NodeKind kind, std::string &display, std::string &match) {
    display = Text(10);
    match = "n" + std::to_string(++names_);
    ExpectedNode node;
    node.kind = kind;
    node.displayName = Written(display);
    node.matchName = match;
    return node;
  }

  void FillGroup(IMgjsonGroup_v1 *group, ExpectedNode &expected, int depth, std::uint32_t count) {
    for (; count > 0; --count) {
      const std::uint32_t what = c_.Below(depth < 3 ? 9 : 8);
      if (what < 4) {
        AddStatic(group, expected, what);
      } else if (what < 8) {
        AddDynamic(group, expected, what % 3);
      } else {
        AddGroup(group, expected, depth);
      }
    }
  }

  void AddGroup(IMgjsonGroup_v1 *parent, ExpectedNode &expected, int depth) {
    std::string display, match;
    ExpectedNode node = Named(NodeKind::Group, display, match);
    IMgjsonGroup_v1 *group = nullptr;
    Expect(root_->CreateGroup(display.data(), Size(display), match.data(), Size(match), &group, nullptr), "CreateGroup");
    if (group == nullptr) return;
    // In the tree first, so that its dynamic nodes may complete their samples early.
    Expect(parent->AddGroupChild(group, nullptr), "AddGroupChild");
    FillGroup(group, node, depth + 1, c_.Below(4));
    group->Release();
    expected.children.push_back(std::move(node));
  }

  void AddStatic(IMgjsonGroup_v1 *parent, ExpectedNode &expected, std::uint32_t kind) {
    static constexpr NodeKind kKinds[] = {NodeKind::StaticNumber, NodeKind::StaticString, NodeKind::StaticArray,
                                          NodeKind::StaticBoolean};
    std::string display, match;
    ExpectedNode node = Named(kKinds[kind], display, match);
    const std::string text = Text(30);
    PX_StaticValue value{Number(), text.data(), Size(text), c_.Below(2)};
    PX_StaticDataNode views{};
    Expect(root_->CreateStaticData(kind, display.data(), Size(display), match.data(), Size(match), &value, &views,
                                   nullptr),
           "CreateStaticData");
    if (views.shared == nullptr) return;
    node.number = Written(value.number);
    node.text = Written(text);
    node.boolean = value.boolean != 0;
    if (views.number != nullptr) {
      if (c_.Chance(30)) Expect(views.number->SetPattern(c_.Below(2), c_.Below(5), c_.Below(5), nullptr));
      if (c_.Chance(30)) Expect(views.number->SetRanges(Number(), Number(), Number(), Number(), nullptr));
    }
    if (views.string != nullptr && c_.Chance(30)) {
      Expect(views.string->SetPaddedStringProperties(c_.Below(100), c_.Below(4), c_.Below(2), nullptr));
    }
    if (views.numberArray != nullptr) FillStaticArray(*views.numberArray, node);
    Expect(parent->AddStaticChild(views.node, nullptr), "AddStaticChild");
    views.shared->Release();
    expected.children.push_back(std::move(node));
  }

  void FillStaticArray(IMgjsonStaticDataNumArr_v1 &array, ExpectedNode &node) {
    for (std::uint32_t n = c_.Below(5); n > 0; --n) {
      const double value = Number();
      const std::string name = Text(6);
      Expect(array.AddElement(value, name.data(), Size(name), nullptr), "AddElement");
      node.numbers.push_back(Written(value));
    }
    if (!node.numbers.empty() && c_.Chance(30)) {
      Expect(array.SetElementLegalRange(c_.Below(static_cast<std::uint32_t>(node.numbers.size())), Number(),
                                        Number(), nullptr));
    }
    if (c_.Chance(30)) Expect(array.SetPoint(1, nullptr));
    if (c_.Chance(30)) Expect(array.SetPattern(c_.Below(2), c_.Below(4), c_.Below(4), nullptr));
  }

  void SetDynamicCommon(IMgjsonDynamicData_v1 &node, ExpectedNode &expected) {
    expected.sampleSetId = expected.matchName;
    if (c_.Chance(40)) {
      const std::string id = "id" + std::to_string(names_) + Text(6);
      Expect(node.SetSampleSetId(id.data(), Size(id), nullptr), "SetSampleSetId");
      expected.sampleSetId = Written(id);
    }
    if (c_.Chance(40)) {
      expected.interpolation = 1 + c_.Below(2);
      Expect(node.SetInterpolation(expected.interpolation, nullptr), "SetInterpolation");
    }
    expected.hasExpectedFrequency = c_.Chance(50);
    Expect(node.SetHasExpectedFrequency(expected.hasExpectedFrequency, nullptr));
    if (c_.Chance(30)) {
      const std::string duration = Text(10);
      Expect(node.SetExpectedMaxInterSampleDuration(duration.data(), Size(duration), nullptr));
      expected.maxInterSampleDuration = Written(duration);
    }
  }

  void AddDynamic(IMgjsonGroup_v1 *parent, ExpectedNode &expected, std::uint32_t kind) {
    static constexpr NodeKind kKinds[] = {NodeKind::DynamicNumber, NodeKind::DynamicString, NodeKind::DynamicArray};
    std::string display, match;
    ExpectedNode node = Named(kKinds[kind], display, match);
    PX_DynamicDataNode views{};
    Expect(root_->CreateDynamicData(kind, display.data(), Size(display), match.data(), Size(match), &views, nullptr),
           "CreateDynamicData");
    if (views.shared == nullptr) return;
    Expect(parent->AddDynamicChild(views.node, nullptr), "AddDynamicChild");
    SetDynamicCommon(*views.node, node);
    Clock clock = NewClock();
    if (views.number != nullptr) FillDynamicNumber(*views.number, node, clock);
    if (views.string != nullptr) FillDynamicString(*views.string, node, clock);
    if (views.numberArray != nullptr) FillDynamicArray(*views.numberArray, node, clock);
    // Some complete now, the rest at commit (groups join the tree before they are filled).
    if (c_.Chance(50)) Expect(views.node->CompleteSamples(nullptr), "CompleteSamples");
    views.shared->Release();
    expected.children.push_back(std::move(node));
  }

  void FillDynamicNumber(IMgjsonDynamicDataNum_v1 &number, ExpectedNode &node, Clock &clock) {
    if (c_.Chance(40)) Expect(number.SetPattern(c_.Below(2), c_.Below(5), c_.Below(5), nullptr));
    if (c_.Chance(20)) Expect(number.SetRanges(Number(), Number(), Number(), Number(), nullptr));
    for (std::uint32_t n = SampleCount(); n > 0; --n) {
      const double value = Number();
      AddSample(
          clock, node, {{}, {Written(value)}, {}}, [&](std::uint64_t frame) { return number.AddSampleAtFrame(frame, value, nullptr); },
          [&](const std::string &base, std::uint32_t num, std::uint32_t den) {
            return number.AddSampleAtUtc(base.data(), Size(base), num, den, value, nullptr);
          });
    }
  }

  void FillDynamicString(IMgjsonDynamicDataString_v1 &string, ExpectedNode &node, Clock &clock) {
    if (c_.Chance(40)) Expect(string.SetPaddedStringProperties(c_.Below(50), c_.Below(4), c_.Below(2), nullptr));
    for (std::uint32_t n = SampleCount(); n > 0; --n) {
      const std::string text = Text(c_.Chance(5) ? 400 : 16);
      AddSample(
          clock, node, {{}, {}, Written(text)},
          [&](std::uint64_t frame) { return string.AddSampleAtFrame(frame, text.data(), Size(text), nullptr); },
          [&](const std::string &base, std::uint32_t num, std::uint32_t den) {
            return string.AddSampleAtUtc(base.data(), Size(base), num, den, text.data(), Size(text), nullptr);
          });
    }
  }

  void FillDynamicArray(IMgjsonDynamicDataNumArr_v1 &array, ExpectedNode &node, Clock &clock) {
    const std::uint32_t components = 1 + c_.Below(4);
    for (std::uint32_t i = 0; i < components; ++i) {
      const std::string name = Text(6);
      Expect(array.AddComponent(name.data(), Size(name), nullptr), "AddComponent");
    }
    if (c_.Chance(30)) Expect(array.SetComponentOccurringRange(c_.Below(components), Number(), Number(), nullptr));
    if (c_.Chance(30)) Expect(array.SetPoint(1, nullptr));
    if (c_.Chance(30)) Expect(array.SetPattern(c_.Below(2), c_.Below(4), c_.Below(4), nullptr));
    for (std::uint32_t n = SampleCount(); n > 0; --n) {
      std::vector<double> values(components);
      ExpectedSample sample;
      for (double &value : values) {
        value = Number();
        sample.numbers.push_back(Written(value));
      }
      AddSample(
          clock, node, std::move(sample),
          [&](std::uint64_t frame) { return array.AddSampleAtFrame(frame, values.data(), components, nullptr); },
          [&](const std::string &base, std::uint32_t num, std::uint32_t den) {
            return array.AddSampleAtUtc(base.data(), Size(base), num, den, values.data(), components, nullptr);
          });
    }
  }

  ChoiceSource &c_;
  IMgjsonRoot_v1 *root_;
  ExpectedDocument doc_;
  std::vector<std::string> problems_;
  std::uint32_t names_ = 0;
};

}  // namespace PX_PLUGIN::roundtrip
