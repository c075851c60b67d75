#include "gpx_parser.hpp"

#include <expat.h>

#include <cmath>
#include <exception>
#include <memory>
#include <new>

#include "gpx_errors.hpp"
#include "xml_values.hpp"
#include "palvex/plugin_helpers.hpp"

namespace gpx {
namespace {

using PX_PLUGIN::PX_PluginException;

constexpr std::size_t kReadChunk = 64 * 1024;
// GPX nests five levels plus extensions; anything far deeper is not a GPX file, and the
// bound keeps the element stack small.
constexpr std::size_t kMaxDepth = 64;
// Text kept of one element; a longer number is refused, a longer name cut.
constexpr std::size_t kMaxTextLength = 1024;

enum class Role { kGpx, kPath, kSegment, kPoint, kPathName, kPointChild, kExtensions, kExtensionItem, kSkip };

struct Frame {
  Role role;
  bool hasChildren = false;
};

class Reader {
 public:
  explicit Reader(GpxVisitor &visitor) : visitor_(visitor), parser_(XML_ParserCreate(nullptr)) {
    if (!parser_) throw std::bad_alloc();
    XML_SetUserData(parser_.get(), this);
    XML_SetElementHandler(parser_.get(), &OnStart, &OnEnd);
    XML_SetCharacterDataHandler(parser_.get(), &OnText);
    XML_SetEntityDeclHandler(parser_.get(), &OnEntityDeclaration);
    stack_.reserve(kMaxDepth);
  }

  void Parse(std::istream &in) {
    std::uint64_t total = 0;
    for (;;) {
      void *buffer = XML_GetBuffer(parser_.get(), static_cast<int>(kReadChunk));
      if (buffer == nullptr) throw std::bad_alloc();
      in.read(static_cast<char *>(buffer), static_cast<std::streamsize>(kReadChunk));
      if (in.bad()) throw PX_PluginException(kCannotRead, static_cast<std::int64_t>(total));
      const auto count = static_cast<std::size_t>(in.gcount());
      total += count;
      const bool last = count < kReadChunk;
      const XML_Status status = XML_ParseBuffer(parser_.get(), static_cast<int>(count), last ? XML_TRUE : XML_FALSE);
      if (failure_) std::rethrow_exception(failure_);
      if (status != XML_STATUS_OK) {
        const XML_Error error = XML_GetErrorCode(parser_.get());
        Fail(error == XML_ERROR_NO_ELEMENTS && !rootSeen_ ? kNotGpx : kMalformedXml);
      }
      if (last) return;
    }
  }

 private:
  struct ParserFree {
    void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
  };

  // Expat is C: nothing may unwind through it. A failure is kept and the parse stopped.
  template <typename Body>
  static void Guarded(void *self, Body &&body) {
    Reader &reader = *static_cast<Reader *>(self);
    if (reader.failure_) return;
    try {
      body(reader);
    } catch (...) {
      reader.failure_ = std::current_exception();
      XML_StopParser(reader.parser_.get(), XML_FALSE);
    }
  }
  static void XMLCALL OnStart(void *self, const XML_Char *name, const XML_Char **attributes) {
    Guarded(self, [&](Reader &reader) { reader.Start(name, attributes); });
  }
  static void XMLCALL OnEnd(void *self, const XML_Char *name) {
    Guarded(self, [&](Reader &reader) { reader.End(name); });
  }
  static void XMLCALL OnText(void *self, const XML_Char *text, int length) {
    Guarded(self, [&](Reader &reader) { reader.Text(std::string_view(text, static_cast<std::size_t>(length))); });
  }
  // Entities serve no GPX file and are the way to blow a small file up: refused.
  static void XMLCALL OnEntityDeclaration(void *self, const XML_Char *, int, const XML_Char *, int,
                                          const XML_Char *, const XML_Char *, const XML_Char *, const XML_Char *) {
    Guarded(self, [](Reader &reader) { reader.Fail(kMalformedXml); });
  }

  [[noreturn]] void Fail(std::uint32_t code) {
    throw PX_PluginException(code, static_cast<std::int64_t>(XML_GetCurrentLineNumber(parser_.get())),
                             static_cast<std::int64_t>(XML_GetCurrentColumnNumber(parser_.get())) + 1);
  }
  [[noreturn]] void FailAtText(std::uint32_t code) const {
    throw PX_PluginException(code, textLine_, textColumn_);
  }

  void Start(std::string_view name, const XML_Char **attributes) {
    if (stack_.size() >= kMaxDepth) Fail(kMalformedXml);
    const std::string_view local = LocalName(name);
    if (stack_.empty()) {
      if (local != "gpx") Fail(kNotGpx);
      rootSeen_ = true;
      stack_.push_back({Role::kGpx});
      return;
    }
    Frame &parent = stack_.back();
    parent.hasChildren = true;
    Role role = Role::kSkip;
    switch (parent.role) {
      case Role::kGpx:
        if (local == "trk" || local == "rte") {
          pathKind_ = local == "trk" ? PathKind::kTrack : PathKind::kRoute;
          pathName_.clear();
          visitor_.BeginPath(pathKind_, XML_GetCurrentLineNumber(parser_.get()));
          if (pathKind_ == PathKind::kRoute) visitor_.BeginSegment();
          role = Role::kPath;
        } else if (local == "wpt") {
          role = StartPoint(attributes);
        }
        break;
      case Role::kPath:
        if (local == "trkseg" && pathKind_ == PathKind::kTrack) {
          visitor_.BeginSegment();
          role = Role::kSegment;
        } else if (local == "rtept" && pathKind_ == PathKind::kRoute) {
          role = StartPoint(attributes);
        } else if (local == "name") {
          role = Role::kPathName;
        }
        break;
      case Role::kSegment:
        if (local == "trkpt") role = StartPoint(attributes);
        break;
      case Role::kPoint:
        if (local == "extensions") {
          role = Role::kExtensions;
        } else if (local == "time" || local == "ele" || local == "speed" || local == "course" || local == "name") {
          role = Role::kPointChild;
        }
        break;
      case Role::kExtensions:
      case Role::kExtensionItem:
        role = Role::kExtensionItem;
        break;
      default:
        break;
    }
    if (role == Role::kPathName || role == Role::kPointChild || role == Role::kExtensionItem) StartText();
    stack_.push_back({role});
  }

  Role StartPoint(const XML_Char **attributes) {
    std::optional<double> latitude, longitude;
    for (const XML_Char **at = attributes; *at != nullptr; at += 2) {
      const std::string_view attribute = at[0];
      if (attribute == "lat") latitude = ParseNumber(at[1]);
      if (attribute == "lon") longitude = ParseNumber(at[1]);
    }
    if (!latitude || !longitude || std::fabs(*latitude) > 90.0 || std::fabs(*longitude) > 180.0) {
      Fail(kBadCoordinates);
    }
    point_.latitude = *latitude;
    point_.longitude = *longitude;
    point_.time.reset();
    point_.elevation.reset();
    point_.speed.reset();
    point_.course.reset();
    point_.extensions.clear();
    point_.name.clear();
    point_.line = XML_GetCurrentLineNumber(parser_.get());
    return Role::kPoint;
  }

  void StartText() {
    text_.clear();
    textTooLong_ = false;
    textLine_ = static_cast<std::int64_t>(XML_GetCurrentLineNumber(parser_.get()));
    textColumn_ = static_cast<std::int64_t>(XML_GetCurrentColumnNumber(parser_.get())) + 1;
  }

  void Text(std::string_view text) {
    const Role role = stack_.empty() ? Role::kSkip : stack_.back().role;
    if (role != Role::kPathName && role != Role::kPointChild && role != Role::kExtensionItem) return;
    const std::size_t room = kMaxTextLength - text_.size();
    if (text.size() > room) textTooLong_ = true;
    text_.append(text.substr(0, room));
  }

  // The number of a known element: absent when empty, refused when not a number.
  std::optional<double> KnownNumber() const {
    if (TrimXmlSpace(text_).empty()) return std::nullopt;
    const std::optional<double> value = textTooLong_ ? std::nullopt : ParseNumber(text_);
    if (!value) FailAtText(kBadNumber);
    return value;
  }

  void End(std::string_view name) {
    const Frame frame = stack_.back();
    stack_.pop_back();
    const std::string_view local = LocalName(name);
    switch (frame.role) {
      case Role::kPathName:
        pathName_ = ShortName(text_);
        break;
      case Role::kPointChild:
        EndPointChild(local);
        break;
      case Role::kExtensionItem:
        if (!frame.hasChildren) EndExtension(local);
        break;
      case Role::kPoint:
        if (stack_.back().role == Role::kGpx) {
          visitor_.Waypoint(point_);
        } else {
          visitor_.PathPoint(point_);
        }
        break;
      case Role::kPath:
        visitor_.EndPath(pathName_);
        break;
      default:
        break;
    }
  }

  void EndPointChild(std::string_view local) {
    if (local == "name") {
      point_.name = ShortName(text_);
    } else if (local == "time") {
      const std::string_view text = TrimXmlSpace(text_);
      if (text.empty()) return;
      point_.time = palvex_plugins::ParseIsoTime(text);
      if (!point_.time) FailAtText(kBadTime);
    } else if (local == "ele") {
      point_.elevation = KnownNumber();
    } else if (local == "speed") {
      if (const std::optional<double> speed = KnownNumber()) point_.speed = speed;
    } else if (const std::optional<double> course = KnownNumber()) {
      point_.course = TurnedIntoCircle(*course);
    }
  }

  void EndExtension(std::string_view local) {
    const PointField *field = FindPointField(local);
    const std::optional<double> value =
        field != nullptr ? KnownNumber() : (textTooLong_ ? std::nullopt : ParseNumber(text_));
    if (!value) return;
    if (field != nullptr && field->role == FieldRole::kSpeed) {
      if (!point_.speed) point_.speed = value;
      return;
    }
    if (field != nullptr && field->role == FieldRole::kCourse) {
      if (!point_.course) point_.course = TurnedIntoCircle(*value);
      return;
    }
    const std::string name = ShortName(local);
    for (const ExtensionValue &known : point_.extensions) {
      const bool same = field != nullptr ? known.field != nullptr && known.field->matchName == field->matchName
                                         : known.field == nullptr && known.name == name;
      if (same) return;  // the first of a repeated value counts
    }
    if (point_.extensions.size() < kMaxExtensionsPerPoint) point_.extensions.push_back({field, name, *value});
  }

  GpxVisitor &visitor_;
  std::unique_ptr<XML_ParserStruct, ParserFree> parser_;
  std::exception_ptr failure_;
  std::vector<Frame> stack_;
  bool rootSeen_ = false;
  PathKind pathKind_ = PathKind::kTrack;
  std::string pathName_;
  GpxPoint point_;
  std::string text_;
  bool textTooLong_ = false;
  std::int64_t textLine_ = -1;
  std::int64_t textColumn_ = -1;
};

}  // namespace

void ParseGpx(std::istream &in, GpxVisitor &visitor) {
  Reader reader(visitor);
  reader.Parse(in);
}

}  // namespace gpx
