// Holds palvex/c_vtables.h to what the C++ compiler makes of palvex/interfaces.hpp: every
// client form is called through the C table of an object that implements the interface,
// and the call must land in that form with its arguments intact. A wrong entry number
// lands in a neighbour (or a destructor) instead.
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "palvex/c_vtables.h"
#include "palvex/interfaces.hpp"

namespace {

// What the last call received: the form's name and its arguments in one text.
std::string g_called;

template <typename... Values>
void Record(const char *form, Values... values) {
  g_called = form;
  ((g_called += ' ', g_called += std::to_string(reinterpret_cast<std::uintptr_t>(values))), ...);
}
std::uintptr_t U(uint32_t value) { return value; }

// Every form records itself; the raising forms under a name a host must never reach.
class ProbeManager final : public IPalvex {
 public:
  void OpenFile(ISensorFileHandler **, const char *, const char *) override { Record("raising"); }
  void CloseFile(ISensorFileHandler **) override { Record("raising"); }
  void CreateMgjsonStream(IMgjsonStream **, const char *, bool) override { Record("raising"); }
  void ReleaseMgjsonStream(IMgjsonStream **) override { Record("raising"); }
  void OpenFile(ISensorFileHandler **h, const char *p, const char *o, PX_ErrorContext e) override {
    Record("OpenFile", h, p, o, e);
  }
  void CloseFile(ISensorFileHandler **h, PX_ErrorContext e) override { Record("CloseFile", h, e); }
  void CreateMgjsonStream(IMgjsonStream **s, const char *p, uint32_t v, PX_ErrorContext e) override {
    Record("CreateMgjsonStream", s, p, U(v), e);
  }
  void ReleaseMgjsonStream(IMgjsonStream **s, PX_ErrorContext e) override {
    Record("ReleaseMgjsonStream", s, e);
  }
};

class ProbeHandler final : public ISensorFileHandler {
 public:
  void GetRootChildren(ns_sensor::PX_GroupChildren *) override { Record("raising"); }
  void GetGroupChildren(const char *, ns_sensor::PX_GroupChildren *) override { Record("raising"); }
  void GetGroupChildInfo(const char *, ns_sensor::PX_GroupChildInfo *) override { Record("raising"); }
  void GetStaticDataInfo(const char *, ns_sensor::PX_StaticDataInfo *) override { Record("raising"); }
  void GetDynamicDataInfo(const char *, ns_sensor::PX_DynamicDataInfo *) override { Record("raising"); }
  void GetSampleSet(const char *, uint32_t, uint32_t, uint32_t, uint32_t,
                    ns_sensor::DynamicDataSampleSet *) override {
    Record("raising");
  }
  void GetSampleSetWithNeighbours(const char *, uint32_t, uint32_t, uint32_t, uint32_t,
                                  ns_sensor::DynamicDataSampleSet *) override {
    Record("raising");
  }
  void GetFileInfo(ns_sensor::PX_FileInfo *) override { Record("raising"); }
  void GetVideoSyncTimeList(ns_sensor::PX_VideoSyncTimeList *) override { Record("raising"); }
  void GetDynamicSampleInfo(const char *, uint32_t, uint32_t, uint32_t,
                            ns_sensor::PX_DynamicSampleInfo *) override {
    Record("raising");
  }
  void GetRootChildren(PX_GroupChildren *c, PX_ErrorContext e) override { Record("GetRootChildren", c, e); }
  void GetGroupChildren(const char *p, PX_GroupChildren *c, PX_ErrorContext e) override {
    Record("GetGroupChildren", p, c, e);
  }
  void GetGroupChildInfo(const char *p, PX_GroupChildInfo *i, PX_ErrorContext e) override {
    Record("GetGroupChildInfo", p, i, e);
  }
  void GetStaticDataInfo(const char *p, PX_StaticDataInfo *i, PX_ErrorContext e) override {
    Record("GetStaticDataInfo", p, i, e);
  }
  void GetDynamicDataInfo(const char *p, PX_DynamicDataInfo *i, PX_ErrorContext e) override {
    Record("GetDynamicDataInfo", p, i, e);
  }
  void GetSampleSet(const char *id, uint32_t sv, uint32_t ss, uint32_t ev, uint32_t es,
                    DynamicDataSampleSet *s, PX_ErrorContext e) override {
    Record("GetSampleSet", id, U(sv), U(ss), U(ev), U(es), s, e);
  }
  void GetSampleSetWithNeighbours(const char *id, uint32_t sv, uint32_t ss, uint32_t ev, uint32_t es,
                                  DynamicDataSampleSet *s, PX_ErrorContext e) override {
    Record("GetSampleSetWithNeighbours", id, U(sv), U(ss), U(ev), U(es), s, e);
  }
  void GetFileInfo(PX_FileInfo *i, PX_ErrorContext e) override { Record("GetFileInfo", i, e); }
  void GetVideoSyncTimeList(PX_VideoSyncTimeList *l, PX_ErrorContext e) override {
    Record("GetVideoSyncTimeList", l, e);
  }
  void GetDynamicSampleInfo(const char *id, uint32_t f, uint32_t s, uint32_t b, PX_DynamicSampleInfo *i,
                            PX_ErrorContext e) override {
    Record("GetDynamicSampleInfo", id, U(f), U(s), U(b), i, e);
  }
};

class ProbeStream final : public IMgjsonStream {
 public:
  uint32_t Read(uint8_t *, uint32_t *) override { Record("raising"); return 0; }
  void SaveCopy(const char *) override { Record("raising"); }
  void GetPath(ns_sensor::PX_Text *) override { Record("raising"); }
  uint32_t GetTotalSize() override { Record("raising"); return 0; }
  uint32_t GetRemainingSize() override { Record("raising"); return 0; }
  int64_t Rewind() override { Record("raising"); return 0; }
  uint32_t Read(uint8_t *b, uint32_t *s, PX_ErrorContext e) override { Record("Read", b, s, e); return 7; }
  void SaveCopy(const char *p, PX_ErrorContext e) override { Record("SaveCopy", p, e); }
  void GetPath(PX_HostString *p, PX_ErrorContext e) override { Record("GetPath", p, e); }
  int64_t Rewind(PX_ErrorContext e) override { Record("Rewind", e); return -9; }
};

// Distinct pointer values for the arguments; they are only compared, never followed.
template <typename T>
T *Fake(std::uintptr_t value) { return reinterpret_cast<T *>(value); }

struct Case {
  std::function<void()> call;  // through the C table
  std::string expected;        // what the C++ override must have received
};

}  // namespace

int main() {
  ProbeManager manager;
  ProbeHandler handler;
  ProbeStream stream;
  IPalvex *m = &manager;
  ISensorFileHandler *h = &handler;
  IMgjsonStream *s = &stream;
  const PX_PalvexVtable *mt = PX_PalvexTable(m);
  const PX_FileHandlerVtable *ht = PX_FileHandlerTable(h);
  const PX_MgjsonStreamVtable *st = PX_MgjsonStreamTable(s);
  auto *e = Fake<void>(0xE0);
  const char *text = "[0][1]";
  const auto t = std::to_string(reinterpret_cast<std::uintptr_t>(text));
  const auto x = std::to_string(0xE0);
  auto n = [](std::uintptr_t value) { return std::to_string(value); };

  const std::vector<Case> cases = {
      {[&] { mt->OpenFile(m, Fake<ISensorFileHandler *>(0x10), text, Fake<const char>(0x20), e); },
       "OpenFile " + n(0x10) + " " + t + " " + n(0x20) + " " + x},
      {[&] { mt->CloseFile(m, Fake<ISensorFileHandler *>(0x10), e); }, "CloseFile " + n(0x10) + " " + x},
      {[&] { mt->CreateMgjsonStream(m, Fake<IMgjsonStream *>(0x30), text, 5, e); },
       "CreateMgjsonStream " + n(0x30) + " " + t + " 5 " + x},
      {[&] { mt->ReleaseMgjsonStream(m, Fake<IMgjsonStream *>(0x30), e); },
       "ReleaseMgjsonStream " + n(0x30) + " " + x},
      {[&] { ht->GetRootChildren(h, Fake<PX_GroupChildren>(0x40), e); }, "GetRootChildren " + n(0x40) + " " + x},
      {[&] { ht->GetGroupChildren(h, text, Fake<PX_GroupChildren>(0x40), e); },
       "GetGroupChildren " + t + " " + n(0x40) + " " + x},
      {[&] { ht->GetGroupChildInfo(h, text, Fake<PX_GroupChildInfo>(0x50), e); },
       "GetGroupChildInfo " + t + " " + n(0x50) + " " + x},
      {[&] { ht->GetStaticDataInfo(h, text, Fake<PX_StaticDataInfo>(0x60), e); },
       "GetStaticDataInfo " + t + " " + n(0x60) + " " + x},
      {[&] { ht->GetDynamicDataInfo(h, text, Fake<PX_DynamicDataInfo>(0x70), e); },
       "GetDynamicDataInfo " + t + " " + n(0x70) + " " + x},
      {[&] { ht->GetSampleSet(h, text, 1, 2, 3, 4, Fake<DynamicDataSampleSet>(0x80), e); },
       "GetSampleSet " + t + " 1 2 3 4 " + n(0x80) + " " + x},
      {[&] { ht->GetSampleSetWithNeighbours(h, text, 5, 6, 7, 8, Fake<DynamicDataSampleSet>(0x80), e); },
       "GetSampleSetWithNeighbours " + t + " 5 6 7 8 " + n(0x80) + " " + x},
      {[&] { ht->GetFileInfo(h, Fake<PX_FileInfo>(0x90), e); }, "GetFileInfo " + n(0x90) + " " + x},
      {[&] { ht->GetVideoSyncTimeList(h, Fake<PX_VideoSyncTimeList>(0xA0), e); },
       "GetVideoSyncTimeList " + n(0xA0) + " " + x},
      {[&] { ht->GetDynamicSampleInfo(h, text, 9, 10, 1, Fake<PX_DynamicSampleInfo>(0xB0), e); },
       "GetDynamicSampleInfo " + t + " 9 10 1 " + n(0xB0) + " " + x},
      {[&] { if (st->Read(s, Fake<uint8_t>(0xC0), Fake<uint32_t>(0xC8), e) != 7) g_called += " lost result"; },
       "Read " + n(0xC0) + " " + n(0xC8) + " " + x},
      {[&] { st->SaveCopy(s, text, e); }, "SaveCopy " + t + " " + x},
      {[&] { st->GetPath(s, Fake<PX_HostString>(0xD0), e); }, "GetPath " + n(0xD0) + " " + x},
      {[&] { if (st->Rewind(s, e) != -9) g_called += " lost result"; }, "Rewind " + x},
  };

  int failures = 0;
  for (const Case &c : cases) {
    g_called = "nothing";
    c.call();
    if (g_called != c.expected) {
      std::fprintf(stderr, "expected \"%s\", the call reached \"%s\"\n", c.expected.c_str(), g_called.c_str());
      ++failures;
    }
  }
  std::printf("%zu calls through the C tables, %d went astray\n", cases.size(), failures);
  return failures == 0 ? 0 : 1;
}
