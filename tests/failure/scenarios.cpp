// The scenario table and the host work each scenario does.
#include <cstdio>
#include <fstream>
#include <iterator>

#include "api/guard.hpp"
#include "converters/converter_registry.hpp"
#include "converters/plugin_discovery.hpp"
#include "converters/plugin_registry.hpp"
#include "failure/scenario.hpp"
#include "support/test_host.hpp"

namespace palvex::failure {
namespace {

std::string PathOf(const fs::path &path) {
  const std::u8string text = path.u8string();
  return std::string(text.begin(), text.end());
}

std::string ReadExample(const char *name) {
  std::ifstream in(fs::path(PALVEX_SOURCE_DIR) / "examples" / name, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

std::string Input(const Session &s, const char *name) { return PathOf(s.inputs / name); }

// ---- reading an opened file: every handler query ------------------------------------

void ReadSamples(Session &s, ISensorFileHandler *handler, const PX_DynamicDataInfo &node) {
  const char *id = node.sampleSetId.c_str();
  PX_DynamicSampleInfo block;
  if (!s.Call([&] { handler->GetDynamicSampleInfo(id, 0, node.sampleCount, 1, &block, &s.log); })) return;
  s.Note("  samples " + std::to_string(block.samples.size()));
  if (!block.samples.empty()) s.Note("  first " + block.samples.front().time.text + " " + block.samples.front().text);
  const palvex::host::Time &first = node.firstSampleTime;
  const palvex::host::Time &last = node.lastSampleTime;
  if (first.denominator == 0 || last.denominator == 0) return;
  DynamicDataSampleSet range;
  if (!s.Call([&] {
        handler->GetSampleSet(id, first.numerator, first.denominator, last.numerator, last.denominator, &range, &s.log);
      }))
    return;
  DynamicDataSampleSet around;  // backwards, with both neighbours
  if (!s.Call([&] {
        handler->GetSampleSetWithNeighbours(id, last.numerator, last.denominator, first.numerator,
                                            first.denominator, &around, &s.log);
      }))
    return;
  s.Note("  range " + std::to_string(range.samples.size()) + " around " + std::to_string(around.samples.size()));
}

void WalkChildren(Session &s, ISensorFileHandler *handler, const std::string &parent,
                  const PX_GroupChildren &children) {
  for (std::size_t i = 0; i < children.paths.size() && s.Ok(); ++i) {
    const std::string path = parent + "[" + std::to_string(i) + "]";
    PX_GroupChildInfo info;
    if (!s.Call([&] { handler->GetGroupChildInfo(path.c_str(), &info, &s.log); })) return;
    s.Note(path + " " + std::to_string(info.nodeType) + " " + info.matchName + " " + info.displayName);
    if (info.nodeType == PX_NODE_GROUP) {
      PX_GroupChildren inner;
      if (!s.Call([&] { handler->GetGroupChildren(path.c_str(), &inner, &s.log); })) return;
      WalkChildren(s, handler, path, inner);
    } else if (info.nodeType == PX_NODE_STATIC) {
      PX_StaticDataInfo node;
      if (!s.Call([&] { handler->GetStaticDataInfo(path.c_str(), &node, &s.log); })) return;
      s.Note("  value " + std::to_string(node.number) + " '" + node.text + "'");
    } else if (info.nodeType == PX_NODE_DYNAMIC) {
      PX_DynamicDataInfo node;
      if (!s.Call([&] { handler->GetDynamicDataInfo(path.c_str(), &node, &s.log); })) return;
      s.Note("  set " + node.sampleSetId + " " + std::to_string(node.sampleCount));
      ReadSamples(s, handler, node);
    }
  }
}

void Walk(Session &s, ISensorFileHandler *handler) {
  PX_FileInfo info;
  if (!s.Call([&] { handler->GetFileInfo(&info, &s.log); })) return;
  s.Note("version " + std::to_string(info.schemaVersion) + " " + info.creator);
  PX_VideoSyncTimeList sync;
  if (!s.Call([&] { handler->GetVideoSyncTimeList(&sync, &s.log); })) return;
  s.Note("sync " + std::to_string(sync.entries.size()));
  PX_GroupChildren root;
  if (!s.Call([&] { handler->GetRootChildren(&root, &s.log); })) return;
  WalkChildren(s, handler, "", root);
}

// Opens path (placing it in output when asked), reads all of it and closes it.
void OpenReadClose(Session &s, const std::string &path, const char *outputLocation = nullptr) {
  ISensorFileHandler *handler = nullptr;
  if (!s.Call([&] { s.manager->OpenFile(&handler, path.c_str(), outputLocation, &s.log); })) return;
  Walk(s, handler);
  // Closing must work even after a failed query.
  palvex::host::ErrorLog closeLog;
  {
    CountedScope counted;
    s.manager->CloseFile(&handler, &closeLog);
  }
  s.log.errors.insert(s.log.errors.end(), closeLog.errors.begin(), closeLog.errors.end());
  if (handler != nullptr) s.Note("handler still set after the close");
}

// ---- the scenarios ---------------------------------------------------------------------

void CreateAndDestroy(Session &s, const char *pluginFolder) {
  IPalvex *manager = nullptr;
  if (!s.Call([&] {
        CreatePalvex_1(&manager, pluginFolder, nullptr, nullptr, &s.log, palvex::testing::TestCallbacks(), nullptr);
      }))
    return;
  PX_SupportedFormatList formats;
  if (s.Call([&] { GetSupportedFormats_1(&formats, &s.log, palvex::testing::TestCallbacks()); })) {
    for (const auto &format : formats.formats) s.Note(format.extension + " " + format.name);
  }
  palvex::host::ErrorLog destroyLog;
  {
    CountedScope counted;
    DestroyPalvex_1(&manager, &destroyLog);
  }
  s.log.errors.insert(s.log.errors.end(), destroyLog.errors.begin(), destroyLog.errors.end());
}

// The process discovers its plug-ins once, on the first manager; the discovery routine
// itself runs here into registries of the scenario's own, through the library's guard.
void DiscoverPlugins(Session &s) {
  PX_SupportedFormatList stored;  // stores the callback table the guard reports through
  GetSupportedFormats_1(&stored, &s.log, palvex::testing::TestCallbacks());
  std::vector<ns_sensor::PX_Exception> failures;
  std::size_t formats = 0;
  s.Call([&] {
    ns_sensor::RunGuarded(&s.log, [&] {
      ns_sensor::PluginRegistry plugins;
      ns_sensor::ConverterRegistry converters;
      failures = ns_sensor::DiscoverPlugins(s.pluginFolder, "mgx", plugins, converters);
      formats = converters.Formats().size();
    });
  });
  for (const auto &failure : failures) s.log.errors.push_back({failure.code(), failure.what(), -1, -1});
  // Not noted: a module file that cannot be read is passed over as "not a plug-in" without
  // an error, so a failed read changes the count and nothing else.
  static_cast<void>(formats);
}

void ReadStreamAndSaveCopy(Session &s) {
  IMgjsonStream *stream = nullptr;
  const std::string input = Input(s, "table.csv");
  if (!s.Call([&] { s.manager->CreateMgjsonStream(&stream, input.c_str(), 1, &s.log); })) return;
  std::string bytes;
  for (bool more = true; more && s.Ok();) {
    uint8_t buffer[256];
    uint32_t size = sizeof buffer;
    uint32_t count = 0;
    s.Call([&] { count = stream->Read(buffer, &size, &s.log); });
    bytes.append(reinterpret_cast<const char *>(buffer), count);
    more = count > 0;
  }
  s.Note("read " + std::to_string(bytes.size()));
  const std::string copy = PathOf(s.output / "copy.mgjson");
  PX_HostString path;
  if (s.Ok() && s.Call([&] { stream->Rewind(&s.log); }) && s.Call([&] { stream->GetPath(&path, &s.log); })) {
    s.Call([&] { stream->SaveCopy(copy.c_str(), &s.log); });
  }
  palvex::host::ErrorLog releaseLog;
  {
    CountedScope counted;
    s.manager->ReleaseMgjsonStream(&stream, &releaseLog);
  }
  s.log.errors.insert(s.log.errors.end(), releaseLog.errors.begin(), releaseLog.errors.end());
}

const std::string kBvh =
    "HIERARCHY\nROOT hips\n{\n  OFFSET 0 0 0\n  CHANNELS 6 Xposition Yposition Zposition Zrotation Xrotation Yrotation\n"
    "  End Site\n  {\n    OFFSET 0 1 0\n  }\n}\nMOTION\nFrames: 2\nFrame Time: 0.5\n0 0 0 0 0 0\n1 2 3 30 10 5\n";
const std::string kGpx =
    "<?xml version=\"1.0\"?>\n<gpx version=\"1.1\" creator=\"us\"><trk><name>t</name><trkseg>\n"
    "<trkpt lat=\"46.1\" lon=\"7.2\"><ele>500</ele><time>2024-05-01T08:00:00Z</time></trkpt>\n"
    "<trkpt lat=\"46.2\" lon=\"7.3\"><ele>501</ele><time>2024-05-01T08:00:01Z</time></trkpt>\n"
    "</trkseg></trk></gpx>\n";
const std::string kTimedCsv =
    "timestamp,Temperature [°C],Status\n2024-05-01T08:00:00.000Z,18.50,started\n"
    "2024-05-01T08:00:30.000Z,18.70,\n";
const std::string kSrt =
    "1\n00:00:00,000 --> 00:00:00,033\n<font size=\"28\">FrameCnt: 1, DiffTime: 33ms\n2024-05-01 12:34:56.789\n"
    "[iso : 100] [latitude: 46.801234] [longitude: 9.832105] [rel_alt: 12.300 abs_alt: 1582.417] </font>\n\n"
    "2\n00:00:00,033 --> 00:00:00,066\n<font size=\"28\">FrameCnt: 2, DiffTime: 33ms\n2024-05-01 12:34:56.822\n"
    "[iso : 100] [latitude: 46.801238] [longitude: 9.832112] [rel_alt: 12.350 abs_alt: 1582.467] </font>\n\n";

// An example file of ours when it exists (the binary formats have no inline sample).
std::string ExampleWithExtension(const char *extension) {
  const fs::path examples = fs::path(PALVEX_SOURCE_DIR) / "examples";
  for (const auto &entry : fs::directory_iterator(examples)) {
    if (entry.path().extension() == extension) return entry.path().filename().string();
  }
  return {};
}

std::vector<Scenario> MakeScenarios() {
  const std::string v1 = ReadExample("flight_v1_timecode.mgjson");
  const std::string v2 = ReadExample("run_v2_utc.mgjson");
  const std::string csv = "time,speed [m/s],note\n0,1.5,a\n1,2.5,b\n";
  const auto convert = [](const char *name, const char *input, std::string content) {
    return Scenario{.name = name, .run = nullptr, .inputs = {{input, std::move(content)}}};
  };
  std::vector<Scenario> list = {
      {.name = "CreateAndDestroy", .run = [](Session &s) { CreateAndDestroy(s, nullptr); }, .ownsManager = true},
      {.name = "PluginDiscovery", .run = DiscoverPlugins, .ownsManager = true},
      convert("OpenVersion1", "flight.mgjson", v1),
      convert("OpenVersion2", "run.mgjson", v2),
      convert("ConvertCsv", "table.csv", csv),
      convert("ConvertTsv", "table.tsv", "name\tvalue\nwind\t3.5\n"),
      convert("ConvertBvh", "walk.bvh", kBvh),
      convert("ConvertJson", "probe.json", R"({"probe": "p1", "readings": [1.5, 2, {"ok": true}]})"),
      {.name = "StreamReadAndSaveCopy",
       .run = ReadStreamAndSaveCopy,
       .inputs = {{"table.csv", csv}},
       .outputs = {{"copy.mgjson", "old copy"}},
       .outputRule = OutputRule::UntouchedEmptyOrResult},
      {.name = "PlaceConverted",
       .run = [](Session &s) { OpenReadClose(s, Input(s, "table.csv"), PathOf(s.output).c_str()); },
       .inputs = {{"table.csv", csv}},
       .outputs = {{"table.csv.mgjson", "old placed"}},
       .outputRule = OutputRule::UntouchedOrResult},
      {.name = "PlaceMgjson",
       .run = [](Session &s) { OpenReadClose(s, Input(s, "run.mgjson"), PathOf(s.output).c_str()); },
       .inputs = {{"run.mgjson", v2}},
       .outputs = {{"run.mgjson.mgjson", "old placed"}},
       .outputRule = OutputRule::UntouchedEmptyOrResult},
  };
  struct PluginCase {
    const char *name, *module, *input, *content;
  };
  const std::string gpmf = ExampleWithExtension(".mp4");
  const std::string fit = ExampleWithExtension(".fit");
  const PluginCase plugins[] = {
      {"ConvertGpx", "palvex_gpx", "ride.gpx", kGpx.c_str()},
      {"ConvertTimedCsv", "palvex_timed_csv", "logger.csv", kTimedCsv.c_str()},
      {"ConvertSrt", "palvex_srt", "flight.srt", kSrt.c_str()},
      {"ConvertGpmf", "palvex_gpmf", gpmf.c_str(), nullptr},
      {"ConvertFit", "palvex_fit", fit.c_str(), nullptr},
  };
  for (const PluginCase &plugin : plugins) {
    const fs::path module = fs::path(PluginFolder()) / (std::string(plugin.module) + ".mgx");
    if (!fs::exists(module) || *plugin.input == '\0') {
      std::printf("[ skipped  ] %s: %s\n", plugin.name,
                  fs::exists(module) ? "no example input of ours" : "module not built");
      continue;
    }
    Scenario scenario = convert(plugin.name, plugin.input, plugin.content ? plugin.content : ReadExample(plugin.input));
    scenario.plugins = true;
    scenario.module = plugin.module;
    list.push_back(std::move(scenario));
  }
  return list;
}

}  // namespace

std::string PluginFolder() { return std::string(PALVEX_BINARY_DIR) + "/plugins"; }

const std::vector<Scenario> &Scenarios() {
  static const std::vector<Scenario> list = MakeScenarios();
  return list;
}

// Plug-in scenarios convert their one input.
void RunScenario(const Scenario &scenario, Session &s) {
  if (scenario.run != nullptr) {
    scenario.run(s);
  } else {
    OpenReadClose(s, PathOf(s.inputs / scenario.inputs.front().first));
  }
}

}  // namespace palvex::failure
