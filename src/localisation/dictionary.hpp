// Message dictionaries: one per locale, carried inside the library as resources.
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>

namespace ns_sensor {

inline constexpr std::string_view kDefaultLocale = "en_US";

// The entries of one dictionary resource: key (text before the first "=") -> text.
class ParsedDictionary {
 public:
  // Parses the resource format: UTF-16LE with a byte-order mark, one quoted entry per
  // line (LF or CRLF). Lines that are not a quoted "key=text" are passed over.
  static std::shared_ptr<const ParsedDictionary> Parse(std::span<const std::byte> resource);

  const std::u16string *Find(std::string_view key) const;
  std::size_t size() const { return entries_.size(); }

 private:
  std::unordered_map<std::string, std::u16string> entries_;
};

// Loads the dictionary of locale as the active one. A locale without a resource leaves
// the active dictionary unloaded, so messages keep their default English texts.
// Returns whether a dictionary was found.
bool LoadDictionary(std::string_view locale);

// Marks the active dictionary unloaded; the next LoadDictionary loads again.
void UnloadDictionary();

// Whether the active dictionary is loaded, and for which locale.
bool DictionaryLoaded();
std::string ActiveLocale();

// The text of a message literal ("$$$/PXError/...=default"), as UTF-16.
std::u16string LookupMessage(std::string_view literal);

}  // namespace ns_sensor
