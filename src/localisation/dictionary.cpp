#include "localisation/dictionary.hpp"

#include <atomic>
#include <cstring>
#include <mutex>

#include "api/messages.hpp"
#include "localisation/utf.hpp"
#include "platform/module_resources.hpp"

namespace ns_sensor {
namespace {

struct ActiveDictionary {
  std::string locale;
  bool loaded = false;
  std::shared_ptr<const ParsedDictionary> entries;
};

// Readers take a snapshot under a short lock; loading swaps the whole state.
std::mutex g_stateMutex;
std::shared_ptr<const ActiveDictionary> g_active;

std::shared_ptr<const ActiveDictionary> Snapshot() {
  std::lock_guard lock(g_stateMutex);
  return g_active;
}

void Publish(std::shared_ptr<const ActiveDictionary> state) {
  std::lock_guard lock(g_stateMutex);
  g_active = std::move(state);
}

// The default dictionary is made once, for en_US, on first use.
std::shared_ptr<const ActiveDictionary> MakeState(std::string_view locale);

std::shared_ptr<const ActiveDictionary> Current() {
  static std::once_flag defaultMade;
  std::call_once(defaultMade, [] {
    if (!Snapshot()) Publish(MakeState(kDefaultLocale));
  });
  return Snapshot();
}

std::shared_ptr<const ActiveDictionary> MakeState(std::string_view locale) {
  auto state = std::make_shared<ActiveDictionary>();
  state->locale = std::string(locale);
  const std::string name = "px_" + state->locale;
  const auto resource = palvex::platform::FindModuleResource("dict", name);
  if (!resource.empty()) {
    state->entries = ParsedDictionary::Parse(resource);
    state->loaded = true;
  }
  return state;
}

char16_t UnitAt(std::span<const std::byte> bytes, std::size_t index) {
  return static_cast<char16_t>(static_cast<unsigned>(bytes[2 * index]) |
                               (static_cast<unsigned>(bytes[2 * index + 1]) << 8));
}

bool StartsWith(std::string_view text, std::string_view prefix) {
  return text.substr(0, prefix.size()) == prefix;
}

}  // namespace

std::shared_ptr<const ParsedDictionary> ParsedDictionary::Parse(std::span<const std::byte> resource) {
  auto dictionary = std::make_shared<ParsedDictionary>();
  const std::size_t units = resource.size() / 2;
  std::size_t at = 0;
  if (units > 0 && UnitAt(resource, 0) == 0xFEFF) at = 1;
  std::u16string line;
  auto takeLine = [&] {
    if (!line.empty() && line.back() == u'\r') line.pop_back();
    if (line.size() >= 2 && line.front() == u'"' && line.back() == u'"') {
      const std::u16string_view entry(line.data() + 1, line.size() - 2);
      const auto eq = entry.find(u'=');
      if (eq != std::u16string_view::npos) {
        std::string key;
        bool ascii = true;
        for (const char16_t unit : entry.substr(0, eq)) {
          ascii = ascii && unit < 0x80;
          key.push_back(static_cast<char>(unit));
        }
        if (ascii) dictionary->entries_.insert_or_assign(std::move(key), std::u16string(entry.substr(eq + 1)));
      }
    }
    line.clear();
  };
  for (; at < units; ++at) {
    const char16_t unit = UnitAt(resource, at);
    if (unit == u'\n') {
      takeLine();
    } else {
      line.push_back(unit);
    }
  }
  takeLine();
  return dictionary;
}

const std::u16string *ParsedDictionary::Find(std::string_view key) const {
  const auto found = entries_.find(std::string(key));
  return found == entries_.end() ? nullptr : &found->second;
}

bool LoadDictionary(std::string_view locale) {
  Current();  // the default is made first, so it never overwrites this one
  auto state = MakeState(locale.empty() ? kDefaultLocale : locale);
  const bool found = state->loaded;
  Publish(std::move(state));
  return found;
}

void UnloadDictionary() {
  auto state = Current();
  auto unloaded = std::make_shared<ActiveDictionary>();
  unloaded->locale = state ? state->locale : std::string(kDefaultLocale);
  Publish(std::move(unloaded));
}

bool DictionaryLoaded() { return Current()->loaded; }

std::string ActiveLocale() { return Current()->locale; }

std::u16string LookupMessage(std::string_view literal) {
  const auto state = Current();
  const std::string_view key = MessageKey(literal);
  const bool isKey = StartsWith(literal, "$$$/");
  if (state->loaded && state->entries && state->entries->size() > 0) {
    if (const auto *text = state->entries->Find(key)) return *text;
    if (isKey) {
      // Not in the dictionary: its translation is the default text after "=".
      const std::string_view fallback = DefaultText(literal);
      return fallback.empty() ? Utf8ToUtf16(literal) : Utf8ToUtf16(fallback);
    }
  }
  if (isKey && literal.find('=') != std::string_view::npos) return Utf8ToUtf16(DefaultText(literal));
  return Utf8ToUtf16(literal);
}

}  // namespace ns_sensor
